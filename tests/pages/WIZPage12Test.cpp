#include "PageTestSupport.h"

#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"
#include "pages/WIZPage12.h"
#include "pages/WIZPage14.h"
#include "util/BrandingConfig.h"
#include "wizard/CalculatorProgram.h"
#include "wizard/WzdUtility.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QPushButton>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QThread>

namespace {

const QString Bng = QStringLiteral("OSGB36 / British National Grid");
const QString Group = QStringLiteral("Survey UK");
const QString System = QStringLiteral("BNG survey");
// The parameters of the calculator for Group and System: each name whole, in quotes.
const QString NamesOnly = QStringLiteral(" -G:\"Survey UK\" -S:\"BNG survey\"");
const QString StartFailed = QStringLiteral("Start terrameter failed");
const QString SaveFailed = QStringLiteral("The coordinate system could not be saved.\n");

class OverviewPage : public WizardPageTest {
protected:
    OverviewPage() { BrandingConfig::Instance().SetRootProgramDataFolder(settings.path()); }
    ~OverviewPage() override { BrandingConfig::Instance().SetRootProgramDataFolder(QString()); }

    OrvGeoStaticDataBase* sd() { return wizard.GetGeoStatic(); }
    OrvGeoDatabaseBase* db() { return wizard.GetGeoDatabase(); }
    WIZPage12* page() { return static_cast<WIZPage12*>(Page(12)); }
    QString shownText() {
        return Control<QTextEdit>(12, QStringLiteral("overviewText"))->toPlainText();
    }

    // The earlier pages' work, done directly: the stored British National Grid under a new
    // name and group in the static data; then the overview page.
    void OpenOnBng(const QString& group = Group, const QString& system = System) {
        ASSERT_EQ(wizard.EnsureInitialised(), 1);
        ASSERT_TRUE(sd()->LoadCoordSys(QStringLiteral("UK"), Bng));
        sd()->AssignSystemName(system);
        sd()->SetGroupName(group);
        OpenOn(12);
    }
    void Finish() {
        wizard.FinishButton()->click();
        Flush();
    }
    void writeSettings(const QString& text) {
        QDir().mkpath(BrandingConfig::Instance().GetProgramDataFolder());
        QFile ini(BrandingConfig::Instance().GetProgramDataFolder() + QStringLiteral("/ORV.ini"));
        ASSERT_TRUE(ini.open(QIODevice::WriteOnly));
        ini.write(text.toUtf8());
    }
    // The folder the calculator is started from: the running program's (through the wizard's
    // utility, which moves a build tree's program folder to its source tree).
    static QString programFolder() {
        WzdUtility utility;
        QString dataFolder;
        utility.GetCommonFolders(dataFolder);
        return utility.GetProgramFolder();
    }
    // The names, then the wizard's data source, so that the calculator opens the database the
    // system was saved in.
    QString parameters(const QString& names = NamesOnly) const {
        return names + QStringLiteral(" --data \"") + data.dllType() + QStringLiteral("\"");
    }
    bool stored(const QString& group, const QString& system) {
        QStringList systems;
        db()->GetSystemNames(systems, group);
        return systems.contains(system) && db()->SystemNameExists(system, GEODB_USER);
    }
    // A refusal of the save: the message with the library's reason, OK only.
    void expectSaveRefused() {
        ui.ExpectMessage(QString(), QString(), MsgButtons::Ok, MsgAnswer::Ok);
    }
    QString lastMessage() const {
        const QStringList texts = ui.MessageTexts();
        return texts.isEmpty() ? QString() : texts.constLast();
    }

    QTemporaryDir settings; // the program-data folder: no ORV.ini unless a test writes one
};

} // namespace

