#pragma once

#include <QString>

// The geodetic calculator the overview page starts on the new system. Its program key (the
// base name of the calculator's program file) is a setting: the entry "Terrameter" of the
// section "Programs" of ORV.ini in the program-data folder, "terrameter" when absent or
// empty. See docs/wizard-closing.md.
namespace CalculatorProgram {

// ORV.ini section and entry of the program key.
QString Section();
QString Entry();
// The key of the calculator built with this project.
QString DefaultKey();

// The program key of the settings file at iniPath (the default key when the file, the entry
// or its value is missing).
QString ReadKey(const QString& iniPath);
// The same from ORV.ini of the program-data folder.
QString Key();

// The program file of key, started from programFolder: key followed by the platform's
// program extension (".exe" on Windows, none elsewhere) in programFolder; a key that is a
// path (it holds a separator) is taken as it stands, relative to programFolder. When the
// default key is not in programFolder (a host installed apart from the library, or a program
// running in the build tree, whose program folder is the source tree), the calculator in the
// program folder beside the library (InstallLayout::ProgramFolder) stands in when it exists.
QString ProgramFile(const QString& key, const QString& programFolder);

} // namespace CalculatorProgram
