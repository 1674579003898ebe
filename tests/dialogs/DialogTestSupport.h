#pragma once

#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/DialogOwner.h"
#include "platform/ScriptedUi.h"
#include "support/QtPrinters.h"
#include "support/TempDataFolder.h"

#include <memory>

// The editor as the dialogs see it, on a fresh user database in a temporary folder beside
// the real system database.
class TestEditorOwner : public CoordSysEditorOwner {
public:
    TestEditorOwner();
    OrvGeoDatabaseBase* GetGeoDatabase() const override { return m_database.get(); }
    OrvGeoStaticDataBase* GetGeoStatic() const override { return m_static.get(); }
    QString CurrentSatelliteEllipsoid() const override { return satellite; }
    QString CurrentLocalEllipsoid() const override { return local; }
    QString DllType() const { return m_data.dllType(); }

    QString satellite = QStringLiteral("WGS 84");
    QString local = QStringLiteral("International 1924");

private:
    TempDataFolder m_data;
    std::unique_ptr<OrvGeoDatabaseBase> m_database;
    std::unique_ptr<OrvGeoStaticDataBase> m_static;
};

// A scripted interface whose every mismatch fails the test.
ScriptedUi::FailureHandler FailTest();
