#pragma once

#include <QSet>
#include <QString>

// Keeps the names of one table unique by their case-folded key (the table's unique index):
// a clash gets the EPSG code appended, so the object seen first keeps the plain name.
class NameSet {
public:
    QString Unique(const QString& name, int epsgCode);

private:
    QSet<QString> m_keys;
};
