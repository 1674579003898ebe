// The pre-defined systems store the datum transformation a surveyor would choose, so they
// convert as PROJ's own cs2cs does.
#include "engine/GeoCoordSys.h"
#include "engine/SystemCheck.h"
#include "support/TempDataFolder.h"

#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

namespace {

// cs2cs EPSG:4326 EPSG:<code> at one point: easting, northing.
bool Cs2cs(int code, double lat, double lon, double& east, double& north) {
    QProcess process;
    process.start(QStringLiteral("cs2cs"),
                  {QStringLiteral("-f"), QStringLiteral("%.6f"), QStringLiteral("EPSG:4326"),
                   QStringLiteral("EPSG:%1").arg(code)});
    if (!process.waitForStarted())
        return false;
    process.write(QStringLiteral("%1 %2 0\n").arg(lat, 0, 'f', 9).arg(lon, 0, 'f', 9).toUtf8());
    process.closeWriteChannel();
    if (!process.waitForFinished(30000))
        return false;
    const QStringList parts =
        QString::fromUtf8(process.readAllStandardOutput()).simplified().split(u' ');
    bool okE = false, okN = false;
    east = parts.value(0).toDouble(&okE);
    north = parts.value(1).toDouble(&okN);
    return okE && okN;
}

} // namespace

TEST(StoredChoice, RdNewAndBritishNationalGridConvertAsCs2csDoes) {
    if (QStandardPaths::findExecutable(QStringLiteral("cs2cs")).isEmpty())
        GTEST_SKIP() << "cs2cs (proj-bin) is not installed";
    TempDataFolder folder;
    std::unique_ptr<GeoStore> store = GeoStore::Open(folder.dllType());
    ASSERT_TRUE(store);
    QString error;
    const QList<StoredSystemRef> systems = PreDefinedSystems(*store, &error);
    ASSERT_TRUE(error.isEmpty()) << error.toStdString();
    GeoCoordSys cs(std::move(store));
    const struct {
        int code;
        double lat, lon;
    } cases[] = {
        {28992, 52.0, 5.0},   // Amersfoort / RD New, Utrecht
        {28992, 53.2, 6.56},  // Groningen
        {27700, 52.0, -1.0},  // OSGB36 / British National Grid, Oxfordshire
        {27700, 57.15, -2.1}, // Aberdeen
    };
    for (const auto& c : cases) {
        const auto it = std::find_if(systems.begin(), systems.end(),
                                     [&](const StoredSystemRef& r) { return r.crsCode == c.code; });
        ASSERT_NE(it, systems.end()) << c.code;
        const QString none;
        ASSERT_TRUE(cs.DefineSystem(it->group, it->name, none, none, none, none, none, none,
                                    QStringLiteral("none")))
            << cs.LastError().toStdString();
        double east = 0, north = 0;
        ASSERT_TRUE(Cs2cs(c.code, c.lat, c.lon, east, north));
        GeoPoint p{c.lat, c.lon, 0, 0};
        ASSERT_TRUE(cs.Forward(p)) << cs.LastError().toStdString();
        EXPECT_NEAR(p.x, east, 0.001)
            << it->name.toStdString() << " via EPSG:" << it->operationCode;
        EXPECT_NEAR(p.y, north, 0.001)
            << it->name.toStdString() << " via EPSG:" << it->operationCode;
    }
}
