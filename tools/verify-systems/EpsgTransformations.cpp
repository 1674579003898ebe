#include "EpsgTransformations.h"

#include <QRegularExpression>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>

namespace {

// The Helmert methods the system database holds (geocentric translations, position vector,
// coordinate frame and their time-dependent forms, in every domain).
const QSet<int> HelmertMethods{9603, 1031, 1035, 9606, 1033, 1037, 9607, 1032,
                               1038, 1053, 1054, 1055, 1056, 1057, 1058};

constexpr double Slack = 1e-6;

} // namespace

QList<QPair<double, double>> AreaBox::Intervals() const {
    if (west <= east)
        return {{west, east}};
    return {{west, 180.0}, {-180.0, east}};
}

bool AreaBox::Contains(const AreaBox& other) const {
    if (other.south < south - Slack || other.north > north + Slack)
        return false;
    const auto mine = Intervals();
    for (const auto& theirs : other.Intervals()) {
        if (std::none_of(mine.begin(), mine.end(), [&](const auto& i) {
                return i.first <= theirs.first + Slack && theirs.second <= i.second + Slack;
            }))
            return false;
    }
    return true;
}

bool AreaBox::SameAs(const AreaBox& other) const {
    return Contains(other) && other.Contains(*this);
}

double AreaBox::Overlap(const AreaBox& other) const {
    const double lat = std::min(north, other.north) - std::max(south, other.south);
    if (lat < 0)
        return 0;
    double lon = 0;
    for (const auto& [w1, e1] : Intervals()) {
        for (const auto& [w2, e2] : other.Intervals())
            lon += std::max(0.0, std::min(e1, e2) - std::max(w1, w2));
    }
    return lat * lon;
}

AreaBox BoxOf(const EpsgTransformation& t) {
    return AreaBox{t.south, t.west, t.north, t.east};
}

