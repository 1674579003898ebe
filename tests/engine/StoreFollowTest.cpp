// A system defined from the store follows the user database: writes of this process are seen
// by the next conversion, writes of another process once the check interval is up, and
// nothing is read again while nothing changed.
#include "api/OrvGeoFactories.h"
#include "engine/GeoCoordSys.h"
#include "store/GeoStore.h"
#include "store/Schema.h"
#include "store/SystemWriter.h"
#include "support/TempDataFolder.h"

#include <QElapsedTimer>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QThread>

#include <gtest/gtest.h>

#include <memory>

namespace {

const QString PredefinedGroup = QStringLiteral("Europe");
const QString Predefined = QStringLiteral("ED50 / UTM zone 31N");
const QString Group = QStringLiteral("Field");
const QString Rig = QStringLiteral("Rig 31N");
const QString None = QStringLiteral("none");
constexpr double Shift = 10.0; // metres east of the post correction written meanwhile
const GeoPoint Position{52.5, 4.25, 12.5, 0};

// A write by another process: its own SQLite connection, outside the store, so the
// process-wide write count does not move.
void ForeignWrite(const QString& path, const QString& sql) {
    const QString name = QStringLiteral("foreign-writer");
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(path);
        ASSERT_TRUE(db.open()) << db.lastError().text().toStdString();
        QSqlQuery q(db);
        EXPECT_TRUE(q.exec(sql)) << q.lastError().text().toStdString();
        q.finish();
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
}

class StoreFollow : public ::testing::Test {
protected:
    void SetUp() override {
        QString error;
        m_writer = GeoStore::Open(m_folder.dllType(), &error);
        ASSERT_TRUE(m_writer) << error.toStdString();
        // A user copy of a pre-defined UTM system.
        std::optional<SystemDefinition> def =
            m_writer->LoadDefinition(PredefinedGroup, Predefined, &error);
        ASSERT_TRUE(def) << error.toStdString();
        m_draft.system = def->system;
        m_draft.system.name = Rig;
        m_draft.system.group = Group;
        m_draft.localValues = def->localEllipsoid.values;
        m_draft.dtf = def->dtf;
        m_draft.projection = def->projection;
        m_draft.unit = def->unit;
        m_draft.utmMode = true;
        ASSERT_TRUE(SystemWriter::Save(*m_writer, m_draft, &error)) << error.toStdString();

        m_object.reset(OrvGeoCoordSysList::GetCoordSysList().Create(m_folder.dllType()));
        ASSERT_TRUE(m_object);
        ASSERT_TRUE(cs().DefineSystem(Group, Rig, {}, {}, {}, {}, {}, {}, None))
            << cs().LastError().toStdString();
        m_before = Forward();
        ASSERT_EQ(cs().StoreReads(), 1u);
    }

    GeoCoordSys& cs() { return static_cast<GeoCoordSys&>(*m_object); }

    GeoPoint Forward() {
        GeoPoint p = Position;
        EXPECT_TRUE(cs().Forward(p)) << cs().LastError().toStdString();
        return p;
    }

    // Saves the system with a post correction through the store (a write of this process).
    void SaveShifted() {
        SystemDraft shifted = m_draft;
        shifted.system.post.on = true;
        shifted.system.post.e = Shift;
        QString error;
        ASSERT_TRUE(SystemWriter::Save(*m_writer, shifted, &error)) << error.toStdString();
    }

    // The same change written by another process.
    void ForeignShift() {
        ForeignWrite(m_folder.userDbPath(),
                     QStringLiteral("UPDATE coordsys SET post_on = 1, post_e = %1 WHERE name_key "
                                    "= '%2'")
                         .arg(Shift)
                         .arg(OrvSchema::NameKey(Rig)));
    }

    // A write of this process that leaves this user database alone.
    static void WriteElsewhere() {
        TempDataFolder other;
        QString error;
        const std::unique_ptr<GeoStore> store = GeoStore::Open(other.dllType(), &error);
        ASSERT_TRUE(store) << error.toStdString();
        ASSERT_TRUE(SystemWriter::AddUnit(*store, QStringLiteral("Rod"), 5.0292,
                                          QStringLiteral("rd"), 0, &error))
            << error.toStdString();
    }

