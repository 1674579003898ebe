// Checks of the generated system database against the EPSG values it was imported from.

#include "api/GeoKeys.h"
#include "api/GeoTypes.h"
#include "api/ProjectionMethods.h"
#include "support/TempDataFolder.h"

#include <QSet>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr double ArcSecondsPerRadian = 206264.80624709636;

class SystemDb : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), Connection());
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        db.setDatabaseName(TestSystemDbPath());
        ASSERT_TRUE(db.open()) << qPrintable(db.lastError().text());
    }
    static void TearDownTestSuite() {
        QSqlDatabase::database(Connection()).close();
        QSqlDatabase::removeDatabase(Connection());
    }
    static QString Connection() { return QStringLiteral("system-db-test"); }

    // Every row of a query, each as a list of its columns.
    static QList<QVariantList> Rows(const QString& sql) {
        QSqlQuery q(QSqlDatabase::database(Connection()));
        EXPECT_TRUE(q.exec(sql)) << qPrintable(sql) << ": " << qPrintable(q.lastError().text());
        QList<QVariantList> rows;
        while (q.next()) {
            QVariantList row;
            for (int i = 0; i < q.record().count(); ++i)
                row << q.value(i);
            rows << row;
        }
        return rows;
    }
    static QVariant One(const QString& sql) {
        const QList<QVariantList> rows = Rows(sql);
        return rows.isEmpty() || rows.first().isEmpty() ? QVariant() : rows.first().first();
    }
    static int Count(const QString& table, const QString& where = QStringLiteral("1")) {
        return One(QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2").arg(table, where)).toInt();
    }
    // The fifteen values of a datum transformation, its method, option and epoch fields.
    struct Dtf {
        QString name;
        int method = -1;
        int option = -1;
        double v[15] = {};
        double accuracy = 0;
        double obsEpoch = 0;
        QString dstEllipsoid, localDatum, area;
    };
    static Dtf DtfByCode(int code) {
        const QList<QVariantList> rows =
            Rows(QStringLiteral(
                     "SELECT name, method_index, option, tx, ty, tz, rx, ry, rz, ds, dtx, dty, "
                     "dtz, drx, dry, drz, dds, epoch, accuracy, obs_epoch, dst_ellipsoid, "
                     "local_datum, extra_text FROM dtf WHERE epsg_code = %1")
                     .arg(code));
        Dtf dtf;
        if (rows.size() != 1)
            return dtf;
        const QVariantList& r = rows.first();
        dtf.name = r[0].toString();
        dtf.method = r[1].toInt();
        dtf.option = r[2].toInt();
        for (int i = 0; i < 15; ++i)
            dtf.v[i] = r[3 + i].toDouble();
        dtf.accuracy = r[18].toDouble();
        dtf.obsEpoch = r[19].toDouble();
        dtf.dstEllipsoid = r[20].toString();
        dtf.localDatum = r[21].toString();
        dtf.area = r[22].toString();
        return dtf;
    }
    // Rows of a projection: name, value, value_text, type.
    static QList<QVariantList> Params(const QString& projection) {
        return Rows(QStringLiteral("SELECT pp.name, pp.value, pp.value_text, pp.type FROM "
                                   "projection_param pp JOIN projection p ON p.id = "
                                   "pp.projection_id WHERE p.name = '%1' ORDER BY pp.ord")
                        .arg(projection));
    }
};

TEST_F(SystemDb, HoldsTheExpectedAmountOfData) {
    EXPECT_GE(Count(QStringLiteral("ellipsoid")), 40);
    EXPECT_GE(Count(QStringLiteral("unit")), 30);
    EXPECT_GE(Count(QStringLiteral("dtf")), 700);
    EXPECT_GE(Count(QStringLiteral("projection")), 1500);
    EXPECT_GE(Count(QStringLiteral("coordsys")), 3500);
    EXPECT_GE(Count(QStringLiteral("sysgroup")), 150);
    // Systems on a non-Greenwich prime meridian come in through their Greenwich twin datum.
    EXPECT_GE(Count(QStringLiteral("coordsys"), QStringLiteral("prime_meridian != 0")), 35);
}

