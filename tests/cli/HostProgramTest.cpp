// The host program orv-coordsys: its command line, the data-source check, the dialogs it
// opens (run in-process, answered by a script) and, as a program, what it does without a
// display. The program is the one built beside the tests.
#include "HostProgram.h"

#include "dialogs/PickerTree.h"
#include "platform/ScriptedUi.h"
#include "selection/SysSelectionDlg.h"
#include "support/TempDataFolder.h"
#include "wizard/GeoWizard.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTextStream>

#include <gtest/gtest.h>

namespace {

const QString Uk = QStringLiteral("UK");
const QString Bng = QStringLiteral("OSGB36 / British National Grid");
const QString Europe = QStringLiteral("Europe");
const QString Ed50Utm31 = QStringLiteral("ED50 / UTM zone 31N");
constexpr int RunTimeoutMs = 60000;

void FailTest(const QString& why) {
    ADD_FAILURE() << why.toStdString();
}

HostOptions Parse(const QStringList& args, QString& error, bool& ok) {
    HostOptions options;
    ok = ParseHostArgs(QStringList{QStringLiteral("orv-coordsys")} + args, options, error);
    return options;
}

bool Enabled(const SysSelectionDlg& dialog, const char* button) {
    return dialog.findChild<QPushButton*>(QLatin1String(button))->isEnabled();
}

// Selects a stored system in the dialog's tree, under whichever database holds its group.
bool SelectSystem(SysSelectionDlg& dialog, const QString& group, const QString& system) {
    const NameTreeModel& model = dialog.Tree()->Model();
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex found =
            model.FindChild(model.FindChild(model.index(row, 0), group), system);
        if (found.isValid()) {
            dialog.Tree()->Select(found);
            return true;
        }
    }
    return false;
}

// The host's dialog run in-process on a fresh data folder; what it printed.
class HostDialog : public ::testing::Test {
protected:
    QString Run(HostOptions::Mode mode, const QString& group = QString(),
                const QString& system = QString()) {
        HostOptions options;
        options.mode = mode;
        options.dataSource = m_data.dllType();
        options.dataSourceSet = true;
        options.group = group;
        options.system = system;
        QString printed;
        QTextStream out(&printed);
        EXPECT_EQ(RunHostDialog(options, out), HostExitOk);
        out.flush();
        return printed;
    }

    TempDataFolder m_data;
    ScriptedUi m_script{FailTest};
};

} // namespace

TEST(HostCommandLine, OptionsAndTheirSpellings) {
    QString error;
    bool ok = false;
    HostOptions o = Parse({}, error, ok);
    ASSERT_TRUE(ok);
    EXPECT_EQ(o.mode, HostOptions::Mode::Select);
    EXPECT_FALSE(o.dataSourceSet);

    // --data in both forms, the older --data-source still understood
    for (const QStringList& args :
         {QStringList{QStringLiteral("--data"), QStringLiteral("sqlite:/x")},
          QStringList{QStringLiteral("--data=sqlite:/x")},
          QStringList{QStringLiteral("--data-source"), QStringLiteral("sqlite:/x")}}) {
        o = Parse(args, error, ok);
        ASSERT_TRUE(ok) << args.join(' ').toStdString();
        EXPECT_EQ(o.dataSource, QStringLiteral("sqlite:/x"));
        EXPECT_TRUE(o.dataSourceSet);
    }
    // the default data source given on purpose
    o = Parse({QStringLiteral("--data=")}, error, ok);
    EXPECT_TRUE(ok && o.dataSourceSet && o.dataSource.isEmpty());

    o = Parse(
        {QStringLiteral("--add"), QStringLiteral("--group"), Uk, QStringLiteral("--system"), Bng},
        error, ok);
    ASSERT_TRUE(ok);
    EXPECT_EQ(o.mode, HostOptions::Mode::Add);
    EXPECT_EQ(o.group, Uk);
    EXPECT_EQ(o.system, Bng);

    o = Parse({QStringLiteral("--screenshots"), QStringLiteral("shots")}, error, ok);
    ASSERT_TRUE(ok);
    EXPECT_EQ(o.mode, HostOptions::Mode::Screenshots);
    EXPECT_EQ(o.screenshotsFolder, QStringLiteral("shots"));
}

