#include "store/Schema.h"

#include <QSqlError>
#include <QSqlQuery>

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
        *error = q.lastError().text();
    return false;
}

} // namespace

bool Create(QSqlDatabase& db, QString* error) {
    for (const char* statement : Ddl) {
        if (!Exec(db, QString::fromUtf8(statement), error))
            return false;
    }
    return Exec(db, QStringLiteral("PRAGMA user_version = %1").arg(Version), error);
}

bool IsCurrent(QSqlDatabase& db, QString* error) {
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("PRAGMA user_version")) || !q.next()) {
        if (error)
            *error = q.lastError().text();
        return false;
    }
    const int version = q.value(0).toInt();
    if (version != Version) {
        if (error)
            *error =
                QStringLiteral("database schema version %1, expected %2").arg(version).arg(Version);
        return false;
    }
    return true;
}

QString NameKey(const QString& name) {
    return name.toCaseFolded();
}

} // namespace OrvSchema
