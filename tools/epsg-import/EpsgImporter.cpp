#include "EpsgImporter.h"

#include "EpsgValues.h"

#include "api/GeoKeys.h"
#include "api/GeoTypes.h"
#include "api/ProjectionMethods.h"
#include "store/Schema.h"
#include "util/GeoFormat.h"
#include "util/UtmZones.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>

namespace {

// EPSG codes the import relies on.
constexpr int UomMetre = 9001;
constexpr int UomArcSecond = 9104;
constexpr int UomPpm = 9202;
constexpr int UomMetrePerYear = 1042;
constexpr int UomArcSecondPerYear = 1043;
constexpr int UomPpmPerYear = 1041;
constexpr int UomYear = 1029;
constexpr int UomDegree = 9102;
constexpr int DatumWgs84 = 6326;
constexpr int EllipsoidWgs84 = 7030;
constexpr int UtmNorthFirst = 16001; // UTM zone 1N; 16101 is zone 1S
constexpr int UtmSouthFirst = 16101;
constexpr int MethodTransverseMercator = 9807;

const QString Wgs84Name = QStringLiteral("WGS 84");
const QString Wgs84DtfName = QStringLiteral("WGS 84 to WGS 84");
const QString MetreName = QStringLiteral("Meters");

// Helmert methods by the method index they map to.
int DtfMethodIndexOf(int epsgMethod) {
    switch (epsgMethod) {
    case 9603: // geocentric translations (geog2D, geocentric, geog3D domain)
    case 1031:
    case 1035:
    case 9606: // position vector
    case 1033:
    case 1037:
        return DTF_7_POSITION_VECTOR;
    case 9607: // coordinate frame
    case 1032:
    case 1038:
        return DTF_7_COORDINATE_FRAME;
    case 1053: // time-dependent position vector
    case 1054:
    case 1055:
        return DTF_15_POSITION_VECTOR;
    case 1056: // time-dependent coordinate frame
    case 1057:
    case 1058:
        return DTF_15_COORDINATE_FRAME;
    default:
        return DTF_NONE;
    }
}

struct Uom {
    QString name;
    QString type; // length, angle, scale, time
    std::optional<double> factor;
    bool deprecated = false;
};

// A latitude band and one or two longitude intervals (two when the box crosses 180°).
struct Box {
    bool valid = false;
    double south = 0, west = 0, north = 0, east = 0;

    double OverlapArea(const Box& other) const {
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
        // Line and point boxes keep a tiny area, so that containment still works for them.
        return std::max(lat, 1e-9) * std::max(lon, 1e-9);
    }
    bool Intersects(const Box& other) const {
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
    QList<std::pair<double, double>> Intervals() const {
        if (west <= east)
            return {{west, east}};
        return {{west, 180.0}, {-180.0, east}};
    }
};

struct Extent {
    QString name;
    Box box;
};

struct Usage {
    int extent = 0;
    int scope = 0;
};

struct Datum {
    QString name;
    int ellipsoid = 0;
    int primeMeridian = 0;
    bool deprecated = false;
};

struct DtfCandidate {
    QString name;
    double accuracy = 0; // 0 unknown
    int code = 0;
    Box box;
};

struct ConvParam {
    int code = 0;
    double value = 0;
    int uom = 0;
};

struct Conversion {
    QString name;
    QString description;
    int method = 0;
    QList<ConvParam> params;
};

// Keeps names unique by their case-folded key; a clash gets the EPSG code appended.
class NameSet {
public:
    QString Unique(const QString& name, int epsgCode) {
        QString result = name;
        if (m_keys.contains(OrvSchema::NameKey(result)))
            result = QStringLiteral("%1 (EPSG:%2)").arg(name).arg(epsgCode);
        for (int n = 2; m_keys.contains(OrvSchema::NameKey(result)); ++n)
            result = QStringLiteral("%1 (EPSG:%2, %3)").arg(name).arg(epsgCode).arg(n);
        m_keys.insert(OrvSchema::NameKey(result));
        return result;
    }

private:
    QSet<QString> m_keys;
};

// Text columns are NOT NULL: a missing EPSG text is stored empty.
QString NotNull(const QString& text) {
    return text.isNull() ? QStringLiteral("") : text;
}

QString JoinTexts(const QString& first, const QString& second) {
    if (first.isEmpty())
        return second;
    if (second.isEmpty())
        return first;
    return first + u'\n' + second;
}

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

class Import {
public:
    Import(QSqlDatabase& src, QSqlDatabase& dst, EpsgImporter::Counts& counts)
        : m_src(src), m_dst(dst), m_counts(counts) {}

    bool Run(QString& error, QString& epsgVersion) {
        m_geoidKeys = ReadOnlyGeoidKeys();
        const bool ok = ReadVersion(epsgVersion) && LoadUoms() && LoadExtentsAndUsages() &&
                        LoadDatums() && WriteEllipsoids() && WriteUnits() && WriteDtfs() &&
                        WriteUtmProjections() && LoadConversions() && WriteSystems();
        if (!ok)
            error = m_error;
        return ok;
    }

private:
    // --- helpers ---

    bool Fail(const QString& what, const QSqlQuery& query) {
        m_error = QStringLiteral("%1: %2").arg(what, query.lastError().text());
        return false;
    }
    bool Select(QSqlQuery& query, const QString& sql) {
        query.setForwardOnly(true);
        if (!query.exec(sql))
            return Fail(QStringLiteral("cannot read proj.db"), query);
        return true;
    }

