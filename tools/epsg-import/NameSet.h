#pragma once

#include <QSet>
#include <QString>

class QSqlQuery;

// Keeps the names of one table unique by their case-folded key (the table's unique index):
// a clash gets the EPSG code appended, so the object seen first keeps the plain name.
class NameSet {
public:
    QString Unique(const QString& name, int epsgCode);

private:
    QSet<QString> m_keys;
};

// Binds a name and its key: every name column has a key column beside it, compared without
// regard to case.
void BindNameAndKey(QSqlQuery& query, const QString& name);
