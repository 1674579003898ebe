#pragma once

#include <QString>

// The package's program-data folders. The root folder holds the data of every program of
// the package; the program-data folder (root + "/Geodesy") holds ORV.ini and the user
// database of the default data source. Defaults: $ORV_DATA_ROOT, else the user's generic
// data location + "/ORV". Tests override both with SetRootProgramDataFolder.
class BrandingConfig {
public:
    static BrandingConfig& Instance();

    QString GetProgramDataFolder() const;
    // False when no root folder can be determined.
    bool GetRootProgramDataFolder(QString& out) const;

    // Replaces the root folder (empty restores the default).
    void SetRootProgramDataFolder(const QString& folder);

private:
    BrandingConfig() = default;
    QString root() const;
    QString m_rootOverride;
};
