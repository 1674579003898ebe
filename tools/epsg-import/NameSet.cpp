#include "NameSet.h"

#include "store/Schema.h"

#include <QSqlQuery>
#include <QVariant>

QString NameSet::Unique(const QString& name, int epsgCode) {
    QString result = name;
    if (m_keys.contains(OrvSchema::NameKey(result)))
        result = QStringLiteral("%1 (EPSG:%2)").arg(name).arg(epsgCode);
    for (int n = 2; m_keys.contains(OrvSchema::NameKey(result)); ++n)
        result = QStringLiteral("%1 (EPSG:%2, %3)").arg(name).arg(epsgCode).arg(n);
    m_keys.insert(OrvSchema::NameKey(result));
    return result;
}

void BindNameAndKey(QSqlQuery& query, const QString& name) {
    query.addBindValue(name);
    query.addBindValue(OrvSchema::NameKey(name));
}
