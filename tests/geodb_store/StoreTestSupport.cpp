#include "StoreTestSupport.h"

#include "store/DataSource.h"
#include "store/Schema.h"

#include <QDir>
#include <QFile>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QUuid>

namespace {

// A connection used for one task and removed afterwards.
class ScratchConnection {
public:
    explicit ScratchConnection(const QString& path)
        : m_name(QStringLiteral("test-") + QUuid::createUuid().toString()) {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
        db.setDatabaseName(path);
        db.open();
    }
    ~ScratchConnection() {
        {
            QSqlDatabase db = QSqlDatabase::database(m_name, false);
            db.close();
        }
        QSqlDatabase::removeDatabase(m_name);
    }
    QSqlDatabase db() const { return QSqlDatabase::database(m_name, false); }

private:
    QString m_name;
};

QString Ellipsoid(const QString& name, double a, double invF, int epsg) {
    const double f = 1.0 / invF;
    const double b = a * (1 - f);
    const double e2 = 2 * f - f * f;
    const double ep2 = e2 / (1 - e2);
    return QStringLiteral("INSERT INTO ellipsoid (name, name_key, semi_major, semi_minor, "
                          "inv_flattening, flattening, ecc_squared, second_ecc_squared, "
                          "epsg_code) VALUES ('%1', '%2', %3, %4, %5, %6, %7, %8, %9)")
        .arg(name, OrvSchema::NameKey(name), QString::number(a, 'g', 17),
             QString::number(b, 'g', 17), QString::number(invF, 'g', 17),
             QString::number(f, 'g', 17), QString::number(e2, 'g', 17),
             QString::number(ep2, 'g', 17), QString::number(epsg));
}

QString Insert(const QString& table, const QStringList& columns, const QStringList& values) {
    return QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
        .arg(table, columns.join(QStringLiteral(", ")), values.join(QStringLiteral(", ")));
}

QString Q(const QString& text) {
    QString quoted = text;
    quoted.replace(QLatin1Char('\''), QStringLiteral("''"));
    return QLatin1Char('\'') + quoted + QLatin1Char('\'');
}

QStringList Named(const QString& name) {
    return {Q(name), Q(OrvSchema::NameKey(name))};
}

QString Param(int projection, int ord, const QString& name, double value, const QString& text,
              int type) {
    return Insert(QStringLiteral("projection_param"),
                  {QStringLiteral("projection_id"), QStringLiteral("ord"), QStringLiteral("name"),
                   QStringLiteral("value"), QStringLiteral("value_text"), QStringLiteral("type")},
                  {QString::number(projection), QString::number(ord), Q(name),
                   QString::number(value, 'g', 17), Q(text), QString::number(type)});
}

QStringList MiniContents() {
    const QStringList nameCols{QStringLiteral("name"), QStringLiteral("name_key")};
    QStringList s;
    s << Ellipsoid(QStringLiteral("WGS 84"), 6378137.0, 298.257223563, 7030)
      << Ellipsoid(QStringLiteral("International 1924"), 6378388.0, 297.0, 7022)
      << Ellipsoid(QStringLiteral("Bessel 1841"), 6377397.155, 299.1528128, 7004);
    const QStringList unitCols =
        nameCols + QStringList{QStringLiteral("meters_per_unit"), QStringLiteral("suffix"),
                               QStringLiteral("description")};
    s << Insert(QStringLiteral("unit"), unitCols,
                Named(QStringLiteral("Meters")) +
                    QStringList{QStringLiteral("1.0"), Q(QStringLiteral("m")),
                                Q(QStringLiteral("International metre"))})
      << Insert(QStringLiteral("unit"), unitCols,
                Named(QStringLiteral("US survey foot")) +
                    QStringList{QString::number(1200.0 / 3937.0, 'g', 17),
                                Q(QStringLiteral("ftUS")),
                                Q(QStringLiteral("US survey foot, 1200/3937 m"))});
    const QStringList dtfCols = nameCols + QStringList{QStringLiteral("src_ellipsoid"),
                                                       QStringLiteral("src_ellipsoid_key"),
                                                       QStringLiteral("dst_ellipsoid"),
                                                       QStringLiteral("dst_ellipsoid_key"),
                                                       QStringLiteral("method_index"),
                                                       QStringLiteral("tx"),
                                                       QStringLiteral("ty"),
                                                       QStringLiteral("tz"),
                                                       QStringLiteral("rx"),
                                                       QStringLiteral("ry"),
                                                       QStringLiteral("rz"),
                                                       QStringLiteral("ds"),
                                                       QStringLiteral("accuracy"),
                                                       QStringLiteral("epsg_code"),
                                                       QStringLiteral("option"),
                                                       QStringLiteral("description"),
                                                       QStringLiteral("extra_text"),
                                                       QStringLiteral("local_datum")};
    auto dtf = [&](const QString& name, const QString& dst, int method, const QStringList& values,
                   double accuracy, int epsg, int option, const QString& description,
                   const QString& extra, const QString& datum) {
        return Insert(QStringLiteral("dtf"), dtfCols,
                      Named(name) +
                          QStringList{Q(QStringLiteral("WGS 84")), Q(QStringLiteral("wgs 84")),
                                      Q(dst), Q(OrvSchema::NameKey(dst)), QString::number(method)} +
                          values +
                          QStringList{QString::number(accuracy), QString::number(epsg),
                                      QString::number(option), Q(description), Q(extra), Q(datum)});
    };
    s << dtf(QStringLiteral("ED50 to WGS 84 (1)"), QStringLiteral("International 1924"), 1,
             {QStringLiteral("-87"), QStringLiteral("-98"), QStringLiteral("-121"),
              QStringLiteral("0.1"), QStringLiteral("-0.2"), QStringLiteral("0.3"),
              QStringLiteral("1.5")},
             5.0, 1133, 1, QStringLiteral("Derived at 85 stations."),
             QStringLiteral("Europe - west"), QStringLiteral("European Datum 1950"))
      << dtf(QStringLiteral("DHDN to WGS 84 (2)"), QStringLiteral("Bessel 1841"), 2,
             {QStringLiteral("598.1"), QStringLiteral("73.7"), QStringLiteral("418.2"),
              QStringLiteral("0.202"), QStringLiteral("0.045"), QStringLiteral("-2.455"),
              QStringLiteral("6.7")},
             3.0, 1777, 1, QString(), QStringLiteral("Germany - west"),
             QStringLiteral("Deutsches Hauptdreiecksnetz"))
      << dtf(QStringLiteral("WGS 84 identity"), QStringLiteral("WGS 84"), 0,
             {QStringLiteral("0"), QStringLiteral("0"), QStringLiteral("0"), QStringLiteral("0"),
              QStringLiteral("0"), QStringLiteral("0"), QStringLiteral("0")},
             0, 0, 0, QString(), QString(), QString());
    const QStringList prjCols =
        nameCols +
        QStringList{QStringLiteral("id"), QStringLiteral("method_id"), QStringLiteral("unit_name")};
    s << Insert(QStringLiteral("projection"), prjCols,
                Named(QStringLiteral("UTM Zone-31N")) + QStringList{QStringLiteral("1"),
                                                                    QStringLiteral("1"),
                                                                    Q(QStringLiteral("Meters"))})
      << Param(1, 0, QStringLiteral("Latitude of natural origin"), 0.0,
               QStringLiteral("00°00'00.0000000\"N"), 1)
      << Param(1, 1, QStringLiteral("Longitude of natural origin"), 3.0,
               QStringLiteral("003°00'00.0000000\"E"), 2)
      << Param(1, 2, QStringLiteral("Scale factor at natural origin"), 0.9996,
               QStringLiteral("0.999600"), 4)
      << Param(1, 3, QStringLiteral("False easting"), 500000.0, QStringLiteral("500000.000000"), 5)
      << Param(1, 4, QStringLiteral("False northing"), 0.0, QStringLiteral("0.000000"), 5)
      << Param(1, 5, QStringLiteral("UTM zone"), 31.0, QStringLiteral("Zone 31     (  3 E)"), 3)
      << Param(1, 6, QStringLiteral("Hemisphere"), 0.0, QStringLiteral("Northern"), 3);
    s << Insert(
             QStringLiteral("projection"), prjCols,
             Named(QStringLiteral("Gauß-Krüger Zone 3")) +
                 QStringList{QStringLiteral("2"), QStringLiteral("2"), Q(QStringLiteral("Meters"))})
      << Param(2, 0, QStringLiteral("Latitude of natural origin"), 0.0,
               QStringLiteral("00°00'00.0000000\"N"), 1)
      << Param(2, 1, QStringLiteral("Longitude of natural origin"), 9.0,
               QStringLiteral("009°00'00.0000000\"E"), 2)
      << Param(2, 2, QStringLiteral("Scale factor at natural origin"), 1.0,
               QStringLiteral("1.000000"), 4)
      << Param(2, 3, QStringLiteral("False easting"), 3500000.0, QStringLiteral("3500000.000000"),
               5)
      << Param(2, 4, QStringLiteral("False northing"), 0.0, QStringLiteral("0.000000"), 5);
    s << Insert(QStringLiteral("sysgroup"), nameCols + QStringList{QStringLiteral("id")},
                Named(QStringLiteral("Europe")) + QStringList{QStringLiteral("1")})
      << Insert(QStringLiteral("sysgroup"), nameCols + QStringList{QStringLiteral("id")},
                Named(QStringLiteral("Österreich")) + QStringList{QStringLiteral("2")});
    const QStringList sysCols =
        nameCols +
        QStringList{QStringLiteral("group_id"),        QStringLiteral("sat_ellipsoid"),
                    QStringLiteral("local_ellipsoid"), QStringLiteral("dtf_name"),
                    QStringLiteral("projection_name"), QStringLiteral("unit_name"),
                    QStringLiteral("utm_zone_text"),   QStringLiteral("utm_hemisphere_text"),
                    QStringLiteral("epsg_code"),       QStringLiteral("area"),
                    QStringLiteral("geoid_keys")};
    s << Insert(QStringLiteral("coordsys"), sysCols,
                Named(QStringLiteral("ED50 / UTM zone 31N")) +
                    QStringList{QStringLiteral("1"), Q(QStringLiteral("WGS 84")),
                                Q(QStringLiteral("International 1924")),
                                Q(QStringLiteral("ED50 to WGS 84 (1)")),
                                Q(QStringLiteral("UTM Zone-31N")), Q(QStringLiteral("Meters")),
                                Q(QStringLiteral("Zone 31     (  3 E)")),
                                Q(QStringLiteral("Northern")), QStringLiteral("23031"),
                                Q(QStringLiteral("Europe - 0°E to 6°E")), Q(QString())})
      << Insert(QStringLiteral("coordsys"), sysCols,
                Named(QStringLiteral("DHDN / Gauß-Krüger 3")) +
                    QStringList{
                        QStringLiteral("2"), Q(QStringLiteral("WGS 84")),
                        Q(QStringLiteral("Bessel 1841")), Q(QStringLiteral("DHDN to WGS 84 (2)")),
                        Q(QStringLiteral("Gauß-Krüger Zone 3")), Q(QStringLiteral("Meters")),
                        Q(QString()), Q(QString()), QStringLiteral("31467"),
                        Q(QStringLiteral("Germany - 7.5°E to 10.5°E")),
                        Q(QStringLiteral("EGM96,GTX Geoid Grid"))});
    return s;
}

} // namespace

