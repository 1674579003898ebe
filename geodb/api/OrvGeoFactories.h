#pragma once

#include "api/OrvGeoCoordSysBase.h"
#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"

// Factory lists. Create takes the data-source string ("DLL type": empty for the default
// databases, "sqlite:<folder>" for a user database and ORV.ini in <folder>) and returns a
// new object owned by the caller, or null when that data source cannot be opened.
class OrvGeoDatabaseBaseList {
public:
    static OrvGeoDatabaseBaseList& GetGeoDatabaseList();
    OrvGeoDatabaseBase* Create(QString dllType);
    // Why the last Create returned null.
    QString LastError() const { return m_lastError; }

private:
    QString m_lastError;
};

class OrvGeoStaticDatabaseList {
public:
    static OrvGeoStaticDatabaseList& GetGeoStaticDataList();
    OrvGeoStaticDataBase* Create(QString dllType);
    QString LastError() const { return m_lastError; }

private:
    QString m_lastError;
};

class OrvGeoCoordSysList {
public:
    static OrvGeoCoordSysList& GetCoordSysList();
    OrvGeoCoordSysBase* Create(QString dllType);
    QString LastError() const { return m_lastError; }

private:
    QString m_lastError;
};
