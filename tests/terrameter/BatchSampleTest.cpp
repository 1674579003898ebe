// Sample batch files whose complete output (every byte, every report) is pinned: the text
// paths of the batch (splitting, reading numbers and angles, writing results) can be made
// faster, but never change what a surveyor gets.
#include "BatchConverter.h"

#include "api/OrvGeoFactories.h"
#include "engine/GeoCoordSys.h"
#include "support/TempDataFolder.h"
#include "support/TimeDependentUtm.h"

#include <QCryptographicHash>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

const QString Group = QStringLiteral("Europe");
const QString System = QStringLiteral("ED50 / UTM zone 31N");

std::unique_ptr<OrvGeoCoordSysBase> OpenStored(const TempDataFolder& folder) {
    std::unique_ptr<OrvGeoCoordSysBase> cs(
        OrvGeoCoordSysList::GetCoordSysList().Create(folder.dllType()));
    const QString e;
    if (cs && !cs->DefineSystem(Group, System, e, e, e, e, e, e, QStringLiteral("none")))
        cs.reset();
    return cs;
}

// A system whose datum transformation depends on the observation epoch.
std::unique_ptr<GeoCoordSys> TimeDependentSystem() {
    const SystemDefinition def = TimeDependentUtm();
    auto cs = std::make_unique<GeoCoordSys>();
    EXPECT_TRUE(cs->Define(def)) << cs->LastError().toStdString();
    return cs;
}

// The output of a run followed by its reports, one per line.
std::string Convert(const std::vector<OrvGeoCoordSysBase*>& systems, const char* columns,
                    const std::string& input, std::size_t blockBytes = 0,
                    BatchFormat::Separator separator = BatchFormat::Separator::Auto) {
    BatchConverter::Settings settings;
    QString error;
    EXPECT_TRUE(BatchFormat::ColumnSpec::Parse(QString::fromLatin1(columns), false,
                                               settings.columns, error));
    if (blockBytes > 0)
        settings.blockBytes = blockBytes;
    settings.separator = separator;
    std::FILE* in = tmpfile();
    std::FILE* out = tmpfile();
    std::fwrite(input.data(), 1, input.size(), in);
    std::rewind(in);
    std::string reports;
    BatchConverter(systems, settings).Run(in, out, [&](std::size_t line, const std::string& why) {
        reports += "line " + std::to_string(line) + ": " + why + "\n";
    });
    std::string text(static_cast<std::size_t>(std::ftell(out)), '\0');
    std::rewind(out);
    text.resize(std::fread(text.data(), 1, text.size(), out));
    std::fclose(in);
    std::fclose(out);
    return text + "--\n" + reports;
}

// Many lines of every number form a survey export writes, from a fixed pseudo-random
// sequence: signs, 0 to 15 decimals, exponents, decimal commas, hemisphere letters, DMS.
std::string Bulk(char separator, std::size_t lines) {
    std::uint64_t state = 0x9e3779b97f4a7c15ULL;
    auto next = [&] {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return state >> 33;
    };
    auto decimal = [&](double value, int decimals, bool comma) {
        char buffer[64];
        std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
        std::string text = buffer;
        if (comma)
            for (char& c : text)
                c = c == '.' ? ',' : c;
        return text;
    };
    const bool comma = separator != ',';
    std::string text;
    for (std::size_t i = 0; i < lines; ++i) {
        const double lat = 38.6 + double(next() % 43000000) * 1e-6;
        const double lon = -1.0 + double(next() % 8000000) * 1e-6;
        const double h = -200.0 + double(next() % 50000000) * 1e-4;
        std::string latText, lonText;
        switch (next() % 8) {
        case 0: // hemisphere letters
            latText = decimal(lat, 7, false) + "N";
            lonText = decimal(std::abs(lon), 7, false) + (lon < 0 ? "W" : "E");
            break;
        case 1: { // degrees, minutes and seconds
            const int d = int(lat), m = int((lat - d) * 60);
            latText = std::to_string(d) + ":" + std::to_string(m) + ":" +
                      decimal(((lat - d) * 60 - m) * 60, 4, false);
            lonText = "+" + decimal(lon, 8, false);
            break;
        }
        case 2: // east longitudes beyond 180
            latText = decimal(lat, 12, comma);
            lonText = decimal(lon < 0 ? lon + 360.0 : lon, 9, comma);
            break;
        case 3: { // exponents and long digit strings
            char buffer[64];
            std::snprintf(buffer, sizeof buffer, "%.12e", lat);
            latText = buffer;
            lonText = decimal(lon, 15, false);
            break;
        }
        default:
            latText = decimal(lat, int(next() % 11), comma);
            lonText = decimal(lon, int(next() % 11), comma);
            break;
        }
        if (i % 101 == 7) // out of range: a failed line among the others
            latText = "9" + latText;
        text += "P" + std::to_string(i) + separator + latText + separator + lonText + separator +
                decimal(h, int(next() % 6), comma && i % 3 == 0) + "\n";
    }
    return text;
}

std::string Sha256(const std::string& text) {
    return QCryptographicHash::hash(QByteArrayView(text.data(), qsizetype(text.size())),
                                    QCryptographicHash::Sha256)
        .toHex()
        .toStdString();
}

} // namespace

