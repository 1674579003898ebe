#pragma once

#include "util/BrandingConfig.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

// A program-data root of its own for one test, with an ORV.ini whose data root lies inside
// it, so that the common data folder is <root>/Data/Projects Common Files/. The default root
// comes back when the test ends.
class CommonDataFolder {
public:
    CommonDataFolder() {
        BrandingConfig::Instance().SetRootProgramDataFolder(m_root.path());
        Write(QStringLiteral("Geodesy/ORV.ini"),
              QStringLiteral("[DataPaths]\nDataRoot=%1/Data\nDataFolder=Projects\n")
                  .arg(m_root.path())
                  .toUtf8());
    }
    ~CommonDataFolder() { BrandingConfig::Instance().SetRootProgramDataFolder(QString()); }
    CommonDataFolder(const CommonDataFolder&) = delete;
    CommonDataFolder& operator=(const CommonDataFolder&) = delete;

    QString Root() const { return m_root.path(); }
    // The common data folder as the wizard reads it from ORV.ini, ending in '/'.
    QString Common() const {
        return m_root.path() + QStringLiteral("/Data/Projects Common Files/");
    }

    // A file below the root, with its folders.
    void Write(const QString& relative, const QByteArray& text = QByteArray()) {
        const QString path = m_root.filePath(relative);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    void WriteCommon(const QString& relative, const QByteArray& text = QByteArray()) {
        Write(QStringLiteral("Data/Projects Common Files/") + relative, text);
    }
    void RemoveIni() { QFile::remove(m_root.filePath(QStringLiteral("Geodesy/ORV.ini"))); }

private:
    QTemporaryDir m_root;
};
