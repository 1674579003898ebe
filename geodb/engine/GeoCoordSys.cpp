#include "engine/GeoCoordSys.h"

#include "engine/ModelFiles.h"
#include "util/CommonFolders.h"

#include <QSqlQuery>
#include <QThread>

#include <proj.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr std::size_t ChunkSize = 4096;
constexpr qint64 NsPerMs = 1000000;
const QString NoneText = QStringLiteral("--None--");

bool Converted(const GeoPoint& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z) && p.x != HUGE_VAL;
}

QString EpochRefused(const GeoPoint& p) {
    return QStringLiteral("The point %1, %2 cannot be converted: its observation epoch %3 is not "
                          "a year from %4 to %5 (0 takes the stored default epoch).")
        .arg(p.x, 0, 'f', 9)
        .arg(p.y, 0, 'f', 9)
        .arg(QString::number(p.time, 'g', 12))
        .arg(ObservationEpochMin, 0, 'f', 0)
        .arg(ObservationEpochMax, 0, 'f', 0);
}

} // namespace

GeoCoordSys::GeoCoordSys(std::unique_ptr<GeoStore> store)
    : m_store(std::move(store)), m_thread(QThread::currentThread()) {}

GeoCoordSys::~GeoCoordSys() {
    Reset();
    if (m_ctx)
        proj_context_destroy(m_ctx);
}

void GeoCoordSys::Reset() {
    if (m_pj)
        proj_destroy(m_pj);
    m_pj = nullptr;
    m_spec = PipelineSpec{};
}

qint64 GeoCoordSys::UserDataVersion() const {
    // The store's connections belong to the thread that opened them.
    if (!m_store || m_thread != QThread::currentThread())
        return -1;
    QSqlQuery q(m_store->userDb());
    if (!q.exec(QStringLiteral("PRAGMA data_version")) || !q.next())
        return -1;
    return q.value(0).toLongLong();
}

void GeoCoordSys::NoteDataVersion() {
    // The counter first: a write committed meanwhile is then either in the version read or
    // makes the counter differ at the next conversion.
    m_seenWrites = GeoStore::CommittedWrites();
    m_sinceCheck.start();
    m_dataVersion = UserDataVersion();
}

void GeoCoordSys::FollowStore() {
    if (m_storedArgs.size() != 9 || m_dataVersion < 0)
        return;
    // Asking SQLite costs twenty times a point's conversion: ask only when this process has
    // committed a write since, or when the interval for other processes' writes is up.
    if (GeoStore::CommittedWrites() == m_seenWrites &&
        (m_storeCheckMs < 0 || m_sinceCheck.nsecsElapsed() < m_storeCheckMs * NsPerMs))
        return;
    if (m_thread != QThread::currentThread())
        return;
    const qint64 definedAt = m_dataVersion;
    NoteDataVersion();
    if (m_dataVersion < 0 || m_dataVersion == definedAt) {
        m_dataVersion = definedAt; // unknown now: keep following what it was defined at
        return;
    }
    const QStringList args = m_storedArgs;
    DefineSystem(args[0], args[1], args[2], args[3], args[4], args[5], args[6], args[7], args[8]);
}

void GeoCoordSys::ApplyOverrides(SystemDefinition& def, const QString& geoidName,
                                 const QString& geoidFile, const QString& chartDatum,
                                 const QString& postName, const QString& postFile) {
    SystemRecord& sys = def.system;
    const QString name = geoidName.trimmed();
    if (name == NoneText) {
        sys.geoidOn = false;
        sys.geoidMethod.clear();
        sys.geoidFile.clear();
        sys.chartDatum.clear();
    } else if (!name.isEmpty()) {
        // Another method does not inherit the stored method's file.
        if (name.compare(sys.geoidMethod, Qt::CaseInsensitive) != 0) {
            sys.geoidFile.clear();
            sys.chartDatum.clear();
        }
        sys.geoidOn = true;
        sys.geoidMethod = name;
    }
    if (!geoidFile.trimmed().isEmpty())
        sys.geoidFile = geoidFile.trimmed();
    const QString datum = chartDatum.trimmed();
    if (datum == NoneText)
        sys.chartDatum.clear();
    else if (!datum.isEmpty())
        sys.chartDatum = datum;

    PostCorrection& post = sys.post;
    const QString model = postName.trimmed();
    if (model == NoneText) {
        post.modelName.clear();
        post.modelFile.clear();
    } else if (!model.isEmpty()) {
        if (model.compare(post.modelName, Qt::CaseInsensitive) != 0)
            post.modelFile.clear();
        post.modelName = model;
        post.on = true;
    }
    if (!postFile.trimmed().isEmpty() && !post.modelName.isEmpty())
        post.modelFile = postFile.trimmed();
}

