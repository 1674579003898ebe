// Angle texts as the dialogs read them (StringToGeo), and what FormatGeogs writes of them.
#include "FuzzInput.h"

#include "util/GeoFormat.h"

#include <cmath>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text = FuzzInput::Text(data, size);
    double value = 12345.0;
    if (!StringToGeo(text, value)) {
        FuzzInput::Check(value == 12345.0, "a refused text changed the value");
        return 0;
    }
    FuzzInput::Check(std::isfinite(value) && std::fabs(value) <= 360.0, "angle out of range");
    FuzzInput::Check(!(value == 0.0 && std::signbit(value)), "-0 returned");
    // What is written for a parsed angle reads back as the same angle.
    for (int kind : {10, 11}) {
        QString written;
        if (!FormatGeogs(value, 7, 9, kind, written, true, true))
            continue;
        double again = 0;
        FuzzInput::Check(StringToGeo(written, again), "a written angle does not read back");
        const double expected =
            kind == 11 && std::fabs(value) > 180.0 ? std::remainder(value, 360.0) : value;
        FuzzInput::Check(std::fabs(again - expected) < 1e-9, "a written angle reads otherwise");
    }
    return 0;
}
