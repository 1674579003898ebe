#include "store/DataSource.h"

#include "util/BrandingConfig.h"
#include "util/InstallLayout.h"

#include <QDir>
#include <QFileInfo>

namespace {
const QString SqlitePrefix = QStringLiteral("sqlite:");
const QString SystemOption = QStringLiteral(";system=");
const QString SystemDbName = QStringLiteral("orv-system.db");
const QString UserDbName = QStringLiteral("orv-user.db");
} // namespace

QString DataSource::UserDbPathIn(const QString& folder) {
    return QDir(folder).filePath(UserDbName);
}

QString DataSource::DefaultSystemDbPath() {
    const QString fromEnv = qEnvironmentVariable("ORV_SYSTEM_DB");
    if (!fromEnv.isEmpty())
        return fromEnv;
    // Beside the library: share/orv of its install prefix, or in the build tree the link there
    // to the generated file, which is named as itself. A missing file still names the place,
    // so the failure says where it looked.
    const QString folder = InstallLayout::DataFolder();
    const QString path = QDir(folder).filePath(SystemDbName);
    const QString file = QFileInfo(path).canonicalFilePath();
    return file.isEmpty() ? path : file;
}

std::optional<DataSource> DataSource::Resolve(const QString& dllType, QString* error) {
    DataSource source;
    if (dllType.isEmpty()) {
        source.dataFolder = BrandingConfig::Instance().GetProgramDataFolder();
    } else if (dllType.startsWith(SqlitePrefix)) {
        QString rest = dllType.mid(SqlitePrefix.size());
        const qsizetype option = rest.indexOf(SystemOption);
        if (option >= 0) {
            source.systemDbPath = rest.mid(option + SystemOption.size());
            rest = rest.left(option);
        }
        source.dataFolder = rest;
    } else {
        if (error)
            *error = QStringLiteral("Unknown data source \"%1\".").arg(dllType);
        return std::nullopt;
    }
    if (source.dataFolder.isEmpty()) {
        if (error)
            *error = QStringLiteral("The data source \"%1\" names no folder.").arg(dllType);
        return std::nullopt;
    }
    if (source.systemDbPath.isEmpty())
        source.systemDbPath = DefaultSystemDbPath();
    source.userDbPath = UserDbPathIn(source.dataFolder);
    return source;
}
