#pragma once

#include "api/OrvGeoCoordSysBase.h"

#include <cstdio>
#include <functional>
#include <string>

// Converts CSV lines "a,b,c[,epoch]" through a coordinate system, in blocks, without
// per-line allocation. Bad lines are reported (with their number) and left out; comment
// lines ('#') and empty lines are copied.
class BatchConverter {
public:
    struct Result {
        std::size_t lines = 0;     // lines read
        std::size_t converted = 0; // points written
        std::size_t bad = 0;       // lines reported
    };

    BatchConverter(OrvGeoCoordSysBase& cs, bool inverse) : m_cs(cs), m_inverse(inverse) {}

    // report(lineNumber, message) for each bad line; progress(bytesRead) now and then.
    Result Run(std::FILE* in, std::FILE* out,
               const std::function<void(std::size_t, const std::string&)>& report,
               const std::function<void(std::size_t)>& progress = {});

private:
    OrvGeoCoordSysBase& m_cs;
    bool m_inverse;
};
