#pragma once

#include <QString>
#include <QTemporaryDir>

// A fresh data folder for one test: its data-source string points the factories at a user
// database and an ORV.ini inside it, next to the real generated system database.
class TempDataFolder {
public:
    TempDataFolder() = default;
    QString path() const { return m_dir.path(); }
    QString dllType() const { return QStringLiteral("sqlite:") + m_dir.path(); }
    QString userDbPath() const;

private:
    QTemporaryDir m_dir;
};

// The generated system database of the build tree.
QString TestSystemDbPath();
