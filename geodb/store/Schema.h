#pragma once

#include <QSqlDatabase>
#include <QString>

// The one schema of both databases (system and user). Every name column has a companion
// name_key column holding QString::toCaseFolded() of the name, with a unique index: that is
// how names compare without regard to case, also beyond ASCII. Uniqueness across the two
// databases is checked by the store before it writes.
namespace OrvSchema {

constexpr int Version = 1;

// Runs the DDL on an empty database and sets PRAGMA user_version. False on any error.
bool Create(QSqlDatabase& db, QString* error = nullptr);

// True when db carries this schema version (checks PRAGMA user_version and the tables).
bool IsCurrent(QSqlDatabase& db, QString* error = nullptr);

// The case-folded key of a name, as stored in the name_key columns.
QString NameKey(const QString& name);

} // namespace OrvSchema
