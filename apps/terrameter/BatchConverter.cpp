#include "BatchConverter.h"

#include <QString>

#include <charconv>
#include <cmath>
#include <cstring>
#include <vector>

namespace {

constexpr std::size_t BlockPoints = 65536;

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

// Parses the comma-separated numbers of a line; false with a reason.
bool ParseLine(const char* begin, const char* end, GeoPoint& p, std::string& why) {
    double values[4] = {0, 0, 0, 0};
    int count = 0;
    const char* s = begin;
    while (true) {
        while (s < end && IsBlank(*s))
            ++s;
        if (count == 4) {
            why = "more than four values";
            return false;
        }
        if (s < end && *s == '+')
            ++s;
        const auto [next, ec] = std::from_chars(s, end, values[count]);
        if (ec != std::errc() || !std::isfinite(values[count])) {
            why = "value " + std::to_string(count + 1) + " is not a number";
            return false;
        }
        ++count;
        s = next;
        while (s < end && IsBlank(*s))
            ++s;
        if (s == end)
            break;
        if (*s != ',' && *s != ';') {
            why = "unexpected text after value " + std::to_string(count);
            return false;
        }
        ++s;
    }
    if (count < 3) {
        why = "three values expected, " + std::to_string(count) + " found";
        return false;
    }
    p = {values[0], values[1], values[2], values[3]};
    return true;
}

void Append(std::string& out, double value, int decimals) {
    char buffer[64];
    const auto [end, ec] =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
    if (ec == std::errc())
        out.append(buffer, end);
    else
        out += "nan";
}

} // namespace

BatchConverter::Result
BatchConverter::Run(std::FILE* in, std::FILE* out,
                    const std::function<void(std::size_t, const std::string&)>& report,
                    const std::function<void(std::size_t)>& progress) {
    Result result;
    std::vector<GeoPoint> points;
    std::vector<std::size_t> lineOf;
    std::vector<char> hasTime;
    std::vector<char> ok(BlockPoints);
    points.reserve(BlockPoints);
    lineOf.reserve(BlockPoints);
    hasTime.reserve(BlockPoints);
    // Comment lines are copied in order: kept with the index of the point they precede.
    std::vector<std::pair<std::size_t, std::string>> comments;
    std::string output;
    std::string why;
    const int xyDecimals = m_inverse ? 9 : 4; // degrees or grid units
    const int zDecimals = 4;

    auto flush = [&]() {
        const std::size_t n = points.size();
        if (m_inverse)
            m_cs.InverseArray(points.data(), reinterpret_cast<bool*>(ok.data()), n);
        else
            m_cs.ForwardArray(points.data(), reinterpret_cast<bool*>(ok.data()), n);
        output.clear();
        std::size_t c = 0;
        for (std::size_t i = 0; i < n; ++i) {
            for (; c < comments.size() && comments[c].first == i; ++c)
                output += comments[c].second;
            if (!ok[i]) {
                ++result.bad;
                report(lineOf[i], "the point cannot be converted (outside the system's domain "
                                  "or its grids)");
                continue;
            }
            const GeoPoint& p = points[i];
            Append(output, p.x, xyDecimals);
            output += ',';
            Append(output, p.y, xyDecimals);
            output += ',';
            Append(output, p.z, zDecimals);
            if (hasTime[i]) {
                output += ',';
                Append(output, p.time, 4);
            }
            output += '\n';
            ++result.converted;
        }
        for (; c < comments.size(); ++c)
            output += comments[c].second;
        std::fwrite(output.data(), 1, output.size(), out);
        points.clear();
        lineOf.clear();
        hasTime.clear();
        comments.clear();
    };

    std::vector<char> buffer(1 << 20);
    std::string carry;
    std::size_t bytes = 0;
    std::size_t lastProgress = 0;
    auto handleLine = [&](const char* b, const char* e) {
        ++result.lines;
        const char* s = b;
        while (s < e && IsBlank(*s))
            ++s;
        if (s == e || *s == '#') {
            comments.emplace_back(points.size(), std::string(b, e) + '\n');
            return;
        }
        GeoPoint p;
        if (!ParseLine(s, e, p, why)) {
            ++result.bad;
            report(result.lines, why);
            return;
        }
        const char* comma = s;
        int commas = 0;
        for (; comma < e; ++comma)
            commas += (*comma == ',' || *comma == ';');
        points.push_back(p);
        lineOf.push_back(result.lines);
        hasTime.push_back(commas >= 3);
        if (points.size() == BlockPoints)
            flush();
    };

    while (true) {
        const std::size_t got = std::fread(buffer.data(), 1, buffer.size(), in);
        if (got == 0)
            break;
        bytes += got;
        const char* data = buffer.data();
        const char* end = data + got;
        const char* line = data;
        for (const char* nl; (nl = static_cast<const char*>(std::memchr(line, '\n', end - line)));
             line = nl + 1) {
            if (!carry.empty()) {
                carry.append(line, nl);
                handleLine(carry.data(), carry.data() + carry.size());
                carry.clear();
            } else {
                handleLine(line, nl);
            }
        }
        carry.append(line, end);
        if (progress && bytes - lastProgress >= (8u << 20)) {
            progress(bytes);
            lastProgress = bytes;
        }
    }
    if (!carry.empty())
        handleLine(carry.data(), carry.data() + carry.size());
    flush();
    if (progress)
        progress(bytes);
    return result;
}
