#include "util/UtmZones.h"

#include <cstdio>

namespace UtmZones {

int CentralMeridian(int zone) {
    return 6 * zone - 183;
}

QString ZoneText(int zone) {
    const int meridian = CentralMeridian(zone);
    return QString::asprintf("Zone %2d     (%3d %c)", zone, meridian < 0 ? -meridian : meridian,
                             meridian < 0 ? 'W' : 'E');
}

bool ParseZoneText(const QString& text, int& zone, int& meridian, QChar& letter) {
    // Only the list's own texts: a zone number with another meridian, other spacing or
    // anything after the bracket is no zone of the list.
    const QByteArray bytes = text.toLatin1();
    int z = 0;
    int m = 0;
    char c = 0;
    if (text.size() != ZoneText(1).size() ||
        std::sscanf(bytes.constData(), "Zone %2d     (%3d %c)", &z, &m, &c) != 3 || z < 1 ||
        z > ZoneCount || text != ZoneText(z))
        return false;
    zone = z;
    meridian = m;
    letter = QLatin1Char(c);
    return true;
}

QString NorthernText() {
    return QStringLiteral("Northern");
}
QString SouthernText() {
    return QStringLiteral("Southern");
}

double FalseNorthing(const QString& hemisphereText) {
    return hemisphereText == NorthernText() ? 0.0 : 10000000.0;
}

} // namespace UtmZones
