#include "DialogTestSupport.h"
#include "dialogs/DatumTransfmSelDlg.h"
#include "dialogs/NameFilterProxy.h"
#include "dialogs/PickerTree.h"
#include "dialogs/PrjSelectDlg.h"
#include "dialogs/UnitSelectionDlg.h"

#include <QPushButton>
#include <QTextEdit>
#include <QTreeView>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

QString shownText(const QDialog& dialog) {
    return dialog.findChild<QTextEdit*>(QStringLiteral("infoPane"))->toPlainText();
}
QString asShown(QString text) {
    return text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}
bool okEnabled(const QDialog& dialog) {
    return dialog.findChild<QPushButton*>(QStringLiteral("okButton"))->isEnabled();
}
QModelIndex child(PickerTree* tree, const QString& group, const QString& name) {
    const NameTreeModel& model = tree->Model();
    const QModelIndex parent = model.FindTopLevel(group);
    for (int row = 0; row < model.rowCount(parent); ++row)
        if (model.NameAt(model.index(row, 0, parent)) == name)
            return model.index(row, 0, parent);
    return {};
}

} // namespace

// Without preset ellipsoids the picker lists the transformations between the owner's
// current ellipsoids; the pane and the auxiliary text follow the selection.
TEST(DatumTransfmSelDlg, ListsTheOwnersEllipsoidsAndPresetIgnoresCase) {
    TestEditorOwner owner; // WGS 84 -> International 1924
    DatumTransfmSelDlg dialog(&owner);
    dialog.SetSelName(QStringLiteral("ed50 to wgs 84 (1)"));
    dialog.EnsureInitialised();
    EXPECT_EQ(dialog.GetSatelliteEllipsoidName(), QStringLiteral("WGS 84"));
    EXPECT_EQ(dialog.GetLocalEllipsoidName(), QStringLiteral("International 1924"));
    QStringList expected;
    owner.GetGeoDatabase()->GetDtfNames(expected, QStringLiteral("WGS 84"),
                                        QStringLiteral("International 1924"));
    EXPECT_EQ(dialog.Tree()->Model().rowCount(), expected.size());
    EXPECT_EQ(dialog.GetSelName(), QStringLiteral("ED50 to WGS 84 (1)"));
    QString aux, info;
    owner.GetGeoDatabase()->GetDtfAuxText(aux, QStringLiteral("ED50 to WGS 84 (1)"));
    owner.GetGeoDatabase()->GetDtfInfoText(info, QStringLiteral("ED50 to WGS 84 (1)"), 1);
    EXPECT_EQ(dialog.GetAuxText(), aux);
    EXPECT_EQ(shownText(dialog), asShown(info));

    // the EPSG code of "ED50 to WGS 84 (38)"
    dialog.Tree()->SetFilterText(QStringLiteral("1075"));
    EXPECT_EQ(dialog.GetSelName(), QStringLiteral("ED50 to WGS 84 (38)"));
}

TEST(DatumTransfmSelDlg, PresetEllipsoidsWinOverTheOwners) {
    TestEditorOwner owner;
    DatumTransfmSelDlg dialog(&owner);
    dialog.SetEllipsoidNames(QStringLiteral("WGS 84"), QStringLiteral("GRS 1980"));
    dialog.EnsureInitialised();
    QStringList expected;
    owner.GetGeoDatabase()->GetDtfNames(expected, QStringLiteral("WGS 84"),
                                        QStringLiteral("GRS 1980"));
    ASSERT_FALSE(expected.isEmpty());
    EXPECT_EQ(dialog.Tree()->Model().rowCount(), expected.size());

    DatumTransfmSelDlg alone;
    alone.SetSelName(QStringLiteral("kept"));
    alone.EnsureInitialised();
    EXPECT_EQ(alone.Tree()->Model().rowCount(), 0);
    EXPECT_EQ(alone.GetSelName(), QStringLiteral("kept"));
}