TEST_F(SystemDb, EllipsoidsHaveAllSixValuesInMetres) {
    auto values = [](int code) {
        return Rows(QStringLiteral("SELECT name, semi_major, semi_minor, inv_flattening, "
                                   "flattening, ecc_squared, second_ecc_squared FROM ellipsoid "
                                   "WHERE epsg_code = %1")
                        .arg(code))
            .value(0);
    };
    const QVariantList wgs = values(7030);
    ASSERT_EQ(wgs.size(), 7);
    EXPECT_EQ(wgs[0].toString(), QStringLiteral("WGS 84"));
    EXPECT_DOUBLE_EQ(wgs[1].toDouble(), 6378137.0);
    EXPECT_NEAR(wgs[2].toDouble(), 6356752.314245, 1e-6);
    EXPECT_DOUBLE_EQ(wgs[3].toDouble(), 298.257223563);
    EXPECT_NEAR(wgs[4].toDouble(), 1 / 298.257223563, 1e-15);
    EXPECT_NEAR(wgs[5].toDouble(), 0.00669437999014, 1e-14);
    EXPECT_NEAR(wgs[6].toDouble(), 0.00673949674228, 1e-14);

    // Clarke 1858 is defined in Clarke's feet.
    const QVariantList clarke = values(7007);
    ASSERT_EQ(clarke.size(), 7);
    EXPECT_NEAR(clarke[1].toDouble(), 20926348 * 0.3047972654, 1e-6);

    // A sphere: 1/f is stored as 0, b = a.
    const QVariantList sphere = values(7048);
    ASSERT_EQ(sphere.size(), 7);
    EXPECT_DOUBLE_EQ(sphere[3].toDouble(), 0.0);
    EXPECT_DOUBLE_EQ(sphere[1].toDouble(), sphere[2].toDouble());
    EXPECT_DOUBLE_EQ(sphere[5].toDouble(), 0.0);
}

TEST_F(SystemDb, UnitsAreLengthUnitsWithTheWizardsMetreName) {
    const QVariantList metre = Rows(QStringLiteral("SELECT name, meters_per_unit, suffix, category "
                                                   "FROM unit WHERE epsg_code = 9001"))
                                   .value(0);
    ASSERT_EQ(metre.size(), 4);
    EXPECT_EQ(metre[0].toString(), QStringLiteral("Meters"));
    EXPECT_DOUBLE_EQ(metre[1].toDouble(), 1.0);
    EXPECT_EQ(metre[2].toString(), QStringLiteral("m"));
    EXPECT_EQ(metre[3].toInt(), UNIT_CATEGORY_LENGTH);
    const QVariantList usFoot =
        Rows(
            QStringLiteral("SELECT name, meters_per_unit, suffix FROM unit WHERE epsg_code = 9003"))
            .value(0);
    ASSERT_EQ(usFoot.size(), 3);
    EXPECT_NEAR(usFoot[1].toDouble(), 1200.0 / 3937.0, 1e-15);
    EXPECT_EQ(usFoot[2].toString(), QStringLiteral("ftUS"));
    // Rates such as "metres per year" share the length type in proj.db but are no units.
    EXPECT_EQ(Count(QStringLiteral("unit"), QStringLiteral("name LIKE '% per %'")), 0);
    EXPECT_EQ(Count(QStringLiteral("unit"), QStringLiteral("category != 8 OR suffix = ''")), 0);
}

