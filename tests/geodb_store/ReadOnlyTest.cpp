// A user database (or its folder) that cannot be written still lets everything be read;
// only saving fails, and it says which permission is missing.
#include "StoreTestSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <functional>

#include <unistd.h>

namespace {

constexpr uid_t NobodyId = 65534;

QByteArray ReadAll(const QString& path) {
    QFile f(path);
    f.open(QIODevice::ReadOnly);
    return f.readAll();
}

// Runs the checks as a user without write permission: in a child process that, when the
// tests run as root (whom file permissions do not stop), first becomes "nobody". The child
// reports every failed check on standard error and exits with their number.
void RunWithoutWritePermission(const std::function<int()>& checks) {
    GTEST_FLAG_SET(death_test_style, "fast");
    EXPECT_EXIT(
        {
            if (geteuid() == 0 && (setgid(NobodyId) != 0 || setuid(NobodyId) != 0)) {
                std::fprintf(stderr, "cannot become nobody\n");
                std::_Exit(100);
            }
            std::_Exit(checks());
        },
        ::testing::ExitedWithCode(0), "");
}

int Failures(std::initializer_list<std::pair<bool, QString>> checks) {
    int failures = 0;
    for (const auto& [ok, what] : checks) {
        if (!ok) {
            std::fprintf(stderr, "failed: %s\n", qPrintable(what));
            ++failures;
        }
    }
    return failures;
}

// What a surveyor does with a read-only database: reads the pre-defined and stored systems,
// then tries to save; the save fails naming the permission.
int ReadEverythingThenFailToSave(const MiniStore& store, const QString& userSystem,
                                 const QString& permissionWords) {
    auto db = store.database();
    auto sd = store.staticData();
    if (!db || !sd) {
        std::fprintf(stderr, "refused: %s\n",
                     qPrintable(OrvGeoDatabaseBaseList::GetGeoDatabaseList().LastError()));
        return 1;
    }
    QStringList groups, systems;
    db->GetGroupNames(groups, GEODB_SYSTEM);
    db->GetSystemNames(systems, QStringLiteral("Europe"));
    QString text;
    db->GetSystemInfoText(text, QStringLiteral("Europe"), QStringLiteral("ED50 / UTM zone 31N"), {},
                          {}, {}, {}, {});
    QStringList userGroups;
    db->GetGroupNames(userGroups, GEODB_USER);
    const bool userSystemRead =
        userSystem.isEmpty() || db->SystemNameExists(userSystem, GEODB_USER);
    const bool loaded =
        sd->LoadCoordSys(QStringLiteral("Europe"), QStringLiteral("ED50 / UTM zone 31N"));

    FillNewSystem(*sd, QStringLiteral("Harbour"), QStringLiteral("Quay wall"));
    const bool saved = sd->SaveCoordSys();
    const QString why = sd->LastError();
    const bool unitAdded = db->AddUnit(QStringLiteral("Rod"), 5.0292, QStringLiteral("rd"));
    return Failures({
        {groups == QStringList{QStringLiteral("Europe"), QStringLiteral("Österreich")},
         QStringLiteral("pre-defined groups: ") + groups.join(u',')},
        {systems == QStringList{QStringLiteral("ED50 / UTM zone 31N")},
         QStringLiteral("systems of Europe")},
        {text.contains(QStringLiteral("ED50 to WGS 84 (1)")), QStringLiteral("information text")},
        {userSystemRead, QStringLiteral("the stored user system")},
        {loaded, QStringLiteral("loading a pre-defined system: ") + sd->LastError()},
        {!saved, QStringLiteral("saving succeeded")},
        {why.contains(permissionWords), QStringLiteral("save message: ") + why},
        {why.contains(QStringLiteral("Nothing was saved")), QStringLiteral("save message: ") + why},
        {!unitAdded && db->LastError().contains(permissionWords),
         QStringLiteral("AddUnit: ") + db->LastError()},
    });
}

} // namespace

