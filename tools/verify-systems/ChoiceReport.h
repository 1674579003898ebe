#pragma once

#include "EpsgTransformations.h"
#include "ProjChoice.h"

#include "engine/SystemCheck.h"

// How the datum transformation a pre-defined system stores compares with PROJ's own choice
// and with the other transformations EPSG holds for its datum.
namespace ChoiceReport {

enum class Verdict {
    Same,          // the system stores what PROJ would use
    NotHelmert,    // PROJ would use a grid, a chain or a ballpark: nothing the database holds
    NotStorable,   // PROJ's Helmert transformation does not join WGS 84 and the datum
    PartOfTheArea, // PROJ's covers only part of the system's area, the stored one all of it
    Superseded,    // PROJ's has been replaced by EPSG
    MoreAccurate,  // the stored one is more accurate over the same coverage
    Newer,         // as accurate, and newer
    LargerOverlap, // neither covers the area; the stored one overlaps more of it
    Other,         // PROJ ranks otherwise (worth a look)
};

struct Comparison {
    Verdict verdict = Verdict::Same;
    QString reason; // empty for Same
};

Comparison Compare(const EpsgTransformations& epsg, const StoredSystemRef& system,
                   const ProjChoice& proj);

// Short label of a verdict for the summary.
QString Label(Verdict verdict);

// A current transformation of the stored one's datum with the same area of use and a better
// published accuracy: one the stored transformation loses to. Null when there is none.
const EpsgTransformation* BetterWithSameArea(const EpsgTransformations& epsg, int storedCode);

} // namespace ChoiceReport
