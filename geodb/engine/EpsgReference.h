#pragma once

#include <QString>

struct pj_ctx;
struct PJconsts;

// PROJ's own operation from WGS 84 (EPSG:4326) to an EPSG projected system, pinned to one
// EPSG datum transformation: the independent check of a pre-defined system. Results come
// as (east-west axis, north-south axis) in the system's unit, as the engine gives them.
class EpsgReference {
public:
    EpsgReference();
    ~EpsgReference();
    EpsgReference(const EpsgReference&) = delete;
    EpsgReference& operator=(const EpsgReference&) = delete;

    // operationCode 0: the system's datum is WGS 84 itself (no transformation). False with
    // a reason when PROJ has no such operation.
    bool Create(int crsCode, int operationCode, QString& error);
    // time: observation epoch (HUGE_VAL: the transformation's own).
    bool Forward(double lat, double lon, double time, double& east, double& north) const;
    // The PROJ pipeline of the chosen operation.
    QString Definition() const { return m_definition; }

private:
    void Clear();
    pj_ctx* m_ctx = nullptr;
    PJconsts* m_op = nullptr;
    int m_eastIndex = 0;
    int m_northIndex = 1;
    QString m_definition;
};
