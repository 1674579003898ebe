#pragma once

#include <QString>

// How many rows one import wrote, for the line the tool prints at the end.
struct ImportCounts {
    int ellipsoids = 0;
    int units = 0;
    int dtfs = 0;
    int projections = 0;
    int systems = 0;
    int groups = 0;
    int skippedSystems = 0; // projected systems left out (no datum transformation, ...)
    int supersededDtfs = 0; // datum transformations EPSG has replaced (kept, chosen by none)
    int systemsWithoutCurrentDtf = 0; // left out: every transformation of the datum replaced
};

// The one line a successful run prints, e.g. "epsg-import: EPSG v10.076: 50 ellipsoids, ...
// in 0.3 s" (no line end).
QString ImportSummary(const QString& epsgVersion, const ImportCounts& counts, qint64 elapsedMs);
