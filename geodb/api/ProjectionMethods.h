#pragma once

#include "api/GeoTypes.h"

#include <span>

// The projection methods the library knows: the list the dialogs show, the EPSG methods
// each stands for, its parameters (names as shown, EPSG parameter codes, type codes) and
// how the engine computes it. Id 1 is UTM; id 32 stands for every EPSG method that is not
// computed yet ("not implemented").
namespace ProjectionMethods {

constexpr int UtmId = 1;
constexpr int NotImplementedId = 32;

struct Param {
    const char* name;    // shown as the row label; also the stored parameter name
    int epsgCode;        // EPSG parameter code (0 for UTM zone and hemisphere)
    unsigned type;       // PrjParamType
    double defaultValue; // degrees, projection unit or plain
};

struct Method {
    int id;
    const char* name; // shown in the method lists
    std::span<const int> epsgMethodCodes;
    std::span<const Param> params;
    bool unitFree;        // false: the projection's unit is fixed as metres
    const char* projName; // the PROJ operation (e.g. "tmerc"); empty when not computed
};

// Every method, in list order (the order of GetPrjMethodNames).
std::span<const Method> All();
const Method* ById(int id);
const Method* ByName(const QString& name); // case-insensitive
// The method for an EPSG method code; the "not implemented" method for unknown codes.
const Method* ByEpsgCode(int epsgMethodCode);

} // namespace ProjectionMethods
