#include "selection/SysSelectionDlg.h"
#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoFactories.h"
#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/NameFilterProxy.h"
#include "dialogs/PickerTree.h"
#include "platform/ScriptedUi.h"
#include "resources/StringTable.h"
#include "support/QtPrinters.h"
#include "support/TempDataFolder.h"
#include "wizard/GeoWizard.h"

#include <QPushButton>
#include <QTextEdit>

#include <gtest/gtest.h>

#include <memory>

namespace {

const QString kUk = QStringLiteral("UK");
const QString kBng = QStringLiteral("OSGB36 / British National Grid");
const QString kProjects = QStringLiteral("Projects");

class Selection : public ::testing::Test {
protected:
    // Stores copies of the British National Grid as user systems of the group "Projects".
    void storeUserSystems(const QStringList& names) {
        std::unique_ptr<OrvGeoStaticDataBase> sd(
            OrvGeoStaticDatabaseList::GetGeoStaticDataList().Create(data.dllType()));
        ASSERT_TRUE(sd);
        for (const QString& name : names) {
            ASSERT_TRUE(sd->LoadCoordSys(kUk, kBng));
            sd->AssignSystemName(name);
            sd->SetGroupName(kProjects);
            ASSERT_TRUE(sd->SaveCoordSys()) << sd->LastError().toStdString();
        }
    }
    std::unique_ptr<SysSelectionDlg> open(geodb_type scope, bool edit, const QString& group,
                                          const QString& system) {
        auto dialog = std::make_unique<SysSelectionDlg>(scope, edit);
        dialog->SetDllType(data.dllType());
        dialog->SetGroupName(group);
        dialog->SetSystemName(system);
        dialog->EnsureInitialised();
        return dialog;
    }
    static QStringList roots(SysSelectionDlg& dialog) {
        QStringList names;
        const NameTreeModel& model = dialog.Tree()->Model();
        for (int row = 0; row < model.rowCount(); ++row)
            names << model.NameAt(model.index(row, 0));
        return names;
    }
    static bool enabled(SysSelectionDlg& dialog, const char* button) {
        return dialog.findChild<QPushButton*>(QLatin1String(button))->isEnabled();
    }
    static QString pane(SysSelectionDlg& dialog) {
        return dialog.findChild<QTextEdit*>(QStringLiteral("infoPane"))->toPlainText();
    }
    static QModelIndex find(SysSelectionDlg& dialog, const QString& group, const QString& system) {
        const NameTreeModel& model = dialog.Tree()->Model();
        for (int row = 0; row < model.rowCount(); ++row) {
            const QModelIndex g = model.FindChild(model.index(row, 0), group);
            if (g.isValid())
                return system.isEmpty() ? g : model.FindChild(g, system);
        }
        return {};
    }

    TempDataFolder data;
    ScriptedUi ui{[](const QString& m) { ADD_FAILURE() << m.toStdString(); }};
};

} // namespace

// The scope mask names the databases left out of the tree.
TEST_F(Selection, ScopeMaskLeavesDatabasesOut) {
    const QString system = LoadOrvString(StrId::RootSystemDatabase);
    const QString user = LoadOrvString(StrId::RootUserDatabase);
    EXPECT_EQ(roots(*open(geodb_type(0), false, {}, {})), (QStringList{system, user}));
    EXPECT_EQ(roots(*open(GEODB_USER, false, {}, {})), QStringList{system});
    EXPECT_EQ(roots(*open(GEODB_SYSTEM, false, {}, {})), QStringList{user});
    EXPECT_TRUE(roots(*open(GEODB_ALL, false, {}, {})).isEmpty());
}