TEST_F(SystemDb, PositionVectorValuesAreNormalisedFromMicroradians) {
    // EPSG 1112 Amersfoort to WGS 84 (1): rotations published in microradians.
    const Dtf dtf = DtfByCode(1112);
    EXPECT_EQ(dtf.name, QStringLiteral("Amersfoort to WGS 84 (1)"));
    EXPECT_EQ(dtf.method, DTF_7_POSITION_VECTOR);
    EXPECT_EQ(dtf.option, DTF_OPTION_PUBLISHED_TO_WGS84);
    const double expected[7] = {593.16,
                                26.15,
                                478.54,
                                -6.3239e-6 * ArcSecondsPerRadian,
                                -0.5008e-6 * ArcSecondsPerRadian,
                                -5.5487e-6 * ArcSecondsPerRadian,
                                4.0775};
    for (int i = 0; i < 7; ++i)
        EXPECT_NEAR(dtf.v[i], expected[i], 1e-9) << "value " << i;
    for (int i = 7; i < 15; ++i)
        EXPECT_EQ(dtf.v[i], 0.0) << "value " << i;
    EXPECT_EQ(dtf.dstEllipsoid, QStringLiteral("Bessel 1841"));
    EXPECT_EQ(dtf.localDatum, QStringLiteral("Amersfoort"));
    EXPECT_EQ(dtf.area, QStringLiteral("Netherlands - onshore"));
    EXPECT_DOUBLE_EQ(dtf.accuracy, 1.0);
}

TEST_F(SystemDb, CoordinateFrameValuesAreNormalisedFromMillimetresAndPpb) {
    // EPSG 9688 GDA94 to WGS 84 (2): mm, milliarc-seconds, parts per billion.
    const Dtf dtf = DtfByCode(9688);
    EXPECT_EQ(dtf.method, DTF_7_COORDINATE_FRAME);
    EXPECT_EQ(dtf.option, DTF_OPTION_PUBLISHED_TO_WGS84);
    // the published coordinate frame rotations, held in the position-vector sign
    const double expected[7] = {0.06155,   -0.01087,  -0.04019, 0.0394924,
                                0.0327221, 0.0328979, -0.009994};
    for (int i = 0; i < 7; ++i)
        EXPECT_NEAR(dtf.v[i], expected[i], 1e-12) << "value " << i;
    EXPECT_EQ(dtf.dstEllipsoid, QStringLiteral("GRS 1980"));

    // EPSG 9690 is published WGS 84 -> GDA2020: stored as published, applied directly.
    const Dtf forward = DtfByCode(9690);
    EXPECT_EQ(forward.method, DTF_7_COORDINATE_FRAME);
    EXPECT_EQ(forward.option, 0);
    EXPECT_NEAR(forward.v[0], 0.06155, 1e-12);
}

TEST_F(SystemDb, TimeDependentTransformationKeepsRatesPerYearAndItsEpoch) {
    // EPSG 9686 GDA94 to WGS 84 (G1762) (1): rotation rates in milliarc-seconds per year.
    const Dtf dtf = DtfByCode(9686);
    EXPECT_EQ(dtf.method, DTF_15_COORDINATE_FRAME);
    EXPECT_EQ(dtf.option, DTF_OPTION_PUBLISHED_TO_WGS84);
    EXPECT_NEAR(dtf.v[0], 0.06155, 1e-12);
    EXPECT_NEAR(dtf.v[6], -0.009994, 1e-12);
    EXPECT_NEAR(dtf.v[7], 0.0, 1e-15);
    // rotation rates published for coordinate frame, held in the position-vector sign
    EXPECT_NEAR(dtf.v[10], 0.00150379, 1e-12);
    EXPECT_NEAR(dtf.v[11], 0.00118346, 1e-12);
    EXPECT_NEAR(dtf.v[12], 0.00120716, 1e-12);
    EXPECT_NEAR(dtf.v[13], 0.0, 1e-15);
    EXPECT_DOUBLE_EQ(dtf.v[14], 2020.0);
    // Without an observation time the transformation is applied at its epoch.
    EXPECT_DOUBLE_EQ(dtf.obsEpoch, 2020.0);
}