// The page asks for Back and Finish and shows the static data's overview, with the test
// point converted with the system being built.
TEST_F(OverviewPage, ShowsTheOverviewOfTheSystemBeingBuilt) {
    OpenOnBng();
    EXPECT_EQ(wizard.GetWizardButtons(), PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_FINISH);
    QString expected;
    sd()->GetOverviewText(expected);
    EXPECT_EQ(page()->GetOverviewText(), expected);
    const QString text = shownText();
    EXPECT_TRUE(text.contains(System));
    EXPECT_TRUE(text.contains(QStringLiteral("OSGB36 to WGS 84 (6)")));
    EXPECT_TRUE(text.contains(QStringLiteral("\nEasting: ")));
    EXPECT_FALSE(text.contains(QStringLiteral("Warning")));
    EXPECT_TRUE(Control<QTextEdit>(12, QStringLiteral("overviewText"))->isReadOnly());
    EXPECT_EQ(Control<QPushButton>(12, QStringLiteral("terrameter"))->text(),
              QStringLiteral("Terrameter"));
    EXPECT_FALSE(stored(Group, System)); // nothing is saved by looking
}

// Finish saves the system and reports the names the static data saved it under (not what the
// pages showed) to the sheet, which closes.
TEST_F(OverviewPage, FinishSavesAndReportsTheStaticDataNames) {
    OpenOnBng();
    sd()->AssignSystemName(QStringLiteral("BNG final"));
    Finish();
    EXPECT_FALSE(wizard.isVisible());
    EXPECT_EQ(wizard.result(), PropertySheet::ID_WIZFINISH);
    EXPECT_EQ(wizard.GetGroupName(), Group);
    EXPECT_EQ(wizard.GetSystemName(), QStringLiteral("BNG final"));
    EXPECT_TRUE(stored(Group, QStringLiteral("BNG final")));
}

// A save the library refuses (a pre-defined group) is not silent: the reason is shown, the
// wizard stays open on the page with the definition, nothing is stored and no names are
// reported. Put right, Finish saves.
TEST_F(OverviewPage, RefusedSaveKeepsTheWizardOpen) {
    OpenOnBng(QStringLiteral("UK"));
    expectSaveRefused();
    Finish();
    EXPECT_TRUE(lastMessage().startsWith(SaveFailed)) << lastMessage().toStdString();
    EXPECT_TRUE(lastMessage().contains(QStringLiteral("\"UK\" is pre-defined")));
    EXPECT_TRUE(wizard.isVisible());
    EXPECT_EQ(ShownPage(), 12);
    EXPECT_TRUE(wizard.GetGroupName().isEmpty());
    EXPECT_TRUE(wizard.GetSystemName().isEmpty());
    EXPECT_FALSE(db()->SystemNameExists(System, GEODB_USER));

    sd()->SetGroupName(Group);
    Finish();
    EXPECT_FALSE(wizard.isVisible());
    EXPECT_TRUE(stored(Group, System));
}

// A name the pre-defined database holds is refused the same way.
TEST_F(OverviewPage, PreDefinedSystemNameIsRefused) {
    OpenOnBng(Group, Bng);
    expectSaveRefused();
    Finish();
    EXPECT_TRUE(lastMessage().startsWith(SaveFailed));
    EXPECT_TRUE(lastMessage().contains(QStringLiteral("pre-defined")));
    EXPECT_TRUE(wizard.isVisible());
    EXPECT_FALSE(db()->GroupNameExists(Group, GEODB_USER));
}

// A database another program is writing: the save waits, gives up, says so and loses
// nothing; the system saved before keeps its group.
TEST_F(OverviewPage, BusyDatabaseLosesNothing) {
    OpenOnBng();
    ui.ExpectStartProgram(
        CalculatorProgram::ProgramFile(CalculatorProgram::DefaultKey(), programFolder()),
        parameters());
    Click(12, QStringLiteral("terrameter")); // saved once
    ASSERT_TRUE(stored(Group, System));
    sd()->SetGroupName(QStringLiteral("Moved"));
    {
        QSqlDatabase other =
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("otherWriter"));
        other.setDatabaseName(data.userDbPath());
        ASSERT_TRUE(other.open());
        QSqlQuery lock(other);
        ASSERT_TRUE(lock.exec(QStringLiteral("BEGIN EXCLUSIVE")));
        expectSaveRefused();
        Finish();
        EXPECT_TRUE(lastMessage().startsWith(SaveFailed));
        EXPECT_TRUE(lastMessage().contains(QStringLiteral("busy")));
        lock.exec(QStringLiteral("ROLLBACK"));
        lock.finish();
        other.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("otherWriter"));
    EXPECT_TRUE(wizard.isVisible());
    EXPECT_TRUE(stored(Group, System));
    EXPECT_FALSE(db()->GroupNameExists(QStringLiteral("Moved"), GEODB_USER));
}

