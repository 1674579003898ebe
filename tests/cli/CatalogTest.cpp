// Finding entries by part of their name or their EPSG code, on the real system database and
// a user database of the test.
#include "Catalog.h"

#include "api/OrvGeoFactories.h"
#include "store/GeoStore.h"
#include "store/ReadOnlySource.h"
#include "support/TempDataFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <memory>

namespace {

QStringList Names(const QList<Catalog::Entry>& entries) {
    QStringList names;
    for (const Catalog::Entry& entry : entries)
        names << entry.name;
    return names;
}

class CatalogTest : public ::testing::Test {
protected:
    void SetUp() override {
        QString error;
        m_store = GeoStore::Open(m_folder.dllType(), &error);
        ASSERT_TRUE(m_store) << error.toStdString();
    }

    QList<Catalog::Entry> Load(Catalog::Kind kind) const {
        QList<Catalog::Entry> entries;
        QString error;
        EXPECT_TRUE(Catalog::Load(*m_store, kind, entries, error)) << error.toStdString();
        return entries;
    }

    TempDataFolder m_folder;
    std::unique_ptr<GeoStore> m_store;
};

} // namespace

TEST(CatalogSearchKey, IgnoresCaseBlanksAndPunctuation) {
    EXPECT_EQ(Catalog::SearchKey(QStringLiteral("Amersfoort / RD New")),
              QStringLiteral("amersfoortrdnew"));
    EXPECT_EQ(Catalog::SearchKey(QStringLiteral(" rd-NEW ")), QStringLiteral("rdnew"));
    EXPECT_EQ(Catalog::SearchKey(QStringLiteral("Gauß-Krüger")), QStringLiteral("gausskrüger"));
    EXPECT_TRUE(Catalog::SearchKey(QStringLiteral(" / - ")).isEmpty());
}

TEST_F(CatalogTest, FindsSystemsByNameFragmentOrEpsgCode) {
    const QList<Catalog::Entry> systems = Load(Catalog::Kind::System);
    ASSERT_GT(systems.size(), 3500);

    QList<Catalog::Entry> found = Catalog::Find(systems, QStringLiteral("27700"));
    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found[0].name, QStringLiteral("OSGB36 / British National Grid"));
    EXPECT_EQ(found[0].group, QStringLiteral("UK"));
    EXPECT_TRUE(found[0].detail.startsWith(QStringLiteral("UK - Britain")));
    EXPECT_EQ(Names(Catalog::Find(systems, QStringLiteral("EPSG:27700"))),
              QStringList{QStringLiteral("OSGB36 / British National Grid")});

    found = Catalog::Find(systems, QStringLiteral("rd new"));
    EXPECT_TRUE(Names(found).contains(QStringLiteral("Amersfoort / RD New")));
    for (const Catalog::Entry& entry : found)
        EXPECT_TRUE(Catalog::SearchKey(entry.name).contains(u"rdnew")) << entry.name.toStdString();
    EXPECT_EQ(Names(Catalog::Find(systems, QStringLiteral("AMERSFOORT/rd-new"))),
              Names(Catalog::Find(systems, QStringLiteral("amersfoort rd new"))));

    EXPECT_TRUE(Catalog::Find(systems, QStringLiteral("no such system at all")).isEmpty());
    EXPECT_TRUE(Catalog::Find(systems, QStringLiteral(" - ")).isEmpty());
}

TEST_F(CatalogTest, EveryKindHasItsEntriesAndUserEntriesAreMarked) {
    EXPECT_TRUE(Names(Catalog::Find(Load(Catalog::Kind::Ellipsoid), QStringLiteral("7022")))
                    .contains(QStringLiteral("International 1924")));
    EXPECT_FALSE(
        Catalog::Find(Load(Catalog::Kind::DatumTransformation), QStringLiteral("ED50 to WGS 84"))
            .isEmpty());
    EXPECT_TRUE(
        Names(Catalog::Find(Load(Catalog::Kind::Projection), QStringLiteral("utm zone 31n")))
            .contains(QStringLiteral("UTM Zone-31N")));

    std::unique_ptr<OrvGeoDatabaseBase> db(
        OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(m_folder.dllType()));
    ASSERT_TRUE(db && db->AddUnit(QStringLiteral("Survey rod"), 5.0292, QStringLiteral("rd")));
    const QList<Catalog::Entry> units =
        Catalog::Find(Load(Catalog::Kind::Unit), QStringLiteral("survey rod"));
    ASSERT_EQ(units.size(), 1);
    EXPECT_TRUE(units[0].user);
    EXPECT_TRUE(Catalog::Table(Catalog::Kind::Unit, units).contains(u"Survey rod (user)"));
}

TEST_F(CatalogTest, KindsByTheirCommandNames) {
    Catalog::Kind kind;
    EXPECT_TRUE(Catalog::ParseKind(QStringLiteral("systems"), kind));
    EXPECT_EQ(kind, Catalog::Kind::System);
    EXPECT_TRUE(Catalog::ParseKind(QStringLiteral("DTFs"), kind));
    EXPECT_EQ(kind, Catalog::Kind::DatumTransformation);
    EXPECT_TRUE(Catalog::ParseKind(QStringLiteral("unit"), kind));
    EXPECT_EQ(kind, Catalog::Kind::Unit);
    EXPECT_FALSE(Catalog::ParseKind(QStringLiteral("geoids"), kind));
}

TEST(ReadOnlySource, AMissingUserDatabaseIsNotCreated) {
    QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("not-yet"));
    {
        const ReadOnlySource source(QStringLiteral("sqlite:") + folder);
        ASSERT_TRUE(source.ok());
        EXPECT_FALSE(source.userDatabaseExists());
        QString error;
        const std::unique_ptr<GeoStore> store = GeoStore::Open(source.dllType(), &error);
        ASSERT_TRUE(store) << error.toStdString();
        EXPECT_TRUE(store->FindSystem(QStringLiteral("UK"),
                                      QStringLiteral("OSGB36 / British National Grid"), GEODB_ALL,
                                      &error));
    }
    EXPECT_FALSE(QFileInfo::exists(folder));

    // ORV.ini of the data folder (where the engine finds its model files) goes along.
    QTemporaryDir withIni;
    {
        QFile ini(withIni.filePath(QStringLiteral("ORV.ini")));
        ASSERT_TRUE(ini.open(QIODevice::WriteOnly));
        ini.write("[DATA_PATH_SECTION]\n");
    }
    const ReadOnlySource source(QStringLiteral("sqlite:") + withIni.path());
    ASSERT_TRUE(source.ok());
    const QString scratch = source.dllType().section(QLatin1Char(';'), 0, 0).mid(7);
    EXPECT_NE(scratch, withIni.path());
    EXPECT_TRUE(QFileInfo::exists(scratch + QStringLiteral("/ORV.ini")));
    EXPECT_EQ(QDir(withIni.path()).entryList(QDir::Files), QStringList{QStringLiteral("ORV.ini")});

    // An existing user database is read where it is.
    TempDataFolder data;
    {
        std::unique_ptr<OrvGeoDatabaseBase> db(
            OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(data.dllType()));
        ASSERT_TRUE(db);
    }
    const ReadOnlySource existing(data.dllType());
    EXPECT_TRUE(existing.userDatabaseExists());
    EXPECT_EQ(existing.dllType(), data.dllType());
    EXPECT_FALSE(ReadOnlySource(QStringLiteral("oracle:nowhere")).ok());
}
