// A damaged database is refused or fails the operation that reads it, with a message that
// names the file; it never gives a wrong or partial answer, and it is never written to.
#include "StoreTestSupport.h"

#include "api/ProjectionMethods.h"
#include "engine/GeoCoordSys.h"
#include "store/GeoStore.h"
#include "support/TempDataFolder.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QMap>

#include <cstdio>

#include <gtest/gtest.h>

namespace {

QByteArray ReadAll(const QString& path) {
    QFile f(path);
    f.open(QIODevice::ReadOnly);
    return f.readAll();
}

// 1 KiB of bytes no file would hold by chance.
QByteArray Garbage(int size = 1024) {
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i)
        bytes[i] = char((i * 7919 + 13) % 251);
    return bytes;
}

// A copy of the generated system database in a temporary folder, with a user folder beside.
class RealCopy {
public:
    RealCopy() {
        m_ok =
            m_dir.isValid() && QFile::copy(TestSystemDbPath(), systemDbPath()) &&
            QFile::setPermissions(systemDbPath(), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    }
    bool ok() const { return m_ok; }
    QString systemDbPath() const { return m_dir.filePath(QStringLiteral("orv-system.db")); }
    QString userFolder() const { return m_dir.filePath(QStringLiteral("user")); }
    QString dllType() const {
        return QStringLiteral("sqlite:%1;system=%2").arg(userFolder(), systemDbPath());
    }
    std::unique_ptr<OrvGeoDatabaseBase> database() const {
        return std::unique_ptr<OrvGeoDatabaseBase>(
            OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(dllType()));
    }
    // Zeroes the leaf pages of every table and index, as a disk that lost them would.
    bool LoseAllData() const {
        QList<int> pages;
        for (const QString& table :
             {QStringLiteral("ellipsoid"), QStringLiteral("unit"), QStringLiteral("dtf"),
              QStringLiteral("projection"), QStringLiteral("projection_param"),
              QStringLiteral("sysgroup"), QStringLiteral("coordsys")}) {
            pages += FileDamage::LeafPages(systemDbPath(), table);
        }
        for (const QString& index :
             {QStringLiteral("sqlite_autoindex_ellipsoid_1"),
              QStringLiteral("sqlite_autoindex_unit_1"), QStringLiteral("sqlite_autoindex_dtf_1"),
              QStringLiteral("dtf_ellipsoids"), QStringLiteral("sqlite_autoindex_projection_1"),
              QStringLiteral("projection_method"), QStringLiteral("sqlite_autoindex_sysgroup_1"),
              QStringLiteral("sqlite_autoindex_coordsys_1"), QStringLiteral("coordsys_group"),
              QStringLiteral("coordsys_projection")})
            pages += FileDamage::LeafPages(systemDbPath(), index);
        return pages.size() > 20 && FileDamage::ZeroPages(systemDbPath(), pages) &&
               FileDamage::BumpChangeCounter(systemDbPath());
    }

private:
    QTemporaryDir m_dir;
    bool m_ok = false;
};

// The factory refuses the source with a message naming the file and saying what is wrong.
void ExpectRefused(const QString& dllType, const QString& file, const QString& reasonPart) {
    auto& list = OrvGeoDatabaseBaseList::GetGeoDatabaseList();
    std::unique_ptr<OrvGeoDatabaseBase> db(list.Create(dllType));
    EXPECT_EQ(db, nullptr);
    EXPECT_TRUE(list.LastError().contains(QDir::toNativeSeparators(file)))
        << list.LastError().toStdString();
    EXPECT_TRUE(list.LastError().contains(reasonPart, Qt::CaseInsensitive))
        << list.LastError().toStdString();
}

// A failed read: an empty answer and a message that names the file in sentences.
void ExpectReadFailure(const OrvGeoDatabaseBase& db, const QString& file, const char* what) {
    const QString error = db.LastError();
    EXPECT_TRUE(error.contains(QDir::toNativeSeparators(file)))
        << what << ": " << error.toStdString();
    EXPECT_TRUE(error.contains(QStringLiteral("cannot be read")))
        << what << ": " << error.toStdString();
    // SQLite's and Qt's texts are joined as sentences, not run together.
    EXPECT_FALSE(error.contains(QStringLiteral("malformed Unable"))) << error.toStdString();
}

} // namespace

