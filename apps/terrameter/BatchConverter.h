#pragma once

#include "BatchFormat.h"

#include "api/OrvGeoCoordSysBase.h"

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

// Converts the lines of a batch file through a coordinate system: one output row per input
// row, in input order. The file is read in blocks of whole lines that are converted in
// parallel, one coordinate-system object (and PROJ context) per thread, and written in
// order; memory stays flat whatever the size of the input.
//
// Comment lines ('#') and empty lines are copied. A header line (detected or declared) is
// rewritten with the names of the result columns. A line that cannot be read or converted
// keeps its row: its result columns hold "*", its other columns are copied, and its number
// and reason are reported, in line order.
class BatchConverter {
public:
    enum class Header { Detect, Present, Absent };

    struct Settings {
        BatchFormat::ColumnSpec columns;
        BatchFormat::Separator separator = BatchFormat::Separator::Auto;
        Header header = Header::Detect;
        QString unitLabel = QStringLiteral("m"); // the system unit, for the output header
        std::size_t maxLineBytes = BatchFormat::MaxLineBytes;
        std::size_t blockBytes = std::size_t(1) << 20; // input bytes per block
    };

    struct Result {
        std::size_t lines = 0;     // lines read
        std::size_t converted = 0; // points written
        std::size_t failed = 0;    // lines marked as failed and reported
        bool readFailed = false;   // the input could not be read to its end
        bool writeFailed = false;  // the sink refused output
        std::string readError;
    };

    using Report = std::function<void(std::size_t line, const std::string& why)>;
    using Sink = std::function<bool(const char* data, std::size_t size)>;
    using Progress = std::function<void(std::size_t bytesRead)>;

    // One thread per system; the systems stay owned by the caller, each used by one thread
    // at a time, and must be defined alike.
    BatchConverter(std::vector<OrvGeoCoordSysBase*> systems, Settings settings);

    // report(lineNumber, message) is called on the calling thread, in line order.
    Result Run(std::FILE* in, const Sink& out, const Report& report, const Progress& progress = {});

    // The same, writing to a stdio stream.
    Result Run(std::FILE* in, std::FILE* out, const Report& report, const Progress& progress = {});

private:
    std::vector<OrvGeoCoordSysBase*> m_systems;
    Settings m_settings;
};