bool GeoCoordSys::DefineSystem(const QString& s1, const QString& s2, const QString& s3,
                               const QString& s4, const QString& s5, const QString& s6,
                               const QString& s7, const QString& s8, const QString& s9) {
    // s5 is always empty and s9 "none"; all are kept to define the system again
    m_storedArgs = {s1, s2, s3, s4, s5, s6, s7, s8, s9};
    NoteDataVersion();
    if (!m_store) {
        m_error = QStringLiteral("No coordinate-system database is open.");
        return false;
    }
    ++m_storeReads;
    QString why;
    std::optional<SystemDefinition> def = m_store->LoadDefinition(s1, s2, &why);
    if (!def) {
        m_error = QStringLiteral("The coordinate system \"%1\" of group \"%2\" cannot be "
                                 "loaded: %3")
                      .arg(s2, s1, why.isEmpty() ? QStringLiteral("it does not exist.") : why);
        Reset();
        return false;
    }
    ApplyOverrides(*def, s3, s4, s6, s7, s8);

    PipelineOptions options;
    GetCommonDataFolder(m_store->source().dataFolder, options.commonFolder);
    // Lengths of the projection's parameters are in the projection's own unit.
    const ProjectionRecord& prj = def->projection;
    if (!prj.unitName.isEmpty() && prj.unitName.compare(def->unit.name, Qt::CaseInsensitive) != 0) {
        QString failure;
        const auto unit = m_store->FindUnit(prj.unitName, GEODB_ALL, &failure);
        if (!failure.isEmpty()) {
            m_error = failure;
            Reset();
            return false;
        }
        if (unit && unit->metersPerUnit > 0)
            options.projectionUnitFactor = unit->metersPerUnit;
    }
    return DefineFrom(*def, options);
}

bool GeoCoordSys::Define(const SystemDefinition& definition, PipelineOptions options) {
    m_storedArgs.clear(); // defined as given, not from the store
    return DefineFrom(definition, std::move(options));
}

bool GeoCoordSys::DefineFrom(const SystemDefinition& definition, PipelineOptions options) {
    Reset();
    m_error.clear();
    if (options.projFolders.isEmpty())
        options.projFolders = ModelFiles::ProjDataFolders();
    if (!m_ctx) {
        m_ctx = proj_context_create();
        if (!m_ctx) {
            m_error = QStringLiteral("PROJ cannot be started.");
            return false;
        }
        proj_log_level(m_ctx, PJ_LOG_NONE);
        proj_context_set_enable_network(m_ctx, 0);
    }
    // The search path replaces PROJ's own: keep its data folders (proj.db, grids).
    QStringList folders = options.projFolders;
    if (!options.commonFolder.isEmpty()) {
        const QString models =
            ModelFiles::ResolveNoCase(options.commonFolder, QStringLiteral("General/Geoidmodels"));
        if (!models.isEmpty())
            folders << models;
    }
    std::vector<QByteArray> encoded;
    std::vector<const char*> paths;
    for (const QString& folder : folders)
        encoded.push_back(folder.toUtf8());
    for (const QByteArray& path : encoded)
        paths.push_back(path.constData());
    proj_context_set_search_paths(m_ctx, static_cast<int>(paths.size()), paths.data());

    PipelineSpec spec;
    if (!PipelineBuilder::Build(m_ctx, definition, options, spec, m_error))
        return false;
    m_pj = proj_create(m_ctx, spec.definition.toUtf8().constData());
    if (!m_pj) {
        m_error = QStringLiteral("The system \"%1\" cannot be set up: %2")
                      .arg(definition.system.name, QString::fromUtf8(proj_context_errno_string(
                                                       m_ctx, proj_context_errno(m_ctx))));
        return false;
    }
    m_spec = spec;
    m_definition = definition;
    return true;
}

