// Ini files (ORV.ini) as FileObject reads them, and the round trip of a value written into
// one.
#include "FuzzInput.h"

#include "util/FileObject.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

// In memory where the system has it: every save is synced to disk, and a disk allows a few
// dozen runs a second.
QTemporaryDir* Folder() {
    static QTemporaryDir dir(QDir(QStringLiteral("/dev/shm")).exists()
                                 ? QStringLiteral("/dev/shm/orv-fuzz-XXXXXX")
                                 : QDir::tempPath() + QStringLiteral("/orv-fuzz-XXXXXX"));
    return &dir;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    // Never destroyed: Qt cannot take its application apart in the exit handlers.
    new QCoreApplication(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    // The first byte says where the file ends and the value to write begins.
    const std::size_t split = std::min<std::size_t>(size - 1, data[0] * 4u);
    const QString path = QDir(Folder()->path()).filePath(QStringLiteral("ORV.ini"));
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return 0;
        if (split > 0)
            file.write(reinterpret_cast<const char*>(data + 1), qint64(split));
    }
    FileObject ini;
    if (!ini.FileOpen(path, FileObject::Read))
        return 0;
    QString out;
    bool flag = false;
    ini.GetItem(QStringLiteral("DATA_PATH_SECTION"), QStringLiteral("DataRoot"), out);
    ini.GetItem(QString(), QString(), out);
    ini.GetItem(QStringLiteral("DATA_PATH_SECTION"), QStringLiteral("UseDefaultCommonPath"), flag);

    const QString value = FuzzInput::Text(data + 1 + split, size - 1 - split);
    const QString section = value.left(4);
    const QString key = QStringLiteral("Key") + value.mid(4, 3);
    if (!ini.SetItem(section, key, value))
        return 0;
    FileObject back;
    FuzzInput::Check(back.FileOpen(path, FileObject::Read), "a saved file does not open");
    QString read;
    FuzzInput::Check(back.GetItem(section, key, read), "a saved item is missing");
    FuzzInput::Check(read == value, "a saved value reads back otherwise");
    return 0;
}
