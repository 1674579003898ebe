// The overview of a system being built tells what the system will do: a test point
// converted with it, and a warning for each part that is almost certainly a mistake.
#include "api/OrvGeoFactories.h"
#include "engine/EpsgReference.h"
#include "support/TempDataFolder.h"
#include "util/GeoFormat.h"
#include "util/GeobaseToGeostatic.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

namespace {

const QString Uk = QStringLiteral("UK");
const QString Bng = QStringLiteral("OSGB36 / British National Grid");

// The overview's text as a surveyor reads it: one line per row and line break.
QString Plain(const QString& html) {
    QString text = html;
    text.replace(QRegularExpression(QStringLiteral("<br>|</tr>")), QStringLiteral("\n"));
    text.remove(QRegularExpression(QStringLiteral("<[^>]*>")));
    text.replace(QStringLiteral("&quot;"), QStringLiteral("\""));
    text.replace(QStringLiteral("&lt;"), QStringLiteral("<"));
    text.replace(QStringLiteral("&gt;"), QStringLiteral(">"));
    text.replace(QStringLiteral("&amp;"), QStringLiteral("&"));
    return text;
}

struct TestPoint {
    double lat = 0, lon = 0, h = 0;
    double e = 0, n = 0, z = 0;
    QString unit;
};

// Reads the test point rows back; false when the overview has no converted point.
bool ReadTestPoint(const QString& text, TestPoint& p) {
    static const QRegularExpression in(
        QStringLiteral("WGS 84 latitude: (\\S+)\\nWGS 84 longitude: (\\S+)\\nWGS 84 height: "
                       "(-?[0-9.]+) m\\n"));
    static const QRegularExpression out(
        QStringLiteral("\\nEasting: (-?[0-9.]+) (\\S+)\\nNorthing: (-?[0-9.]+) \\S+\\nZ: "
                       "(-?[0-9.]+) \\S+\\n"));
    const auto a = in.match(text);
    const auto b = out.match(text);
    if (!a.hasMatch() || !b.hasMatch())
        return false;
    p.h = a.captured(3).toDouble();
    p.e = b.captured(1).toDouble();
    p.unit = b.captured(2);
    p.n = b.captured(3).toDouble();
    p.z = b.captured(4).toDouble();
    return StringToGeo(a.captured(1), p.lat) && StringToGeo(a.captured(2), p.lon);
}

class OverviewTestPoint : public ::testing::Test {
protected:
    void SetUp() override {
        sd.reset(OrvGeoStaticDatabaseList::GetGeoStaticDataList().Create(folder.dllType()));
        ASSERT_TRUE(sd);
    }
    void LoadBng() {
        ASSERT_TRUE(sd->LoadCoordSys(Uk, Bng)) << sd->LastError().toStdString();
        sd->AssignSystemName(QStringLiteral("BNG site grid"));
        sd->SetGroupName(QStringLiteral("Survey"));
    }
    QString Text() {
        QString html;
        return Plain(sd->GetOverviewText(html));
    }

    TempDataFolder folder;
    std::unique_ptr<OrvGeoStaticDataBase> sd;
};

} // namespace

// British National Grid as the wizard would save it: the point at the centre of the area of
// use of "OSGB36 to WGS 84 (6)" (EPSG:1314), on whole minutes, converts as PROJ's own EPSG
// operation from WGS 84 to EPSG:27700 through that transformation does.
TEST_F(OverviewTestPoint, BritishNationalGridAgreesWithPROJ) {
    LoadBng();
    const QString text = Text();
    TestPoint p;
    ASSERT_TRUE(ReadTestPoint(text, p)) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("(the centre of the datum transformation's area of "
                                             "use)")));
    EXPECT_FALSE(text.contains(QStringLiteral("Warning")));
    // Great Britain, on whole minutes
    EXPECT_GT(p.lat, 49.7);
    EXPECT_LT(p.lat, 61.1);
    EXPECT_GT(p.lon, -9.1);
    EXPECT_LT(p.lon, 2.1);
    EXPECT_NEAR(p.lat * 60, std::round(p.lat * 60), 1e-6);
    EXPECT_NEAR(p.lon * 60, std::round(p.lon * 60), 1e-6);
    EXPECT_EQ(p.h, 0.0);
    EXPECT_EQ(p.unit, QStringLiteral("m"));

    EpsgReference reference;
    QString error;
    ASSERT_TRUE(reference.Create(27700, 1314, error)) << error.toStdString();
    double e = 0, n = 0;
    ASSERT_TRUE(reference.Forward(p.lat, p.lon, HUGE_VAL, e, n));
    EXPECT_NEAR(p.e, e, 0.0015);
    EXPECT_NEAR(p.n, n, 0.0015);
    EXPECT_NEAR(p.z, 0.0, 200.0); // ellipsoidal height through the datum shift
}

