#include "util/GeoFormat.h"

#include <gtest/gtest.h>

#include <QRandomGenerator>

#include <cmath>
#include <limits>

namespace {

QString fmt(double value, unsigned format, int decimals, int kind, bool fixedWidth = true,
            bool letter = true) {
    QString out = QStringLiteral("unchanged");
    if (!FormatGeogs(value, format, decimals, kind, out, fixedWidth, letter))
        return QStringLiteral("refused");
    return out;
}

bool parses(const QString& text, double& value) {
    value = -999.0;
    return StringToGeo(text, value);
}

} // namespace

TEST(FormatGeogs, WritesTheDocumentedLayouts) {
    const double lat = 52.0 + 30.0 / 60.0 + 15.1234567 / 3600.0;
    EXPECT_EQ(fmt(lat, 7, 7, 10), u"52°30'15.1234567\"N");
    EXPECT_EQ(fmt(lat, 1, 7, 10), u"52°30.2520576'N");
    EXPECT_EQ(fmt(lat, 0, 7, 10), u"52.5042010°N");
    EXPECT_EQ(fmt(-(3.0 + 0.5 / 3600.0), 7, 7, 11), u"003°00'00.5000000\"W");
    EXPECT_EQ(fmt(-3.5, 7, 2, 11, false, true), u"3°30'0.00\"W");
    EXPECT_EQ(fmt(-3.5, 7, 0, 11, true, false), u"-003°30'00\"");
    EXPECT_EQ(fmt(5.25, 1, 3, 10), u"05°15.000'N");
    EXPECT_EQ(fmt(-5.25, 0, 4, 10), u"05.2500°S");
    EXPECT_EQ(fmt(-5.25, 0, 0, 10, false, false), u"-5°");
}

TEST(FormatGeogs, RoundingCarriesIntoMinutesAndDegrees) {
    // 59.99999999" shown with 7 decimals must become the next minute, never 60".
    EXPECT_EQ(fmt(10.0 + 29.0 / 60.0 + 59.99999999 / 3600.0, 7, 7, 10), u"10°30'00.0000000\"N");
    EXPECT_EQ(fmt(9.0 + 59.0 / 60.0 + 59.99999999 / 3600.0, 7, 7, 10), u"10°00'00.0000000\"N");
    EXPECT_EQ(fmt(-(179.0 + 59.9999999 / 60.0), 1, 3, 11), u"180°00.000'W");
    EXPECT_EQ(fmt(0.99999999999, 0, 3, 10), u"01.000°N");
    EXPECT_EQ(fmt(89.99999999999, 7, 7, 10), u"90°00'00.0000000\"N");
}

TEST(FormatGeogs, NegativeZeroShowsAsZero) {
    EXPECT_EQ(fmt(-0.0, 7, 3, 10), u"00°00'00.000\"N");
    EXPECT_EQ(fmt(-1e-12, 7, 3, 11, true, false), u"000°00'00.000\"");
    EXPECT_EQ(fmt(-1e-12, 0, 2, 11), u"000.00°E");
}

TEST(FormatGeogs, LongitudesAreNormalised) {
    EXPECT_EQ(fmt(190.0, 0, 1, 11), u"170.0°W");
    EXPECT_EQ(fmt(-190.0, 0, 1, 11), u"170.0°E");
    EXPECT_EQ(fmt(180.0, 0, 1, 11), u"180.0°E");
    EXPECT_EQ(fmt(-180.0, 0, 1, 11), u"180.0°W");
    EXPECT_EQ(fmt(360.0, 0, 1, 11), u"000.0°E");
}

TEST(FormatGeogs, RefusesWhatItCannotShowAndLeavesOutAlone) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    for (double v : {nan, inf, -inf, 90.0000001, -91.0})
        EXPECT_EQ(fmt(v, 7, 3, 10), u"refused") << v;
    for (double v : {nan, 360.5, -1e300})
        EXPECT_EQ(fmt(v, 7, 3, 11), u"refused") << v;
    EXPECT_EQ(fmt(1.0, 2, 3, 10), u"refused");
    EXPECT_EQ(fmt(1.0, 7, 3, 12), u"refused");
    EXPECT_EQ(fmt(1.0, 7, -1, 10), u"refused");
    EXPECT_EQ(fmt(1.0, 7, 10, 10), u"refused");
    QString out = QStringLiteral("keep");
    EXPECT_FALSE(FormatGeogs(nan, 7, 7, 10, out));
    EXPECT_EQ(out, u"keep");
}

TEST(StringToGeo, ReadsHandTypedForms) {
    struct Case {
        const char16_t* text;
        double expected;
    } cases[] = {
        {u"-3.5", -3.5},
        {u"3.5W", -3.5},
        {u"3,5 w", -3.5},
        {u"+12", 12.0},
        {u"52 30 15.5 N", 52.0 + 30.0 / 60.0 + 15.5 / 3600.0},
        {u"52:30:15.5", 52.0 + 30.0 / 60.0 + 15.5 / 3600.0},
        {u"52°30'N", 52.5},
        {u"52 ° 30 ' 36 \" S", -(52.51)},
        {u"52°30'36''", 52.51},
        {u"  .5  ", 0.5},
        {u"359.5", 359.5},
        {u"-0", 0.0},
        {u"180°00'00\"W", -180.0},
        {u"\u221245", -45.0},
    };
    for (const Case& c : cases) {
        double v = 0.0;
        ASSERT_TRUE(parses(QString::fromUtf16(c.text), v))
            << QString::fromUtf16(c.text).toStdString();
        EXPECT_NEAR(v, c.expected, 1e-12) << QString::fromUtf16(c.text).toStdString();
    }
    double zero = 1.0;
    ASSERT_TRUE(StringToGeo(QStringLiteral("-0°00'00.000\""), zero));
    EXPECT_FALSE(std::signbit(zero));
}

