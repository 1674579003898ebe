#include "dialogs/ProjectionTree.h"

#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"

QList<NameTreeEntry> ProjectionTreeEntries(OrvGeoStaticDataBase& staticData,
                                           OrvGeoDatabaseBase& database, bool keepEmptyMethods) {
    QStringList methods;
    staticData.GetPrjMethodNames(methods);
    const QHash<QString, int> codes = database.GetEpsgCodes(GeoEntryKind::Projection);
    QList<NameTreeEntry> entries;
    for (const QString& method : std::as_const(methods)) {
        QStringList projections;
        database.GetProjectionNamesOfMethod(projections, method);
        if (projections.isEmpty() && !keepEmptyMethods)
            continue;
        entries.append(NameTreeEntry{method, 0, EntriesOf(projections, codes)});
    }
    return entries;
}

QString ProjectionInformation(OrvGeoDatabaseBase& database, const QString& projection) {
    QString group, system;
    if (database.FindProjectionSystem(projection, group, system))
        return database.GetSystemProjectionInfoText(group, system, 1);
    return database.GetProjectionInfoText(projection);
}
