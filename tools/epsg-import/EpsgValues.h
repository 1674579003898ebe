#pragma once

#include <QString>

#include <optional>

// Conversions of EPSG values and texts into the forms the system database stores.
namespace EpsgValues {

// EPSG angle unit codes without a plain factor.
constexpr int UomSexagesimalDms = 9110;  // DDD.MMSSsss
constexpr int UomSexagesimalDm = 9111;   // DDD.MMmmm
constexpr int UomSexagesimalDmsS = 9121; // DDD.MMSSsss as well

// DDD.MMSSsss (or DDD.MMmmm when withSeconds is false) to decimal degrees; nothing for
// minutes or seconds of 60 and above.
std::optional<double> SexagesimalToDegrees(double value, bool withSeconds = true);

// A plain number as shown in parameter rows: at most ten decimals, no trailing zeros beyond
// the sixth decimal ("500000.000000", "0.999600", "1.0000135965").
QString FormatPlain(double value);

// The group of a system from the name of its area of use: the part before the first
// " - " (the country or region), with the few spellings EPSG uses twice brought together.
QString GroupOfArea(const QString& areaName);

// Short suffix of an EPSG length unit (e.g. "m", "ftUS"); empty when none is known.
QString UnitSuffix(int epsgUnitCode);

} // namespace EpsgValues