TEST_F(SystemDb, TransformationsRunBetweenWgs84AndALocalDatum) {
    EXPECT_EQ(Count(QStringLiteral("dtf"), QStringLiteral("src_ellipsoid != 'WGS 84'")), 0);
    // WGS 84 realisations to each other (e.g. EPSG 7667) are no datum transformations here.
    EXPECT_EQ(Count(QStringLiteral("dtf"), QStringLiteral("epsg_code = 7667")), 0);
    const QVariantList wgs = Rows(QStringLiteral("SELECT method_index, dst_ellipsoid FROM dtf "
                                                 "WHERE name = 'WGS 84 to WGS 84'"))
                                 .value(0);
    ASSERT_EQ(wgs.size(), 2);
    EXPECT_EQ(wgs[0].toInt(), DTF_NONE);
    EXPECT_EQ(wgs[1].toString(), QStringLiteral("WGS 84"));
    EXPECT_EQ(One(QStringLiteral("SELECT dtf_name FROM coordsys WHERE epsg_code = 32632")),
              QStringLiteral("WGS 84 to WGS 84"));
    EXPECT_EQ(Count(QStringLiteral("dtf"), QStringLiteral("method_index NOT BETWEEN 0 AND 4")), 0);
}

TEST_F(SystemDb, UtmZoneProjectionsCarryZoneAndHemisphereRows) {
    EXPECT_EQ(Count(QStringLiteral("projection"), QStringLiteral("method_id = 1")), 120);
    const QList<QVariantList> north = Params(QStringLiteral("UTM Zone-32N"));
    ASSERT_EQ(north.size(), 7);
    const char* names[] = {"Latitude of natural origin",
                           "Longitude of natural origin",
                           "Scale factor at natural origin",
                           "False easting",
                           "False northing",
                           "UTM zone",
                           "Hemisphere"};
    const unsigned types[] = {PRM_LATITUDE, PRM_LONGITUDE, PRM_SCALE, PRM_LENGTH,
                              PRM_LENGTH,   PRM_HIDDEN,    PRM_HIDDEN};
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(north[i][0].toString(), QString::fromLatin1(names[i]));
        EXPECT_EQ(north[i][3].toUInt(), types[i]) << names[i];
    }
    EXPECT_EQ(north[5][0].toString(),
              QString::fromWCharArray(projectionParamKeys[ProjectionParamZoneKey]));
    EXPECT_EQ(north[6][0].toString(),
              QString::fromWCharArray(projectionParamKeys[ProjectionParamHemisphereKey]));
    EXPECT_DOUBLE_EQ(north[1][1].toDouble(), 9.0);
    EXPECT_DOUBLE_EQ(north[2][1].toDouble(), 0.9996);
    EXPECT_DOUBLE_EQ(north[3][1].toDouble(), 500000.0);
    EXPECT_DOUBLE_EQ(north[4][1].toDouble(), 0.0);
    EXPECT_EQ(north[5][2].toString(), QStringLiteral("Zone 32     (  9 E)"));
    EXPECT_DOUBLE_EQ(north[5][1].toDouble(), 32.0);
    EXPECT_EQ(north[6][2].toString(), QStringLiteral("Northern"));
    EXPECT_DOUBLE_EQ(north[6][1].toDouble(), 0.0);
    EXPECT_EQ(north[2][2].toString(), QStringLiteral("0.999600"));

    const QList<QVariantList> south = Params(QStringLiteral("UTM Zone-1S"));
    ASSERT_EQ(south.size(), 7);
    EXPECT_DOUBLE_EQ(south[1][1].toDouble(), -177.0);
    EXPECT_DOUBLE_EQ(south[4][1].toDouble(), 10000000.0);
    EXPECT_EQ(south[5][2].toString(), QStringLiteral("Zone  1     (177 W)"));
    EXPECT_EQ(south[6][2].toString(), QStringLiteral("Southern"));
    EXPECT_DOUBLE_EQ(south[6][1].toDouble(), 1.0);
    EXPECT_EQ(One(QStringLiteral("SELECT unit_name FROM projection WHERE name = 'UTM Zone-60S'")),
              QStringLiteral("Meters"));
}

