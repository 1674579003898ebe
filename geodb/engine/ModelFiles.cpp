#include "engine/ModelFiles.h"

#include "api/GeoKeys.h"

#include <QDir>
#include <QFileInfo>

#include <proj.h>

namespace ModelFiles {

namespace {

const QStringList GridExtensions = {QStringLiteral("gtx"), QStringLiteral("tif"),
                                    QStringLiteral("tiff")};

QString Suffix(const QString& path) {
    return QFileInfo(path).suffix().toLower();
}

// An entry of folder whose name equals name without regard to case.
QString EntryNoCase(const QString& folder, const QString& name) {
    const QDir dir(folder);
    if (dir.exists(name))
        return dir.filePath(name);
    const QStringList entries = dir.entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    for (const QString& entry : entries) {
        if (entry.compare(name, Qt::CaseInsensitive) == 0)
            return dir.filePath(entry);
    }
    return {};
}

// name with one of the grid extensions when it has none of its own.
QString GridFileIn(const QString& folder, const QString& name) {
    if (folder.isEmpty())
        return {};
    QString found = EntryNoCase(folder, name);
    if (!found.isEmpty() && QFileInfo(found).isFile())
        return found;
    if (!QFileInfo(name).suffix().isEmpty())
        return {};
    for (const QString& ext : GridExtensions) {
        found = EntryNoCase(folder, name + QLatin1Char('.') + ext);
        if (!found.isEmpty() && QFileInfo(found).isFile())
            return found;
    }
    return {};
}

} // namespace

bool IsVerticalGrid(const QString& path) {
    return GridExtensions.contains(Suffix(path));
}

bool IsHorizontalGrid(const QString& path) {
    const QString ext = Suffix(path);
    return ext == u"gsb" || ext == u"tif" || ext == u"tiff";
}

QString CountryFolder(int methodIndex) {
    switch (methodIndex) {
    case 6:
        return QStringLiteral("Sweden");
    case 14:
        return QStringLiteral("Denmark");
    case 19:
        return QStringLiteral("Norway");
    case GeoidKey::Osgm:
    case GeoidKey::Ostn:
        return QStringLiteral("United Kingdom");
    case GeoidKey::Gtx:
    case GeoidKey::Ntv2Shift:
        return QStringLiteral("Netherlands");
    default:
        return {};
    }
}

QString ResolveNoCase(const QString& base, const QString& relative) {
    QString current = base;
    const QStringList parts =
        QDir::fromNativeSeparators(relative).split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (const QString& part : parts) {
        current = EntryNoCase(current, part);
        if (current.isEmpty())
            return {};
    }
    return current;
}

QString Find(const QString& fileName, int methodIndex, const QString& commonFolder,
             const QStringList& projFolders) {
    const QString name = QDir::fromNativeSeparators(fileName.trimmed());
    if (name.isEmpty())
        return {};
    if (QFileInfo(name).isAbsolute())
        return QFileInfo(name).isFile() ? name : QString();

    QStringList folders;
    if (!commonFolder.isEmpty()) {
        const QString models = ResolveNoCase(commonFolder, QStringLiteral("General/Geoidmodels"));
        if (!models.isEmpty()) {
            const QString country = CountryFolder(methodIndex);
            if (!country.isEmpty())
                folders << ResolveNoCase(models, country);
            folders << models;
            const QStringList subs = QDir(models).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
            for (const QString& sub : subs)
                folders << QDir(models).filePath(sub);
        }
    }
    folders << projFolders;
    for (const QString& folder : folders) {
        const QString found = GridFileIn(folder, name);
        if (!found.isEmpty())
            return found;
    }
    return {};
}

QString FindVDatumGeoid(const QString& model, const QString& commonFolder) {
    if (commonFolder.isEmpty() || model.trimmed().isEmpty())
        return {};
    return GridFileIn(ResolveNoCase(commonFolder, QStringLiteral("vdatum/core")), model.trimmed());
}

QString FindChartDatumGrid(const QString& model, const QString& chartDatum,
                           const QString& commonFolder) {
    if (commonFolder.isEmpty() || model.trimmed().isEmpty())
        return {};
    const QString folder = ResolveNoCase(commonFolder, QStringLiteral("vdatum/") +
                                                           QFileInfo(model.trimmed()).baseName());
    const QString datum = chartDatum.trimmed().toLower();
    return GridFileIn(folder, datum == u"lmsl" ? QStringLiteral("tss") : datum);
}

QStringList ProjDataFolders() {
    QStringList folders;
    const PJ_INFO info = proj_info();
    if (info.searchpath) {
        const QString paths = QString::fromUtf8(info.searchpath);
        for (const QString& path : paths.split(QLatin1Char(':'), Qt::SkipEmptyParts)) {
            if (!folders.contains(path))
                folders << path;
        }
    }
    const QString installed = QStringLiteral(ORV_PROJ_DATA_DIR);
    if (!folders.contains(installed))
        folders << installed;
    return folders;
}

} // namespace ModelFiles
