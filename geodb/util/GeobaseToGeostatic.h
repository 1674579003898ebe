#pragma once

#include <QString>

class OrvGeoDatabaseBase;
class OrvGeoStaticDataBase;

namespace OrvGeoWizard::Utils {

// Copies the definition of a stored system from the database object into the static data,
// so that the following pages start from it (and saving it under a new name gives an equal
// system). Every field of the definition is written, also over a system copied before; the
// name and group the static data was given stay. The stored projection method wins over
// prjMethodName, the caller's, which is used only for a system that names none. False (and
// nothing written) when an object is missing or the system is not stored.
bool GeobaseToGeostatic(const QString& group, const QString& system, const QString& prjMethodName,
                        OrvGeoDatabaseBase* db, OrvGeoStaticDataBase* sd);

} // namespace OrvGeoWizard::Utils
