#include "util/PathUtils.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

bool isSeparator(QChar c) {
    return c == u'/' || c == u'\\';
}

// "C:" at the start of a path (a drive without a folder).
bool startsWithDrive(const QString& path) {
    return path.size() >= 2 && path[1] == u':' && path[0].isLetter() && path[0].unicode() < 128;
}

// The source folder a CMake build folder was configured from, read from its CMakeCache.txt.
QString sourceFolderOfCache(const QString& buildFolder) {
    QFile cache(QDir(buildFolder).filePath(QStringLiteral("CMakeCache.txt")));
    if (!cache.open(QIODevice::ReadOnly | QIODevice::Text))
        return QString();
    const QByteArray key = "CMAKE_HOME_DIRECTORY:INTERNAL=";
    // The cache is small; a cap keeps a stray huge file from being read whole.
    for (int lines = 0; lines < 20000 && !cache.atEnd(); ++lines) {
        const QByteArray line = cache.readLine(64 * 1024).trimmed();
        if (line.startsWith(key))
            return QString::fromUtf8(line.mid(key.size()));
    }
    return QString();
}

bool isSourceRoot(const QString& folder) {
    return !folder.isEmpty() &&
           QFileInfo(QDir(folder).filePath(QStringLiteral("CMakeLists.txt"))).isFile();
}

} // namespace

void SplitPath(const QString& path, QString& folder, QString& fileName, QString& extension) {
    qsizetype nameStart = 0;
    for (qsizetype i = path.size() - 1; i >= 0; --i) {
        if (isSeparator(path[i])) {
            nameStart = i + 1;
            break;
        }
    }
    if (nameStart == 0 && startsWithDrive(path))
        nameStart = 2;
    folder = path.left(nameStart);
    const QString name = path.mid(nameStart);

    // A leading dot belongs to the name (".profile"), and "." / ".." are names, not
    // extensions.
    qsizetype dot = name.lastIndexOf(u'.');
    bool onlyDots = true;
    for (QChar c : name)
        onlyDots = onlyDots && c == u'.';
    if (dot <= 0 || onlyDots)
        dot = -1;
    if (dot < 0) {
        fileName = name;
        extension.clear();
    } else {
        fileName = name.left(dot);
        extension = name.mid(dot);
    }
}

bool CheckAppPathForDevelopEnvironment(QString& path) {
    if (path.trimmed().isEmpty())
        return false;
    QString start = QDir::fromNativeSeparators(path);
    start.replace(u'\\', u'/');
    start = QDir::cleanPath(QFileInfo(start).absoluteFilePath());

    QDir dir(start);
    // Walk up at most a few dozen levels; a build folder sits close above the program.
    for (int depth = 0; depth < 64; ++depth) {
        const QString here = dir.absolutePath();
        QString source;
        if (QFileInfo(dir.filePath(QStringLiteral("CMakeCache.txt"))).isFile()) {
            source = sourceFolderOfCache(here);
            if (!isSourceRoot(source)) {
                QDir parent(here);
                source = parent.cdUp() ? parent.absolutePath() : QString();
            }
        } else if (dir.dirName().startsWith(QStringLiteral("build"), Qt::CaseInsensitive)) {
            QDir parent(here);
            source = parent.cdUp() ? parent.absolutePath() : QString();
        }
        // Only a folder that really holds the project's CMakeLists.txt counts as the source
        // tree, so an ordinary folder called "builds" never moves the path.
        if (isSourceRoot(source)) {
            source = QDir::cleanPath(source);
            if (!source.endsWith(u'/'))
                source += u'/';
            path = source;
            return true;
        }
        if (!dir.cdUp())
            break;
    }
    return false;
}

QString& operator<<(QString& left, const wchar_t* right) {
    if (right)
        left += QString::fromWCharArray(right);
    return left;
}

QString& operator<<(QString& left, const QString& right) {
    left += right;
    return left;
}
