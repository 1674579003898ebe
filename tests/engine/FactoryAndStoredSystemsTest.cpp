// The factory, DefineSystem on the stored data, the common data folder, and a sample of
// the pre-defined systems against PROJ's own EPSG operations.
#include "EngineTestSupport.h"
#include "api/OrvGeoFactories.h"
#include "engine/SystemCheck.h"
#include "support/TempDataFolder.h"
#include "util/CommonFolders.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <memory>

using namespace EngineTest;

namespace {

const QString Group = QStringLiteral("Europe");
const QString System = QStringLiteral("ED50 / UTM zone 31N");
const QString None = QStringLiteral("none");

void WriteIni(const QString& folder, const QString& text) {
    QFile f(QDir(folder).filePath(QStringLiteral("ORV.ini")));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(text.toUtf8());
}

std::unique_ptr<OrvGeoCoordSysBase> Create(const TempDataFolder& folder) {
    return std::unique_ptr<OrvGeoCoordSysBase>(
        OrvGeoCoordSysList::GetCoordSysList().Create(folder.dllType()));
}

} // namespace

TEST(CoordSysFactory, UnknownSourceGivesNullWithReason) {
    OrvGeoCoordSysList& list = OrvGeoCoordSysList::GetCoordSysList();
    EXPECT_EQ(list.Create(QStringLiteral("oracle:somewhere")), nullptr);
    EXPECT_FALSE(list.LastError().isEmpty());
}

TEST(CoordSysFactory, DefineSystemOnStoredData) {
    TempDataFolder folder;
    auto cs = Create(folder);
    ASSERT_TRUE(cs);
    const QString e;
    EXPECT_FALSE(cs->DefineSystem(Group, QStringLiteral("No such system"), e, e, e, e, e, e, None));
    EXPECT_TRUE(cs->LastError().contains(QStringLiteral("No such system")));
    GeoPoint p{52, 4, 100, 0};
    EXPECT_FALSE(cs->Forward(p)); // nothing defined

    ASSERT_TRUE(cs->DefineSystem(Group, System, e, e, e, e, e, e, None))
        << cs->LastError().toStdString();
    ASSERT_TRUE(cs->Forward(p));
    const double ellipsoidal = p.z;

    // The host's geoid override: EGM96 from PROJ's data folder.
    ASSERT_TRUE(cs->DefineSystem(Group, System, QStringLiteral("EGM96"), e, e, e, e, e, None))
        << cs->LastError().toStdString();
    GeoPoint q{52, 4, 100, 0};
    ASSERT_TRUE(cs->Forward(q));
    EXPECT_NEAR(q.x, p.x, 1e-3);
    // Z is the EGM96 height of the WGS 84 position (cs2cs EPSG:4979 EPSG:32631+5773 gives
    // 56.3956), no longer the ED50 ellipsoidal height.
    EXPECT_NEAR(q.z, 56.3956, 1e-3);
    EXPECT_GT(std::abs(q.z - ellipsoidal), 1);

    // A model file that cannot be found refuses the definition.
    EXPECT_FALSE(cs->DefineSystem(Group, System, QStringLiteral("GTX Geoid Grid"),
                                  QStringLiteral("missing.gtx"), e, e, e, e, None));
    EXPECT_TRUE(cs->LastError().contains(QStringLiteral("missing.gtx")));
    // "--None--" switches a geoid off again.
    ASSERT_TRUE(cs->DefineSystem(Group, System, QStringLiteral("--None--"), e, e, e, e, e, None));
    GeoPoint r{52, 4, 100, 0};
    ASSERT_TRUE(cs->Forward(r));
    EXPECT_NEAR(r.z, ellipsoidal, 1e-9);
}

TEST(CommonDataFolder, FromOrvIniAndUsedForModelFiles) {
    TempDataFolder folder;
    QString common;
    EXPECT_FALSE(GetCommonDataFolder(folder.path(), common)); // no ORV.ini

    WriteIni(folder.path(), QStringLiteral("[DataPaths]\nDataRoot=/data/root\n"));
    ASSERT_TRUE(GetCommonDataFolder(folder.path(), common));
    EXPECT_EQ(common, QStringLiteral("/data/root/Projects Common Files/"));

    WriteIni(folder.path(),
             QStringLiteral("[DataPaths]\nDataRoot=/data/root\nUseDefaultCommonPath=false\n"));
    ASSERT_TRUE(GetCommonDataFolder(folder.path(), common));
    EXPECT_EQ(common, QStringLiteral("/data/root/"));

    const QString mine = folder.path() + QStringLiteral("/common");
    WriteIni(folder.path(), QStringLiteral("[DataPaths]\nDataRoot=/data/root\n"
                                           "UseDefaultCommonPath=0\nCommonPath=%1\n")
                                .arg(mine));
    ASSERT_TRUE(GetCommonDataFolder(folder.path(), common));
    EXPECT_EQ(common, mine + QLatin1Char('/'));

    // A geoid grid in the common folder is found by DefineSystem.
    ASSERT_TRUE(WriteGtx(mine + QStringLiteral("/General/Geoidmodels/Netherlands/nl.gtx"), 50, 2, 1,
                         1, 5, 7, std::vector<float>(35, 40.0f)));
    auto cs = Create(folder);
    ASSERT_TRUE(cs);
    const QString e;
    ASSERT_TRUE(cs->DefineSystem(Group, System, QStringLiteral("GTX Geoid Grid"),
                                 QStringLiteral("nl.gtx"), e, e, e, e, None))
        << cs->LastError().toStdString();
    GeoPoint p{52, 4, 100, 0};
    ASSERT_TRUE(cs->Forward(p));
    EXPECT_NEAR(p.z, 60, 1e-6);
}

TEST(PreDefinedSystems, SampleAgreesWithProjWithinOneMillimetre) {
    std::unique_ptr<GeoStore> store = GeoStore::Open(TempDataFolder().dllType());
    ASSERT_TRUE(store);
    QString error;
    const QList<StoredSystemRef> systems = PreDefinedSystems(*store, &error);
    EXPECT_TRUE(error.isEmpty()) << error.toStdString();
    ASSERT_GT(systems.size(), 1000);
    GeoCoordSys cs(std::move(store));
    int checked = 0, agree = 0, notImplemented = 0;
    const int step = std::max<int>(1, int(systems.size()) / 60);
    for (int i = 0; i < systems.size(); i += step) {
        const SystemCheckResult r = CheckSystem(cs, systems[i]);
        if (r.status == SystemCheckResult::NotImplemented) {
            ++notImplemented;
            continue;
        }
        if (r.status == SystemCheckResult::NoReference)
            continue;
        ++checked;
        agree += r.status == SystemCheckResult::Agree;
        EXPECT_EQ(r.status, SystemCheckResult::Agree)
            << systems[i].name.toStdString() << ": " << r.message.toStdString();
    }
    EXPECT_GT(checked, 40);
    EXPECT_EQ(agree, checked);
}
