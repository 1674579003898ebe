#include "BatchConverter.h"

#include "api/GeoTypes.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <condition_variable>
#include <cstdint>
#include <cstring>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

using namespace BatchFormat;

namespace {

constexpr std::size_t ReadChunkBytes = std::size_t(1) << 20;
// Blocks read ahead per thread: enough to keep every thread busy while one block is
// written, few enough to keep memory flat.
constexpr std::size_t BlocksPerThread = 3;
constexpr std::size_t QuotedFieldChars = 40;
// What the result columns of a failed line hold (as cs2cs writes; spreadsheets keep it).
constexpr char FailedMark = '*';

// How the lines of the file are laid out, decided at the first line that holds data.
struct Layout {
    bool known = false;
    Separator separator = Separator::Comma;
    std::size_t headerLine = 0; // 0: none
    bool decimalComma() const { return separator != Separator::Comma; }
};

// The converted text of a block. Rows are written through a pointer into room reserved
// once per row, not appended character by character.
class OutputText {
public:
    const char* data() const { return m_data.get(); }
    std::size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }
    void clear() { m_size = 0; }
    void reserve(std::size_t capacity) {
        if (capacity > m_capacity)
            Grow(capacity);
    }
    // Where to write up to room more bytes; Commit takes the end of what was written.
    char* Room(std::size_t room) {
        if (m_capacity - m_size < room)
            Grow(std::max(m_size + room, 2 * m_capacity));
        return m_data.get() + m_size;
    }
    void Commit(const char* end) { m_size = std::size_t(end - m_data.get()); }
    void Append(std::string_view text) {
        char* p = Room(text.size());
        std::memcpy(p, text.data(), text.size());
        Commit(p + text.size());
    }

private:
    void Grow(std::size_t capacity) {
        auto data = std::make_unique_for_overwrite<char[]>(capacity);
        if (m_size > 0)
            std::memcpy(data.get(), m_data.get(), m_size);
        m_data = std::move(data);
        m_capacity = capacity;
    }

    std::unique_ptr<char[]> m_data;
    std::size_t m_size = 0, m_capacity = 0;
};

struct Block {
    std::string text; // whole lines, each ending in '\n'
    std::size_t firstLine = 1;
    Layout layout;
    OutputText output;
    std::vector<std::pair<std::size_t, std::string>> messages;
    std::size_t lines = 0, converted = 0, failed = 0;
    bool done = false;
};

enum class LineKind : unsigned char { Copy, Header, Point, Failed };

struct LineInfo {
    std::size_t begin = 0, end = 0; // the line without its end
    bool cr = false;                // ended in "\r\n"
    LineKind kind = LineKind::Copy;
    std::uint32_t fieldBegin = 0, fieldCount = 0;
    std::uint32_t index = 0; // the point, or the reason of a failed line
};

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

// A field as a message quotes it: at most a few dozen characters.
std::string Quoted(std::string_view field) {
    std::string text(field.substr(0, QuotedFieldChars));
    if (field.size() > QuotedFieldChars)
        text += "...";
    return '"' + text + '"';
}

// A number as a message shows it: short, in exponent form when large.
std::string Number(double value) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.10g", value);
    return buffer;
}

// A result, or the mark of a failed line.
char* WriteResult(char* out, const double* value, int decimals) {
    char* const end = value ? WriteFixed(out, *value, decimals) : nullptr;
    if (end)
        return end;
    *out = FailedMark;
    return out + 1;
}

char* WriteLineEnd(char* out, bool cr) {
    if (cr)
        *out++ = '\r';
    *out++ = '\n';
    return out;
}

std::string LimitText(double limit) {
    return Number(-limit) + ".." + Number(limit);
}

