#pragma once

#include "store/DataSource.h"
#include "store/Records.h"

#include <QSqlDatabase>

#include <memory>
#include <optional>

// The two SQLite databases behind one data source: the system database (scope 2, opened
// read-only, must exist and carry the current schema) and the user database (scope 1,
// created with the schema on first use). Each GeoStore has its own pair of connections;
// use it from the thread that opened it. Names compare without regard to case and are
// unique across both databases.
class GeoStore {
public:
    // Null with a reason when the string is unknown, the system database is missing,
    // unreadable or not ours, or the user database cannot be created or is corrupt.
    static std::unique_ptr<GeoStore> Open(const QString& dllType, QString* error = nullptr);
    ~GeoStore();
    GeoStore(const GeoStore&) = delete;
    GeoStore& operator=(const GeoStore&) = delete;

    const DataSource& source() const { return m_source; }
    QSqlDatabase systemDb() const;
    QSqlDatabase userDb() const;

    // Look-ups in the given scope (GEODB_USER, GEODB_SYSTEM or GEODB_ALL); the record's
    // scope field tells where it was found.
    std::optional<EllipsoidRecord> FindEllipsoid(const QString& name, int scope = GEODB_ALL) const;
    std::optional<UnitRecord> FindUnit(const QString& name, int scope = GEODB_ALL) const;
    std::optional<DtfRecord> FindDtf(const QString& name, int scope = GEODB_ALL) const;
    std::optional<ProjectionRecord> FindProjection(const QString& name,
                                                   int scope = GEODB_ALL) const;
    std::optional<SystemRecord> FindSystem(const QString& group, const QString& system,
                                           int scope = GEODB_ALL) const;
    // A system with everything it references; nullopt with a reason when any part is
    // missing.
    std::optional<SystemDefinition> LoadDefinition(const QString& group, const QString& system,
                                                   QString* error = nullptr) const;

private:
    GeoStore() = default;
    DataSource m_source;
    QString m_systemConnection;
    QString m_userConnection;
};
