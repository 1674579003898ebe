#include "support/TempDataFolder.h"

#include "engine/ModelFiles.h"
#include "store/DataSource.h"
#include "util/InstallLayout.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <optional>

namespace {

// Sets an environment variable for one scope and puts the old value back afterwards.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const std::optional<QByteArray>& value) : m_name(name) {
        if (qEnvironmentVariableIsSet(name))
            m_old = qgetenv(name);
        if (value)
            qputenv(name, *value);
        else
            qunsetenv(name);
    }
    ~ScopedEnv() {
        if (m_old)
            qputenv(m_name, *m_old);
        else
            qunsetenv(m_name);
    }

private:
    const char* m_name;
    std::optional<QByteArray> m_old;
};

QString Canonical(const QString& path) {
    return QFileInfo(path).canonicalFilePath();
}

// The geodetic library file in folder (the versioned name and its links all count).
QString LibraryFileIn(const QString& folder) {
    const QStringList found =
        QDir(folder).entryList({QStringLiteral("libOrvBaseR.so*")}, QDir::Files);
    return found.isEmpty() ? QString() : QDir(folder).filePath(found.first());
}

} // namespace

// The folder is the loaded library's, not the test program's: the data and the calculator are
// looked for beside the library wherever the host program lies.
TEST(InstallLayout, LibraryFolderHoldsTheLoadedLibrary) {
    const QString folder = InstallLayout::LibraryFolder();
    ASSERT_FALSE(folder.isEmpty());
    EXPECT_TRUE(QDir::isAbsolutePath(folder));
    EXPECT_FALSE(LibraryFileIn(folder).isEmpty()) << folder.toStdString();
    EXPECT_NE(Canonical(folder), Canonical(QCoreApplication::applicationDirPath()));
}

// The data and program folders are siblings of the library folder in one prefix, and the
// build tree is laid out the same way: its share/orv holds the generated system database.
TEST(InstallLayout, BuildTreeIsLaidOutLikeAnInstallPrefix) {
    const QString data = InstallLayout::DataFolder();
    const QString programs = InstallLayout::ProgramFolder();
    EXPECT_TRUE(data.endsWith(QStringLiteral("/share/orv"))) << data.toStdString();
    EXPECT_TRUE(programs.endsWith(QStringLiteral("/bin"))) << programs.toStdString();
    EXPECT_EQ(QDir::cleanPath(data + QStringLiteral("/../..")),
              QDir::cleanPath(programs + QStringLiteral("/..")));
    EXPECT_EQ(Canonical(data + QStringLiteral("/orv-system.db")), Canonical(TestSystemDbPath()));

    EXPECT_EQ(InstallLayout::DataFolderFor(QString()), QString());
    EXPECT_EQ(InstallLayout::ProgramFolderFor(QString()), QString());
}

// Without ORV_SYSTEM_DB the default is the database beside the library; the variable, when set,
// wins even over a file that exists, and an empty value counts as unset.
TEST(InstallLayout, DefaultSystemDatabase) {
    {
        ScopedEnv unset("ORV_SYSTEM_DB", std::nullopt);
        const QString found = DataSource::DefaultSystemDbPath();
        EXPECT_EQ(found, Canonical(TestSystemDbPath()));
        const auto source = DataSource::Resolve(QStringLiteral("sqlite:/tmp/orv-layout"));
        ASSERT_TRUE(source);
        EXPECT_EQ(source->systemDbPath, found);
    }
    {
        ScopedEnv empty("ORV_SYSTEM_DB", QByteArray());
        EXPECT_EQ(Canonical(DataSource::DefaultSystemDbPath()), Canonical(TestSystemDbPath()));
    }
    {
        ScopedEnv other("ORV_SYSTEM_DB", QByteArray("/elsewhere/other.db"));
        EXPECT_EQ(DataSource::DefaultSystemDbPath(), QStringLiteral("/elsewhere/other.db"));
    }
}

// The library names no folder of the build machine for its data: a copy installed anywhere
// finds it relative to itself.
TEST(InstallLayout, LibraryHoldsNoBuildTreeDataPath) {
    QFile library(LibraryFileIn(InstallLayout::LibraryFolder()));
    ASSERT_TRUE(library.open(QIODevice::ReadOnly)) << library.fileName().toStdString();
    const QByteArray bytes = library.readAll();
    EXPECT_FALSE(bytes.contains(QFileInfo(TestSystemDbPath()).absolutePath().toUtf8()));
}

// PROJ's data folders come from PROJ itself; one of them holds its registry.
TEST(InstallLayout, ProjDataFoldersHoldTheRegistry) {
    QStringList folders = ModelFiles::ProjDataFolders();
    ASSERT_FALSE(folders.isEmpty());
    EXPECT_EQ(folders.removeDuplicates(), 0);
    bool registry = false;
    for (const QString& folder : folders)
        registry = registry || QFileInfo::exists(folder + QStringLiteral("/proj.db"));
    EXPECT_TRUE(registry) << folders.join(u':').toStdString();
}
