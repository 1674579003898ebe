#include "util/BrandingConfig.h"

#include <QDir>
#include <QStandardPaths>

BrandingConfig& BrandingConfig::Instance() {
    static BrandingConfig instance;
    return instance;
}

QString BrandingConfig::root() const {
    if (!m_rootOverride.isEmpty())
        return m_rootOverride;
    const QString fromEnv = qEnvironmentVariable("ORV_DATA_ROOT");
    if (!fromEnv.isEmpty())
        return fromEnv;
    const QString generic = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return generic.isEmpty() ? QString() : QDir(generic).filePath(QStringLiteral("ORV"));
}

QString BrandingConfig::GetProgramDataFolder() const {
    const QString base = root();
    return base.isEmpty() ? QString() : QDir(base).filePath(QStringLiteral("Geodesy"));
}

bool BrandingConfig::GetRootProgramDataFolder(QString& out) const {
    const QString base = root();
    if (base.isEmpty())
        return false;
    out = base;
    return true;
}

void BrandingConfig::SetRootProgramDataFolder(const QString& folder) {
    m_rootOverride = folder;
}
