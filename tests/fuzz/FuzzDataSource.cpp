// The data-source string ("DLL type") the host hands to every dialog.
#include "FuzzInput.h"

#include "store/DataSource.h"

#include <QCoreApplication>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    // Never destroyed: Qt cannot take its application apart in the exit handlers.
    new QCoreApplication(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text = FuzzInput::Text(data, size);
    QString why;
    const std::optional<DataSource> source = DataSource::Resolve(text, &why);
    if (!source) {
        FuzzInput::Check(!why.isEmpty(), "refused without a reason");
        return 0;
    }
    FuzzInput::Check(!source->dataFolder.isEmpty() && !source->userDbPath.isEmpty() &&
                         !source->systemDbPath.isEmpty(),
                     "an accepted string names no files");
    return 0;
}