// Reads the point of a data line; false with the reason.
bool ReadPoint(const std::string_view* fields, std::size_t count, const ColumnSpec& spec,
               bool decimalComma, GeoPoint& p, std::string& why) {
    const int required = spec.RequiredFields();
    if (int(count) < required) {
        why = std::to_string(required) + " columns expected, " + std::to_string(count) + " found";
        return false;
    }
    double first = 0, second = 0;
    if (spec.inverse) {
        const bool eastFirst = spec.roles[spec.first] == Role::Easting;
        const char* firstName = eastFirst ? "Easting" : "Northing";
        const char* secondName = eastFirst ? "Northing" : "Easting";
        if (!ReadNumber(fields[spec.first], decimalComma, first)) {
            why = std::string(firstName) + ' ' + Quoted(fields[spec.first]) + " is not a number";
            return false;
        }
        if (!ReadNumber(fields[spec.second], decimalComma, second)) {
            why = std::string(secondName) + ' ' + Quoted(fields[spec.second]) + " is not a number";
            return false;
        }
        p.x = eastFirst ? first : second;
        p.y = eastFirst ? second : first;
    } else {
        const int latColumn = spec.roles[spec.first] == Role::Latitude ? spec.first : spec.second;
        const int lonColumn = latColumn == spec.first ? spec.second : spec.first;
        double lat = 0, lon = 0;
        if (!ReadAngle(fields[latColumn], decimalComma, lat)) {
            why = "latitude " + Quoted(fields[latColumn]) + " is not an angle";
            return false;
        }
        if (!(std::abs(lat) <= LatitudeLimit)) {
            why = "latitude " + Number(lat) + " is outside " + LimitText(LatitudeLimit);
            return false;
        }
        if (!ReadAngle(fields[lonColumn], decimalComma, lon)) {
            why = "longitude " + Quoted(fields[lonColumn]) + " is not an angle";
            return false;
        }
        if (!NormaliseLongitude(lon)) {
            why = "longitude " + Number(lon) + " is outside " + LimitText(LongitudeLimit);
            return false;
        }
        p.x = lat;
        p.y = lon;
    }
    p.z = 0;
    if (spec.height >= 0) {
        const char* name = spec.inverse ? "Z" : "height";
        const std::string_view field = fields[spec.height];
        if (field.empty()) {
            why = std::string("no ") + name;
            return false;
        }
        if (!ReadNumber(field, decimalComma, p.z)) {
            why = std::string(name) + ' ' + Quoted(field) + " is not a number";
            return false;
        }
    }
    p.time = ObservationEpochNone;
    if (spec.epoch >= 0 && !fields[spec.epoch].empty()) {
        double epoch = 0;
        if (!ReadNumber(fields[spec.epoch], decimalComma, epoch)) {
            why = "epoch " + Quoted(fields[spec.epoch]) + " is not a decimal year";
            return false;
        }
        if (!IsObservationEpochValid(epoch)) {
            why = "epoch " + Number(epoch) + " is outside " + Number(ObservationEpochMin) + ".." +
                  Number(ObservationEpochMax) + " (0 or empty: the default epoch)";
            return false;
        }
        p.time = epoch;
    }
    return true;
}

// Converts blocks on one thread; keeps its scratch space from block to block.
class BlockWorker {
public:
    BlockWorker(OrvGeoCoordSysBase& cs, const BatchConverter::Settings& settings)
        : m_cs(cs), m_settings(settings), m_spec(settings.columns) {}

    void Convert(Block& block);

private:
    void Classify(Block& block);
    void WriteRow(Block& block, const LineInfo& line, const GeoPoint* result);
    void WriteHeader(Block& block, const LineInfo& line);

    OrvGeoCoordSysBase& m_cs;
    const BatchConverter::Settings& m_settings;
    const ColumnSpec& m_spec;
    std::vector<LineInfo> m_lines;
    std::vector<std::string_view> m_fields;
    std::vector<GeoPoint> m_points;
    std::unique_ptr<bool[]> m_ok;
    std::size_t m_okSize = 0;
    std::vector<std::string> m_reasons;
    std::string m_why;
};