TEST(StoreDamage, SystemDatabaseWithOneKibOverwrittenOrTruncatedIsRefusedAndLeftAlone) {
    RealCopy copy;
    ASSERT_TRUE(copy.ok());
    const QString path = copy.systemDbPath();
    const qint64 size = QFileInfo(path).size();
    ASSERT_GT(size, 1024 * 1024);
    for (const qint64 offset : {size / 2, size / 2 + 1000, size / 3 + 333}) {
        ASSERT_TRUE(QFile::remove(path));
        ASSERT_TRUE(QFile::copy(TestSystemDbPath(), path));
        QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        ASSERT_TRUE(FileDamage::Overwrite(path, offset, Garbage()));
        const QByteArray before = ReadAll(path);
        ExpectRefused(copy.dllType(), path, QStringLiteral("damaged"));
        EXPECT_EQ(ReadAll(path), before);
    }
    // Cut off behind its middle.
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(QFile::copy(TestSystemDbPath(), path));
    QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    ASSERT_TRUE(QFile::resize(path, size * 6 / 10));
    ExpectRefused(copy.dllType(), path, QStringLiteral("not usable"));
    EXPECT_EQ(QFileInfo(path).size(), size * 6 / 10);

    // The whole file again opens.
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(QFile::copy(TestSystemDbPath(), path));
    EXPECT_NE(copy.database(), nullptr);
}

TEST(StoreDamage, TablesWithOtherColumnsAreRefusedOnOpening) {
    MiniStore store;
    ASSERT_TRUE(store.ok());
    ASSERT_TRUE(ExecOn(store.systemDbPath(), {QStringLiteral("ALTER TABLE dtf RENAME COLUMN "
                                                             "obs_epoch TO observation_epoch")}));
    ExpectRefused(store.dllType(), store.systemDbPath(), QStringLiteral("\"obs_epoch\""));

    MiniStore second;
    ASSERT_TRUE(second.ok());
    ASSERT_NE(second.database(), nullptr); // creates the user database
    ASSERT_TRUE(
        ExecOn(second.userDbPath(), {QStringLiteral("ALTER TABLE coordsys DROP COLUMN remarks")}));
    const QByteArray before = ReadAll(second.userDbPath());
    ExpectRefused(second.dllType(), second.userDbPath(), QStringLiteral("\"remarks\""));
    EXPECT_EQ(ReadAll(second.userDbPath()), before);

    MiniStore third;
    ASSERT_TRUE(third.ok());
    ASSERT_TRUE(
        ExecOn(third.systemDbPath(), {QStringLiteral("ALTER TABLE unit ADD COLUMN colour TEXT")}));
    ExpectRefused(third.dllType(), third.systemDbPath(), QStringLiteral("\"colour\""));
}