// "Terrameter" saves the system, then starts the calculator built with this project from the
// running program's folder with the group and system names whole, in quotes. Pressed twice,
// it saves and starts twice; Finish afterwards saves once more.
TEST_F(OverviewPage, TerrameterSavesAndStartsTheBuiltCalculator) {
    OpenOnBng();
    const QString program =
        CalculatorProgram::ProgramFile(CalculatorProgram::DefaultKey(), programFolder());
    const QFileInfo built(program);
    EXPECT_EQ(built.fileName(), QStringLiteral("terrameter"));
    EXPECT_TRUE(built.isFile() && built.isExecutable()) << program.toStdString();
    EXPECT_EQ(built.canonicalFilePath(), QFileInfo(QCoreApplication::applicationDirPath() +
                                                   QStringLiteral("/../apps/terrameter/terrameter"))
                                             .canonicalFilePath());

    ui.ExpectStartProgram(program, parameters(), true);
    Click(12, QStringLiteral("terrameter"));
    EXPECT_EQ(ui.PendingCount(), 0);
    EXPECT_EQ(ui.Events().constLast().folder, programFolder());
    EXPECT_TRUE(stored(Group, System));
    EXPECT_EQ(ui.BeepCount(), 0);
    EXPECT_EQ(ShownPage(), 12);

    sd()->AssignSystemName(QStringLiteral("BNG survey 2"));
    ui.ExpectStartProgram(
        program, parameters(QStringLiteral(" -G:\"Survey UK\" -S:\"BNG survey 2\"")), true);
    Click(12, QStringLiteral("terrameter"));
    EXPECT_TRUE(stored(Group, QStringLiteral("BNG survey 2")));

    Finish();
    EXPECT_FALSE(wizard.isVisible());
    EXPECT_EQ(wizard.GetSystemName(), QStringLiteral("BNG survey 2"));
}

// The calculator's program key is the "Terrameter" entry of the section "Programs" of ORV.ini:
// a bare key is a program in the running program's folder, a path is taken as it stands.
TEST_F(OverviewPage, TheSettingNamesTheCalculator) {
    writeSettings(QStringLiteral("[Programs]\nTerrameter=geocalc\n"));
    OpenOnBng();
    ui.ExpectStartProgram(QDir(programFolder()).filePath(QStringLiteral("geocalc")), parameters(),
                          true);
    Click(12, QStringLiteral("terrameter"));

    writeSettings(QStringLiteral("[Programs]\nTerrameter=/opt/survey/bin/calc\n"));
    ui.ExpectStartProgram(QStringLiteral("/opt/survey/bin/calc"), parameters(), true);
    Click(12, QStringLiteral("terrameter"));

    writeSettings(QStringLiteral("[Programs]\nTerrameter=\n"));
    EXPECT_EQ(CalculatorProgram::Key(), QStringLiteral("terrameter"));
}

// A calculator that cannot start: a beep and "Start terrameter failed" (OK); the page stays,
// the system stays saved, and the wizard can still be finished.
TEST_F(OverviewPage, FailedStartBeepsAndSaysSo) {
    writeSettings(QStringLiteral("[Programs]\nTerrameter=/no/such/calculator\n"));
    OpenOnBng();
    ui.ExpectStartProgram(QStringLiteral("/no/such/calculator"), parameters(), false);
    ui.ExpectMessage(StartFailed, QString(), MsgButtons::Ok, MsgAnswer::Ok);
    Click(12, QStringLiteral("terrameter"));
    EXPECT_EQ(ui.BeepCount(), 1);
    EXPECT_EQ(ShownPage(), 12);
    EXPECT_TRUE(wizard.isVisible());
    EXPECT_TRUE(stored(Group, System));
    Finish();
    EXPECT_FALSE(wizard.isVisible());
    EXPECT_EQ(wizard.GetGroupName(), Group);
}