TEST(HostCommandLine, RefusesWhatDoesNotGoTogether) {
    const struct {
        QStringList args;
        const char* message;
    } cases[] = {
        {{QStringLiteral("--add"), QStringLiteral("--wizard")}, "--add and --wizard"},
        {{QStringLiteral("--wizard"), QStringLiteral("--screenshots"), QStringLiteral("x")},
         "--wizard and --screenshots"},
        {{QStringLiteral("--wizard"), QStringLiteral("--group"), Uk}, "--wizard takes neither"},
        {{QStringLiteral("--screenshots=x"), QStringLiteral("--system"), Bng},
         "--screenshots takes neither"},
        {{QStringLiteral("--screenshots=")}, "needs a folder"},
        {{QStringLiteral("--data")}, "--data needs a value"},
        {{QStringLiteral("--group")}, "--group needs a value"},
        {{QStringLiteral("--datasource"), QStringLiteral("x")}, "Unknown option \"--datasource\""},
        {{QStringLiteral("UK")}, "Unexpected argument \"UK\""},
    };
    for (const auto& c : cases) {
        QString error;
        bool ok = true;
        Parse(c.args, error, ok);
        EXPECT_FALSE(ok) << c.args.join(' ').toStdString();
        EXPECT_TRUE(error.contains(QLatin1String(c.message)))
            << c.args.join(' ').toStdString() << ": " << error.toStdString();
        EXPECT_FALSE(error.contains(QLatin1Char('\n')));
    }
}

TEST(HostCommandLine, UsageExplainsAddAndTheEditFlag) {
    const QString usage = HostUsage();
    for (const char* text : {"--add", "--wizard", "--data", "--group", "--system", "--screenshots",
                             "edit flag", "turns Add off", "Cancel prints nothing"})
        EXPECT_TRUE(usage.contains(QLatin1String(text))) << text;
    EXPECT_TRUE(HostAsksForHelpOrVersion({QStringLiteral("p"), QStringLiteral("--version")}));
    EXPECT_FALSE(HostAsksForHelpOrVersion({QStringLiteral("p"), QStringLiteral("--add")}));
}

TEST(HostDataSource, UnknownOrUnusableSourcesAreOneLineErrors) {
    TempDataFolder folder;
    // a regular file where the data folder's parent would be: the folder cannot be made
    const QString file = folder.path() + QStringLiteral("/plain-file");
    QFile plain(file);
    ASSERT_TRUE(plain.open(QIODevice::WriteOnly));
    plain.close();
    const QString unmakeable = QStringLiteral("sqlite:") + file + QStringLiteral("/data");

    QString error;
    for (const QString& source :
         {QStringLiteral("foo:bar"), QStringLiteral("sqlite:"), QStringLiteral("SQLite:/tmp")}) {
        error.clear();
        EXPECT_FALSE(CheckDataSource(source, false, error)) << source.toStdString();
        EXPECT_FALSE(CheckDataSource(source, true, error)) << source.toStdString();
        EXPECT_FALSE(error.isEmpty());
        EXPECT_FALSE(error.contains(QLatin1Char('\n'))) << error.toStdString();
    }
    EXPECT_TRUE(CheckDataSource(QStringLiteral("foo:bar"), true, error) == false &&
                error.contains(QStringLiteral("foo:bar")));

    // Unopened, a folder that cannot be made is not noticed (and nothing is made) ...
    EXPECT_TRUE(CheckDataSource(unmakeable, false, error));
    // ... opened, it is a failure naming the source.
    error.clear();
    EXPECT_FALSE(CheckDataSource(unmakeable, true, error));
    EXPECT_TRUE(error.contains(unmakeable)) << error.toStdString();
    EXPECT_FALSE(error.contains(QLatin1Char('\n'))) << error.toStdString();

    // A new folder is made with its user database.
    const QString fresh = folder.path() + QStringLiteral("/new/data");
    EXPECT_TRUE(CheckDataSource(QStringLiteral("sqlite:") + fresh, true, error))
        << error.toStdString();
    EXPECT_TRUE(QFileInfo(fresh).isDir());
}

