#include "store/GeoStore.h"

#include "store/Schema.h"
#include "store/StoreSql.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMutex>
#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>
#include <atomic>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

namespace {

std::atomic<quint64> s_connectionCounter{0};
std::atomic<quint64> s_committedWrites{0};

QString NextConnectionName(const QString& kind) {
    return QStringLiteral("orv-%1-%2").arg(kind).arg(++s_connectionCounter);
}

void SetError(QString* error, const QString& text) {
    if (error)
        *error = text;
}

QString Shown(const QString& path) {
    return QDir::toNativeSeparators(path);
}

int TableCount(QSqlDatabase& db, QString* reason) {
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("SELECT count(*) FROM sqlite_master")) || !q.next()) {
        *reason = StoreSql::ErrorText(q.lastError());
        return -1;
    }
    return q.value(0).toInt();
}

// PRAGMA quick_check: every page and record of the file is well formed. Empty when it is;
// otherwise what SQLite found first.
QString QuickCheck(QSqlDatabase& db) {
    QSqlQuery q(db);
    q.setForwardOnly(true);
    if (!q.exec(QStringLiteral("PRAGMA quick_check")))
        return StoreSql::ErrorText(q.lastError());
    QStringList found;
    while (q.next()) {
        // One row may hold several findings, a line each, under a heading line.
        for (const QString& line : q.value(0).toString().split(QLatin1Char('\n'))) {
            if (!line.trimmed().isEmpty() && !line.startsWith(QLatin1String("***")))
                found << line.trimmed();
        }
    }
    if (q.lastError().type() != QSqlError::NoError)
        return StoreSql::ErrorText(q.lastError());
    if (found == QStringList{QStringLiteral("ok")})
        return QString();
    const qsizetype shown = std::min<qsizetype>(found.size(), 2);
    return found.mid(0, shown).join(QStringLiteral("; ")) +
           (found.size() > shown ? QStringLiteral("; ...") : QString());
}

// What identifies one state of a file: a file changed in any way gets another stamp.
QString FileStamp(const QString& path) {
#ifdef Q_OS_UNIX
    struct stat st {};
    if (::stat(QFile::encodeName(path).constData(), &st) == 0)
        return QStringLiteral("%1:%2:%3:%4.%5:%6.%7")
            .arg(st.st_dev)
            .arg(st.st_ino)
            .arg(st.st_size)
            .arg(st.st_mtim.tv_sec)
            .arg(st.st_mtim.tv_nsec)
            .arg(st.st_ctim.tv_sec)
            .arg(st.st_ctim.tv_nsec);
#endif
    const QFileInfo info(path);
    return QStringLiteral("%1:%2:%3")
        .arg(info.size())
        .arg(info.lastModified().toMSecsSinceEpoch())
        .arg(info.fileTime(QFileDevice::FileMetadataChangeTime).toMSecsSinceEpoch());
}

// The system database is read-only and the same for every object of a process: it is
// checked whole once per state of its file (about 40 ms for the EPSG database), not on
// every opening.
QMutex s_checkedMutex;
QHash<QString, QString> s_checkedSystemFiles; // absolute path -> stamp of the checked file

bool SystemFileChecked(const QString& path, const QString& stamp) {
    QMutexLocker lock(&s_checkedMutex);
    return s_checkedSystemFiles.value(path) == stamp;
}

void MarkSystemFileChecked(const QString& path, const QString& stamp) {
    QMutexLocker lock(&s_checkedMutex);
    s_checkedSystemFiles.insert(path, stamp);
}

