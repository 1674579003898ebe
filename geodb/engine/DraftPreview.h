#pragma once

#include "api/OrvGeoCoordSysBase.h"

#include <QString>
#include <QStringList>

class GeoStore;
struct SystemDraft;

// What a coordinate system that is still being built will do, before it is saved: one test
// point converted with the engine from the draft as it would be saved, and a warning for each
// part of the definition that is almost certainly a mistake (a 15-value datum transformation
// with the epoch 0, a projection method the engine does not compute, a geoid, chart-datum or
// shift-model file that cannot be found). The overview text shows it.
struct DraftPreview {
    enum class PointSource {
        None,             // no test point: the definition gives no place to take one
        DtfAreaOfUse,     // the centre of the datum transformation's EPSG area of use
        ProjectionOrigin, // the projection's origin (UTM: the central meridian on the equator)
        SystemArea,       // the centre of the area of use of the system it is based on
    };
    PointSource source = PointSource::None;
    GeoPoint wgs84;         // latitude, longitude (degrees), ellipsoidal height (m)
    GeoPoint grid;          // Easting, Northing, Z in the system unit
    bool converted = false; // grid holds the result
    QString failure;        // why the point was not converted (empty when it was)
    QStringList warnings;   // plain sentences
};

// The draft as SqliteStaticData would save it (its geoid method and file resolved).
DraftPreview PreviewDraft(const GeoStore& store, const SystemDraft& draft);
