// CSV lines of the calculator's batch mode ("lat,lon,h[,epoch]"), through a real
// coordinate system with a time-dependent datum transformation.
#include "FuzzInput.h"

#include "BatchConverter.h"
#include "engine/GeoCoordSys.h"

#include <QCoreApplication>

#include <cstdio>
#include <memory>

namespace {

GeoCoordSys* System() {
    static std::unique_ptr<GeoCoordSys> cs = [] {
        SystemDefinition def;
        def.system.name = QStringLiteral("fuzz");
        def.satEllipsoid.values = {6378137.0, 6356752.314245, 298.257223563, 0, 0, 0};
        def.localEllipsoid.values = {6378137.0, 6356752.314140, 298.257222101, 0, 0, 0};
        def.dtf.name = QStringLiteral("fuzz dtf");
        def.dtf.methodIndex = DTF_15_COORDINATE_FRAME;
        def.dtf.values = {0.1,   0.2,   0.3,    0.001,  0.002,  0.003,   0.01,  0.001,
                          0.001, 0.001, 0.0001, 0.0001, 0.0001, 0.00001, 2010.0};
        def.projection.methodId = 1;
        def.projection.epsgMethodCode = 9807;
        def.projection.params = {{QStringLiteral("Latitude of natural origin"), 0, {}, 1},
                                 {QStringLiteral("Longitude of natural origin"), 3, {}, 2},
                                 {QStringLiteral("Scale factor at natural origin"), 0.9996, {}, 4},
                                 {QStringLiteral("False easting"), 500000, {}, 5},
                                 {QStringLiteral("False northing"), 0, {}, 5}};
        def.system.utmZoneText = QStringLiteral("Zone 31     (  3 E)");
        def.system.utmHemisphereText = QStringLiteral("Northern");
        def.unit.metersPerUnit = 1.0;
        auto system = std::make_unique<GeoCoordSys>();
        if (!system->Define(def))
            FuzzInput::Fail(qPrintable(system->LastError()));
        return system;
    }();
    return cs.get();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    // Never destroyed: Qt cannot take its application apart in the exit handlers.
    new QCoreApplication(*argc, *argv);
    System();
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
    BatchConverter converter(*System(), data[0] & 1);
    std::size_t reported = 0;
    const BatchConverter::Result r =
        converter.Run(in, out, [&](std::size_t, const std::string&) { ++reported; });
    std::fclose(in);
    std::fclose(out);
    FuzzInput::Check(r.bad == reported, "bad lines and reports disagree");
    FuzzInput::Check(r.converted + r.bad <= r.lines, "more results than lines");
    return 0;
}
