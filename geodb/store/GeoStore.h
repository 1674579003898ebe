#pragma once

#include "store/DataSource.h"
#include "store/Records.h"

#include <QSqlDatabase>

#include <memory>
#include <optional>

// The two SQLite databases behind one data source: the system database (scope 2, opened
// read-only, must exist, be whole and carry the current schema) and the user database
// (scope 1, created with the schema on first use; opened read-only when the file or its
// folder cannot be written). Each GeoStore has its own pair of connections; use it from the
// thread that opened it. Names compare without regard to case and are unique across both
// databases.
class GeoStore {
public:
    // Null with a reason when the string is unknown, the system database is missing,
    // unreadable, damaged or not ours, or the user database cannot be created, is damaged or
    // not ours. A file that is refused is left as it was.
    static std::unique_ptr<GeoStore> Open(const QString& dllType, QString* error = nullptr);
    ~GeoStore();
    GeoStore(const GeoStore&) = delete;
    GeoStore& operator=(const GeoStore&) = delete;

    const DataSource& source() const { return m_source; }
    QSqlDatabase systemDb() const;
    QSqlDatabase userDb() const;
    // Why nothing can be written to the user database (the missing permission); empty when
    // it can be written.
    QString userReadOnlyReason() const { return m_userReadOnly; }

    // Look-ups in the given scope (GEODB_USER, GEODB_SYSTEM or GEODB_ALL); the record's
    // scope field tells where it was found. A look-up that cannot be read answers nullopt
    // and sets *error (which must not be null); a name that is not stored leaves it alone.
    std::optional<EllipsoidRecord> FindEllipsoid(const QString& name, int scope,
                                                 QString* error) const;
    std::optional<UnitRecord> FindUnit(const QString& name, int scope, QString* error) const;
    std::optional<DtfRecord> FindDtf(const QString& name, int scope, QString* error) const;
    std::optional<ProjectionRecord> FindProjection(const QString& name, int scope,
                                                   QString* error) const;
    std::optional<SystemRecord> FindSystem(const QString& group, const QString& system, int scope,
                                           QString* error) const;
    // A system with everything it references; nullopt with a reason when any part is
    // missing or cannot be read.
    std::optional<SystemDefinition> LoadDefinition(const QString& group, const QString& system,
                                                   QString* error) const;

    // How many write transactions this process has committed to user databases (any file,
    // any connection, any thread). A reader holding something read from a user database
    // compares it, a single atomic load, to learn cheaply whether this process may have
    // changed it since; changes by other processes do not count.
    static quint64 CommittedWrites();
    // Called right after each successful COMMIT on a user database.
    static void NoteCommittedWrite();

private:
    GeoStore() = default;
    DataSource m_source;
    QString m_systemConnection;
    QString m_userConnection;
    QString m_userReadOnly;
};