    // value in unit uom, expressed in unit target (both of the same kind).
    std::optional<double> Convert(double value, int uom, int target) const {
        if (uom == target)
            return value; // exactly as published
        const auto from = m_uoms.value(uom).factor;
        const auto to = m_uoms.value(target).factor;
        if (!from || !to || *to == 0)
            return std::nullopt;
        return value * *from / *to;
    }
    std::optional<double> ToDegrees(double value, int uom) const {
        if (uom == UomDegree)
            return value;
        if (uom == EpsgValues::UomSexagesimalDms || uom == EpsgValues::UomSexagesimalDmsS)
            return EpsgValues::SexagesimalToDegrees(value, true);
        if (uom == EpsgValues::UomSexagesimalDm)
            return EpsgValues::SexagesimalToDegrees(value, false);
        if (m_uoms.value(uom).type != QLatin1String("angle"))
            return std::nullopt;
        return Convert(value, uom, UomDegree); // by the ratio of proj.db's factors
    }
    int UsageOf(const QHash<int, Usage>& usages, int code, QString& area, QString& scope,
                Box& box) const {
        const auto it = usages.constFind(code);
        if (it == usages.cend())
            return 0;
        const Extent extent = m_extents.value(it->extent);
        area = extent.name;
        box = extent.box;
        scope = m_scopes.value(it->scope);
        return it->extent;
    }

    // --- reading proj.db ---

    bool ReadVersion(QString& version) {
        QSqlQuery q(m_src);
        if (!q.exec(QStringLiteral("SELECT value FROM metadata WHERE key = 'EPSG.VERSION'")))
            return Fail(QStringLiteral("not a PROJ database (no metadata table)"), q);
        if (q.next())
            version = q.value(0).toString();
        return true;
    }

    bool LoadUoms() {
        QSqlQuery q(m_src);
        if (!Select(q, QStringLiteral("SELECT code, name, type, conv_factor, deprecated FROM "
                                      "unit_of_measure WHERE auth_name = 'EPSG'")))
            return false;
        while (q.next()) {
            Uom uom;
            uom.name = q.value(1).toString();
            uom.type = q.value(2).toString();
            if (!q.value(3).isNull())
                uom.factor = q.value(3).toDouble();
            uom.deprecated = q.value(4).toInt() != 0;
            m_uoms.insert(q.value(0).toInt(), uom);
        }
        for (int needed : {UomMetre, UomArcSecond, UomPpm, UomMetrePerYear, UomArcSecondPerYear,
                           UomPpmPerYear, UomYear}) {
            if (!m_uoms.value(needed).factor) {
                m_error = QStringLiteral("proj.db lacks the EPSG unit %1").arg(needed);
                return false;
            }
        }
        return true;
    }

    bool LoadExtentsAndUsages() {
        QSqlQuery q(m_src);
        if (!Select(q, QStringLiteral("SELECT code, name, south_lat, west_lon, north_lat, "
                                      "east_lon FROM extent WHERE auth_name = 'EPSG'")))
            return false;
        while (q.next()) {
            Extent extent;
            extent.name = q.value(1).toString();
            extent.box.valid = !q.value(2).isNull() && !q.value(3).isNull() &&
                               !q.value(4).isNull() && !q.value(5).isNull();
            extent.box.south = q.value(2).toDouble();
            extent.box.west = q.value(3).toDouble();
            extent.box.north = q.value(4).toDouble();
            extent.box.east = q.value(5).toDouble();
            m_extents.insert(q.value(0).toInt(), extent);
        }
        if (!Select(q, QStringLiteral("SELECT code, scope FROM scope WHERE auth_name = 'EPSG'")))
            return false;
        while (q.next())
            m_scopes.insert(q.value(0).toInt(), q.value(1).toString());
        // An object may have several usages: the first one EPSG lists is kept.
        if (!Select(q, QStringLiteral(
                           "SELECT object_table_name, object_code, extent_code, scope_code FROM "
                           "usage WHERE object_auth_name = 'EPSG' AND extent_auth_name = 'EPSG' "
                           "AND object_table_name IN ('projected_crs', 'helmert_transformation', "
                           "'conversion') ORDER BY CAST(code AS INTEGER) DESC")))
            return false;
        while (q.next()) {
            const QString table = q.value(0).toString();
            QHash<int, Usage>& usages = table == QLatin1String("projected_crs") ? m_crsUsages
                                        : table == QLatin1String("conversion")  ? m_conversionUsages
                                                                                : m_helmertUsages;
            usages.insert(q.value(1).toInt(), Usage{q.value(2).toInt(), q.value(3).toInt()});
        }
        return true;
    }

