#include "store/GeoStore.h"

#include "store/Schema.h"
#include "store/StoreSql.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>

#include <atomic>

namespace {

std::atomic<quint64> s_connectionCounter{0};

QString NextConnectionName(const QString& kind) {
    return QStringLiteral("orv-%1-%2").arg(kind).arg(++s_connectionCounter);
}

void SetError(QString* error, const QString& text) {
    if (error)
        *error = text;
}

// The tables the store reads; a file that lacks one is not ours even with the right version.
const char* const RequiredTables[] = {"ellipsoid",        "unit",     "dtf",      "projection",
                                      "projection_param", "sysgroup", "coordsys", "system_use"};

bool HasTables(QSqlDatabase& db, QString* reason) {
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table'"))) {
        *reason = q.lastError().text();
        return false;
    }
    QStringList present;
    while (q.next())
        present << q.value(0).toString();
    for (const char* table : RequiredTables) {
        if (!present.contains(QString::fromLatin1(table))) {
            *reason = QStringLiteral("the table \"%1\" is missing").arg(QLatin1String(table));
            return false;
        }
    }
    return true;
}

int TableCount(QSqlDatabase& db, QString* reason) {
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("SELECT count(*) FROM sqlite_master")) || !q.next()) {
        *reason = q.lastError().text();
        return -1;
    }
    return q.value(0).toInt();
}

bool OpenSystemDb(const QString& path, const QString& connection, QString* error) {
    const QFileInfo info(path);
    if (!info.exists()) {
        SetError(error, QStringLiteral("The pre-defined coordinate system database \"%1\" does "
                                       "not exist.")
                            .arg(QDir::toNativeSeparators(path)));
        return false;
    }
    QFile probe(path);
    if (!info.isFile() || !probe.open(QIODevice::ReadOnly)) {
        SetError(error, QStringLiteral("The pre-defined coordinate system database \"%1\" cannot "
                                       "be read.")
                            .arg(QDir::toNativeSeparators(path)));
        return false;
    }
    probe.close();
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
    db.setDatabaseName(path);
    db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
    QString reason;
    if (!db.open()) {
        reason = db.lastError().text();
    } else if (!OrvSchema::IsCurrent(db, &reason) || !HasTables(db, &reason)) {
        db.close();
    }
    if (!db.isOpen()) {
        SetError(error, QStringLiteral("The pre-defined coordinate system database \"%1\" is not "
                                       "usable: %2.")
                            .arg(QDir::toNativeSeparators(path), reason));
        return false;
    }
    return true;
}

// Creates the schema in an empty file. Another process may be doing the same at this
// moment: the write lock serialises the two, and the loser finds the schema in place.
bool CreateSchemaIfEmpty(QSqlDatabase& db, QString* reason) {
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("BEGIN IMMEDIATE"))) {
        *reason = q.lastError().text();
        return false;
    }
    const int count = TableCount(db, reason);
    bool ok = count >= 0;
    if (ok && count == 0)
        ok = OrvSchema::Create(db, reason);
    if (ok && q.exec(QStringLiteral("COMMIT")))
        return true;
    if (ok)
        *reason = q.lastError().text();
    q.exec(QStringLiteral("ROLLBACK"));
    return false;
}

bool OpenUserDb(const QString& path, const QString& connection, QString* error) {
    const QFileInfo info(path);
    const QString shown = QDir::toNativeSeparators(path);
    if (!QDir().mkpath(info.absolutePath())) {
        SetError(error, QStringLiteral("The folder \"%1\" of the user database cannot be created.")
                            .arg(QDir::toNativeSeparators(info.absolutePath())));
        return false;
    }
    if (info.exists()) {
        QFile probe(path);
        if (!info.isFile() || !probe.open(QIODevice::ReadWrite)) {
            SetError(
                error,
                QStringLiteral("The user database \"%1\" cannot be read and written.").arg(shown));
            return false;
        }
    }
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
    db.setDatabaseName(path);
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
    QString reason;
    bool ok = db.open();
    if (!ok)
        reason = db.lastError().text();
    if (ok) {
        const int count = TableCount(db, &reason);
        ok = count >= 0;
        if (ok && count == 0)
            ok = CreateSchemaIfEmpty(db, &reason);
        if (ok)
            ok = OrvSchema::IsCurrent(db, &reason) && HasTables(db, &reason);
    }
    if (ok) {
        QSqlQuery q(db);
        q.exec(QStringLiteral("PRAGMA foreign_keys = ON"));
        return true;
    }
    db.close();
    SetError(error, QStringLiteral("The user database \"%1\" is not usable: %2. The file was "
                                   "left as it is.")
                        .arg(shown, reason));
    return false;
}

} // namespace

