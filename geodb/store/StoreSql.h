#pragma once

#include "store/Records.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <optional>
#include <utility>
#include <vector>

class GeoStore;

// Reading records from one database. Every statement is prepared with bound values; names
// are matched through their name_key.
//
// A statement that fails (a damaged file, a table that changed under the connection) never
// gives a partial answer: the readers then answer empty and set *error to a sentence that
// names the database. error must not be null; it is left alone when everything succeeds.
namespace StoreSql {

// The databases of a scope with their scope bit, the pre-defined one first.
std::vector<std::pair<QSqlDatabase, int>> Databases(const GeoStore& store, int scope);

// The words of a failed statement as sentences: SQLite's text, then Qt's
// ("Database disk image is malformed. Unable to fetch row.").
QString ErrorText(const QSqlError& error);
// "The user database "<file>" cannot be read: <ErrorText>"
QString ReadFailure(const QSqlDatabase& db, const QSqlError& error);
// How a database is named in messages: the pre-defined coordinate system database or the
// user database, with its file.
QString DatabaseLabel(const QSqlDatabase& db);

// Prepares sql, binds values in order and executes; false leaves the error in the query.
bool Run(QSqlQuery& q, const QString& sql, const QVariantList& values = {});

// One forward-only statement on one database. A failure to execute or to step is reported
// once in *error, naming the database; Next() then answers false as at the end, so a loop
// over the rows must check *error afterwards before it uses what it read.
class Reader {
public:
    Reader(QSqlDatabase db, QString* error);
    bool Exec(const QString& sql, const QVariantList& values = {});
    bool Next();
    QVariant value(int index) const { return m_query.value(index); }
    QVariant value(const QString& column) const { return m_query.value(column); }
    bool failed() const { return m_failed; }

private:
    void Fail();
    QSqlDatabase m_db;
    QSqlQuery m_query;
    QString* m_error;
    bool m_failed = false;
};

// First column of every row.
QStringList Column(QSqlDatabase db, const QString& sql, const QVariantList& values, QString* error);
// True when the statement gives a row.
bool HasRow(QSqlDatabase db, const QString& sql, const QVariantList& values, QString* error);

std::optional<EllipsoidRecord> ReadEllipsoid(QSqlDatabase db, const QString& name, QString* error);
std::optional<UnitRecord> ReadUnit(QSqlDatabase db, const QString& name, QString* error);
std::optional<DtfRecord> ReadDtf(QSqlDatabase db, const QString& name, QString* error);
std::optional<ProjectionRecord> ReadProjection(QSqlDatabase db, const QString& name,
                                               QString* error);
// An empty group matches any group.
std::optional<SystemRecord> ReadSystem(QSqlDatabase db, const QString& group, const QString& system,
                                       QString* error);

// Sorts without regard to case and drops names that differ only in case.
void SortNames(QStringList& names);

} // namespace StoreSql
