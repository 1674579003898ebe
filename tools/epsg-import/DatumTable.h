#pragma once

#include <QHash>
#include <QSet>
#include <QString>

#include <optional>

class ImportSession;
class UnitTable;

struct Datum {
    QString name;
    int ellipsoid = 0;
    int primeMeridian = 0;
    bool deprecated = false;
};

// proj.db's geodetic datums, with what the import needs to know about them: which are WGS 84,
// which geodetic CRS uses which, and the Greenwich twin of a datum on another meridian.
class DatumTable {
public:
    bool Load(ImportSession& session, const UnitTable& units);

    // An unknown code gives an empty datum (code 0 stands for "no datum").
    Datum Find(int code) const { return m_datums.value(code); }
    // The datum of a geodetic CRS; 0 when unknown.
    int DatumOfCrs(int crsCode) const { return m_crsDatums.value(crsCode); }
    // The WGS 84 ensemble or one of its realisations.
    bool IsWgs84(int datumCode) const { return m_wgsDatums.contains(datumCode); }
    // A datum on a prime meridian other than Greenwich takes the transformations of its
    // Greenwich twin; 0 when it has none.
    int GreenwichTwin(int datumCode) const { return m_greenwichTwins.value(datumCode); }
    // In degrees; nothing for a meridian whose longitude is not convertible.
    std::optional<double> PrimeMeridian(int code) const;

private:
    QHash<int, double> m_primeMeridians; // degrees
    QHash<int, Datum> m_datums;
    QSet<int> m_wgsDatums;
    QHash<int, int> m_crsDatums;      // geodetic CRS -> datum
    QHash<int, int> m_greenwichTwins; // datum on another prime meridian -> Greenwich datum
};
