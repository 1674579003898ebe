#pragma once

#include <QString>

#include <optional>

// Where the factories open their data, from the data-source string ("DLL type"):
//   ""                       the system database installed beside the library (or in the
//                            build tree), the user database and ORV.ini in the user's data
//                            folder (BrandingConfig's program-data folder).
//   "sqlite:<folder>"        the same system database; the user database and ORV.ini in
//                            <folder> (created when missing).
//   "sqlite:<folder>;system=<file>"  as above with another system database file.
// The environment variable ORV_SYSTEM_DB, when set, overrides the default system database.
struct DataSource {
    QString systemDbPath;
    QString userDbPath;
    QString dataFolder; // holds ORV.ini and the user database

    // Parses the string; nullopt with a reason for a string the library does not know.
    static std::optional<DataSource> Resolve(const QString& dllType, QString* error = nullptr);
    // The default system database: ORV_SYSTEM_DB, else orv-system.db in the data folder
    // beside the library (InstallLayout).
    static QString DefaultSystemDbPath();
    static QString UserDbPathIn(const QString& folder);
};
