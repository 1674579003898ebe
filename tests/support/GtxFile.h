#pragma once

#include <QString>

#include <vector>

// Writes a small exact .gtx grid: the 40-byte big-endian header (south latitude, west
// longitude, latitude step, longitude step as doubles; rows, columns as int32), then the rows
// from the south, west to east, as big-endian float32. Creates the folders on the way.
bool WriteGtx(const QString& path, double south, double west, double dlat, double dlon, int rows,
              int cols, const std::vector<float>& values);
