#include "ImportSteps.h"

#include "AreaOfUse.h"
#include "ConversionProjections.h"
#include "CoordinateSystems.h"
#include "DatumTable.h"
#include "DatumTransformations.h"
#include "EllipsoidsAndUnits.h"
#include "ImportSession.h"
#include "ImportedNames.h"
#include "ProjectionWriter.h"
#include "UnitTable.h"
#include "UtmProjections.h"

#include <QVariant>

namespace {

// Also the check that the file is a PROJ database at all.
bool ReadVersion(ImportSession& session, QString& version) {
    QSqlQuery q = session.SourceQuery();
    if (!q.exec(QStringLiteral("SELECT value FROM metadata WHERE key = 'EPSG.VERSION'")))
        return session.Fail(QStringLiteral("not a PROJ database (no metadata table)"), q);
    if (q.next())
        version = q.value(0).toString();
    return true;
}

} // namespace

bool RunImportSteps(ImportSession& session, QString& epsgVersion) {
    UnitTable units;
    UsageTable usages;
    DatumTable datums;
    if (!ReadVersion(session, epsgVersion) || !units.Load(session) || !usages.Load(session) ||
        !datums.Load(session, units))
        return false;

    ImportedNames names;
    if (!EllipsoidsAndUnits::WriteEllipsoids(session, units, names) ||
        !EllipsoidsAndUnits::WriteUnits(session, units, names) ||
        !DatumTransformations::Write(session, units, datums, usages, names))
        return false;

    ProjectionWriter writer(session);
    if (!UtmProjections::Write(writer, names))
        return false;
    ConversionProjections projections(session, units, usages, names, writer);
    return projections.Load() &&
           CoordinateSystems::Write(session, datums, usages, names, projections);
}
