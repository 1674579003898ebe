#pragma once

#include "ImportedNames.h"

#include <QList>

class DatumTable;
class ImportSession;
class UnitTable;
class UsageTable;
struct Box;

namespace DatumTransformations {

// The EPSG Helmert method as the engine's method index (DTF_NONE for any other method).
int MethodIndexOf(int epsgMethod);

// "WGS 84 to WGS 84" and every Helmert transformation between WGS 84 and a local datum, as
// published; each one also becomes a candidate of its local datum in names.dtfsByDatum.
bool Write(ImportSession& session, const UnitTable& units, const DatumTable& datums,
           const UsageTable& usages, ImportedNames& names);

// The transformation of a system with the area of use area, as a geodesist chooses it:
// superseded candidates are left out; among the rest those whose area of use contains the
// system's come first, the best (smallest) published accuracy among them (unknown last),
// then the newest (the higher variant number of the same source and target, else the
// higher EPSG code). When none contains the area, the larger overlap of the two areas comes
// first (overlaps within 1 % count as equal), then accuracy, then the newest. Null when no
// candidate is current.
const DtfCandidate* Choose(const QList<DtfCandidate>& candidates, const Box& area);

// The variant number and the name without it: "ED50 to WGS 84 (18)" -> 18, "ED50 to WGS 84".
int VariantOf(const QString& name, QString* family = nullptr);

} // namespace DatumTransformations