// The host's system is found in any letter case and shown; with the edit flag it can be
// neither edited nor removed, and Add is off; another system can.
TEST_F(Selection, HostsSystemIsSelectedAndProtected) {
    auto dialog = open(geodb_type(0), true, QStringLiteral("uk"), kBng.toUpper());
    EXPECT_EQ(dialog->GetGroupName(), kUk);
    EXPECT_EQ(dialog->GetSystemName(), kBng);
    QString info;
    dialog->GetGeoDatabase()->GetSystemInfoText(info, kUk, kBng, {}, {}, {}, {}, {});
    EXPECT_EQ(pane(*dialog), info.replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
    EXPECT_FALSE(enabled(*dialog, "addButton"));
    EXPECT_FALSE(enabled(*dialog, "editButton"));
    EXPECT_FALSE(enabled(*dialog, "removeButton"));
    EXPECT_TRUE(enabled(*dialog, "okButton"));

    dialog->Tree()->Select(
        find(*dialog, QStringLiteral("Netherlands"), QStringLiteral("Amersfoort / RD New")));
    EXPECT_TRUE(enabled(*dialog, "editButton"));
    EXPECT_TRUE(enabled(*dialog, "removeButton"));

    // a group is no choice
    dialog->Tree()->Select(find(*dialog, kUk, {}));
    EXPECT_FALSE(enabled(*dialog, "okButton"));
    dialog->OnOK();
    EXPECT_EQ(dialog->result(), 0);
}

// Remove moves the selection to the next system first; a refused removal keeps the item
// with the message, and the selection stays moved.
TEST_F(Selection, RemoveMovesOnAndKeepsWhatIsRefused) {
    storeUserSystems({QStringLiteral("Survey A"), QStringLiteral("Survey B")});
    auto dialog = open(geodb_type(0), true, {}, {});
    dialog->Tree()->Select(find(*dialog, kProjects, QStringLiteral("Survey A")));
    dialog->OnRemove();
    EXPECT_FALSE(find(*dialog, kProjects, QStringLiteral("Survey A")).isValid());
    EXPECT_EQ(dialog->GetSystemName(), QStringLiteral("Survey B"));
    EXPECT_FALSE(dialog->GetGeoDatabase()->SystemNameExists(QStringLiteral("Survey A")));

    // the last of its group: nothing is selected afterwards
    dialog->OnRemove();
    EXPECT_FALSE(dialog->Tree()->Current().isValid());
    EXPECT_TRUE(pane(*dialog).isEmpty());

    dialog->Tree()->Select(
        find(*dialog, QStringLiteral("Netherlands"), QStringLiteral("Amersfoort / RD New")));
    ui.ExpectMessage(LoadOrvString(StrId::RemoveSystemFailed), QString(), MsgButtons::Ok,
                     MsgAnswer::Ok);
    dialog->OnRemove();
    EXPECT_TRUE(find(*dialog, QStringLiteral("Netherlands"), QStringLiteral("Amersfoort / RD New"))
                    .isValid());
    EXPECT_NE(dialog->GetSystemName(), QStringLiteral("Amersfoort / RD New"));
}

// Add runs the wizard; after Finish the tree is built again and holds the new system.
TEST_F(Selection, AddRebuildsTheTreeAfterFinish) {
    auto dialog = open(geodb_type(0), false, {}, {});
    ui.ExpectModal<GeoWizard>([](GeoWizard& wizard) {
        EXPECT_EQ(wizard.windowTitle(), QStringLiteral("Coordinate System"));
        OrvGeoStaticDataBase* sd = wizard.GetGeoStatic();
        EXPECT_TRUE(sd->LoadCoordSys(kUk, kBng));
        sd->AssignSystemName(QStringLiteral("Harbour grid"));
        sd->SetGroupName(kProjects);
        EXPECT_TRUE(sd->SaveCoordSys());
        return int(PropertySheet::ID_WIZFINISH);
    });
    ASSERT_FALSE(find(*dialog, kProjects, QStringLiteral("Harbour grid")).isValid());
    dialog->OnAdd();
    EXPECT_TRUE(find(*dialog, kProjects, QStringLiteral("Harbour grid")).isValid());
}

// A system is found by its EPSG code or part of its name; groups stay while one matches.
TEST_F(Selection, FilterFindsSystemsByCodeOrName) {
    auto dialog = open(geodb_type(0), false, {}, {});
    dialog->Tree()->SetFilterText(QStringLiteral("27700"));
    EXPECT_EQ(dialog->GetSystemName(), kBng);
    EXPECT_EQ(dialog->GetGroupName(), kUk);
    dialog->Tree()->SetFilterText(QStringLiteral("rd new"));
    EXPECT_EQ(dialog->GetSystemName(), QStringLiteral("Amersfoort / RD New"));
    EXPECT_TRUE(enabled(*dialog, "okButton"));
}
