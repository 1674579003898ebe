#include "selection/SysSelectionDlg.h"
#include "api/GeoKeys.h"
#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoFactories.h"
#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/NameFilterProxy.h"
#include "dialogs/PickerTree.h"
#include "editor/AdvCoordSysDlg.h"
#include "platform/ScriptedUi.h"
#include "resources/StringTable.h"
#include "support/QtPrinters.h"
#include "support/TempDataFolder.h"
#include "wizard/GeoWizard.h"

#include <QComboBox>
#include <QPushButton>
#include <QTextEdit>

#include <gtest/gtest.h>

#include <memory>

namespace {

const QString kUk = QStringLiteral("UK");
const QString kBng = QStringLiteral("OSGB36 / British National Grid");
const QString kProjects = QStringLiteral("Projects");
const QString kNetherlands = QStringLiteral("Netherlands");
const QString kRdNew = QStringLiteral("Amersfoort / RD New");

QString GeoidKeyText(int index) {
    return QString::fromWCharArray(GeoidmodelTypeKeys[index]);
}

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
    // Add, Edit, Remove, OK: which are enabled.
    static QList<bool> buttons(SysSelectionDlg& dialog) {
        return {enabled(dialog, "addButton"), enabled(dialog, "editButton"),
                enabled(dialog, "removeButton"), enabled(dialog, "okButton")};
    }
    static void click(SysSelectionDlg& dialog, const char* button) {
        dialog.findChild<QPushButton*>(QLatin1String(button))->click();
    }
    // The stored system's information text as a fresh database object reads it, as the pane
    // shows it.
    QString storedInfo(const QString& group, const QString& system) {
        std::unique_ptr<OrvGeoDatabaseBase> db(
            OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(data.dllType()));
        QString info;
        if (db)
            db->GetSystemInfoText(info, group, system, {}, {}, {}, {}, {});
        return info.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    }
    // Chooses an entry of one of the editor's lists as a person would.
    static void choose(AdvCoordSysDlg& editor, const char* list, const QString& text) {
        auto* combo = editor.findChild<QComboBox*>(QLatin1String(list));
        ASSERT_NE(combo, nullptr) << list;
        const int index = combo->findText(text, Qt::MatchExactly);
        ASSERT_GE(index, 0) << text.toStdString();
        combo->setCurrentIndex(index);
        emit combo->activated(index);
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

// The scope mask names the databases left out of the tree. With the edit flag Add is off,
// and Edit and Remove are on for a system that is not the host's; without it Add is on, and
// Edit and Remove stay off (their handlers too). OK only for a system.
TEST_F(Selection, ScopeMaskAndEditFlagShapeTreeAndButtons) {
    storeUserSystems({QStringLiteral("Survey A")});
    const QString system = LoadOrvString(StrId::RootSystemDatabase);
    const QString user = LoadOrvString(StrId::RootUserDatabase);
    const struct {
        geodb_type scope;
        QStringList roots;
    } cases[] = {{geodb_type(0), {system, user}},
                 {GEODB_USER, {system}},
                 {GEODB_SYSTEM, {user}},
                 {GEODB_ALL, {}}};
    for (const auto& c : cases) {
        for (const bool edit : {false, true}) {
            SCOPED_TRACE(testing::Message() << "scope " << int(c.scope) << ", edit " << edit);
            auto dialog = open(c.scope, edit, kUk, kBng);
            EXPECT_EQ(roots(*dialog), c.roots);
            // the host's system, when its database is shown
            const bool hostShown = c.roots.contains(system);
            EXPECT_EQ(dialog->Tree()->Current().isValid(), hostShown);
            EXPECT_EQ(buttons(*dialog), (QList<bool>{!edit, false, false, hostShown}));
            if (c.roots.isEmpty()) {
                EXPECT_TRUE(pane(*dialog).isEmpty());
                continue;
            }
            // a root item
            dialog->Tree()->Select(dialog->Tree()->Model().index(0, 0));
            EXPECT_EQ(buttons(*dialog), (QList<bool>{!edit, false, false, false}));
            // another system
            const QModelIndex other = c.roots.contains(user)
                                          ? find(*dialog, kProjects, QStringLiteral("Survey A"))
                                          : find(*dialog, kNetherlands, kRdNew);
            dialog->Tree()->Select(other);
            EXPECT_EQ(buttons(*dialog), (QList<bool>{!edit, edit, edit, true}));
            if (!edit) {
                // no editor, no removal, whatever calls the handlers
                dialog->OnEdit();
                dialog->OnRemove();
                EXPECT_TRUE(
                    find(*dialog, dialog->GetGroupName(), dialog->GetSystemName()).isValid());
                EXPECT_TRUE(dialog->GetGeoDatabase()->SystemNameExists(dialog->GetSystemName()));
            }
        }
    }
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

// The host's geoid and post values go with its own system only: another system has none,
// and they come back with the host's system.
TEST_F(Selection, HostsGeoidAndPostValuesGoWithItsSystem) {
    auto dialog = open(geodb_type(0), true, kUk, kBng);
    dialog->SetGeoidModelName(QStringLiteral("OSGM02 - GB"));
    dialog->SetGeoidModelFileName(QStringLiteral("OSTN02_OSGM02_GB.txt"));
    dialog->SetGeoidChartDatum(QStringLiteral("MLLW"));
    dialog->SetPostModelName(QStringLiteral("Tide"));
    dialog->SetPostModelFileName(QStringLiteral("tide.gsb"));
    const auto values = [&] {
        return QStringList{dialog->GetGeoidModelName(), dialog->GetGeoidModelFileName(),
                           dialog->GetGeoidChartDatum(), dialog->GetPostModelName(),
                           dialog->GetPostModelFileName()};
    };
    const QStringList host = values();
    dialog->Tree()->Select(find(*dialog, kNetherlands, kRdNew));
    EXPECT_EQ(values(), QStringList(5, QString()));
    dialog->Tree()->Select(find(*dialog, kUk, kBng));
    EXPECT_EQ(values(), host);
    dialog->Tree()->Select(find(*dialog, kUk, {}));
    EXPECT_EQ(values(), QStringList(5, QString()));
}

// Remove moves the selection to the next system first; a refused removal keeps the item
// with the message, the selection stays moved, and the pane says why above the information
// of the system now selected: pre-defined, or the projects that use it.
TEST_F(Selection, RemoveMovesOnAndKeepsWhatIsRefused) {
    storeUserSystems(
        {QStringLiteral("Survey A"), QStringLiteral("Survey B"), QStringLiteral("Survey C")});
    {
        std::unique_ptr<OrvGeoDatabaseBase> db(
            OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(data.dllType()));
        ASSERT_TRUE(db->SetSystemInUse(kProjects, QStringLiteral("Survey B"),
                                       QStringLiteral("Harbour 2024"), true));
        ASSERT_TRUE(db->SetSystemInUse(kProjects, QStringLiteral("Survey B"),
                                       QStringLiteral("Dredging 7"), true));
    }
    const QString refused = QStringLiteral(
        "You can't remove the coordinate system, because it is also used by other projects or "
        "defined in other coordinate systems.");
    auto dialog = open(geodb_type(0), true, {}, {});
    dialog->Tree()->Select(find(*dialog, kProjects, QStringLiteral("Survey A")));
    click(*dialog, "removeButton");
    EXPECT_FALSE(find(*dialog, kProjects, QStringLiteral("Survey A")).isValid());
    EXPECT_EQ(dialog->GetSystemName(), QStringLiteral("Survey B"));
    EXPECT_FALSE(dialog->GetGeoDatabase()->SystemNameExists(QStringLiteral("Survey A")));
    EXPECT_EQ(pane(*dialog), storedInfo(kProjects, QStringLiteral("Survey B")));

    // used by two projects: kept, and the pane names them
    ui.ExpectMessage(refused, QString(), MsgButtons::Ok, MsgAnswer::Ok);
    click(*dialog, "removeButton");
    EXPECT_TRUE(find(*dialog, kProjects, QStringLiteral("Survey B")).isValid());
    EXPECT_EQ(dialog->GetSystemName(), QStringLiteral("Survey C"));
    EXPECT_TRUE(pane(*dialog).startsWith(
        QStringLiteral("The coordinate system \"Survey B\" is used by the project(s) Dredging 7, "
                       "Harbour 2024 and cannot be removed.\n\n")))
        << pane(*dialog).toStdString();
    EXPECT_TRUE(pane(*dialog).endsWith(storedInfo(kProjects, QStringLiteral("Survey C"))));
    // its own information names them too
    dialog->Tree()->Select(find(*dialog, kProjects, QStringLiteral("Survey B")));
    EXPECT_TRUE(
        pane(*dialog).contains(QStringLiteral("Used by the projects: Dredging 7, Harbour 2024")));

    // the last of its group: nothing is selected afterwards
    dialog->Tree()->Select(find(*dialog, kProjects, QStringLiteral("Survey C")));
    click(*dialog, "removeButton");
    EXPECT_FALSE(find(*dialog, kProjects, QStringLiteral("Survey C")).isValid());
    EXPECT_FALSE(dialog->Tree()->Current().isValid());
    EXPECT_TRUE(pane(*dialog).isEmpty());
    EXPECT_TRUE(dialog->GetSystemName().isEmpty());
    EXPECT_EQ(buttons(*dialog), (QList<bool>{false, false, false, false}));

    // pre-defined: kept, the selection on the next system, the pane says why
    const QModelIndex rd = find(*dialog, kNetherlands, kRdNew);
    const QString next = dialog->Tree()->Model().NameAt(rd.sibling(rd.row() + 1, 0));
    dialog->Tree()->Select(rd);
    ui.ExpectMessage(refused, QString(), MsgButtons::Ok, MsgAnswer::Ok);
    click(*dialog, "removeButton");
    EXPECT_TRUE(find(*dialog, kNetherlands, kRdNew).isValid());
    EXPECT_EQ(dialog->GetSystemName(), next);
    EXPECT_TRUE(pane(*dialog).startsWith(
        QStringLiteral("The coordinate system \"%1\" is pre-defined").arg(kRdNew)))
        << pane(*dialog).toStdString();
    EXPECT_TRUE(dialog->GetGeoDatabase()->SystemNameExists(kRdNew));
}

// Add runs the wizard; after Finish the tree is built again and holds the new system.
TEST_F(Selection, AddRebuildsTheTreeAfterFinish) {
    auto dialog = open(geodb_type(0), false, kUk, kBng);
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
    click(*dialog, "addButton");
    EXPECT_TRUE(find(*dialog, kProjects, QStringLiteral("Harbour grid")).isValid());
    // the selection stays on what it was
    EXPECT_EQ(dialog->GetSystemName(), kBng);
}

// A wizard that does not end with Finish leaves the tree as it was.
TEST_F(Selection, AddCancelledLeavesTheTree) {
    auto dialog = open(geodb_type(0), false, kUk, kBng);
    const int groups = dialog->Tree()->Model().rowCount(dialog->Tree()->Model().index(1, 0));
    ui.ExpectModal<GeoWizard>([](GeoWizard&) { return int(QDialog::Rejected); });
    click(*dialog, "addButton");
    EXPECT_EQ(dialog->Tree()->Model().rowCount(dialog->Tree()->Model().index(1, 0)), groups);
    EXPECT_EQ(dialog->GetSystemName(), kBng);
}

// Edit opens the editor on the selected system with the data source; after OK the editor's
// geoid and post values are the dialog's and the pane shows the stored change. The next Edit
// hands them back to the editor; Cancel takes nothing.
TEST_F(Selection, EditTakesTheEditorsValuesAndShowsTheStoredChange) {
    storeUserSystems({QStringLiteral("Survey A"), QStringLiteral("Survey B")});
    auto dialog = open(geodb_type(0), true, kProjects, QStringLiteral("Survey B"));
    dialog->Tree()->Select(find(*dialog, kProjects, QStringLiteral("survey a")));
    ASSERT_TRUE(enabled(*dialog, "editButton"));
    const QString egm96 = GeoidKeyText(GeoidKey::Egm96);
    const QString shift = GeoidKeyText(GeoidKey::LocalHeightShift);
    ASSERT_FALSE(pane(*dialog).contains(egm96));

    ui.ExpectModal<AdvCoordSysDlg>([&](AdvCoordSysDlg& editor) {
        EXPECT_EQ(editor.windowTitle(), QStringLiteral("Edit Coordinate System--Survey A"));
        EXPECT_EQ(editor.GetDllType(), data.dllType());
        EXPECT_FALSE(editor.IsReadOnly());
        choose(editor, "geoidMethodCombo", egm96);
        choose(editor, "postMethodCombo", shift);
        editor.accept();
        return editor.result();
    });
    click(*dialog, "editButton");
    EXPECT_EQ(dialog->GetGeoidModelName(), egm96);
    EXPECT_EQ(dialog->GetPostModelName(), shift);
    EXPECT_EQ(dialog->GetGeoidModelFileName(), QString());
    EXPECT_EQ(dialog->GetSystemName(), QStringLiteral("Survey A"));
    const QString after = storedInfo(kProjects, QStringLiteral("Survey A"));
    EXPECT_TRUE(after.contains(QStringLiteral("Geoid model: ") + egm96)) << after.toStdString();
    EXPECT_EQ(pane(*dialog), after);
    EXPECT_TRUE(enabled(*dialog, "editButton"));
    // a filter that keeps the system keeps them
    dialog->Tree()->SetFilterText(QStringLiteral("survey"));
    EXPECT_EQ(dialog->GetSystemName(), QStringLiteral("Survey A"));
    EXPECT_EQ(dialog->GetGeoidModelName(), egm96);

    // the values taken go back to the editor; Cancel keeps them and the stored system
    ui.ExpectModal<AdvCoordSysDlg>([&](AdvCoordSysDlg& editor) {
        EXPECT_EQ(editor.GetPostModelName(), shift);
        choose(editor, "geoidMethodCombo", QStringLiteral("--None--"));
        editor.reject();
        return editor.result();
    });
    click(*dialog, "editButton");
    EXPECT_EQ(dialog->GetGeoidModelName(), egm96);
    EXPECT_EQ(dialog->GetPostModelName(), shift);
    EXPECT_EQ(pane(*dialog), after);
    EXPECT_EQ(storedInfo(kProjects, QStringLiteral("Survey A")), after);
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
