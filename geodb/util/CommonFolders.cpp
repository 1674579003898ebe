#include "util/CommonFolders.h"

#include "api/GeoKeys.h"
#include "util/FileObject.h"

#include <QCollator>
#include <QDir>
#include <QLocale>

#include <algorithm>

namespace {

const QString kDefaultCommonFolder = QStringLiteral("Projects Common Files");
const QString kTerrainModelFolder = QStringLiteral("DigitalTerrainModel");

// The separator rule: '/' only, cleaned, one trailing '/'; empty stays empty.
QString asFolder(const QString& path) {
    QString folder = path.trimmed();
    if (folder.isEmpty())
        return folder;
    folder.replace(QLatin1Char('\\'), QLatin1Char('/'));
    const bool network = folder.startsWith(QStringLiteral("//"));
    folder = QDir::cleanPath(folder);
    if (network && !folder.startsWith(QStringLiteral("//")))
        folder.prepend(QLatin1Char('/'));
    if (!folder.endsWith(QLatin1Char('/')))
        folder += QLatin1Char('/');
    return folder;
}

QString entry(FileObject& ini, int key) {
    QString value;
    ini.GetItem(QString::fromWCharArray(DATA_PATH_SECTION), QString::fromWCharArray(pathKeys[key]),
                value);
    return value.trimmed();
}

// pathKeys entries
constexpr int kDataFolderKey = 1;
constexpr int kDataRootKey = 2;
constexpr int kCommonPathKey = 4;
constexpr int kTerrainModelPathKey = 5;

} // namespace

bool ReadDataPaths(const QString& iniPath, DataPaths& paths) {
    paths = DataPaths();
    FileObject ini;
    if (iniPath.isEmpty() || !ini.FileOpen(iniPath, FileObject::Read))
        return false;

    paths.dataRoot = asFolder(entry(ini, kDataRootKey));
    if (!paths.dataRoot.isEmpty())
        paths.dataFolder = asFolder(paths.dataRoot + entry(ini, kDataFolderKey));

    bool useDefault = true; // an absent entry counts as true
    ini.GetItem(QString::fromWCharArray(DATA_PATH_SECTION), QStringLiteral("UseDefaultCommonPath"),
                useDefault);
    if (useDefault) {
        if (!paths.dataRoot.isEmpty())
            paths.commonDataFolder = asFolder(paths.dataRoot + kDefaultCommonFolder);
    } else {
        paths.commonDataFolder = asFolder(entry(ini, kCommonPathKey));
        if (paths.commonDataFolder.isEmpty())
            paths.commonDataFolder = paths.dataRoot;
    }

    paths.terrainModelFolder = asFolder(entry(ini, kTerrainModelPathKey));
    if (paths.terrainModelFolder.isEmpty() && !paths.dataFolder.isEmpty())
        paths.terrainModelFolder = asFolder(paths.dataFolder + kTerrainModelFolder);
    return true;
}

bool GetCommonDataFolder(const QString& dataFolder, QString& commonFolder) {
    commonFolder.clear();
    if (dataFolder.isEmpty())
        return false;
    DataPaths paths;
    if (!ReadDataPaths(QDir(dataFolder).filePath(QStringLiteral("ORV.ini")), paths))
        return false;
    commonFolder = paths.commonDataFolder;
    return !commonFolder.isEmpty();
}

QStringList ListFolderFiles(const QString& folder, const QString& pattern) {
    if (folder.isEmpty())
        return {};
    const QDir dir(folder);
    if (!dir.exists())
        return {};
    QStringList files = dir.entryList({pattern}, QDir::Files, QDir::Name);
    // The C locale (servers, tests) compares code points and ignores the numeric mode.
    QLocale locale;
    if (locale.language() == QLocale::C)
        locale = QLocale(QLocale::English);
    QCollator collator(locale);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    // stable: names equal but for letter case keep QDir's order
    std::stable_sort(files.begin(), files.end(), [&collator](const QString& a, const QString& b) {
        return collator.compare(a, b) < 0;
    });
    return files;
}
