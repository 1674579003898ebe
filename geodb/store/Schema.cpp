#include "store/Schema.h"

#include "store/StoreSql.h"

#include <QHash>
#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>

namespace OrvSchema {

namespace {

// Tables. Units of stored numbers are given per column. References between records are by
// name (names are unique across both databases), so a user system may use a pre-defined
// datum transformation, projection or unit.
const char* const Ddl[] = {
    R"(CREATE TABLE ellipsoid (
        id INTEGER PRIMARY KEY,
        name TEXT NOT NULL, name_key TEXT NOT NULL UNIQUE,
        semi_major REAL NOT NULL,        -- a, metres
        semi_minor REAL NOT NULL,        -- b, metres
        inv_flattening REAL NOT NULL,    -- 1/f, 0 for a sphere
        flattening REAL NOT NULL,        -- f
        ecc_squared REAL NOT NULL,       -- e^2
        second_ecc_squared REAL NOT NULL,-- e'^2
        epsg_code INTEGER NOT NULL DEFAULT 0,
        remarks TEXT NOT NULL DEFAULT ''))",

    R"(CREATE TABLE unit (
        id INTEGER PRIMARY KEY,
        name TEXT NOT NULL, name_key TEXT NOT NULL UNIQUE,
        meters_per_unit REAL NOT NULL,
        suffix TEXT NOT NULL DEFAULT '',
        description TEXT NOT NULL DEFAULT '',
        category INTEGER NOT NULL DEFAULT 8, -- 8 = length
        epsg_code INTEGER NOT NULL DEFAULT 0))",

    // Datum transformation WGS 84 (src) -> local (dst). method_index: 0 none, 1/2 seven
    // values with rotation sign +1/-1, 3/4 fifteen values with sign +1/-1. Values: metres,
    // arc-seconds, ppm, per-year rates, epoch as decimal year. option bit 0: the values are
    // those published for local -> WGS 84 and are applied inverted.
    R"(CREATE TABLE dtf (
        id INTEGER PRIMARY KEY,
        name TEXT NOT NULL, name_key TEXT NOT NULL UNIQUE,
        src_ellipsoid TEXT NOT NULL, src_ellipsoid_key TEXT NOT NULL,
        dst_ellipsoid TEXT NOT NULL, dst_ellipsoid_key TEXT NOT NULL,
        method_index INTEGER NOT NULL,
        tx REAL NOT NULL DEFAULT 0, ty REAL NOT NULL DEFAULT 0, tz REAL NOT NULL DEFAULT 0,
        rx REAL NOT NULL DEFAULT 0, ry REAL NOT NULL DEFAULT 0, rz REAL NOT NULL DEFAULT 0,
        ds REAL NOT NULL DEFAULT 0,
        dtx REAL NOT NULL DEFAULT 0, dty REAL NOT NULL DEFAULT 0, dtz REAL NOT NULL DEFAULT 0,
        drx REAL NOT NULL DEFAULT 0, dry REAL NOT NULL DEFAULT 0, drz REAL NOT NULL DEFAULT 0,
        dds REAL NOT NULL DEFAULT 0,
        epoch REAL NOT NULL DEFAULT 0,
        accuracy REAL NOT NULL DEFAULT 0,     -- further value 1, metres (0 unknown)
        epsg_code INTEGER NOT NULL DEFAULT 0, -- further value 2
        option INTEGER NOT NULL DEFAULT 0,
        obs_epoch REAL NOT NULL DEFAULT 0,    -- trailing value 1: default observation epoch
        trailing2 REAL NOT NULL DEFAULT 0,    -- trailing value 2: reserved
        description TEXT NOT NULL DEFAULT '',
        extra_text TEXT NOT NULL DEFAULT '',  -- second text (area of use for EPSG entries)
        local_datum TEXT NOT NULL DEFAULT ''))",
    "CREATE INDEX dtf_ellipsoids ON dtf(src_ellipsoid_key, dst_ellipsoid_key)",

    // Projection: method by id (see ProjectionMethods), its unit by name.
    R"(CREATE TABLE projection (
        id INTEGER PRIMARY KEY,
        name TEXT NOT NULL, name_key TEXT NOT NULL UNIQUE,
        method_id INTEGER NOT NULL,
        unit_name TEXT NOT NULL,
        epsg_code INTEGER NOT NULL DEFAULT 0,
        epsg_method_code INTEGER NOT NULL DEFAULT 0,
        description TEXT NOT NULL DEFAULT ''))",
    "CREATE INDEX projection_method ON projection(method_id)",

    // Parameters in display order. value: degrees for types 1/2, projection unit for 5.
    // value_text: the text as shown (angle texts, zone and hemisphere list texts).
    R"(CREATE TABLE projection_param (
        projection_id INTEGER NOT NULL REFERENCES projection(id) ON DELETE CASCADE,
        ord INTEGER NOT NULL,
        name TEXT NOT NULL,
        value REAL NOT NULL DEFAULT 0,
        value_text TEXT NOT NULL,
        type INTEGER NOT NULL,
        PRIMARY KEY (projection_id, ord)))",

    R"(CREATE TABLE sysgroup (
        id INTEGER PRIMARY KEY,
        name TEXT NOT NULL, name_key TEXT NOT NULL UNIQUE))",

    // A coordinate system. dtf_name names a datum transformation (method 0 for a WGS 84
    // based system); prime_meridian is the longitude of the local prime meridian east of
    // Greenwich in degrees.
    R"(CREATE TABLE coordsys (
        id INTEGER PRIMARY KEY,
        name TEXT NOT NULL, name_key TEXT NOT NULL UNIQUE,
        group_id INTEGER NOT NULL REFERENCES sysgroup(id),
        sat_ellipsoid TEXT NOT NULL,
        local_ellipsoid TEXT NOT NULL,
        dtf_name TEXT NOT NULL,
        projection_name TEXT NOT NULL,
        unit_name TEXT NOT NULL,
        prime_meridian REAL NOT NULL DEFAULT 0,
        utm_zone_text TEXT NOT NULL DEFAULT '',
        utm_hemisphere_text TEXT NOT NULL DEFAULT '',
        geoid_on INTEGER NOT NULL DEFAULT 0,
        geoid_method TEXT NOT NULL DEFAULT '',
        geoid_file TEXT NOT NULL DEFAULT '',
        chart_datum TEXT NOT NULL DEFAULT '',
        geoid_separation REAL NOT NULL DEFAULT 0,
        geoid_keys TEXT NOT NULL DEFAULT '',
        post_on INTEGER NOT NULL DEFAULT 0,
        post_e REAL NOT NULL DEFAULT 0, post_n REAL NOT NULL DEFAULT 0,
        post_z REAL NOT NULL DEFAULT 0,
        post_model_name TEXT NOT NULL DEFAULT '',
        post_model_file TEXT NOT NULL DEFAULT '',
        hor_on INTEGER NOT NULL DEFAULT 0,
        hor_origin_e REAL NOT NULL DEFAULT 0, hor_origin_n REAL NOT NULL DEFAULT 0,
        hor_rotation REAL NOT NULL DEFAULT 0,  -- arc-seconds
        hor_scale REAL NOT NULL DEFAULT 1,
        vert_on INTEGER NOT NULL DEFAULT 0,
        vert_origin_e REAL NOT NULL DEFAULT 0, vert_origin_n REAL NOT NULL DEFAULT 0,
        vert_slope_e REAL NOT NULL DEFAULT 0,  -- ppm
        vert_slope_n REAL NOT NULL DEFAULT 0,  -- ppm
        epsg_code INTEGER NOT NULL DEFAULT 0,
        area TEXT NOT NULL DEFAULT '',
        bbox_south REAL, bbox_west REAL, bbox_north REAL, bbox_east REAL,
        remarks TEXT NOT NULL DEFAULT ''))",
    "CREATE INDEX coordsys_group ON coordsys(group_id)",
    "CREATE INDEX coordsys_projection ON coordsys(projection_name)",

    // Which host project uses which system (user database only); see SetSystemInUse.
    R"(CREATE TABLE system_use (
        system_key TEXT NOT NULL,
        project TEXT NOT NULL,
        PRIMARY KEY (system_key, project)))",
};

