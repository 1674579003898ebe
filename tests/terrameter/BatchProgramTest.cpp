// terrameter --batch run as a program, on real files: what a surveyor sees. The program is
// the one built beside the tests, or the one named by the environment variable TERRAMETER.
#include "api/OrvGeoFactories.h"
#include "support/TempDataFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <gtest/gtest.h>

#include <charconv>
#include <memory>
#include <string>

namespace {

const QString Group = QStringLiteral("Europe");
const QString System = QStringLiteral("ED50 / UTM zone 31N");
constexpr int RunTimeoutMs = 60000;

QString Program() {
    const QString chosen = qEnvironmentVariable("TERRAMETER");
    return chosen.isEmpty() ? QStringLiteral(TERRAMETER_PROGRAM) : chosen;
}

struct ProgramRun {
    int exitCode = -1;
    QString out, err;
};

class TerrameterBatchProgram : public ::testing::Test {
protected:
    QString File(const QString& name) const { return m_folder.path() + QLatin1Char('/') + name; }

    void Write(const QString& name, const QByteArray& content) const {
        QFile file(File(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QByteArray Read(const QString& name) const {
        QFile file(File(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // terrameter --batch on the test system with further arguments.
    ProgramRun Batch(const QStringList& args, const QByteArray& input = {}) const {
        QProcess process;
        process.setProgram(Program());
        process.setArguments(QStringList{QStringLiteral("--batch"), QStringLiteral("-G:") + Group,
                                         QStringLiteral("-S:") + System, QStringLiteral("--data"),
                                         m_folder.dllType()} +
                             args);
        process.start();
        process.write(input);
        process.closeWriteChannel();
        ProgramRun run;
        if (!process.waitForFinished(RunTimeoutMs))
            return run;
        run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
        run.out = QString::fromUtf8(process.readAllStandardOutput());
        run.err = QString::fromUtf8(process.readAllStandardError());
        return run;
    }

    // The engine's own result for a WGS 84 point, at full precision.
    GeoPoint Engine(double lat, double lon, double h) const {
        std::unique_ptr<OrvGeoCoordSysBase> cs(
            OrvGeoCoordSysList::GetCoordSysList().Create(m_folder.dllType()));
        const QString e;
        GeoPoint p{lat, lon, h, 0};
        EXPECT_TRUE(cs &&
                    cs->DefineSystem(Group, System, e, e, e, e, e, e, QStringLiteral("none")));
        EXPECT_TRUE(cs && cs->Forward(p));
        return p;
    }

    static QString Fixed(double value, int decimals = 4) {
        char buffer[400];
        const auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value,
                                             std::chars_format::fixed, decimals);
        return ec == std::errc() ? QString::fromLatin1(buffer, end - buffer) : QString();
    }

    static QString Row(const GeoPoint& p) {
        return Fixed(p.x) + QLatin1Char(',') + Fixed(p.y) + QLatin1Char(',') + Fixed(p.z);
    }

    TempDataFolder m_folder;
};

TEST_F(TerrameterBatchProgram, RefusesTheInputAsOutputAndLeavesItAsItWas) {
    const QByteArray content = "52,4,100\n53,5,10\n";
    Write(QStringLiteral("points.csv"), content);
    ASSERT_TRUE(QFile::link(File(QStringLiteral("points.csv")), File(QStringLiteral("link.csv"))));
    // The same file by another name: a symbolic link, a path through "..".
    for (const QString& output :
         {File(QStringLiteral("points.csv")), File(QStringLiteral("link.csv")),
          m_folder.path() + QStringLiteral("/../") + QDir(m_folder.path()).dirName() +
              QStringLiteral("/points.csv")}) {
        const ProgramRun run = Batch({File(QStringLiteral("points.csv")), output});
        EXPECT_EQ(run.exitCode, 2) << output.toStdString();
        EXPECT_TRUE(run.err.contains(QStringLiteral("is the input file"))) << run.err.toStdString();
        EXPECT_EQ(Read(QStringLiteral("points.csv")), content);
    }
    // Standard input that is the output file.
    QProcess process;
    process.setProgram(Program());
    process.setArguments({QStringLiteral("--batch"), QStringLiteral("-G:") + Group,
                          QStringLiteral("-S:") + System, QStringLiteral("--data"),
                          m_folder.dllType(), QStringLiteral("-"),
                          File(QStringLiteral("points.csv"))});
    process.setStandardInputFile(File(QStringLiteral("points.csv")));
    process.start();
    ASSERT_TRUE(process.waitForFinished(RunTimeoutMs));
    EXPECT_EQ(process.exitCode(), 2);
    EXPECT_EQ(Read(QStringLiteral("points.csv")), content);
}

TEST_F(TerrameterBatchProgram, UnreadableInputIsReportedAndWritesNoOutput) {
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(QStringLiteral("folder")));
    ProgramRun run = Batch({File(QStringLiteral("folder")), File(QStringLiteral("out.csv"))});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.err.contains(QStringLiteral("folder"))) << run.err.toStdString();
    EXPECT_FALSE(QFile::exists(File(QStringLiteral("out.csv"))));

    // An output that existed is left as it was.
    Write(QStringLiteral("old.csv"), "kept\n");
    run = Batch({File(QStringLiteral("folder")), File(QStringLiteral("old.csv"))});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(Read(QStringLiteral("old.csv")), QByteArray("kept\n"));

    run = Batch({File(QStringLiteral("missing.csv")), File(QStringLiteral("out.csv"))});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.err.contains(QStringLiteral("missing.csv"))) << run.err.toStdString();
    EXPECT_FALSE(QFile::exists(File(QStringLiteral("out.csv"))));
}

TEST_F(TerrameterBatchProgram, AFailedWriteIsReported) {
    Write(QStringLiteral("in.csv"), "52,4,100\n");
    if (!QFile::exists(QStringLiteral("/dev/full")))
        GTEST_SKIP() << "no /dev/full";
    const ProgramRun run = Batch({File(QStringLiteral("in.csv")), QStringLiteral("/dev/full")});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.err.contains(QStringLiteral("Writing \"/dev/full\" failed")))
        << run.err.toStdString();
}

TEST_F(TerrameterBatchProgram, ReplacesTheOutputOnlyWhenComplete) {
    Write(QStringLiteral("in.csv"), "52,4,100\n");
    Write(QStringLiteral("out.csv"), "old\n");
    const ProgramRun run = Batch({File(QStringLiteral("in.csv")), File(QStringLiteral("out.csv"))});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(QString::fromUtf8(Read(QStringLiteral("out.csv"))),
              Row(Engine(52, 4, 100)) + QLatin1Char('\n'));
    // No temporary file is left behind.
    QStringList files = QDir(m_folder.path()).entryList(QDir::Files);
    files.removeAll(QStringLiteral("ORV.ini"));
    files.removeIf([](const QString& name) { return name.endsWith(u".db"); });
    EXPECT_EQ(files, (QStringList{QStringLiteral("in.csv"), QStringLiteral("out.csv")}));
}

TEST_F(TerrameterBatchProgram, CreatesNoDatabaseFile) {
    const QString fresh = File(QStringLiteral("fresh"));
    QProcess process;
    process.setProgram(Program());
    process.setArguments({QStringLiteral("--batch"), QStringLiteral("-G:") + Group,
                          QStringLiteral("-S:") + System, QStringLiteral("--data"),
                          QStringLiteral("sqlite:") + fresh});
    process.start();
    process.write("52,4,100\n");
    process.closeWriteChannel();
    ASSERT_TRUE(process.waitForFinished(RunTimeoutMs));
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_EQ(QString::fromUtf8(process.readAllStandardOutput()),
              Row(Engine(52, 4, 100)) + QLatin1Char('\n'));
    EXPECT_FALSE(QFileInfo::exists(fresh));
}

TEST_F(TerrameterBatchProgram, WritesEveryFiniteResultExactly) {
    const ProgramRun run = Batch({}, "52,4,1e300\n52,4,1e20\n");
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_FALSE(run.out.contains(QStringLiteral("nan")));
    EXPECT_EQ(run.out, Row(Engine(52, 4, 1e300)) + QLatin1Char('\n') + Row(Engine(52, 4, 1e20)) +
                           QLatin1Char('\n'));
}

TEST_F(TerrameterBatchProgram, RefusesOverlongLinesByTheirNumber) {
    QByteArray input = "52,4,100\n52,4,100";
    input += QByteArray(70000, ' ');
    input += "\n53,5,10\n";
    const ProgramRun run = Batch({}, input);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.err.contains(QStringLiteral("line 2: the line is longer than 65536 bytes")))
        << run.err.toStdString();
    EXPECT_EQ(run.out, Row(Engine(52, 4, 100)) + QStringLiteral("\n*,*,*\n") +
                           Row(Engine(53, 5, 10)) + QLatin1Char('\n'));
}

TEST_F(TerrameterBatchProgram, LongitudesFollowTheDocumentedRule) {
    // -360..360 is brought into -180..180; anything beyond is refused, not wrapped.
    const ProgramRun run = Batch({}, "52,361,1\n52,-361,1\n52,356,1\n52,-356,1\n");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out, QStringLiteral("*,*,*\n*,*,*\n") + Row(Engine(52, -4, 1)) +
                           QLatin1Char('\n') + Row(Engine(52, 4, 1)) + QLatin1Char('\n'));
    EXPECT_TRUE(run.err.contains(QStringLiteral("line 1: longitude 361 is outside -360..360")))
        << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(QStringLiteral("line 2: longitude -361")));
}

