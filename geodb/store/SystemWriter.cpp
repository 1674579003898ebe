#include "store/SystemWriter.h"

#include "api/GeoKeys.h"
#include "api/ProjectionMethods.h"
#include "store/GeoStore.h"
#include "store/InfoTexts.h"
#include "store/Schema.h"
#include "store/StoreSql.h"
#include "util/UtmZones.h"

#include <QSqlError>

#include <cmath>

namespace SystemWriter {

namespace {

QString Key(const QString& name) {
    return OrvSchema::NameKey(name);
}

// One write transaction on the user database; rolled back unless committed.
class Transaction {
public:
    explicit Transaction(const GeoStore& store)
        : m_db(store.userDb()), m_readOnly(store.userReadOnlyReason()) {}
    ~Transaction() {
        if (m_open) {
            QSqlQuery q(m_db);
            q.exec(QStringLiteral("ROLLBACK"));
        }
    }
    bool Begin(QString* error) {
        if (!m_readOnly.isEmpty()) {
            *error = m_readOnly + QStringLiteral(" Nothing was saved.");
            return false;
        }
        QSqlQuery q(m_db);
        if (!q.exec(QStringLiteral("BEGIN IMMEDIATE"))) {
            *error = QStringLiteral("The user database is busy or cannot be written: %1 Nothing "
                                    "was saved.")
                         .arg(StoreSql::ErrorText(q.lastError()));
            return false;
        }
        m_open = true;
        return true;
    }
    bool Commit(QString* error) {
        QSqlQuery q(m_db);
        if (!q.exec(QStringLiteral("COMMIT"))) {
            *error = QStringLiteral("The changes could not be written to the user database: %1 "
                                    "Nothing was saved.")
                         .arg(StoreSql::ErrorText(q.lastError()));
            return false;
        }
        m_open = false;
        return true;
    }

private:
    QSqlDatabase m_db;
    QString m_readOnly;
    bool m_open = false;
};

// Runs a write statement; on failure error names what was being written.
bool Write(QSqlDatabase db, const QString& sql, const QVariantList& values, const QString& what,
           QString* error, qlonglong* insertedId = nullptr) {
    QSqlQuery q(db);
    if (!StoreSql::Run(q, sql, values)) {
        *error = QStringLiteral("Writing %1 failed: %2 Nothing was saved.")
                     .arg(what, StoreSql::ErrorText(q.lastError()));
        return false;
    }
    if (insertedId)
        *insertedId = q.lastInsertId().toLongLong();
    return true;
}

// The id of a named row; nullopt when there is none or when it cannot be read (error set).
std::optional<qlonglong> IdOf(QSqlDatabase db, const QString& table, const QString& name,
                              QString* error) {
    StoreSql::Reader q(db, error);
    // The table name is one of ours, never user text.
    if (q.Exec(QStringLiteral("SELECT id FROM %1 WHERE name_key = ?").arg(table), {Key(name)}) &&
        q.Next())
        return q.value(0).toLongLong();
    return std::nullopt;
}

// A look-up while saving: one that cannot be read stops the save, whatever it found.
QString ReadFailed(const QString& failure) {
    return failure + QStringLiteral(" Nothing was saved.");
}

bool Close(double a, double b, double absTol) {
    return std::fabs(a - b) <= absTol + 1e-12 * std::max(std::fabs(a), std::fabs(b));
}

// Tolerances of the texts the dialogs show: "%.6f" for the seven values, "%.8f" for the
// rates and "%.3f" for the epoch; a value read back from its text is the same value.
bool SameDtfValues(const DtfValues& a, const DtfValues& b) {
    for (int i = 0; i < 15; ++i) {
        const double tol = i < 7 ? 1e-6 : (i < 14 ? 1e-8 : 1e-3);
        if (!Close(a[i], b[i], tol))
            return false;
    }
    return true;
}

bool SameParams(const QList<PrjParamRecord>& edited, const QList<PrjParamRecord>& stored) {
    for (int i = 0; i < edited.size(); ++i) {
        const PrjParamRecord& e = edited[i];
        if (e.type == PRM_HIDDEN)
            continue;
        // By name; a row labelled otherwise stands for the stored row at its place.
        const PrjParamRecord* match = i < stored.size() ? &stored[i] : nullptr;
        for (const PrjParamRecord& s : stored) {
            if (Key(s.name) == Key(e.name)) {
                match = &s;
                break;
            }
        }
        if (!match)
            return false;
        // Angles come back from their degree-minute-second text (7 decimals of seconds).
        const double tol = (e.type == PRM_LATITUDE || e.type == PRM_LONGITUDE) ? 1e-8 : 1e-6;
        if (!Close(e.value, match->value, tol))
            return false;
    }
    return true;
}

bool AllFinite(const DtfValues& values) {
    for (double v : values) {
        if (!std::isfinite(v))
            return false;
    }
    return true;
}

const char* const DtfColumns = "src_ellipsoid, src_ellipsoid_key, dst_ellipsoid, "
                               "dst_ellipsoid_key, method_index, tx, ty, tz, rx, ry, rz, ds, "
                               "dtx, dty, dtz, drx, dry, drz, dds, epoch, option, obs_epoch, "
                               "trailing2, description, extra_text";

QVariantList DtfValuesOf(const DtfRecord& d, const QString& src, const QString& dst) {
    QVariantList v{src, Key(src), dst, Key(dst), d.methodIndex};
    for (double x : d.values)
        v << x;
    v << int(d.option) << d.obsEpoch << d.trailing2 << d.description << d.extraText;
    return v;
}

PrjParamRecord* ParamNamed(QList<PrjParamRecord>& params, const wchar_t* key) {
    const QString name = QString::fromWCharArray(key);
    for (PrjParamRecord& p : params) {
        if (p.name.compare(name, Qt::CaseInsensitive) == 0)
            return &p;
    }
    return nullptr;
}

// A UTM projection keeps its zone and hemisphere as the texts of the two lists, in hidden
// rows, so that reading it back selects them again. The dialogs hand the rows they show and
// the two texts apart; texts not handed over come from the rows or from the central meridian
// and the false northing.
bool SetUtmRows(SystemDraft& d, QString* error) {
    SystemRecord& s = d.system;
    QList<PrjParamRecord>& params = d.projection.params;
    PrjParamRecord* zoneRow = ParamNamed(params, projectionParamKeys[ProjectionParamZoneKey]);
    PrjParamRecord* hemiRow = ParamNamed(params, projectionParamKeys[ProjectionParamHemisphereKey]);
    const PrjParamRecord* meridian = ParamNamed(params, projectionParamKeys[1]);
    const PrjParamRecord* northing = ParamNamed(params, projectionParamKeys[4]);
    if (s.utmZoneText.trimmed().isEmpty() && zoneRow)
        s.utmZoneText = zoneRow->valueText;
    if (s.utmZoneText.trimmed().isEmpty() && meridian) {
        const long zone = std::lround((meridian->value + 183.0) / 6.0);
        if (zone >= 1 && zone <= UtmZones::ZoneCount)
            s.utmZoneText = UtmZones::ZoneText(int(zone));
    }
    int zone = 0, degrees = 0;
    QChar letter;
    if (!UtmZones::ParseZoneText(s.utmZoneText, zone, degrees, letter) || zone < 1 ||
        zone > UtmZones::ZoneCount) {
        *error = QStringLiteral("The UTM projection \"%1\" has no zone (\"%2\" is not one of "
                                "\"Zone  1     (177 W)\" to \"Zone 60     (177 E)\").")
                     .arg(d.projection.name, s.utmZoneText);
        return false;
    }
    s.utmZoneText = UtmZones::ZoneText(zone);
    if (s.utmHemisphereText.trimmed().isEmpty() && hemiRow)
        s.utmHemisphereText = hemiRow->valueText;
    if (s.utmHemisphereText != UtmZones::NorthernText() &&
        s.utmHemisphereText != UtmZones::SouthernText())
        s.utmHemisphereText = northing && northing->value != 0.0 ? UtmZones::SouthernText()
                                                                 : UtmZones::NorthernText();
    const bool south = s.utmHemisphereText == UtmZones::SouthernText();
    auto setRow = [&](PrjParamRecord* row, int key, double value, const QString& text) {
        if (!row) {
            params << PrjParamRecord{QString::fromWCharArray(projectionParamKeys[key]), 0,
                                     QString(), PRM_HIDDEN};
            row = &params.last();
        }
        row->value = value;
        row->valueText = text;
        row->type = PRM_HIDDEN;
    };
    setRow(zoneRow, ProjectionParamZoneKey, zone, s.utmZoneText);
    hemiRow = ParamNamed(params, projectionParamKeys[ProjectionParamHemisphereKey]);
    setRow(hemiRow, ProjectionParamHemisphereKey, south ? 1.0 : 0.0, s.utmHemisphereText);
    d.utmMode = true;
    return true;
}

struct Resolved {
    SystemDraft d;
    const ProjectionMethods::Method* method = nullptr;
};

bool Validate(const GeoStore& store, const SystemDraft& in, Resolved& out, QString* error) {
    out.d = in;
    SystemDraft& d = out.d;
    auto fail = [&](const QString& text) {
        *error = text;
        return false;
    };
    if (d.system.name.trimmed().isEmpty())
        return fail(QStringLiteral("The coordinate system has no name."));
    if (d.system.group.trimmed().isEmpty())
        return fail(
            QStringLiteral("The coordinate system \"%1\" has no group.").arg(d.system.name));
    if (d.system.satEllipsoid.isEmpty())
        d.system.satEllipsoid = QStringLiteral("WGS 84");
    if (d.system.localEllipsoid.isEmpty())
        return fail(QStringLiteral("The coordinate system \"%1\" has no local ellipsoid.")
                        .arg(d.system.name));
    for (QString* name : {&d.system.satEllipsoid, &d.system.localEllipsoid}) {
        QString failure;
        const auto e = store.FindEllipsoid(*name, GEODB_ALL, &failure);
        if (!failure.isEmpty())
            return fail(ReadFailed(failure));
        if (!e)
            return fail(QStringLiteral("The ellipsoid \"%1\" is not stored.").arg(*name));
        *name = e->name;
    }

    if (d.dtf.name.trimmed().isEmpty())
        return fail(QStringLiteral("The coordinate system \"%1\" has no datum transformation.")
                        .arg(d.system.name));
    if (!d.dtfMethodName.isEmpty()) {
        const int found = InfoTexts::DtfMethodIndex(d.dtfMethodName);
        if (found < 0)
            return fail(QStringLiteral("The datum transformation method \"%1\" is unknown.")
                            .arg(d.dtfMethodName));
        d.dtf.methodIndex = found;
    }
    if (d.dtf.methodIndex < DTF_NONE || d.dtf.methodIndex > DTF_15_COORDINATE_FRAME)
        return fail(
            QStringLiteral("The datum transformation \"%1\" has no method.").arg(d.dtf.name));
    if (!AllFinite(d.dtf.values) || !std::isfinite(d.dtf.obsEpoch) ||
        !std::isfinite(d.dtf.trailing2))
        return fail(QStringLiteral("A value of the datum transformation \"%1\" is not a number.")
                        .arg(d.dtf.name));

    if (d.projection.name.trimmed().isEmpty())
        return fail(
            QStringLiteral("The coordinate system \"%1\" has no projection.").arg(d.system.name));
    out.method = d.prjMethodName.isEmpty() ? ProjectionMethods::ById(d.projection.methodId)
                                           : ProjectionMethods::ByName(d.prjMethodName);
    if (!out.method)
        return fail(
            QStringLiteral("The projection \"%1\" has no known method.").arg(d.projection.name));
    d.projection.methodId = out.method->id;
    // A projection nothing can compute is referenced where it is pre-defined, never written.
    QString unread;
    const bool predefined =
        out.method->id == ProjectionMethods::NotImplementedId &&
        store.FindProjection(d.projection.name, GEODB_SYSTEM, &unread).has_value();
    if (!unread.isEmpty())
        return fail(unread);
    if (out.method->id == ProjectionMethods::NotImplementedId && !predefined)
        return fail(QStringLiteral("The projection \"%1\" has a method that is not implemented; "
                                   "it cannot be saved.")
                        .arg(d.projection.name));
    if (out.method->id == ProjectionMethods::UtmId) {
        if (!SetUtmRows(d, error))
            return false;
    } else {
        d.utmMode = false; // zone and hemisphere belong to UTM alone
    }
    for (const PrjParamRecord& p : d.projection.params) {
        if (!std::isfinite(p.value))
            return fail(
                QStringLiteral("The projection parameter \"%1\" is not a number.").arg(p.name));
    }

    if (d.unit.name.trimmed().isEmpty())
        return fail(QStringLiteral("The coordinate system \"%1\" has no unit.").arg(d.system.name));
    if (!std::isfinite(d.unit.metersPerUnit) || d.unit.metersPerUnit <= 0)
        return fail(QStringLiteral("The unit \"%1\" needs a positive number of metres per unit.")
                        .arg(d.unit.name));
    return true;
}

bool SaveGroup(GeoStore& store, SystemDraft& d, qlonglong& groupId, QString* error) {
    QString failure;
    const bool preDefined =
        IdOf(store.systemDb(), QStringLiteral("sysgroup"), d.system.group, &failure).has_value();
    if (!failure.isEmpty()) {
        *error = ReadFailed(failure);
        return false;
    }
    if (preDefined) {
        *error = QStringLiteral("The group \"%1\" is pre-defined. Save the coordinate system in a "
                                "user group.")
                     .arg(d.system.group);
        return false;
    }
    QSqlDatabase db = store.userDb();
    if (auto id = IdOf(db, QStringLiteral("sysgroup"), d.system.group, &failure)) {
        groupId = *id;
        return true;
    }
    if (!failure.isEmpty()) {
        *error = ReadFailed(failure);
        return false;
    }
    return Write(db, QStringLiteral("INSERT INTO sysgroup (name, name_key) VALUES (?, ?)"),
                 {d.system.group, Key(d.system.group)},
                 QStringLiteral("the group \"%1\"").arg(d.system.group), error, &groupId);
}

bool SaveUnit(GeoStore& store, SystemDraft& d, QString* error) {
    UnitRecord& u = d.unit;
    // A stored unit, pre-defined or user-defined, is referenced as it is: other systems
    // measure in it, and no dialog edits a unit (the pages may even hand over the suffix of
    // the unit selected before). Only a different factor is a change, and it is refused.
    for (QSqlDatabase db : {store.systemDb(), store.userDb()}) {
        QString failure;
        const auto stored = StoreSql::ReadUnit(db, u.name, &failure);
        if (!failure.isEmpty()) {
            *error = ReadFailed(failure);
            return false;
        }
        if (!stored)
            continue;
        if (std::fabs(stored->metersPerUnit - u.metersPerUnit) >
            1e-9 * std::fabs(stored->metersPerUnit)) {
            *error = QStringLiteral("The stored unit \"%1\" is %2 m per unit and cannot be "
                                    "changed. Give the changed unit a new name.")
                         .arg(stored->name, QString::number(stored->metersPerUnit, 'g', 15));
            return false;
        }
        d.system.unitName = stored->name;
        return true;
    }
    d.system.unitName = u.name;
    return Write(store.userDb(),
                 QStringLiteral("INSERT INTO unit (name, name_key, meters_per_unit, suffix, "
                                "description, category) VALUES (?, ?, ?, ?, ?, ?)"),
                 {u.name, Key(u.name), u.metersPerUnit, u.suffix, InfoTexts::UnitDescriptionText(u),
                  u.category},
                 QStringLiteral("the unit \"%1\"").arg(u.name), error);
}

bool SaveDtf(GeoStore& store, SystemDraft& d, QString* error) {
    const DtfRecord& t = d.dtf;
    QString failure;
    const auto preDefined = StoreSql::ReadDtf(store.systemDb(), t.name, &failure);
    const auto user = StoreSql::ReadDtf(store.userDb(), t.name, &failure);
    if (!failure.isEmpty()) {
        *error = ReadFailed(failure);
        return false;
    }
    if (const auto& stored = preDefined) {
        if (stored->methodIndex != t.methodIndex || !SameDtfValues(stored->values, t.values)) {
            *error = QStringLiteral("A pre-defined datum transformation cannot be changed: "
                                    "\"%1\" keeps its stored method and values. Give the changed "
                                    "datum transformation a new name.")
                         .arg(stored->name);
            return false;
        }
        d.system.dtfName = stored->name;
        return true;
    }
    // The engine takes a default observation epoch as the time of every position.
    if (!IsObservationEpochValid(t.obsEpoch)) {
        *error = QStringLiteral("The default observation epoch %1 of the datum transformation "
                                "\"%2\" is not a year between %3 and %4 (0 for none).")
                     .arg(QString::number(t.obsEpoch, 'g', 12), t.name)
                     .arg(ObservationEpochMin, 0, 'f', 0)
                     .arg(ObservationEpochMax, 0, 'f', 0);
        return false;
    }
    // The rates of a 15-value transformation count from its reference epoch: without it
    // every position is moved by the rates times two thousand years, some hundred metres.
    const double epoch = t.values[14];
    if (t.methodIndex >= DTF_15_POSITION_VECTOR &&
        !(epoch >= ObservationEpochMin && epoch <= ObservationEpochMax)) {
        *error = epoch == 0.0
                     ? QStringLiteral("The field \"Datum Epoch\" of the time-dependent datum "
                                      "transformation \"%1\" is 0. Enter the year its parameters "
                                      "refer to (for example 2010.0): without it every position is "
                                      "off by up to a hundred metres.")
                           .arg(t.name)
                     : QStringLiteral("The field \"Datum Epoch\" of the time-dependent datum "
                                      "transformation \"%1\" is %2, not a year between %3 and "
                                      "%4.")
                           .arg(t.name, QString::number(epoch, 'g', 12))
                           .arg(ObservationEpochMin, 0, 'f', 0)
                           .arg(ObservationEpochMax, 0, 'f', 0);
        return false;
    }
    QSqlDatabase db = store.userDb();
    const QString what = QStringLiteral("the datum transformation \"%1\"").arg(t.name);
    QVariantList values = DtfValuesOf(t, d.system.satEllipsoid, d.system.localEllipsoid);
    if (const auto& stored = user) {
        d.system.dtfName = stored->name;
        QString sets;
        for (const QString& column : QString::fromLatin1(DtfColumns).split(QStringLiteral(", ")))
            sets += (sets.isEmpty() ? QString() : QStringLiteral(", ")) + column +
                    QStringLiteral(" = ?");
        values << Key(t.name);
        return Write(db, QStringLiteral("UPDATE dtf SET %1 WHERE name_key = ?").arg(sets), values,
                     what, error);
    }
    d.system.dtfName = t.name;
    values.prepend(Key(t.name));
    values.prepend(t.name);
    QString marks = QStringLiteral("?, ?");
    for (int i = 2; i < values.size(); ++i)
        marks += QStringLiteral(", ?");
    return Write(db,
                 QStringLiteral("INSERT INTO dtf (name, name_key, %1) VALUES (%2)")
                     .arg(QLatin1String(DtfColumns), marks),
                 values, what, error);
}

bool SaveProjection(GeoStore& store, SystemDraft& d, QString* error) {
    ProjectionRecord& p = d.projection;
    QString failure;
    const auto preDefined = StoreSql::ReadProjection(store.systemDb(), p.name, &failure);
    const auto user = StoreSql::ReadProjection(store.userDb(), p.name, &failure);
    const auto existing = IdOf(store.userDb(), QStringLiteral("projection"), p.name, &failure);
    if (!failure.isEmpty()) {
        *error = ReadFailed(failure);
        return false;
    }
    if (const auto& stored = preDefined) {
        if (stored->methodId != p.methodId || !SameParams(p.params, stored->params)) {
            *error = QStringLiteral("A pre-defined projection cannot be changed: \"%1\" keeps its "
                                    "stored method and parameters. Give the changed projection a "
                                    "new name.")
                         .arg(stored->name);
            return false;
        }
        d.system.projectionName = stored->name;
        return true;
    }
    QSqlDatabase db = store.userDb();
    const QString what = QStringLiteral("the projection \"%1\"").arg(p.name);
    qlonglong id = 0;
    if (existing && user) {
        id = *existing;
        d.system.projectionName = user->name;
        if (!Write(db,
                   QStringLiteral("UPDATE projection SET method_id = ?, unit_name = ?, "
                                  "description = ? WHERE id = ?"),
                   {p.methodId, d.system.unitName, p.description, id}, what, error) ||
            !Write(db, QStringLiteral("DELETE FROM projection_param WHERE projection_id = ?"), {id},
                   what, error))
            return false;
    } else {
        d.system.projectionName = p.name;
        if (!Write(db,
                   QStringLiteral("INSERT INTO projection (name, name_key, method_id, unit_name, "
                                  "description) VALUES (?, ?, ?, ?, ?)"),
                   {p.name, Key(p.name), p.methodId, d.system.unitName, p.description}, what, error,
                   &id))
            return false;
    }
    for (int i = 0; i < p.params.size(); ++i) {
        const PrjParamRecord& param = p.params[i];
        if (!Write(db,
                   QStringLiteral("INSERT INTO projection_param (projection_id, ord, name, value, "
                                  "value_text, type) VALUES (?, ?, ?, ?, ?, ?)"),
                   {id, i, param.name, param.value, param.valueText, param.type}, what, error))
            return false;
    }
    return true;
}

QVariant Nullable(const std::optional<double>& v) {
    return v ? QVariant(*v) : QVariant(QMetaType(QMetaType::Double));
}

bool SaveSystem(GeoStore& store, SystemDraft& d, qlonglong groupId, QString* error) {
    SystemRecord& s = d.system;
    QString failure;
    const bool preDefined =
        IdOf(store.systemDb(), QStringLiteral("coordsys"), s.name, &failure).has_value();
    const auto existing = IdOf(store.userDb(), QStringLiteral("coordsys"), s.name, &failure);
    if (!failure.isEmpty()) {
        *error = ReadFailed(failure);
        return false;
    }
    if (preDefined) {
        *error = QStringLiteral("The coordinate system \"%1\" is pre-defined and cannot be "
                                "changed. Save it under a new name.")
                     .arg(s.name);
        return false;
    }
    if (!d.utmMode) {
        s.utmZoneText.clear();
        s.utmHemisphereText.clear();
    }
    const PostCorrection& p = s.post;
    QVariantList values{groupId,
                        s.satEllipsoid,
                        s.localEllipsoid,
                        s.dtfName,
                        s.projectionName,
                        s.unitName,
                        s.primeMeridian,
                        s.utmZoneText,
                        s.utmHemisphereText,
                        int(s.geoidOn),
                        s.geoidMethod,
                        s.geoidFile,
                        s.chartDatum,
                        s.geoidSeparation,
                        s.geoidKeys,
                        int(p.on),
                        p.e,
                        p.n,
                        p.z,
                        p.modelName,
                        p.modelFile,
                        int(p.horOn),
                        p.horOriginE,
                        p.horOriginN,
                        p.horRotation,
                        p.horScale,
                        int(p.vertOn),
                        p.vertOriginE,
                        p.vertOriginN,
                        p.vertSlopeE,
                        p.vertSlopeN,
                        s.epsgCode,
                        s.area,
                        Nullable(s.bboxSouth),
                        Nullable(s.bboxWest),
                        Nullable(s.bboxNorth),
                        Nullable(s.bboxEast),
                        s.remarks};
    const QStringList columns{QStringLiteral("group_id"),
                              QStringLiteral("sat_ellipsoid"),
                              QStringLiteral("local_ellipsoid"),
                              QStringLiteral("dtf_name"),
                              QStringLiteral("projection_name"),
                              QStringLiteral("unit_name"),
                              QStringLiteral("prime_meridian"),
                              QStringLiteral("utm_zone_text"),
                              QStringLiteral("utm_hemisphere_text"),
                              QStringLiteral("geoid_on"),
                              QStringLiteral("geoid_method"),
                              QStringLiteral("geoid_file"),
                              QStringLiteral("chart_datum"),
                              QStringLiteral("geoid_separation"),
                              QStringLiteral("geoid_keys"),
                              QStringLiteral("post_on"),
                              QStringLiteral("post_e"),
                              QStringLiteral("post_n"),
                              QStringLiteral("post_z"),
                              QStringLiteral("post_model_name"),
                              QStringLiteral("post_model_file"),
                              QStringLiteral("hor_on"),
                              QStringLiteral("hor_origin_e"),
                              QStringLiteral("hor_origin_n"),
                              QStringLiteral("hor_rotation"),
                              QStringLiteral("hor_scale"),
                              QStringLiteral("vert_on"),
                              QStringLiteral("vert_origin_e"),
                              QStringLiteral("vert_origin_n"),
                              QStringLiteral("vert_slope_e"),
                              QStringLiteral("vert_slope_n"),
                              QStringLiteral("epsg_code"),
                              QStringLiteral("area"),
                              QStringLiteral("bbox_south"),
                              QStringLiteral("bbox_west"),
                              QStringLiteral("bbox_north"),
                              QStringLiteral("bbox_east"),
                              QStringLiteral("remarks")};
    QSqlDatabase db = store.userDb();
    const QString what = QStringLiteral("the coordinate system \"%1\"").arg(s.name);
    if (const auto& id = existing) {
        values << *id;
        return Write(db,
                     QStringLiteral("UPDATE coordsys SET %1 = ? WHERE id = ?")
                         .arg(columns.join(QStringLiteral(" = ?, "))),
                     values, what, error);
    }
    values.prepend(Key(s.name));
    values.prepend(s.name);
    QString marks = QStringLiteral("?");
    for (int i = 1; i < values.size(); ++i)
        marks += QStringLiteral(", ?");
    return Write(db,
                 QStringLiteral("INSERT INTO coordsys (name, name_key, %1) VALUES (%2)")
                     .arg(columns.join(QStringLiteral(", ")), marks),
                 values, what, error);
}

} // namespace

bool Save(GeoStore& store, const SystemDraft& draft, QString* error) {
    Resolved r;
    if (!Validate(store, draft, r, error))
        return false;
    SystemDraft& d = r.d;
    Transaction tx(store);
    qlonglong groupId = 0;
    return tx.Begin(error) && SaveGroup(store, d, groupId, error) && SaveUnit(store, d, error) &&
           SaveDtf(store, d, error) && SaveProjection(store, d, error) &&
           SaveSystem(store, d, groupId, error) && tx.Commit(error);
}

bool Remove(GeoStore& store, const QString& group, const QString& system, QString* error) {
    QString failure;
    const bool preDefined =
        StoreSql::ReadSystem(store.systemDb(), group, system, &failure).has_value();
    if (!failure.isEmpty()) {
        *error = failure;
        return false;
    }
    if (preDefined) {
        *error = QStringLiteral("The coordinate system \"%1\" is pre-defined and cannot be "
                                "removed.")
                     .arg(system);
        return false;
    }
    QSqlDatabase db = store.userDb();
    Transaction tx(store);
    if (!tx.Begin(error))
        return false;
    const auto found = StoreSql::ReadSystem(db, group, system, &failure);
    if (!failure.isEmpty()) {
        *error = failure;
        return false;
    }
    if (!found) {
        *error = QStringLiteral("The coordinate system \"%1\" is not stored in the group \"%2\".")
                     .arg(system, group);
        return false;
    }
    const QStringList projects = ProjectsUsing(store, found->name, &failure);
    if (!failure.isEmpty()) {
        *error = failure;
        return false;
    }
    if (!projects.isEmpty()) {
        *error = QStringLiteral("The coordinate system \"%1\" is used by the project(s) %2 and "
                                "cannot be removed.")
                     .arg(found->name, projects.join(QStringLiteral(", ")));
        return false;
    }
    return Write(db, QStringLiteral("DELETE FROM coordsys WHERE name_key = ?"), {Key(found->name)},
                 QStringLiteral("the removal of \"%1\"").arg(found->name), error) &&
           tx.Commit(error);
}

bool AddUnit(GeoStore& store, const QString& name, double metersPerUnit, const QString& suffix,
             int category, QString* error) {
    // A unit of empty name is stored like any other (the new-unit dialog relies on it); the
    // name check below still keeps it to one.
    if (!std::isfinite(metersPerUnit) || metersPerUnit <= 0) {
        *error =
            QStringLiteral("The unit \"%1\" needs a positive number of metres per unit.").arg(name);
        return false;
    }
    Transaction tx(store);
    if (!tx.Begin(error))
        return false;
    QString failure;
    const bool exists = store.FindUnit(name, GEODB_ALL, &failure).has_value();
    if (!failure.isEmpty()) {
        *error = ReadFailed(failure);
        return false;
    }
    if (exists) {
        *error = QStringLiteral("A unit named \"%1\" already exists.").arg(name);
        return false;
    }
    UnitRecord unit;
    unit.name = name;
    unit.metersPerUnit = metersPerUnit;
    return Write(store.userDb(),
                 QStringLiteral("INSERT INTO unit (name, name_key, meters_per_unit, suffix, "
                                "description, category) VALUES (?, ?, ?, ?, ?, ?)"),
                 {name, Key(name), metersPerUnit, suffix, InfoTexts::UnitDescriptionText(unit),
                  category},
                 QStringLiteral("the unit \"%1\"").arg(name), error) &&
           tx.Commit(error);
}

bool SetInUse(GeoStore& store, const QString& group, const QString& system,
              const QString& projectId, bool inUse, QString* error) {
    if (projectId.isEmpty()) {
        *error = QStringLiteral("No project was named.");
        return false;
    }
    QString failure;
    const auto found = store.FindSystem(group, system, GEODB_ALL, &failure);
    if (!failure.isEmpty()) {
        *error = failure;
        return false;
    }
    if (!found) {
        *error = QStringLiteral("The coordinate system \"%1\" is not stored in the group \"%2\".")
                     .arg(system, group);
        return false;
    }
    const QString sql = inUse ? QStringLiteral("INSERT OR IGNORE INTO system_use (system_key, "
                                               "project) VALUES (?, ?)")
                              : QStringLiteral("DELETE FROM system_use WHERE system_key = ? AND "
                                               "project = ?");
    Transaction tx(store);
    return tx.Begin(error) &&
           Write(store.userDb(), sql, {Key(found->name), projectId},
                 QStringLiteral("the use of \"%1\"").arg(found->name), error) &&
           tx.Commit(error);
}

bool IsInUse(const GeoStore& store, const QString& system, QString* error) {
    return StoreSql::HasRow(store.userDb(),
                            QStringLiteral("SELECT 1 FROM system_use WHERE system_key = ?"),
                            {Key(system)}, error);
}

QStringList ProjectsUsing(const GeoStore& store, const QString& system, QString* error) {
    return StoreSql::Column(
        store.userDb(),
        QStringLiteral("SELECT project FROM system_use WHERE system_key = ? ORDER BY project"),
        {Key(system)}, error);
}

} // namespace SystemWriter