bool Exec(QSqlDatabase& db, const QString& sql, QString* error) {
    QSqlQuery q(db);
    if (q.exec(sql))
        return true;
    if (error)
        *error = StoreSql::ErrorText(q.lastError());
    return false;
}

void SetError(QString* error, const QString& text) {
    if (error)
        *error = text;
}

using TableColumns = QList<QPair<QString, QStringList>>;

// Tables and columns in pragma_table_info order, as the DDL above makes them.
TableColumns ColumnsOf(QSqlDatabase& db, QString* error) {
    TableColumns out;
    QSqlQuery q(db);
    q.setForwardOnly(true);
    if (!q.exec(QStringLiteral("SELECT m.name, p.name FROM sqlite_master m JOIN "
                               "pragma_table_info(m.name) p WHERE m.type = 'table' AND m.name "
                               "NOT LIKE 'sqlite_%' ORDER BY m.name, p.cid"))) {
        SetError(error, StoreSql::ErrorText(q.lastError()));
        return {};
    }
    while (q.next()) {
        const QString table = q.value(0).toString();
        if (out.isEmpty() || out.last().first != table)
            out.append({table, {}});
        out.last().second << q.value(1).toString();
    }
    if (q.lastError().type() != QSqlError::NoError) {
        SetError(error, StoreSql::ErrorText(q.lastError()));
        return {};
    }
    return out;
}