// Without a datum transformation the point is the projection's origin: UTM zone 31 north
// gives the false easting and northing there, exactly.
TEST_F(OverviewTestPoint, WithoutTransformationTheProjectionOriginIsTaken) {
    ASSERT_TRUE(sd->LoadCoordSys(QStringLiteral("World"), QStringLiteral("WGS 84 / UTM zone 31N")));
    const QString text = Text();
    TestPoint p;
    ASSERT_TRUE(ReadTestPoint(text, p)) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("(the origin of the projection)")));
    EXPECT_EQ(p.lat, 0.0);
    EXPECT_EQ(p.lon, 3.0);
    EXPECT_EQ(p.e, 500000.0);
    EXPECT_EQ(p.n, 0.0);
    EXPECT_EQ(p.z, 0.0);
}

// A geoid model changes Z: EGM96 (PROJ's grid) gives the orthometric height, so Z is minus
// the geoid separation, about 50 m in Great Britain.
TEST_F(OverviewTestPoint, GeoidModelAppliesToZ) {
    LoadBng();
    sd->SetGeoidMethod(QStringLiteral("EGM96"));
    const QString text = Text();
    TestPoint p;
    ASSERT_TRUE(ReadTestPoint(text, p)) << text.toStdString();
    EXPECT_LT(p.z, -40.0);
    EXPECT_GT(p.z, -60.0);
    EXPECT_FALSE(text.contains(QStringLiteral("Warning")));
}

// Lengths come out in the system unit, with its suffix.
TEST_F(OverviewTestPoint, GridValuesAreInTheSystemUnit) {
    ASSERT_TRUE(sd->LoadCoordSys(QStringLiteral("World"), QStringLiteral("WGS 84 / UTM zone 31N")));
    sd->SetUnitName(QStringLiteral("US survey foot"));
    const QString text = Text();
    TestPoint p;
    ASSERT_TRUE(ReadTestPoint(text, p)) << text.toStdString();
    EXPECT_NEAR(p.e, 500000.0 / 0.304800609601219, 0.0005);
    EXPECT_NE(p.unit, QStringLiteral("m"));
}

// A 15-value transformation whose epoch is 0 is flagged (the library refuses to use it, so no
// point is converted); an epoch clears it.
TEST_F(OverviewTestPoint, FifteenValuesWithEpochZeroAreFlagged) {
    LoadBng();
    sd->SetDtfName(QStringLiteral("OSGB36 rates"));
    sd->SetDtfMethod(QStringLiteral("Coordinate Frame time-dependent (15 parameters)"), 4);
    DtfValues values{446.448, -125.157, 542.06, 0.15, 0.247, 0.842, -20.489};
    values[7] = 0.001;
    sd->SetDtfParameters(values, 0, 0, 0);
    QString text = Text();
    EXPECT_TRUE(text.contains(QStringLiteral("Warning:The datum transformation \"OSGB36 rates\" "
                                             "has fifteen values but the epoch 0")))
        << text.toStdString();

    values[14] = 2010.0;
    sd->SetDtfParameters(values, 0, 0, 0);
    text = Text();
    EXPECT_FALSE(text.contains(QStringLiteral("Warning"))) << text.toStdString();
}

// A projection method the engine does not compute: a warning, and the point is not converted,
// with the engine's reason.
TEST_F(OverviewTestPoint, ProjectionMethodNotImplementedIsFlagged) {
    LoadBng();
    sd->SetProjectionName(QStringLiteral("Some old grid"), 32);
    sd->SetProjectionMethod(QStringLiteral("Not implemented"));
    const QString text = Text();
    EXPECT_TRUE(text.contains(QStringLiteral("Warning:The projection method \"Not implemented\" "
                                             "is not implemented")))
        << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("Not converted: ")));
    TestPoint p;
    EXPECT_FALSE(ReadTestPoint(text, p));
}

