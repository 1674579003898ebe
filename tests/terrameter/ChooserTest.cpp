// terrameter without -G and -S: the system is chosen in the selection dialog (answered by a
// script in-process), and the program without a display says what it needs.
#include "CommandLine.h"
#include "SystemChooser.h"

#include "dialogs/PickerTree.h"
#include "platform/ScriptedUi.h"
#include "selection/SysSelectionDlg.h"
#include "store/ReadOnlySource.h"
#include "support/TempDataFolder.h"

#include <QFileInfo>
#include <QProcess>
#include <QPushButton>

#include <gtest/gtest.h>

namespace {

const QString Europe = QStringLiteral("Europe");
const QString Ed50Utm31 = QStringLiteral("ED50 / UTM zone 31N");
constexpr int RunTimeoutMs = 60000;

void FailTest(const QString& why) {
    ADD_FAILURE() << why.toStdString();
}

QPushButton* Button(const SysSelectionDlg& dialog, const char* name) {
    return dialog.findChild<QPushButton*>(QLatin1String(name));
}

// The system under its group, in whichever database holds the group.
QModelIndex Find(const SysSelectionDlg& dialog, const QString& group, const QString& system) {
    const NameTreeModel& model = dialog.Tree()->Model();
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex found =
            model.FindChild(model.FindChild(model.index(row, 0), group), system);
        if (found.isValid())
            return found;
    }
    return {};
}

} // namespace

TEST(TerrameterChooser, PicksTheSystemTheCalculatorOpensAndReadsOnly) {
    TempDataFolder folder;
    // as the program opens it: a missing user database is read as an empty one elsewhere
    const ReadOnlySource source(folder.dllType());
    ASSERT_TRUE(source.ok()) << source.error().toStdString();

    ScriptedUi script(FailTest);
    script.ExpectModal<SysSelectionDlg>([](SysSelectionDlg& dialog) {
        // a chooser: both databases, nothing changed here, a group is no choice
        EXPECT_EQ(dialog.Tree()->Model().rowCount(), 2);
        EXPECT_TRUE(Button(dialog, "addButton")->isHidden());
        EXPECT_FALSE(Button(dialog, "okButton")->isEnabled()); // only a group was preset
        const QModelIndex system = Find(dialog, Europe, Ed50Utm31);
        EXPECT_TRUE(system.isValid());
        dialog.Tree()->Select(system);
        EXPECT_FALSE(Button(dialog, "editButton")->isEnabled());
        EXPECT_FALSE(Button(dialog, "removeButton")->isEnabled());
        EXPECT_TRUE(Button(dialog, "okButton")->isEnabled());
        Button(dialog, "okButton")->click();
        return dialog.result();
    });
    TerrameterOptions options;
    options.group = Europe;
    ASSERT_TRUE(ChooseSystem(source.dllType(), options.group, options.system));
    EXPECT_EQ(options.group, Europe);
    EXPECT_EQ(options.system, Ed50Utm31);
    EXPECT_TRUE(script.Verify());

    // the choice opens in the calculator
    QString error;
    EXPECT_TRUE(OpenNamedSystem(options, source.dllType(), error)) << error.toStdString();
    EXPECT_FALSE(QFileInfo::exists(folder.userDbPath()));
}

TEST(TerrameterChooser, CancelKeepsThePresetAndChoosesNothing) {
    TempDataFolder folder;
    ScriptedUi script(FailTest);
    script.ExpectModal<SysSelectionDlg>([](SysSelectionDlg& dialog) {
        // the preset, in another letter case, is selected
        EXPECT_EQ(dialog.Tree()->Current(), Find(dialog, Europe, Ed50Utm31));
        EXPECT_TRUE(dialog.Tree()->Current().isValid());
        Button(dialog, "cancelButton")->click();
        return dialog.result();
    });
    QString group = Europe.toUpper();
    QString system = Ed50Utm31.toLower();
    EXPECT_FALSE(ChooseSystem(folder.dllType(), group, system));
    EXPECT_EQ(group, Europe.toUpper());
    EXPECT_EQ(system, Ed50Utm31.toLower());
    EXPECT_TRUE(script.Verify());
}

TEST(TerrameterChooser, WithoutADisplayTheProgramSaysWhatItNeeds) {
    TempDataFolder folder;
    const QString data = folder.path() + QStringLiteral("/not-yet");
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    env.remove(QStringLiteral("QT_QPA_PLATFORM"));
    const QStringList dataArgs{QStringLiteral("--data"), QStringLiteral("sqlite:") + data};
    const struct {
        QStringList args;
        const char* needs;
    } cases[] = {
        {dataArgs, "-G:\"group\" -S:\"system\""},
        {dataArgs + QStringList{QStringLiteral("-G:") + Europe}, "-G:\"group\" -S:\"system\""},
        {dataArgs + QStringList{QStringLiteral("-G:") + Europe, QStringLiteral("-S:") + Ed50Utm31},
         "--batch converts files"},
    };
    for (const auto& c : cases) {
        QProcess process;
        process.setProcessEnvironment(env);
        process.start(QStringLiteral(TERRAMETER_PROGRAM), c.args);
        ASSERT_TRUE(process.waitForFinished(RunTimeoutMs));
        const QString err = QString::fromLocal8Bit(process.readAllStandardError());
        EXPECT_EQ(process.exitCode(), 2) << err.toStdString();
        EXPECT_TRUE(err.startsWith(QStringLiteral("terrameter: No display"))) << err.toStdString();
        EXPECT_TRUE(err.contains(QLatin1String(c.needs))) << err.toStdString();
        EXPECT_EQ(err.count(QLatin1Char('\n')), 1) << err.toStdString();
    }
    EXPECT_FALSE(QFileInfo::exists(data));
}