bool ExecOn(const QString& path, const QStringList& statements, QString* error) {
    ScratchConnection c(path);
    QSqlDatabase db = c.db();
    for (const QString& statement : statements) {
        QSqlQuery q(db);
        if (!q.exec(statement)) {
            if (error)
                *error = q.lastError().text() + QStringLiteral(" in ") + statement;
            return false;
        }
    }
    return true;
}

bool CreateSchemaFile(const QString& path, int userVersion) {
    ScratchConnection c(path);
    QSqlDatabase db = c.db();
    if (!OrvSchema::Create(db))
        return false;
    if (userVersion >= 0) {
        QSqlQuery q(db);
        return q.exec(QStringLiteral("PRAGMA user_version = %1").arg(userVersion));
    }
    return true;
}

QString DumpDatabase(const QString& path) {
    ScratchConnection c(path);
    QSqlDatabase db = c.db();
    QString out;
    QSqlQuery tables(db);
    tables.exec(QStringLiteral("SELECT name, sql FROM sqlite_master ORDER BY name"));
    QStringList names;
    while (tables.next()) {
        out += tables.value(1).toString() + QLatin1Char('\n');
        names << tables.value(0).toString();
    }
    for (const QString& name : names) {
        QSqlQuery rows(db);
        if (!rows.exec(QStringLiteral("SELECT * FROM \"%1\"").arg(name)))
            continue; // an index
        out += QStringLiteral("[%1]\n").arg(name);
        while (rows.next()) {
            const QSqlRecord r = rows.record();
            for (int i = 0; i < r.count(); ++i)
                out += r.value(i).toString() + QLatin1Char('|');
            out += QLatin1Char('\n');
        }
    }
    return out;
}

