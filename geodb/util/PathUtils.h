#pragma once

#include <QString>

// Splits a path into folder (ending in a separator), file name without extension, and
// extension with its dot. Accepts '/' and '\\' as separators, so Windows paths split the same
// on every platform. folder + fileName + extension is always the whole path:
//   "C:\\Program Files\\ORV\\app.exe" -> "C:\\Program Files\\ORV\\", "app", ".exe"
//   "archive.tar.gz" -> "", "archive.tar", ".gz";  "/etc/.profile" -> "/etc/", ".profile", ""
//   "C:app.exe" -> "C:", "app", ".exe";  "file." -> "", "file", "."
void SplitPath(const QString& path, QString& folder, QString& fileName, QString& extension);

// When the program runs from a build tree (a folder below "build*", or holding
// CMakeCache.txt above it), moves path to the source tree's root folder and returns true.
// The source root is the cache's CMAKE_HOME_DIRECTORY, else the build folder's parent; it
// counts only when it holds a CMakeLists.txt. The new path uses '/' and ends in '/'.
// Otherwise path stays as it is and the result is false.
bool CheckAppPathForDevelopEnvironment(QString& path);

// appends, as the dialogs build information texts (a null pointer appends nothing)
QString& operator<<(QString& left, const wchar_t* right);
QString& operator<<(QString& left, const QString& right);