TEST_F(TerrameterBatchProgram, KeepsOneRowPerInputRowAndReportsInLineOrder) {
    const ProgramRun run =
        Batch({}, "52,4,100\nnot,a,number\n95,3,1\n# note\n\n1,2\n40.5, 2.25 ,10\n");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out, Row(Engine(52, 4, 100)) +
                           QStringLiteral("\n*,*,*\n*,*,*\n# note\n\n*,*,*\n") +
                           Row(Engine(40.5, 2.25, 10)) + QLatin1Char('\n'));
    const QStringList lines = run.err.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 4) << run.err.toStdString();
    EXPECT_TRUE(lines[0].startsWith(QStringLiteral("line 2: latitude \"not\"")));
    EXPECT_TRUE(lines[1].startsWith(QStringLiteral("line 3: latitude 95 is outside")));
    EXPECT_TRUE(lines[2].startsWith(QStringLiteral("line 6: 3 columns expected, 2 found")));
    EXPECT_EQ(lines[3], QStringLiteral("terrameter: 3 of 7 lines not converted"));
}

TEST_F(TerrameterBatchProgram, NegativeZeroPrintsAsZero) {
    // A height whose Z is -0.00002 m, found with the engine at full precision.
    std::unique_ptr<OrvGeoCoordSysBase> cs(
        OrvGeoCoordSysList::GetCoordSysList().Create(m_folder.dllType()));
    const QString e;
    ASSERT_TRUE(cs && cs->DefineSystem(Group, System, e, e, e, e, e, e, QStringLiteral("none")));
    GeoPoint grid = Engine(52, 4, 0);
    grid.z = -0.00002;
    ASSERT_TRUE(cs->Inverse(grid));
    const QByteArray input = QByteArray::number(grid.x, 'g', 17) + ',' +
                             QByteArray::number(grid.y, 'g', 17) + ',' +
                             QByteArray::number(grid.z, 'g', 17) + '\n';
    const ProgramRun run = Batch({}, input);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.out.endsWith(QStringLiteral(",0.0000\n"))) << run.out.toStdString();
}

