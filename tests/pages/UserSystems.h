#pragma once

#include "api/OrvGeoFactories.h"
#include "util/GeobaseToGeostatic.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

// Saves a user system into the data source's user database, as a copy of the stored system
// "OSGB36 / British National Grid" under another name and group; configure may change the
// copy before it is saved. Goes through a static-data object of its own, as another dialog
// of the host would.
inline void StoreUserSystem(const QString& dllType, const QString& group, const QString& name,
                            const std::function<void(OrvGeoStaticDataBase&)>& configure = {}) {
    std::unique_ptr<OrvGeoDatabaseBase> db(
        OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(dllType));
    std::unique_ptr<OrvGeoStaticDataBase> sd(
        OrvGeoStaticDatabaseList::GetGeoStaticDataList().Create(dllType));
    ASSERT_TRUE(db && sd);
    ASSERT_TRUE(OrvGeoWizard::Utils::GeobaseToGeostatic(
        QStringLiteral("UK"), QStringLiteral("OSGB36 / British National Grid"), QString(), db.get(),
        sd.get()));
    sd->AssignSystemName(name);
    sd->SetGroupName(group);
    if (configure)
        configure(*sd);
    ASSERT_TRUE(sd->SaveCoordSys()) << sd->LastError().toStdString();
}
