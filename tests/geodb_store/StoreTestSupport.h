#pragma once

#include "api/OrvGeoFactories.h"

#include <gtest/gtest.h>

#include <QString>
#include <QTemporaryDir>

#include <memory>
#include <ostream>

// Readable QString values in assertion messages.
inline void PrintTo(const QString& text, std::ostream* os) {
    *os << '"' << text.toStdString() << '"';
}

// A small hand-made system database in a temporary folder, and a user folder beside it.
//
// Ellipsoids: "WGS 84", "International 1924", "Bessel 1841".
// Units: "Meters" (1, "m"), "US survey foot" (1200/3937, "ftUS").
// Datum transformations: "ED50 to WGS 84 (1)" (position vector, option bit 0, accuracy 5,
// EPSG 1133), "DHDN to WGS 84 (2)" (coordinate frame), "WGS 84 identity" (none).
// Projections: "UTM Zone-31N" (UTM), "Gauß-Krüger Zone 3" (Transverse Mercator).
// Groups and systems: "Europe": "ED50 / UTM zone 31N"; "Österreich": "DHDN / Gauß-Krüger 3".
class MiniStore {
public:
    MiniStore();
    bool ok() const { return m_ok; }
    QString systemDbPath() const;
    QString userFolder() const;
    QString userDbPath() const;
    QString dllType() const;
    QString folder() const { return m_dir.path(); }

    std::unique_ptr<OrvGeoDatabaseBase> database() const;
    std::unique_ptr<OrvGeoStaticDataBase> staticData() const;

private:
    QTemporaryDir m_dir;
    bool m_ok = false;
};

// Writes an empty system database with the schema (and nothing else) to path.
bool CreateSchemaFile(const QString& path, int userVersion = -1);

// Every row of every table of a SQLite file, as text: equal dumps mean equal contents.
QString DumpDatabase(const QString& path);

// Runs statements on a SQLite file through a short-lived connection of its own.
bool ExecOn(const QString& path, const QStringList& statements, QString* error = nullptr);

// Damage done to a SQLite file the way a disk or a copy does it.
namespace FileDamage {
// The page size and the leaf pages of a table or index (1-based page numbers), from dbstat.
int PageSize(const QString& path);
QList<int> LeafPages(const QString& path, const QString& table);
// Overwrites bytes in place (the file keeps its size).
bool Overwrite(const QString& path, qint64 offset, const QByteArray& bytes);
// Overwrites whole pages with zeros.
bool ZeroPages(const QString& path, const QList<int>& pages);
// Raises the file change counter, so that connections open on the file read it again
// instead of answering from their page cache (as after a change by another process).
bool BumpChangeCounter(const QString& path);
} // namespace FileDamage

// Fills a static-data record with a new system: new datum transformation (7 values),
// new Transverse Mercator projection and new unit, all named after the system.
void FillNewSystem(OrvGeoStaticDataBase& sd, const QString& group, const QString& name);

// A test with a MiniStore and a database and a static-data object on it.
class StoreTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_store.ok());
        m_db = m_store.database();
        ASSERT_NE(m_db, nullptr);
        m_sd = m_store.staticData();
        ASSERT_NE(m_sd, nullptr);
    }
    MiniStore m_store;
    std::unique_ptr<OrvGeoDatabaseBase> m_db;
    std::unique_ptr<OrvGeoStaticDataBase> m_sd;
};
