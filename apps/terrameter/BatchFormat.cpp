#include "BatchFormat.h"

#include "util/GeoFormat.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>

namespace BatchFormat {

namespace {

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

constexpr double PowersOfTen[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
// Scaled values below 2^40 have an ulp of at most 2^-12.
constexpr double FastLimit = 1099511627776.0;
constexpr double NearHalf = 1.0 / 1024;
constexpr char DigitPairs[] = "00010203040506070809101112131415161718192021222324252627282930313233"
                              "34353637383940414243444546474849505152535455565758596061626364656667"
                              "6869707172737475767778798081828384858687888990919293949596979899";

// Exact powers of ten as doubles (10^22 is the largest).
constexpr double ExactPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                       1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                       1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int MaxExactDigits = 15; // below 2^53: the digits as an integer are exact

// The common form of survey numbers, "[-]digits[.digits]" with at most 15 significant
// digits: the digits and the power of ten are exact doubles, so one division rounds
// correctly (the same value from_chars gives). False for anything else.
bool ReadPlainDecimal(std::string_view s, double& value) {
    const char* c = s.data();
    const char* const end = c + s.size();
    const bool negative = c < end && *c == '-';
    if (negative)
        ++c;
    std::uint64_t mantissa = 0;
    int significant = 0, decimals = 0, digits = 0;
    bool point = false;
    for (; c < end; ++c) {
        if (*c >= '0' && *c <= '9') {
            ++digits;
            if (mantissa != 0 || *c != '0')
                ++significant;
            if (significant > MaxExactDigits)
                return false;
            mantissa = mantissa * 10 + std::uint64_t(*c - '0');
            decimals += point ? 1 : 0;
        } else if (*c == '.' && !point) {
            point = true;
        } else {
            return false;
        }
    }
    if (digits == 0 || decimals >= int(std::size(ExactPowersOfTen)))
        return false;
    const double v = double(mantissa) / ExactPowersOfTen[decimals];
    value = negative ? -v : v;
    return true;
}

std::string_view Trim(std::string_view s) {
    while (!s.empty() && IsBlank(s.front()))
        s.remove_prefix(1);
    while (!s.empty() && IsBlank(s.back()))
        s.remove_suffix(1);
    return s;
}

// A field in double quotes is read without them.
std::string_view Unquote(std::string_view s) {
    if (s.size() >= 2 && s.front() == '"' && s.back() == '"')
        return Trim(s.substr(1, s.size() - 2));
    return s;
}

struct RoleName {
    const char* name;
    Role role;
};

constexpr std::array RoleNames{
    RoleName{"lat", Role::Latitude},
    RoleName{"latitude", Role::Latitude},
    RoleName{"lon", Role::Longitude},
    RoleName{"long", Role::Longitude},
    RoleName{"longitude", Role::Longitude},
    RoleName{"h", Role::Height},
    RoleName{"height", Role::Height},
    RoleName{"e", Role::Easting},
    RoleName{"easting", Role::Easting},
    RoleName{"n", Role::Northing},
    RoleName{"northing", Role::Northing},
    RoleName{"z", Role::Z},
    RoleName{"epoch", Role::Epoch},
    RoleName{"time", Role::Epoch},
    RoleName{"id", Role::Copy},
    RoleName{"name", Role::Copy},
    RoleName{"point", Role::Copy},
    RoleName{"-", Role::Copy},
    RoleName{"skip", Role::Copy},
};

bool IsGeographic(Role role) {
    return role == Role::Latitude || role == Role::Longitude || role == Role::Height;
}

bool IsGrid(Role role) {
    return role == Role::Easting || role == Role::Northing || role == Role::Z;
}

} // namespace

bool ColumnSpec::Parse(const QString& text, bool inverse, ColumnSpec& spec, QString& error) {
    spec = ColumnSpec{};
    QString names = text.trimmed();
    if (names.isEmpty())
        names = inverse ? QStringLiteral("e,n,z") : QStringLiteral("lat,lon,h");
    bool geographic = false, grid = false;
    const QStringList parts = names.split(QLatin1Char(','));
    for (const QString& part : parts) {
        const QString name = part.trimmed().toLower();
        const auto* found =
            std::find_if(RoleNames.begin(), RoleNames.end(),
                         [&](const RoleName& r) { return name == QLatin1String(r.name); });
        if (found == RoleNames.end()) {
            error = QStringLiteral("Unknown column \"%1\" in --columns: use lat, lon, h (or e, n, "
                                   "z), epoch, id and - for a column to copy.")
                        .arg(part.trimmed());
            return false;
        }
        const Role role = found->role;
        const int column = int(spec.roles.size());
        if (role != Role::Copy &&
            std::find(spec.roles.begin(), spec.roles.end(), role) != spec.roles.end()) {
            error = QStringLiteral("The column \"%1\" is named twice in --columns.")
                        .arg(part.trimmed());
            return false;
        }
        geographic = geographic || IsGeographic(role);
        grid = grid || IsGrid(role);
        spec.roles.push_back(role);
        switch (role) {
        case Role::Latitude:
        case Role::Easting:
        case Role::Longitude:
        case Role::Northing:
            (spec.first < 0 ? spec.first : spec.second) = column;
            break;
        case Role::Height:
        case Role::Z:
            spec.height = column;
            break;
        case Role::Epoch:
            spec.epoch = column;
            break;
        case Role::Copy:
            break;
        }
    }
    if (geographic && grid) {
        error = QStringLiteral("--columns mixes WGS 84 (lat, lon, h) and grid (e, n, z) columns.");
        return false;
    }
    spec.inverse = grid;
    if (inverse && geographic) {
        error = QStringLiteral("--inverse reads grid coordinates: name them e, n, z in --columns.");
        return false;
    }
    if (spec.second < 0) {
        error = spec.inverse ? QStringLiteral("--columns needs both e and n.")
                             : QStringLiteral("--columns needs both lat and lon.");
        return false;
    }
    return true;
}

int ColumnSpec::RequiredFields() const {
    return std::max({first, second, height, epoch}) + 1;
}

bool ParseSeparator(const QString& text, Separator& separator) {
    const QString name = text.trimmed().toLower();
    if (name == u"comma" || name == u",")
        separator = Separator::Comma;
    else if (name == u"semicolon" || name == u";")
        separator = Separator::Semicolon;
    else if (name == u"tab" || name == u"\\t" || name == u"\t")
        separator = Separator::Tab;
    else if (name == u"space" || name == u"blank" || name == u"whitespace")
        separator = Separator::Space;
    else if (name == u"auto")
        separator = Separator::Auto;
    else
        return false;
    return true;
}

Separator DetectSeparator(std::string_view line) {
    if (line.find('\t') != std::string_view::npos)
        return Separator::Tab;
    if (line.find(';') != std::string_view::npos)
        return Separator::Semicolon;
    if (line.find(',') != std::string_view::npos)
        return Separator::Comma;
    return Separator::Space;
}

char SeparatorChar(Separator separator) {
    switch (separator) {
    case Separator::Semicolon:
        return ';';
    case Separator::Tab:
        return '\t';
    case Separator::Space:
        return ' ';
    default:
        return ',';
    }
}

void SplitFields(std::string_view line, Separator separator,
                 std::vector<std::string_view>& fields) {
    fields.clear();
    const char* s = line.data();
    const char* const end = s + line.size();
    if (separator == Separator::Space) {
        while (true) {
            while (s < end && IsBlank(*s))
                ++s;
            if (s == end)
                return;
            const char* b = s;
            if (*s == '"') {
                for (++s; s < end; ++s) {
                    if (*s == '"' && (s + 1 == end || s[1] != '"'))
                        break;
                    if (*s == '"')
                        ++s;
                }
                if (s < end)
                    ++s;
            }
            while (s < end && !IsBlank(*s))
                ++s;
            fields.emplace_back(b, std::size_t(s - b));
        }
    }
    const char sep = SeparatorChar(separator);
    while (true) {
        while (s < end && IsBlank(*s) && *s != sep)
            ++s;
        const char* b = s;
        if (s < end && *s == '"') {
            for (++s; s < end; ++s) {
                if (*s == '"' && (s + 1 == end || s[1] != '"'))
                    break;
                if (*s == '"')
                    ++s;
            }
            if (s < end)
                ++s;
        }
        while (s < end && *s != sep)
            ++s;
        const char* e = s;
        while (e > b && IsBlank(e[-1]) && e[-1] != sep)
            --e;
        fields.emplace_back(b, std::size_t(e - b));
        if (s == end)
            return;
        ++s; // the separator
    }
}

bool ReadNumber(std::string_view field, bool decimalComma, double& value) {
    std::string_view s = Unquote(Trim(field));
    if (!s.empty() && s.front() == '+')
        s.remove_prefix(1);
    if (s.empty() || s.front() == '+')
        return false;
    // "nan", "inf" and hexadecimal forms are no survey numbers.
    const char c = s.front() == '-' && s.size() > 1 ? s[1] : s.front();
    if (!(c >= '0' && c <= '9') && c != '.' && c != ',')
        return false;
    double v = 0;
    if (ReadPlainDecimal(s, v)) {
        value = v;
        return true;
    }
    auto [next, ec] = std::from_chars(s.data(), s.data() + s.size(), v);
    if (ec != std::errc() || next != s.data() + s.size()) {
        const std::size_t comma = s.find(',');
        if (!decimalComma || comma == std::string_view::npos || s.size() > 64 ||
            s.find(',', comma + 1) != std::string_view::npos)
            return false;
        char buffer[64];
        s.copy(buffer, s.size());
        buffer[comma] = '.';
        const auto [next2, ec2] = std::from_chars(buffer, buffer + s.size(), v);
        if (ec2 != std::errc() || next2 != buffer + s.size())
            return false;
    }
    if (!std::isfinite(v))
        return false;
    value = v;
    return true;
}

bool ReadAngle(std::string_view field, bool decimalComma, double& value) {
    if (ReadNumber(field, decimalComma, value))
        return true;
    const std::string_view s = Unquote(Trim(field));
    if (s.empty() || s.size() > 128)
        return false;
    return StringToGeo(QString::fromUtf8(s.data(), qsizetype(s.size())), value);
}

bool NormaliseLongitude(double& longitude) {
    if (!(std::abs(longitude) <= LongitudeLimit))
        return false;
    if (longitude > 180.0)
        longitude -= 360.0;
    else if (longitude < -180.0)
        longitude += 360.0;
    return true;
}

bool AppendFixed(std::string& out, double value, int decimals) {
    if (!std::isfinite(value))
        return false;
    // Fast path: value * 10^decimals is one correctly rounded product, off by at most half
    // an ulp (below 2^-12 under FastLimit). Unless its fraction lies that close to one half,
    // rounding it to an integer gives the same digits as exact decimal rounding.
    if (decimals >= 0 && decimals < int(std::size(PowersOfTen))) {
        const double magnitude = std::abs(value * PowersOfTen[decimals]);
        if (magnitude < FastLimit) {
            const double whole = std::floor(magnitude);
            const double fraction = magnitude - whole; // exact
            if (std::abs(fraction - 0.5) > NearHalf) {
                std::uint64_t digits = std::uint64_t(whole) + (fraction > 0.5 ? 1 : 0);
                char buffer[32];
                char* const end = buffer + sizeof buffer;
                char* p = end;
                // Two digits a step: half as many dependent divisions.
                int remaining = decimals;
                for (; remaining >= 2; remaining -= 2) {
                    const std::uint64_t q = digits / 100;
                    p -= 2;
                    std::memcpy(p, DigitPairs + 2 * (digits - q * 100), 2);
                    digits = q;
                }
                if (remaining > 0) {
                    *--p = char('0' + digits % 10);
                    digits /= 10;
                }
                if (decimals > 0)
                    *--p = '.';
                const bool zero =
                    digits == 0 && std::all_of(p, end, [](char c) { return c == '0' || c == '.'; });
                while (digits >= 100) {
                    const std::uint64_t q = digits / 100;
                    p -= 2;
                    std::memcpy(p, DigitPairs + 2 * (digits - q * 100), 2);
                    digits = q;
                }
                if (digits >= 10) {
                    p -= 2;
                    std::memcpy(p, DigitPairs + 2 * digits, 2);
                } else {
                    *--p = char('0' + digits);
                }
                if (value < 0 && !zero)
                    *--p = '-';
                out.append(p, end);
                return true;
            }
        }
    }
    // The longest fixed text of a double: 309 integer digits, a sign, a point, decimals.
    char buffer[400];
    const auto [end, ec] =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
    if (ec != std::errc())
        return false;
    const char* begin = buffer;
    const char* const last = end;
    if (*begin == '-') {
        // "-0.0000" is zero.
        bool zero = true;
        for (const char* p = begin + 1; p < last && zero; ++p)
            zero = *p == '0' || *p == '.';
        if (zero)
            ++begin;
    }
    out.append(begin, last);
    return true;
}

bool LooksLikeHeader(const std::vector<std::string_view>& fields, const ColumnSpec& spec,
                     bool decimalComma) {
    bool letters = false;
    for (int column : {spec.first, spec.second, spec.height}) {
        if (column < 0 || column >= int(fields.size()))
            continue;
        double value = 0;
        const bool reads = spec.inverse || column == spec.height
                               ? ReadNumber(fields[column], decimalComma, value)
                               : ReadAngle(fields[column], decimalComma, value);
        if (reads)
            return false;
        for (char c : fields[column])
            letters = letters || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    }
    return letters;
}

} // namespace BatchFormat