TEST_F(HostDialog, SelectionDialogAsAHostOpensItPrintsTheChoice) {
    m_script.ExpectModal<SysSelectionDlg>([](SysSelectionDlg& dialog) {
        // the host's current system, preset in another letter case, selected; with the edit
        // flag Add is off and the system in use can be neither edited nor removed
        EXPECT_EQ(dialog.GetGroupName(), Uk);
        EXPECT_EQ(dialog.GetSystemName(), Bng);
        EXPECT_FALSE(Enabled(dialog, "addButton"));
        EXPECT_FALSE(Enabled(dialog, "editButton"));
        EXPECT_FALSE(Enabled(dialog, "removeButton"));
        EXPECT_TRUE(Enabled(dialog, "okButton"));
        EXPECT_TRUE(SelectSystem(dialog, Europe, Ed50Utm31));
        EXPECT_TRUE(Enabled(dialog, "editButton"));
        EXPECT_FALSE(Enabled(dialog, "addButton"));
        dialog.findChild<QPushButton*>(QStringLiteral("okButton"))->click();
        return dialog.result();
    });
    EXPECT_EQ(Run(HostOptions::Mode::Select, Uk.toLower(), Bng.toUpper()),
              Europe + QLatin1Char('\n') + Ed50Utm31 + QLatin1Char('\n'));
    EXPECT_TRUE(m_script.Verify());
}

TEST_F(HostDialog, CancelOrAGroupPrintsNothing) {
    m_script.ExpectModal<SysSelectionDlg>([](SysSelectionDlg& dialog) {
        dialog.findChild<QPushButton*>(QStringLiteral("cancelButton"))->click();
        return dialog.result();
    });
    EXPECT_EQ(Run(HostOptions::Mode::Select, Uk, Bng), QString());

    // a group is no choice: OK is off, and the dialog stays open when asked to close with it
    m_script.ExpectModal<SysSelectionDlg>([](SysSelectionDlg& dialog) {
        const NameTreeModel& model = dialog.Tree()->Model();
        dialog.Tree()->Select(model.FindChild(model.index(0, 0), Uk));
        EXPECT_FALSE(Enabled(dialog, "okButton"));
        dialog.OnOK();
        EXPECT_EQ(dialog.result(), QDialog::Rejected);
        return int(QDialog::Rejected);
    });
    EXPECT_EQ(Run(HostOptions::Mode::Select), QString());
    EXPECT_TRUE(m_script.Verify());
}

TEST_F(HostDialog, AddTurnsTheEditFlagOff) {
    m_script.ExpectModal<SysSelectionDlg>([this](SysSelectionDlg& dialog) {
        EXPECT_TRUE(Enabled(dialog, "addButton"));
        EXPECT_TRUE(SelectSystem(dialog, Europe, Ed50Utm31));
        EXPECT_TRUE(Enabled(dialog, "addButton"));
        EXPECT_FALSE(Enabled(dialog, "editButton"));
        EXPECT_FALSE(Enabled(dialog, "removeButton"));
        // Add runs the wizard on the same data source
        m_script.ExpectModal<GeoWizard>([this](GeoWizard& wizard) {
            EXPECT_EQ(wizard.GetDllType(), m_data.dllType());
            return int(QDialog::Rejected);
        });
        dialog.findChild<QPushButton*>(QStringLiteral("addButton"))->click();
        dialog.findChild<QPushButton*>(QStringLiteral("okButton"))->click();
        return dialog.result();
    });
    EXPECT_EQ(Run(HostOptions::Mode::Add),
              Europe + QLatin1Char('\n') + Ed50Utm31 + QLatin1Char('\n'));
    EXPECT_TRUE(m_script.Verify());
}

TEST_F(HostDialog, WizardPrintsTheSavedSystemAfterFinishOnly) {
    const QString group = QStringLiteral("River Thames");
    const QString system = QStringLiteral("Thames crossing 2019");
    m_script.ExpectModal<GeoWizard>([&](GeoWizard& wizard) {
        EXPECT_EQ(wizard.GetDllType(), m_data.dllType());
        // what the overview page's Finish reports to the sheet
        wizard.SetGroupName(group);
        wizard.SetSystemName(system);
        return PropertySheet::ID_WIZFINISH;
    });
    EXPECT_EQ(Run(HostOptions::Mode::Wizard), group + QLatin1Char('\n') + system + '\n');

    m_script.ExpectModal<GeoWizard>([](GeoWizard&) { return int(QDialog::Rejected); });
    EXPECT_EQ(Run(HostOptions::Mode::Wizard), QString());
    EXPECT_TRUE(m_script.Verify());
}

