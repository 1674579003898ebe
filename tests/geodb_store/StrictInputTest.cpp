// Names compare by full case folding, and only the zone list's own texts are zones.
#include "StoreTestSupport.h"

#include "store/Schema.h"
#include "util/UtmZones.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

using StoreStrict = StoreTest;

QByteArray ReadAll(const QString& path) {
    QFile f(path);
    f.open(QIODevice::ReadOnly);
    return f.readAll();
}

// Keys as a version 1 file holds them: simple case folding.
QStringList AsVersionOne() {
    QStringList s;
    for (const char* table : {"ellipsoid", "unit", "dtf", "projection", "sysgroup", "coordsys"})
        s << QStringLiteral("UPDATE %1 SET name_key = lower(name)").arg(QLatin1String(table));
    s << QStringLiteral("UPDATE dtf SET src_ellipsoid_key = lower(src_ellipsoid), "
                        "dst_ellipsoid_key = lower(dst_ellipsoid)")
      << QStringLiteral("UPDATE system_use SET system_key = 'straße a'")
      << QStringLiteral("PRAGMA user_version = 1");
    return s;
}

} // namespace

TEST(NameKeys, FoldCaseFullyButKeepTheDotlessI) {
    using OrvSchema::NameKey;
    EXPECT_EQ(NameKey(QStringLiteral("Gauß")), NameKey(QStringLiteral("GAUSS")));
    EXPECT_EQ(NameKey(QStringLiteral("Gauß")), NameKey(QStringLiteral("gauss")));
    EXPECT_EQ(NameKey(QStringLiteral("GAUẞ")), NameKey(QStringLiteral("gauss")));
    EXPECT_EQ(NameKey(QStringLiteral("ﬁeld")), NameKey(QStringLiteral("FIELD")));
    EXPECT_EQ(NameKey(QStringLiteral("ÖSTERREICH")), NameKey(QStringLiteral("österreich")));
    EXPECT_EQ(NameKey(QStringLiteral("ΣΊΣΥΦΟΣ")), NameKey(QStringLiteral("σίσυφος")));
    EXPECT_NE(NameKey(QStringLiteral("Kırıkkale")), NameKey(QStringLiteral("Kirikkale")));
    EXPECT_NE(NameKey(QStringLiteral("Gauss")), NameKey(QStringLiteral("Gaus")));
    // plain ASCII takes a short way to the same key
    EXPECT_EQ(NameKey(QStringLiteral("OSGB36 / British National Grid")),
              QStringLiteral("osgb36 / british national grid"));
    EXPECT_EQ(NameKey(QStringLiteral("GAUSS")), NameKey(QStringLiteral("GAUẞ")));
    // Folding twice changes nothing: keys of keys are keys.
    for (const QString& name : {QStringLiteral("Straße"), QStringLiteral("İzmir"),
                                QStringLiteral("ŉ"), QStringLiteral("ﬃ")})
        EXPECT_EQ(NameKey(NameKey(name)), NameKey(name)) << name.toStdString();
}

TEST_F(StoreStrict, GaussAndGAUSSAreOneName) {
    FillNewSystem(*m_sd, QStringLiteral("Straße"), QStringLiteral("Gauß Süd"));
    ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();
    EXPECT_TRUE(m_db->SystemNameExists(QStringLiteral("GAUSS SÜD")));
    EXPECT_TRUE(m_db->SystemNameExists(QStringLiteral("gauss süd"), GEODB_USER));
    EXPECT_TRUE(m_db->GroupNameExists(QStringLiteral("STRASSE")));
    EXPECT_TRUE(m_db->UnitNameExists(QStringLiteral("GAUSS SÜD-UNIT")));
    QStringList systems;
    m_db->GetSystemNames(systems, QStringLiteral("strasse"));
    EXPECT_EQ(systems, QStringList{QStringLiteral("Gauß Süd")});
    // The pre-defined "DHDN / Gauß-Krüger 3" is found as it is spelled on a keyboard
    // without ß.
    EXPECT_TRUE(m_db->SystemNameExists(QStringLiteral("DHDN / GAUSS-KRÜGER 3"), GEODB_SYSTEM));

    // Saving "GAUSS SÜD" is saving the same system again, not a second one.
    FillNewSystem(*m_sd, QStringLiteral("STRASSE"), QStringLiteral("GAUSS SÜD"));
    ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();
    QStringList groups;
    m_db->GetGroupNames(groups, GEODB_USER);
    EXPECT_EQ(groups, QStringList{QStringLiteral("Straße")});
    m_db->GetSystemNames(systems, QStringLiteral("Straße"));
    EXPECT_EQ(systems.size(), 1);
}

