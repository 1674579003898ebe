#include "util/InstallLayout.h"

#include <QDir>
#include <QFileInfo>

#include <dlfcn.h>

namespace {

// Any object of this library: its address names the file the library was loaded from.
const char Anchor = 0;

QString Beside(const QString& libraryFolder, const char* relative) {
    if (libraryFolder.isEmpty())
        return {};
    return QDir::cleanPath(QDir(libraryFolder).filePath(QString::fromUtf8(relative)));
}

} // namespace

namespace InstallLayout {

QString LibraryFolder() {
    Dl_info info{};
    if (dladdr(&Anchor, &info) == 0 || !info.dli_fname)
        return {};
    const QFileInfo file(QString::fromLocal8Bit(info.dli_fname));
    return file.absolutePath();
}

QString DataFolderFor(const QString& libraryFolder) {
    return Beside(libraryFolder, ORV_LIB_TO_DATA);
}

QString ProgramFolderFor(const QString& libraryFolder) {
    return Beside(libraryFolder, ORV_LIB_TO_BIN);
}

QString DataFolder() {
    return DataFolderFor(LibraryFolder());
}

QString ProgramFolder() {
    return ProgramFolderFor(LibraryFolder());
}

} // namespace InstallLayout
