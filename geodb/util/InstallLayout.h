#pragma once

#include <QString>

// Where the library's companions lie, found from the library's own file at run time: the
// system database in the data folder and the calculator in the program folder, both at fixed
// relative paths from the folder of the loaded library (an install prefix keeps lib/, bin/
// and share/orv/ together; the build tree mirrors that layout). Nothing here names a folder
// of the machine the library was built on.
namespace InstallLayout {

// The folder of the loaded geodetic library file; empty when it cannot be told.
QString LibraryFolder();

// The data folder (share/orv) and the program folder (bin) for a library in libraryFolder.
QString DataFolderFor(const QString& libraryFolder);
QString ProgramFolderFor(const QString& libraryFolder);

// The same for the loaded library; empty when its folder cannot be told.
QString DataFolder();
QString ProgramFolder();

} // namespace InstallLayout