bool OpenSystemDb(const QString& path, const QString& connection, QString* error) {
    const QFileInfo info(path);
    const QString label =
        QStringLiteral("The pre-defined coordinate system database \"%1\"").arg(Shown(path));
    if (!info.exists()) {
        SetError(error, QStringLiteral("%1 does not exist.").arg(label));
        return false;
    }
    QFile probe(path);
    if (!info.isFile() || !probe.open(QIODevice::ReadOnly)) {
        SetError(error, info.isFile() && !info.isReadable()
                            ? QStringLiteral("%1 cannot be read: the file has no read "
                                             "permission.")
                                  .arg(label)
                            : QStringLiteral("%1 cannot be read.").arg(label));
        return false;
    }
    probe.close();
    const QString stamp = FileStamp(info.absoluteFilePath());
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
    db.setDatabaseName(path);
    db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
    QString reason;
    if (!db.open()) {
        reason = StoreSql::ErrorText(db.lastError());
    } else if (!OrvSchema::IsCurrent(db, &reason)) {
        db.close();
    } else if (!SystemFileChecked(info.absoluteFilePath(), stamp)) {
        const QString damage = QuickCheck(db);
        if (!damage.isEmpty()) {
            db.close();
            SetError(error, QStringLiteral("%1 is not usable: the file is damaged (%2). Install "
                                           "or build it again.")
                                .arg(label, damage));
            return false;
        }
        if (!OrvSchema::HasSchemaTables(db, &reason))
            db.close();
        else
            MarkSystemFileChecked(info.absoluteFilePath(), stamp);
    }
    if (!db.isOpen()) {
        if (reason.endsWith(QLatin1Char('.')))
            reason.chop(1);
        SetError(error, QStringLiteral("%1 is not usable: %2.").arg(label, reason));
        return false;
    }
    return true;
}

// Runs step in one write transaction taken with the write lock (BEGIN IMMEDIATE), so that
// another process doing the same waits and then finds the work done; rolls back on failure.
template <typename Step> bool UnderWriteLock(QSqlDatabase& db, QString* reason, Step step) {
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("BEGIN IMMEDIATE"))) {
        *reason = StoreSql::ErrorText(q.lastError());
        return false;
    }
    const bool ok = step();
    if (ok && q.exec(QStringLiteral("COMMIT"))) {
        GeoStore::NoteCommittedWrite();
        return true;
    }
    if (ok)
        *reason = StoreSql::ErrorText(q.lastError());
    q.exec(QStringLiteral("ROLLBACK"));
    return false;
}

// Creates the schema in an empty file. Another process may be doing the same at this
// moment: the write lock serialises the two, and the loser finds the schema in place.
bool CreateSchemaIfEmpty(QSqlDatabase& db, QString* reason) {
    return UnderWriteLock(db, reason, [&] {
        const int count = TableCount(db, reason);
        return count > 0 || (count == 0 && OrvSchema::Create(db, reason));
    });
}

// Brings a version 1 file up to date under the write lock; another process may have done
// it meanwhile.
bool UpgradeSchema(QSqlDatabase& db, QString* reason) {
    return UnderWriteLock(db, reason, [&] {
        const int version = OrvSchema::VersionOf(db, reason);
        return version == OrvSchema::Version || (version >= 0 && OrvSchema::Upgrade(db, reason));
    });
}

// The nearest folder of path that exists.
QString ExistingAncestor(const QString& path) {
    QFileInfo info(path);
    while (!info.exists()) {
        const QString parent = info.absolutePath();
        if (parent == info.absoluteFilePath())
            break;
        info = QFileInfo(parent);
    }
    return info.absoluteFilePath();
}

