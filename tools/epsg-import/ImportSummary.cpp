#include "ImportSummary.h"

QString ImportSummary(const QString& epsgVersion, const ImportCounts& c, qint64 elapsedMs) {
    return QString::asprintf("epsg-import: EPSG %s: %d ellipsoids, %d units, %d datum "
                             "transformations (%d superseded), %d projections, %d systems in %d "
                             "groups (%d systems left out, %d of them because every "
                             "transformation of their datum is superseded) in %.1f s",
                             qPrintable(epsgVersion), c.ellipsoids, c.units, c.dtfs,
                             c.supersededDtfs, c.projections, c.systems, c.groups, c.skippedSystems,
                             c.systemsWithoutCurrentDtf, elapsedMs / 1000.0);
}
