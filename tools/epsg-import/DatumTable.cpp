#include "DatumTable.h"

#include "EpsgCodes.h"
#include "ImportSession.h"
#include "UnitTable.h"

#include <QVariant>

using EpsgCodes::DatumWgs84;

bool DatumTable::Load(ImportSession& session, const UnitTable& units) {
    QSqlQuery q = session.SourceQuery();
    if (!session.Select(q, QStringLiteral("SELECT code, longitude, uom_code FROM prime_meridian "
                                          "WHERE auth_name = 'EPSG'")))
        return false;
    while (q.next()) {
        const auto degrees = units.ToDegrees(q.value(1).toDouble(), q.value(2).toInt());
        if (degrees)
            m_primeMeridians.insert(q.value(0).toInt(), *degrees);
    }
    if (!session.Select(q, QStringLiteral("SELECT code, name, ellipsoid_code, "
                                          "prime_meridian_code, deprecated FROM geodetic_datum "
                                          "WHERE auth_name = 'EPSG' AND ellipsoid_auth_name = "
                                          "'EPSG' AND prime_meridian_auth_name = 'EPSG'")))
        return false;
    while (q.next()) {
        m_datums.insert(q.value(0).toInt(), Datum{q.value(1).toString(), q.value(2).toInt(),
                                                  q.value(3).toInt(), q.value(4).toInt() != 0});
    }
    m_wgsDatums.insert(DatumWgs84);
    if (!session.Select(q, QStringLiteral("SELECT member_code FROM "
                                          "geodetic_datum_ensemble_member WHERE "
                                          "ensemble_auth_name = 'EPSG' AND ensemble_code = '6326' "
                                          "AND member_auth_name = 'EPSG'")))
        return false;
    while (q.next())
        m_wgsDatums.insert(q.value(0).toInt());
    if (!session.Select(q, QStringLiteral("SELECT code, datum_code FROM geodetic_crs WHERE "
                                          "auth_name = 'EPSG' AND datum_auth_name = 'EPSG'")))
        return false;
    while (q.next())
        m_crsDatums.insert(q.value(0).toInt(), q.value(1).toInt());
    // EPSG links such a datum to its twin by a longitude rotation (method 9601); the twin is
    // on the same ellipsoid and on Greenwich. The first such link in code order wins.
    if (!session.Select(
            q,
            QStringLiteral("SELECT s.datum_code, t.datum_code FROM other_transformation o JOIN "
                           "geodetic_crs s ON s.auth_name = o.source_crs_auth_name AND s.code = "
                           "o.source_crs_code JOIN geodetic_crs t ON t.auth_name = "
                           "o.target_crs_auth_name AND t.code = o.target_crs_code WHERE "
                           "o.auth_name = 'EPSG' AND o.deprecated = 0 AND o.method_auth_name = "
                           "'EPSG' AND o.method_code = '9601' AND s.datum_auth_name = 'EPSG' AND "
                           "t.datum_auth_name = 'EPSG' ORDER BY CAST(o.code AS INTEGER)")))
        return false;
    while (q.next()) {
        const int from = q.value(0).toInt();
        const int to = q.value(1).toInt();
        const Datum a = m_datums.value(from);
        const Datum b = m_datums.value(to);
        if (!m_greenwichTwins.contains(from) && a.ellipsoid == b.ellipsoid &&
            a.primeMeridian != b.primeMeridian && m_primeMeridians.value(b.primeMeridian) == 0)
            m_greenwichTwins.insert(from, to);
    }
    if (!m_datums.contains(DatumWgs84))
        return session.Fail(QStringLiteral("proj.db lacks the WGS 84 datum"));
    return true;
}

std::optional<double> DatumTable::PrimeMeridian(int code) const {
    const auto it = m_primeMeridians.constFind(code);
    if (it == m_primeMeridians.cend())
        return std::nullopt;
    return *it;
}
