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

// The transformation of a system, ranked as PROJ ranks the candidates for an area of
// interest: those whose area of use meets the system's first, then the larger overlap
// (areas within 1 % count as equal), then the better published accuracy (unknown last),
// then the lower EPSG code. Null when there are no candidates.
const DtfCandidate* Choose(const QList<DtfCandidate>& candidates, const Box& area);

} // namespace DatumTransformations
