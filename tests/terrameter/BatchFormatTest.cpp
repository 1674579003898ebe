// The text side of batch files: column specs, fields, numbers, angles and result texts.
#include "BatchFormat.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

using namespace BatchFormat;

namespace {

std::vector<std::string> Split(std::string_view line, Separator separator) {
    std::vector<std::string_view> fields;
    SplitFields(line, separator, fields);
    return {fields.begin(), fields.end()};
}

std::string Fixed(double value, int decimals) {
    std::string out;
    return AppendFixed(out, value, decimals) ? out : "refused";
}

} // namespace

TEST(BatchColumnSpec, NamesRolesAndDirection) {
    ColumnSpec spec;
    QString error;
    ASSERT_TRUE(ColumnSpec::Parse(QStringLiteral(" ID, Lat ,lon,h,epoch "), false, spec, error));
    EXPECT_FALSE(spec.inverse);
    EXPECT_EQ(spec.first, 1);
    EXPECT_EQ(spec.second, 2);
    EXPECT_EQ(spec.height, 3);
    EXPECT_EQ(spec.epoch, 4);
    EXPECT_EQ(spec.RequiredFields(), 5);
    // Grid names choose the inverse; no height: none is read or written.
    ASSERT_TRUE(ColumnSpec::Parse(QStringLiteral("n,e,-"), false, spec, error));
    EXPECT_TRUE(spec.inverse);
    EXPECT_EQ(spec.height, -1);
    EXPECT_EQ(spec.RequiredFields(), 2);
    ASSERT_TRUE(ColumnSpec::Parse(QString(), true, spec, error));
    EXPECT_TRUE(spec.inverse);
    EXPECT_EQ(spec.height, 2);

    for (const char* bad : {"lat,lon,lat", "lat,lon,z", "lat,h", "id,x,y", "e,n,h", ","}) {
        EXPECT_FALSE(ColumnSpec::Parse(QString::fromLatin1(bad), false, spec, error)) << bad;
        EXPECT_FALSE(error.isEmpty());
    }
    EXPECT_FALSE(ColumnSpec::Parse(QStringLiteral("lat,lon,h"), true, spec, error));
}

TEST(BatchFields, SeparatorsBlanksAndQuotes) {
    EXPECT_EQ(Split(" a , b ,,c ", Separator::Comma),
              (std::vector<std::string>{"a", "b", "", "c"}));
    EXPECT_EQ(Split("a\t 52 30 N \t\t", Separator::Tab),
              (std::vector<std::string>{"a", "52 30 N", "", ""}));
    EXPECT_EQ(Split("  P1   52.5\t4.25  ", Separator::Space),
              (std::vector<std::string>{"P1", "52.5", "4.25"}));
    EXPECT_EQ(Split("\"a;b\";\"say \"\"hi\"\"\";3", Separator::Semicolon),
              (std::vector<std::string>{"\"a;b\"", "\"say \"\"hi\"\"\"", "3"}));
    EXPECT_EQ(Split("\"unclosed,x", Separator::Comma), (std::vector<std::string>{"\"unclosed,x"}));
    EXPECT_EQ(Split("", Separator::Comma), (std::vector<std::string>{""}));
    EXPECT_EQ(Split("", Separator::Space), (std::vector<std::string>{}));

    EXPECT_EQ(DetectSeparator("P1\t52,5\t4"), Separator::Tab);
    EXPECT_EQ(DetectSeparator("P1;52,5;4"), Separator::Semicolon);
    EXPECT_EQ(DetectSeparator("52.5, 4"), Separator::Comma);
    EXPECT_EQ(DetectSeparator("52.5 4"), Separator::Space);
    Separator separator;
    EXPECT_TRUE(ParseSeparator(QStringLiteral("TAB"), separator));
    EXPECT_EQ(separator, Separator::Tab);
    EXPECT_FALSE(ParseSeparator(QStringLiteral("|"), separator));
}

TEST(BatchNumbers, PlainNumbersOnly) {
    double v = 0;
    EXPECT_TRUE(ReadNumber(" +12.5 ", false, v));
    EXPECT_EQ(v, 12.5);
    EXPECT_TRUE(ReadNumber("\"-2e3\"", false, v));
    EXPECT_EQ(v, -2000);
    EXPECT_TRUE(ReadNumber("12,5", true, v));
    EXPECT_EQ(v, 12.5);
    for (const char* bad :
         {"12,5", "nan", "-inf", "infinity", "1e400", "", "+", "-", "++1", "0x10", "1.5m", "1,2,3"})
        EXPECT_FALSE(ReadNumber(bad, false, v)) << bad;
    EXPECT_FALSE(ReadNumber("1,2,3", true, v));
}

TEST(BatchNumbers, AnglesInEveryFormTheWindowReads) {
    double v = 0;
    for (const char* text : {"52.5", "52 30 00N", "52:30:00", "52°30'00\"N", "52°30.0'N", "52,5"}) {
        EXPECT_TRUE(ReadAngle(text, true, v)) << text;
        EXPECT_NEAR(v, 52.5, 1e-12) << text;
    }
    EXPECT_TRUE(ReadAngle("4 15 00W", false, v));
    EXPECT_NEAR(v, -4.25, 1e-12);
    EXPECT_FALSE(ReadAngle("north", false, v));
    EXPECT_FALSE(ReadAngle("52 61 00N", false, v));
}

