#pragma once

#include "engine/PipelineBuilder.h"
#include "store/Records.h"

#include <QString>

class GeoStore;

// A coordinate system defined here, in the forms the rest of the geospatial world reads,
// built with PROJ's own API so that software on PROJ computes what the engine computes:
//   Wkt2, ProjJson  the system as a CRS: the projected system on its local datum, bound to
//                   WGS 84 by its datum transformation (WKT2 BOUNDCRS), three-dimensional
//                   (Z is the height above the local ellipsoid) or, with a geoid model,
//                   compound with a vertical system bound to WGS 84 by the geoid grid.
//   Proj            the engine's own PROJ pipeline: WGS 84 latitude, longitude (degrees),
//                   ellipsoidal height (metres) [, epoch] in; Easting, Northing, Z in the
//                   system unit out.
// From EPSG:4979 (WGS 84 3D) to the exported CRS, PROJ computes the engine's numbers.
namespace SystemExport {

enum class Format { Wkt2, ProjJson, Proj };

// "wkt2", "projjson" or "proj" (letter case ignored).
bool ParseFormat(const QString& text, Format& format);

// The text of the system in the format; false with the reason when the system cannot be
// expressed in it (a post correction, a manual geoid separation or a chart datum have no
// CRS form; the Proj format has them all).
bool Export(const SystemDefinition& definition, const PipelineOptions& options, Format format,
            QString& text, QString& error);

// A stored system as the engine defines it: with the common data folder of dataFolder's
// ORV.ini (model files) and the unit of the projection's lengths.
bool ExportStored(const GeoStore& store, const QString& dataFolder, const QString& group,
                  const QString& system, Format format, QString& text, QString& error);

} // namespace SystemExport
