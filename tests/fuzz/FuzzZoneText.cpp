// UTM zone texts: only the zone list's own texts are zones.
#include "FuzzInput.h"

#include "util/UtmZones.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text = FuzzInput::Text(data, size);
    int zone = -1, meridian = -1;
    QChar letter;
    if (!UtmZones::ParseZoneText(text, zone, meridian, letter))
        return 0;
    FuzzInput::Check(zone >= 1 && zone <= UtmZones::ZoneCount, "zone out of range");
    FuzzInput::Check(text == UtmZones::ZoneText(zone), "a text outside the list was accepted");
    FuzzInput::Check(UtmZones::CentralMeridian(zone) == (letter == u'W' ? -meridian : meridian),
                     "meridian and letter disagree with the zone");
    return 0;
}
