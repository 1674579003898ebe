#include "dialogs/SelEllipsoidDlg.h"
#include "DialogTestSupport.h"
#include "dialogs/NameFilterProxy.h"
#include "dialogs/PickerTree.h"
#include "wizard/GeoWizard.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>
#include <QTreeView>

#include <gtest/gtest.h>

namespace {

QString shownText(const QDialog& dialog) {
    return dialog.findChild<QTextEdit*>(QStringLiteral("infoPane"))->toPlainText();
}

bool okEnabled(const QDialog& dialog) {
    return dialog.findChild<QPushButton*>(QStringLiteral("okButton"))->isEnabled();
}

} // namespace

// The preset is found without regard to case and answered in the stored spelling, with the
// information after its heading line; the pane shows the whole text.
TEST(SelEllipsoidDlg, PresetIgnoresCaseAndReturnsTheStoredName) {
    TestEditorOwner owner;
    SelEllipsoidDlg dialog(&owner);
    dialog.SetSelName(QStringLiteral("international 1924"));
    dialog.EnsureInitialised();
    EXPECT_EQ(dialog.GetSelName(), QStringLiteral("International 1924"));
    QString full;
    owner.GetGeoDatabase()->GetEllipsoidInfoText(full, QStringLiteral("International 1924"));
    ASSERT_TRUE(full.contains(QLatin1Char('\n')));
    EXPECT_EQ(dialog.GetInfoText(), full.mid(full.indexOf(QLatin1Char('\n')) + 1));
    EXPECT_EQ(shownText(dialog),
              QString(full).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
}

TEST(SelEllipsoidDlg, UnknownOrEmptyPresetSelectsTheFirstByName) {
    TestEditorOwner owner;
    for (const QString& preset : {QStringLiteral("No such ellipsoid"), QString()}) {
        SelEllipsoidDlg dialog(&owner);
        dialog.SetSelName(preset);
        dialog.EnsureInitialised();
        EXPECT_EQ(dialog.GetSelName(), QStringLiteral("Airy 1830")) << preset.toStdString();
    }
}

TEST(SelEllipsoidDlg, WithoutADatabaseTheTreeIsEmptyAndThePresetStays) {
    SelEllipsoidDlg dialog;
    dialog.SetSelName(QStringLiteral("Bessel 1841"));
    dialog.EnsureInitialised();
    EXPECT_EQ(dialog.Tree()->Model().rowCount(), 0);
    EXPECT_EQ(dialog.GetSelName(), QStringLiteral("Bessel 1841"));
    EXPECT_TRUE(dialog.GetInfoText().isEmpty());
    EXPECT_TRUE(shownText(dialog).isEmpty());
}

// Opened for the wizard sheet, the picker lists the sheet's database; the scripted interface
// names the dialog by its class.
TEST(SelEllipsoidDlg, OpenedForTheSheetUsesItsDatabase) {
    TempDataFolder data;
    GeoWizard wizard(QStringLiteral("Coordinate System"));
    wizard.SetDllType(data.dllType());
    ASSERT_EQ(wizard.EnsureInitialised(), 1);
    ScriptedUi ui(FailTest());
    ui.ExpectModal<SelEllipsoidDlg>([&wizard](SelEllipsoidDlg& picker) {
        EXPECT_EQ(picker.GetSelName(), QStringLiteral("WGS 84"));
        EXPECT_EQ(picker.parentWidget(), &wizard);
        picker.Tree()->Select(picker.Tree()->Model().FindTopLevel(QStringLiteral("GRS 1980")));
        picker.accept();
        return picker.result();
    });
    SelEllipsoidDlg picker(&wizard);
    picker.SetSelName(wizard.GetSrcElpName());
    ASSERT_EQ(picker.DoModal(), int(QDialog::Accepted));
    EXPECT_EQ(picker.GetSelName(), QStringLiteral("GRS 1980"));
}

// Typing narrows the list by name or EPSG code; the pane follows; nothing to return
// disables OK; clearing restores the list with the choice kept.
TEST(SelEllipsoidDlg, FilterFindsByNameOrCode) {
    TestEditorOwner owner;
    SelEllipsoidDlg dialog(&owner);
    dialog.SetSelName(QStringLiteral("WGS 84"));
    dialog.EnsureInitialised();
    PickerTree* tree = dialog.Tree();
    const int all = tree->Model().rowCount();

    tree->SetFilterText(QStringLiteral("1924"));
    EXPECT_EQ(dialog.GetSelName(), QStringLiteral("International 1924"));
    EXPECT_TRUE(shownText(dialog).contains(QStringLiteral("International 1924")));
    tree->SetFilterText(QStringLiteral("7030")); // the EPSG code of WGS 84
    EXPECT_EQ(tree->Proxy().rowCount(), 1);
    EXPECT_EQ(dialog.GetSelName(), QStringLiteral("WGS 84"));

    tree->SetFilterText(QStringLiteral("no ellipsoid has this name"));
    EXPECT_FALSE(okEnabled(dialog));
    EXPECT_TRUE(shownText(dialog).isEmpty());

    tree->SetFilterText(QStringLiteral("wgs 8"));
    EXPECT_TRUE(okEnabled(dialog));
    tree->SetFilterText(QString());
    EXPECT_EQ(tree->Proxy().rowCount(), all);
    EXPECT_EQ(dialog.GetSelName(), QStringLiteral("WGS 84"));
    EXPECT_TRUE(okEnabled(dialog));
}

// The tree has the focus when the picker opens; Ctrl+F reaches the filter field and Down goes
// back into the tree.
TEST(SelEllipsoidDlg, CtrlFReachesTheFilterAndDownTheTree) {
    TestEditorOwner owner;
    SelEllipsoidDlg dialog(&owner);
    dialog.show();
    QApplication::setActiveWindow(&dialog);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    auto* tree = dialog.findChild<QTreeView*>(QStringLiteral("tree"));
    auto* filter = dialog.findChild<QLineEdit*>(QStringLiteral("filterEdit"));
    EXPECT_TRUE(tree->hasFocus());
    QTest::keyClick(tree, Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(filter->hasFocus());
    QTest::keyClicks(filter, QStringLiteral("clarke"));
    EXPECT_TRUE(dialog.GetSelName().startsWith(QStringLiteral("Clarke")));
    QTest::keyClick(filter, Qt::Key_Down);
    EXPECT_TRUE(tree->hasFocus());
}
