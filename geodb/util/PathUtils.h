#pragma once

#include <QString>

// Splits a path into folder (ending in a separator), file name without extension, and
// extension with its dot. Accepts '/' and '\\' as separators.
void SplitPath(const QString& path, QString& folder, QString& fileName, QString& extension);

// When the program runs from a build tree (a folder below "build*", or holding
// CMakeCache.txt above it), moves path to the source tree's root folder and returns true.
bool CheckAppPathForDevelopEnvironment(QString& path);

// appends, as the dialogs build information texts
QString& operator<<(QString& left, const wchar_t* right);
QString& operator<<(QString& left, const QString& right);