TEST(StoreReadOnly, ReadOnlyUserDatabaseReadsEverythingAndRefusesToSave) {
    MiniStore store;
    ASSERT_TRUE(store.ok());
    {
        auto sd = store.staticData();
        ASSERT_NE(sd, nullptr);
        FillNewSystem(*sd, QStringLiteral("Harbour"), QStringLiteral("Pier"));
        ASSERT_TRUE(sd->SaveCoordSys()) << sd->LastError().toStdString();
    }
    // Others may enter the folders and read the files, nobody may write the database.
    QFile::setPermissions(store.folder(), QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                              QFileDevice::ExeOwner | QFileDevice::ReadOther |
                                              QFileDevice::ExeOther);
    QFile::setPermissions(store.userFolder(), QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                                  QFileDevice::ExeOwner | QFileDevice::ReadOther |
                                                  QFileDevice::ExeOther);
    QFile::setPermissions(store.systemDbPath(), QFileDevice::ReadOwner | QFileDevice::ReadOther);
    ASSERT_TRUE(
        QFile::setPermissions(store.userDbPath(), QFileDevice::ReadOwner | QFileDevice::ReadOther));
    const QByteArray before = ReadAll(store.userDbPath());
    RunWithoutWritePermission([&] {
        return ReadEverythingThenFailToSave(store, QStringLiteral("Pier"),
                                            QStringLiteral("the file has no write permission"));
    });
    EXPECT_EQ(ReadAll(store.userDbPath()), before);
    QFile::setPermissions(store.userDbPath(), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

TEST(StoreReadOnly, ReadOnlyFolderReadsEverythingAndRefusesToSave) {
    MiniStore store;
    ASSERT_TRUE(store.ok());
    {
        auto sd = store.staticData();
        ASSERT_NE(sd, nullptr);
        FillNewSystem(*sd, QStringLiteral("Harbour"), QStringLiteral("Pier"));
        ASSERT_TRUE(sd->SaveCoordSys()) << sd->LastError().toStdString();
    }
    const auto readOnlyFolder = QFileDevice::ReadOwner | QFileDevice::ExeOwner |
                                QFileDevice::ReadOther | QFileDevice::ExeOther;
    QFile::setPermissions(store.folder(), readOnlyFolder | QFileDevice::WriteOwner);
    QFile::setPermissions(store.systemDbPath(), QFileDevice::ReadOwner | QFileDevice::ReadOther);
    // The database may be written, its folder not (no room for the journal).
    QFile::setPermissions(store.userDbPath(), QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                                  QFileDevice::ReadOther | QFileDevice::WriteOther);
    ASSERT_TRUE(QFile::setPermissions(store.userFolder(), readOnlyFolder));
    const QByteArray before = ReadAll(store.userDbPath());
    RunWithoutWritePermission([&] {
        return ReadEverythingThenFailToSave(store, QStringLiteral("Pier"),
                                            QStringLiteral("has no write permission"));
    });
    EXPECT_EQ(ReadAll(store.userDbPath()), before);
    QFile::setPermissions(store.userFolder(), readOnlyFolder | QFileDevice::WriteOwner);
}

TEST(StoreReadOnly, ReadOnlyFolderWithoutADatabaseReadsThePreDefinedSystems) {
    MiniStore store;
    ASSERT_TRUE(store.ok());
    const auto readOnlyFolder = QFileDevice::ReadOwner | QFileDevice::ExeOwner |
                                QFileDevice::ReadOther | QFileDevice::ExeOther;
    QFile::setPermissions(store.folder(), readOnlyFolder | QFileDevice::WriteOwner);
    QFile::setPermissions(store.systemDbPath(), QFileDevice::ReadOwner | QFileDevice::ReadOther);
    ASSERT_TRUE(QDir().mkpath(store.userFolder()));
    ASSERT_TRUE(QFile::setPermissions(store.userFolder(), readOnlyFolder));
    RunWithoutWritePermission([&] {
        return ReadEverythingThenFailToSave(
            store, QString(),
            QStringLiteral("its folder \"%1\" has no write permission")
                .arg(QDir::toNativeSeparators(store.userFolder())));
    });
    EXPECT_FALSE(QFileInfo::exists(store.userDbPath()));
    QFile::setPermissions(store.userFolder(), readOnlyFolder | QFileDevice::WriteOwner);
}
