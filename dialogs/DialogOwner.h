#pragma once

#include <QString>

class OrvGeoDatabaseBase;
class OrvGeoStaticDataBase;

// What the pickers and naming dialogs need of the window that opens them: the database and
// static-data objects it owns (borrowed, never destroyed by a dialog, either may be null)
// and the ellipsoids of the system it is working on. The wizard sheet and the editor both
// offer it, so the dialogs depend on neither.
class DialogOwner {
public:
    virtual OrvGeoDatabaseBase* GetGeoDatabase() const = 0;
    virtual OrvGeoStaticDataBase* GetGeoStatic() const = 0;
    // The satellite (WGS 84 side) and the local ellipsoid of the current system.
    virtual QString CurrentSatelliteEllipsoid() const = 0;
    virtual QString CurrentLocalEllipsoid() const = 0;

protected:
    ~DialogOwner() = default;
};

// The coordinate-system editor as its dialogs see it. A distinct type, so that each dialog
// keeps apart its constructor for the editor and the one for the wizard sheet.
class CoordSysEditorOwner : public DialogOwner {
protected:
    ~CoordSysEditorOwner() = default;
};
