#include "BatchFormat.h"

#include "util/GeoFormat.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>

namespace BatchFormat {

namespace {

// Blanks by character: one look-up instead of three comparisons per character.
constexpr std::size_t CharValues = 256;
constexpr std::array<bool, CharValues> BlankChars = [] {
    std::array<bool, CharValues> blank{};
    blank[' '] = blank['\t'] = blank['\r'] = true;
    return blank;
}();

bool IsBlank(char c) {
    return BlankChars[static_cast<unsigned char>(c)];
}

constexpr double PowersOfTen[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
// Scaled values below 2^40 have an ulp of at most 2^-12.
constexpr double FastLimit = 1099511627776.0;
constexpr double NearHalf = 1.0 / 1024;
constexpr int TextDigits = 16;

constexpr std::uint64_t IntegerPowersOfTen[] = {1ULL,
                                                10ULL,
                                                100ULL,
                                                1000ULL,
                                                10000ULL,
                                                100000ULL,
                                                1000000ULL,
                                                10000000ULL,
                                                100000000ULL,
                                                1000000000ULL,
                                                10000000000ULL,
                                                100000000000ULL,
                                                1000000000000ULL,
                                                10000000000000ULL,
                                                100000000000000ULL,
                                                1000000000000000ULL,
                                                10000000000000000ULL,
                                                100000000000000000ULL,
                                                1000000000000000000ULL,
                                                10000000000000000000ULL};
// log10(2) as 1233 / 4096: the bit length of n gives its decimal digits, or one less.
constexpr int Log10Of2Times4096 = 1233;
constexpr int Log10Of2Shift = 12;

// The decimal digits of n (0 for 0).
int DigitCount(std::uint64_t n) {
    const int bits = 64 - std::countl_zero(n | 1);
    const int guess = (bits * Log10Of2Times4096) >> Log10Of2Shift;
    return guess + (n >= IntegerPowersOfTen[guess] ? 1 : 0);
}

// Exact powers of ten as doubles (10^22 is the largest).
constexpr double ExactPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                       1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                       1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// The digits as an integer stay exact below 10^15 (under 2^53); the integer itself is exact
// in 64 bits for up to 19 digits.
constexpr std::uint64_t ExactMantissaLimit = 1000000000000000ULL;
constexpr std::ptrdiff_t MaxIntegerDigits = 19;

bool IsDigit(char c) {
    return static_cast<unsigned char>(c - '0') < 10;
}

// Eight characters at a time, as one little-endian 64-bit word (the first character in the
// lowest byte): survey numbers have long runs of digits.
static_assert(std::endian::native == std::endian::little, "words are read little-endian");
constexpr std::size_t WordChars = 8;
constexpr std::uint64_t EightDigitsValue = 100000000ULL;
constexpr std::uint64_t AllZeroChars = 0x3030303030303030ULL;
constexpr std::uint64_t ByteHighBits = 0x8080808080808080ULL;
constexpr std::uint64_t AboveNine = 0x4646464646464646ULL; // 0x80 - ('9' + 1) per byte

std::uint64_t LoadWord(const char* p) {
    std::uint64_t word;
    std::memcpy(&word, p, sizeof word);
    return word;
}

// True when all eight characters are digits.
bool IsEightDigits(std::uint64_t word) {
    return (((word + AboveNine) | (word - AllZeroChars)) & ByteHighBits) == 0;
}

// The value of eight digits, combined pairwise: digits to pairs, pairs to fours, fours to
// the whole (three multiplications instead of eight).
std::uint64_t EightDigitsOf(std::uint64_t word) {
    constexpr std::uint64_t LowBytePerLane = 0x000000FF000000FFULL;
    constexpr std::uint64_t PairsToFour = 100 + (1000000ULL << 32);
    constexpr std::uint64_t FoursToEight = 1 + (10000ULL << 32);
    constexpr int HalfWord = 32, Byte = 8, TwoBytes = 16;
    word -= AllZeroChars;
    word = word * 10 + (word >> Byte);
    return (((word & LowBytePerLane) * PairsToFour) +
            (((word >> TwoBytes) & LowBytePerLane) * FoursToEight)) >>
           HalfWord;
}

// The eight decimal digits of value < 10^8, zero-padded, as characters in a word: halves,
// then pairs, then single digits, each step in every lane at once.
std::uint64_t EightDigitsText(std::uint64_t value) {
    constexpr std::uint64_t TenThousand = 10000;
    constexpr int HalfWord = 32, Byte = 8, TwoBytes = 16;
    // x / 100 for x < 10^4 is (x * 10486) >> 20; x / 10 for x < 100 is (x * 103) >> 10.
    constexpr std::uint64_t DivideBy100 = 10486, DivideBy10 = 103;
    constexpr int DivideBy100Shift = 20, DivideBy10Shift = 10;
    constexpr std::uint64_t HundredsMask = 0x0000007F0000007FULL;
    constexpr std::uint64_t TensMask = 0x000F000F000F000FULL;
    std::uint64_t v = (value / TenThousand) | ((value % TenThousand) << HalfWord);
    std::uint64_t high = ((v * DivideBy100) >> DivideBy100Shift) & HundredsMask;
    v = high | ((v - 100 * high) << TwoBytes);
    high = ((v * DivideBy10) >> DivideBy10Shift) & TensMask;
    v = high | ((v - 10 * high) << Byte);
    return v + AllZeroChars;
}

// A word with every byte set to c.
constexpr std::uint64_t Repeated(char c) {
    return 0x0101010101010101ULL * static_cast<unsigned char>(c);
}

// True when a byte of the word is below ' ' + 1 (a blank, or a control character): the first
// such byte is found exactly; bytes from 0x80 never count.
bool HasBlankOrControl(std::uint64_t word) {
    return ((word - Repeated('!')) & ~word & ByteHighBits) != 0;
}

bool HasByte(std::uint64_t word, char c) {
    const std::uint64_t x = word ^ Repeated(c);
    return ((x - Repeated(1)) & ~x & ByteHighBits) != 0;
}

// The end of a run of characters that are neither blanks nor controls, eight at a time
// while no such byte is in sight, then one by one up to the first blank.
const char* SkipToBlank(const char* s, const char* end) {
    while (std::size_t(end - s) >= WordChars && !HasBlankOrControl(LoadWord(s)))
        s += WordChars;
    while (s < end && !IsBlank(*s))
        ++s;
    return s;
}

// The first separator at or after s (or end), eight characters at a time.
const char* SkipToSeparator(const char* s, const char* end, char sep) {
    while (std::size_t(end - s) >= WordChars && !HasByte(LoadWord(s), sep))
        s += WordChars;
    while (s < end && *s != sep)
        ++s;
    return s;
}

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
    const char* const integer = c;
    for (; c < end && IsDigit(*c); ++c)
        mantissa = mantissa * 10 + std::uint64_t(*c - '0');
    std::ptrdiff_t digits = c - integer, decimals = 0;
    if (c < end && *c == '.') {
        const char* const fraction = ++c;
        for (; std::size_t(end - c) >= WordChars && IsEightDigits(LoadWord(c)); c += WordChars)
            mantissa = mantissa * EightDigitsValue + EightDigitsOf(LoadWord(c));
        for (; c < end && IsDigit(*c); ++c)
            mantissa = mantissa * 10 + std::uint64_t(*c - '0');
        decimals = c - fraction;
        digits += decimals;
    }
    if (c != end || digits == 0 || digits > MaxIntegerDigits || mantissa >= ExactMantissaLimit ||
        decimals >= std::ptrdiff_t(std::size(ExactPowersOfTen)))
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

std::size_t AppendFields(std::string_view line, Separator separator,
                         std::vector<std::string_view>& fields) {
    const std::size_t before = fields.size();
    const char* s = line.data();
    const char* const end = s + line.size();
    if (separator == Separator::Space) {
        while (true) {
            while (s < end && IsBlank(*s))
                ++s;
            if (s == end)
                return fields.size() - before;
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
            s = SkipToBlank(s, end);
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
        s = SkipToSeparator(s, end, sep);
        const char* e = s;
        while (e > b && IsBlank(e[-1]) && e[-1] != sep)
            --e;
        fields.emplace_back(b, std::size_t(e - b));
        if (s == end)
            return fields.size() - before;
        ++s; // the separator
    }
}

void SplitFields(std::string_view line, Separator separator,
                 std::vector<std::string_view>& fields) {
    fields.clear();
    AppendFields(line, separator, fields);
}

bool ReadNumber(std::string_view field, bool decimalComma, double& value) {
    // Most fields are plain decimals as they stand: no blanks, quotes or '+' to take off.
    if (ReadPlainDecimal(field, value))
        return true;
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

char* WriteFixed(char* out, double value, int decimals) {
    if (!std::isfinite(value))
        return nullptr;
    // Fast path: value * 10^decimals is one correctly rounded product, off by at most half
    // an ulp (below 2^-12 under FastLimit). Unless its fraction lies that close to one half,
    // rounding it to an integer gives the same digits as exact decimal rounding.
    if (decimals >= 0 && decimals < int(std::size(PowersOfTen))) {
        const double magnitude = std::abs(value * PowersOfTen[decimals]);
        if (magnitude < FastLimit) {
            // Truncation is the floor of a non-negative value.
            const double whole = double(std::uint64_t(magnitude));
            const double fraction = magnitude - whole; // exact
            if (std::abs(fraction - 0.5) > NearHalf) {
                const std::uint64_t digits = std::uint64_t(whole) + (fraction > 0.5 ? 1 : 0);
                // The digits, zero-padded to 16 (below 2^40 they are at most 13), and room
                // to copy 16 characters from any of them.
                char text[2 * TextDigits] = {};
                const std::uint64_t high = digits >= EightDigitsValue
                                               ? EightDigitsText(digits / EightDigitsValue)
                                               : AllZeroChars;
                const std::uint64_t low = EightDigitsText(digits % EightDigitsValue);
                std::memcpy(text, &high, WordChars);
                std::memcpy(text + WordChars, &low, WordChars);
                // At least one digit before the point; no sign when the text shows zero.
                const int count = std::max(DigitCount(digits), decimals + 1);
                char* p = out;
                if (value < 0 && digits != 0)
                    *p++ = '-';
                std::memcpy(p, text + TextDigits - count, TextDigits);
                p += count - decimals;
                if (decimals > 0) {
                    *p++ = '.';
                    std::memcpy(p, text + TextDigits - decimals, TextDigits);
                    p += decimals;
                }
                return p;
            }
        }
    }
    char buffer[MaxFixedChars];
    const auto [end, ec] =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
    if (ec != std::errc())
        return nullptr;
    const char* begin = buffer;
    if (*begin == '-') {
        // "-0.0000" is zero.
        bool zero = true;
        for (const char* p = begin + 1; p < end && zero; ++p)
            zero = *p == '0' || *p == '.';
        if (zero)
            ++begin;
    }
    std::memcpy(out, begin, std::size_t(end - begin));
    return out + (end - begin);
}

bool AppendFixed(std::string& out, double value, int decimals) {
    char buffer[MaxFixedChars];
    const char* const end = WriteFixed(buffer, value, decimals);
    if (!end)
        return false;
    out.append(buffer, std::size_t(end - buffer));
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