    void ExpectShifted(const GeoPoint& p) {
        EXPECT_NEAR(p.x, m_before.x + Shift, 1e-6);
        EXPECT_NEAR(p.y, m_before.y, 1e-6);
    }

    TempDataFolder m_folder;
    std::unique_ptr<GeoStore> m_writer;
    SystemDraft m_draft;
    std::unique_ptr<OrvGeoCoordSysBase> m_object;
    GeoPoint m_before{};
};

} // namespace

// However long the interval, a save or a removal through the store is seen at once.
TEST_F(StoreFollow, WritesOfThisProcessAreSeenByTheNextConversion) {
    cs().SetStoreCheckInterval(-1); // other processes never
    SaveShifted();
    ExpectShifted(Forward());
    EXPECT_EQ(cs().StoreReads(), 2u);

    QString error;
    ASSERT_TRUE(SystemWriter::Remove(*m_writer, Group, Rig, &error)) << error.toStdString();
    GeoPoint p = Position;
    EXPECT_FALSE(cs().Forward(p));
    EXPECT_TRUE(cs().LastError().contains(Rig)) << cs().LastError().toStdString();
    EXPECT_EQ(p.x, Position.x); // handed back unchanged
}

TEST_F(StoreFollow, AnotherProcessesWriteIsSeenOnceTheIntervalIsUp) {
    constexpr qint64 Interval = 300;
    QElapsedTimer sinceDefined; // started after the object's own check: never shorter
    cs().SetStoreCheckInterval(Interval);
    ASSERT_TRUE(cs().DefineSystem(Group, Rig, {}, {}, {}, {}, {}, {}, None));
    sinceDefined.start();
    ForeignShift();
    const GeoPoint early = Forward();
    if (!sinceDefined.hasExpired(Interval)) {
        EXPECT_EQ(early.x, m_before.x); // not asked yet
        EXPECT_EQ(cs().StoreReads(), 2u);
    }
    QThread::msleep(Interval + 50);
    ExpectShifted(Forward());
    EXPECT_EQ(cs().StoreReads(), 3u);
}

TEST_F(StoreFollow, AnIntervalOfZeroAsksOnEveryConversion) {
    cs().SetStoreCheckInterval(0);
    ForeignShift();
    ExpectShifted(Forward());
    ForeignWrite(m_folder.userDbPath(), QStringLiteral("UPDATE coordsys SET post_e = 0"));
    EXPECT_EQ(Forward().x, m_before.x);
    EXPECT_EQ(cs().StoreReads(), 3u);
}

TEST_F(StoreFollow, NothingIsReadAgainWhileNothingChanged) {
    cs().SetStoreCheckInterval(-1);
    constexpr int Calls = 1000;
    for (int i = 0; i < Calls; ++i)
        Forward();
    EXPECT_EQ(cs().StoreReads(), 1u);

    // Another user database written: the version of this one is asked and found unchanged.
    WriteElsewhere();
    EXPECT_EQ(Forward().x, m_before.x);
    EXPECT_EQ(cs().StoreReads(), 1u);

    // Another process's write is not asked for with the interval off...
    ForeignShift();
    EXPECT_EQ(Forward().x, m_before.x);
    EXPECT_EQ(cs().StoreReads(), 1u);
    // ...until a write of this process, wherever, has the version read: then it is seen too.
    WriteElsewhere();
    ExpectShifted(Forward());
    EXPECT_EQ(cs().StoreReads(), 2u);
}

// On another thread the pipeline is used as defined; back on the creating thread the change
// made meanwhile is followed.
TEST_F(StoreFollow, OtherThreadsUseThePipelineAsDefined) {
    SaveShifted();
    GeoPoint onOther = Position;
    bool ok = false;
    std::unique_ptr<QThread> thread(QThread::create([&] { ok = cs().Forward(onOther); }));
    thread->start();
    ASSERT_TRUE(thread->wait());
    EXPECT_TRUE(ok);
    EXPECT_EQ(onOther.x, m_before.x);
    EXPECT_EQ(cs().StoreReads(), 1u);
    ExpectShifted(Forward());
}
