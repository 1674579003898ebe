#pragma once

#include "store/Records.h"

// UTM zone 31 north behind a 15-value datum transformation with rates, so that every
// conversion depends on the observation epoch: the batch tests and the batch fuzz harness
// convert through it.
inline SystemDefinition TimeDependentUtm() {
    SystemDefinition def;
    def.system.name = QStringLiteral("time-dependent");
    def.satEllipsoid.values = {6378137.0, 6356752.314245, 298.257223563, 0, 0, 0};
    def.localEllipsoid.values = {6378137.0, 6356752.314140, 298.257222101, 0, 0, 0};
    def.dtf.name = QStringLiteral("time-dependent dtf");
    def.dtf.methodIndex = DTF_15_COORDINATE_FRAME;
    def.dtf.values = {0.1,   0.2,   0.3,    0.001,  0.002,  0.003,   0.01,  0.001,
                      0.001, 0.001, 0.0001, 0.0001, 0.0001, 0.00001, 2010.0};
    def.projection.methodId = 1;
    def.projection.epsgMethodCode = 9807;
    def.projection.params = {{QStringLiteral("Latitude of natural origin"), 0, {}, 1},
                             {QStringLiteral("Longitude of natural origin"), 3, {}, 2},
                             {QStringLiteral("Scale factor at natural origin"), 0.9996, {}, 4},
                             {QStringLiteral("False easting"), 500000, {}, 5},
                             {QStringLiteral("False northing"), 0, {}, 5}};
    def.system.utmZoneText = QStringLiteral("Zone 31     (  3 E)");
    def.system.utmHemisphereText = QStringLiteral("Northern");
    def.unit.metersPerUnit = 1.0;
    return def;
}