TEST_F(TerrameterBatchProgram, ConvertsASurveyFileRowForRow) {
    // Header, point ids, tabs, degrees-minutes-seconds in the forms the window reads, a code
    // column; a bad row in the middle and a Windows line end.
    const QByteArray input = "Point\tLatitude\tLongitude\tHeight\tCode\n"
                             "P1\t52 30 00N\t4 15 00E\t12.5\tfence\n"
                             "P2\t52°30'00\"N\t004:15:00\t12.5\twall\n"
                             "P3\tnorth\t4\t1\tbad\n"
                             "P4\t52.5\t4.25\t12.5\tpost\r\n";
    Write(QStringLiteral("survey.txt"), input);
    const ProgramRun run =
        Batch({QStringLiteral("--columns"), QStringLiteral("id,lat,lon,h"),
               File(QStringLiteral("survey.txt")), File(QStringLiteral("out.txt"))});
    EXPECT_EQ(run.exitCode, 1);
    const GeoPoint p = Engine(52.5, 4.25, 12.5);
    const QString values =
        Fixed(p.x) + QLatin1Char('\t') + Fixed(p.y) + QLatin1Char('\t') + Fixed(p.z);
    EXPECT_EQ(QString::fromUtf8(Read(QStringLiteral("out.txt"))),
              QStringLiteral("Point\tEasting [m]\tNorthing [m]\tZ [m]\tCode\n") +
                  QStringLiteral("P1\t") + values + QStringLiteral("\tfence\n") +
                  QStringLiteral("P2\t") + values + QStringLiteral("\twall\n") +
                  QStringLiteral("P3\t*\t*\t*\tbad\n") + QStringLiteral("P4\t") + values +
                  QStringLiteral("\tpost\r\n"));
    EXPECT_TRUE(run.err.startsWith(QStringLiteral("line 4: latitude \"north\" is not an angle")))
        << run.err.toStdString();

    // Semicolons with decimal commas, and blanks between columns.
    ProgramRun other =
        Batch({QStringLiteral("--columns"), QStringLiteral("id,lat,lon,h")}, "P1;52,5;4,25;12,5\n");
    EXPECT_EQ(other.out, QStringLiteral("P1;") + Fixed(p.x) + QLatin1Char(';') + Fixed(p.y) +
                             QLatin1Char(';') + Fixed(p.z) + QLatin1Char('\n'));
    other = Batch({QStringLiteral("--columns"), QStringLiteral("id,lat,lon,h")},
                  "  P1   52.5  4.25   12.5  \n");
    EXPECT_EQ(other.out, QStringLiteral("P1 ") + Fixed(p.x) + QLatin1Char(' ') + Fixed(p.y) +
                             QLatin1Char(' ') + Fixed(p.z) + QLatin1Char('\n'));
}

