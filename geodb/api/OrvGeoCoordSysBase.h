#pragma once

#include <QString>

#include <cstddef>

// One point of a conversion. Geographic side: latitude and longitude in decimal degrees,
// ellipsoidal height in metres (WGS 84). Grid side: Easting, Northing, Z in the system unit.
// time is the observation epoch as a decimal year from 1900 to 2200 (0 = none given: the
// transformation's default epoch applies); a point with any other time (or not a number) is
// refused, whatever the system.
struct GeoPoint {
    double x = 0; // latitude or Easting
    double y = 0; // longitude or Northing
    double z = 0; // ellipsoidal height or Z
    double time = 0;
};

// A usable coordinate system: converts WGS 84 positions to grid coordinates and back.
class OrvGeoCoordSysBase {
public:
    virtual ~OrvGeoCoordSysBase() = default;

    // s1 group, s2 system, s3 geoid model name, s4 geoid model file, s5 (always empty),
    // s6 chart datum, s7 post model name, s8 post model file, s9 ("none"). Empty override
    // strings keep what the stored system says. False: LastError() tells why.
    virtual bool DefineSystem(const QString& s1, const QString& s2, const QString& s3,
                              const QString& s4, const QString& s5, const QString& s6,
                              const QString& s7, const QString& s8, const QString& s9) = 0;

    // --- beyond the dialogs' contract ---

    // WGS 84 (lat, lon, h) -> (E, N, Z). False for a point outside a grid or the
    // projection's domain; the point is then left unchanged and LastError() says why.
    virtual bool Forward(GeoPoint& point) = 0;
    // (E, N, Z) -> WGS 84 (lat, lon, h).
    virtual bool Inverse(GeoPoint& point) = 0;
    // Converts count points in place; ok[i] tells whether point i converted. Returns the
    // number of points converted.
    virtual std::size_t ForwardArray(GeoPoint* points, bool* ok, std::size_t count) = 0;
    virtual std::size_t InverseArray(GeoPoint* points, bool* ok, std::size_t count) = 0;
    virtual QString LastError() const = 0;
};