namespace FileDamage {

int PageSize(const QString& path) {
    ScratchConnection c(path);
    QSqlQuery q(c.db());
    return q.exec(QStringLiteral("PRAGMA page_size")) && q.next() ? q.value(0).toInt() : 0;
}

QList<int> LeafPages(const QString& path, const QString& table) {
    ScratchConnection c(path);
    QSqlQuery q(c.db());
    QList<int> pages;
    q.prepare(QStringLiteral("SELECT pageno FROM dbstat WHERE name = ? AND pagetype = 'leaf' "
                             "ORDER BY path"));
    q.addBindValue(table);
    if (q.exec()) {
        while (q.next())
            pages << q.value(0).toInt();
    }
    return pages;
}

bool Overwrite(const QString& path, qint64 offset, const QByteArray& bytes) {
    QFile f(path);
    return f.open(QIODevice::ReadWrite) && f.seek(offset) && f.write(bytes) == bytes.size();
}

bool ZeroPages(const QString& path, const QList<int>& pages) {
    const int size = PageSize(path);
    if (size <= 0)
        return false;
    for (int page : pages) {
        if (!Overwrite(path, qint64(page - 1) * size, QByteArray(size, '\0')))
            return false;
    }
    return true;
}

bool BumpChangeCounter(const QString& path) {
    // Bytes 24 to 27 of the header: the file change counter, big-endian.
    QFile f(path);
    if (!f.open(QIODevice::ReadWrite) || !f.seek(24))
        return false;
    QByteArray counter = f.read(4);
    if (counter.size() != 4)
        return false;
    quint32 value = (quint32(quint8(counter[0])) << 24) | (quint32(quint8(counter[1])) << 16) |
                    (quint32(quint8(counter[2])) << 8) | quint32(quint8(counter[3]));
    ++value;
    for (int i = 0; i < 4; ++i)
        counter[i] = char((value >> (8 * (3 - i))) & 0xff);
    return f.seek(24) && f.write(counter) == 4;
}

} // namespace FileDamage

