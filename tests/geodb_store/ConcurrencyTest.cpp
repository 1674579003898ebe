#include "StoreTestSupport.h"

#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSqlQuery>
#include <QUuid>

#include <gtest/gtest.h>

#include <cstdio>

// The worker: this same test program started again with the data source and a name prefix
// in its environment. It saves many systems into the shared user database and prints one
// line per save.
TEST(StoreWorker, SavesSystemsWhenStartedByTheConcurrencyTest) {
    const QString dllType = qEnvironmentVariable("ORV_STORE_WORKER_DLL");
    const QString prefix = qEnvironmentVariable("ORV_STORE_WORKER_PREFIX");
    const int count = qEnvironmentVariableIntValue("ORV_STORE_WORKER_COUNT");
    if (dllType.isEmpty())
        GTEST_SKIP() << "runs only as a worker process of StoreConcurrency";
    std::unique_ptr<OrvGeoStaticDataBase> sd(
        OrvGeoStaticDatabaseList::GetGeoStaticDataList().Create(dllType));
    ASSERT_NE(sd, nullptr)
        << OrvGeoStaticDatabaseList::GetGeoStaticDataList().LastError().toStdString();
    for (int i = 0; i < count; ++i) {
        const QString name = QStringLiteral("%1 %2").arg(prefix).arg(i);
        // Both workers write the same group and the same unit, each its own system, datum
        // transformation and projection.
        FillNewSystem(*sd, QStringLiteral("Shared group"), name);
        sd->SetUnitName(QStringLiteral("Shared unit"));
        sd->SetUnitFactor(0.5);
        if (sd->SaveCoordSys())
            std::printf("saved\t%s\n", qPrintable(name));
        else
            std::printf("failed\t%s\t%s\n", qPrintable(name), qPrintable(sd->LastError()));
        std::fflush(stdout);
    }
}

TEST(StoreConcurrency, TwoProcessesSavingAtOnceSerialiseAndKeepTheFileIntact) {
    MiniStore store;
    ASSERT_TRUE(store.ok());
    constexpr int Count = 25;
    QList<QProcess*> workers;
    for (const QString& prefix : {QStringLiteral("Alpha"), QStringLiteral("Bravo")}) {
        auto* p = new QProcess;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("ORV_STORE_WORKER_DLL"), store.dllType());
        env.insert(QStringLiteral("ORV_STORE_WORKER_PREFIX"), prefix);
        env.insert(QStringLiteral("ORV_STORE_WORKER_COUNT"), QString::number(Count));
        p->setProcessEnvironment(env);
        p->setProcessChannelMode(QProcess::SeparateChannels);
        workers << p;
    }
    // Both start before either has created the user database.
    for (QProcess* p : workers)
        p->start(QCoreApplication::applicationFilePath(),
                 {QStringLiteral("--gtest_filter=StoreWorker.*")});
    QStringList saved;
    int failed = 0;
    for (QProcess* p : workers) {
        ASSERT_TRUE(p->waitForFinished(120000));
        EXPECT_EQ(p->exitCode(), 0) << p->readAllStandardError().toStdString();
        const QStringList lines =
            QString::fromUtf8(p->readAllStandardOutput()).split(QLatin1Char('\n'));
        for (const QString& line : lines) {
            if (line.startsWith(QStringLiteral("saved\t")))
                saved << line.section(QLatin1Char('\t'), 1);
            else if (line.startsWith(QStringLiteral("failed\t"))) {
                ++failed;
                // A clean failure says why; it is never a half-written system.
                EXPECT_FALSE(line.section(QLatin1Char('\t'), 2).isEmpty());
            }
        }
        delete p;
    }
    EXPECT_EQ(saved.size() + failed, 2 * Count);
    EXPECT_GE(saved.size(), Count);

    {
        const QString connection = QUuid::createUuid().toString();
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
            db.setDatabaseName(store.userDbPath());
            ASSERT_TRUE(db.open());
            QSqlQuery q(db);
            ASSERT_TRUE(q.exec(QStringLiteral("PRAGMA integrity_check")) && q.next());
            EXPECT_EQ(q.value(0).toString(), QStringLiteral("ok"));
            ASSERT_TRUE(q.exec(QStringLiteral("SELECT count(*) FROM coordsys")) && q.next());
            EXPECT_EQ(q.value(0).toInt(), saved.size());
            ASSERT_TRUE(q.exec(QStringLiteral("SELECT count(*) FROM sysgroup")) && q.next());
            EXPECT_EQ(q.value(0).toInt(), 1);
        }
        QSqlDatabase::removeDatabase(connection);
    }
    auto db = store.database();
    ASSERT_NE(db, nullptr);
    for (const QString& name : saved) {
        EXPECT_TRUE(db->SystemNameExists(name, GEODB_USER)) << name.toStdString();
        QString dtf;
        EXPECT_EQ(db->GetSystemDtfName(dtf, QStringLiteral("Shared group"), name),
                  name + QStringLiteral("-dtf"));
    }
}