TEST(StoreDamage, ReadsThatFailAfterOpeningFailTheOperationAndSayWhy) {
    RealCopy copy;
    ASSERT_TRUE(copy.ok());
    auto db = copy.database();
    ASSERT_NE(db, nullptr);
    const QString group = QStringLiteral("Netherlands");
    const QString system = QStringLiteral("Amersfoort / RD New");
    QString dtf, projection;
    db->GetSystemDtfName(dtf, group, system);
    db->GetSystemProjectionName(projection, group, system);
    ASSERT_FALSE(dtf.isEmpty());
    ASSERT_FALSE(projection.isEmpty());
    auto cs = std::unique_ptr<OrvGeoCoordSysBase>(
        OrvGeoCoordSysList::GetCoordSysList().Create(copy.dllType()));
    ASSERT_NE(cs, nullptr);
    auto sd = std::unique_ptr<OrvGeoStaticDataBase>(
        OrvGeoStaticDatabaseList::GetGeoStaticDataList().Create(copy.dllType()));
    ASSERT_NE(sd, nullptr);

    ASSERT_TRUE(copy.LoseAllData());
    const QString file = copy.systemDbPath();

    QStringList list{QStringLiteral("stale")};
    QString text = QStringLiteral("stale");
    db->GetGroupNames(list);
    EXPECT_TRUE(list.isEmpty());
    ExpectReadFailure(*db, file, "GetGroupNames");
    db->GetSystemNames(list, group);
    EXPECT_TRUE(list.isEmpty());
    ExpectReadFailure(*db, file, "GetSystemNames");
    db->GetUnitNames(list);
    EXPECT_TRUE(list.isEmpty());
    ExpectReadFailure(*db, file, "GetUnitNames");
    db->GetEllipsoidNames(list);
    EXPECT_TRUE(list.isEmpty());
    ExpectReadFailure(*db, file, "GetEllipsoidNames");
    db->GetProjectionNamesOfMethod(list, QStringLiteral("Transverse Mercator"));
    EXPECT_TRUE(list.isEmpty());
    ExpectReadFailure(*db, file, "GetProjectionNamesOfMethod");
    db->GetDtfNames(list, QStringLiteral("WGS 84"), QStringLiteral("Bessel 1841"));
    EXPECT_TRUE(list.isEmpty());
    ExpectReadFailure(*db, file, "GetDtfNames");
    EXPECT_TRUE(db->GetSystemDtfName(text, group, system).isEmpty());
    ExpectReadFailure(*db, file, "GetSystemDtfName");
    EXPECT_TRUE(db->GetCoordSysUnitName(group, system).isEmpty());
    ExpectReadFailure(*db, file, "GetCoordSysUnitName");
    EXPECT_TRUE(db->GetCoordSysPrjMethod(group, system).isEmpty());
    ExpectReadFailure(*db, file, "GetCoordSysPrjMethod");
    PrjParamBlock block;
    QStringList values, names;
    QList<unsigned> types;
    db->GetProjectionParameters(projection, block, values, names, types);
    EXPECT_TRUE(names.isEmpty());
    EXPECT_EQ(block.count, 0);
    ExpectReadFailure(*db, file, "GetProjectionParameters");
    EllipsoidValues ellipsoid{};
    EXPECT_FALSE(db->GetEllipsoidValues(QStringLiteral("Bessel 1841"), ellipsoid));
    ExpectReadFailure(*db, file, "GetEllipsoidValues");
    QString method;
    DtfValues dtfValues{};
    std::array<double, 2> further{}, trailing{};
    unsigned char option = 0;
    EXPECT_FALSE(db->GetDtfParameters(dtf, method, dtfValues, further, option, trailing));
    ExpectReadFailure(*db, file, "GetDtfParameters");
    EXPECT_TRUE(db->GetDtfInfoText(text, dtf).isEmpty());
    ExpectReadFailure(*db, file, "GetDtfInfoText");
    EXPECT_TRUE(db->GetSystemInfoText(text, group, system, {}, {}, {}, {}, {}).isEmpty());
    ExpectReadFailure(*db, file, "GetSystemInfoText");
    EXPECT_TRUE(db->GetSystemProjects(group, system).isEmpty());
    ExpectReadFailure(*db, file, "GetSystemProjects");
    EXPECT_TRUE(db->GetProjectionInfoText(projection).isEmpty());
    ExpectReadFailure(*db, file, "GetProjectionInfoText");
    QString g, s;
    EXPECT_FALSE(db->FindProjectionSystem(projection, g, s));
    ExpectReadFailure(*db, file, "FindProjectionSystem");
    EXPECT_FALSE(db->GroupNameExists(group));
    ExpectReadFailure(*db, file, "GroupNameExists");
    EXPECT_FALSE(db->SystemNameExists(system));
    ExpectReadFailure(*db, file, "SystemNameExists");
    EXPECT_FALSE(db->IsDtfOfType(dtf));
    ExpectReadFailure(*db, file, "IsDtfOfType");
    EXPECT_FALSE(db->IsPrjOfType(projection));
    ExpectReadFailure(*db, file, "IsPrjOfType");
    EXPECT_FALSE(db->UnitNameExists(QStringLiteral("Meters")));
    ExpectReadFailure(*db, file, "UnitNameExists");
    QString suffix, description;
    double factor = 0;
    int category = 0;
    EXPECT_FALSE(
        db->GetUnitDefinition(QStringLiteral("Meters"), suffix, factor, category, description));
    ExpectReadFailure(*db, file, "GetUnitDefinition");
    EXPECT_TRUE(db->GetEpsgCodes(GeoEntryKind::CoordSys).isEmpty());
    ExpectReadFailure(*db, file, "GetEpsgCodes");
    EXPECT_FALSE(db->SystemHasGeoidModel(group, system));
    ExpectReadFailure(*db, file, "SystemHasGeoidModel");

    // The engine and the static data say the same.
    const QString none;
    EXPECT_FALSE(cs->DefineSystem(group, system, none, none, none, none, none, none,
                                  QStringLiteral("none")));
    EXPECT_TRUE(cs->LastError().contains(file)) << cs->LastError().toStdString();
    EXPECT_FALSE(sd->LoadCoordSys(group, system));
    EXPECT_TRUE(sd->LastError().contains(file)) << sd->LastError().toStdString();

    // A later successful operation clears the message.
    EXPECT_TRUE(db->GetSatelliteEllipsoidName(text) == QStringLiteral("WGS 84"));
    EXPECT_TRUE(db->LastError().isEmpty());
}