// Model files that are nowhere to be found: the geoid grid and the shift model, each named.
TEST_F(OverviewTestPoint, MissingGridFilesAreFlagged) {
    LoadBng();
    sd->SetGeoidMethod(QStringLiteral("GTX Geoid Grid"));
    sd->SetGeoidFile(QStringLiteral("no-such-geoid.gtx"));
    sd->SetPostTranslationOn(true);
    sd->SetPostModelName(QStringLiteral("NTv2 Shift Model"));
    sd->SetPostModelFile(QStringLiteral("no-such-shift.gsb"));
    const QString text = Text();
    EXPECT_TRUE(text.contains(QStringLiteral("Warning:The geoid model file \"no-such-geoid.gtx\" "
                                             "cannot be found")))
        << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("Warning:The shift model file \"no-such-shift.gsb\" "
                                             "cannot be found")));
    EXPECT_TRUE(text.contains(QStringLiteral("Not converted: ")));
}

// A record with nothing in it yet still gives an overview, without a point to convert.
TEST_F(OverviewTestPoint, EmptyRecordHasNoTestPoint) {
    const QString text = Text();
    EXPECT_TRUE(text.contains(QStringLiteral("Test point:none")));
    EXPECT_FALSE(text.contains(QStringLiteral("Warning")));
}

// What the overview shows is what the saved system does: saved and defined from the
// database, the system converts the test point to the same grid values, also where a
// pre-defined projection in metres serves a system in feet.
TEST_F(OverviewTestPoint, TheSavedSystemConvertsTheTestPointAsShown) {
    struct Case {
        const char* group;
        const char* system;
        const char* unit; // null: the stored system's unit
    };
    const Case cases[] = {{"UK", "OSGB36 / British National Grid", nullptr},
                          {"World", "WGS 84 / UTM zone 31N", "US survey foot"},
                          {"Europe", "ED50 / UTM zone 31N", nullptr}};
    int saved = 0;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.system);
        ASSERT_TRUE(sd->LoadCoordSys(QString::fromLatin1(c.group), QString::fromLatin1(c.system)));
        const QString name = QStringLiteral("Copy %1").arg(++saved);
        sd->AssignSystemName(name);
        sd->SetGroupName(QStringLiteral("Copies"));
        if (c.unit)
            sd->SetUnitName(QString::fromLatin1(c.unit));
        TestPoint shown;
        ASSERT_TRUE(ReadTestPoint(Text(), shown));
        ASSERT_TRUE(sd->SaveCoordSys()) << sd->LastError().toStdString();

        std::unique_ptr<OrvGeoCoordSysBase> cs(
            OrvGeoCoordSysList::GetCoordSysList().Create(folder.dllType()));
        ASSERT_TRUE(cs);
        const QString e;
        ASSERT_TRUE(cs->DefineSystem(QStringLiteral("Copies"), name, e, e, e, e, e, e,
                                     QStringLiteral("none")))
            << cs->LastError().toStdString();
        GeoPoint p{shown.lat, shown.lon, shown.h, 0};
        ASSERT_TRUE(cs->Forward(p));
        EXPECT_NEAR(p.x, shown.e, 0.0005);
        EXPECT_NEAR(p.y, shown.n, 0.0005);
        EXPECT_NEAR(p.z, shown.z, 0.0005);
    }
}

// The pages hand over a stored transformation by its name and values, without its EPSG code:
// the area of use is found by the name.
TEST_F(OverviewTestPoint, AStoredTransformationIsFoundByName) {
    std::unique_ptr<OrvGeoDatabaseBase> db(
        OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(folder.dllType()));
    ASSERT_TRUE(db);
    ASSERT_TRUE(OrvGeoWizard::Utils::GeobaseToGeostatic(Uk, Bng, QString(), db.get(), sd.get()));
    const QString text = Text();
    EXPECT_TRUE(text.contains(QStringLiteral("(the centre of the datum transformation's area of "
                                             "use)")))
        << text.toStdString();
}