    bool LoadDatums() {
        QSqlQuery q(m_src);
        if (!Select(q, QStringLiteral("SELECT code, longitude, uom_code FROM prime_meridian "
                                      "WHERE auth_name = 'EPSG'")))
            return false;
        while (q.next()) {
            const auto degrees = ToDegrees(q.value(1).toDouble(), q.value(2).toInt());
            if (degrees)
                m_primeMeridians.insert(q.value(0).toInt(), *degrees);
        }
        if (!Select(q, QStringLiteral("SELECT code, name, ellipsoid_code, prime_meridian_code, "
                                      "deprecated FROM geodetic_datum WHERE auth_name = 'EPSG' "
                                      "AND ellipsoid_auth_name = 'EPSG' AND "
                                      "prime_meridian_auth_name = 'EPSG'")))
            return false;
        while (q.next()) {
            m_datums.insert(q.value(0).toInt(), Datum{q.value(1).toString(), q.value(2).toInt(),
                                                      q.value(3).toInt(), q.value(4).toInt() != 0});
        }
        // WGS 84 is the ensemble and each of its realisations.
        m_wgsDatums.insert(DatumWgs84);
        if (!Select(q, QStringLiteral("SELECT member_code FROM geodetic_datum_ensemble_member "
                                      "WHERE ensemble_auth_name = 'EPSG' AND ensemble_code = "
                                      "'6326' AND member_auth_name = 'EPSG'")))
            return false;
        while (q.next())
            m_wgsDatums.insert(q.value(0).toInt());
        if (!Select(q, QStringLiteral("SELECT code, datum_code FROM geodetic_crs WHERE "
                                      "auth_name = 'EPSG' AND datum_auth_name = 'EPSG'")))
            return false;
        while (q.next())
            m_crsDatums.insert(q.value(0).toInt(), q.value(1).toInt());
        // A datum on a prime meridian other than Greenwich takes the transformations of its
        // Greenwich twin, which EPSG links to it by a longitude rotation (method 9601).
        if (!Select(q, QStringLiteral(
                           "SELECT s.datum_code, t.datum_code FROM other_transformation o JOIN "
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
        if (!m_datums.contains(DatumWgs84)) {
            m_error = QStringLiteral("proj.db lacks the WGS 84 datum");
            return false;
        }
        return true;
    }

    // --- writing ---

    bool WriteEllipsoids() {
        QSqlQuery q(m_src);
        if (!Select(q, QStringLiteral(
                           "SELECT e.code, e.name, e.description, e.semi_major_axis, e.uom_code, "
                           "e.inv_flattening, e.semi_minor_axis FROM ellipsoid e JOIN "
                           "celestial_body c ON c.auth_name = e.celestial_body_auth_name AND "
                           "c.code = e.celestial_body_code WHERE e.auth_name = 'EPSG' AND "
                           "e.deprecated = 0 AND c.name = 'Earth' ORDER BY CAST(e.code AS "
                           "INTEGER)")))
            return false;
        QSqlQuery ins(m_dst);
        ins.prepare(QStringLiteral(
            "INSERT INTO ellipsoid (name, name_key, semi_major, semi_minor, inv_flattening, "
            "flattening, ecc_squared, second_ecc_squared, epsg_code, remarks) "
            "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"));
        NameSet names;
        while (q.next()) {
            const int code = q.value(0).toInt();
            const int uom = q.value(4).toInt();
            const auto a = Convert(q.value(3).toDouble(), uom, UomMetre);
            if (!a)
                continue;
            double b = *a;
            double invF = 0;
            if (!q.value(5).isNull()) {
                invF = q.value(5).toDouble();
                b = invF == 0 ? *a : *a * (1 - 1 / invF);
            } else {
                b = Convert(q.value(6).toDouble(), uom, UomMetre).value_or(*a);
                invF = b == *a ? 0 : *a / (*a - b);
            }
            const double f = invF == 0 ? 0 : 1 / invF;
            const double e2 = (*a * *a - b * b) / (*a * *a);
            const double e2b = (*a * *a - b * b) / (b * b);
            const QString name = names.Unique(q.value(1).toString(), code);
            ins.addBindValue(name);
            ins.addBindValue(OrvSchema::NameKey(name));
            for (double v : {*a, b, invF, f, e2, e2b})
                ins.addBindValue(v);
            ins.addBindValue(code);
            ins.addBindValue(NotNull(q.value(2).toString()));
            if (!ins.exec())
                return Fail(QStringLiteral("cannot write ellipsoid %1").arg(name), ins);
            m_ellipsoidNames.insert(code, name);
            ++m_counts.ellipsoids;
        }
        if (!m_ellipsoidNames.contains(EllipsoidWgs84) ||
            m_ellipsoidNames.value(EllipsoidWgs84) != Wgs84Name) {
            m_error = QStringLiteral("proj.db lacks the WGS 84 ellipsoid");
            return false;
        }
        return true;
    }

    bool WriteUnits() {
        QSqlQuery ins(m_dst);
        ins.prepare(QStringLiteral("INSERT INTO unit (name, name_key, meters_per_unit, suffix, "
                                   "description, category, epsg_code) VALUES (?, ?, ?, ?, ?, ?, "
                                   "?)"));
        QList<int> codes = m_uoms.keys();
        std::sort(codes.begin(), codes.end());
        NameSet names;
        for (int code : codes) {
            const Uom& uom = m_uoms[code];
            // Rates ("metres per year") share the length type in proj.db.
            if (uom.type != QLatin1String("length") || uom.deprecated || !uom.factor ||
                uom.name.contains(QLatin1String(" per ")))
                continue;
            const QString name = names.Unique(code == UomMetre ? MetreName : uom.name, code);
            QString suffix = EpsgValues::UnitSuffix(code);
            if (suffix.isEmpty())
                suffix = uom.name;
            ins.addBindValue(name);
            ins.addBindValue(OrvSchema::NameKey(name));
            ins.addBindValue(*uom.factor);
            ins.addBindValue(suffix);
            ins.addBindValue(QStringLiteral("%1, %2 metres (EPSG unit %3)")
                                 .arg(uom.name, EpsgValues::FormatPlain(*uom.factor))
                                 .arg(code));
            ins.addBindValue(UNIT_CATEGORY_LENGTH);
            ins.addBindValue(code);
            if (!ins.exec())
                return Fail(QStringLiteral("cannot write unit %1").arg(name), ins);
            m_unitNames.insert(code, name);
            ++m_counts.units;
        }
        if (!m_unitNames.contains(UomMetre)) {
            m_error = QStringLiteral("proj.db lacks the metre");
            return false;
        }
        return true;
    }

    bool WriteDtf(const QString& name, const QString& dstEllipsoid, int method, const DtfValues& v,
                  double accuracy, int code, int option, double obsEpoch,
                  const QString& description, const QString& extra, const QString& datum) {
        QSqlQuery& ins = m_dtfInsert;
        ins.addBindValue(name);
        ins.addBindValue(OrvSchema::NameKey(name));
        ins.addBindValue(Wgs84Name);
        ins.addBindValue(OrvSchema::NameKey(Wgs84Name));
        ins.addBindValue(dstEllipsoid);
        ins.addBindValue(OrvSchema::NameKey(dstEllipsoid));
        ins.addBindValue(method);
        for (double value : v)
            ins.addBindValue(value);
        ins.addBindValue(accuracy);
        ins.addBindValue(code);
        ins.addBindValue(option);
        ins.addBindValue(obsEpoch);
        ins.addBindValue(NotNull(description));
        ins.addBindValue(NotNull(extra));
        ins.addBindValue(NotNull(datum));
        if (!ins.exec())
            return Fail(QStringLiteral("cannot write datum transformation %1").arg(name), ins);
        ++m_counts.dtfs;
        return true;
    }

    bool WriteDtfs() {
        m_dtfInsert = QSqlQuery(m_dst);
        m_dtfInsert.prepare(QStringLiteral(
            "INSERT INTO dtf (name, name_key, src_ellipsoid, src_ellipsoid_key, dst_ellipsoid, "
            "dst_ellipsoid_key, method_index, tx, ty, tz, rx, ry, rz, ds, dtx, dty, dtz, drx, "
            "dry, drz, dds, epoch, accuracy, epsg_code, option, obs_epoch, description, "
            "extra_text, local_datum) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, "
            "?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"));
        NameSet& names = m_dtfNames;
        const QString wgsName = names.Unique(Wgs84DtfName, 0);
        if (!WriteDtf(wgsName, Wgs84Name, DTF_NONE, DtfValues{}, 0, 0, 0, 0,
                      QStringLiteral("No datum transformation: the system is on WGS 84."),
                      QStringLiteral("World"), m_datums.value(DatumWgs84).name))
            return false;

        QSqlQuery q(m_src);
        if (!Select(q, QStringLiteral(
                           "SELECT code, name, description, method_code, source_crs_code, "
                           "target_crs_code, accuracy, tx, ty, tz, translation_uom_code, rx, ry, "
                           "rz, rotation_uom_code, scale_difference, scale_difference_uom_code, "
                           "rate_tx, rate_ty, rate_tz, rate_translation_uom_code, rate_rx, "
                           "rate_ry, rate_rz, rate_rotation_uom_code, rate_scale_difference, "
                           "rate_scale_difference_uom_code, epoch, epoch_uom_code FROM "
                           "helmert_transformation_table WHERE auth_name = 'EPSG' AND "
                           "deprecated = 0 AND method_auth_name = 'EPSG' AND "
                           "source_crs_auth_name = 'EPSG' AND target_crs_auth_name = 'EPSG' "
                           "ORDER BY CAST(code AS INTEGER)")))
            return false;
        while (q.next()) {
            const int method = DtfMethodIndexOf(q.value(3).toInt());
            if (method == DTF_NONE)
                continue;
            const int srcDatum = m_crsDatums.value(q.value(4).toInt());
            const int dstDatum = m_crsDatums.value(q.value(5).toInt());
            const bool srcWgs = m_wgsDatums.contains(srcDatum);
            const bool dstWgs = m_wgsDatums.contains(dstDatum);
            if (srcWgs == dstWgs || srcDatum == 0 || dstDatum == 0)
                continue; // not between WGS 84 and a local datum
            const int localCode = srcWgs ? dstDatum : srcDatum;
            const Datum local = m_datums.value(localCode);
            if (local.deprecated || !m_ellipsoidNames.contains(local.ellipsoid))
                continue;

            // Values as published, in metres, arc-seconds, ppm, per year, decimal year.
            DtfValues v{};
            bool ok = true;
            auto take = [&](int index, int column, int uomColumn, int target) {
                if (q.value(column).isNull())
                    return;
                const auto value =
                    Convert(q.value(column).toDouble(), q.value(uomColumn).toInt(), target);
                if (value)
                    v[static_cast<std::size_t>(index)] = *value;
                else
                    ok = false;
            };
            for (int i = 0; i < 3; ++i) {
                take(i, 7 + i, 10, UomMetre);
                take(3 + i, 11 + i, 14, UomArcSecond);
                take(7 + i, 17 + i, 20, UomMetrePerYear);
                take(10 + i, 21 + i, 24, UomArcSecondPerYear);
            }
            take(6, 15, 16, UomPpm);
            take(13, 25, 26, UomPpmPerYear);
            take(14, 27, 28, UomYear);
            if (!ok)
                continue; // a unit without a factor: not convertible

            const int code = q.value(0).toInt();
            QString area, scope;
            Box box;
            UsageOf(m_helmertUsages, code, area, scope, box);
            const QString name = names.Unique(q.value(1).toString(), code);
            const double accuracy = q.value(6).isNull() ? 0 : q.value(6).toDouble();
            // Local -> WGS 84 as published is applied inverted by the engine.
            const int option = srcWgs ? 0 : DTF_OPTION_PUBLISHED_TO_WGS84;
            const bool timeDependent =
                method == DTF_15_POSITION_VECTOR || method == DTF_15_COORDINATE_FRAME;
            if (!WriteDtf(name, m_ellipsoidNames.value(local.ellipsoid), method, v, accuracy, code,
                          option, timeDependent ? v[14] : 0.0,
                          JoinTexts(scope, q.value(2).toString()), area, local.name))
                return false;
            m_dtfsByDatum[localCode].append(DtfCandidate{name, accuracy, code, box});
        }
        m_dtfsByDatum[DatumWgs84].append(DtfCandidate{wgsName, 0, 0, {}});
        return true;
    }

    bool LoadConversions() {
        QSqlQuery q(m_src);
        QSqlQuery names(m_src);
        if (!Select(names, QStringLiteral("SELECT code, name FROM conversion_param WHERE "
                                          "auth_name = 'EPSG'")))
            return false;
        while (names.next())
            m_paramNames.insert(names.value(0).toInt(), names.value(1).toString());
        QString sql = QStringLiteral("SELECT code, name, description, method_code");
        for (int i = 1; i <= 7; ++i)
            sql += QStringLiteral(", param%1_code, param%1_value, param%1_uom_code").arg(i);
        sql += QStringLiteral(" FROM conversion_table WHERE auth_name = 'EPSG' AND deprecated = "
                              "0 AND method_auth_name = 'EPSG'");
        if (!Select(q, sql))
            return false;
        while (q.next()) {
            Conversion conv;
            conv.name = q.value(1).toString();
            conv.description = q.value(2).toString();
            conv.method = q.value(3).toInt();
            for (int i = 0; i < 7; ++i) {
                const int column = 4 + 3 * i;
                if (q.value(column).isNull() || q.value(column + 1).isNull())
                    continue;
                conv.params.append(ConvParam{q.value(column).toInt(),
                                             q.value(column + 1).toDouble(),
                                             q.value(column + 2).toInt()});
            }
            m_conversions.insert(q.value(0).toInt(), conv);
        }
        return true;
    }

    struct Row {
        QString name;
        double value = 0;
        QString text;
        unsigned type = PRM_PLAIN;
    };

    bool InsertProjection(const QString& name, int methodId, const QString& unitName, int code,
                          int epsgMethod, const QString& description, const QList<Row>& rows) {
        QSqlQuery& ins = m_prjInsert;
        ins.addBindValue(name);
        ins.addBindValue(OrvSchema::NameKey(name));
        ins.addBindValue(methodId);
        ins.addBindValue(unitName);
        ins.addBindValue(code);
        ins.addBindValue(epsgMethod);
        ins.addBindValue(NotNull(description));
        if (!ins.exec())
            return Fail(QStringLiteral("cannot write projection %1").arg(name), ins);
        const qint64 id = ins.lastInsertId().toLongLong();
        for (int i = 0; i < rows.size(); ++i) {
            QSqlQuery& p = m_paramInsert;
            p.addBindValue(id);
            p.addBindValue(i);
            p.addBindValue(rows[i].name);
            p.addBindValue(rows[i].value);
            p.addBindValue(NotNull(rows[i].text));
            p.addBindValue(rows[i].type);
            if (!p.exec())
                return Fail(QStringLiteral("cannot write the parameters of %1").arg(name), p);
        }
        ++m_counts.projections;
        return true;
    }

    static QString AngleText(double degrees, unsigned type) {
        QString text;
        if (FormatGeogs(degrees, 7, 7, type == PRM_LATITUDE ? 10 : 11, text, true, true))
            return text;
        return EpsgValues::FormatPlain(degrees);
    }

    bool WriteUtmProjections() {
        m_prjInsert = QSqlQuery(m_dst);
        m_prjInsert.prepare(QStringLiteral(
            "INSERT INTO projection (name, name_key, method_id, unit_name, epsg_code, "
            "epsg_method_code, description) VALUES (?, ?, ?, ?, ?, ?, ?)"));
        m_paramInsert = QSqlQuery(m_dst);
        m_paramInsert.prepare(QStringLiteral("INSERT INTO projection_param (projection_id, ord, "
                                             "name, value, value_text, type) VALUES (?, ?, ?, "
                                             "?, ?, ?)"));
        const ProjectionMethods::Method* utm = ProjectionMethods::ById(ProjectionMethods::UtmId);
        for (int south = 0; south < 2; ++south) {
            for (int zone = 1; zone <= UtmZones::ZoneCount; ++zone) {
                const QString name =
                    m_prjNames.Unique(QStringLiteral("UTM Zone-%1%2")
                                          .arg(zone)
                                          .arg(south ? QStringLiteral("S") : QStringLiteral("N")),
                                      0);
                QList<Row> rows;
                for (const ProjectionMethods::Param& param : utm->params) {
                    Row row{QString::fromLatin1(param.name), param.defaultValue, {}, param.type};
                    if (param.epsgCode == 8802)
                        row.value = UtmZones::CentralMeridian(zone);
                    else if (param.epsgCode == 8807)
                        row.value = south ? 10000000.0 : 0.0;
                    if (row.name ==
                        QString::fromWCharArray(projectionParamKeys[ProjectionParamZoneKey])) {
                        row.value = zone;
                        row.text = UtmZones::ZoneText(zone);
                    } else if (row.name == QString::fromWCharArray(
                                               projectionParamKeys[ProjectionParamHemisphereKey])) {
                        row.value = south;
                        row.text = south ? UtmZones::SouthernText() : UtmZones::NorthernText();
                    } else if (row.type == PRM_LATITUDE || row.type == PRM_LONGITUDE) {
                        row.text = AngleText(row.value, row.type);
                    } else {
                        row.text = EpsgValues::FormatPlain(row.value);
                    }
                    rows.append(row);
                }
                const int code = (south ? UtmSouthFirst : UtmNorthFirst) + zone - 1;
                const QString description =
                    QStringLiteral("Universal Transverse Mercator zone %1, %2 hemisphere")
                        .arg(zone)
                        .arg(south ? QStringLiteral("southern") : QStringLiteral("northern"));
                if (!InsertProjection(name, ProjectionMethods::UtmId, MetreName, code,
                                      MethodTransverseMercator, description, rows))
                    return false;
                m_utmNames.insert(code, name);
            }
        }
        return true;
    }

    // The projection of a conversion in a unit, written on first use.
    std::optional<QString> ProjectionFor(int convCode, int axisUom, QString& why) {
        const QString key = QStringLiteral("%1:%2").arg(convCode).arg(axisUom);
        if (const auto it = m_projections.constFind(key); it != m_projections.cend())
            return *it;
        const auto conv = m_conversions.constFind(convCode);
        if (conv == m_conversions.cend()) {
            why = QStringLiteral("conversion %1 not found").arg(convCode);
            return std::nullopt;
        }
        const ProjectionMethods::Method* method = ProjectionMethods::ByEpsgCode(conv->method);
        QList<Row> rows;
        auto rowOf = [&](const ConvParam& p, unsigned type, const QString& name) -> bool {
            Row row{name, p.value, {}, type};
            const Uom uom = m_uoms.value(p.uom);
            if (uom.type == QLatin1String("angle")) {
                const auto degrees = ToDegrees(p.value, p.uom);
                if (!degrees)
                    return false;
                row.value = *degrees;
            } else if (uom.type == QLatin1String("length")) {
                const auto value = Convert(p.value, p.uom, axisUom);
                if (!value)
                    return false;
                row.value = *value;
            } else if (uom.type == QLatin1String("scale")) {
                row.value = p.value * uom.factor.value_or(1.0);
            }
            row.text = type == PRM_LATITUDE || type == PRM_LONGITUDE
                           ? AngleText(row.value, type)
                           : EpsgValues::FormatPlain(row.value);
            rows.append(row);
            return true;
        };
        if (method->id == ProjectionMethods::NotImplementedId) {
            for (const ConvParam& p : conv->params) {
                const QString name = m_paramNames.value(p.code);
                const QString kind = m_uoms.value(p.uom).type;
                unsigned type = PRM_PLAIN;
                if (kind == QLatin1String("length"))
                    type = PRM_LENGTH;
                else if (kind == QLatin1String("scale"))
                    type = PRM_SCALE;
                else if (kind == QLatin1String("angle") &&
                         name.contains(QLatin1String("longitude"), Qt::CaseInsensitive))
                    type = PRM_LONGITUDE;
                else if (kind == QLatin1String("angle") &&
                         name.contains(QLatin1String("latitude"), Qt::CaseInsensitive) &&
                         !name.startsWith(QLatin1String("Co-latitude")))
                    type = PRM_LATITUDE;
                if (rows.size() == PrjParamBlock::MaxParams)
                    break;
                if (!rowOf(p, type, name)) {
                    why = QStringLiteral("unit %1 of %2 not convertible").arg(p.uom).arg(name);
                    return std::nullopt;
                }
            }
        } else {
            for (const ProjectionMethods::Param& param : method->params) {
                const QString name = QString::fromLatin1(param.name);
                const auto found =
                    std::find_if(conv->params.cbegin(), conv->params.cend(),
                                 [&](const ConvParam& p) { return p.code == param.epsgCode; });
                if (found == conv->params.cend()) {
                    // EPSG leaves out nothing the method lists; keep the method's default.
                    rows.append(Row{name, param.defaultValue,
                                    param.type == PRM_LATITUDE || param.type == PRM_LONGITUDE
                                        ? AngleText(param.defaultValue, param.type)
                                        : EpsgValues::FormatPlain(param.defaultValue),
                                    param.type});
                } else if (!rowOf(*found, param.type, name)) {
                    why = QStringLiteral("unit %1 of %2 not convertible").arg(found->uom).arg(name);
                    return std::nullopt;
                }
            }
        }
        // A conversion used in two units becomes two projections; the second carries its unit.
        const QString unitName = m_unitNames.value(axisUom);
        QString wanted = conv->name;
        if (m_convUnitSeen.contains(convCode))
            wanted += QStringLiteral(" (%1)").arg(unitName);
        m_convUnitSeen.insert(convCode);
        const QString name = m_prjNames.Unique(wanted, convCode);
        QString area, scope;
        Box box;
        UsageOf(m_conversionUsages, convCode, area, scope, box);
        if (!InsertProjection(name, method->id, unitName, convCode, conv->method,
                              JoinTexts(conv->description, scope), rows))
            return std::nullopt;
        m_projections.insert(key, name);
        return name;
    }

    // The datum transformation of a system, ranked as PROJ ranks the candidates for an area
    // of interest: those whose area of use meets the system's first, then the larger
    // overlap (areas within 1 % count as equal), then the better published accuracy
    // (unknown last), then the lower EPSG code.
    static const DtfCandidate* ChooseDtf(const QList<DtfCandidate>& candidates, const Box& area) {
        struct Rank {
            bool meets;
            double overlap;
            double accuracy;
            int code;
        };
        auto rankOf = [&](const DtfCandidate& c) {
            return Rank{c.box.Intersects(area), c.box.OverlapArea(area),
                        c.accuracy > 0 ? c.accuracy : std::numeric_limits<double>::infinity(),
                        c.code};
        };
        auto better = [](const Rank& a, const Rank& b) {
            if (a.meets != b.meets)
                return a.meets;
            if (std::abs(a.overlap - b.overlap) > 0.01 * std::max(a.overlap, b.overlap))
                return a.overlap > b.overlap;
            if (a.accuracy != b.accuracy)
                return a.accuracy < b.accuracy;
            return a.code < b.code;
        };
        const DtfCandidate* best = nullptr;
        Rank bestRank{};
        for (const DtfCandidate& c : candidates) {
            const Rank rank = rankOf(c);
            if (!best || better(rank, bestRank)) {
                best = &c;
                bestRank = rank;
            }
        }
        return best;
    }

    bool WriteSystems() {
        QSqlQuery q(m_src);
        if (!Select(q, QStringLiteral(
                           "SELECT p.code, p.name, p.description, p.geodetic_crs_code, "
                           "p.conversion_code, (SELECT a.uom_code FROM axis a WHERE "
                           "a.coordinate_system_auth_name = p.coordinate_system_auth_name AND "
                           "a.coordinate_system_code = p.coordinate_system_code AND "
                           "a.coordinate_system_order = 1 AND a.uom_auth_name = 'EPSG') FROM "
                           "projected_crs p WHERE p.auth_name = 'EPSG' AND p.deprecated = 0 AND "
                           "p.geodetic_crs_auth_name = 'EPSG' AND p.conversion_auth_name = "
                           "'EPSG' ORDER BY CAST(p.code AS INTEGER)")))
            return false;
        QSqlQuery ins(m_dst);
        ins.prepare(QStringLiteral(
            "INSERT INTO coordsys (name, name_key, group_id, sat_ellipsoid, local_ellipsoid, "
            "dtf_name, projection_name, unit_name, prime_meridian, utm_zone_text, "
            "utm_hemisphere_text, geoid_keys, epsg_code, area, bbox_south, bbox_west, "
            "bbox_north, bbox_east, remarks) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, "
            "?, ?, ?, ?, ?)"));
        QSqlQuery groupIns(m_dst);
        groupIns.prepare(QStringLiteral("INSERT INTO sysgroup (name, name_key) VALUES (?, ?)"));
        QHash<QString, qint64> groups; // by name key
        NameSet names;
        while (q.next()) {
            const int code = q.value(0).toInt();
            const int datumCode = m_crsDatums.value(q.value(3).toInt());
            const int convCode = q.value(4).toInt();
            const int axisUom = q.value(5).toInt();
            const Datum datum = m_datums.value(datumCode);
            const bool onWgs = m_wgsDatums.contains(datumCode);
            QList<DtfCandidate> candidates = m_dtfsByDatum.value(onWgs ? DatumWgs84 : datumCode);
            if (candidates.isEmpty() && m_greenwichTwins.contains(datumCode))
                candidates = m_dtfsByDatum.value(m_greenwichTwins.value(datumCode));
            if (datumCode == 0 || datum.deprecated || candidates.isEmpty() ||
                !m_unitNames.contains(axisUom) || !m_ellipsoidNames.contains(datum.ellipsoid) ||
                !m_primeMeridians.contains(datum.primeMeridian)) {
                ++m_counts.skippedSystems;
                continue;
            }
            QString area, scope;
            Box box;
            UsageOf(m_crsUsages, code, area, scope, box);

            // EPSG's own UTM conversions use the system's UTM zone projections.
            QString projection, zoneText, hemisphereText;
            const bool utmNorth = convCode >= UtmNorthFirst && convCode < UtmNorthFirst + 60;
            const bool utmSouth = convCode >= UtmSouthFirst && convCode < UtmSouthFirst + 60;
            if ((utmNorth || utmSouth) && axisUom == UomMetre) {
                const int zone = convCode - (utmNorth ? UtmNorthFirst : UtmSouthFirst) + 1;
                projection = m_utmNames.value(convCode);
                zoneText = UtmZones::ZoneText(zone);
                hemisphereText = utmNorth ? UtmZones::NorthernText() : UtmZones::SouthernText();
            } else {
                QString why;
                const auto written = ProjectionFor(convCode, axisUom, why);
                if (!written) {
                    if (!m_error.isEmpty())
                        return false; // a write failed
                    ++m_counts.skippedSystems;
                    continue;
                }
                projection = *written;
            }

            const QString group = EpsgValues::GroupOfArea(area);
            qint64 groupId = groups.value(OrvSchema::NameKey(group), -1);
            if (groupId < 0) {
                groupIns.addBindValue(group);
                groupIns.addBindValue(OrvSchema::NameKey(group));
                if (!groupIns.exec())
                    return Fail(QStringLiteral("cannot write group %1").arg(group), groupIns);
                groupId = groupIns.lastInsertId().toLongLong();
                groups.insert(OrvSchema::NameKey(group), groupId);
                ++m_counts.groups;
            }

            const DtfCandidate* dtf = ChooseDtf(candidates, box);
            const QString name = names.Unique(q.value(1).toString(), code);
            ins.addBindValue(name);
            ins.addBindValue(OrvSchema::NameKey(name));
            ins.addBindValue(groupId);
            ins.addBindValue(Wgs84Name);
            ins.addBindValue(m_ellipsoidNames.value(datum.ellipsoid));
            ins.addBindValue(dtf->name);
            ins.addBindValue(projection);
            ins.addBindValue(m_unitNames.value(axisUom));
            ins.addBindValue(m_primeMeridians.value(datum.primeMeridian));
            ins.addBindValue(NotNull(zoneText));
            ins.addBindValue(NotNull(hemisphereText));
            ins.addBindValue(m_geoidKeys);
            ins.addBindValue(code);
            ins.addBindValue(NotNull(area));
            for (double v : {box.south, box.west, box.north, box.east})
                ins.addBindValue(box.valid ? QVariant(v) : QVariant(QMetaType::fromType<double>()));
            ins.addBindValue(NotNull(JoinTexts(scope, q.value(2).toString())));
            if (!ins.exec())
                return Fail(QStringLiteral("cannot write system %1").arg(name), ins);
            ++m_counts.systems;
        }
        return true;
    }

    QSqlDatabase& m_src;
    QSqlDatabase& m_dst;
    EpsgImporter::Counts& m_counts;
    QString m_error;
    QString m_geoidKeys;

    QHash<int, Uom> m_uoms;
    QHash<int, Extent> m_extents;
    QHash<int, QString> m_scopes;
    QHash<int, Usage> m_crsUsages, m_helmertUsages, m_conversionUsages;
    QHash<int, double> m_primeMeridians; // degrees
    QHash<int, Datum> m_datums;
    QSet<int> m_wgsDatums;
    QHash<int, int> m_crsDatums;      // geodetic CRS -> datum
    QHash<int, int> m_greenwichTwins; // datum on another prime meridian -> Greenwich datum
    QHash<int, QString> m_ellipsoidNames;
    QHash<int, QString> m_unitNames;
    QHash<int, QList<DtfCandidate>> m_dtfsByDatum;
    QHash<int, QString> m_paramNames;
    QHash<int, Conversion> m_conversions;
    QHash<QString, QString> m_projections; // "conversion:unit" -> projection name
    QSet<int> m_convUnitSeen;
    QHash<int, QString> m_utmNames; // EPSG UTM conversion code -> projection name
    NameSet m_dtfNames, m_prjNames;
    QSqlQuery m_dtfInsert, m_prjInsert, m_paramInsert;
};

} // namespace

bool EpsgImporter::Run(const QString& projDbPath, const QString& outPath) {
    m_counts = {};
    m_error.clear();
    m_epsgVersion.clear();
    if (!QFileInfo(projDbPath).isFile()) {
        m_error = QStringLiteral("%1 does not exist or is not a file").arg(projDbPath);
        return false;
    }
    const QFileInfo outInfo(outPath);
    if (!outInfo.absoluteDir().exists()) {
        m_error = QStringLiteral("the folder of %1 does not exist").arg(outPath);
        return false;
    }
    const QString tempPath = outInfo.absoluteFilePath() + QStringLiteral(".partial");
    QFile::remove(tempPath);

    const QString srcConnection = QStringLiteral("epsg-import-source");
    const QString dstConnection = QStringLiteral("epsg-import-target");
    bool ok = false;
    {
        QSqlDatabase src = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), srcConnection);
        src.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        src.setDatabaseName(projDbPath);
        QSqlDatabase dst = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), dstConnection);
        dst.setDatabaseName(tempPath);
        if (!src.open()) {
            m_error = QStringLiteral("cannot open %1: %2").arg(projDbPath, src.lastError().text());
        } else if (!dst.open()) {
            m_error = QStringLiteral("cannot create %1: %2").arg(tempPath, dst.lastError().text());
        } else {
            {
                // The file is thrown away on failure, so it needs no journal of its own.
                QSqlQuery pragma(dst);
                pragma.exec(QStringLiteral("PRAGMA journal_mode = MEMORY"));
                pragma.exec(QStringLiteral("PRAGMA synchronous = OFF"));
            }
            if (!dst.transaction()) {
                m_error = QStringLiteral("cannot start writing: %1").arg(dst.lastError().text());
            } else if (QString schemaError; !OrvSchema::Create(dst, &schemaError)) {
                m_error = QStringLiteral("cannot create the schema: %1").arg(schemaError);
                dst.rollback();
            } else {
                Import import(src, dst, m_counts);
                ok = import.Run(m_error, m_epsgVersion);
                if (!ok)
                    dst.rollback();
            }
            if (ok && !dst.commit()) {
                m_error = QStringLiteral("cannot commit: %1").arg(dst.lastError().text());
                ok = false;
            }
        }
        src.close();
        dst.close();
    }
    QSqlDatabase::removeDatabase(srcConnection);
    QSqlDatabase::removeDatabase(dstConnection);

    if (ok) {
        std::error_code ec;
        std::filesystem::rename(QFile::encodeName(tempPath).toStdString(),
                                QFile::encodeName(outInfo.absoluteFilePath()).toStdString(), ec);
        if (ec) {
            m_error = QStringLiteral("cannot rename %1 to %2: %3")
                          .arg(tempPath, outPath, QString::fromStdString(ec.message()));
            ok = false;
        }
    }
    if (!ok)
        QFile::remove(tempPath);
    return ok;
}
