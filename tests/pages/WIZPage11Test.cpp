#include "PageTestSupport.h"

#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"
#include "pages/WIZPage11.h"

#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>

namespace {

const QString GroupNameEmpty = QStringLiteral("Please give a group name.");
const QString NameExists = QStringLiteral("The name already exists, please give another name.");

class SavePage : public WizardPageTest {
protected:
    WIZPage11* page() { return static_cast<WIZPage11*>(Page(11)); }
    QComboBox* list() { return Control<QComboBox>(11, QStringLiteral("groupList")); }
    QLineEdit* nameEdit() { return Control<QLineEdit>(11, QStringLiteral("newGroupName")); }
    QRadioButton* radio(const char* name) {
        return Control<QRadioButton>(11, QString::fromLatin1(name));
    }
    // A user group holding one system, stored before the wizard shows the page.
    void storeUserGroup(const QString& group, const QString& system) {
        ASSERT_EQ(wizard.EnsureInitialised(), 1);
        OrvGeoStaticDataBase* sd = wizard.GetGeoStatic();
        ASSERT_TRUE(sd->LoadCoordSys(QStringLiteral("UK"),
                                     QStringLiteral("OSGB36 / British National Grid")));
        sd->AssignSystemName(system);
        sd->SetGroupName(group);
        ASSERT_TRUE(sd->SaveCoordSys()) << sd->LastError().toStdString();
        sd->Clear();
    }
    void pick(const QString& group) {
        const int index = list()->findText(group);
        ASSERT_GE(index, 0) << group.toStdString();
        list()->setCurrentIndex(index);
        emit list()->activated(index);
        Flush();
    }
    void expectMessage(const QString& text) {
        ui.ExpectMessage(text, QString(), MsgButtons::Ok, MsgAnswer::Ok);
    }
    QString staticGroup() {
        QString group;
        return wizard.GetGeoStatic()->GetAssignedGroupName(group);
    }
    QStringList groups(int scope) {
        QStringList names;
        wizard.GetGeoDatabase()->GetGroupNames(names, scope);
        return names;
    }
    QStringList listed() {
        QStringList names;
        for (int i = 0; i < list()->count(); ++i)
            names << list()->itemText(i);
        return names;
    }
};

} // namespace

// The page opens on "In an existing" with the user groups (the groups the sheet allows by
// default), the first selected; the name edit is disabled. Next hands the group over.
TEST_F(SavePage, OpensOnTheExistingGroupsOfTheUser) {
    storeUserGroup(QStringLiteral("Harbour"), QStringLiteral("Quay wall"));
    storeUserGroup(QStringLiteral("Anchorage"), QStringLiteral("Buoys"));
    OpenOn(11);
    EXPECT_TRUE(radio("existingGroupRadio")->isChecked());
    EXPECT_FALSE(radio("newGroupRadio")->isChecked());
    EXPECT_EQ(listed(), groups(GEODB_USER));
    EXPECT_EQ(listed().size(), 2);
    EXPECT_EQ(list()->currentIndex(), 0);
    EXPECT_TRUE(list()->isEnabled());
    EXPECT_FALSE(nameEdit()->isEnabled());
    EXPECT_EQ(page()->GetExistingGroupName(), listed().constFirst());
    EXPECT_EQ(wizard.GetWizardButtons(), PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT);

    pick(QStringLiteral("Harbour"));
    EXPECT_EQ(page()->GetExistingGroupName(), QStringLiteral("Harbour"));
    Next();
    EXPECT_EQ(ShownPage(), 12);
    EXPECT_EQ(staticGroup(), QStringLiteral("Harbour"));
}

// The groups offered are those the sheet allows: with the pre-defined ones allowed, they are
// listed in the library's order.
TEST_F(SavePage, ListsTheGroupsTheSheetAllows) {
    wizard.SetGroupsAllowed(GEODB_SYSTEM);
    OpenOn(11);
    EXPECT_EQ(listed(), groups(GEODB_SYSTEM));
    EXPECT_GT(list()->count(), 100);
    pick(QStringLiteral("UK"));
    Next();
    EXPECT_EQ(staticGroup(), QStringLiteral("UK"));
}

// No group at all (a new user database) and the existing choice: Next is refused and
// nothing is handed over. The page keeps Next (the sheet offers Finish for the move onto the
// last page, and Finish here would close the wizard without saving).
TEST_F(SavePage, NoGroupToChooseRefusesNext) {
    OpenOn(11);
    ASSERT_EQ(list()->count(), 0);
    wizard.GetGeoStatic()->SetGroupName(QStringLiteral("before"));
    expectMessage(GroupNameEmpty);
    Next();
    EXPECT_EQ(ShownPage(), 11);
    EXPECT_EQ(staticGroup(), QStringLiteral("before"));
    EXPECT_EQ(wizard.GetWizardButtons(), PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT);
    expectMessage(GroupNameEmpty);
    Next();
    EXPECT_EQ(ShownPage(), 11);
}

