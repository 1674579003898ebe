#include "api/OrvGeoFactories.h"
#include "engine/GeoCoordSys.h"

OrvGeoCoordSysList& OrvGeoCoordSysList::GetCoordSysList() {
    static OrvGeoCoordSysList list;
    return list;
}

OrvGeoCoordSysBase* OrvGeoCoordSysList::Create(QString dllType) {
    m_lastError.clear();
    std::unique_ptr<GeoStore> store = GeoStore::Open(dllType, &m_lastError);
    if (!store)
        return nullptr;
    return new GeoCoordSys(std::move(store));
}