// Methods first, projections below them; OK only on a projection; a method with nothing
// stored is not offered; zones sort by number.
TEST(PrjSelectDlg, MethodsHoldTheirProjectionsAndOkWantsAProjection) {
    TestEditorOwner owner;
    PrjSelectDlg dialog(&owner);
    ASSERT_TRUE(dialog.OnInitDialog());
    PickerTree* tree = dialog.Tree();
    const NameTreeModel& model = tree->Model();

    QStringList methods;
    owner.GetGeoStatic()->GetPrjMethodNames(methods);
    int offered = 0;
    for (const QString& method : std::as_const(methods)) {
        QStringList projections;
        owner.GetGeoDatabase()->GetProjectionNamesOfMethod(projections, method);
        EXPECT_EQ(model.FindTopLevel(method).isValid(), !projections.isEmpty())
            << method.toStdString();
        offered += projections.isEmpty() ? 0 : 1;
    }
    EXPECT_EQ(model.rowCount(), offered);
    EXPECT_LT(offered, methods.size()); // some methods have no stored projection

    // the first method by name is selected, open, with OK off and the pane empty
    const QModelIndex first = tree->Current();
    EXPECT_FALSE(first.parent().isValid());
    EXPECT_EQ(first.row(), 0);
    EXPECT_TRUE(tree->View()->isExpanded(tree->Proxy().mapFromSource(first)));
    EXPECT_FALSE(okEnabled(dialog));
    EXPECT_TRUE(shownText(dialog).isEmpty());

    const QModelIndex zone5 = child(tree, QStringLiteral("UTM"), QStringLiteral("UTM Zone-5N"));
    const QModelIndex zone10 = child(tree, QStringLiteral("UTM"), QStringLiteral("UTM Zone-10N"));
    ASSERT_TRUE(zone5.isValid() && zone10.isValid());
    EXPECT_LT(zone5.row(), zone10.row());

    const QModelIndex bng =
        child(tree, QStringLiteral("Transverse Mercator"), QStringLiteral("British National Grid"));
    ASSERT_TRUE(bng.isValid());
    tree->Select(bng);
    EXPECT_TRUE(okEnabled(dialog));
    EXPECT_EQ(dialog.GetSelName(), QStringLiteral("British National Grid"));
    EXPECT_EQ(dialog.GetMethodName(), QStringLiteral("Transverse Mercator"));
    QString group, system;
    ASSERT_TRUE(owner.GetGeoDatabase()->FindProjectionSystem(
        QStringLiteral("British National Grid"), group, system));
    EXPECT_EQ(shownText(dialog),
              asShown(owner.GetGeoDatabase()->GetSystemProjectionInfoText(group, system, 1)));
}

// The filter reaches a projection by name or code, a method's name shows its projections,
// and the first projection shown becomes current so OK can return it.
TEST(PrjSelectDlg, FilterFindsProjectionsByNameOrCode) {
    TestEditorOwner owner;
    PrjSelectDlg dialog(&owner);
    dialog.EnsureInitialised();
    PickerTree* tree = dialog.Tree();
    tree->SetFilterText(QStringLiteral("19916")); // British National Grid
    EXPECT_EQ(dialog.GetSelName(), QStringLiteral("British National Grid"));
    EXPECT_TRUE(okEnabled(dialog));
    tree->SetFilterText(QStringLiteral("zone-31n"));
    EXPECT_EQ(dialog.GetSelName(), QStringLiteral("UTM Zone-31N"));
    EXPECT_EQ(dialog.GetMethodName(), QStringLiteral("UTM"));
    tree->SetFilterText(QStringLiteral("nothing is called like this"));
    EXPECT_FALSE(okEnabled(dialog));
    tree->SetFilterText(QString());
    EXPECT_EQ(dialog.GetSelName(), QStringLiteral("UTM Zone-31N")); // kept
    EXPECT_TRUE(okEnabled(dialog));
}

TEST(PrjSelectDlg, WithoutStaticDataTheTreeStaysEmpty) {
    PrjSelectDlg dialog;
    EXPECT_FALSE(dialog.OnInitDialog());
    EXPECT_EQ(dialog.Tree()->Model().rowCount(), 0);
}

TEST(UnitSelectionDlg, PresetIgnoresCaseAndUnknownTakesTheFirst) {
    TestEditorOwner owner;
    UnitSelectionDlg meters(&owner);
    meters.SetUnitName(QStringLiteral("meters"));
    ASSERT_TRUE(meters.OnInitDialog());
    EXPECT_EQ(meters.GetSelUnitName(), QStringLiteral("Meters"));
    QString description;
    owner.GetGeoDatabase()->GetUnitDescription(description, QStringLiteral("Meters"));
    EXPECT_EQ(shownText(meters), asShown(description));

    QStringList units;
    owner.GetGeoDatabase()->GetUnitNames(units);
    const QString first = *std::min_element(units.cbegin(), units.cend(), [](auto& a, auto& b) {
        return a.compare(b, Qt::CaseInsensitive) < 0;
    });
    UnitSelectionDlg unknown(owner.GetGeoDatabase());
    unknown.SetUnitName(QStringLiteral("furlong per fortnight"));
    ASSERT_TRUE(unknown.OnInitDialog());
    EXPECT_EQ(unknown.GetSelUnitName(), first);
}

TEST(UnitSelectionDlg, WithoutADatabaseItIsEmptyAndReturnsThePreset) {
    UnitSelectionDlg dialog(static_cast<OrvGeoDatabaseBase*>(nullptr));
    dialog.SetUnitName(QStringLiteral("Meters"));
    EXPECT_FALSE(dialog.OnInitDialog());
    EXPECT_EQ(dialog.Tree()->Model().rowCount(), 0);
    EXPECT_EQ(dialog.GetSelUnitName(), QStringLiteral("Meters"));
    EXPECT_TRUE(shownText(dialog).isEmpty());
}
