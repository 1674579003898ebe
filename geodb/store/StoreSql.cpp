#include "store/StoreSql.h"

#include "store/GeoStore.h"
#include "store/Schema.h"

#include <QDir>
#include <QSqlRecord>

#include <algorithm>

namespace StoreSql {

std::vector<std::pair<QSqlDatabase, int>> Databases(const GeoStore& store, int scope) {
    std::vector<std::pair<QSqlDatabase, int>> out;
    if (scope & GEODB_SYSTEM)
        out.emplace_back(store.systemDb(), GEODB_SYSTEM);
    if (scope & GEODB_USER)
        out.emplace_back(store.userDb(), GEODB_USER);
    return out;
}

namespace {

// One message part as a sentence: capital first letter, a full stop at the end.
QString Sentence(const QString& text) {
    QString s = text.trimmed();
    if (s.isEmpty())
        return s;
    s[0] = s[0].toUpper();
    if (!s.endsWith(QLatin1Char('.')) && !s.endsWith(QLatin1Char('!')) &&
        !s.endsWith(QLatin1Char('?')))
        s += QLatin1Char('.');
    return s;
}

} // namespace

QString ErrorText(const QSqlError& error) {
    const QString database = Sentence(error.databaseText());
    const QString driver = Sentence(error.driverText());
    if (database.isEmpty() || database.compare(driver, Qt::CaseInsensitive) == 0)
        return driver.isEmpty() ? QStringLiteral("Unknown database error.") : driver;
    return driver.isEmpty() ? database : database + QLatin1Char(' ') + driver;
}

QString DatabaseLabel(const QSqlDatabase& db) {
    const QString file = QDir::toNativeSeparators(db.databaseName());
    return db.connectionName().startsWith(QLatin1String("orv-system"))
               ? QStringLiteral("the pre-defined coordinate system database \"%1\"").arg(file)
               : QStringLiteral("the user database \"%1\"").arg(file);
}

QString ReadFailure(const QSqlDatabase& db, const QSqlError& error) {
    return Sentence(
        QStringLiteral("%1 cannot be read: %2").arg(DatabaseLabel(db), ErrorText(error)));
}

bool Run(QSqlQuery& q, const QString& sql, const QVariantList& values) {
    if (!q.prepare(sql))
        return false;
    for (const QVariant& value : values) {
        // A null QString binds as SQL NULL; the text columns hold '' for "no text".
        if (value.typeId() == QMetaType::QString && value.toString().isNull())
            q.addBindValue(QString::fromLatin1(""));
        else
            q.addBindValue(value);
    }
    return q.exec();
}

Reader::Reader(QSqlDatabase db, QString* error) : m_db(db), m_query(db), m_error(error) {
    m_query.setForwardOnly(true);
}

void Reader::Fail() {
    m_failed = true;
    if (m_error->isEmpty())
        *m_error = ReadFailure(m_db, m_query.lastError());
}

bool Reader::Exec(const QString& sql, const QVariantList& values) {
    if (!m_db.isOpen()) {
        m_failed = true;
        if (m_error->isEmpty())
            *m_error = QStringLiteral("%1 is not open.").arg(Sentence(DatabaseLabel(m_db)));
        return false;
    }
    if (Run(m_query, sql, values))
        return true;
    Fail();
    return false;
}

bool Reader::Next() {
    if (m_failed || !m_query.isActive())
        return false;
    if (m_query.next())
        return true;
    if (m_query.lastError().type() != QSqlError::NoError)
        Fail();
    return false;
}

QStringList Column(QSqlDatabase db, const QString& sql, const QVariantList& values,
                   QString* error) {
    QStringList out;
    Reader r(db, error);
    if (!r.Exec(sql, values))
        return {};
    while (r.Next())
        out << r.value(0).toString();
    return r.failed() ? QStringList() : out;
}

bool HasRow(QSqlDatabase db, const QString& sql, const QVariantList& values, QString* error) {
    Reader r(db, error);
    return r.Exec(sql, values) && r.Next();
}

namespace {

QString Text(const Reader& q, const char* column) {
    return q.value(QString::fromLatin1(column)).toString();
}
double Real(const Reader& q, const char* column) {
    return q.value(QString::fromLatin1(column)).toDouble();
}
int Int(const Reader& q, const char* column) {
    return q.value(QString::fromLatin1(column)).toInt();
}
std::optional<double> OptionalReal(const Reader& q, const char* column) {
    const QVariant v = q.value(QString::fromLatin1(column));
    if (v.isNull())
        return std::nullopt;
    return v.toDouble();
}

// Positions q on the row of table whose name equals name without regard to case.
bool SelectByName(Reader& q, const char* table, const QString& name) {
    return q.Exec(QStringLiteral("SELECT * FROM %1 WHERE name_key = ?").arg(QLatin1String(table)),
                  {OrvSchema::NameKey(name)}) &&
           q.Next();
}

} // namespace

std::optional<EllipsoidRecord> ReadEllipsoid(QSqlDatabase db, const QString& name, QString* error) {
    Reader q(db, error);
    if (!SelectByName(q, "ellipsoid", name))
        return std::nullopt;
    EllipsoidRecord r;
    r.name = Text(q, "name");
    r.values = {Real(q, "semi_major"), Real(q, "semi_minor"),  Real(q, "inv_flattening"),
                Real(q, "flattening"), Real(q, "ecc_squared"), Real(q, "second_ecc_squared")};
    r.epsgCode = Int(q, "epsg_code");
    r.remarks = Text(q, "remarks");
    return r;
}

std::optional<UnitRecord> ReadUnit(QSqlDatabase db, const QString& name, QString* error) {
    Reader q(db, error);
    if (!SelectByName(q, "unit", name))
        return std::nullopt;
    UnitRecord r;
    r.name = Text(q, "name");
    r.metersPerUnit = Real(q, "meters_per_unit");
    r.suffix = Text(q, "suffix");
    r.description = Text(q, "description");
    r.category = Int(q, "category");
    r.epsgCode = Int(q, "epsg_code");
    return r;
}

std::optional<DtfRecord> ReadDtf(QSqlDatabase db, const QString& name, QString* error) {
    Reader q(db, error);
    if (!SelectByName(q, "dtf", name))
        return std::nullopt;
    DtfRecord r;
    r.name = Text(q, "name");
    r.srcEllipsoid = Text(q, "src_ellipsoid");
    r.dstEllipsoid = Text(q, "dst_ellipsoid");
    r.methodIndex = Int(q, "method_index");
    const char* const columns[15] = {"tx",  "ty",  "tz",  "rx",  "ry",  "rz",  "ds",   "dtx",
                                     "dty", "dtz", "drx", "dry", "drz", "dds", "epoch"};
    for (int i = 0; i < 15; ++i)
        r.values[i] = Real(q, columns[i]);
    r.accuracy = Real(q, "accuracy");
    r.epsgCode = Int(q, "epsg_code");
    r.option = static_cast<unsigned char>(Int(q, "option"));
    r.obsEpoch = Real(q, "obs_epoch");
    r.trailing2 = Real(q, "trailing2");
    r.description = Text(q, "description");
    r.extraText = Text(q, "extra_text");
    r.localDatum = Text(q, "local_datum");
    return r;
}

std::optional<ProjectionRecord> ReadProjection(QSqlDatabase db, const QString& name,
                                               QString* error) {
    Reader q(db, error);
    if (!SelectByName(q, "projection", name))
        return std::nullopt;
    ProjectionRecord r;
    const qlonglong id = q.value(QStringLiteral("id")).toLongLong();
    r.name = Text(q, "name");
    r.methodId = Int(q, "method_id");
    r.unitName = Text(q, "unit_name");
    r.epsgCode = Int(q, "epsg_code");
    r.epsgMethodCode = Int(q, "epsg_method_code");
    r.description = Text(q, "description");
    // A parameter that cannot be read fails the whole projection: a partial list would
    // define another projection.
    Reader p(db, error);
    if (!p.Exec(QStringLiteral("SELECT name, value, value_text, type FROM projection_param "
                               "WHERE projection_id = ? ORDER BY ord"),
                {id}))
        return std::nullopt;
    while (p.Next()) {
        PrjParamRecord param;
        param.name = p.value(0).toString();
        param.value = p.value(1).toDouble();
        param.valueText = p.value(2).toString();
        param.type = p.value(3).toUInt();
        r.params << param;
    }
    if (p.failed())
        return std::nullopt;
    return r;
}

std::optional<SystemRecord> ReadSystem(QSqlDatabase db, const QString& group, const QString& system,
                                       QString* error) {
    Reader q(db, error);
    QString sql = QStringLiteral("SELECT c.*, g.name AS group_name FROM coordsys c "
                                 "JOIN sysgroup g ON g.id = c.group_id WHERE c.name_key = ?");
    QVariantList values{OrvSchema::NameKey(system)};
    if (!group.isEmpty()) {
        sql += QStringLiteral(" AND g.name_key = ?");
        values << OrvSchema::NameKey(group);
    }
    if (!q.Exec(sql, values) || !q.Next())
        return std::nullopt;
    SystemRecord r;
    r.name = Text(q, "name");
    r.group = Text(q, "group_name");
    r.satEllipsoid = Text(q, "sat_ellipsoid");
    r.localEllipsoid = Text(q, "local_ellipsoid");
    r.dtfName = Text(q, "dtf_name");
    r.projectionName = Text(q, "projection_name");
    r.unitName = Text(q, "unit_name");
    r.primeMeridian = Real(q, "prime_meridian");
    r.utmZoneText = Text(q, "utm_zone_text");
    r.utmHemisphereText = Text(q, "utm_hemisphere_text");
    r.geoidOn = Int(q, "geoid_on") != 0;
    r.geoidMethod = Text(q, "geoid_method");
    r.geoidFile = Text(q, "geoid_file");
    r.chartDatum = Text(q, "chart_datum");
    r.geoidSeparation = Real(q, "geoid_separation");
    r.geoidKeys = Text(q, "geoid_keys");
    PostCorrection& p = r.post;
    p.on = Int(q, "post_on") != 0;
    p.e = Real(q, "post_e");
    p.n = Real(q, "post_n");
    p.z = Real(q, "post_z");
    p.modelName = Text(q, "post_model_name");
    p.modelFile = Text(q, "post_model_file");
    p.horOn = Int(q, "hor_on") != 0;
    p.horOriginE = Real(q, "hor_origin_e");
    p.horOriginN = Real(q, "hor_origin_n");
    p.horRotation = Real(q, "hor_rotation");
    p.horScale = Real(q, "hor_scale");
    p.vertOn = Int(q, "vert_on") != 0;
    p.vertOriginE = Real(q, "vert_origin_e");
    p.vertOriginN = Real(q, "vert_origin_n");
    p.vertSlopeE = Real(q, "vert_slope_e");
    p.vertSlopeN = Real(q, "vert_slope_n");
    r.epsgCode = Int(q, "epsg_code");
    r.area = Text(q, "area");
    r.bboxSouth = OptionalReal(q, "bbox_south");
    r.bboxWest = OptionalReal(q, "bbox_west");
    r.bboxNorth = OptionalReal(q, "bbox_north");
    r.bboxEast = OptionalReal(q, "bbox_east");
    r.remarks = Text(q, "remarks");
    return r;
}

void SortNames(QStringList& names) {
    std::sort(names.begin(), names.end(), [](const QString& a, const QString& b) {
        const int c = a.compare(b, Qt::CaseInsensitive);
        return c != 0 ? c < 0 : a < b;
    });
    // one key per name: a name is dropped when its key is the last kept one's
    QStringList kept;
    kept.reserve(names.size());
    QString lastKey;
    for (const QString& name : std::as_const(names)) {
        QString key = OrvSchema::NameKey(name);
        if (!kept.isEmpty() && key == lastKey)
            continue;
        kept.append(name);
        lastKey = std::move(key);
    }
    names = std::move(kept);
}

} // namespace StoreSql
