#pragma once

#include "dialogs/NameTreeModel.h"

class OrvGeoDatabaseBase;
class OrvGeoStaticDataBase;

// The stored projections under their methods, as the projection picker and the wizard's
// projection page show them: the methods of the static data in their order, each with the
// database's projections of that method (and their EPSG codes). A method nothing is stored
// for is kept only when keepEmptyMethods is set.
QList<NameTreeEntry> ProjectionTreeEntries(OrvGeoStaticDataBase& staticData,
                                           OrvGeoDatabaseBase& database, bool keepEmptyMethods);

// The information text of a projection: that of the stored system using it, when one does,
// else that of the projection itself.
QString ProjectionInformation(OrvGeoDatabaseBase& database, const QString& projection);
