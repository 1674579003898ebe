// Lines of the calculator's batch mode, through a real coordinate system with a
// time-dependent datum transformation. The first byte chooses the direction, the column spec
// (with an epoch, with a point id, longitude first), the separator, the header rule, and
// whether two threads convert blocks of a few lines.
#include "FuzzInput.h"

#include "BatchConverter.h"
#include "engine/GeoCoordSys.h"
#include "tests/support/TimeDependentUtm.h"

#include <QCoreApplication>

#include <cstdio>
#include <memory>
#include <vector>

namespace {

std::unique_ptr<GeoCoordSys> MakeSystem() {
    const SystemDefinition def = TimeDependentUtm();
    auto system = std::make_unique<GeoCoordSys>();
    if (!system->Define(def))
        FuzzInput::Fail(qPrintable(system->LastError()));
    return system;
}

// One object per converting thread, as terrameter --batch has.
GeoCoordSys* System(int thread) {
    static const std::unique_ptr<GeoCoordSys> first = MakeSystem();
    static const std::unique_ptr<GeoCoordSys> second = MakeSystem();
    return thread == 0 ? first.get() : second.get();
}

constexpr const char* Specs[2][4] = {{"", "lat,lon,h,epoch", "id,lat,lon,h", "lon,lat"},
                                     {"", "e,n,z,epoch", "id,e,n,z", "n,e"}};
constexpr BatchFormat::Separator Separators[4] = {
    BatchFormat::Separator::Auto, BatchFormat::Separator::Comma, BatchFormat::Separator::Tab,
    BatchFormat::Separator::Space};
constexpr BatchConverter::Header Headers[4] = {
    BatchConverter::Header::Detect, BatchConverter::Header::Present, BatchConverter::Header::Absent,
    BatchConverter::Header::Detect};
constexpr std::size_t SmallBlockBytes = 64;

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    // Never destroyed: Qt cannot take its application apart in the exit handlers.
    new QCoreApplication(*argc, *argv);
    System(0);
    System(1);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    // A copy: fmemopen wants writable memory.
    std::string bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    std::FILE* in = fmemopen(bytes.data(), bytes.size(), "r");
    std::FILE* out = std::fopen("/dev/null", "w");
    if (!in || !out) {
        if (in)
            std::fclose(in);
        if (out)
            std::fclose(out);
        return 0;
    }
    const std::uint8_t choice = data[0];
    const bool inverse = choice & 1;
    BatchConverter::Settings settings;
    QString error;
    if (!BatchFormat::ColumnSpec::Parse(QString::fromLatin1(Specs[inverse][(choice >> 1) & 3]),
                                        inverse, settings.columns, error))
        FuzzInput::Fail(qPrintable(error));
    settings.separator = Separators[(choice >> 3) & 3];
    settings.header = Headers[(choice >> 5) & 3];
    std::vector<OrvGeoCoordSysBase*> systems{System(0)};
    if (choice & 0x80) {
        settings.blockBytes = SmallBlockBytes;
        systems.push_back(System(1));
    }
    BatchConverter converter(systems, settings);
    std::size_t reported = 0, lastLine = 0;
    bool ordered = true;
    const BatchConverter::Result r =
        converter.Run(in, out, [&](std::size_t line, const std::string&) {
            ordered = ordered && line > lastLine;
            lastLine = line;
            ++reported;
        });
    std::fclose(in);
    std::fclose(out);
    FuzzInput::Check(!r.readFailed && !r.writeFailed, "the run failed");
    FuzzInput::Check(r.failed == reported, "failed lines and reports disagree");
    FuzzInput::Check(ordered, "reports out of line order");
    FuzzInput::Check(r.converted + r.failed <= r.lines, "more results than lines");
    return 0;
}
