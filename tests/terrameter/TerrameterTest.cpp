// The calculator: command line, batch conversion and the window, on a real stored system.
#include "BatchConverter.h"
#include "CommandLine.h"
#include "TerrameterWindow.h"

#include "api/OrvGeoFactories.h"
#include "support/TempDataFolder.h"

#include <QLabel>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

const QString Group = QStringLiteral("Europe");
const QString System = QStringLiteral("ED50 / UTM zone 31N");

std::unique_ptr<OrvGeoCoordSysBase> Open(const TempDataFolder& folder, const QString& group = Group,
                                         const QString& system = System,
                                         const QString& geoid = QString()) {
    std::unique_ptr<OrvGeoCoordSysBase> cs(
        OrvGeoCoordSysList::GetCoordSysList().Create(folder.dllType()));
    const QString e;
    if (cs && !cs->DefineSystem(group, system, geoid, e, e, e, e, e, QStringLiteral("none")))
        cs.reset();
    return cs;
}

// Types text into an edit as the user does.
void Type(QLineEdit* edit, const QString& text) {
    edit->setText(text);
    emit edit->textEdited(text);
}

QString LabelText(const QWidget& window, const char* name) {
    const auto* label = window.findChild<QLabel*>(QString::fromLatin1(name));
    return label ? label->text() : QStringLiteral("<no label %1>").arg(QLatin1String(name));
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

    TerrameterOptions survey;
    ASSERT_TRUE(ParseTerrameterArgs({QStringLiteral("terrameter"), QStringLiteral("--batch"),
                                     QStringLiteral("--columns=id,lat,lon,h,epoch"),
                                     QStringLiteral("--separator"), QStringLiteral("tab"),
                                     QStringLiteral("--no-header"), QStringLiteral("--threads"),
                                     QStringLiteral("2"), QStringLiteral("--data=sqlite:/tmp/x"),
                                     QStringLiteral("in.txt"), QStringLiteral("out.txt")},
                                    survey, error))
        << error.toStdString();
    EXPECT_EQ(survey.columns, QStringLiteral("id,lat,lon,h,epoch"));
    EXPECT_EQ(survey.separator, QStringLiteral("tab"));
    EXPECT_EQ(survey.header, TerrameterOptions::Header::Absent);
    EXPECT_EQ(survey.threads, 2);
    EXPECT_EQ(survey.dataSource, QStringLiteral("sqlite:/tmp/x"));
    EXPECT_EQ(survey.output, QStringLiteral("out.txt"));
    for (const char* wrong : {"--threads=0", "--threads=many", "--separator=pipe", "--columns"}) {
        TerrameterOptions o2;
        EXPECT_FALSE(ParseTerrameterArgs(
            {QStringLiteral("terrameter"), QStringLiteral("--batch"), QString::fromLatin1(wrong)},
            o2, error))
            << wrong;
    }
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
    TerrameterWindow window(*cs, Group, System, DescribeSystem(*cs));
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

TEST(TerrameterWindow, ABadEntryClearsTheResults) {
    TempDataFolder folder;
    auto cs = Open(folder);
    ASSERT_TRUE(cs);
    TerrameterWindow window(*cs, Group, System, DescribeSystem(*cs));
    Type(window.latitudeEdit(), QStringLiteral("52"));
    Type(window.longitudeEdit(), QStringLiteral("4"));
    Type(window.heightEdit(), QStringLiteral("100"));
    ASSERT_EQ(window.eastingEdit()->text(), QStringLiteral("568743.4339"));
    for (const auto& [edit, text] : {std::pair{window.latitudeEdit(), QStringLiteral("52x")},
                                     std::pair{window.longitudeEdit(), QStringLiteral("361")},
                                     std::pair{window.heightEdit(), QStringLiteral("high")},
                                     std::pair{window.latitudeEdit(), QString()}}) {
        Type(edit, text);
        EXPECT_TRUE(window.eastingEdit()->text().isEmpty()) << text.toStdString();
        EXPECT_TRUE(window.northingEdit()->text().isEmpty()) << text.toStdString();
        EXPECT_TRUE(window.zEdit()->text().isEmpty()) << text.toStdString();
        EXPECT_FALSE(window.statusText().isEmpty()) << text.toStdString();
        // Back to a good entry.
        Type(window.latitudeEdit(), QStringLiteral("52"));
        Type(window.longitudeEdit(), QStringLiteral("4"));
        Type(window.heightEdit(), QStringLiteral("100"));
        ASSERT_EQ(window.eastingEdit()->text(), QStringLiteral("568743.4339"));
        EXPECT_TRUE(window.statusText().isEmpty());
    }
    EXPECT_TRUE(LabelText(window, "latitudeDmsLabel").startsWith(u"52"));

    // The other way round: an unreadable Easting clears latitude, longitude and height.
    Type(window.eastingEdit(), QStringLiteral("568743.4339"));
    ASSERT_FALSE(window.latitudeEdit()->text().isEmpty());
    Type(window.eastingEdit(), QStringLiteral("east"));
    EXPECT_TRUE(window.latitudeEdit()->text().isEmpty());
    EXPECT_TRUE(window.longitudeEdit()->text().isEmpty());
    EXPECT_TRUE(window.heightEdit()->text().isEmpty());
    EXPECT_TRUE(LabelText(window, "latitudeDmsLabel").isEmpty());
    EXPECT_TRUE(window.statusText().contains(QStringLiteral("\"east\"")));
}

TEST(TerrameterWindow, LongitudesFollowTheBatchRule) {
    TempDataFolder folder;
    auto cs = Open(folder);
    ASSERT_TRUE(cs);
    TerrameterWindow window(*cs, Group, System, DescribeSystem(*cs));
    Type(window.latitudeEdit(), QStringLiteral("52"));
    Type(window.longitudeEdit(), QStringLiteral("-4"));
    const QString west = window.eastingEdit()->text();
    ASSERT_FALSE(west.isEmpty());
    Type(window.longitudeEdit(), QStringLiteral("356"));
    EXPECT_EQ(window.eastingEdit()->text(), west);
    EXPECT_TRUE(LabelText(window, "longitudeDmsLabel").endsWith(u'W'));
    Type(window.longitudeEdit(), QStringLiteral("361"));
    EXPECT_TRUE(window.eastingEdit()->text().isEmpty());
    EXPECT_TRUE(window.statusText().contains(QStringLiteral("-360 and 360")));
}

TEST(TerrameterWindow, TheInverseShowsDegreesMinutesSecondsWithTheHemisphere) {
    TempDataFolder folder;
    auto cs = Open(folder);
    ASSERT_TRUE(cs);
    TerrameterWindow window(*cs, Group, System, DescribeSystem(*cs));
    // 52 deg 30' 15.5" N, 1 deg 15' 30.25" W, converted forward at full precision.
    GeoPoint p{52.0 + 30.0 / 60 + 15.5 / 3600, -(1.0 + 15.0 / 60 + 30.25 / 3600), 10, 0};
    ASSERT_TRUE(cs->Forward(p));
    Type(window.eastingEdit(), QString::number(p.x, 'f', 6));
    Type(window.northingEdit(), QString::number(p.y, 'f', 6));
    Type(window.zEdit(), QString::number(p.z, 'f', 6));
    EXPECT_EQ(window.heightEdit()->text(), QStringLiteral("10.0000"));
    EXPECT_TRUE(window.latitudeEdit()->text().startsWith(QStringLiteral("52.504305")));
    EXPECT_TRUE(window.longitudeEdit()->text().startsWith(QStringLiteral("-1.258402")));
    EXPECT_EQ(LabelText(window, "latitudeDmsLabel"), QStringLiteral("52\u00B030'15.50000\"N"));
    EXPECT_EQ(LabelText(window, "longitudeDmsLabel"), QStringLiteral("001\u00B015'30.25000\"W"));
}

TEST(TerrameterWindow, FieldsShowTheirUnitsAndWhatZIs) {
    TempDataFolder folder;
    auto cs = Open(folder);
    ASSERT_TRUE(cs);
    {
        TerrameterWindow window(*cs, Group, System, DescribeSystem(*cs));
        for (const char* name :
             {"eastingUnitLabel", "northingUnitLabel", "zUnitLabel", "heightUnitLabel"})
            EXPECT_EQ(LabelText(window, name), QStringLiteral("m")) << name;
        EXPECT_EQ(LabelText(window, "latitudeUnitLabel"), QStringLiteral("\u00B0"));
        EXPECT_TRUE(LabelText(window, "zMeaningLabel")
                        .contains(QStringLiteral("height above the International 1924 ellipsoid")))
            << LabelText(window, "zMeaningLabel").toStdString();
        EXPECT_TRUE(LabelText(window, "heightNoteLabel").contains(QStringLiteral("WGS 84")));
    }
    // A system in US survey feet.
    auto feet =
        Open(folder, QStringLiteral("USA"), QStringLiteral("NAD83 / California zone 1 (ftUS)"));
    ASSERT_TRUE(feet);
    {
        TerrameterWindow window(*feet, QStringLiteral("USA"),
                                QStringLiteral("NAD83 / California zone 1 (ftUS)"),
                                DescribeSystem(*feet));
        for (const char* name : {"eastingUnitLabel", "northingUnitLabel", "zUnitLabel"})
            EXPECT_EQ(LabelText(window, name), QStringLiteral("ftUS")) << name;
        EXPECT_TRUE(LabelText(window, "zMeaningLabel").contains(QStringLiteral("US survey foot")));
    }
    // With a geoid model Z is the height above the geoid.
    auto geoid = Open(folder, Group, System, QStringLiteral("EGM96"));
    ASSERT_TRUE(geoid);
    EXPECT_TRUE(
        DescribeSystem(*geoid).zMeaning.startsWith(QStringLiteral("height above the geoid (EGM96")))
        << DescribeSystem(*geoid).zMeaning.toStdString();
}

TEST(TerrameterWindow, AnEmptyEpochStandsForTheStatedDefault) {
    TempDataFolder folder;
    auto cs = Open(folder, QStringLiteral("Australia"), QStringLiteral("GDA94 / MGA zone 55"));
    ASSERT_TRUE(cs);
    const SystemFacts facts = DescribeSystem(*cs);
    ASSERT_TRUE(facts.timeDependent);
    TerrameterWindow window(*cs, QStringLiteral("Australia"), QStringLiteral("GDA94 / MGA zone 55"),
                            facts);
    window.show();
    EXPECT_TRUE(window.epochEdit()->isVisible());
    EXPECT_EQ(window.epochEdit()->placeholderText(), facts.defaultEpoch);
    EXPECT_TRUE(LabelText(window, "epochNoteLabel")
                    .contains(QStringLiteral("empty: %1").arg(facts.defaultEpoch)));
    // Empty and the default itself give the same grid position.
    Type(window.latitudeEdit(), QStringLiteral("-37"));
    Type(window.longitudeEdit(), QStringLiteral("146"));
    const QString atDefault = window.northingEdit()->text();
    ASSERT_FALSE(atDefault.isEmpty());
    Type(window.epochEdit(), facts.defaultEpoch);
    EXPECT_EQ(window.northingEdit()->text(), atDefault);
    Type(window.epochEdit(), QStringLiteral("1800"));
    EXPECT_TRUE(window.northingEdit()->text().isEmpty());
    EXPECT_TRUE(window.statusText().contains(QStringLiteral("1900")));
}

TEST(TerrameterBatch, ALineLongerThanAReadIsRefusedWithoutHoldingIt) {
    TempDataFolder folder;
    auto cs = Open(folder);
    ASSERT_TRUE(cs);
    std::vector<std::pair<std::size_t, std::string>> reports;
    // Three read chunks long, without a line end at the very end of the file.
    const std::string input = "52,4,100\n" + std::string(3 << 20, '1') + "\n53,5,10\n" +
                              std::string(BatchFormat::MaxLineBytes + 1, ' ');
    const std::string out = RunBatch(*cs, false, input, reports);
    ASSERT_EQ(reports.size(), 2u);
    const std::string third = RunBatch(*cs, false, "53,5,10\n", reports);
    EXPECT_EQ(out, "568743.4339,5761720.7719,58.6553\n*,*,*\n" + third + "*,*,*\n");
    EXPECT_EQ(reports[0].first, 2u);
    EXPECT_EQ(reports[1].first, 4u);
    EXPECT_NE(reports[0].second.find("longer than 65536 bytes"), std::string::npos);
}