void BlockWorker::Classify(Block& block) {
    m_lines.clear();
    m_fields.clear();
    m_points.clear();
    m_reasons.clear();
    const char* text = block.text.data();
    const std::size_t size = block.text.size();
    const bool decimalComma = block.layout.decimalComma();
    std::size_t lineNo = block.firstLine;
    for (std::size_t pos = 0; pos < size; ++lineNo) {
        const auto* nl = static_cast<const char*>(std::memchr(text + pos, '\n', size - pos));
        const std::size_t end = nl ? std::size_t(nl - text) : size;
        LineInfo line;
        line.begin = pos;
        line.end = end;
        if (end > pos && text[end - 1] == '\r') {
            line.cr = true;
            --line.end;
        }
        pos = end + 1;
        const std::string_view content(text + line.begin, line.end - line.begin);
        std::size_t first = 0;
        while (first < content.size() && IsBlank(content[first]))
            ++first;
        if (content.size() > m_settings.maxLineBytes) {
            line.kind = LineKind::Failed;
            line.index = std::uint32_t(m_reasons.size());
            m_reasons.push_back("the line is longer than " +
                                std::to_string(m_settings.maxLineBytes) + " bytes");
        } else if (first == content.size() || content[first] == '#') {
            line.kind = LineKind::Copy;
        } else {
            line.fieldBegin = std::uint32_t(m_fields.size());
            line.fieldCount =
                std::uint32_t(AppendFields(content, block.layout.separator, m_fields));
            GeoPoint p;
            if (lineNo == block.layout.headerLine) {
                line.kind = LineKind::Header;
            } else if (ReadPoint(m_fields.data() + line.fieldBegin, line.fieldCount, m_spec,
                                 decimalComma, p, m_why)) {
                line.kind = LineKind::Point;
                line.index = std::uint32_t(m_points.size());
                m_points.push_back(p);
            } else {
                line.kind = LineKind::Failed;
                line.index = std::uint32_t(m_reasons.size());
                m_reasons.push_back(m_why);
            }
        }
        m_lines.push_back(line);
    }
}

void BlockWorker::WriteHeader(Block& block, const LineInfo& line) {
    const char sep = SeparatorChar(block.layout.separator);
    const std::string unit = m_settings.unitLabel.toStdString();
    const std::size_t columns = std::max<std::size_t>(line.fieldCount, m_spec.roles.size());
    std::string text;
    for (std::size_t i = 0; i < columns; ++i) {
        if (i > 0)
            text += sep;
        const int column = int(i);
        if (column == m_spec.first)
            text += m_spec.inverse ? "Latitude [deg]" : "Easting [" + unit + "]";
        else if (column == m_spec.second)
            text += m_spec.inverse ? "Longitude [deg]" : "Northing [" + unit + "]";
        else if (column == m_spec.height)
            text += m_spec.inverse ? "Height [m]" : "Z [" + unit + "]";
        else if (i < line.fieldCount)
            text += m_fields[line.fieldBegin + i];
    }
    text += line.cr ? "\r\n" : "\n";
    block.output.Append(text);
}

void BlockWorker::WriteRow(Block& block, const LineInfo& line, const GeoPoint* result) {
    const char sep = SeparatorChar(block.layout.separator);
    const int xyDecimals = m_spec.inverse ? AngleDecimals : LengthDecimals;
    const std::size_t columns = std::max<std::size_t>(line.fieldCount, m_spec.roles.size());
    // The copied fields lie within the line; add the results, separators and the line end.
    constexpr std::size_t Results = 3, LineEnd = 2;
    char* p =
        block.output.Room(line.end - line.begin + Results * MaxFixedChars + columns + LineEnd);
    const std::string_view* fields = m_fields.data() + line.fieldBegin;
    for (std::size_t i = 0; i < columns; ++i) {
        if (i > 0)
            *p++ = sep;
        const int column = int(i);
        if (column == m_spec.first) {
            p = WriteResult(p, result ? &result->x : nullptr, xyDecimals);
        } else if (column == m_spec.second) {
            p = WriteResult(p, result ? &result->y : nullptr, xyDecimals);
        } else if (column == m_spec.height) {
            p = WriteResult(p, result ? &result->z : nullptr, LengthDecimals);
        } else if (i < line.fieldCount) {
            std::memcpy(p, fields[i].data(), fields[i].size());
            p += fields[i].size();
        }
    }
    block.output.Commit(WriteLineEnd(p, line.cr));
}

