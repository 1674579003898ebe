// Runs the importer program itself: on a changed copy of proj.db and on input it must refuse.

#include "support/TempDataFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QVariant>

#include <gtest/gtest.h>

namespace {

const QString ProjDb = QStringLiteral("/usr/share/proj/proj.db");
const QByteArray Marker = "an earlier system database\n";

// The importer of this build tree: <build>/tools/epsg-import/epsg-import beside <build>/data.
QString ImporterPath() {
    const QDir build = QFileInfo(TestSystemDbPath()).absoluteDir().filePath(QStringLiteral(".."));
    return QDir::cleanPath(build.filePath(QStringLiteral("tools/epsg-import/epsg-import")));
}

struct RunResult {
    int exitCode = -1;
    QString out, err;
};

RunResult RunImporter(const QString& source, const QString& target) {
    QProcess process;
    process.start(ImporterPath(), {source, target});
    RunResult result;
    if (!process.waitForFinished(60000))
        return result;
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.out = QString::fromLocal8Bit(process.readAllStandardOutput());
    result.err = QString::fromLocal8Bit(process.readAllStandardError());
    return result;
}

bool WriteFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray ReadFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Runs statements on a database file through a connection of its own.
bool ExecOn(const QString& path, const QStringList& statements, QString* error = nullptr) {
    const QString connection = QStringLiteral("importer-run-test");
    bool ok = true;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        db.setDatabaseName(path);
        ok = db.open();
        for (const QString& sql : statements) {
            QSqlQuery q(db);
            if (ok && !q.exec(sql)) {
                ok = false;
                if (error)
                    *error = sql + QStringLiteral(": ") + q.lastError().text();
            }
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(connection);
    return ok;
}

QVariant QueryOne(const QString& path, const QString& sql) {
    const QString connection = QStringLiteral("importer-run-test-read");
    QVariant value;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        db.setDatabaseName(path);
        if (db.open()) {
            QSqlQuery q(db);
            if (q.exec(sql) && q.next())
                value = q.value(0);
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(connection);
    return value;
}

class ImporterRun : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(QFileInfo(ImporterPath()).isExecutable()) << qPrintable(ImporterPath());
        ASSERT_TRUE(m_dir.isValid());
        m_target = m_dir.filePath(QStringLiteral("orv-system.db"));
        ASSERT_TRUE(WriteFile(m_target, Marker));
    }
    // A failed run leaves the earlier database and no partial file behind.
    void ExpectUntouched() {
        EXPECT_EQ(ReadFile(m_target), Marker);
        EXPECT_EQ(QDir(m_dir.path()).entryList(QDir::Files), QStringList{"orv-system.db"});
    }

    QTemporaryDir m_dir;
    QString m_target;
};

TEST_F(ImporterRun, MissingSourceIsRefusedWithItsPath) {
    const QString missing = m_dir.filePath(QStringLiteral("no/proj.db"));
    const RunResult run = RunImporter(missing, m_target);
    EXPECT_NE(run.exitCode, 0);
    EXPECT_TRUE(run.err.contains(missing)) << qPrintable(run.err);
    ExpectUntouched();
}

TEST_F(ImporterRun, SourceThatIsNoProjDatabaseIsRefused) {
    const QString text = m_dir.filePath(QStringLiteral("proj.db"));
    ASSERT_TRUE(WriteFile(text, QByteArray("not a database at all\n").repeated(100)));
    RunResult run = RunImporter(text, m_target);
    EXPECT_NE(run.exitCode, 0);
    EXPECT_TRUE(run.err.contains(QStringLiteral("failed"))) << qPrintable(run.err);
    EXPECT_EQ(ReadFile(m_target), Marker);

    // An SQLite file without PROJ's tables.
    ASSERT_TRUE(QFile::remove(text));
    ASSERT_TRUE(ExecOn(text, {QStringLiteral("CREATE TABLE t (x)")}));
    run = RunImporter(text, m_target);
    EXPECT_NE(run.exitCode, 0);
    EXPECT_TRUE(run.err.contains(QStringLiteral("PROJ"))) << qPrintable(run.err);
    EXPECT_EQ(ReadFile(m_target), Marker);
    EXPECT_FALSE(QFile::exists(m_target + QStringLiteral(".partial")));
}

TEST_F(ImporterRun, MissingTargetFolderIsRefused) {
    const RunResult run = RunImporter(ProjDb, m_dir.filePath(QStringLiteral("no/such/out.db")));
    EXPECT_NE(run.exitCode, 0);
    EXPECT_TRUE(run.err.contains(QStringLiteral("no/such"))) << qPrintable(run.err);
    ExpectUntouched();
}

TEST_F(ImporterRun, ConvertsLengthsStoredInAnotherUnitAndSkipsDeprecatedSystems) {
    // proj.db stores every false origin in its axes' unit; give one in metres, as EPSG may,
    // while the system's axes stay in US survey feet (SPCS83 California zone 1, EPSG 15307).
    const QString copy = m_dir.filePath(QStringLiteral("proj-copy.db"));
    ASSERT_TRUE(QFile::copy(ProjDb, copy));
    ASSERT_TRUE(QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner));
    QString error;
    ASSERT_TRUE(ExecOn(copy,
                       {QStringLiteral("UPDATE conversion_table SET param5_value = 2000000.0, "
                                       "param5_uom_code = '9001' WHERE auth_name = 'EPSG' AND "
                                       "code = 15307"),
                        // NAD83(HARN) / California zone 1 (ftUS)
                        QStringLiteral("UPDATE projected_crs SET deprecated = 1 WHERE auth_name "
                                       "= 'EPSG' AND code = 2870")},
                       &error))
        << qPrintable(error);

    const RunResult run = RunImporter(copy, m_target);
    ASSERT_EQ(run.exitCode, 0) << qPrintable(run.err);
    EXPECT_TRUE(run.out.contains(QStringLiteral(" systems in "))) << qPrintable(run.out);
    EXPECT_EQ(run.out.count(u'\n'), 1) << "one summary line";
    EXPECT_FALSE(QFile::exists(m_target + QStringLiteral(".partial")));

    const QString projection =
        QueryOne(m_target, QStringLiteral("SELECT projection_name FROM coordsys WHERE "
                                          "epsg_code = 2225"))
            .toString();
    ASSERT_FALSE(projection.isEmpty());
    const double easting =
        QueryOne(m_target, QStringLiteral("SELECT pp.value FROM projection_param pp JOIN "
                                          "projection p ON p.id = pp.projection_id WHERE "
                                          "p.name = '%1' AND pp.name = 'Easting at false origin'")
                               .arg(projection))
            .toDouble();
    EXPECT_NEAR(easting, 2000000.0 * 3937.0 / 1200.0, 1e-6);
    EXPECT_EQ(QueryOne(m_target, QStringLiteral("SELECT COUNT(*) FROM coordsys WHERE epsg_code = "
                                                "2870"))
                  .toInt(),
              0);
    // The source copy is opened read-only: the run leaves it as it was.
    EXPECT_EQ(QueryOne(copy, QStringLiteral("SELECT param5_uom_code FROM conversion_table WHERE "
                                            "auth_name = 'EPSG' AND code = 15307"))
                  .toInt(),
              9001);
}

} // namespace
