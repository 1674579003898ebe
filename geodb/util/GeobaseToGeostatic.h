#pragma once

#include <QString>

class OrvGeoDatabaseBase;
class OrvGeoStaticDataBase;

namespace OrvGeoWizard::Utils {

// Copies the definition of a stored system from the database object into the static data,
// so that the following pages start from it (and saving it under a new name gives an equal
// system). prjMethodName, when not empty, is the projection method the caller has chosen.
// False when an object is missing or the system is not stored.
bool GeobaseToGeostatic(const QString& group, const QString& system, const QString& prjMethodName,
                        OrvGeoDatabaseBase* db, OrvGeoStaticDataBase* sd);

} // namespace OrvGeoWizard::Utils