// A refused save starts nothing: the calculator would show an older definition, or none.
TEST_F(OverviewPage, RefusedSaveStartsNoCalculator) {
    OpenOnBng(QStringLiteral("UK"));
    expectSaveRefused();
    Click(12, QStringLiteral("terrameter"));
    EXPECT_TRUE(lastMessage().startsWith(SaveFailed));
    EXPECT_EQ(ui.BeepCount(), 0);
    EXPECT_EQ(ShownPage(), 12);
}

// Through the real interface: the program runs in the program folder and gets the two
// names each as one argument, blanks and all.
TEST_F(OverviewPage, RealStartPassesTheNamesWhole) {
    QTemporaryDir scratch;
    const QString script = scratch.filePath(QStringLiteral("calc.sh"));
    const QString out = scratch.filePath(QStringLiteral("calc.out"));
    {
        QFile file(script);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QStringLiteral("#!/bin/sh\npwd -P > '%1.part'\nfor a in \"$@\"; do echo \"$a\" "
                                  ">> '%1.part'; done\nmv '%1.part' '%1'\n")
                       .arg(out)
                       .toUtf8());
        file.close();
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    writeSettings(QStringLiteral("[Programs]\nTerrameter=%1\n").arg(script));
    OpenOnBng();
    UiInteraction* scripted = SetUi(nullptr); // the real interface
    Click(12, QStringLiteral("terrameter"));
    SetUi(scripted);

    QElapsedTimer waited;
    waited.start();
    while (!QFileInfo::exists(out) && waited.elapsed() < 10000)
        QThread::msleep(20);
    QFile result(out);
    ASSERT_TRUE(result.open(QIODevice::ReadOnly));
    const QStringList lines =
        QString::fromUtf8(result.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 5);
    EXPECT_EQ(lines[0], QFileInfo(programFolder()).canonicalFilePath());
    EXPECT_EQ(lines[1], QStringLiteral("-G:Survey UK"));
    EXPECT_EQ(lines[2], QStringLiteral("-S:BNG survey"));
    EXPECT_EQ(lines[3], QStringLiteral("--data"));
    EXPECT_EQ(lines[4], data.dllType());
}

// A wizard on the default data source (the empty DLL type) passes the two names only; the
// calculator then opens its own default, which is the same database.
TEST(OverviewCalculatorParameters, DefaultDataSourceAddsNothing) {
    EXPECT_EQ(WIZPage12::CalculatorParameters(QStringLiteral("Survey UK"),
                                              QStringLiteral("BNG survey"), QString()),
              NamesOnly);
    EXPECT_EQ(WIZPage12::CalculatorParameters(QStringLiteral("G"), QStringLiteral("S"),
                                              QStringLiteral("sqlite:/srv/survey data")),
              QStringLiteral(" -G:\"G\" -S:\"S\" --data \"sqlite:/srv/survey data\""));
}

// The empty page the sheet can place in the flow: no banner, Back and Next, its text kept.
TEST_F(OverviewPage, EmptyPageOffersBackAndNext) {
    OpenOn(0);
    WIZPage14 empty(&wizard);
    empty.SetText(QStringLiteral("kept"));
    wizard.AddPage(&empty);
    ASSERT_TRUE(wizard.SetActivePage(&empty));
    Flush();
    EXPECT_EQ(wizard.GetWizardButtons(), PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT);
    EXPECT_TRUE(empty.Title().isEmpty());
    EXPECT_EQ(empty.GetSheet(), &wizard);
    EXPECT_EQ(empty.GetText(), QStringLiteral("kept"));
    wizard.RemovePage(&empty);
}