TEST_F(SystemDb, EpsgUtmSystemsUseTheZoneProjections) {
    // EPSG's own UTM conversions are not imported as projections of their own.
    EXPECT_EQ(Count(QStringLiteral("projection"), QStringLiteral("name LIKE 'UTM zone %N' AND "
                                                                 "method_id != 1")),
              0);
    const QVariantList sys = Rows(QStringLiteral("SELECT projection_name, utm_zone_text, "
                                                 "utm_hemisphere_text, unit_name FROM coordsys "
                                                 "WHERE epsg_code = 32632"))
                                 .value(0);
    ASSERT_EQ(sys.size(), 4);
    EXPECT_EQ(sys[0].toString(), QStringLiteral("UTM Zone-32N"));
    EXPECT_EQ(sys[1].toString(), QStringLiteral("Zone 32     (  9 E)"));
    EXPECT_EQ(sys[2].toString(), QStringLiteral("Northern"));
    EXPECT_EQ(sys[3].toString(), QStringLiteral("Meters"));
    // Systems on other datums share the same zone projections.
    EXPECT_EQ(One(QStringLiteral("SELECT projection_name FROM coordsys WHERE epsg_code = 23029")),
              QStringLiteral("UTM Zone-29N"));
    EXPECT_EQ(One(QStringLiteral("SELECT projection_name FROM coordsys WHERE epsg_code = 32761")),
              QStringLiteral("Universal Polar Stereographic South"));
}

TEST_F(SystemDb, LengthsStayInTheProjectionsUnit) {
    // NAD83 / California zone 1 (ftUS): false origin in US survey feet, as the axes.
    const QVariantList sys = Rows(QStringLiteral("SELECT projection_name, unit_name FROM coordsys "
                                                 "WHERE epsg_code = 2225"))
                                 .value(0);
    ASSERT_EQ(sys.size(), 2);
    EXPECT_EQ(sys[1].toString(), QStringLiteral("US survey foot"));
    EXPECT_EQ(One(QStringLiteral("SELECT unit_name FROM projection WHERE name = '%1'")
                      .arg(sys[0].toString())),
              QStringLiteral("US survey foot"));
    const QList<QVariantList> params = Params(sys[0].toString());
    ASSERT_EQ(params.size(), 6);
    EXPECT_EQ(params[4][0].toString(), QStringLiteral("Easting at false origin"));
    EXPECT_DOUBLE_EQ(params[4][1].toDouble(), 6561666.667);
    EXPECT_EQ(params[4][2].toString(), QStringLiteral("6561666.667000"));
    EXPECT_EQ(params[4][3].toUInt(), PRM_LENGTH);
}

TEST_F(SystemDb, SexagesimalAndGradAnglesBecomeDecimalDegrees) {
    // Belgian Lambert 72: 4.2202952 and 51.100000204 in EPSG unit 9110 (DDD.MMSSsss).
    const QList<QVariantList> lambert = Params(QStringLiteral("Belgian Lambert 72"));
    ASSERT_EQ(lambert.size(), 6);
    EXPECT_EQ(lambert[1][0].toString(), QStringLiteral("Longitude of false origin"));
    EXPECT_NEAR(lambert[1][1].toDouble(), 4 + 22 / 60.0 + 2.952 / 3600, 1e-12);
    EXPECT_EQ(lambert[1][2].toString(), QStringLiteral("004°22'02.9520000\"E"));
    EXPECT_NEAR(lambert[2][1].toDouble(), 51 + 10 / 60.0 + 0.00204 / 3600, 1e-12);
    EXPECT_EQ(lambert[2][2].toString(), QStringLiteral("51°10'00.0020400\"N"));

    // NTF (Paris) / Lambert zone II: 52 grads and the Paris meridian (2.5969213 grads).
    const QList<QVariantList> zone2 = Params(QStringLiteral("Lambert zone II"));
    ASSERT_EQ(zone2.size(), 5);
    EXPECT_NEAR(zone2[0][1].toDouble(), 46.8, 1e-12);
    EXPECT_EQ(zone2[0][2].toString(), QStringLiteral("46°48'00.0000000\"N"));
    const QVariantList ntf = Rows(QStringLiteral("SELECT prime_meridian, dtf_name, local_ellipsoid "
                                                 "FROM coordsys WHERE epsg_code = 27572"))
                                 .value(0);
    ASSERT_EQ(ntf.size(), 3);
    EXPECT_NEAR(ntf[0].toDouble(), 2.5969213 * 0.9, 1e-12);
    EXPECT_TRUE(ntf[1].toString().startsWith(QStringLiteral("NTF to WGS 84")));
    EXPECT_EQ(ntf[2].toString(), QStringLiteral("Clarke 1880 (IGN)"));
}

