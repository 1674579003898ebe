#include "ImportSession.h"

#include "store/StoreSql.h"

#include <QSqlError>

QSqlQuery ImportSession::PrepareInsert(const QString& sql) const {
    QSqlQuery query(m_target);
    query.prepare(sql); // a bad statement shows in the first exec, with the row it was for
    return query;
}

bool ImportSession::Select(QSqlQuery& query, const QString& sql) {
    query.setForwardOnly(true);
    if (!query.exec(sql))
        return Fail(QStringLiteral("cannot read proj.db"), query);
    return true;
}

bool ImportSession::Fail(const QString& what, const QSqlQuery& query) {
    return Fail(QStringLiteral("%1: %2").arg(what, StoreSql::ErrorText(query.lastError())));
}

bool ImportSession::Fail(const QString& message) {
    m_error = message;
    return false;
}
