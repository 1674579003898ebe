#include "PageTestSupport.h"

#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/NameFilterProxy.h"
#include "dialogs/PickerTree.h"
#include "pages/WIZPage4.h"
#include "store/SqliteStaticData.h"

#include <QLabel>
#include <QLineEdit>
#include <QTextEdit>
#include <QTreeView>

namespace {

constexpr unsigned kBackNext = PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT;
const QString kInternational = QStringLiteral("International 1924");

// The selection page in the "Use existing" list, opened for WGS 84 and a local ellipsoid.
class DtfSelectionPage : public WizardPageTest {
protected:
    void Open(const QString& local, const QString& currentDtf = QString()) {
        wizard.ReSetPages(GeoWizard::PagesUseExistingDtf);
        wizard.SetDesElpName(local);
        ASSERT_EQ(wizard.EnsureInitialised(), 1);
        if (!currentDtf.isEmpty())
            wizard.GetGeoStatic()->SetDtfName(currentDtf);
        OpenOn(4);
    }
    WIZPage4* page() { return static_cast<WIZPage4*>(Page(4)); }
    PickerTree* tree() { return page()->Tree(); }
    int shownCount() { return tree()->Proxy().rowCount(); }
    QString current() { return tree()->Model().NameAt(tree()->Current()); }
    QString pane() { return Control<QTextEdit>(4, QStringLiteral("infoPane"))->toPlainText(); }
    // The information text as the pane shows it (its line ends as plain text has them).
    QString infoOf(const QString& dtf) {
        QString text;
        wizard.GetGeoDatabase()->GetDtfInfoText(text, dtf, 1);
        return text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    }
    QStringList dtfNames(const QString& local) {
        QStringList names;
        wizard.GetGeoDatabase()->GetDtfNames(names, QStringLiteral("WGS 84"), local);
        return names;
    }
    const SystemDraft& draft() {
        return dynamic_cast<SqliteStaticData&>(*wizard.GetGeoStatic()).Draft();
    }
    void typeFilter(const QString& text) {
        tree()->SetFilterText(text);
        Flush();
    }
};

} // namespace

// Without a current transformation the first by name is selected, shown with its
// information, and its ellipsoids go into the static data.
TEST_F(DtfSelectionPage, ListsTheTransformationsBetweenTheEllipsoids) {
    Open(kInternational);
    EXPECT_EQ(page()->Title(), QStringLiteral("Select Datum Transformation"));
    EXPECT_EQ(Control<QLabel>(4, QStringLiteral("treeLabel"))->text(),
              QStringLiteral("Datum transformations:"));
    EXPECT_EQ(Control<QLabel>(4, QStringLiteral("infoLabel"))->text(),
              QStringLiteral("Datum transformation information:"));
    ASSERT_EQ(dtfNames(kInternational).size(), 273);
    EXPECT_EQ(shownCount(), 273);
    const QModelIndex first = tree()->Model().index(0, 0);
    EXPECT_EQ(tree()->Current(), first);
    const QString firstName = tree()->Model().NameAt(first);
    EXPECT_EQ(page()->GetSelName(), firstName);
    EXPECT_EQ(pane(), infoOf(firstName));
    QString aux;
    EXPECT_EQ(page()->GetAuxText(), wizard.GetGeoDatabase()->GetDtfAuxText(aux, firstName));
    QString satellite, local;
    wizard.GetGeoStatic()->GetSatelliteEllipsoidName(satellite);
    wizard.GetGeoStatic()->GetLocalEllipsoidName(local);
    EXPECT_EQ(satellite, QStringLiteral("WGS 84"));
    EXPECT_EQ(local, kInternational);
    EXPECT_FALSE(wizard.GetDtfInit());
    EXPECT_EQ(wizard.GetWizardButtons(), kBackNext);
    // people read numbers by value: "(2)" before "(10)"
    const QStringList order{QStringLiteral("ED50 to WGS 84 (1)"),
                            QStringLiteral("ED50 to WGS 84 (2)"),
                            QStringLiteral("ED50 to WGS 84 (10)")};
    int last = -1;
    for (const QString& name : order) {
        const int row = tree()->Model().FindTopLevel(name).row();
        EXPECT_GT(row, last) << name.toStdString();
        last = row;
    }
}

TEST_F(DtfSelectionPage, TheCurrentTransformationIsSelectedAgainIgnoringCase) {
    Open(kInternational, QStringLiteral("ed50 TO wgs 84 (23)"));
    EXPECT_EQ(current(), QStringLiteral("ED50 to WGS 84 (23)"));
    EXPECT_EQ(page()->GetSelName(), QStringLiteral("ED50 to WGS 84 (23)"));
    EXPECT_EQ(pane(), infoOf(QStringLiteral("ED50 to WGS 84 (23)")));
}

// The filter finds one of the 273 by a name fragment or its EPSG code; while it hides
// every entry only Back is offered, and clearing it gives the last choice back.
TEST_F(DtfSelectionPage, TheFilterFindsByNameOrEpsgCode) {
    Open(kInternational);
    typeFilter(QStringLiteral("ed50(ed77)"));
    EXPECT_EQ(shownCount(), 6);
    EXPECT_TRUE(current().startsWith(QStringLiteral("ED50(ED77) to WGS 84")));
    EXPECT_EQ(page()->GetSelName(), current());

    typeFilter(QStringLiteral("1311")); // EPSG code of "ED50 to WGS 84 (18)"
    EXPECT_EQ(shownCount(), 1);
    EXPECT_EQ(current(), QStringLiteral("ED50 to WGS 84 (18)"));
    EXPECT_EQ(pane(), infoOf(QStringLiteral("ED50 to WGS 84 (18)")));
    EXPECT_EQ(wizard.GetWizardButtons(), kBackNext);

    typeFilter(QStringLiteral("no such transformation"));
    EXPECT_EQ(shownCount(), 0);
    EXPECT_EQ(wizard.GetWizardButtons(), PropertySheet::PSWIZB_BACK);
    EXPECT_EQ(page()->GetSelName(), QStringLiteral("ED50 to WGS 84 (18)"));

    typeFilter(QString());
    EXPECT_EQ(shownCount(), 273);
    EXPECT_EQ(current(), QStringLiteral("ED50 to WGS 84 (18)"));
    EXPECT_EQ(wizard.GetWizardButtons(), kBackNext);

    typeFilter(QStringLiteral("1311"));
    Next();
    EXPECT_EQ(wizard.GetSelDtfName(), QStringLiteral("ED50 to WGS 84 (18)"));
}

