#pragma once

class ImportSession;
class UnitTable;
struct ImportedNames;

// The ellipsoid and unit tables, the first rows everything else refers to.
namespace EllipsoidsAndUnits {

// Every EPSG ellipsoid of the Earth, in metres; fails when WGS 84 is not among them.
bool WriteEllipsoids(ImportSession& session, const UnitTable& units, ImportedNames& names);

// The EPSG length units (without the rates proj.db files under length); fails without the
// metre.
bool WriteUnits(ImportSession& session, const UnitTable& units, ImportedNames& names);

} // namespace EllipsoidsAndUnits
