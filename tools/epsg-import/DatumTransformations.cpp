#include "DatumTransformations.h"

#include "DatumTable.h"
#include "EpsgCodes.h"
#include "EpsgValues.h"
#include "ImportSession.h"
#include "NameSet.h"
#include "UnitTable.h"

#include "api/GeoTypes.h"

#include <QVariant>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace EpsgCodes;
using EpsgValues::NotNull;

namespace DatumTransformations {

namespace {

// One dtf row.
struct DtfRecord {
    QString name;
    QString dstEllipsoid;
    int method = DTF_NONE;
    DtfValues values{};
    double accuracy = 0;
    int code = 0;
    int option = 0;
    double obsEpoch = 0;
    QString description;
    QString extra;
    QString localDatum;
};

bool Insert(ImportSession& session, QSqlQuery& ins, const DtfRecord& r) {
    BindNameAndKey(ins, r.name);
    BindNameAndKey(ins, Wgs84Name);
    BindNameAndKey(ins, r.dstEllipsoid);
    ins.addBindValue(r.method);
    for (double value : r.values)
        ins.addBindValue(value);
    ins.addBindValue(r.accuracy);
    ins.addBindValue(r.code);
    ins.addBindValue(r.option);
    ins.addBindValue(r.obsEpoch);
    ins.addBindValue(NotNull(r.description));
    ins.addBindValue(NotNull(r.extra));
    ins.addBindValue(NotNull(r.localDatum));
    if (!ins.exec())
        return session.Fail(QStringLiteral("cannot write datum transformation %1").arg(r.name),
                            ins);
    ++session.Counts().dtfs;
    return true;
}

// The values of a helmert_transformation_table row in metres, arc-seconds, ppm, their rates
// per year and the epoch as a decimal year. proj.db stores rates per second; dividing by the
// per-year factor cancels that exactly. Nothing when a unit has no factor.
std::optional<DtfValues> ValuesOf(const QSqlQuery& q, const UnitTable& units) {
    DtfValues v{};
    bool ok = true;
    auto take = [&](int index, int column, int uomColumn, int target) {
        if (q.value(column).isNull())
            return;
        const auto value =
            units.Convert(q.value(column).toDouble(), q.value(uomColumn).toInt(), target);
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
        return std::nullopt;
    return v;
}

} // namespace

int MethodIndexOf(int epsgMethod) {
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

bool Write(ImportSession& session, const UnitTable& units, const DatumTable& datums,
           const UsageTable& usages, ImportedNames& names) {
    QSqlQuery ins = session.PrepareInsert(QStringLiteral(
        "INSERT INTO dtf (name, name_key, src_ellipsoid, src_ellipsoid_key, dst_ellipsoid, "
        "dst_ellipsoid_key, method_index, tx, ty, tz, rx, ry, rz, ds, dtx, dty, dtz, drx, "
        "dry, drz, dds, epoch, accuracy, epsg_code, option, obs_epoch, description, "
        "extra_text, local_datum) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, "
        "?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"));
    NameSet unique;
    DtfRecord wgs;
    wgs.name = unique.Unique(Wgs84DtfName, 0);
    wgs.dstEllipsoid = Wgs84Name;
    wgs.description = QStringLiteral("No datum transformation: the system is on WGS 84.");
    wgs.extra = QStringLiteral("World");
    wgs.localDatum = datums.Find(DatumWgs84).name;
    if (!Insert(session, ins, wgs))
        return false;

    QSqlQuery q = session.SourceQuery();
    if (!session.Select(
            q, QStringLiteral("SELECT code, name, description, method_code, source_crs_code, "
                              "target_crs_code, accuracy, tx, ty, tz, translation_uom_code, rx, "
                              "ry, rz, rotation_uom_code, scale_difference, "
                              "scale_difference_uom_code, rate_tx, rate_ty, rate_tz, "
                              "rate_translation_uom_code, rate_rx, rate_ry, rate_rz, "
                              "rate_rotation_uom_code, rate_scale_difference, "
                              "rate_scale_difference_uom_code, epoch, epoch_uom_code FROM "
                              "helmert_transformation_table WHERE auth_name = 'EPSG' AND "
                              "deprecated = 0 AND method_auth_name = 'EPSG' AND "
                              "source_crs_auth_name = 'EPSG' AND target_crs_auth_name = 'EPSG' "
                              "ORDER BY CAST(code AS INTEGER)")))
        return false;
    while (q.next()) {
        const int method = MethodIndexOf(q.value(3).toInt());
        if (method == DTF_NONE)
            continue;
        const int srcDatum = datums.DatumOfCrs(q.value(4).toInt());
        const int dstDatum = datums.DatumOfCrs(q.value(5).toInt());
        const bool srcWgs = datums.IsWgs84(srcDatum);
        const bool dstWgs = datums.IsWgs84(dstDatum);
        if (srcWgs == dstWgs || srcDatum == 0 || dstDatum == 0)
            continue; // not between WGS 84 and a local datum
        const int localCode = srcWgs ? dstDatum : srcDatum;
        const Datum local = datums.Find(localCode);
        if (local.deprecated || !names.ellipsoids.contains(local.ellipsoid))
            continue;
        const auto values = ValuesOf(q, units);
        if (!values)
            continue;

        DtfRecord r;
        r.code = q.value(0).toInt();
        const AreaOfUse use = usages.Of(UsageTable::Kind::HelmertTransformation, r.code);
        r.name = unique.Unique(q.value(1).toString(), r.code);
        r.dstEllipsoid = names.ellipsoids.value(local.ellipsoid);
        r.method = method;
        // held in the position-vector sign: coordinate frame rotations as published, negated
        r.values = DtfValuesInMethodSign(*values, method);
        r.accuracy = q.value(6).isNull() ? 0 : q.value(6).toDouble();
        // Local -> WGS 84 as published is applied inverted by the engine, which agrees with
        // EPSG exactly (negated values would not).
        r.option = srcWgs ? 0 : DTF_OPTION_PUBLISHED_TO_WGS84;
        // A point without a time of its own is transformed at the reference epoch.
        if (method == DTF_15_POSITION_VECTOR || method == DTF_15_COORDINATE_FRAME)
            r.obsEpoch = r.values[14];
        r.description = EpsgValues::JoinTexts(use.scope, q.value(2).toString());
        r.extra = use.area;
        r.localDatum = local.name;
        if (!Insert(session, ins, r))
            return false;
        names.dtfsByDatum[localCode].append(DtfCandidate{r.name, r.accuracy, r.code, use.box});
    }
    names.dtfsByDatum[DatumWgs84].append(DtfCandidate{wgs.name, 0, 0, {}});
    return true;
}

const DtfCandidate* Choose(const QList<DtfCandidate>& candidates, const Box& area) {
    struct Rank {
        bool meets;
        double overlap;
        double accuracy;
        int code;
    };
    auto rankOf = [&](const DtfCandidate& c) {
        return Rank{c.box.Intersects(area), c.box.OverlapArea(area),
                    c.accuracy > 0 ? c.accuracy : std::numeric_limits<double>::infinity(), c.code};
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

} // namespace DatumTransformations
