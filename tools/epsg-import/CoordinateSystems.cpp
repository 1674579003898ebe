#include "CoordinateSystems.h"

#include "ConversionProjections.h"
#include "DatumTable.h"
#include "DatumTransformations.h"
#include "EpsgCodes.h"
#include "EpsgValues.h"
#include "ImportSession.h"
#include "ImportedNames.h"
#include "NameSet.h"
#include "UtmProjections.h"

#include "api/GeoKeys.h"
#include "store/Schema.h"
#include "util/UtmZones.h"

#include <QVariant>

using namespace EpsgCodes;
using EpsgValues::NotNull;

namespace CoordinateSystems {

namespace {

// The geoid methods a pre-defined system offers: keys 2 to 31 without the legacy ones
// (8 to 12) and the post-correction shift models (25, 29).
QString ReadOnlyGeoidKeys() {
    QStringList keys;
    for (int i = 2; i < GeoidmodelTypeKeyCount; ++i) {
        if ((i >= 8 && i <= 12) || i == 25 || i == 29)
            continue;
        keys << QString::fromWCharArray(GeoidmodelTypeKeys[i]);
    }
    return keys.join(u',');
}

// The groups, written when a system first falls into one.
class Groups {
public:
    explicit Groups(ImportSession& session)
        : m_session(session), m_insert(session.PrepareInsert(QStringLiteral(
                                  "INSERT INTO sysgroup (name, name_key) VALUES (?, ?)"))) {}

    // The id of the group; -1 when writing it failed (the session has the error).
    qint64 IdOf(const QString& group) {
        const QString key = OrvSchema::NameKey(group);
        if (const auto it = m_ids.constFind(key); it != m_ids.cend())
            return *it;
        BindNameAndKey(m_insert, group);
        if (!m_insert.exec()) {
            m_session.Fail(QStringLiteral("cannot write group %1").arg(group), m_insert);
            return -1;
        }
        const qint64 id = m_insert.lastInsertId().toLongLong();
        m_ids.insert(key, id);
        ++m_session.Counts().groups;
        return id;
    }

private:
    ImportSession& m_session;
    QSqlQuery m_insert;
    QHash<QString, qint64> m_ids; // by name key
};

// The transformations a system on datumCode may use: WGS 84's own, the datum's, or else its
// Greenwich twin's.
QList<DtfCandidate> CandidatesOf(int datumCode, const DatumTable& datums,
                                 const ImportedNames& names) {
    if (datums.IsWgs84(datumCode))
        return names.dtfsByDatum.value(DatumWgs84);
    QList<DtfCandidate> candidates = names.dtfsByDatum.value(datumCode);
    if (const int twin = datums.GreenwichTwin(datumCode); candidates.isEmpty() && twin != 0)
        candidates = names.dtfsByDatum.value(twin);
    return candidates;
}

} // namespace

bool Write(ImportSession& session, const DatumTable& datums, const UsageTable& usages,
           const ImportedNames& names, ConversionProjections& projections) {
    QSqlQuery q = session.SourceQuery();
    if (!session.Select(
            q, QStringLiteral("SELECT p.code, p.name, p.description, p.geodetic_crs_code, "
                              "p.conversion_code, (SELECT a.uom_code FROM axis a WHERE "
                              "a.coordinate_system_auth_name = p.coordinate_system_auth_name "
                              "AND a.coordinate_system_code = p.coordinate_system_code AND "
                              "a.coordinate_system_order = 1 AND a.uom_auth_name = 'EPSG') "
                              "FROM projected_crs p WHERE p.auth_name = 'EPSG' AND "
                              "p.deprecated = 0 AND p.geodetic_crs_auth_name = 'EPSG' AND "
                              "p.conversion_auth_name = 'EPSG' ORDER BY CAST(p.code AS "
                              "INTEGER)")))
        return false;
    QSqlQuery ins = session.PrepareInsert(QStringLiteral(
        "INSERT INTO coordsys (name, name_key, group_id, sat_ellipsoid, local_ellipsoid, "
        "dtf_name, projection_name, unit_name, prime_meridian, utm_zone_text, "
        "utm_hemisphere_text, geoid_keys, epsg_code, area, bbox_south, bbox_west, "
        "bbox_north, bbox_east, remarks) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, "
        "?, ?, ?, ?, ?)"));
    Groups groups(session);
    NameSet unique;
    const QString geoidKeys = ReadOnlyGeoidKeys();
    ImportCounts& counts = session.Counts();
    while (q.next()) {
        const int code = q.value(0).toInt();
        const int datumCode = datums.DatumOfCrs(q.value(3).toInt());
        const int convCode = q.value(4).toInt();
        const int axisUom = q.value(5).toInt();
        const Datum datum = datums.Find(datumCode);
        const QList<DtfCandidate> candidates = CandidatesOf(datumCode, datums, names);
        const auto primeMeridian = datums.PrimeMeridian(datum.primeMeridian);
        if (datumCode == 0 || datum.deprecated || candidates.isEmpty() ||
            !names.units.contains(axisUom) || !names.ellipsoids.contains(datum.ellipsoid) ||
            !primeMeridian) {
            ++counts.skippedSystems;
            continue;
        }
        const AreaOfUse use = usages.Of(UsageTable::Kind::ProjectedCrs, code);
        // A datum whose every Helmert transformation EPSG has replaced (by a grid, say) gets
        // no pre-defined system: a superseded transformation is no choice to sign.
        const DtfCandidate* dtf = DatumTransformations::Choose(candidates, use.box);
        if (!dtf) {
            ++counts.skippedSystems;
            ++counts.systemsWithoutCurrentDtf;
            continue;
        }

        // EPSG's own UTM conversions use the system's UTM zone projections.
        QString projection, zoneText, hemisphereText;
        const auto utm = UtmProjections::ZoneOfConversion(convCode);
        if (utm && axisUom == UomMetre) {
            projection = names.utmProjections.value(convCode);
            zoneText = UtmZones::ZoneText(utm->zone);
            hemisphereText = utm->south ? UtmZones::SouthernText() : UtmZones::NorthernText();
        } else {
            const auto written = projections.For(convCode, axisUom);
            if (!written) {
                if (session.Failed())
                    return false;
                ++counts.skippedSystems;
                continue;
            }
            projection = *written;
        }

        const qint64 groupId = groups.IdOf(EpsgValues::GroupOfArea(use.area));
        if (groupId < 0)
            return false;
        const QString name = unique.Unique(q.value(1).toString(), code);
        BindNameAndKey(ins, name);
        ins.addBindValue(groupId);
        ins.addBindValue(Wgs84Name);
        ins.addBindValue(names.ellipsoids.value(datum.ellipsoid));
        ins.addBindValue(dtf->name);
        ins.addBindValue(projection);
        ins.addBindValue(names.units.value(axisUom));
        ins.addBindValue(*primeMeridian);
        ins.addBindValue(NotNull(zoneText));
        ins.addBindValue(NotNull(hemisphereText));
        ins.addBindValue(geoidKeys);
        ins.addBindValue(code);
        ins.addBindValue(NotNull(use.area));
        // No box (NULL) where EPSG gives the area without one.
        for (double v : {use.box.south, use.box.west, use.box.north, use.box.east})
            ins.addBindValue(use.box.valid ? QVariant(v) : QVariant(QMetaType::fromType<double>()));
        ins.addBindValue(NotNull(EpsgValues::JoinTexts(use.scope, q.value(2).toString())));
        if (!ins.exec())
            return session.Fail(QStringLiteral("cannot write system %1").arg(name), ins);
        ++counts.systems;
    }
    return true;
}

} // namespace CoordinateSystems