void BlockWorker::Convert(Block& block) {
    Classify(block);
    const std::size_t n = m_points.size();
    if (m_okSize < n) {
        m_ok = std::make_unique<bool[]>(n);
        m_okSize = n;
    }
    if (n > 0) {
        if (m_spec.inverse)
            m_cs.InverseArray(m_points.data(), m_ok.get(), n);
        else
            m_cs.ForwardArray(m_points.data(), m_ok.get(), n);
    }
    block.output.clear();
    block.output.reserve(block.text.size() + block.text.size() / 2);
    block.messages.clear();
    block.lines = m_lines.size();
    block.converted = block.failed = 0;
    std::size_t lineNo = block.firstLine;
    for (const LineInfo& line : m_lines) {
        switch (line.kind) {
        case LineKind::Copy: {
            const std::size_t length = line.end - line.begin;
            char* p = block.output.Room(length + 2);
            std::memcpy(p, block.text.data() + line.begin, length);
            block.output.Commit(WriteLineEnd(p + length, line.cr));
            break;
        }
        case LineKind::Header:
            WriteHeader(block, line);
            break;
        case LineKind::Point: {
            GeoPoint& p = m_points[line.index];
            const bool finite = std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
            if (m_ok[line.index] && finite) {
                WriteRow(block, line, &p);
                ++block.converted;
                break;
            }
            // The point was handed back as it was read: ask once more, alone, for the reason.
            GeoPoint again = p;
            const bool ok = m_spec.inverse ? m_cs.Inverse(again) : m_cs.Forward(again);
            block.messages.emplace_back(
                lineNo, ok || !finite ? std::string("the result is not a finite number")
                                      : m_cs.LastError().toStdString());
            WriteRow(block, line, nullptr);
            ++block.failed;
            break;
        }
        case LineKind::Failed:
            block.messages.emplace_back(lineNo, m_reasons[line.index]);
            WriteRow(block, line, nullptr);
            ++block.failed;
            break;
        }
        ++lineNo;
    }
}

// Decides the layout at the first line of the block that holds data; false when the block
// has none (only comments and empty lines).
bool DecideLayout(const Block& block, const BatchConverter::Settings& settings, Layout& layout) {
    const char* text = block.text.data();
    const std::size_t size = block.text.size();
    std::size_t lineNo = block.firstLine;
    std::vector<std::string_view> fields;
    for (std::size_t pos = 0; pos < size; ++lineNo) {
        const auto* nl = static_cast<const char*>(std::memchr(text + pos, '\n', size - pos));
        const std::size_t end = nl ? std::size_t(nl - text) : size;
        std::string_view line(text + pos, end - pos);
        pos = end + 1;
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        std::size_t first = 0;
        while (first < line.size() && IsBlank(line[first]))
            ++first;
        if (first == line.size() || line[first] == '#' || line.size() > settings.maxLineBytes)
            continue;
        layout.known = true;
        layout.separator =
            settings.separator == Separator::Auto ? DetectSeparator(line) : settings.separator;
        if (settings.header == BatchConverter::Header::Present) {
            layout.headerLine = lineNo;
        } else if (settings.header == BatchConverter::Header::Detect) {
            SplitFields(line, layout.separator, fields);
            if (LooksLikeHeader(fields, settings.columns, layout.decimalComma()))
                layout.headerLine = lineNo;
        }
        return true;
    }
    return false;
}

} // namespace

BatchConverter::BatchConverter(std::vector<OrvGeoCoordSysBase*> systems, Settings settings)
    : m_systems(std::move(systems)), m_settings(std::move(settings)) {
    if (m_settings.columns.roles.empty()) {
        QString ignored;
        ColumnSpec::Parse(QString(), false, m_settings.columns, ignored);
    }
}

BatchConverter::Result BatchConverter::Run(std::FILE* in, std::FILE* out, const Report& report,
                                           const Progress& progress) {
    return Run(
        in,
        [out](const char* data, std::size_t size) {
            return std::fwrite(data, 1, size, out) == size;
        },
        report, progress);
}

