#pragma once

#include <QChar>
#include <QString>

// UTM zone and hemisphere texts as the zone and hemisphere lists show them.
namespace UtmZones {

constexpr int ZoneCount = 60;

// Central meridian of zone 1..60 in degrees (6 z - 183, negative = West).
int CentralMeridian(int zone);
// "Zone %2d     (%3d %c)": zone number, meridian in whole degrees without sign, E or W.
// Zone 1 -> "Zone  1     (177 W)", zone 31 -> "Zone 31     (  3 E)".
QString ZoneText(int zone);
// Reads a zone text back; false for anything that is not exactly one of the 60 texts.
bool ParseZoneText(const QString& text, int& zone, int& meridian, QChar& letter);

QString NorthernText(); // "Northern"
QString SouthernText(); // "Southern"
// False northing of a hemisphere text: 0 for exactly "Northern", 10000000 otherwise.
double FalseNorthing(const QString& hemisphereText);

} // namespace UtmZones
