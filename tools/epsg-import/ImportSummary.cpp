#include "ImportSummary.h"

QString ImportSummary(const QString& epsgVersion, const ImportCounts& c, qint64 elapsedMs) {
    return QString::asprintf("epsg-import: EPSG %s: %d ellipsoids, %d units, %d datum "
                             "transformations, %d projections, %d systems in %d groups (%d "
                             "systems left out) in %.1f s",
                             qPrintable(epsgVersion), c.ellipsoids, c.units, c.dtfs, c.projections,
                             c.systems, c.groups, c.skippedSystems, elapsedMs / 1000.0);
}
