#include "wizard/DtfInfo.h"

void DtfInfo::Set(const QString& methodName, const double* values) {
    m_methodName = methodName;
    m_count = kValueCount;
    m_values.reset();
    m_values = std::make_unique<double[]>(kValueCount);
    for (unsigned i = 0; i < kValueCount; ++i)
        m_values[i] = values ? values[i] : 0.0;
}

void DtfInfo::Clear() {
    m_methodName.clear();
    m_count = 0;
    m_values.reset();
}

bool DtfInfo::Differs(const QString& methodName, const double* values) const {
    if (m_count == 0 || !m_values)
        return false;
    if (methodName != m_methodName)
        return true;
    for (unsigned i = 0; i < m_count; ++i)
        if (!values || values[i] != m_values[i])
            return true;
    return false;
}
