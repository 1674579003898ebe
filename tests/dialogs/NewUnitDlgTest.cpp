#include "dialogs/NewUnitDlg.h"
#include "DialogTestSupport.h"
#include "resources/StringTable.h"
#include "wizard/GeoWizard.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include <gtest/gtest.h>

namespace {

struct NewUnit : ::testing::Test {
    NewUnit() { dialog.EnsureInitialised(); }

    QLineEdit* edit(const QString& name) { return dialog.findChild<QLineEdit*>(name); }
    // Types the three values and presses OK; true when the dialog closed with OK.
    bool enter(const QString& name, const QString& factor, const QString& suffix = QString()) {
        edit(QStringLiteral("nameEdit"))->setText(name);
        edit(QStringLiteral("factorEdit"))->setText(factor);
        dialog.findChild<QPlainTextEdit*>(QStringLiteral("suffixEdit"))->setPlainText(suffix);
        dialog.findChild<QPushButton*>(QStringLiteral("okButton"))->click();
        return dialog.result() == QDialog::Accepted;
    }

    TestEditorOwner owner;
    OrvGeoDatabaseBase* db = owner.GetGeoDatabase();
    NewUnitDlg dialog{&owner};
    ScriptedUi ui{FailTest()};
};

} // namespace

TEST_F(NewUnit, ShowsTheFactorLabelAndThePresets) {
    EXPECT_EQ(dialog.windowTitle(), LoadOrvString(StrId::TitleNewUnit));
    // inner and trailing blanks kept
    EXPECT_EQ(dialog.findChild<QLabel*>(QStringLiteral("factorLabel"))->text(),
              QStringLiteral("Meters per unit ( example: 1 U.S. Survey Feet = 0.30480061 meter) "));
    NewUnitDlg preset(&owner);
    preset.SetName(QStringLiteral("Rod"));
    preset.SetMetersPerUnit(0.30480061);
    preset.SetNameSuffix(QStringLiteral("rd"));
    preset.EnsureInitialised();
    EXPECT_EQ(preset.findChild<QLineEdit*>(QStringLiteral("nameEdit"))->text(), "Rod");
    EXPECT_EQ(preset.findChild<QLineEdit*>(QStringLiteral("factorEdit"))->text(), "0.30480061");
    EXPECT_EQ(preset.findChild<QPlainTextEdit*>(QStringLiteral("suffixEdit"))->toPlainText(), "rd");
}

TEST_F(NewUnit, OkStoresTheUnitInTheUserDatabase) {
    ASSERT_TRUE(enter(QStringLiteral("Rod"), QStringLiteral(" 5.0292 "), QStringLiteral("rd")));
    EXPECT_EQ(dialog.GetName(), QStringLiteral("Rod"));
    EXPECT_EQ(dialog.GetMetersPerUnit(), 5.0292);
    EXPECT_EQ(dialog.GetNameSuffix(), QStringLiteral("rd"));
    EXPECT_TRUE(db->UnitNameExists(QStringLiteral("rod"), GEODB_USER));
    QString suffix, description;
    double factor = 0;
    int category = 0;
    ASSERT_TRUE(
        db->GetUnitDefinition(QStringLiteral("Rod"), suffix, factor, category, description));
    EXPECT_EQ(factor, 5.0292);
    EXPECT_EQ(suffix, QStringLiteral("rd"));
    EXPECT_EQ(category, UNIT_CATEGORY_LENGTH);
}

// Every refusal stores nothing and keeps the typed text: a name either database holds (here
// a pre-defined one in another letter case), a factor that is no number, and a factor the
// database refuses (the dialog itself does not check it; the message gives the reason).
TEST_F(NewUnit, RefusalsStoreNothingAndKeepTheText) {
    QStringList before, after;
    db->GetUnitNames(before);
    ui.ExpectMessage(QStringLiteral("The name already exists, please give another name."));
    EXPECT_FALSE(enter(QStringLiteral("METERS"), QStringLiteral("2")));
    EXPECT_EQ(edit(QStringLiteral("nameEdit"))->text(), QStringLiteral("METERS"));

    ui.ExpectMessage(QStringLiteral("Please enter a number."));
    EXPECT_FALSE(enter(QStringLiteral("Rod"), QStringLiteral("5,0292 m")));
    EXPECT_EQ(edit(QStringLiteral("factorEdit"))->text(), QStringLiteral("5,0292 m"));

    ui.ExpectMessage(QString()); // any text: compared below
    EXPECT_FALSE(enter(QStringLiteral("Rod"), QStringLiteral("0")));
    EXPECT_FALSE(db->LastError().isEmpty());
    EXPECT_EQ(ui.MessageTexts().last(), LoadOrvString(StrId::UnitStoreFailed).arg(db->LastError()));
    EXPECT_EQ(edit(QStringLiteral("nameEdit"))->text(), QStringLiteral("Rod"));

    db->GetUnitNames(after);
    EXPECT_EQ(after, before);
}

// No check for an empty name: the unit is stored, and a second one is refused as existing.
TEST_F(NewUnit, EmptyNameIsStoredOnce) {
    ASSERT_TRUE(enter(QString(), QStringLiteral("1.5"))) << db->LastError().toStdString();
    EXPECT_TRUE(db->UnitNameExists(QString(), GEODB_USER));
    NewUnitDlg again(&owner);
    again.EnsureInitialised();
    again.findChild<QLineEdit*>(QStringLiteral("factorEdit"))->setText(QStringLiteral("2"));
    ui.ExpectMessage(LoadOrvString(StrId::NameExistsGiveAnother));
    again.accept();
    EXPECT_NE(again.result(), QDialog::Accepted);
}

TEST(NewUnitDlg, WithoutADatabaseOkDoesNothing) {
    ScriptedUi ui(FailTest());
    NewUnitDlg dialog;
    dialog.EnsureInitialised();
    dialog.accept();
    EXPECT_NE(dialog.result(), QDialog::Accepted);
    EXPECT_TRUE(ui.Events().isEmpty());
}

// Opened by the unit page, the dialog works on the sheet's database and static data.
TEST(NewUnitDlg, OpenedForTheSheetUsesItsObjects) {
    TempDataFolder data;
    GeoWizard wizard(QStringLiteral("Coordinate System"));
    wizard.SetDllType(data.dllType());
    ASSERT_EQ(wizard.EnsureInitialised(), 1);
    ScriptedUi ui(FailTest());
    ui.ExpectModal<NewUnitDlg>([&wizard](NewUnitDlg& dialog) {
        EXPECT_EQ(dialog.parentWidget(), &wizard);
        EXPECT_EQ(dialog.GetGeoDatabase(), wizard.GetGeoDatabase());
        EXPECT_EQ(dialog.GetGeoStatic(), wizard.GetGeoStatic());
        dialog.findChild<QLineEdit*>(QStringLiteral("nameEdit"))->setText(QStringLiteral("Rod"));
        dialog.accept();
        return dialog.result();
    });
    NewUnitDlg dialog(&wizard);
    dialog.SetMetersPerUnit(5.0292);
    ASSERT_EQ(dialog.DoModal(), int(QDialog::Accepted));
    EXPECT_TRUE(wizard.GetGeoDatabase()->UnitNameExists(QStringLiteral("Rod"), GEODB_USER));
}
