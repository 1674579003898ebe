#include "DialogTestSupport.h"
#include "dialogs/CreateNewDttrfmDlg.h"
#include "dialogs/CreateNewPrjDlg.h"
#include "dialogs/DatumTransfmSelDlg.h"
#include "dialogs/NameTreeModel.h"
#include "dialogs/PickerTree.h"
#include "dialogs/PrjSelectDlg.h"
#include "resources/StringTable.h"

#include <QLineEdit>
#include <QPushButton>

#include <gtest/gtest.h>

namespace {

const QString kDtfEmpty = QStringLiteral("Please set the new datum name");
const QString kDtfExists = QStringLiteral("The datum already existed, please set another name.");
const QString kPrjEmpty = QStringLiteral("Please give a name for the new projection.");
const QString kPrjInUse = QStringLiteral("The name already is in using. Please give another name.");
const QString kMethod = QStringLiteral("Transverse Mercator");
const QString kProjection = QStringLiteral("British National Grid");

QLineEdit* edit(QDialog& dialog, const QString& name) {
    return dialog.findChild<QLineEdit*>(name);
}
void click(QDialog& dialog, const QString& button) {
    dialog.findChild<QPushButton*>(button)->click();
}
bool pressOk(QDialog& dialog) {
    click(dialog, QStringLiteral("okButton"));
    return dialog.result() == QDialog::Accepted;
}
int cancel(QDialog& picker) {
    picker.reject();
    return picker.result();
}

// A pre-defined transformation between the owner's ellipsoids.
QString predefinedDtf(TestEditorOwner& owner) {
    QStringList names;
    owner.GetGeoDatabase()->GetDtfNames(names, owner.satellite, owner.local);
    for (const QString& name : std::as_const(names))
        if (owner.GetGeoDatabase()->IsDtfOfType(name, GEODB_SYSTEM))
            return name;
    ADD_FAILURE() << "no pre-defined datum transformation";
    return {};
}

// Picks the projection under its method and accepts.
int pickProjection(PrjSelectDlg& picker) {
    const NameTreeModel& model = picker.Tree()->Model();
    const QModelIndex method = model.FindTopLevel(kMethod);
    for (int row = 0; row < model.rowCount(method); ++row)
        if (model.NameAt(model.index(row, 0, method)) == kProjection)
            picker.Tree()->Select(model.index(row, 0, method));
    picker.accept();
    return picker.result();
}

} // namespace

TEST(CreateNewDttrfmDlg, RefusesAnEmptyOrExistingNameAndKeepsTheText) {
    TestEditorOwner owner;
    ScriptedUi ui(FailTest());
    CreateNewDttrfmDlg dialog(&owner);
    dialog.EnsureInitialised();
    EXPECT_EQ(dialog.windowTitle(), LoadOrvString(StrId::TitleCreateDtf));
    ui.ExpectMessage(kDtfEmpty);
    EXPECT_FALSE(pressOk(dialog));

    const QString taken = predefinedDtf(owner).toUpper(); // letter case ignored
    edit(dialog, QStringLiteral("nameEdit"))->setText(taken);
    EXPECT_EQ(dialog.GetName(), taken); // read as it changes
    ui.ExpectMessage(kDtfExists);
    EXPECT_FALSE(pressOk(dialog));
    EXPECT_EQ(edit(dialog, QStringLiteral("nameEdit"))->text(), taken);
    EXPECT_TRUE(ui.Verify());

    edit(dialog, QStringLiteral("nameEdit"))->setText(QStringLiteral("Harbour grid 2024"));
    EXPECT_TRUE(pressOk(dialog));
    EXPECT_EQ(dialog.GetName(), QStringLiteral("Harbour grid 2024"));
    EXPECT_EQ(dialog.GetBasedOn(), 0);
}

