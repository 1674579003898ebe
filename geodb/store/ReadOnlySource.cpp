#include "store/ReadOnlySource.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {
const QString IniName = QStringLiteral("ORV.ini");
} // namespace

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
    m_scratch = std::make_unique<QTemporaryDir>();
    if (!m_scratch->isValid()) {
        m_error =
            QStringLiteral("No temporary folder can be created: %1").arg(m_scratch->errorString());
        return;
    }
    // The engine finds its model files through ORV.ini in the data folder.
    const QString ini = QDir(m_source->dataFolder).filePath(IniName);
    if (QFileInfo::exists(ini) && !QFile::copy(ini, m_scratch->filePath(IniName))) {
        m_error = QStringLiteral("\"%1\" cannot be read.").arg(QDir::toNativeSeparators(ini));
        return;
    }
    m_dllType = QStringLiteral("sqlite:") + m_scratch->path() + QStringLiteral(";system=") +
                m_source->systemDbPath;
    m_ok = true;
}