// A filter stays from one visit to the next while it shows the transformation to select.
TEST_F(DtfSelectionPage, AFilterStaysWhileItShowsTheEntryToSelect) {
    Open(kInternational);
    typeFilter(QStringLiteral("1612"));
    ASSERT_EQ(current(), QStringLiteral("ED50 to WGS 84 (23)"));
    Next();
    Back();
    ASSERT_EQ(ShownPage(), 4);
    EXPECT_EQ(Control<QLineEdit>(4, QStringLiteral("filterEdit"))->text(), QStringLiteral("1612"));
    EXPECT_EQ(shownCount(), 1);
    EXPECT_EQ(current(), QStringLiteral("ED50 to WGS 84 (23)"));

    // a current transformation the filter hides empties it
    wizard.GetGeoStatic()->SetDtfName(QStringLiteral("ED50 to WGS 84 (1)"));
    Back();
    Next();
    ASSERT_EQ(ShownPage(), 4);
    EXPECT_TRUE(Control<QLineEdit>(4, QStringLiteral("filterEdit"))->text().isEmpty());
    EXPECT_EQ(shownCount(), 273);
    EXPECT_EQ(current(), QStringLiteral("ED50 to WGS 84 (1)"));
}

// Each activation fills the tree afresh for the sheet's ellipsoids; a filter that would hide
// every entry of the new list goes.
TEST_F(DtfSelectionPage, EachActivationFillsForTheEllipsoidsOfThatMoment) {
    Open(kInternational);
    typeFilter(QStringLiteral("ED50"));
    ASSERT_EQ(shownCount(), 39);
    Back();
    ASSERT_EQ(ShownPage(), 3);
    wizard.SetDesElpName(QStringLiteral("Airy 1830"));
    Next();
    ASSERT_EQ(ShownPage(), 4);
    EXPECT_TRUE(Control<QLineEdit>(4, QStringLiteral("filterEdit"))->text().isEmpty());
    EXPECT_EQ(shownCount(), dtfNames(QStringLiteral("Airy 1830")).size());
    EXPECT_EQ(current(), QStringLiteral("OSGB36 to WGS 84 (1)"));
}

// With no transformation between the ellipsoids the tree is empty, the pane blank, and
// Next is still offered (the later button request wins).
TEST_F(DtfSelectionPage, NoTransformationLeavesTheTreeEmptyAndNextOffered) {
    Open(kInternational);
    Back();
    wizard.SetDesElpName(QStringLiteral("Zach 1812"));
    Next();
    ASSERT_EQ(ShownPage(), 4);
    EXPECT_EQ(shownCount(), 0);
    EXPECT_TRUE(pane().isEmpty());
    EXPECT_TRUE(page()->GetSelName().isEmpty());
    EXPECT_EQ(wizard.GetWizardButtons(), kBackNext);
    Next();
    EXPECT_EQ(ShownPage(), 10);
    EXPECT_TRUE(wizard.GetSelDtfName().isEmpty());
}

// Next loads the selected transformation into the static data: texts, the method in the
// list's spelling, the fifteen values, the option byte and the two trailing values (the
// default observation epoch); the accuracy and EPSG code are only for reading.
TEST_F(DtfSelectionPage, NextLoadsTheSelectedTransformationIntoTheStaticData) {
    const QString name = QStringLiteral("GDA94 to WGS 84 (G1762) (1)");
    Open(QStringLiteral("GRS 1980"), name);
    ASSERT_EQ(current(), name);
    wizard.SetInitDtf(true);
    Next();
    EXPECT_EQ(ShownPage(), 10);
    EXPECT_EQ(wizard.GetSelDtfName(), name);
    EXPECT_FALSE(wizard.GetDtfInit());

    OrvGeoDatabaseBase& db = *wizard.GetGeoDatabase();
    QString method, text;
    DtfValues values{};
    std::array<double, 2> further{}, trailing{};
    unsigned char option = 0;
    ASSERT_TRUE(db.GetDtfParameters(name, method, values, further, option, trailing));
    const DtfRecord& dtf = draft().dtf;
    EXPECT_EQ(dtf.name, name);
    EXPECT_EQ(draft().dtfMethodName,
              QStringLiteral("Coordinate Frame time-dependent (15 parameters)"));
    EXPECT_EQ(dtf.methodIndex, DTF_15_COORDINATE_FRAME);
    EXPECT_EQ(dtf.values, values);
    EXPECT_DOUBLE_EQ(dtf.values[3], 0.0394924); // held in the position-vector sign
    EXPECT_EQ(dtf.option, DTF_OPTION_PUBLISHED_TO_WGS84);
    EXPECT_EQ(dtf.obsEpoch, 2020.0);
    EXPECT_EQ(dtf.trailing2, 0.0);
    EXPECT_EQ(dtf.description, db.GetDtfDescription(text, name));
    EXPECT_EQ(dtf.extraText, db.GetDtfExtraText(text, name));
    EXPECT_FALSE(dtf.description.isEmpty());
}
