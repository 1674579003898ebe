#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <array>
#include <initializer_list>

// Scope bit mask of the two databases: user-defined entries, pre-defined (read-only) entries.
enum geodb_type : int { GEODB_USER = 1, GEODB_SYSTEM = 2, GEODB_ALL = 3 };

// Datum transformation method indexes as the method list holds them.
enum DtfMethodIndex : int {
    DTF_NONE = 0,
    DTF_7_POSITION_VECTOR = 1,   // seven values, rotation sign +1
    DTF_7_COORDINATE_FRAME = 2,  // seven values, rotation sign -1
    DTF_15_POSITION_VECTOR = 3,  // seven values, their yearly rates and the epoch, sign +1
    DTF_15_COORDINATE_FRAME = 4, // the same with sign -1
};

// The fifteen values of a datum transformation: shifts X, Y, Z (m), rotations X, Y, Z
// (arc-seconds), scale (ppm), the seven yearly rates in the same order, the epoch (year).
//
// Rotations and their rates are held in the position-vector sign wherever a record holds
// them: in both databases and in what GetDtfParameters gives and SetDtfParameters takes. A
// method's rotation sign (DtfRotationSign) turns them into the method's own convention, the
// one they are published in, shown in (the dialogs through the unit converter's rotation
// unit) and printed in: coordinate frame rotations are the held ones negated.
using DtfValues = std::array<double, 15>;

// +1 for the position vector methods (and none), -1 for the coordinate frame methods.
inline double DtfRotationSign(int methodIndex) {
    return methodIndex == DTF_7_COORDINATE_FRAME || methodIndex == DTF_15_COORDINATE_FRAME ? -1.0
                                                                                           : 1.0;
}

// The values with the method's rotation sign applied to the three rotations and their rates:
// held values become the method's own, and the method's own become held ones (a sign change
// is exact, so the way back gives the same numbers; a zero stays 0, never -0).
inline DtfValues DtfValuesInMethodSign(DtfValues values, int methodIndex) {
    const double sign = DtfRotationSign(methodIndex);
    for (const int i : {3, 4, 5, 10, 11, 12})
        values[i] = values[i] == 0.0 ? 0.0 : values[i] * sign;
    return values;
}

// Option byte of a datum transformation record.
enum DtfOption : unsigned char {
    // The values are those published for the direction local datum -> WGS 84; the
    // transformation WGS 84 -> local applies them inverted (exact, unlike negating them).
    DTF_OPTION_PUBLISHED_TO_WGS84 = 0x01,
};

// Six defining values of an ellipsoid, in this order: semi-major axis a (m), semi-minor
// axis b (m), inverse flattening 1/f (0 for a sphere), flattening f, first eccentricity
// squared e^2, second eccentricity squared e'^2.
using EllipsoidValues = std::array<double, 6>;

// Numeric values of a projection's parameters, in the order of its parameter names.
// Angles (types 1 and 2) in decimal degrees, lengths (type 5) in the projection's unit.
struct PrjParamBlock {
    static constexpr int MaxParams = 9;
    int count = 0;
    std::array<double, MaxParams> values{};
};

// Type codes of projection parameters.
enum PrjParamType : unsigned {
    PRM_PLAIN = 0,     // plain number
    PRM_LATITUDE = 1,  // angle shown as a latitude text
    PRM_LONGITUDE = 2, // angle shown as a longitude text
    PRM_HIDDEN = 3,    // kept with the projection, not shown (UTM zone, hemisphere)
    PRM_SCALE = 4,     // scale factor, default 1.0
    PRM_LENGTH = 5,    // length in the projection's unit
};

// Unit category of length units.
constexpr int UNIT_CATEGORY_LENGTH = 8;

// The kinds of entries the database holds, for the look-ups that work on any of them.
enum class GeoEntryKind { Ellipsoid, DatumTransformation, Projection, Unit, CoordSys };

// Observation epochs a point may carry, as decimal years. 0 means "none given": the stored
// default epoch of the datum transformation applies. Anything else outside the range (or not
// a number) is refused by every reader of an epoch.
constexpr double ObservationEpochNone = 0.0;
constexpr double ObservationEpochMin = 1900.0;
constexpr double ObservationEpochMax = 2200.0;
inline bool IsObservationEpochValid(double epoch) {
    return epoch == ObservationEpochNone ||
           (epoch >= ObservationEpochMin && epoch <= ObservationEpochMax); // false for NaN
}
