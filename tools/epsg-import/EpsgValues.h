#pragma once

#include <QString>

#include <optional>

// Conversions of EPSG values and texts into the forms the system database stores.
namespace EpsgValues {

// DDD.MMSSsss (or DDD.MMmmm when withSeconds is false) to decimal degrees; nothing for
// minutes or seconds of 60 and above.
std::optional<double> SexagesimalToDegrees(double value, bool withSeconds = true);

// A plain number as shown in parameter rows: at most ten decimals, no trailing zeros beyond
// the sixth decimal ("500000.000000", "0.999600", "1.0000135965").
QString FormatPlain(double value);

// The text of a projection parameter: latitudes and longitudes in degrees, minutes and
// seconds ("004°22'02.9520000\"E"), everything else as FormatPlain.
QString ParamText(double value, unsigned type);

// Text columns are NOT NULL: a missing EPSG text is stored empty.
QString NotNull(const QString& text);

// Two EPSG texts (scope and remarks) as one, a line each; an empty one is left out.
QString JoinTexts(const QString& first, const QString& second);

// The group of a system from the name of its area of use: the part before the first
// " - " (the country or region), with the few spellings EPSG uses twice brought together.
QString GroupOfArea(const QString& areaName);

// Short suffix of an EPSG length unit (e.g. "m", "ftUS"); empty when none is known.
QString UnitSuffix(int epsgUnitCode);

} // namespace EpsgValues