TEST_F(SystemDb, NamesAreUniqueWithoutRegardToCase) {
    for (const char* table : {"ellipsoid", "unit", "dtf", "projection", "sysgroup", "coordsys"}) {
        const QList<QVariantList> rows =
            Rows(QStringLiteral("SELECT name, name_key FROM %1").arg(QLatin1String(table)));
        QSet<QString> keys;
        for (const QVariantList& row : rows) {
            const QString key = row[0].toString().toCaseFolded();
            EXPECT_EQ(row[1].toString(), key) << table;
            EXPECT_FALSE(keys.contains(key)) << table << ": " << qPrintable(row[0].toString());
            keys.insert(key);
        }
        EXPECT_FALSE(rows.isEmpty()) << table;
    }
}

TEST_F(SystemDb, EveryReferenceOfASystemResolves) {
    const char* checks[] = {
        "SELECT COUNT(*) FROM coordsys c WHERE NOT EXISTS (SELECT 1 FROM dtf d WHERE d.name = "
        "c.dtf_name)",
        "SELECT COUNT(*) FROM coordsys c WHERE NOT EXISTS (SELECT 1 FROM projection p WHERE p.name "
        "= c.projection_name)",
        "SELECT COUNT(*) FROM coordsys c WHERE NOT EXISTS (SELECT 1 FROM unit u WHERE u.name = "
        "c.unit_name)",
        "SELECT COUNT(*) FROM coordsys c WHERE NOT EXISTS (SELECT 1 FROM ellipsoid e WHERE e.name "
        "= c.local_ellipsoid) OR c.sat_ellipsoid != 'WGS 84'",
        "SELECT COUNT(*) FROM coordsys c WHERE NOT EXISTS (SELECT 1 FROM sysgroup g WHERE g.id = "
        "c.group_id)",
        // The datum transformation ends on the system's own ellipsoid.
        "SELECT COUNT(*) FROM coordsys c JOIN dtf d ON d.name = c.dtf_name WHERE d.dst_ellipsoid "
        "!= c.local_ellipsoid",
        // The system's unit is its projection's unit.
        "SELECT COUNT(*) FROM coordsys c JOIN projection p ON p.name = c.projection_name WHERE "
        "p.unit_name != c.unit_name",
        "SELECT COUNT(*) FROM dtf d WHERE NOT EXISTS (SELECT 1 FROM ellipsoid e WHERE e.name = "
        "d.dst_ellipsoid)",
        "SELECT COUNT(*) FROM projection p WHERE NOT EXISTS (SELECT 1 FROM unit u WHERE u.name = "
        "p.unit_name)",
        // Every projection has parameters, at most nine.
        "SELECT COUNT(*) FROM projection p WHERE (SELECT COUNT(*) FROM projection_param pp WHERE "
        "pp.projection_id = p.id) NOT BETWEEN 1 AND 9",
        // UTM systems and only they carry zone and hemisphere texts.
        "SELECT COUNT(*) FROM coordsys c JOIN projection p ON p.name = c.projection_name WHERE "
        "(p.method_id = 1) != (c.utm_zone_text != '' AND c.utm_hemisphere_text != '')",
        "SELECT COUNT(*) FROM coordsys WHERE geoid_on != 0 OR post_on != 0 OR area = ''",
    };
    for (const char* sql : checks)
        EXPECT_EQ(One(QString::fromLatin1(sql)).toInt(), 0) << sql;
}