TEST(StringToGeo, RefusesGarbageAndLeavesOutAlone) {
    const char16_t* bad[] = {
        u"",
        u"   ",
        u"abc",
        u"12°70'",
        u"N52",
        u"1e400",
        u"--5",
        u"5NS",
        u"__°__'__.____\"N",
        u"-5S",
        u"+5N",
        u"95N",
        u"181E",
        u"361",
        u"52°30.5'10\"",
        u"52.5 30",
        u"52:",
        u"52::30",
        u"1.2.3",
        u"5_3",
        u"30'",
        u"52 30 15 10",
        u"52°30'60\"",
        u"52°°",
        u"12'30°",
        u"nan",
        u"inf",
        u",",
        u".",
        u"52 30 15.5 N N",
    };
    for (const char16_t* text : bad) {
        double v = 42.0;
        EXPECT_FALSE(StringToGeo(QString::fromUtf16(text), v))
            << QString::fromUtf16(text).toStdString();
        EXPECT_EQ(v, 42.0);
    }
    double v = 0.0;
    EXPECT_FALSE(StringToGeo(QString(200, u'1'), v));
}

TEST(StringToGeo, PlaceholdersStandForMissingDigitsOnly) {
    double v = 0.0;
    ASSERT_TRUE(parses(QStringLiteral("52°30'15.12____\"N"), v));
    EXPECT_NEAR(v, 52.0 + 30.0 / 60.0 + 15.12 / 3600.0, 1e-12);
    EXPECT_FALSE(parses(QStringLiteral("_5°_3'__.__\"E"), v)); // the seconds have no digit
    ASSERT_TRUE(parses(QStringLiteral("_5°_3'_1.5\"E"), v));
    EXPECT_NEAR(v, 5.0 + 3.0 / 60.0 + 1.5 / 3600.0, 1e-12);
    EXPECT_FALSE(parses(QStringLiteral("52°__'15\"N"), v));
    EXPECT_FALSE(parses(QStringLiteral("5_2°30'N"), v));
}

TEST(StringToGeo, ReadsBackEveryFormattedText) {
    QRandomGenerator rng(20240611);
    const unsigned formats[] = {0, 1, 7};
    for (int i = 0; i < 20000; ++i) {
        const int kind = rng.bounded(2) ? 10 : 11;
        const double limit = kind == 10 ? 90.0 : 180.0;
        double value = (rng.generateDouble() * 2.0 - 1.0) * limit;
        if (i % 50 == 0)
            value = std::round(value); // whole degrees hit the carry and padding paths
        const unsigned format = formats[rng.bounded(3)];
        const int decimals = static_cast<int>(rng.bounded(10));
        const bool fixedWidth = rng.bounded(2), letter = rng.bounded(2);
        QString text;
        ASSERT_TRUE(FormatGeogs(value, format, decimals, kind, text, fixedWidth, letter));
        double back = 1000.0;
        ASSERT_TRUE(StringToGeo(text, back)) << text.toStdString();
        const double unitDegrees = std::pow(10.0, -decimals) / (format == 0   ? 1.0
                                                                : format == 1 ? 60.0
                                                                              : 3600.0);
        ASSERT_LE(std::fabs(back - value), unitDegrees / 2.0 + 1e-12)
            << text.toStdString() << " from " << value;
        // Formatting what was read gives the same text again.
        QString again;
        ASSERT_TRUE(FormatGeogs(back, format, decimals, kind, again, fixedWidth, letter));
        ASSERT_EQ(again, text);
    }
}

TEST(StringToGeo, NeverCrashesOnRandomText) {
    // Random strings over the characters angle texts are made of, plus a few that are not.
    const QString alphabet = QStringLiteral("0123456789.,_-+ :°'\"NSEWnsewe\u2032\u2033x\t");
    QRandomGenerator rng(7);
    int accepted = 0;
    for (int i = 0; i < 50000; ++i) {
        QString text;
        const int length = static_cast<int>(rng.bounded(24));
        for (int k = 0; k < length; ++k)
            text += alphabet[static_cast<int>(rng.bounded(static_cast<int>(alphabet.size())))];
        double v = 0.0;
        if (StringToGeo(text, v)) {
            ++accepted;
            ASSERT_TRUE(std::isfinite(v)) << text.toStdString();
            ASSERT_LE(std::fabs(v), 360.0) << text.toStdString();
        }
    }
    EXPECT_GT(accepted, 0);
}

TEST(StringToGeo, NeverCrashesOnArbitraryUtf16) {
    // Any code unit, lone surrogates included.
    QRandomGenerator rng(11);
    for (int i = 0; i < 20000; ++i) {
        QString text;
        const int length = static_cast<int>(rng.bounded(40));
        for (int k = 0; k < length; ++k)
            text += QChar(static_cast<char16_t>(rng.bounded(0x10000)));
        double v = 7.0;
        if (!StringToGeo(text, v)) {
            ASSERT_EQ(v, 7.0);
        }
    }
}