// The schema's own tables and columns, read once from a database made in memory.
const TableColumns& ExpectedColumns() {
    static const TableColumns columns = [] {
        const QString name = QStringLiteral("orv-schema-reference");
        TableColumns result;
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
            db.setDatabaseName(QStringLiteral(":memory:"));
            if (db.open() && Create(db))
                result = ColumnsOf(db, nullptr);
            db.close();
        }
        QSqlDatabase::removeDatabase(name);
        return result;
    }();
    return columns;
}

// Tables whose rows carry a name and its key.
const char* const NamedTables[] = {"ellipsoid",  "unit",     "dtf",
                                   "projection", "sysgroup", "coordsys"};

} // namespace

bool Create(QSqlDatabase& db, QString* error) {
    for (const char* statement : Ddl) {
        if (!Exec(db, QString::fromUtf8(statement), error))
            return false;
    }
    return Exec(db, QStringLiteral("PRAGMA user_version = %1").arg(Version), error);
}

int VersionOf(QSqlDatabase& db, QString* error) {
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("PRAGMA user_version")) || !q.next()) {
        SetError(error, StoreSql::ErrorText(q.lastError()));
        return -1;
    }
    return q.value(0).toInt();
}

bool IsCurrent(QSqlDatabase& db, QString* error) {
    const int version = VersionOf(db, error);
    if (version < 0)
        return false;
    if (version != Version) {
        SetError(
            error,
            QStringLiteral("database schema version %1, expected %2").arg(version).arg(Version));
        return false;
    }
    return true;
}

bool HasSchemaTables(QSqlDatabase& db, QString* error) {
    const TableColumns& expected = ExpectedColumns();
    if (expected.isEmpty()) {
        SetError(error, QStringLiteral("the schema cannot be set up for comparison"));
        return false;
    }
    QString reason;
    const TableColumns present = ColumnsOf(db, &reason);
    if (!reason.isEmpty()) {
        SetError(error, reason);
        return false;
    }
    for (const auto& entry : expected) {
        const QString& table = entry.first;
        const QStringList& columns = entry.second;
        const auto found = std::find_if(present.begin(), present.end(),
                                        [&](const auto& t) { return t.first == table; });
        if (found == present.end()) {
            SetError(error, QStringLiteral("the table \"%1\" is missing").arg(table));
            return false;
        }
        for (const QString& column : columns) {
            if (!found->second.contains(column)) {
                SetError(
                    error,
                    QStringLiteral("the table \"%1\" has no column \"%2\"").arg(table, column));
                return false;
            }
        }
        for (const QString& column : found->second) {
            if (!columns.contains(column)) {
                SetError(error, QStringLiteral("the table \"%1\" has a column \"%2\" that is "
                                               "not ours")
                                    .arg(table, column));
                return false;
            }
        }
    }
    return true;
}