// "Select ..." lists the transformations between the editor's ellipsoids; a cancelled pick
// leaves the based-on fields and the flag as they were.
TEST(CreateNewDttrfmDlg, SelectTakesThePickAndCancelChangesNothing) {
    TestEditorOwner owner;
    ScriptedUi ui(FailTest());
    CreateNewDttrfmDlg dialog(&owner);
    dialog.EnsureInitialised();
    const QString chosen = predefinedDtf(owner);
    ui.ExpectModal<DatumTransfmSelDlg>(cancel);
    ui.ExpectModal<DatumTransfmSelDlg>([&](DatumTransfmSelDlg& picker) {
        EXPECT_EQ(picker.GetOwner(), &owner);
        EXPECT_EQ(picker.parentWidget(), &dialog);
        EXPECT_EQ(picker.GetLocalEllipsoidName(), owner.local);
        picker.Tree()->Select(picker.Tree()->Model().FindTopLevel(chosen));
        picker.accept();
        return picker.result();
    });
    ui.ExpectModal<DatumTransfmSelDlg>(cancel);

    click(dialog, QStringLiteral("selectButton"));
    EXPECT_EQ(dialog.GetBasedOn(), 0);
    EXPECT_TRUE(dialog.GetBasedOnName().isEmpty());
    for (int i = 0; i < 2; ++i) { // accepted, then cancelled
        click(dialog, QStringLiteral("selectButton"));
        EXPECT_EQ(dialog.GetBasedOn(), 1);
        EXPECT_EQ(dialog.GetBasedOnName(), chosen);
        EXPECT_EQ(edit(dialog, QStringLiteral("basedOnEdit"))->text(), chosen);
    }
}

TEST(CreateNewPrjDlg, RefusesAnEmptyNameOrOneInUseAndKeepsTheText) {
    TestEditorOwner owner;
    ScriptedUi ui(FailTest());
    CreateNewPrjDlg dialog(&owner);
    EXPECT_TRUE(dialog.OnInitDialog());
    EXPECT_EQ(dialog.windowTitle(), LoadOrvString(StrId::TitleCreatePrj));
    ui.ExpectMessage(kPrjEmpty);
    EXPECT_FALSE(pressOk(dialog));

    ASSERT_TRUE(owner.GetGeoDatabase()->IsPrjOfType(QStringLiteral("UTM Zone-31N"), GEODB_SYSTEM));
    edit(dialog, QStringLiteral("nameEdit"))->setText(QStringLiteral("utm zone-31n"));
    ui.ExpectMessage(kPrjInUse);
    EXPECT_FALSE(pressOk(dialog));
    EXPECT_EQ(edit(dialog, QStringLiteral("nameEdit"))->text(), QStringLiteral("utm zone-31n"));
    EXPECT_TRUE(ui.Verify());
}

// "Select ..." takes the projection and its method and keeps the name typed before; a
// cancelled pick changes nothing.
TEST(CreateNewPrjDlg, SelectTakesProjectionAndMethodAndCancelChangesNothing) {
    TestEditorOwner owner;
    ScriptedUi ui(FailTest());
    CreateNewPrjDlg dialog(&owner);
    dialog.EnsureInitialised();
    edit(dialog, QStringLiteral("nameEdit"))->setText(QStringLiteral("Quay grid"));
    ui.ExpectModal<PrjSelectDlg>([&](PrjSelectDlg& picker) {
        EXPECT_EQ(picker.GetOwner(), &owner);
        EXPECT_EQ(picker.parentWidget(), &dialog);
        return pickProjection(picker);
    });
    ui.ExpectModal<PrjSelectDlg>(cancel);
    for (int i = 0; i < 2; ++i) { // accepted, then cancelled
        click(dialog, QStringLiteral("selectButton"));
        EXPECT_EQ(dialog.GetBasedOn(), 1);
        EXPECT_EQ(dialog.GetBasedOnName(), kProjection);
        EXPECT_EQ(dialog.GetBasedOnMethod(), kMethod);
        EXPECT_EQ(edit(dialog, QStringLiteral("basedOnEdit"))->text(), kProjection);
        EXPECT_EQ(edit(dialog, QStringLiteral("nameEdit"))->text(), QStringLiteral("Quay grid"));
    }
    EXPECT_TRUE(pressOk(dialog));
    EXPECT_EQ(dialog.GetName(), QStringLiteral("Quay grid"));
}

TEST(CreateNewDlgs, WithoutTheOwnersDataOkDoesNothing) {
    ScriptedUi ui(FailTest());
    CreateNewDttrfmDlg dtf;
    dtf.EnsureInitialised();
    dtf.accept();
    EXPECT_NE(dtf.result(), QDialog::Accepted);
    CreateNewPrjDlg prj;
    EXPECT_FALSE(prj.OnInitDialog());
    edit(prj, QStringLiteral("nameEdit"))->setText(QStringLiteral("Quay"));
    prj.accept();
    EXPECT_NE(prj.result(), QDialog::Accepted);
    EXPECT_TRUE(ui.Events().isEmpty());
}
