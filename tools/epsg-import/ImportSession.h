#pragma once

#include "ImportSummary.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

// The two databases of one import, its counts and its failure. Every step reports a failure
// here and returns false, so the run stops with the message of the step that failed.
class ImportSession {
public:
    ImportSession(QSqlDatabase& source, QSqlDatabase& target, ImportCounts& counts)
        : m_source(source), m_target(target), m_counts(counts) {}

    QSqlQuery SourceQuery() const { return QSqlQuery(m_source); }
    // An insert prepared once and run for every row.
    QSqlQuery PrepareInsert(const QString& sql) const;

    // Runs a SELECT on proj.db, read forward only (the tables are read once, in order).
    bool Select(QSqlQuery& query, const QString& sql);

    // Both record the failure and return false, so a step can `return Fail(...)`.
    bool Fail(const QString& what, const QSqlQuery& query);
    bool Fail(const QString& message);
    bool Failed() const { return !m_error.isEmpty(); }
    const QString& Error() const { return m_error; }

    ImportCounts& Counts() { return m_counts; }

private:
    QSqlDatabase& m_source;
    QSqlDatabase& m_target;
    ImportCounts& m_counts;
    QString m_error;
};