TEST(BatchSample, SurveyFileOutputIsPinned) {
    TempDataFolder folder;
    auto cs = OpenStored(folder);
    ASSERT_TRUE(cs);
    const std::string input = "# harbour survey, ED50\r\n"
                              "Point\tLat\tLon\tHeight\tCode\r\n"
                              "P1\t52°30'15.5\"N\t4°15'00\"E\t12.5\tquay\r\n"
                              "P2\t52 30 15.5 N\t3.5W\t-0.25\r\n"
                              "\r\n"
                              "P3\tnorth\t4.25\t1\tbad\r\n"
                              "P4\t95\t4\t1\r\n"
                              "P5\t52.5\t356.25\t100.125\tx\ty\r\n"
                              "P6\t52.5\t361\t1\r\n"
                              "P7\t52.5\t4.25\r\n"
                              "P8\t52,5\t4,25\t12,5\r\n"
                              "P9\t\"52.5\"\t\"4.25\"\t\"7\"\r\n"
                              "P10\t0\t0\t\t\r\n"
                              "   # indented comment\n"
                              "P11\t38.6000000001\t-0.9999999999\t0.00004\n"
                              "P12\t+52.123456789012\t4.98765432109876\t1e3";
    const std::string expected = "# harbour survey, ED50\r\n"
                                 "Point\tEasting [m]\tNorthing [m]\tZ [m]\tCode\r\n"
                                 "P1\t584937.6368\t5818076.0971\t-27.8221\tquay\r\n"
                                 "P2\t59139.7135\t5837223.9429\t-48.5875\r\n"
                                 "\r\n"
                                 "P3\t*\t*\t*\tbad\r\n"
                                 "P4\t*\t*\t*\r\n"
                                 "P5\t42155.2779\t5838306.9117\t51.5058\tx\ty\r\n"
                                 "P6\t*\t*\t*\r\n"
                                 "P7\t*\t*\t*\r\n"
                                 "P8\t584945.9272\t5817597.2063\t-27.8287\r\n"
                                 "P9\t584945.9273\t5817597.2063\t-33.3287\r\n"
                                 "P10\t*\t*\t*\t\r\n"
                                 "   # indented comment\n"
                                 "P11\t151717.6126\t4280181.2261\t-73.3731\n"
                                 "P12\t636165.3249\t5776843.4732\t959.8093\n"
                                 "--\n"
                                 "line 6: latitude \"north\" is not an angle\n"
                                 "line 7: latitude 95 is outside -90..90\n"
                                 "line 9: longitude 361 is outside -360..360\n"
                                 "line 10: 4 columns expected, 3 found\n"
                                 "line 13: no height\n";
    EXPECT_EQ(Convert({cs.get()}, "id,lat,lon,h", input), expected);
}

TEST(BatchSample, DecimalCommasQuotesAndEpochsArePinned) {
    auto cs = TimeDependentSystem();
    const std::string input = "52,5;4,25;12,5;2020,5\n"
                              "\"Harbour; pier 3\";52.5;4.25;0;\n"
                              "-52,5;-4,25;-12,5;0\n"
                              "52.5;4.25;12.5;1899\n"
                              "52.5;4.25;12.5;x\n"
                              "0;0;0;2200\n"
                              "52;4;100;2010;copied;\"a \"\"b\"\"\"\n";
    // Without an epoch column the fourth number is copied, never taken as an epoch.
    EXPECT_EQ(Convert({cs.get()}, "", input),
              "584852.3202;5817386.4156;12.8713;2020,5\n"
              "*;*;*;0;\n"
              "8190.0267;-5841395.4131;-12.6224;0\n"
              "584852.3202;5817386.4156;12.8713;1899\n"
              "584852.3202;5817386.4156;12.8713;x\n"
              "166021.7361;0.2384;0.1638;2200\n"
              "568649.9265;5761510.3550;100.3699;2010;copied;\"a \"\"b\"\"\"\n"
              "--\n"
              "line 2: latitude \"\"Harbour; pier 3\"\" is not an angle\n");
    EXPECT_EQ(Convert({cs.get()}, "lat,lon,h,epoch", input.substr(input.find('\n') + 1)),
              "*;*;*;0;\n"
              "8190.0267;-5841395.4131;-12.6224;0\n"
              "*;*;*;1899\n"
              "*;*;*;x\n"
              "166022.5144;-0.1595;0.3659;2200\n"
              "568649.9265;5761510.3550;100.3699;2010;copied;\"a \"\"b\"\"\"\n"
              "--\n"
              "line 1: latitude \"\"Harbour; pier 3\"\" is not an angle\n"
              "line 3: epoch 1899 is outside 1900..2200 (0 or empty: the default epoch)\n"
              "line 4: epoch \"x\" is not a decimal year\n");
}

TEST(BatchSample, BulkOutputIsPinnedOnOneThreadAndTwo) {
    TempDataFolder folder;
    auto one = OpenStored(folder);
    auto two = OpenStored(folder);
    ASSERT_TRUE(one && two);
    constexpr std::size_t Lines = 20000;
    constexpr std::size_t SmallBlock = 4096;
    using BatchFormat::Separator;
    const struct {
        Separator separator;
        const char* sha256;
    } cases[] = {
        {Separator::Comma, "593786576e2b1735d5e9c0601a33420a01af18f4cb8b80aa860e9f003c53d972"},
        {Separator::Semicolon, "aaf36e6bfb7030ff109f34a5bf50cee8161aa053e661ea805be8f46cc0c1bac5"},
        {Separator::Tab, "76844bd0350bd465fd8abe267dd6aac821725f19dad9f61059ad545fedb0725a"},
        {Separator::Space, "ec79e6811551093689523db4f2d17976d6e7b15c9e8212344bce01f84e32d3b2"}};
    for (const auto& c : cases) {
        const std::string input = Bulk(BatchFormat::SeparatorChar(c.separator), Lines);
        const std::string single = Convert({one.get()}, "id,lat,lon,h", input, 0, c.separator);
        EXPECT_EQ(Convert({one.get(), two.get()}, "id,lat,lon,h", input, SmallBlock, c.separator),
                  single);
        EXPECT_EQ(Sha256(single), c.sha256) << "separator " << int(c.separator);
    }
}