TEST(StoreDamage, ProjectionParametersAreReadWholeOrNotAtAll) {
    RealCopy copy;
    ASSERT_TRUE(copy.ok());
    auto db = copy.database();
    ASSERT_NE(db, nullptr);
    // Every projection with its parameter names, read while the file is whole.
    QMap<QString, QStringList> whole;
    for (const ProjectionMethods::Method& m : ProjectionMethods::All()) {
        QStringList names;
        db->GetProjectionNamesOfMethod(names, QString::fromUtf8(m.name));
        for (const QString& name : names) {
            PrjParamBlock block;
            QStringList values, paramNames;
            QList<unsigned> types;
            db->GetProjectionParameters(name, block, values, paramNames, types);
            whole.insert(name, paramNames);
        }
    }
    ASSERT_GT(whole.size(), 1000);

    // One page of parameters in the middle of the table is lost.
    const QList<int> pages =
        FileDamage::LeafPages(copy.systemDbPath(), QStringLiteral("projection_param"));
    ASSERT_GT(pages.size(), 10);
    ASSERT_TRUE(FileDamage::ZeroPages(copy.systemDbPath(), {pages[pages.size() / 2]}));
    ASSERT_TRUE(FileDamage::BumpChangeCounter(copy.systemDbPath()));

    int failed = 0;
    for (auto it = whole.cbegin(); it != whole.cend(); ++it) {
        PrjParamBlock block;
        QStringList values, names;
        QList<unsigned> types;
        db->GetProjectionParameters(it.key(), block, values, names, types);
        if (db->LastError().isEmpty()) {
            EXPECT_EQ(names, it.value()) << it.key().toStdString();
        } else {
            ++failed;
            EXPECT_TRUE(names.isEmpty()) << it.key().toStdString() << " gave a partial list";
            EXPECT_EQ(block.count, 0);
        }
    }
    EXPECT_GT(failed, 0);
    EXPECT_LT(failed, whole.size() / 4);
}

