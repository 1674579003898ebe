#pragma once

#include <QSqlDatabase>
#include <QString>

// The one schema of both databases (system and user). Every name column has a companion
// name_key column holding NameKey() of the name, with a unique index: that is how names
// compare without regard to case, also beyond ASCII. Uniqueness across the two databases is
// checked by the store before it writes.
namespace OrvSchema {

// 2: name keys by full case folding ("Gauß" and "GAUSS" are one name). Version 1 files
// differ only in their keys and are brought up to date when opened for writing (Upgrade).
constexpr int Version = 2;
constexpr int OldestUpgradableVersion = 1;

// Runs the DDL on an empty database and sets PRAGMA user_version. False on any error.
bool Create(QSqlDatabase& db, QString* error = nullptr);

// PRAGMA user_version of db; -1 (with error) when it cannot be read.
int VersionOf(QSqlDatabase& db, QString* error = nullptr);

// True when db carries this schema version.
bool IsCurrent(QSqlDatabase& db, QString* error = nullptr);

// True when db has every table of the schema with exactly its columns; otherwise error
// names the first table or column that differs.
bool HasSchemaTables(QSqlDatabase& db, QString* error = nullptr);

// Rewrites the name keys of a version 1 database and sets the current version, in the
// transaction the caller holds. Fails (error names both entries) when two names of one
// table fold to the same key.
bool Upgrade(QSqlDatabase& db, QString* error = nullptr);

// The key of a name, as stored in the name_key columns: full case folding, so that
// "Gauß", "GAUSS" and "gauss" have one key, as have "ﬁx" and "FIX".
QString NameKey(const QString& name);

} // namespace OrvSchema
