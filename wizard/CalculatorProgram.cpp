#include "wizard/CalculatorProgram.h"

#include "util/BrandingConfig.h"
#include "util/FileObject.h"
#include "util/InstallLayout.h"

#include <QDir>
#include <QFileInfo>

namespace {

#ifdef Q_OS_WIN
const QString ProgramExtension = QStringLiteral(".exe");
#else
const QString ProgramExtension;
#endif

} // namespace

namespace CalculatorProgram {

QString Section() {
    return QStringLiteral("Programs");
}

QString Entry() {
    return QStringLiteral("Terrameter");
}

QString DefaultKey() {
    return QStringLiteral("terrameter");
}

QString ReadKey(const QString& iniPath) {
    FileObject ini;
    QString key;
    if (iniPath.isEmpty() || !ini.FileOpen(iniPath, FileObject::Read) ||
        !ini.GetItem(Section(), Entry(), key))
        return DefaultKey();
    key = key.trimmed();
    return key.isEmpty() ? DefaultKey() : key;
}

QString Key() {
    return ReadKey(BrandingConfig::Instance().GetProgramDataFolder() + QStringLiteral("/ORV.ini"));
}

QString ProgramFile(const QString& key, const QString& programFolder) {
    QString file = key;
    if (!ProgramExtension.isEmpty() && !file.endsWith(ProgramExtension, Qt::CaseInsensitive))
        file += ProgramExtension;
    const bool isPath = file.contains(QLatin1Char('/')) || file.contains(QLatin1Char('\\'));
    const QString program = QDir::isAbsolutePath(file)
                                ? file
                                : QDir(programFolder).filePath(QDir::fromNativeSeparators(file));
    if (isPath || key != DefaultKey() || QFileInfo(program).isFile())
        return QDir::cleanPath(program);
    // A host program installed elsewhere: the calculator installed with the library.
    const QString libraryPrograms = InstallLayout::ProgramFolder();
    if (!libraryPrograms.isEmpty()) {
        const QString installed = QDir(libraryPrograms).filePath(file);
        if (QFileInfo(installed).isFile())
            return QDir::cleanPath(installed);
    }
    return QDir::cleanPath(program);
}

} // namespace CalculatorProgram
