#include "DatumTransformations.h"

#include "DatumTable.h"
#include "EpsgCodes.h"
#include "EpsgValues.h"
#include "ImportSession.h"
#include "NameSet.h"
#include "UnitTable.h"

#include "api/GeoTypes.h"

#include <QHash>
#include <QRegularExpression>
#include <QVariant>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

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

// The operations that replace a Helmert transformation, by the code of the one replaced:
// proj.db's supersession table, and EPSG's remark "Replaced by <name> (code <n>)." where the
// table lacks it (Amersfoort to WGS 84 (3) is replaced by (4) only in its remark). A
// replacement that is itself deprecated replaces nothing.
struct Replacement {
    int code = 0;
    QString name;
};

class Supersession {
public:
    bool Load(ImportSession& session) {
        QSqlQuery q = session.SourceQuery();
        // Operation codes are unique across the four operation tables.
        if (!session.Select(
                q, QStringLiteral("SELECT code, name, deprecated FROM helmert_transformation_table "
                                  "WHERE auth_name = 'EPSG' UNION ALL SELECT code, name, "
                                  "deprecated FROM grid_transformation WHERE auth_name = 'EPSG' "
                                  "UNION ALL SELECT code, name, deprecated FROM "
                                  "other_transformation WHERE auth_name = 'EPSG' UNION ALL "
                                  "SELECT code, name, deprecated FROM concatenated_operation "
                                  "WHERE auth_name = 'EPSG'")))
            return false;
        while (q.next()) {
            if (q.value(2).toInt() == 0)
                m_current.insert(q.value(0).toInt(), q.value(1).toString());
        }
        if (!session.Select(q, QStringLiteral("SELECT superseded_code, replacement_code FROM "
                                              "supersession WHERE superseded_table_name = "
                                              "'helmert_transformation' AND superseded_auth_name = "
                                              "'EPSG' AND replacement_auth_name = 'EPSG'")))
            return false;
        while (q.next())
            Add(q.value(0).toInt(), q.value(1).toInt());
        return true;
    }

    // The replacement named by the remarks, when the table has none.
    void AddFromRemarks(int code, const QString& remarks) {
        static const QRegularExpression replaced(
            QStringLiteral("(?:^|\\.\\s+)Replaced by [^.]*?\\((?:tfm )?code (\\d+)\\)"));
        const QRegularExpressionMatch m = replaced.match(remarks);
        if (m.hasMatch() && !m_replacements.contains(code))
            Add(code, m.captured(1).toInt());
    }

    std::optional<Replacement> Of(int code) const {
        const auto it = m_replacements.constFind(code);
        if (it == m_replacements.cend())
            return std::nullopt;
        return *it;
    }

private:
    void Add(int code, int replacement) {
        if (replacement != code && m_current.contains(replacement) &&
            !m_replacements.contains(code))
            m_replacements.insert(code, Replacement{replacement, m_current.value(replacement)});
    }
    QHash<int, QString> m_current; // operations not deprecated: code -> name
    QHash<int, Replacement> m_replacements;
};

} // namespace

int VariantOf(const QString& name, QString* family) {
    static const QRegularExpression variant(QStringLiteral("^(.*\\S)\\s*\\((\\d+)\\)$"));
    const QRegularExpressionMatch m = variant.match(name);
    if (family)
        *family = m.hasMatch() ? m.captured(1) : name;
    return m.hasMatch() ? m.captured(2).toInt() : 0;
}

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

    Supersession supersession;
    if (!supersession.Load(session))
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
        const QString remarks = q.value(2).toString();
        supersession.AddFromRemarks(r.code, remarks);
        const std::optional<Replacement> replacement = supersession.Of(r.code);
        r.description = EpsgValues::JoinTexts(use.scope, remarks);
        if (replacement)
            r.description = EpsgValues::JoinTexts(QStringLiteral("Superseded by %1 (EPSG %2).")
                                                      .arg(replacement->name)
                                                      .arg(replacement->code),
                                                  r.description);
        r.extra = use.area;
        r.localDatum = local.name;
        if (!Insert(session, ins, r))
            return false;
        DtfCandidate candidate;
        candidate.name = r.name;
        candidate.accuracy = r.accuracy;
        candidate.code = r.code;
        candidate.box = use.box;
        candidate.superseded = replacement.has_value();
        candidate.variant = VariantOf(q.value(1).toString(), &candidate.family);
        names.dtfsByDatum[localCode].append(candidate);
        if (candidate.superseded)
            ++session.Counts().supersededDtfs;
    }
    DtfCandidate identity;
    identity.name = wgs.name;
    names.dtfsByDatum[DatumWgs84].append(identity);
    return true;
}

const DtfCandidate* Choose(const QList<DtfCandidate>& candidates, const Box& area) {
    struct Rank {
        bool contains;
        double overlap;
        double accuracy;
    };
    auto rankOf = [&](const DtfCandidate& c) {
        return Rank{c.box.Contains(area), c.box.OverlapArea(area),
                    c.accuracy > 0 ? c.accuracy : std::numeric_limits<double>::infinity()};
    };
    // Newer: a later variant of the same source and target, else the later code.
    auto newer = [](const DtfCandidate& a, const DtfCandidate& b) {
        if (a.variant > 0 && b.variant > 0 && a.family == b.family && a.variant != b.variant)
            return a.variant > b.variant;
        return a.code > b.code;
    };
    auto better = [&](const DtfCandidate& a, const Rank& ra, const DtfCandidate& b,
                      const Rank& rb) {
        if (ra.contains != rb.contains)
            return ra.contains;
        // A transformation better for part of the area is no reason to leave one that
        // covers all of it; only without such a one does the overlap count.
        if (!ra.contains &&
            std::abs(ra.overlap - rb.overlap) > 0.01 * std::max(ra.overlap, rb.overlap))
            return ra.overlap > rb.overlap;
        if (ra.accuracy != rb.accuracy)
            return ra.accuracy < rb.accuracy;
        return newer(a, b);
    };
    const DtfCandidate* best = nullptr;
    Rank bestRank{};
    for (const DtfCandidate& c : candidates) {
        if (c.superseded)
            continue;
        const Rank rank = rankOf(c);
        if (!best || better(c, rank, *best, bestRank)) {
            best = &c;
            bestRank = rank;
        }
    }
    return best;
}

} // namespace DatumTransformations