TEST(StoreDamage, DamagedUserDatabaseIsRefusedInsteadOfShowingNoGroups) {
    MiniStore store;
    ASSERT_TRUE(store.ok());
    {
        auto sd = store.staticData();
        ASSERT_NE(sd, nullptr);
        for (int i = 1; i <= 30; ++i) {
            FillNewSystem(*sd, QStringLiteral("Harbour survey"),
                          QStringLiteral("Quay wall %1").arg(i));
            ASSERT_TRUE(sd->SaveCoordSys()) << sd->LastError().toStdString();
        }
    }
    // The pages of the groups and of their names' index.
    const QList<int> groupPages =
        FileDamage::LeafPages(store.userDbPath(), QStringLiteral("sysgroup")) +
        FileDamage::LeafPages(store.userDbPath(), QStringLiteral("sqlite_autoindex_sysgroup_1"));
    ASSERT_FALSE(groupPages.isEmpty());

    // Damaged while no one had it open: refused on opening.
    const QString damaged = store.folder() + QStringLiteral("/damaged.db");
    ASSERT_TRUE(QFile::copy(store.userDbPath(), damaged));
    ASSERT_TRUE(FileDamage::ZeroPages(damaged, groupPages));
    const QString saved = store.folder() + QStringLiteral("/whole.db");
    ASSERT_TRUE(QFile::rename(store.userDbPath(), saved));
    ASSERT_TRUE(QFile::copy(damaged, store.userDbPath()));
    const QByteArray before = ReadAll(store.userDbPath());
    ExpectRefused(store.dllType(), store.userDbPath(), QStringLiteral("damaged"));
    EXPECT_EQ(ReadAll(store.userDbPath()), before);

    // Damaged while open: every read of it fails, and nothing is written.
    ASSERT_TRUE(QFile::remove(store.userDbPath()));
    ASSERT_TRUE(QFile::copy(saved, store.userDbPath()));
    auto db = store.database();
    auto sd = store.staticData();
    ASSERT_NE(db, nullptr);
    ASSERT_NE(sd, nullptr);
    QStringList groups;
    db->GetGroupNames(groups, GEODB_USER);
    ASSERT_EQ(groups, QStringList{QStringLiteral("Harbour survey")});
    ASSERT_TRUE(FileDamage::ZeroPages(store.userDbPath(), groupPages));
    ASSERT_TRUE(FileDamage::BumpChangeCounter(store.userDbPath()));
    const QByteArray damagedBytes = ReadAll(store.userDbPath());
    db->GetGroupNames(groups, GEODB_USER);
    EXPECT_TRUE(groups.isEmpty());
    ExpectReadFailure(*db, store.userDbPath(), "GetGroupNames");
    db->GetGroupNames(groups, GEODB_ALL);
    EXPECT_TRUE(groups.isEmpty());
    ExpectReadFailure(*db, store.userDbPath(), "GetGroupNames (all)");
    EXPECT_FALSE(db->GroupNameExists(QStringLiteral("Harbour survey")));
    ExpectReadFailure(*db, store.userDbPath(), "GroupNameExists");
    QStringList systems;
    db->GetSystemNames(systems, QStringLiteral("Harbour survey"));
    EXPECT_TRUE(systems.isEmpty());
    ExpectReadFailure(*db, store.userDbPath(), "GetSystemNames");

    FillNewSystem(*sd, QStringLiteral("Harbour survey"), QStringLiteral("Quay wall 31"));
    EXPECT_FALSE(sd->SaveCoordSys());
    EXPECT_TRUE(sd->LastError().contains(QStringLiteral("Nothing was saved")))
        << sd->LastError().toStdString();
    EXPECT_FALSE(db->RemoveSystem(QStringLiteral("Harbour survey"), QStringLiteral("Quay wall 1")));
    EXPECT_FALSE(db->LastError().isEmpty());
    EXPECT_EQ(ReadAll(store.userDbPath()), damagedBytes);
}

TEST(StoreDamage, QuickCheckOfTheSystemDatabaseIsFastAndDoneOncePerFile) {
    // The check reads the whole file once per process and state of the file; later
    // objects on the same file open as fast as before.
    RealCopy copy;
    ASSERT_TRUE(copy.ok());
    QElapsedTimer timer;
    timer.start();
    ASSERT_NE(copy.database(), nullptr);
    const qint64 first = timer.nsecsElapsed();
    timer.restart();
    for (int i = 0; i < 10; ++i)
        ASSERT_NE(copy.database(), nullptr);
    const qint64 later = timer.nsecsElapsed() / 10;
    EXPECT_LT(first, qint64(2'000'000'000));
    EXPECT_LT(later, first);
    std::printf("first opening %.1f ms, later openings %.2f ms each\n", first / 1e6, later / 1e6);
}
