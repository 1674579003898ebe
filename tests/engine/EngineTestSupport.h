#pragma once

#include "engine/GeoCoordSys.h"
#include "store/Records.h"
#include "support/GtxFile.h"

#include <QByteArray>
#include <QString>

#include <initializer_list>

// Small exact definitions for the engine tests.
namespace EngineTest {

struct P {
    const char* name;
    double value;
    unsigned type;
};

inline EllipsoidRecord Ellipsoid(const char* name, double a, double rf) {
    EllipsoidRecord e;
    e.name = QString::fromLatin1(name);
    const double f = rf > 0 ? 1.0 / rf : 0.0;
    e.values = {a, a * (1 - f), rf, f, f * (2 - f), f * (2 - f) / ((1 - f) * (1 - f))};
    return e;
}

inline EllipsoidRecord Wgs84() {
    return Ellipsoid("WGS 84", 6378137.0, 298.257223563);
}

// A system without datum transformation: latitudes and longitudes are on the local
// ellipsoid already.
inline SystemDefinition Projected(const EllipsoidRecord& local, int methodId, int epsgMethod,
                                  std::initializer_list<P> params, double metersPerUnit = 1.0) {
    SystemDefinition def;
    def.system.name = QStringLiteral("test system");
    def.system.group = QStringLiteral("tests");
    def.satEllipsoid = Wgs84();
    def.localEllipsoid = local;
    def.dtf.methodIndex = DTF_NONE;
    def.projection.name = QStringLiteral("test projection");
    def.projection.methodId = methodId;
    def.projection.epsgMethodCode = epsgMethod;
    for (const P& p : params)
        def.projection.params.append({QString::fromLatin1(p.name), p.value, QString(), p.type});
    def.unit.name = metersPerUnit == 1.0 ? QStringLiteral("Metre") : QStringLiteral("Unit");
    def.unit.metersPerUnit = metersPerUnit;
    def.projection.unitName = def.unit.name;
    return def;
}

inline SystemDefinition Utm(int zone, bool north, const EllipsoidRecord& local = Wgs84()) {
    SystemDefinition def =
        Projected(local, 1, 9807,
                  {{"Latitude of natural origin", 0, PRM_LATITUDE},
                   {"Longitude of natural origin", zone * 6.0 - 183, PRM_LONGITUDE},
                   {"Scale factor at natural origin", 0.9996, PRM_SCALE},
                   {"False easting", 500000, PRM_LENGTH},
                   {"False northing", north ? 0.0 : 1e7, PRM_LENGTH},
                   {"UTM zone", double(zone), PRM_HIDDEN},
                   {"Hemisphere", north ? 0.0 : 1.0, PRM_HIDDEN}});
    return def;
}

// sexagesimal degrees, minutes, seconds
inline double Dms(double d, double m, double s) {
    const double sign = d < 0 ? -1.0 : 1.0;
    return sign * (std::abs(d) + m / 60.0 + s / 3600.0);
}

} // namespace EngineTest
