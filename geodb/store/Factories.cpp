#include "api/OrvGeoFactories.h"

#include "store/GeoStore.h"
#include "store/SqliteGeoDatabase.h"
#include "store/SqliteStaticData.h"

OrvGeoDatabaseBaseList& OrvGeoDatabaseBaseList::GetGeoDatabaseList() {
    static OrvGeoDatabaseBaseList list;
    return list;
}

OrvGeoDatabaseBase* OrvGeoDatabaseBaseList::Create(QString dllType) {
    m_lastError.clear();
    std::unique_ptr<GeoStore> store = GeoStore::Open(dllType, &m_lastError);
    if (!store)
        return nullptr;
    return new SqliteGeoDatabase(std::move(store));
}

OrvGeoStaticDatabaseList& OrvGeoStaticDatabaseList::GetGeoStaticDataList() {
    static OrvGeoStaticDatabaseList list;
    return list;
}

OrvGeoStaticDataBase* OrvGeoStaticDatabaseList::Create(QString dllType) {
    m_lastError.clear();
    std::unique_ptr<GeoStore> store = GeoStore::Open(dllType, &m_lastError);
    if (!store)
        return nullptr;
    return new SqliteStaticData(std::move(store));
}
