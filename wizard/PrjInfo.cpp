#include "wizard/PrjInfo.h"

PrjInfo::~PrjInfo() {
    // the list goes first, then the strings
    m_paramNames.clear();
    m_prjName.clear();
    m_methodName.clear();
    m_unitName.clear();
}

void PrjInfo::Set(const QString& prjName, const QString& methodName, const QString& unitName,
                  const QStringList& paramNames) {
    m_prjName = prjName;
    m_methodName = methodName;
    m_unitName = unitName;
    m_paramNames = paramNames;
}