TEST(BatchNumbers, LongitudeRule) {
    for (const auto& [in, out] : std::vector<std::pair<double, double>>{
             {0, 0}, {180, 180}, {-180, -180}, {181, -179}, {360, 0}, {-360, 0}, {-200, 160}}) {
        double lon = in;
        EXPECT_TRUE(NormaliseLongitude(lon)) << in;
        EXPECT_EQ(lon, out) << in;
    }
    for (double bad : {361.0, -360.5, 1e9}) {
        double lon = bad;
        EXPECT_FALSE(NormaliseLongitude(lon)) << bad;
    }
}

TEST(BatchNumbers, ResultsExactlyWithoutNegativeZero) {
    EXPECT_EQ(Fixed(-0.00002, 4), "0.0000");
    EXPECT_EQ(Fixed(-0.0, 4), "0.0000");
    EXPECT_EQ(Fixed(-0.00005001, 4), "-0.0001");
    EXPECT_EQ(Fixed(-1e-10, 9), "0.000000000");
    EXPECT_EQ(Fixed(1e20, 4), "100000000000000000000.0000");
    const std::string huge = Fixed(-1.7976931348623157e308, 9);
    EXPECT_EQ(huge.size(), 1u + 309u + 1u + 9u);
    EXPECT_EQ(huge.substr(0, 5), "-1797");
    EXPECT_EQ(Fixed(std::numeric_limits<double>::quiet_NaN(), 4), "refused");
    EXPECT_EQ(Fixed(-std::numeric_limits<double>::infinity(), 4), "refused");
}

TEST(BatchHeader, DetectedOnlyWhenNoCoordinateReads) {
    ColumnSpec spec;
    QString error;
    ASSERT_TRUE(ColumnSpec::Parse(QStringLiteral("id,lat,lon,h"), false, spec, error));
    const auto header = [&](std::string_view line) {
        std::vector<std::string_view> fields;
        SplitFields(line, Separator::Comma, fields);
        return LooksLikeHeader(fields, spec, false);
    };
    EXPECT_TRUE(header("Point,Lat,Lon,H"));
    EXPECT_TRUE(header("id,latitude,longitude"));
    EXPECT_FALSE(header("P1,52.5,4,10"));
    EXPECT_FALSE(header("P1,north,4,10")); // a bad data row, not a header
    EXPECT_FALSE(header("1,2,3,4"));
    EXPECT_FALSE(header("P1,,,"));
}

TEST(BatchNumbers, FastResultTextsEqualExactDecimalRounding) {
    // Values of every magnitude a result takes, and values right at half-way points.
    std::mt19937_64 random(20240601);
    std::uniform_real_distribution<double> mantissa(-1.0, 1.0);
    std::uniform_int_distribution<int> exponent(-12, 14);
    const auto exact = [](double value, int decimals) {
        char buffer[400];
        const auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value,
                                             std::chars_format::fixed, decimals);
        std::string text(buffer, end);
        if (text.find_first_not_of("-0.") == std::string::npos && text.front() == '-')
            text.erase(0, 1);
        return text;
    };
    for (int i = 0; i < 200000; ++i) {
        const int decimals = i % 2 ? LengthDecimals : AngleDecimals;
        double value = mantissa(random) * std::pow(10.0, exponent(random));
        if (i % 4 == 0) // on or next to a half-way point of the last decimal
            value = (std::round(value * 1e4) + 0.5) / 1e4;
        if (i % 8 == 0)
            value = std::nextafter(value, 0.0);
        ASSERT_EQ(Fixed(value, decimals), exact(value, decimals)) << value << " " << decimals;
    }
}

TEST(BatchNumbers, PlainDecimalsReadAsFromCharsReadsThem) {
    std::mt19937_64 random(7);
    std::uniform_int_distribution<int> digit(0, 9), length(1, 17), where(0, 17);
    for (int i = 0; i < 200000; ++i) {
        std::string text = i % 3 == 0 ? "-" : "";
        const int n = length(random), point = where(random);
        for (int k = 0; k < n; ++k) {
            if (k == point)
                text += '.';
            text += char('0' + digit(random));
        }
        double expected = 0, read = 0;
        const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), expected);
        ASSERT_EQ(ReadNumber(text, false, read),
                  ec == std::errc() && end == text.data() + text.size())
            << text;
        if (ec == std::errc()) {
            ASSERT_EQ(std::memcmp(&read, &expected, sizeof read), 0) << text;
        }
    }
}

TEST(BatchNumbers, LongDigitStringsReadAsFromCharsReadsThem) {
    // Beyond 19 digits the digits no longer fit 64 bits; leading zeros carry no value.
    std::mt19937_64 random(11);
    std::uniform_int_distribution<int> digit(0, 9), zeros(0, 24), length(1, 30);
    for (int i = 0; i < 20000; ++i) {
        std::string text = (i % 2 ? "0." : "") + std::string(std::size_t(zeros(random)), '0');
        for (int k = length(random); k > 0; --k)
            text += char('0' + digit(random));
        if (i % 3 == 0)
            text.insert(text.size() / 2, ".");
        double expected = 0, read = 0;
        const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), expected);
        const bool valid = ec == std::errc() && end == text.data() + text.size();
        ASSERT_EQ(ReadNumber(text, false, read), valid) << text;
        if (valid) {
            ASSERT_EQ(std::memcmp(&read, &expected, sizeof read), 0) << text;
        }
    }
}
