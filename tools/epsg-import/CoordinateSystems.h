#pragma once

class ConversionProjections;
class DatumTable;
class ImportSession;
class UsageTable;
struct ImportedNames;

// The coordinate systems and their groups: every EPSG projected CRS whose axis unit was
// imported and whose datum is WGS 84 or has a datum transformation (its own or its Greenwich
// twin's). The others are counted as left out.
namespace CoordinateSystems {

bool Write(ImportSession& session, const DatumTable& datums, const UsageTable& usages,
           const ImportedNames& names, ConversionProjections& projections);

} // namespace CoordinateSystems
