#pragma once

#include <QString>

// The common data folder of a data source, where geoid, chart-datum and shift-model files
// lie. ORV.ini in the data source's data folder names it: section DATA_PATH_SECTION, the
// data root under pathKeys[2]; "UseDefaultCommonPath" true or absent gives
// <data root>/Projects Common Files, false the entry under pathKeys[4] (or the data root
// itself when that entry is absent). False when ORV.ini or the data root is missing.
bool GetCommonDataFolder(const QString& dataFolder, QString& commonFolder);