bool EpsgTransformations::Load(const QString& projDbPath, QString* error) {
    const QString connection = QStringLiteral("verify-systems-proj-db");
    bool ok = true;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        db.setDatabaseName(projDbPath);
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        QSqlQuery q(db);
        auto run = [&](const QString& sql) {
            q.setForwardOnly(true);
            if (q.exec(sql))
                return true;
            *error = QStringLiteral("%1: %2").arg(projDbPath, q.lastError().text());
            ok = false;
            return false;
        };
        if (!db.open()) {
            *error = QStringLiteral("%1: %2").arg(projDbPath, db.lastError().text());
            ok = false;
        }
        // WGS 84: the ensemble and its realisations.
        QSet<int> wgs{6326};
        QHash<int, int> crsDatum;
        QHash<int, QString> currentOperations;
        if (ok && run(QStringLiteral("SELECT member_code FROM geodetic_datum_ensemble_member "
                                     "WHERE ensemble_auth_name = 'EPSG' AND ensemble_code = "
                                     "'6326' AND member_auth_name = 'EPSG'"))) {
            while (q.next())
                wgs.insert(q.value(0).toInt());
        }
        if (ok && run(QStringLiteral("SELECT code, datum_code FROM geodetic_crs WHERE auth_name "
                                     "= 'EPSG' AND datum_auth_name = 'EPSG'"))) {
            while (q.next())
                crsDatum.insert(q.value(0).toInt(), q.value(1).toInt());
        }
        if (ok && run(QStringLiteral(
                      "SELECT code, name FROM helmert_transformation_table WHERE auth_name = "
                      "'EPSG' AND deprecated = 0 UNION ALL SELECT code, name FROM "
                      "grid_transformation WHERE auth_name = 'EPSG' AND deprecated = 0 UNION ALL "
                      "SELECT code, name FROM other_transformation WHERE auth_name = 'EPSG' AND "
                      "deprecated = 0 UNION ALL SELECT code, name FROM concatenated_operation "
                      "WHERE auth_name = 'EPSG' AND deprecated = 0"))) {
            while (q.next())
                currentOperations.insert(q.value(0).toInt(), q.value(1).toString());
        }
        QHash<int, int> replacements;
        if (ok && run(QStringLiteral("SELECT superseded_code, replacement_code FROM supersession "
                                     "WHERE superseded_table_name = 'helmert_transformation' AND "
                                     "superseded_auth_name = 'EPSG' AND replacement_auth_name = "
                                     "'EPSG'"))) {
            while (q.next()) {
                const int replacement = q.value(1).toInt();
                if (currentOperations.contains(replacement))
                    replacements.insert(q.value(0).toInt(), replacement);
            }
        }
        if (ok && run(QStringLiteral(
                      "SELECT code, name, description, method_code, source_crs_code, "
                      "target_crs_code, accuracy FROM helmert_transformation_table WHERE "
                      "auth_name = 'EPSG' AND deprecated = 0 AND method_auth_name = 'EPSG' AND "
                      "source_crs_auth_name = 'EPSG' AND target_crs_auth_name = 'EPSG'"))) {
            static const QRegularExpression replaced(
                QStringLiteral("(?:^|\\.\\s+)Replaced by [^.]*?\\((?:tfm )?code (\\d+)\\)"));
            while (q.next()) {
                if (!HelmertMethods.contains(q.value(3).toInt()))
                    continue;
                const int src = crsDatum.value(q.value(4).toInt());
                const int dst = crsDatum.value(q.value(5).toInt());
                if (src == 0 || dst == 0 || wgs.contains(src) == wgs.contains(dst))
                    continue;
                EpsgTransformation t;
                t.code = q.value(0).toInt();
                t.name = q.value(1).toString();
                t.accuracy = q.value(6).isNull() ? 0 : q.value(6).toDouble();
                t.localDatum = wgs.contains(src) ? dst : src;
                int replacement = replacements.value(t.code);
                const auto m = replaced.match(q.value(2).toString());
                if (replacement == 0 && m.hasMatch() &&
                    currentOperations.contains(m.captured(1).toInt()))
                    replacement = m.captured(1).toInt();
                if (replacement != 0 && replacement != t.code)
                    t.replacedBy = QStringLiteral("%1 (EPSG:%2)")
                                       .arg(currentOperations.value(replacement))
                                       .arg(replacement);
                m_byCode.insert(t.code, t);
                m_byDatum[t.localDatum].append(t.code);
            }
        }
        // Areas of use: the first usage EPSG lists (read from the last to the first).
        if (ok && run(QStringLiteral(
                      "SELECT u.object_code, e.name, e.south_lat, e.west_lon, e.north_lat, "
                      "e.east_lon FROM usage u JOIN extent e ON e.auth_name = u.extent_auth_name "
                      "AND e.code = u.extent_code WHERE u.object_table_name = "
                      "'helmert_transformation' AND u.object_auth_name = 'EPSG' ORDER BY "
                      "CAST(u.code AS INTEGER) DESC"))) {
            while (q.next()) {
                const auto it = m_byCode.find(q.value(0).toInt());
                if (it == m_byCode.end())
                    continue;
                it->area = q.value(1).toString();
                it->hasBox = !q.value(2).isNull() && !q.value(3).isNull() && !q.value(4).isNull() &&
                             !q.value(5).isNull();
                it->south = q.value(2).toDouble();
                it->west = q.value(3).toDouble();
                it->north = q.value(4).toDouble();
                it->east = q.value(5).toDouble();
            }
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(connection);
    return ok;
}

const EpsgTransformation* EpsgTransformations::ByCode(int code) const {
    const auto it = m_byCode.constFind(code);
    return it == m_byCode.cend() ? nullptr : &*it;
}

QList<const EpsgTransformation*> EpsgTransformations::OfDatum(int datum) const {
    QList<const EpsgTransformation*> out;
    for (int code : m_byDatum.value(datum))
        out << ByCode(code);
    return out;
}