TEST_F(SystemDb, ProjectionRowsFollowTheirMethod) {
    const QList<QVariantList> rows =
        Rows(QStringLiteral("SELECT p.name, p.method_id, pp.ord, pp.name, pp.type, pp.value_text "
                            "FROM projection p JOIN projection_param pp ON pp.projection_id = "
                            "p.id ORDER BY p.id, pp.ord"));
    ASSERT_FALSE(rows.isEmpty());
    int mismatches = 0;
    for (const QVariantList& row : rows) {
        const ProjectionMethods::Method* method = ProjectionMethods::ById(row[1].toInt());
        ASSERT_NE(method, nullptr) << qPrintable(row[0].toString());
        EXPECT_FALSE(row[5].toString().isEmpty()) << qPrintable(row[0].toString());
        if (method->id == ProjectionMethods::NotImplementedId)
            continue;
        const int ord = row[2].toInt();
        ASSERT_LT(ord, static_cast<int>(method->params.size())) << qPrintable(row[0].toString());
        const ProjectionMethods::Param& param = method->params[static_cast<std::size_t>(ord)];
        if (row[3].toString() != QLatin1String(param.name) || row[4].toUInt() != param.type)
            ++mismatches;
    }
    EXPECT_EQ(mismatches, 0);
}

TEST_F(SystemDb, SystemsAreGroupedByCountryOrArea) {
    auto groupOf = [](int code) {
        return One(QStringLiteral("SELECT g.name FROM coordsys c JOIN sysgroup g ON g.id = "
                                  "c.group_id WHERE c.epsg_code = %1")
                       .arg(code))
            .toString();
    };
    EXPECT_EQ(groupOf(31467), QStringLiteral("Germany")); // DHDN / 3-degree Gauss-Kruger zone 3
    EXPECT_EQ(groupOf(28992), QStringLiteral("Netherlands"));
    EXPECT_EQ(groupOf(3857), QStringLiteral("World"));
    EXPECT_EQ(groupOf(32632), QStringLiteral("World"));
    EXPECT_EQ(groupOf(2225), QStringLiteral("USA"));
    // One group per country, whatever spelling the area names use.
    EXPECT_EQ(
        Count(QStringLiteral("sysgroup"), QStringLiteral("name = 'DR Congo (Zaire)' OR name "
                                                         "LIKE 'World %' OR name LIKE '% - %'")),
        0);
    EXPECT_EQ(Count(QStringLiteral("sysgroup g"), QStringLiteral("NOT EXISTS (SELECT 1 FROM "
                                                                 "coordsys c WHERE c.group_id = "
                                                                 "g.id)")),
              0);
}

TEST_F(SystemDb, ReadOnlySystemsOfferTheWizardsGeoidMethods) {
    const QStringList keys =
        One(QStringLiteral("SELECT geoid_keys FROM coordsys WHERE epsg_code = 32632"))
            .toString()
            .split(u',');
    EXPECT_EQ(keys.size(), 23);
    EXPECT_TRUE(keys.contains(QStringLiteral("EGM96")));
    EXPECT_TRUE(keys.contains(QStringLiteral("GTX Geoid Grid")));
    EXPECT_TRUE(keys.contains(QStringLiteral("Polynomial Correction")));
    EXPECT_FALSE(keys.contains(QStringLiteral("OSTN")));
    EXPECT_FALSE(keys.contains(QStringLiteral("NTv2 Shift Model")));
    EXPECT_FALSE(keys.contains(QStringLiteral("Inclined Plane")));
    EXPECT_FALSE(keys.contains(QStringLiteral("Manual Separation")));
    EXPECT_EQ(Count(QStringLiteral("coordsys"), QStringLiteral("geoid_keys != (SELECT geoid_keys "
                                                               "FROM coordsys WHERE epsg_code = "
                                                               "32632)")),
              0);
}

} // namespace

