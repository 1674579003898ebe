#pragma once

#include <optional>

class ProjectionWriter;
struct ImportedNames;

// The system's own UTM zone projections ("UTM Zone-32N"), which stand in for EPSG's UTM
// conversions, so that a UTM system carries its zone and hemisphere like one made in the
// wizard.
namespace UtmProjections {

struct Zone {
    int zone = 0; // 1 to 60
    bool south = false;
};

// The zone of one of EPSG's UTM conversions (16001-16060 north, 16101-16160 south).
std::optional<Zone> ZoneOfConversion(int conversionCode);

// The 120 zone projections, north first; names.utmProjections gets them by EPSG code.
bool Write(ProjectionWriter& writer, ImportedNames& names);

} // namespace UtmProjections
