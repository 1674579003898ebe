#pragma once

#include "store/DataSource.h"

#include <QString>
#include <QTemporaryDir>

#include <memory>
#include <optional>

// A data source opened only to read (the command-line programs). Opening a data source
// creates its user database when it is missing; reading must leave no file behind, so a
// missing user database is read as an empty one kept in a temporary folder (removed with
// this object, which must outlive what was opened with dllType()), next to the same system
// database and a copy of the data folder's ORV.ini.
class ReadOnlySource {
public:
    explicit ReadOnlySource(const QString& dllType);

    // False, with error() set, when the data source is unknown.
    bool ok() const { return m_ok; }
    // The string to open.
    QString dllType() const { return m_dllType; }
    QString error() const { return m_error; }
    // What the data source names, whether or not its user database exists.
    const DataSource& source() const { return *m_source; }
    bool userDatabaseExists() const { return m_userExists; }

private:
    std::optional<DataSource> m_source;
    std::unique_ptr<QTemporaryDir> m_scratch;
    QString m_dllType;
    QString m_error;
    bool m_userExists = false;
    bool m_ok = false;
};