TEST(StoreUpgrade, AVersionOneUserDatabaseGetsFullyFoldedKeys) {
    MiniStore store;
    ASSERT_TRUE(store.ok());
    {
        auto db = store.database();
        auto sd = store.staticData();
        ASSERT_TRUE(db && sd);
        FillNewSystem(*sd, QStringLiteral("Weg"), QStringLiteral("Straße A"));
        ASSERT_TRUE(sd->SaveCoordSys()) << sd->LastError().toStdString();
        ASSERT_TRUE(db->SetSystemInUse(QStringLiteral("Weg"), QStringLiteral("Straße A"),
                                       QStringLiteral("Harbour 2024"), true));
    }
    ASSERT_TRUE(ExecOn(store.userDbPath(), AsVersionOne()));
    auto db = store.database();
    ASSERT_NE(db, nullptr)
        << OrvGeoDatabaseBaseList::GetGeoDatabaseList().LastError().toStdString();
    EXPECT_TRUE(db->SystemNameExists(QStringLiteral("STRASSE A"), GEODB_USER));
    EXPECT_TRUE(db->UnitNameExists(QStringLiteral("STRASSE A-UNIT"), GEODB_USER));
    EXPECT_TRUE(db->IsSystemInUse(QStringLiteral("Weg"), QStringLiteral("STRASSE A")));
    EXPECT_FALSE(db->RemoveSystem(QStringLiteral("Weg"), QStringLiteral("Straße A")));
    QStringList dtfs;
    db->GetDtfNames(dtfs, QStringLiteral("WGS 84"), QStringLiteral("International 1924"));
    EXPECT_TRUE(dtfs.contains(QStringLiteral("Straße A-dtf")));
    // Upgraded once: a later opening finds the current version.
    ASSERT_TRUE(ExecOn(store.userDbPath(),
                       {QStringLiteral("CREATE TABLE check_version AS SELECT user_version AS v "
                                       "FROM pragma_user_version")}));
    EXPECT_TRUE(DumpDatabase(store.userDbPath())
                    .contains(QStringLiteral("[check_version]\n%1|").arg(OrvSchema::Version)));
}

TEST(StoreUpgrade, NamesThatBecomeOneAreReportedAndTheFileLeftAlone) {
    MiniStore store;
    ASSERT_TRUE(store.ok());
    {
        auto sd = store.staticData();
        ASSERT_NE(sd, nullptr);
        FillNewSystem(*sd, QStringLiteral("Weg"), QStringLiteral("Straße B"));
        ASSERT_TRUE(sd->SaveCoordSys()) << sd->LastError().toStdString();
    }
    // A version 1 file could hold both spellings.
    QStringList statements = AsVersionOne();
    statements.prepend(
        QStringLiteral("INSERT INTO sysgroup (name, name_key) VALUES ('STRASSE', 'strasse')"));
    statements.prepend(QStringLiteral("INSERT INTO sysgroup (name, name_key) VALUES ('Straße', "
                                      "'straße')"));
    ASSERT_TRUE(ExecOn(store.userDbPath(), statements));
    const QByteArray before = ReadAll(store.userDbPath());
    auto& list = OrvGeoDatabaseBaseList::GetGeoDatabaseList();
    std::unique_ptr<OrvGeoDatabaseBase> db(list.Create(store.dllType()));
    EXPECT_EQ(db, nullptr);
    EXPECT_TRUE(list.LastError().contains(QStringLiteral("\"Straße\" and \"STRASSE\"")))
        << list.LastError().toStdString();
    EXPECT_EQ(ReadAll(store.userDbPath()), before);
}

TEST(UtmZoneTexts, OnlyTheListsOwnTextsAreZones) {
    int zone = 0, meridian = 0;
    QChar letter;
    EXPECT_TRUE(
        UtmZones::ParseZoneText(QStringLiteral("Zone 31     (  3 E)"), zone, meridian, letter));
    EXPECT_EQ(zone, 31);
    EXPECT_TRUE(
        UtmZones::ParseZoneText(QStringLiteral("Zone  1     (177 W)"), zone, meridian, letter));
    EXPECT_EQ(zone, 1);
    for (int z = 1; z <= UtmZones::ZoneCount; ++z)
        EXPECT_TRUE(UtmZones::ParseZoneText(UtmZones::ZoneText(z), zone, meridian, letter));
    for (const QString& text :
         {QStringLiteral("Zone 31     (177 W)"), QStringLiteral("Zone 31     (  3 E)x"),
          QStringLiteral("Zone 31     (  3 E) "), QStringLiteral(" Zone 31     (  3 E)"),
          QStringLiteral("Zone 31 (3 E)"), QStringLiteral("Zone 61     (183 E)"),
          QStringLiteral("Zone  0     (183 W)"), QStringLiteral("Zone 31     (  3 W)"),
          QStringLiteral("zone 31     (  3 E)"), QString()})
        EXPECT_FALSE(UtmZones::ParseZoneText(text, zone, meridian, letter)) << text.toStdString();
}

TEST_F(StoreStrict, SavingRefusesZoneTextsThatAreNotInTheList) {
    PrjParamBlock block;
    QStringList texts, names;
    QList<unsigned> types;
    m_db->GetProjectionParameters(QStringLiteral("UTM Zone-31N"), block, texts, names, types);
    ASSERT_EQ(names.size(), 7);
    auto fill = [&](const QString& zoneText) {
        FillNewSystem(*m_sd, QStringLiteral("Rigs"), QStringLiteral("Rig"));
        m_sd->SetProjectionMethod(QStringLiteral("UTM"));
        m_sd->SetProjectionName(QStringLiteral("Rig-Prj"), 1);
        m_sd->SetUtmMode(true);
        m_sd->SetUtmZoneText(zoneText);
        m_sd->SetUtmHemisphereText(QStringLiteral("Northern"));
        m_sd->SetProjectionParameters(block, texts.mid(0, 5), names.mid(0, 5), types.mid(0, 5));
    };
    const QByteArray before = ReadAll(m_store.userDbPath());
    for (const QString& text :
         {QStringLiteral("Zone 31     (177 W)"), QStringLiteral("Zone 31     (  3 E)trailing"),
          QStringLiteral("Zone 31  (  3 E)")}) {
        fill(text);
        EXPECT_FALSE(m_sd->SaveCoordSys()) << text.toStdString();
        EXPECT_TRUE(m_sd->LastError().contains(text)) << m_sd->LastError().toStdString();
    }
    EXPECT_EQ(ReadAll(m_store.userDbPath()), before);
    fill(QStringLiteral("Zone 31     (  3 E)"));
    EXPECT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();
}
