#include "ReadOnlySource.h"

#include <QFileInfo>

ReadOnlySource::ReadOnlySource(const QString& dllType) {
    m_source = DataSource::Resolve(dllType, &m_error);
    if (!m_source)
        return;
    m_userExists = QFileInfo::exists(m_source->userDbPath);
    if (m_userExists) {
        m_dllType = dllType;
        m_ok = true;
        return;
    }
    if (!m_scratch.isValid()) {
        m_error =
            QStringLiteral("No temporary folder can be created: %1").arg(m_scratch.errorString());
        return;
    }
    m_dllType = QStringLiteral("sqlite:") + m_scratch.path() + QStringLiteral(";system=") +
                m_source->systemDbPath;
    m_ok = true;
}