BatchConverter::Result BatchConverter::Run(std::FILE* in, const Sink& out, const Report& report,
                                           const Progress& progress) {
    Result result;
    if (m_systems.empty() ||
        std::find(m_systems.begin(), m_systems.end(), nullptr) != m_systems.end()) {
        result.readFailed = true;
        result.readError = "no coordinate system to convert with";
        return result;
    }
    const std::size_t threadCount = m_systems.size();
    const std::size_t maxInFlight = threadCount * BlocksPerThread;

    std::mutex mutex;
    std::condition_variable jobReady, blockDone;
    std::deque<Block*> jobs;
    bool stopping = false;
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < threadCount; ++i) {
        threads.emplace_back([&, i] {
            BlockWorker worker(*m_systems[i], m_settings);
            while (true) {
                Block* block = nullptr;
                {
                    std::unique_lock lock(mutex);
                    jobReady.wait(lock, [&] { return stopping || !jobs.empty(); });
                    if (jobs.empty())
                        return;
                    block = jobs.front();
                    jobs.pop_front();
                }
                worker.Convert(*block);
                {
                    std::lock_guard lock(mutex);
                    block->done = true;
                }
                blockDone.notify_all();
            }
        });
    }

    std::deque<std::unique_ptr<Block>> inFlight;
    std::vector<std::unique_ptr<Block>> spare;
    // Writes the oldest block once it is converted.
    auto emitFront = [&] {
        Block& block = *inFlight.front();
        {
            std::unique_lock lock(mutex);
            blockDone.wait(lock, [&] { return block.done; });
        }
        if (!result.writeFailed) {
            if (!block.output.empty() && !out(block.output.data(), block.output.size()))
                result.writeFailed = true;
            for (const auto& [line, why] : block.messages)
                report(line, why);
            result.lines += block.lines;
            result.converted += block.converted;
            result.failed += block.failed;
        }
        spare.push_back(std::move(inFlight.front()));
        inFlight.pop_front();
    };

    Layout layout;
    auto submit = [&](std::unique_ptr<Block> block) {
        if (!layout.known)
            DecideLayout(*block, m_settings, layout);
        block->layout = layout;
        block->done = false;
        while (inFlight.size() >= maxInFlight)
            emitFront();
        {
            std::lock_guard lock(mutex);
            jobs.push_back(block.get());
        }
        jobReady.notify_one();
        inFlight.push_back(std::move(block));
    };
    auto newBlock = [&](std::size_t firstLine) {
        std::unique_ptr<Block> block;
        if (!spare.empty()) {
            block = std::move(spare.back());
            spare.pop_back();
        } else {
            block = std::make_unique<Block>();
            block->text.reserve(m_settings.blockBytes + ReadChunkBytes);
        }
        block->text.clear();
        block->firstLine = firstLine;
        return block;
    };

    const auto buffer = std::make_unique_for_overwrite<char[]>(ReadChunkBytes);
    std::size_t lineNo = 1;
    std::size_t lineBytes = 0; // of the current line, as kept
    bool dropping = false;     // the current line is too long: the rest is skipped
    std::size_t bytes = 0, lastProgress = 0;
    const std::size_t keep = m_settings.maxLineBytes + 1; // enough to see that a line is too long
    std::unique_ptr<Block> block = newBlock(lineNo);
    while (!result.writeFailed) {
        const std::size_t got = std::fread(buffer.get(), 1, ReadChunkBytes, in);
        if (got == 0) {
            if (std::ferror(in)) {
                result.readFailed = true;
                result.readError = std::strerror(errno);
            }
            break;
        }
        bytes += got;
        const char* p = buffer.get();
        const char* const end = p + got;
        const char* run = p; // read, not yet kept in the block
        while (p < end) {
            const auto* nl = static_cast<const char*>(std::memchr(p, '\n', std::size_t(end - p)));
            const char* segmentEnd = nl ? nl : end;
            const std::size_t length = std::size_t(segmentEnd - p);
            if (!dropping) {
                const std::size_t take = std::min(length, keep - lineBytes);
                lineBytes += take;
                if (take < length) {
                    // Too long: keep what shows it, skip the rest of the line.
                    block->text.append(run, std::size_t(p + take - run));
                    dropping = true;
                }
            }
            if (dropping)
                run = segmentEnd;
            if (!nl)
                break;
            ++lineNo;
            lineBytes = 0;
            dropping = false;
            p = nl + 1;
            if (block->text.size() + std::size_t(p - run) >= m_settings.blockBytes) {
                block->text.append(run, std::size_t(p - run));
                run = p;
                submit(std::move(block));
                block = newBlock(lineNo);
            }
        }
        block->text.append(run, std::size_t(end - run));
        if (progress && bytes - lastProgress >= 8 * ReadChunkBytes) {
            progress(bytes);
            lastProgress = bytes;
        }
    }
    if (!result.readFailed && !result.writeFailed) {
        if (lineBytes > 0 || dropping)
            block->text += '\n'; // the last line had no line end
        if (!block->text.empty())
            submit(std::move(block));
    }
    while (!inFlight.empty())
        emitFront();
    {
        std::lock_guard lock(mutex);
        stopping = true;
    }
    jobReady.notify_all();
    for (std::thread& thread : threads)
        thread.join();
    if (progress)
        progress(bytes);
    return result;
}
