#pragma once

#include "store/Records.h"

#include <QString>
#include <QStringList>

struct pj_ctx;
struct PJconsts;

// Builds the one PROJ pipeline of a coordinate system (see docs/engine.md):
//   WGS 84 lat, lon, h (and time)
//   -> geoid model / chart datum on the WGS 84 position (heights only)
//   -> datum transformation (Helmert, 7 or 15 values, in the published direction)
//   -> NTv2 shift model of the post correction (local latitude and longitude)
//   -> projection on the local ellipsoid and prime meridian
//   -> system unit
//   -> post corrections on the grid: horizontal adjustment, vertical adjustment, translation
struct PipelineOptions {
    QString commonFolder;            // common data folder; empty when there is none
    QStringList projFolders;         // PROJ's data folders
    double projectionUnitFactor = 0; // metres per unit of the projection's lengths (0: system unit)
};

struct PipelineSpec {
    QString definition;         // the PROJ pipeline
    bool timeDependent = false; // a 15-value transformation: points carry their epoch
    double defaultEpoch = 0;    // epoch for points without one (HUGE_VAL: the transformation's)
    double unitFactor = 1;      // metres per system unit
};

namespace PipelineBuilder {

bool Build(pj_ctx* ctx, const SystemDefinition& def, const PipelineOptions& options,
           PipelineSpec& spec, QString& error);

// One helmert step WGS 84 -> local geocentric (without "+step"); empty for method 0.
QString HelmertStep(const DtfRecord& dtf);
// "+a=... +rf=..." of an ellipsoid.
QString EllipsoidParams(const EllipsoidRecord& ellipsoid);
// The projection steps (radians in, metres out), on the local ellipsoid and prime meridian.
bool ProjectionSteps(pj_ctx* ctx, const SystemDefinition& def, double lengthFactor,
                     QStringList& steps, QString& error);

// The projection of a system as a PROJ conversion object (owned by the caller), lengths in
// metres: what ProjectionSteps computes, for callers that build a CRS of the system. Null
// with the reason when the projection cannot be set up.
PJconsts* CreateConversion(pj_ctx* ctx, const SystemDefinition& def, double lengthFactor,
                           QString& error);

// Index of a geoid or post method name in GeoidmodelTypeKeys (case-insensitive); 0 for an
// empty name or "--None--", -1 for an unknown name.
int GeoidMethodIndex(const QString& name);

} // namespace PipelineBuilder
