#include "AreaOfUse.h"

#include "ImportSession.h"

#include <QVariant>

#include <algorithm>

double Box::OverlapArea(const Box& other) const {
    if (!valid || !other.valid)
        return 0;
    const double lat = std::min(north, other.north) - std::max(south, other.south);
    if (lat < 0)
        return 0;
    double lon = 0;
    for (const auto& [w1, e1] : Intervals()) {
        for (const auto& [w2, e2] : other.Intervals())
            lon += std::max(0.0, std::min(e1, e2) - std::max(w1, w2));
    }
    return std::max(lat, 1e-9) * std::max(lon, 1e-9);
}

bool Box::Intersects(const Box& other) const {
    if (!valid || !other.valid)
        return false;
    if (std::min(north, other.north) < std::max(south, other.south))
        return false;
    for (const auto& [w1, e1] : Intervals()) {
        for (const auto& [w2, e2] : other.Intervals()) {
            if (std::min(e1, e2) >= std::max(w1, w2))
                return true;
        }
    }
    return false;
}

bool Box::Contains(const Box& other) const {
    // EPSG gives extents to a hundredth of a degree; a rounding difference is no gap.
    constexpr double Slack = 1e-6;
    if (!valid || !other.valid || other.south < south - Slack || other.north > north + Slack)
        return false;
    const auto mine = Intervals();
    for (const auto& theirs : other.Intervals()) {
        const bool covered = std::any_of(mine.begin(), mine.end(), [&](const auto& interval) {
            return interval.first <= theirs.first + Slack &&
                   theirs.second <= interval.second + Slack;
        });
        if (!covered)
            return false;
    }
    return true;
}

QList<std::pair<double, double>> Box::Intervals() const {
    if (west <= east)
        return {{west, east}};
    return {{west, 180.0}, {-180.0, east}};
}

bool UsageTable::Load(ImportSession& session) {
    QSqlQuery q = session.SourceQuery();
    if (!session.Select(q, QStringLiteral("SELECT code, name, south_lat, west_lon, north_lat, "
                                          "east_lon FROM extent WHERE auth_name = 'EPSG'")))
        return false;
    while (q.next()) {
        Extent extent;
        extent.name = q.value(1).toString();
        extent.box.valid = !q.value(2).isNull() && !q.value(3).isNull() && !q.value(4).isNull() &&
                           !q.value(5).isNull();
        extent.box.south = q.value(2).toDouble();
        extent.box.west = q.value(3).toDouble();
        extent.box.north = q.value(4).toDouble();
        extent.box.east = q.value(5).toDouble();
        m_extents.insert(q.value(0).toInt(), extent);
    }
    if (!session.Select(q, QStringLiteral("SELECT code, scope FROM scope WHERE auth_name = "
                                          "'EPSG'")))
        return false;
    while (q.next())
        m_scopes.insert(q.value(0).toInt(), q.value(1).toString());
    // Read from the last usage to the first, so the first one EPSG lists is what stays.
    if (!session.Select(
            q, QStringLiteral("SELECT object_table_name, object_code, extent_code, scope_code "
                              "FROM usage WHERE object_auth_name = 'EPSG' AND extent_auth_name "
                              "= 'EPSG' AND object_table_name IN ('projected_crs', "
                              "'helmert_transformation', 'conversion') ORDER BY CAST(code AS "
                              "INTEGER) DESC")))
        return false;
    while (q.next()) {
        const QString table = q.value(0).toString();
        const Kind kind = table == QLatin1String("projected_crs") ? Kind::ProjectedCrs
                          : table == QLatin1String("conversion")  ? Kind::Conversion
                                                                  : Kind::HelmertTransformation;
        m_usages[static_cast<int>(kind)].insert(q.value(1).toInt(),
                                                Usage{q.value(2).toInt(), q.value(3).toInt()});
    }
    return true;
}

AreaOfUse UsageTable::Of(Kind kind, int code) const {
    const QHash<int, Usage>& usages = m_usages[static_cast<int>(kind)];
    const auto it = usages.constFind(code);
    if (it == usages.cend())
        return {};
    const Extent extent = m_extents.value(it->extent);
    return AreaOfUse{extent.name, m_scopes.value(it->scope), extent.box};
}
