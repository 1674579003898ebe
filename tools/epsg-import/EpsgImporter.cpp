#include "EpsgImporter.h"

#include "ImportSession.h"
#include "ImportSteps.h"

#include "store/Schema.h"
#include "store/StoreSql.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <filesystem>

bool EpsgImporter::Run(const QString& projDbPath, const QString& outPath) {
    m_counts = {};
    m_error.clear();
    m_epsgVersion.clear();
    if (!QFileInfo(projDbPath).isFile()) {
        m_error = QStringLiteral("%1 does not exist or is not a file").arg(projDbPath);
        return false;
    }
    const QFileInfo outInfo(outPath);
    if (!outInfo.absoluteDir().exists()) {
        m_error = QStringLiteral("the folder of %1 does not exist").arg(outPath);
        return false;
    }
    const QString tempPath = outInfo.absoluteFilePath() + QStringLiteral(".partial");
    QFile::remove(tempPath);

    const QString srcConnection = QStringLiteral("epsg-import-source");
    const QString dstConnection = QStringLiteral("epsg-import-target");
    bool ok = false;
    {
        QSqlDatabase src = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), srcConnection);
        src.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        src.setDatabaseName(projDbPath);
        QSqlDatabase dst = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), dstConnection);
        dst.setDatabaseName(tempPath);
        if (!src.open()) {
            m_error = QStringLiteral("cannot open %1: %2")
                          .arg(projDbPath, StoreSql::ErrorText(src.lastError()));
        } else if (!dst.open()) {
            m_error = QStringLiteral("cannot create %1: %2")
                          .arg(tempPath, StoreSql::ErrorText(dst.lastError()));
        } else {
            {
                // The file is thrown away on failure, so it needs no journal of its own.
                QSqlQuery pragma(dst);
                pragma.exec(QStringLiteral("PRAGMA journal_mode = MEMORY"));
                pragma.exec(QStringLiteral("PRAGMA synchronous = OFF"));
            }
            if (!dst.transaction()) {
                m_error = QStringLiteral("cannot start writing: %1")
                              .arg(StoreSql::ErrorText(dst.lastError()));
            } else if (QString schemaError; !OrvSchema::Create(dst, &schemaError)) {
                m_error = QStringLiteral("cannot create the schema: %1").arg(schemaError);
                dst.rollback();
            } else {
                ImportSession session(src, dst, m_counts);
                ok = RunImportSteps(session, m_epsgVersion);
                if (!ok) {
                    m_error = session.Error();
                    dst.rollback();
                }
            }
            if (ok && !dst.commit()) {
                m_error =
                    QStringLiteral("cannot commit: %1").arg(StoreSql::ErrorText(dst.lastError()));
                ok = false;
            }
        }
        src.close();
        dst.close();
    }
    QSqlDatabase::removeDatabase(srcConnection);
    QSqlDatabase::removeDatabase(dstConnection);

    if (ok) {
        std::error_code ec;
        std::filesystem::rename(QFile::encodeName(tempPath).toStdString(),
                                QFile::encodeName(outInfo.absoluteFilePath()).toStdString(), ec);
        if (ec) {
            m_error = QStringLiteral("cannot rename %1 to %2: %3")
                          .arg(tempPath, outPath, QString::fromStdString(ec.message()));
            ok = false;
        }
    }
    if (!ok)
        QFile::remove(tempPath);
    return ok;
}
