#include "engine/SystemCheck.h"

#include "api/ProjectionMethods.h"
#include "engine/EpsgReference.h"
#include "store/StoreSql.h"

#include <QSqlQuery>
#include <QVariant>

#include <algorithm>
#include <cmath>

QList<StoredSystemRef> PreDefinedSystems(const GeoStore& store, QString* error) {
    QList<StoredSystemRef> out;
    StoreSql::Reader q(store.systemDb(), error);
    if (!q.Exec(QStringLiteral(
            "SELECT g.name, c.name, c.epsg_code, COALESCE(d.epsg_code, 0), c.bbox_south, "
            "c.bbox_west, c.bbox_north, c.bbox_east FROM coordsys c JOIN sysgroup g ON g.id = "
            "c.group_id LEFT JOIN dtf d ON d.name = c.dtf_name ORDER BY c.id")))
        return {};
    while (q.Next()) {
        StoredSystemRef ref;
        ref.group = q.value(0).toString();
        ref.name = q.value(1).toString();
        ref.crsCode = q.value(2).toInt();
        ref.operationCode = q.value(3).toInt();
        ref.hasArea = !q.value(4).isNull() && !q.value(5).isNull() && !q.value(6).isNull() &&
                      !q.value(7).isNull();
        if (ref.hasArea) {
            ref.south = q.value(4).toDouble();
            ref.west = q.value(5).toDouble();
            ref.north = q.value(6).toDouble();
            ref.east = q.value(7).toDouble();
        }
        out.append(ref);
    }
    return q.failed() ? QList<StoredSystemRef>() : out;
}

SystemCheckResult CheckSystem(GeoCoordSys& cs, const StoredSystemRef& ref, double toleranceMetres) {
    SystemCheckResult result;
    const QString empty;
    if (!cs.DefineSystem(ref.group, ref.name, empty, empty, empty, empty, empty, empty,
                         QStringLiteral("none"))) {
        result.message = cs.LastError();
        result.status = result.message.contains(QStringLiteral("not implemented"))
                            ? SystemCheckResult::NotImplemented
                            : SystemCheckResult::Failed;
        return result;
    }
    const SystemDefinition& def = cs.Definition();
    if (def.projection.methodId == ProjectionMethods::NotImplementedId) {
        result.status = SystemCheckResult::NotImplemented;
        return result;
    }
    if (!ref.hasArea || ref.crsCode == 0) {
        result.status = SystemCheckResult::NoReference;
        result.message = QStringLiteral("no EPSG code or area of use");
        return result;
    }
    EpsgReference reference;
    if (!reference.Create(ref.crsCode, def.dtf.methodIndex == DTF_NONE ? 0 : ref.operationCode,
                          result.message)) {
        result.status = SystemCheckResult::NoReference;
        return result;
    }
    double east = ref.east;
    if (east < ref.west)
        east += 360; // across the antimeridian
    const double time = def.dtf.obsEpoch != 0 ? def.dtf.obsEpoch : HUGE_VAL;
    const double unit = def.unit.metersPerUnit > 0 ? def.unit.metersPerUnit : 1.0;
    const double fractions[][2] = {
        {0.5, 0.5}, {0.25, 0.25}, {0.25, 0.75}, {0.75, 0.25}, {0.75, 0.75}};
    int compared = 0;
    for (const auto& f : fractions) {
        const double lat = ref.south + f[0] * (ref.north - ref.south);
        double lon = ref.west + f[1] * (east - ref.west);
        if (lon > 180)
            lon -= 360;
        double e = 0, n = 0;
        const bool theirs = reference.Forward(lat, lon, time, e, n);
        GeoPoint p{lat, lon, 0, time == HUGE_VAL ? 0 : time};
        const bool ours = cs.Forward(p);
        if (!theirs && !ours)
            continue;
        if (theirs != ours) {
            result.status = SystemCheckResult::Disagree;
            result.message = QStringLiteral("at %1, %2 only %3 converts")
                                 .arg(lat)
                                 .arg(lon)
                                 .arg(ours ? QStringLiteral("the engine") : QStringLiteral("PROJ"));
            return result;
        }
        ++compared;
        result.maxDifference =
            std::max({result.maxDifference, std::abs(p.x - e) * unit, std::abs(p.y - n) * unit});
    }
    if (compared == 0) {
        result.status = SystemCheckResult::NoReference;
        result.message = QStringLiteral("no point of the area converts");
        return result;
    }
    result.status = result.maxDifference <= toleranceMetres ? SystemCheckResult::Agree
                                                            : SystemCheckResult::Disagree;
    if (result.status == SystemCheckResult::Disagree)
        result.message = QStringLiteral("differs by %1 m").arg(result.maxDifference, 0, 'f', 4);
    return result;
}