MiniStore::MiniStore() {
    QString error;
    m_ok = m_dir.isValid() && CreateSchemaFile(systemDbPath()) &&
           ExecOn(systemDbPath(),
                  QStringList{QStringLiteral("BEGIN")} + MiniContents() +
                      QStringList{QStringLiteral("COMMIT")},
                  &error);
    if (!error.isEmpty())
        qWarning("%s", qPrintable(error));
}

QString MiniStore::systemDbPath() const {
    return m_dir.filePath(QStringLiteral("system.db"));
}

QString MiniStore::userFolder() const {
    return m_dir.filePath(QStringLiteral("user data"));
}

QString MiniStore::userDbPath() const {
    return DataSource::UserDbPathIn(userFolder());
}

QString MiniStore::dllType() const {
    return QStringLiteral("sqlite:%1;system=%2").arg(userFolder(), systemDbPath());
}

std::unique_ptr<OrvGeoDatabaseBase> MiniStore::database() const {
    return std::unique_ptr<OrvGeoDatabaseBase>(
        OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(dllType()));
}

std::unique_ptr<OrvGeoStaticDataBase> MiniStore::staticData() const {
    return std::unique_ptr<OrvGeoStaticDataBase>(
        OrvGeoStaticDatabaseList::GetGeoStaticDataList().Create(dllType()));
}

void FillNewSystem(OrvGeoStaticDataBase& sd, const QString& group, const QString& name) {
    sd.Clear();
    sd.AssignSystemName(name);
    sd.SetGroupName(group);
    sd.SelectSatelliteEllipsoid(QStringLiteral("WGS 84"));
    sd.SelectLocalEllipsoid(QStringLiteral("International 1924"));
    sd.SetDtfName(name + QStringLiteral("-dtf"));
    sd.SetDtfMethod(QStringLiteral("Coordinate Frame (7 parameters)"), DTF_7_COORDINATE_FRAME);
    sd.SetDtfDescription(QStringLiteral("Fitted on 12 points of ") + name);
    sd.SetDtfParameters({-81.5, -90.25, -115.125, 0.5, -0.25, 0.125, 2.5}, 0, 0.0, 0.0);
    sd.SetUnitName(name + QStringLiteral("-unit"));
    sd.SetUnitFactor(0.5);
    sd.SetUnitSuffix(QStringLiteral("hm"));
    sd.SetUnitDefinition(0.5, QStringLiteral("half metre"), UNIT_CATEGORY_LENGTH);
    sd.SetProjectionMethod(QStringLiteral("Transverse Mercator"));
    sd.SetProjectionName(name + QStringLiteral("-Prj"), 2);
    PrjParamBlock block;
    block.count = 5;
    block.values = {52.5, 4.25, 0.9999, 155000.0, 463000.0};
    sd.SetProjectionParameters(block,
                               {QStringLiteral("52°30'00.0000000\"N"),
                                QStringLiteral("004°15'00.0000000\"E"), QStringLiteral("0.999900"),
                                QStringLiteral("155000.000000"), QStringLiteral("463000.000000")},
                               {QStringLiteral("Latitude of natural origin"),
                                QStringLiteral("Longitude of natural origin"),
                                QStringLiteral("Scale factor at natural origin"),
                                QStringLiteral("False easting"), QStringLiteral("False northing")},
                               {PRM_LATITUDE, PRM_LONGITUDE, PRM_SCALE, PRM_LENGTH, PRM_LENGTH});
}