std::unique_ptr<GeoStore> GeoStore::Open(const QString& dllType, QString* error) {
    QString reason;
    const std::optional<DataSource> source = DataSource::Resolve(dllType, &reason);
    if (!source) {
        SetError(error, reason);
        return nullptr;
    }
    std::unique_ptr<GeoStore> store(new GeoStore);
    store->m_source = *source;
    // The names are taken before opening so that the destructor removes whatever was added.
    store->m_systemConnection = NextConnectionName(QStringLiteral("system"));
    if (!OpenSystemDb(source->systemDbPath, store->m_systemConnection, error))
        return nullptr;
    store->m_userConnection = NextConnectionName(QStringLiteral("user"));
    if (!OpenUserDb(source->userDbPath, store->m_userConnection, error))
        return nullptr;
    return store;
}

GeoStore::~GeoStore() {
    for (const QString& name : {m_systemConnection, m_userConnection}) {
        if (name.isEmpty() || !QSqlDatabase::contains(name))
            continue;
        {
            QSqlDatabase db = QSqlDatabase::database(name, false);
            db.close();
        }
        QSqlDatabase::removeDatabase(name);
    }
}

QSqlDatabase GeoStore::systemDb() const {
    return QSqlDatabase::database(m_systemConnection, false);
}

QSqlDatabase GeoStore::userDb() const {
    return QSqlDatabase::database(m_userConnection, false);
}

std::optional<EllipsoidRecord> GeoStore::FindEllipsoid(const QString& name, int scope) const {
    for (const auto& [db, where] : StoreSql::Databases(*this, scope)) {
        if (auto rec = StoreSql::ReadEllipsoid(db, name)) {
            rec->scope = where;
            return rec;
        }
    }
    return std::nullopt;
}

std::optional<UnitRecord> GeoStore::FindUnit(const QString& name, int scope) const {
    for (const auto& [db, where] : StoreSql::Databases(*this, scope)) {
        if (auto rec = StoreSql::ReadUnit(db, name)) {
            rec->scope = where;
            return rec;
        }
    }
    return std::nullopt;
}

std::optional<DtfRecord> GeoStore::FindDtf(const QString& name, int scope) const {
    for (const auto& [db, where] : StoreSql::Databases(*this, scope)) {
        if (auto rec = StoreSql::ReadDtf(db, name)) {
            rec->scope = where;
            return rec;
        }
    }
    return std::nullopt;
}

std::optional<ProjectionRecord> GeoStore::FindProjection(const QString& name, int scope) const {
    for (const auto& [db, where] : StoreSql::Databases(*this, scope)) {
        if (auto rec = StoreSql::ReadProjection(db, name)) {
            rec->scope = where;
            return rec;
        }
    }
    return std::nullopt;
}

std::optional<SystemRecord> GeoStore::FindSystem(const QString& group, const QString& system,
                                                 int scope) const {
    for (const auto& [db, where] : StoreSql::Databases(*this, scope)) {
        if (auto rec = StoreSql::ReadSystem(db, group, system)) {
            rec->scope = where;
            return rec;
        }
    }
    return std::nullopt;
}

std::optional<SystemDefinition>
GeoStore::LoadDefinition(const QString& group, const QString& system, QString* error) const {
    SystemDefinition def;
    auto sys = FindSystem(group, system);
    if (!sys) {
        SetError(error, QStringLiteral("The coordinate system \"%1\" is not stored in the group "
                                       "\"%2\".")
                            .arg(system, group));
        return std::nullopt;
    }
    def.system = *sys;
    auto missing = [&](const QString& what, const QString& name) {
        SetError(error, QStringLiteral("The %1 \"%2\" of the coordinate system \"%3\" is not "
                                       "stored.")
                            .arg(what, name, def.system.name));
        return std::nullopt;
    };
    auto sat = FindEllipsoid(def.system.satEllipsoid);
    if (!sat)
        return missing(QStringLiteral("satellite ellipsoid"), def.system.satEllipsoid);
    auto local = FindEllipsoid(def.system.localEllipsoid);
    if (!local)
        return missing(QStringLiteral("local ellipsoid"), def.system.localEllipsoid);
    auto dtf = FindDtf(def.system.dtfName);
    if (!dtf)
        return missing(QStringLiteral("datum transformation"), def.system.dtfName);
    auto prj = FindProjection(def.system.projectionName);
    if (!prj)
        return missing(QStringLiteral("projection"), def.system.projectionName);
    auto unit = FindUnit(def.system.unitName);
    if (!unit)
        return missing(QStringLiteral("unit"), def.system.unitName);
    def.satEllipsoid = *sat;
    def.localEllipsoid = *local;
    def.dtf = *dtf;
    def.projection = *prj;
    def.unit = *unit;
    return def;
}