bool Upgrade(QSqlDatabase& db, QString* error) {
    auto fail = [&](const QSqlQuery& q) {
        SetError(error, StoreSql::ErrorText(q.lastError()));
        return false;
    };
    QSqlQuery q(db);
    for (const char* tableName : NamedTables) {
        const QString table = QString::fromLatin1(tableName);
        QList<QPair<qlonglong, QString>> rows;
        QHash<QString, QString> byKey;
        if (!q.exec(QStringLiteral("SELECT id, name FROM %1").arg(table)))
            return fail(q);
        while (q.next()) {
            const QString name = q.value(1).toString();
            const QString key = NameKey(name);
            if (byKey.contains(key)) {
                SetError(error, QStringLiteral("the names \"%1\" and \"%2\" in the table \"%3\" "
                                               "are now one name without regard to case; "
                                               "rename one of them with the older version")
                                    .arg(byKey.value(key), name, table));
                return false;
            }
            byKey.insert(key, name);
            rows.append({q.value(0).toLongLong(), key});
        }
        if (q.lastError().type() != QSqlError::NoError)
            return fail(q);
        // Two passes, so that no key meets the old key of another row on its way.
        if (!q.exec(QStringLiteral("UPDATE %1 SET name_key = '#' || id").arg(table)))
            return fail(q);
        QSqlQuery update(db);
        if (!update.prepare(QStringLiteral("UPDATE %1 SET name_key = ? WHERE id = ?").arg(table)))
            return fail(update);
        for (const auto& [id, key] : rows) {
            update.addBindValue(key);
            update.addBindValue(id);
            if (!update.exec())
                return fail(update);
        }
    }
    // Keys kept beside other names: a key folded again is the key of its name.
    struct KeyColumn {
        const char* table;
        const char* column;
    };
    for (const KeyColumn& k :
         {KeyColumn{"dtf", "src_ellipsoid_key"}, KeyColumn{"dtf", "dst_ellipsoid_key"},
          KeyColumn{"system_use", "system_key"}}) {
        const QString table = QString::fromLatin1(k.table);
        const QString column = QString::fromLatin1(k.column);
        if (!q.exec(QStringLiteral("SELECT DISTINCT %1 FROM %2").arg(column, table)))
            return fail(q);
        QStringList keys;
        while (q.next())
            keys << q.value(0).toString();
        if (q.lastError().type() != QSqlError::NoError)
            return fail(q);
        QSqlQuery update(db);
        if (!update.prepare(
                QStringLiteral("UPDATE OR IGNORE %1 SET %2 = ? WHERE %2 = ?").arg(table, column)))
            return fail(update);
        for (const QString& key : keys) {
            const QString folded = NameKey(key);
            if (folded == key)
                continue;
            update.addBindValue(folded);
            update.addBindValue(key);
            if (!update.exec())
                return fail(update);
        }
    }
    return Exec(db, QStringLiteral("PRAGMA user_version = %1").arg(Version), error);
}

QString NameKey(const QString& name) {
    // Full case folding. Lowering, raising and lowering again expands what folds into more
    // than one letter ("ß" and "ẞ" to "ss", "ﬁ" to "fi"); the simple folding at the end
    // settles the few letters whose lower case is not their folded form. The dotless "ı"
    // folds to itself, not to "i" (which raising it would give).
    // Plain ASCII, as almost every stored name is, folds to its lower case: the lists of
    // thousands of names compare their keys.
    if (std::all_of(name.cbegin(), name.cend(), [](QChar c) { return c.unicode() < 0x80; }))
        return name.toLower();
    const QChar dotless(0x0131);
    QStringList parts = name.split(dotless);
    for (QString& part : parts)
        part = part.toLower().toUpper().toLower().toCaseFolded();
    return parts.join(dotless);
}

} // namespace OrvSchema
