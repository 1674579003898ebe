#include "util/CommonFolders.h"

#include "api/GeoKeys.h"
#include "util/FileObject.h"

#include <QDir>

bool GetCommonDataFolder(const QString& dataFolder, QString& commonFolder) {
    commonFolder.clear();
    if (dataFolder.isEmpty())
        return false;
    FileObject ini;
    if (!ini.FileOpen(QDir(dataFolder).filePath(QStringLiteral("ORV.ini")), FileObject::Read))
        return false;
    const QString section = QString::fromWCharArray(DATA_PATH_SECTION);
    QString root;
    if (!ini.GetItem(section, QString::fromWCharArray(pathKeys[2]), root) || root.isEmpty())
        return false;
    // Read as text so that an absent entry and "false" stay apart.
    bool useDefault = true;
    QString flag;
    if (ini.GetItem(section, QStringLiteral("UseDefaultCommonPath"), flag)) {
        const QString value = flag.trimmed().toLower();
        useDefault = value == u"1" || value == u"true" || value == u"yes" || value == u"on";
    }
    QString folder = root;
    if (useDefault) {
        folder = QDir(root).filePath(QStringLiteral("Projects Common Files"));
    } else {
        QString common;
        if (ini.GetItem(section, QString::fromWCharArray(pathKeys[4]), common) && !common.isEmpty())
            folder = common;
    }
    commonFolder = QDir::cleanPath(QDir::fromNativeSeparators(folder));
    return true;
}