// "In a new group" enables the name edit and disables the list. An empty name (or blanks
// only) and a name that exists in either database (any letter case) are refused with the
// page kept; a new name is handed over. The list entry is not looked at.
TEST_F(SavePage, NewGroupNameIsCheckedAgainstBothDatabases) {
    storeUserGroup(QStringLiteral("Harbour"), QStringLiteral("Quay wall"));
    OpenOn(11);
    Click(11, QStringLiteral("newGroupRadio"));
    EXPECT_EQ(page()->GetGroupChoice(), WIZPage11::NewGroup);
    EXPECT_TRUE(nameEdit()->isEnabled());
    EXPECT_FALSE(list()->isEnabled());

    expectMessage(GroupNameEmpty);
    Next();
    EXPECT_EQ(ShownPage(), 11);

    nameEdit()->setText(QStringLiteral("   "));
    expectMessage(GroupNameEmpty);
    Next();
    EXPECT_EQ(ShownPage(), 11);

    for (const char* taken : {"harbour", "UK", "europe"}) {
        nameEdit()->setText(QString::fromLatin1(taken));
        expectMessage(NameExists);
        Next();
        EXPECT_EQ(ShownPage(), 11) << taken;
    }
    EXPECT_TRUE(staticGroup().isEmpty());

    nameEdit()->setText(QStringLiteral("North Sea 2024"));
    Next();
    EXPECT_EQ(ShownPage(), 12);
    EXPECT_EQ(staticGroup(), QStringLiteral("North Sea 2024"));
}

// The existing choice never looks at the name edit, even when it holds a taken name.
TEST_F(SavePage, ExistingChoiceIgnoresTheNameEdit) {
    storeUserGroup(QStringLiteral("Harbour"), QStringLiteral("Quay wall"));
    OpenOn(11);
    Click(11, QStringLiteral("newGroupRadio"));
    nameEdit()->setText(QStringLiteral("UK"));
    Click(11, QStringLiteral("existingGroupRadio"));
    EXPECT_FALSE(nameEdit()->isEnabled());
    Next();
    EXPECT_EQ(ShownPage(), 12);
    EXPECT_EQ(staticGroup(), QStringLiteral("Harbour"));
}

// Every activation starts again on "In an existing" with the first group (kept so): coming
// back from the overview, the new group chosen before is not the choice any more, though its
// name stays in the edit.
TEST_F(SavePage, EveryActivationStartsOnTheFirstExistingGroup) {
    storeUserGroup(QStringLiteral("Harbour"), QStringLiteral("Quay wall"));
    storeUserGroup(QStringLiteral("Anchorage"), QStringLiteral("Buoys"));
    OpenOn(11);
    const QString first = list()->itemText(0);
    pick(list()->itemText(1));
    Click(11, QStringLiteral("newGroupRadio"));
    nameEdit()->setText(QStringLiteral("Dredging"));
    Next();
    ASSERT_EQ(ShownPage(), 12);
    EXPECT_EQ(staticGroup(), QStringLiteral("Dredging"));

    Back();
    ASSERT_EQ(ShownPage(), 11);
    EXPECT_TRUE(radio("existingGroupRadio")->isChecked());
    EXPECT_EQ(page()->GetGroupChoice(), WIZPage11::ExistingGroup);
    EXPECT_EQ(list()->currentText(), first);
    EXPECT_FALSE(nameEdit()->isEnabled());
    EXPECT_EQ(nameEdit()->text(), QStringLiteral("Dredging"));
    Next();
    EXPECT_EQ(staticGroup(), first);
}

// With the initial-group flag, initialisation takes the pre-selected group and selects it;
// the activation that follows starts on the first group all the same.
TEST_F(SavePage, InitialGroupIsTakenAtInitialisation) {
    storeUserGroup(QStringLiteral("Harbour"), QStringLiteral("Quay wall"));
    storeUserGroup(QStringLiteral("Anchorage"), QStringLiteral("Buoys"));
    wizard.SetInitGroup(true);
    wizard.SetPreGroupName(QStringLiteral("Harbour"));
    ASSERT_EQ(wizard.EnsureInitialised(), 1);
    page()->EnsureInitialised();
    EXPECT_EQ(page()->GetExistingGroupName(), QStringLiteral("Harbour"));
    EXPECT_EQ(list()->currentText(), QStringLiteral("Harbour"));

    OpenOn(11);
    EXPECT_EQ(list()->currentIndex(), 0);
    EXPECT_EQ(page()->GetExistingGroupName(), list()->itemText(0));
}
