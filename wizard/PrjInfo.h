#pragma once

#include <QString>
#include <QStringList>

// Snapshot of a projection as a page loaded it: its parameter names, its name, method and
// unit.
class PrjInfo {
public:
    PrjInfo() = default;
    virtual ~PrjInfo();

    void Set(const QString& prjName, const QString& methodName, const QString& unitName,
             const QStringList& paramNames);

    QStringList GetParamNames() const { return m_paramNames; }
    QString GetPrjName() const { return m_prjName; }
    QString GetMethodName() const { return m_methodName; }
    QString GetUnitName() const { return m_unitName; }

private:
    QStringList m_paramNames;
    QString m_prjName;
    QString m_methodName;
    QString m_unitName;
};