bool GeoCoordSys::Forward(GeoPoint& point) {
    bool ok = false;
    Convert(PJ_FWD, &point, &ok, 1);
    return ok;
}

bool GeoCoordSys::Inverse(GeoPoint& point) {
    bool ok = false;
    Convert(PJ_INV, &point, &ok, 1);
    return ok;
}

std::size_t GeoCoordSys::ForwardArray(GeoPoint* points, bool* ok, std::size_t count) {
    return Convert(PJ_FWD, points, ok, count);
}

std::size_t GeoCoordSys::InverseArray(GeoPoint* points, bool* ok, std::size_t count) {
    return Convert(PJ_INV, points, ok, count);
}

std::size_t GeoCoordSys::Convert(int direction, GeoPoint* points, bool* ok, std::size_t count) {
    FollowStore();
    if (!m_pj) {
        if (m_error.isEmpty()) // a failed definition has said why
            m_error = QStringLiteral("The coordinate system is not defined.");
        if (ok)
            std::fill(ok, ok + count, false);
        return 0;
    }
    const auto dir = static_cast<PJ_DIRECTION>(direction);
    std::size_t converted = 0;
    bool reported = false;
    m_backup.resize(std::min(count, ChunkSize));
    for (std::size_t start = 0; start < count; start += ChunkSize) {
        const std::size_t n = std::min(ChunkSize, count - start);
        GeoPoint* chunk = points + start;
        std::memcpy(m_backup.data(), chunk, n * sizeof(GeoPoint));
        // A point whose epoch is no year fails alone, whatever the system: it would be taken
        // as the time of the position (years from the epoch are metres in the result).
        bool anyBadEpoch = false;
        for (std::size_t i = 0; i < n; ++i) {
            if (!IsObservationEpochValid(chunk[i].time)) {
                anyBadEpoch = true;
                chunk[i].x = HUGE_VAL; // not converted; restored below
                chunk[i].time = ObservationEpochNone;
            }
        }
        double* t = nullptr;
        if (m_spec.timeDependent) {
            for (std::size_t i = 0; i < n; ++i) {
                if (chunk[i].time == ObservationEpochNone)
                    chunk[i].time = m_spec.defaultEpoch;
            }
            t = &chunk->time;
        }
        proj_errno_reset(m_pj);
        proj_trans_generic(m_pj, dir, &chunk->x, sizeof(GeoPoint), n, &chunk->y, sizeof(GeoPoint),
                           n, &chunk->z, sizeof(GeoPoint), n, t, t ? sizeof(GeoPoint) : 0,
                           t ? n : 0);
        for (std::size_t i = 0; i < n; ++i) {
            const bool badEpoch = anyBadEpoch && !IsObservationEpochValid(m_backup[i].time);
            const bool good = !badEpoch && Converted(chunk[i]);
            if (good) {
                chunk[i].time = m_backup[i].time;
                ++converted;
            } else if (badEpoch) {
                if (!reported)
                    m_error = EpochRefused(m_backup[i]);
                reported = true;
                chunk[i] = m_backup[i];
            } else {
                if (!reported) {
                    // Ask PROJ once more for this point alone, for the reason.
                    const GeoPoint& in = m_backup[i];
                    proj_errno_reset(m_pj);
                    PJ_COORD c = proj_coord(in.x, in.y, in.z,
                                            m_spec.timeDependent && in.time == 0
                                                ? m_spec.defaultEpoch
                                                : (m_spec.timeDependent ? in.time : HUGE_VAL));
                    proj_trans(m_pj, dir, c);
                    const int err = proj_errno(m_pj);
                    m_error = QStringLiteral("The point %1, %2 cannot be converted: %3")
                                  .arg(in.x, 0, 'f', 9)
                                  .arg(in.y, 0, 'f', 9)
                                  .arg(err ? QString::fromUtf8(proj_errno_string(err))
                                           : QStringLiteral("outside the system's domain"));
                    reported = true;
                }
                chunk[i] = m_backup[i];
            }
            if (ok)
                ok[start + i] = good;
        }
    }
    if (!reported)
        m_error.clear();
    return converted;
}