TEST_F(TerrameterBatchProgram, AFourthNumberIsAnEpochOnlyWhenTheColumnsSaySo) {
    // Copied as it stands by default.
    ProgramRun run = Batch({}, "52,4,100,2020.5\n");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out, Row(Engine(52, 4, 100)) + QStringLiteral(",2020.5\n"));
    // Named: checked as an observation epoch (empty: the default).
    run = Batch({QStringLiteral("--columns"), QStringLiteral("lat,lon,h,epoch")},
                "52,4,100,2020.5\n52,4,100,1800\n52,4,100,\n52,4,100,soon\n");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out, Row(Engine(52, 4, 100)) + QStringLiteral(",2020.5\n*,*,*,1800\n") +
                           Row(Engine(52, 4, 100)) + QStringLiteral(",\n*,*,*,soon\n"));
    EXPECT_TRUE(run.err.contains(QStringLiteral("line 2: epoch 1800 is outside 1900..2200")));
    EXPECT_TRUE(run.err.contains(QStringLiteral("line 4: epoch \"soon\" is not a decimal year")));
}

TEST_F(TerrameterBatchProgram, BadArgumentsStopBeforeAnyOutput) {
    Write(QStringLiteral("in.csv"), "52,4,100\n");
    for (const QStringList& args :
         {QStringList{QStringLiteral("--columns"), QStringLiteral("id,lat,lat,h")},
          QStringList{QStringLiteral("--columns"), QStringLiteral("lat,e,h")},
          QStringList{QStringLiteral("--columns"), QStringLiteral("height,lat")},
          QStringList{QStringLiteral("--separator"), QStringLiteral("pipe")},
          QStringList{QStringLiteral("--threads"), QStringLiteral("0")}}) {
        const ProgramRun run = Batch(
            args + QStringList{File(QStringLiteral("in.csv")), File(QStringLiteral("out.csv"))});
        EXPECT_EQ(run.exitCode, 2) << args.join(u' ').toStdString();
        EXPECT_FALSE(run.err.isEmpty());
        EXPECT_FALSE(QFile::exists(File(QStringLiteral("out.csv"))));
    }
}

} // namespace
