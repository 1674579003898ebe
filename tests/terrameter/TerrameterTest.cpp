// The calculator: command line, batch conversion and the window, on a real stored system.
#include "BatchConverter.h"
#include "CommandLine.h"
#include "TerrameterWindow.h"

#include "api/OrvGeoFactories.h"
#include "support/TempDataFolder.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

const QString Group = QStringLiteral("Europe");
const QString System = QStringLiteral("ED50 / UTM zone 31N");

std::unique_ptr<OrvGeoCoordSysBase> Open(const TempDataFolder& folder) {
    std::unique_ptr<OrvGeoCoordSysBase> cs(
        OrvGeoCoordSysList::GetCoordSysList().Create(folder.dllType()));
    const QString e;
    if (cs && !cs->DefineSystem(Group, System, e, e, e, e, e, e, QStringLiteral("none")))
        cs.reset();
    return cs;
}

std::string RunBatch(const std::vector<OrvGeoCoordSysBase*>& systems,
                     const BatchConverter::Settings& settings, const std::string& input,
                     std::vector<std::pair<std::size_t, std::string>>& reports) {
    std::FILE* in = tmpfile();
    std::FILE* out = tmpfile();
    std::fwrite(input.data(), 1, input.size(), in);
    std::rewind(in);
    BatchConverter(systems, settings).Run(in, out, [&](std::size_t line, const std::string& why) {
        reports.emplace_back(line, why);
    });
    std::string text(static_cast<std::size_t>(std::ftell(out)), '\0');
    std::rewind(out);
    text.resize(std::fread(text.data(), 1, text.size(), out));
    std::fclose(in);
    std::fclose(out);
    return text;
}

std::string RunBatch(OrvGeoCoordSysBase& cs, bool inverse, const std::string& input,
                     std::vector<std::pair<std::size_t, std::string>>& reports) {
    BatchConverter::Settings settings;
    QString error;
    EXPECT_TRUE(BatchFormat::ColumnSpec::Parse(QString(), inverse, settings.columns, error));
    return RunBatch({&cs}, settings, input, reports);
}

} // namespace

TEST(TerrameterCommandLine, GroupSystemAndBatchOptions) {
    TerrameterOptions o;
    QString error;
    ASSERT_TRUE(
        ParseTerrameterArgs({QStringLiteral("terrameter"), QStringLiteral("-G:\"My group\""),
                             QStringLiteral("-S:A system"), QStringLiteral("--batch"),
                             QStringLiteral("--inverse"), QStringLiteral("in.csv")},
                            o, error));
    EXPECT_EQ(o.group, QStringLiteral("My group"));
    EXPECT_EQ(o.system, QStringLiteral("A system"));
    EXPECT_TRUE(o.batch && o.inverse);
    EXPECT_EQ(o.input, QStringLiteral("in.csv"));
    EXPECT_EQ(o.output, QStringLiteral("-"));
    TerrameterOptions bad;
    EXPECT_FALSE(
        ParseTerrameterArgs({QStringLiteral("terrameter"), QStringLiteral("--bogus")}, bad, error));
    EXPECT_FALSE(ParseTerrameterArgs({QStringLiteral("terrameter"), QStringLiteral("x.csv")}, bad,
                                     error)); // files only in batch mode
}

TEST(TerrameterBatch, ParallelBlocksWriteWhatOneThreadWrites) {
    TempDataFolder folder;
    auto one = Open(folder);
    auto two = Open(folder);
    ASSERT_TRUE(one && two);
    // Many small blocks, bad lines spread over them.
    std::string input = "# survey\n";
    for (int i = 0; i < 3000; ++i) {
        if (i % 97 == 5)
            input += "P" + std::to_string(i) + ",95,4,1\n";
        else
            input += "P" + std::to_string(i) + "," + std::to_string(50 + (i % 300) * 0.01) + ",4," +
                     std::to_string(i % 50) + "\n";
    }
    BatchConverter::Settings settings;
    QString error;
    ASSERT_TRUE(BatchFormat::ColumnSpec::Parse(QStringLiteral("id,lat,lon,h"), false,
                                               settings.columns, error));
    std::vector<std::pair<std::size_t, std::string>> single, parallel;
    const std::string expected = RunBatch({one.get()}, settings, input, single);
    settings.blockBytes = 512;
    EXPECT_EQ(RunBatch({one.get(), two.get()}, settings, input, parallel), expected);
    EXPECT_EQ(parallel, single);
    ASSERT_EQ(single.size(), 31u);
    EXPECT_EQ(single.front().first, 7u);
    EXPECT_TRUE(std::is_sorted(parallel.begin(), parallel.end()));
    EXPECT_EQ(std::count(expected.begin(), expected.end(), '\n'), 3001);
}

TEST(TerrameterBatch, QuotedFieldsAndCommentsPassThrough) {
    TempDataFolder folder;
    auto cs = Open(folder);
    ASSERT_TRUE(cs);
    std::vector<std::pair<std::size_t, std::string>> reports;
    BatchConverter::Settings settings;
    QString error;
    ASSERT_TRUE(BatchFormat::ColumnSpec::Parse(QStringLiteral("id,lat,lon,h,-"), false,
                                               settings.columns, error));
    const std::string out =
        RunBatch({cs.get()}, settings, "\"Harbour, pier 3\",52,4,100,\"a \"\"b\"\"\",x\n", reports);
    EXPECT_EQ(out, "\"Harbour, pier 3\",568743.4339,5761720.7719,58.6553,\"a \"\"b\"\"\",x\n");
    EXPECT_TRUE(reports.empty());
}

TEST(TerrameterBatch, InverseReturnsToTheStart) {
    TempDataFolder folder;
    auto cs = Open(folder);
    ASSERT_TRUE(cs);
    std::vector<std::pair<std::size_t, std::string>> reports;
    const std::string grid = RunBatch(*cs, false, "52.5,4.25,12.5\n", reports);
    EXPECT_EQ(RunBatch(*cs, true, grid, reports), "52.500000000,4.250000000,12.5000\n");
    EXPECT_TRUE(reports.empty());
}

TEST(TerrameterWindow, ConvertsBothWaysAsTheUserTypes) {
    TempDataFolder folder;
    auto cs = Open(folder);
    ASSERT_TRUE(cs);
    TerrameterWindow window(*cs, Group, System, false);
    window.show();
    EXPECT_FALSE(window.epochEdit()->isVisible());
    window.latitudeEdit()->setText(QStringLiteral("52"));
    window.longitudeEdit()->setText(QStringLiteral("4"));
    window.heightEdit()->setText(QStringLiteral("100"));
    emit window.heightEdit()->textEdited(window.heightEdit()->text());
    EXPECT_EQ(window.eastingEdit()->text(), QStringLiteral("568743.4339"));
    EXPECT_EQ(window.northingEdit()->text(), QStringLiteral("5761720.7719"));

    window.eastingEdit()->setText(QStringLiteral("568743.4339"));
    emit window.eastingEdit()->textEdited(window.eastingEdit()->text());
    EXPECT_EQ(window.latitudeEdit()->text().left(8), QStringLiteral("52.00000"));

    window.latitudeEdit()->setText(QStringLiteral("95"));
    emit window.latitudeEdit()->textEdited(window.latitudeEdit()->text());
    EXPECT_TRUE(window.eastingEdit()->text().isEmpty());
    EXPECT_FALSE(window.statusText().isEmpty());
}