bool OpenUserDb(const QString& path, const QString& connection, QString* readOnly, QString* error) {
    const QFileInfo info(path);
    const QString folder = info.absolutePath();
    const QString label = QStringLiteral("The user database \"%1\"").arg(Shown(path));
    if (!QDir().mkpath(folder)) {
        const QString ancestor = ExistingAncestor(folder);
        SetError(error,
                 QFileInfo(ancestor).isDir() && !QFileInfo(ancestor).isWritable()
                     ? QStringLiteral("The folder \"%1\" of the user database cannot be created: "
                                      "the folder \"%2\" has no write permission.")
                           .arg(Shown(folder), Shown(ancestor))
                     : QStringLiteral("The folder \"%1\" of the user database cannot be created.")
                           .arg(Shown(folder)));
        return false;
    }
    const bool exists = info.exists();
    if (exists && !info.isFile()) {
        SetError(error, QStringLiteral("%1 is not a file.").arg(label));
        return false;
    }
    if (exists && !info.isReadable()) {
        SetError(error,
                 QStringLiteral("%1 cannot be read: the file has no read permission.").arg(label));
        return false;
    }
    // A file or folder that cannot be written still lets every entry be read; saving then
    // says which permission is missing.
    const bool folderWritable = QFileInfo(folder).isWritable();
    if (exists && !info.isWritable())
        *readOnly =
            QStringLiteral("%1 cannot be written: the file has no write permission.").arg(label);
    else if (exists && !folderWritable)
        *readOnly = QStringLiteral("%1 cannot be written: its folder \"%2\" has no write "
                                   "permission (each change needs a journal file beside it).")
                        .arg(label, Shown(folder));
    else if (!folderWritable)
        *readOnly = QStringLiteral("%1 cannot be created: its folder \"%2\" has no write "
                                   "permission.")
                        .arg(label, Shown(folder));
    const bool writable = readOnly->isEmpty();
    // Nothing to read and nothing may be created: an empty database in memory stands in.
    const bool inMemory = !writable && (!exists || info.size() == 0);

    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
    db.setDatabaseName(inMemory ? QStringLiteral(":memory:") : path);
    db.setConnectOptions(writable || inMemory
                             ? QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000")
                             : QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_BUSY_TIMEOUT=5000"));
    QString reason;
    bool ok = db.open();
    if (!ok)
        reason = StoreSql::ErrorText(db.lastError());
    if (ok && !inMemory) {
        const QString damage = QuickCheck(db);
        if (!damage.isEmpty()) {
            db.close();
            SetError(error, QStringLiteral("%1 is not usable: the file is damaged (%2). The file "
                                           "was left as it is; restore it from a backup.")
                                .arg(label, damage));
            return false;
        }
    }
    if (ok) {
        const int count = TableCount(db, &reason);
        ok = count >= 0;
        if (ok && count == 0 && (writable || inMemory))
            ok = inMemory ? OrvSchema::Create(db, &reason) : CreateSchemaIfEmpty(db, &reason);
    }
    int version = -1;
    if (ok) {
        version = OrvSchema::VersionOf(db, &reason);
        ok = version >= 0;
        if (ok && version != OrvSchema::Version && version != OrvSchema::OldestUpgradableVersion) {
            reason = QStringLiteral("database schema version %1, expected %2")
                         .arg(version)
                         .arg(OrvSchema::Version);
            ok = false;
        }
    }
    if (ok)
        ok = OrvSchema::HasSchemaTables(db, &reason);
    // An older file opened read-only keeps its keys: only names that fold into more
    // letters ("ß") are then not found by a differently written name.
    if (ok && version != OrvSchema::Version && writable)
        ok = UpgradeSchema(db, &reason);
    if (ok) {
        QSqlQuery q(db);
        q.exec(QStringLiteral("PRAGMA foreign_keys = ON"));
        return true;
    }
    db.close();
    if (reason.endsWith(QLatin1Char('.')))
        reason.chop(1);
    SetError(
        error,
        QStringLiteral("%1 is not usable: %2. The file was left as it is.").arg(label, reason));
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
    if (!OpenUserDb(source->userDbPath, store->m_userConnection, &store->m_userReadOnly, error))
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

quint64 GeoStore::CommittedWrites() {
    return s_committedWrites.load(std::memory_order_acquire);
}

void GeoStore::NoteCommittedWrite() {
    s_committedWrites.fetch_add(1, std::memory_order_release);
}

QSqlDatabase GeoStore::systemDb() const {
    return QSqlDatabase::database(m_systemConnection, false);
}

QSqlDatabase GeoStore::userDb() const {
    return QSqlDatabase::database(m_userConnection, false);
}

namespace {

// The first database of the scope that holds the name; nothing on the first failed read.
template <typename Record, typename Read>
std::optional<Record> FindIn(const GeoStore& store, int scope, QString* error, Read read) {
    for (const auto& [db, where] : StoreSql::Databases(store, scope)) {
        QString failure;
        std::optional<Record> rec = read(db, &failure);
        if (!failure.isEmpty()) {
            if (error->isEmpty())
                *error = failure;
            return std::nullopt;
        }
        if (rec) {
            rec->scope = where;
            return rec;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<EllipsoidRecord> GeoStore::FindEllipsoid(const QString& name, int scope,
                                                       QString* error) const {
    return FindIn<EllipsoidRecord>(*this, scope, error, [&](QSqlDatabase db, QString* e) {
        return StoreSql::ReadEllipsoid(db, name, e);
    });
}

std::optional<UnitRecord> GeoStore::FindUnit(const QString& name, int scope, QString* error) const {
    return FindIn<UnitRecord>(*this, scope, error, [&](QSqlDatabase db, QString* e) {
        return StoreSql::ReadUnit(db, name, e);
    });
}

std::optional<DtfRecord> GeoStore::FindDtf(const QString& name, int scope, QString* error) const {
    return FindIn<DtfRecord>(*this, scope, error, [&](QSqlDatabase db, QString* e) {
        return StoreSql::ReadDtf(db, name, e);
    });
}

std::optional<ProjectionRecord> GeoStore::FindProjection(const QString& name, int scope,
                                                         QString* error) const {
    return FindIn<ProjectionRecord>(*this, scope, error, [&](QSqlDatabase db, QString* e) {
        return StoreSql::ReadProjection(db, name, e);
    });
}

std::optional<SystemRecord> GeoStore::FindSystem(const QString& group, const QString& system,
                                                 int scope, QString* error) const {
    return FindIn<SystemRecord>(*this, scope, error, [&](QSqlDatabase db, QString* e) {
        return StoreSql::ReadSystem(db, group, system, e);
    });
}

std::optional<SystemDefinition>
GeoStore::LoadDefinition(const QString& group, const QString& system, QString* error) const {
    QString failure;
    SystemDefinition def;
    auto sys = FindSystem(group, system, GEODB_ALL, &failure);
    if (!failure.isEmpty()) {
        SetError(error, failure);
        return std::nullopt;
    }
    if (!sys) {
        SetError(error, QStringLiteral("The coordinate system \"%1\" is not stored in the group "
                                       "\"%2\".")
                            .arg(system, group));
        return std::nullopt;
    }
    def.system = *sys;
    auto missing = [&](const QString& what, const QString& name) {
        SetError(error, !failure.isEmpty()
                            ? failure
                            : QStringLiteral("The %1 \"%2\" of the coordinate system \"%3\" is "
                                             "not stored.")
                                  .arg(what, name, def.system.name));
        return std::nullopt;
    };
    auto sat = FindEllipsoid(def.system.satEllipsoid, GEODB_ALL, &failure);
    if (!sat)
        return missing(QStringLiteral("satellite ellipsoid"), def.system.satEllipsoid);
    auto local = FindEllipsoid(def.system.localEllipsoid, GEODB_ALL, &failure);
    if (!local)
        return missing(QStringLiteral("local ellipsoid"), def.system.localEllipsoid);
    auto dtf = FindDtf(def.system.dtfName, GEODB_ALL, &failure);
    if (!dtf)
        return missing(QStringLiteral("datum transformation"), def.system.dtfName);
    auto prj = FindProjection(def.system.projectionName, GEODB_ALL, &failure);
    if (!prj)
        return missing(QStringLiteral("projection"), def.system.projectionName);
    auto unit = FindUnit(def.system.unitName, GEODB_ALL, &failure);
    if (!unit)
        return missing(QStringLiteral("unit"), def.system.unitName);
    def.satEllipsoid = *sat;
    def.localEllipsoid = *local;
    def.dtf = *dtf;
    def.projection = *prj;
    def.unit = *unit;
    return def;
}