// ---- the program ----

namespace {

struct ProgramRun {
    int exitCode = -1;
    QString out, err;
};

// orv-coordsys with arguments; display "none" removes every way to a window system,
// "offscreen" chooses Qt's offscreen platform.
ProgramRun RunProgram(const QStringList& args, const QString& display) {
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    env.remove(QStringLiteral("QT_QPA_PLATFORM"));
    // Qt wants a private runtime folder, or it says so on standard error.
    static const QTemporaryDir runtime;
    env.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime.path());
    if (display != QLatin1String("none"))
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), display);
    QProcess process;
    process.setProcessEnvironment(env);
    process.start(QStringLiteral(ORV_COORDSYS_PROGRAM), args);
    ProgramRun run;
    if (!process.waitForFinished(RunTimeoutMs)) {
        process.kill();
        process.waitForFinished();
        return run;
    }
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = QString::fromLocal8Bit(process.readAllStandardOutput());
    run.err = QString::fromLocal8Bit(process.readAllStandardError());
    return run;
}

} // namespace

TEST(HostProgram, WithoutADisplaySaysSoAndMakesNothing) {
    TempDataFolder folder;
    const QString data = folder.path() + QStringLiteral("/not-yet");
    for (const QStringList& args :
         {QStringList{QStringLiteral("--data"), QStringLiteral("sqlite:") + data},
          QStringList{QStringLiteral("--add"), QStringLiteral("--data=sqlite:") + data},
          QStringList{QStringLiteral("--wizard"), QStringLiteral("--data=sqlite:") + data}}) {
        const ProgramRun run = RunProgram(args, QStringLiteral("none"));
        EXPECT_EQ(run.exitCode, HostExitFailed) << args.join(' ').toStdString();
        EXPECT_TRUE(run.err.startsWith(QStringLiteral("orv-coordsys: No display")))
            << run.err.toStdString();
        EXPECT_TRUE(run.err.contains(QStringLiteral("--screenshots")));
        EXPECT_EQ(run.err.count(QLatin1Char('\n')), 1) << run.err.toStdString();
        EXPECT_TRUE(run.out.isEmpty());
    }
    EXPECT_FALSE(QFileInfo::exists(data));

    // the usage needs no display either
    const ProgramRun help = RunProgram({QStringLiteral("--help")}, QStringLiteral("none"));
    EXPECT_EQ(help.exitCode, HostExitOk);
    EXPECT_TRUE(help.out.contains(QStringLiteral("--add")));
}

TEST(HostProgram, AnUnusableDataSourceFailsBeforeAnyDialog) {
    TempDataFolder folder;
    const QString file = folder.path() + QStringLiteral("/plain-file");
    QFile plain(file);
    ASSERT_TRUE(plain.open(QIODevice::WriteOnly));
    plain.close();
    // On the offscreen platform a dialog would wait for ever: the run would time out.
    for (const QString& source :
         {QStringLiteral("foo:bar"), QStringLiteral("sqlite:") + file + QStringLiteral("/x")}) {
        const ProgramRun run =
            RunProgram({QStringLiteral("--data"), source}, QStringLiteral("offscreen"));
        EXPECT_EQ(run.exitCode, HostExitFailed) << source.toStdString();
        EXPECT_TRUE(run.err.contains(source)) << run.err.toStdString();
        EXPECT_EQ(run.err.count(QLatin1Char('\n')), 1) << run.err.toStdString();
        EXPECT_TRUE(run.out.isEmpty());
    }
    const ProgramRun bad =
        RunProgram({QStringLiteral("--add"), QStringLiteral("--wizard")}, QStringLiteral("none"));
    EXPECT_EQ(bad.exitCode, HostExitUsage);
    EXPECT_TRUE(bad.err.contains(QStringLiteral("--add and --wizard")));
}
