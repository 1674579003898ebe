#pragma once

#include "store/Records.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

#include <optional>
#include <utility>
#include <vector>

class GeoStore;

// Reading records from one database. Every statement is prepared with bound values; names
// are matched through their name_key.
namespace StoreSql {

// The databases of a scope with their scope bit, the pre-defined one first.
std::vector<std::pair<QSqlDatabase, int>> Databases(const GeoStore& store, int scope);

// Prepares sql, binds values in order and executes; false leaves the error in the query.
bool Run(QSqlQuery& q, const QString& sql, const QVariantList& values = {});

// First column of every row.
QStringList Column(QSqlDatabase db, const QString& sql, const QVariantList& values = {});
// True when the statement gives a row.
bool HasRow(QSqlDatabase db, const QString& sql, const QVariantList& values = {});

std::optional<EllipsoidRecord> ReadEllipsoid(QSqlDatabase db, const QString& name);
std::optional<UnitRecord> ReadUnit(QSqlDatabase db, const QString& name);
std::optional<DtfRecord> ReadDtf(QSqlDatabase db, const QString& name);
std::optional<ProjectionRecord> ReadProjection(QSqlDatabase db, const QString& name);
// An empty group matches any group.
std::optional<SystemRecord> ReadSystem(QSqlDatabase db, const QString& group,
                                       const QString& system);

// Sorts without regard to case and drops names that differ only in case.
void SortNames(QStringList& names);

} // namespace StoreSql