TEST_F(SystemDb, SystemsStoreTheBestCurrentTransformationOfTheirArea) {
    auto stored = [](int crs) {
        return One(QStringLiteral("SELECT d.epsg_code FROM coordsys c JOIN dtf d ON d.name = "
                                  "c.dtf_name WHERE c.epsg_code = %1")
                       .arg(crs))
            .toInt();
    };
    // (1) and (2) are superseded in the supersession table, (3) by (4) in its remark.
    EXPECT_EQ(stored(28992), 4833); // Amersfoort / RD New: Amersfoort to WGS 84 (4)
    // No transformation covers the offshore part; (6) and (1) overlap most, (6) is 2 m.
    EXPECT_EQ(stored(27700), 1314); // OSGB36 / British National Grid
    // The 10 m transformation covering the whole zone, not the 1 m one of the North Sea.
    EXPECT_EQ(stored(23031), 1133); // ED50 / UTM zone 31N: ED50 to WGS 84 (1)
    // Every Helmert transformation of CH1903 is superseded by a grid: no pre-defined system.
    EXPECT_EQ(Count(QStringLiteral("coordsys"), QStringLiteral("epsg_code = 21781")), 0);

    // The superseded transformations stay for users to pick, and say so.
    const Dtf old = DtfByCode(1112);
    EXPECT_EQ(old.name, QStringLiteral("Amersfoort to WGS 84 (1)"));
    EXPECT_TRUE(One(QStringLiteral("SELECT description FROM dtf WHERE epsg_code = 1112"))
                    .toString()
                    .startsWith(QStringLiteral("Superseded by Amersfoort to WGS 84 (2) (EPSG "
                                               "1672).")));
    EXPECT_TRUE(One(QStringLiteral("SELECT description FROM dtf WHERE epsg_code = 15934"))
                    .toString()
                    .startsWith(QStringLiteral("Superseded by Amersfoort to WGS 84 (4) (EPSG "
                                               "4833).")));
}

TEST_F(SystemDb, NoSystemStoresADeprecatedOrSupersededTransformation) {
    // Checked against proj.db itself, not against what the importer wrote.
    QSet<int> stored;
    for (const QVariantList& row :
         Rows(QStringLiteral("SELECT DISTINCT d.epsg_code FROM coordsys c JOIN dtf d ON d.name "
                             "= c.dtf_name WHERE d.epsg_code <> 0")))
        stored.insert(row.first().toInt());
    ASSERT_GT(stored.size(), 200);
    const QString connection = QStringLiteral("system-db-test-proj");
    QStringList bad;
    {
        QSqlDatabase proj = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        proj.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        proj.setDatabaseName(QStringLiteral("/usr/share/proj/proj.db"));
        ASSERT_TRUE(proj.open());
        QSqlQuery q(proj);
        ASSERT_TRUE(q.exec(QStringLiteral(
            "SELECT code, 'deprecated' FROM helmert_transformation_table WHERE auth_name = "
            "'EPSG' AND deprecated = 1 UNION ALL SELECT superseded_code, 'superseded' FROM "
            "supersession WHERE superseded_table_name = 'helmert_transformation' AND "
            "superseded_auth_name = 'EPSG'")));
        while (q.next()) {
            if (stored.contains(q.value(0).toInt()))
                bad << q.value(0).toString() + QLatin1Char(' ') + q.value(1).toString();
        }
        proj.close();
    }
    QSqlDatabase::removeDatabase(connection);
    EXPECT_TRUE(bad.isEmpty()) << bad.join(QStringLiteral(", ")).toStdString();
}
