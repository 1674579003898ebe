#include "api/ProjectionMethods.h"

#include <array>

namespace ProjectionMethods {

namespace {

// Parameter rows. Names are the EPSG parameter names (the spellings of projectionParamKeys
// where that table has them); the order is the order in which EPSG lists them.
constexpr Param LatNat{"Latitude of natural origin", 8801, PRM_LATITUDE, 0.0};
constexpr Param LonNat{"Longitude of natural origin", 8802, PRM_LONGITUDE, 0.0};
constexpr Param ScaleNat{"Scale factor at natural origin", 8805, PRM_SCALE, 1.0};
constexpr Param FalseE{"False easting", 8806, PRM_LENGTH, 0.0};
constexpr Param FalseN{"False northing", 8807, PRM_LENGTH, 0.0};
constexpr Param LatFalse{"Latitude of false origin", 8821, PRM_LATITUDE, 0.0};
constexpr Param LonFalse{"Longitude of false origin", 8822, PRM_LONGITUDE, 0.0};
constexpr Param Lat1{"Latitude of 1st standard parallel", 8823, PRM_LATITUDE, 0.0};
constexpr Param Lat2{"Latitude of 2nd standard parallel", 8824, PRM_LATITUDE, 0.0};
constexpr Param EastFalse{"Easting at false origin", 8826, PRM_LENGTH, 0.0};
constexpr Param NorthFalse{"Northing at false origin", 8827, PRM_LENGTH, 0.0};
constexpr Param LatCentre{"Latitude of projection centre", 8811, PRM_LATITUDE, 0.0};
constexpr Param LonCentre{"Longitude of projection centre", 8812, PRM_LONGITUDE, 0.0};
constexpr Param Azimuth{"Azimuth of initial line", 8813, PRM_PLAIN, 0.0};
constexpr Param SkewAngle{"Angle from Rectified to Skew Grid", 8814, PRM_PLAIN, 0.0};
constexpr Param ScaleLine{"Scale factor on initial line", 8815, PRM_SCALE, 1.0};
constexpr Param EastCentre{"Easting at projection centre", 8816, PRM_LENGTH, 0.0};
constexpr Param NorthCentre{"Northing at projection centre", 8817, PRM_LENGTH, 0.0};
constexpr Param LatStd{"Latitude of standard parallel", 8832, PRM_LATITUDE, 0.0};
constexpr Param LonOrigin{"Longitude of origin", 8833, PRM_LONGITUDE, 0.0};
constexpr Param LatPseudo{"Latitude of pseudo standard parallel", 8818, PRM_LATITUDE, 0.0};
constexpr Param ScalePseudo{"Scale factor on pseudo standard parallel", 8819, PRM_SCALE, 1.0};
constexpr Param CoLatCone{"Co-latitude of cone axis", 1036, PRM_PLAIN, 0.0};
constexpr Param EllScale{"Ellipsoid scaling factor", 1038, PRM_SCALE, 1.0};
constexpr Param PlaneHeight{"Projection plane origin height", 1039, PRM_LENGTH, 0.0};

// UTM: the central meridian (row 1) and the false northing (row 4) follow the zone and
// hemisphere rows, which are kept hidden with the projection.
constexpr Param UtmParams[] = {
    LatNat,
    LonNat,
    {"Scale factor at natural origin", 8805, PRM_SCALE, 0.9996},
    {"False easting", 8806, PRM_LENGTH, 500000.0},
    FalseN,
    {"UTM zone", 0, PRM_HIDDEN, 0.0},
    {"Hemisphere", 0, PRM_HIDDEN, 0.0},
};
constexpr Param NaturalOriginScaled[] = {LatNat, LonNat, ScaleNat, FalseE, FalseN};
constexpr Param NaturalOrigin[] = {LatNat, LonNat, FalseE, FalseN};
constexpr Param FalseOrigin2Sp[] = {LatFalse, LonFalse, Lat1, Lat2, EastFalse, NorthFalse};
constexpr Param Michigan[] = {LatFalse, LonFalse, Lat1, Lat2, EastFalse, NorthFalse, EllScale};
constexpr Param PolarB[] = {LatStd, LonOrigin, FalseE, FalseN};
constexpr Param HotineA[] = {LatCentre, LonCentre, Azimuth, SkewAngle, ScaleLine, FalseE, FalseN};
constexpr Param HotineB[] = {LatCentre, LonCentre,  Azimuth,    SkewAngle,
                             ScaleLine, EastCentre, NorthCentre};
constexpr Param Laborde[] = {LatCentre, LonCentre, Azimuth, ScaleLine, FalseE, FalseN};
constexpr Param FirstParallel[] = {Lat1, LonNat, FalseE, FalseN};
constexpr Param EqualEarth[] = {LonNat, FalseE, FalseN};
constexpr Param Krovak[] = {LatCentre,   LonOrigin, CoLatCone, LatPseudo,
                            ScalePseudo, FalseE,    FalseN};
constexpr Param ColombiaUrban[] = {LatNat, LonNat, FalseE, FalseN, PlaneHeight};

constexpr int CodesTm[] = {9807, 1111}; // 1111 is the 3D form of the same formulas
constexpr int CodesTmSouth[] = {9808};
constexpr int CodesLcc1[] = {9801};
constexpr int CodesLcc2[] = {9802};
constexpr int CodesObliqueStereo[] = {9809};
constexpr int CodesPolarA[] = {9810};
constexpr int CodesPolarB[] = {9829};
constexpr int CodesHotineA[] = {9812};
constexpr int CodesHotineB[] = {9815};
constexpr int CodesMercA[] = {9804};
constexpr int CodesMercB[] = {9805};
constexpr int CodesCassini[] = {9806};
constexpr int CodesAlbers[] = {9822};
constexpr int CodesLaea[] = {9820};
constexpr int CodesColombia[] = {1052};
constexpr int CodesLaeaSpherical[] = {1027};
constexpr int CodesPolyconic[] = {9818};
constexpr int CodesMichigan[] = {1051};
constexpr int CodesEqualEarth[] = {1078};
constexpr int CodesKrovak[] = {9819, 1041}; // south-west and north-east orientated axes
constexpr int CodesEqcSpherical[] = {1029};
constexpr int CodesPseudoMerc[] = {1024};
constexpr int CodesCeaSpherical[] = {9834};
constexpr int CodesHyperCassini[] = {9833};
constexpr int CodesNzmg[] = {9811};
constexpr int CodesLccBelgium[] = {9803};
constexpr int CodesLaborde[] = {9813};
constexpr int CodesModAzEq[] = {9832};
constexpr int CodesCea[] = {9835};
constexpr int CodesGuam[] = {9831};

// Ids 16 to 31 are the further EPSG methods that the imported systems use most and that
// PROJ computes; every other EPSG method falls to id 32.
constexpr std::array<Method, 32> Methods = {{
    {1, "UTM", {}, UtmParams, false, "tmerc"},
    {2, "Transverse Mercator", CodesTm, NaturalOriginScaled, true, "tmerc"},
    {3, "Transverse Mercator (South Orientated)", CodesTmSouth, NaturalOriginScaled, true, "tmerc"},
    {4, "Lambert Conic Conformal (1SP)", CodesLcc1, NaturalOriginScaled, true, "lcc"},
    {5, "Lambert Conic Conformal (2SP)", CodesLcc2, FalseOrigin2Sp, true, "lcc"},
    {6, "Oblique Stereographic", CodesObliqueStereo, NaturalOriginScaled, true, "sterea"},
    {7, "Polar Stereographic (variant A)", CodesPolarA, NaturalOriginScaled, true, "stere"},
    {8, "Polar Stereographic (variant B)", CodesPolarB, PolarB, true, "stere"},
    {9, "Hotine Oblique Mercator (variant A)", CodesHotineA, HotineA, true, "omerc"},
    {10, "Hotine Oblique Mercator (variant B)", CodesHotineB, HotineB, true, "omerc"},
    {11, "Mercator (variant A)", CodesMercA, NaturalOriginScaled, true, "merc"},
    {12, "Mercator (variant B)", CodesMercB, FirstParallel, true, "merc"},
    {13, "Cassini-Soldner", CodesCassini, NaturalOrigin, true, "cass"},
    {14, "Albers Equal Area", CodesAlbers, FalseOrigin2Sp, true, "aea"},
    {15, "Lambert Azimuthal Equal Area", CodesLaea, NaturalOrigin, true, "laea"},
    {16, "Colombia Urban", CodesColombia, ColombiaUrban, true, "col_urban"},
    {17, "Lambert Azimuthal Equal Area (Spherical)", CodesLaeaSpherical, NaturalOrigin, true,
     "laea"},
    {18, "American Polyconic", CodesPolyconic, NaturalOrigin, true, "poly"},
    {19, "Lambert Conic Conformal (2SP Michigan)", CodesMichigan, Michigan, true, "lcc"},
    {20, "Equal Earth", CodesEqualEarth, EqualEarth, true, "eqearth"},
    {21, "Krovak", CodesKrovak, Krovak, true, "krovak"},
    {22, "Equidistant Cylindrical (Spherical)", CodesEqcSpherical, FirstParallel, true, "eqc"},
    {23, "Popular Visualisation Pseudo Mercator", CodesPseudoMerc, NaturalOrigin, true, "webmerc"},
    {24, "Lambert Cylindrical Equal Area (Spherical)", CodesCeaSpherical, FirstParallel, true,
     "cea"},
    {25, "Hyperbolic Cassini-Soldner", CodesHyperCassini, NaturalOrigin, true, "cass"},
    {26, "New Zealand Map Grid", CodesNzmg, NaturalOrigin, true, "nzmg"},
    {27, "Lambert Conic Conformal (2SP Belgium)", CodesLccBelgium, FalseOrigin2Sp, true, "lcc"},
    {28, "Laborde Oblique Mercator", CodesLaborde, Laborde, true, "labrd"},
    {29, "Modified Azimuthal Equidistant", CodesModAzEq, NaturalOrigin, true, "aeqd"},
    {30, "Lambert Cylindrical Equal Area", CodesCea, FirstParallel, true, "cea"},
    {31, "Guam Projection", CodesGuam, NaturalOrigin, true, "aeqd"},
    // The parameters of a projection of this method are those EPSG gives, as stored.
    {NotImplementedId, "Not implemented", {}, {}, true, ""},
}};

} // namespace

std::span<const Method> All() {
    return Methods;
}

const Method* ById(int id) {
    if (id < 1 || id > static_cast<int>(Methods.size()))
        return nullptr;
    return &Methods[static_cast<std::size_t>(id - 1)];
}

const Method* ByName(const QString& name) {
    for (const Method& method : Methods) {
        if (name.compare(QLatin1String(method.name), Qt::CaseInsensitive) == 0)
            return &method;
    }
    return nullptr;
}

const Method* ByEpsgCode(int epsgMethodCode) {
    if (epsgMethodCode > 0) {
        for (const Method& method : Methods) {
            for (int code : method.epsgMethodCodes) {
                if (code == epsgMethodCode)
                    return &method;
            }
        }
    }
    return ById(NotImplementedId);
}

} // namespace ProjectionMethods
