#pragma once

#include <QString>

// EPSG codes and names the import relies on.
namespace EpsgCodes {

constexpr int UomMetre = 9001;
constexpr int UomArcSecond = 9104;
constexpr int UomPpm = 9202;
constexpr int UomMetrePerYear = 1042;
constexpr int UomArcSecondPerYear = 1043;
constexpr int UomPpmPerYear = 1041;
constexpr int UomYear = 1029;
constexpr int UomDegree = 9102;
// Angle units without a plain factor.
constexpr int UomSexagesimalDms = 9110;  // DDD.MMSSsss
constexpr int UomSexagesimalDm = 9111;   // DDD.MMmmm
constexpr int UomSexagesimalDmsS = 9121; // DDD.MMSSsss as well

constexpr int DatumWgs84 = 6326;
constexpr int EllipsoidWgs84 = 7030;
constexpr int MethodTransverseMercator = 9807;

inline const QString Wgs84Name = QStringLiteral("WGS 84");
inline const QString Wgs84DtfName = QStringLiteral("WGS 84 to WGS 84");
// The metre keeps the wizard's default unit name.
inline const QString MetreName = QStringLiteral("Meters");

} // namespace EpsgCodes
