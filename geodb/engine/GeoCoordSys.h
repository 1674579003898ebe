#pragma once

#include "api/OrvGeoCoordSysBase.h"
#include "engine/PipelineBuilder.h"
#include "store/GeoStore.h"

#include <QElapsedTimer>
#include <QStringList>

#include <algorithm>
#include <memory>
#include <vector>

class QThread;
struct pj_ctx;
struct PJconsts;

// The coordinate-system object: one PROJ pipeline per defined system, built once, with
// its own PROJ context (objects may live on different threads).
//
// A system defined from the store follows the store: when another connection has written to
// the user database since the pipeline was built (an edited system saved, say), a conversion
// defines the system again from what is stored now, so no stale pipeline is used. A write
// committed by this process is seen by the very next conversion; one committed by another
// process within the check interval (the database is asked at most that often).
class GeoCoordSys final : public OrvGeoCoordSysBase {
public:
    // store: where DefineSystem reads systems; null for objects defined with Define only.
    explicit GeoCoordSys(std::unique_ptr<GeoStore> store = nullptr);
    ~GeoCoordSys() override;
    GeoCoordSys(const GeoCoordSys&) = delete;
    GeoCoordSys& operator=(const GeoCoordSys&) = delete;

    bool DefineSystem(const QString& s1, const QString& s2, const QString& s3, const QString& s4,
                      const QString& s5, const QString& s6, const QString& s7, const QString& s8,
                      const QString& s9) override;
    bool Forward(GeoPoint& point) override;
    bool Inverse(GeoPoint& point) override;
    std::size_t ForwardArray(GeoPoint* points, bool* ok, std::size_t count) override;
    std::size_t InverseArray(GeoPoint* points, bool* ok, std::size_t count) override;
    QString LastError() const override { return m_error; }

    // Defines the system from a complete definition (tests, tools). options.projFolders
    // empty: PROJ's own data folders.
    bool Define(const SystemDefinition& definition, PipelineOptions options = {});

    bool IsDefined() const { return m_pj != nullptr; }
    // The PROJ pipeline of the defined system.
    QString PipelineDefinition() const { return m_spec.definition; }
    // True when the datum transformation depends on the observation epoch.
    bool IsTimeDependent() const { return m_spec.timeDependent; }
    const SystemDefinition& Definition() const { return m_definition; }

    // How often a conversion asks the user database whether another process wrote to it
    // (0: every conversion; negative: never); writes of this process are seen at once,
    // whatever the interval.
    static constexpr qint64 DefaultStoreCheckMs = 250;
    static constexpr qint64 MaxStoreCheckMs = qint64(1) << 40; // 35 years: ns fit in 64 bits
    void SetStoreCheckInterval(qint64 ms) { m_storeCheckMs = std::min(ms, MaxStoreCheckMs); }
    // How often the system was read from the store: DefineSystem and each time it followed.
    quint64 StoreReads() const { return m_storeReads; }

    // The definition DefineSystem would use: the stored system with the overrides applied.
    static void ApplyOverrides(SystemDefinition& def, const QString& geoidName,
                               const QString& geoidFile, const QString& chartDatum,
                               const QString& postName, const QString& postFile);

private:
    bool DefineFrom(const SystemDefinition& definition, PipelineOptions options);
    std::size_t Convert(int direction, GeoPoint* points, bool* ok, std::size_t count);
    void Reset();
    // PRAGMA data_version of this object's user database connection (-1 when unknown).
    qint64 UserDataVersion() const;
    // Reads the user database's version now and notes when and at which write count.
    void NoteDataVersion();
    // Defines the stored system again when the user database changed since it was defined.
    void FollowStore();

    std::unique_ptr<GeoStore> m_store;
    pj_ctx* m_ctx = nullptr;
    PJconsts* m_pj = nullptr;
    PipelineSpec m_spec;
    SystemDefinition m_definition;
    QString m_error;
    std::vector<GeoPoint> m_backup; // the chunk being converted, to restore failed points
    // DefineSystem's arguments and the user database's version they were read at.
    QStringList m_storedArgs;
    qint64 m_dataVersion = -1;
    quint64 m_seenWrites = 0;   // GeoStore::CommittedWrites() when the version was read
    QElapsedTimer m_sinceCheck; // since the version was read
    qint64 m_storeCheckMs = DefaultStoreCheckMs;
    quint64 m_storeReads = 0;
    QThread* m_thread; // the thread whose connections the store holds
};
