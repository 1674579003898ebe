#include "PageTestSupport.h"
#include "UserSystems.h"

#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/NameFilterProxy.h"
#include "dialogs/PickerTree.h"
#include "pages/WIZPage1.h"
#include "pages/WIZPage5.h"

#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>
#include <QTreeView>

namespace {

const QString kUk = QStringLiteral("UK");
const QString kBng = QStringLiteral("OSGB36 / British National Grid");
constexpr unsigned kBackNext = PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT;
constexpr unsigned kBackOnly = PropertySheet::PSWIZB_BACK;

class ExistingSystemPage : public WizardPageTest {
protected:
    // Arrives as a person does: a name, the check box, Next.
    void arrive() {
        OpenOn(0);
        Control<QLineEdit>(0, QStringLiteral("newSystemName"))->setText(kNewName);
        Click(0, QStringLiteral("basedOnExisting"));
        Next();
        ASSERT_EQ(ShownPage(), 1);
    }
    WIZPage1* page() { return static_cast<WIZPage1*>(Page(1)); }
    PickerTree* tree() { return page()->Tree(); }
    QTreeView* view() { return Control<QTreeView>(1, QStringLiteral("tree")); }
    OrvGeoDatabaseBase* db() { return wizard.GetGeoDatabase(); }
    OrvGeoStaticDataBase* sd() { return wizard.GetGeoStatic(); }

    // An entry of the tree's model (a group, or a system of a group).
    QModelIndex item(const QString& group, const QString& system = QString()) {
        const NameTreeModel& model = tree()->Model();
        const QModelIndex groupItem = model.FindTopLevel(group);
        if (system.isEmpty())
            return groupItem;
        for (int row = 0; row < model.rowCount(groupItem); ++row)
            if (model.NameAt(model.index(row, 0, groupItem)) == system)
                return model.index(row, 0, groupItem);
        return {};
    }
    // Clicks an entry with the mouse (opening its group first, as a person would).
    void click(const QModelIndex& entry) {
        ASSERT_TRUE(entry.isValid());
        if (entry.parent().isValid())
            tree()->Expand(entry.parent());
        const QModelIndex shown = tree()->Proxy().mapFromSource(entry);
        ASSERT_TRUE(shown.isValid());
        view()->scrollTo(shown);
        Flush();
        QTest::mouseClick(view()->viewport(), Qt::LeftButton, {},
                          view()->visualRect(shown).center());
        Flush();
    }
    // Puts the whole text into the filter field at once, as pasting does.
    void pasteFilter(const QString& text) {
        Control<QLineEdit>(1, QStringLiteral("filterEdit"))->setText(text);
        Flush();
    }
    // Types key by key: each keystroke filters.
    void typeFilter(const QString& text) {
        auto* filter = Control<QLineEdit>(1, QStringLiteral("filterEdit"));
        filter->clear();
        QTest::keyClicks(filter, text);
        Flush();
    }
    QString pane() { return Control<QTextEdit>(1, QStringLiteral("infoPane"))->toPlainText(); }
    // The system's information text as the pane shows it: each line a paragraph, its
    // leading tabs turned into indentation.
    QString infoOf(const QString& group, const QString& system) {
        QString text;
        db()->GetSystemInfoText(text, group, system, {}, {}, {}, {}, {});
        QStringList lines = text.remove(QLatin1Char('\r')).split(QLatin1Char('\n'));
        for (QString& line : lines)
            while (line.startsWith(QLatin1Char('\t')))
                line.remove(0, 1);
        return lines.join(QLatin1Char('\n'));
    }
    // The left margin of the pane's paragraph that starts with text.
    qreal indentOf(const QString& text) {
        const QTextDocument* doc = Control<QTextEdit>(1, QStringLiteral("infoPane"))->document();
        for (QTextBlock b = doc->begin(); b.isValid(); b = b.next())
            if (b.text().startsWith(text))
                return b.blockFormat().leftMargin();
        ADD_FAILURE() << "no paragraph " << text.toStdString();
        return -1;
    }
    QString current() { return tree()->Model().NameAt(tree()->Current()); }
    // The static data describes the stored system BNG, under the name given on page 0.
    void expectStaticDataOfBng() {
        QString out;
        EXPECT_EQ(sd()->GetSatelliteEllipsoidName(out), QStringLiteral("WGS 84"));
        EXPECT_EQ(sd()->GetLocalEllipsoidName(out), QStringLiteral("Airy 1830"));
        EXPECT_EQ(sd()->GetCurrentDtfName(out), QStringLiteral("OSGB36 to WGS 84 (6)"));
        EXPECT_EQ(sd()->GetSystemUnit(out), QStringLiteral("Meters"));
        double factor = 0;
        sd()->GetCurrentUnitFactor(factor);
        EXPECT_EQ(factor, 1.0);
        EXPECT_EQ(sd()->GetAssignedSystemName(out), kNewName);
    }

    const QString kNewName = QStringLiteral("BNG site copy");
};

} // namespace

// Every group of both databases with its systems and their EPSG codes; nothing is chosen
// yet, but Back and Next are offered.
TEST_F(ExistingSystemPage, ListsEveryStoredSystemByGroup) {
    StoreUserSystem(data.dllType(), QStringLiteral("Harbour surveys"),
                    QStringLiteral("Dover harbour grid"));
    arrive();
    EXPECT_EQ(page()->Title(), QStringLiteral("Select Coordinate System"));
    EXPECT_EQ(Control<QLabel>(1, QStringLiteral("treeLabel"))->text(),
              QStringLiteral("Coordinate systems:"));
    EXPECT_EQ(Control<QLabel>(1, QStringLiteral("infoLabel"))->text(),
              QStringLiteral("Coordinate system information:"));
    EXPECT_EQ(Control<QLabel>(1, QStringLiteral("pageNumber"))->text(), QStringLiteral("2 of 8"));

    QStringList groups;
    db()->GetGroupNames(groups, GEODB_ALL);
    const NameTreeModel& model = tree()->Model();
    ASSERT_EQ(model.rowCount(), groups.size());
    int systems = 0;
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex group = model.index(row, 0);
        QStringList stored;
        db()->GetSystemNames(stored, model.NameAt(group));
        EXPECT_EQ(model.rowCount(group), stored.size()) << model.NameAt(group).toStdString();
        systems += model.rowCount(group);
        EXPECT_FALSE(view()->isExpanded(tree()->Proxy().mapFromSource(group)));
    }
    EXPECT_GT(groups.size(), 170);
    EXPECT_GT(systems, 4500);
    EXPECT_TRUE(
        item(QStringLiteral("Harbour surveys"), QStringLiteral("Dover harbour grid")).isValid());
    EXPECT_EQ(model.CodeAt(item(kUk, kBng)), 27700);
    // groups of both databases in one order, as a person reads them
    for (int row = 1; row < model.rowCount(); ++row)
        EXPECT_LT(model.NameAt(model.index(row - 1, 0))
                      .compare(model.NameAt(model.index(row, 0)), Qt::CaseInsensitive),
                  0);

    EXPECT_EQ(page()->GetTreeFilled(), 1);
    EXPECT_FALSE(tree()->Current().isValid());
    EXPECT_TRUE(pane().isEmpty());
    EXPECT_EQ(wizard.GetWizardButtons(), kBackNext);
}

// A click on a system copies its datum transformation, projection, projection method and
// unit into the sheet and its definition into the static data; Next goes on with it.
TEST_F(ExistingSystemPage, ClickingASystemMakesItTheStartingPoint) {
    arrive();
    EXPECT_EQ(wizard.GetPrjOption(), 0xFFFFFFFFu);
    click(item(kUk, kBng));
    EXPECT_EQ(current(), kBng);
    EXPECT_EQ(wizard.GetWizardButtons(), kBackNext);
    EXPECT_EQ(page()->GetGroupName(), kUk);
    EXPECT_EQ(page()->GetSystemName(), kBng);
    QString out;
    EXPECT_TRUE(wizard.GetPreGroupName(out));
    EXPECT_EQ(out, kUk);
    EXPECT_TRUE(wizard.GetPreSysName(out));
    EXPECT_EQ(out, kBng);
    EXPECT_EQ(wizard.GetSelDtfName(), QStringLiteral("OSGB36 to WGS 84 (6)"));
    EXPECT_EQ(wizard.GetPrePrjName(), QStringLiteral("British National Grid"));
    EXPECT_EQ(wizard.GetPrjMdName(), QStringLiteral("Transverse Mercator"));
    EXPECT_EQ(wizard.GetUnit(), QStringLiteral("Meters"));
    EXPECT_EQ(wizard.GetPrjOption(), 0u);
    EXPECT_EQ(pane(), infoOf(kUk, kBng));
    EXPECT_TRUE(pane().contains(kBng));
    // the levels of the text stay visible
    EXPECT_LT(indentOf(QStringLiteral("System:")), indentOf(QStringLiteral("Projection:")));
    EXPECT_LT(indentOf(QStringLiteral("Projection:")),
              indentOf(QStringLiteral("Method: Transverse Mercator")));
    expectStaticDataOfBng();

    wizard.SetDtfOption(1);
    wizard.SetInitDtf(true);
    wizard.SetInitPrj(true);
    wizard.SetInitUnit(true);
    wizard.SetDtfFromOldDtf(true);
    wizard.SetPrjFromOldPrj(true);
    Next();
    EXPECT_EQ(ShownPage(), 5);
    EXPECT_EQ(wizard.GetDtfOption(), 0u);
    // the cleared flag has the parameters page start again from the system's transformation
    EXPECT_TRUE(wizard.GetDtfInit());
    EXPECT_EQ(static_cast<WIZPage5*>(Page(5))->GetName(), QStringLiteral("OSGB36 to WGS 84 (6)"));
    EXPECT_FALSE(wizard.GetPrjInit() || wizard.GetUnitInit());
    EXPECT_FALSE(wizard.GetDtfFromoldDtf() || wizard.GetPrjFromoldPrj());
    EXPECT_FALSE(wizard.GetGeoModStatu() || wizard.GetPosModStatu());
    EXPECT_TRUE(wizard.GetPreSysStatu());
}

// A group offers Back only and empties the pane; a system of it offers Next again. A group
// without systems offers Back only and leaves the pane as it was.
TEST_F(ExistingSystemPage, GroupsOfferBackOnly) {
    const QString empty = QStringLiteral("Empty survey group");
    StoreUserSystem(data.dllType(), empty, QStringLiteral("Short-lived"));
    {
        std::unique_ptr<OrvGeoDatabaseBase> other(
            OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(data.dllType()));
        ASSERT_TRUE(other->RemoveSystem(empty, QStringLiteral("Short-lived")));
    }
    arrive();
    ASSERT_TRUE(item(empty).isValid());
    EXPECT_EQ(tree()->Model().rowCount(item(empty)), 0);

    click(item(kUk, kBng));
    click(item(kUk));
    EXPECT_EQ(current(), kUk);
    EXPECT_EQ(wizard.GetWizardButtons(), kBackOnly);
    EXPECT_TRUE(pane().isEmpty());
    EXPECT_EQ(wizard.GetSelDtfName(), QStringLiteral("OSGB36 to WGS 84 (6)")); // kept

    click(item(kUk, QStringLiteral("OSNI 1952 / Irish National Grid")));
    EXPECT_EQ(wizard.GetWizardButtons(), kBackNext);
    EXPECT_EQ(page()->GetSystemName(), QStringLiteral("OSNI 1952 / Irish National Grid"));
    EXPECT_EQ(pane(), infoOf(kUk, QStringLiteral("OSNI 1952 / Irish National Grid")));

    click(item(empty));
    EXPECT_EQ(current(), empty);
    EXPECT_EQ(wizard.GetWizardButtons(), kBackOnly);
    EXPECT_EQ(pane(), infoOf(kUk, QStringLiteral("OSNI 1952 / Irish National Grid")));
}

// The preset system is found ignoring case and selected; the sheet gets its datum
// transformation and projection names and the projection option, the pane and the static
// data are filled, but the projection method and unit stay as the sheet had them.
TEST_F(ExistingSystemPage, APresetSystemIsPreselectedWithoutItsMethodAndUnit) {
    OpenOn(0);
    wizard.SetPreGroupName(QStringLiteral("uk"));
    wizard.SetPreSysName(QStringLiteral("osgb36 / BRITISH national GRID"), QString());
    wizard.SetPrjMdName(QStringLiteral("Lambert Conformal Conic (kept)"));
    wizard.SetUnit(QStringLiteral("US survey foot (kept)"));
    arrive();

    EXPECT_EQ(current(), kBng);
    EXPECT_TRUE(view()->selectionModel()->isSelected(view()->currentIndex()));
    EXPECT_TRUE(view()->isExpanded(tree()->Proxy().mapFromSource(item(kUk))));
    EXPECT_EQ(page()->GetGroupName(), kUk);
    EXPECT_EQ(page()->GetSystemName(), kBng);
    EXPECT_EQ(wizard.GetSelDtfName(), QStringLiteral("OSGB36 to WGS 84 (6)"));
    EXPECT_EQ(wizard.GetPrePrjName(), QStringLiteral("British National Grid"));
    EXPECT_EQ(wizard.GetPrjOption(), 0u);
    EXPECT_EQ(wizard.GetPrjMdName(), QStringLiteral("Lambert Conformal Conic (kept)"));
    EXPECT_EQ(wizard.GetUnit(), QStringLiteral("US survey foot (kept)"));
    EXPECT_EQ(pane(), infoOf(kUk, kBng));
    expectStaticDataOfBng();
    EXPECT_EQ(wizard.GetWizardButtons(), kBackNext);
    QString out;
    wizard.GetPreSysName(out);
    EXPECT_EQ(out, QStringLiteral("osgb36 / BRITISH national GRID")); // as the host set it
}

TEST_F(ExistingSystemPage, APresetThatIsNotStoredSelectsNothing) {
    OpenOn(0);
    wizard.SetPreGroupName(QStringLiteral("Atlantis"));
    wizard.SetPreSysName(kBng, QString());
    arrive();
    EXPECT_FALSE(tree()->Current().isValid());
    EXPECT_TRUE(wizard.GetSelDtfName().isEmpty());
    EXPECT_EQ(wizard.GetPrjOption(), 0xFFFFFFFFu);

    // the group is opened, the system is not there
    Back();
    wizard.SetPreGroupName(kUk);
    wizard.SetPreSysName(QStringLiteral("OSGB36 / Atlantis Grid"), QString());
    Next();
    EXPECT_TRUE(view()->isExpanded(tree()->Proxy().mapFromSource(item(kUk))));
    EXPECT_FALSE(tree()->Current().isValid());
    EXPECT_TRUE(wizard.GetSelDtfName().isEmpty());
    EXPECT_TRUE(pane().isEmpty());
}

// Next without a choice asks for the model flags of the empty group and system.
TEST_F(ExistingSystemPage, NextWithoutAChoiceTakesTheFlagsOfNoSystem) {
    arrive();
    wizard.SetGeoModStatu(true);
    wizard.SetPosModStatu(true);
    Next();
    EXPECT_EQ(ShownPage(), 5);
    EXPECT_FALSE(wizard.GetGeoModStatu());
    EXPECT_FALSE(wizard.GetPosModStatu());
    EXPECT_TRUE(page()->GetSystemName().isEmpty());
}

TEST_F(ExistingSystemPage, NextTakesTheModelFlagsOfTheChosenSystem) {
    const QString group = QStringLiteral("Harbour surveys");
    const QString name = QStringLiteral("Dover \"inner\" harbour 100%");
    StoreUserSystem(data.dllType(), group, name, [](OrvGeoStaticDataBase& sd) {
        sd.SetGeoidMethod(QStringLiteral("Manual Separation"));
        sd.SetManualGeoidSeparation(47.25);
        sd.SetPostTranslationOn(true);
        sd.SetPostTranslation(0.5, -0.25, 0.125);
    });
    arrive();
    click(item(group, name));
    QString out;
    EXPECT_EQ(sd()->GetGeoidMethod(out), QStringLiteral("Manual Separation"));
    double e = 0, n = 0, z = 0;
    sd()->GetPostTranslation(e, n, z);
    EXPECT_EQ(n, -0.25);
    Next();
    EXPECT_TRUE(wizard.GetGeoModStatu());
    EXPECT_TRUE(wizard.GetPosModStatu());

    // another system leaves nothing of this one in the static data
    Back();
    click(item(kUk, kBng));
    EXPECT_TRUE(sd()->GetGeoidMethod(out).isEmpty());
    sd()->GetPostTranslation(e, n, z);
    EXPECT_EQ(n, 0.0);
    Next();
    EXPECT_FALSE(wizard.GetGeoModStatu() || wizard.GetPosModStatu());
}

// Back clears the model flags, so that the name page starts from a clean state.
TEST_F(ExistingSystemPage, BackClearsTheModelFlags) {
    arrive();
    wizard.SetGeoModStatu(true);
    wizard.SetPosModStatu(true);
    Back();
    EXPECT_EQ(ShownPage(), 0);
    EXPECT_FALSE(wizard.GetGeoModStatu());
    EXPECT_FALSE(wizard.GetPosModStatu());
}

// Every arrival builds the tree anew (systems saved meanwhile appear), starts with the filter
// cleared and selects the last choice again.
TEST_F(ExistingSystemPage, EveryArrivalBuildsTheTreeAnew) {
    arrive();
    click(item(kUk, kBng));
    typeFilter(QStringLiteral("British"));
    Back();
    StoreUserSystem(data.dllType(), QStringLiteral("Harbour surveys"),
                    QStringLiteral("Dover harbour grid"));
    Next();
    EXPECT_EQ(ShownPage(), 1);
    EXPECT_TRUE(Control<QLineEdit>(1, QStringLiteral("filterEdit"))->text().isEmpty());
    EXPECT_FALSE(tree()->Proxy().IsFiltering());
    EXPECT_TRUE(
        item(QStringLiteral("Harbour surveys"), QStringLiteral("Dover harbour grid")).isValid());
    EXPECT_EQ(current(), kBng);
    EXPECT_EQ(pane(), infoOf(kUk, kBng));
}

// The filter narrows the tree to systems by name fragment or EPSG code, groups staying
// while a system of theirs matches; the entry it makes current is chosen as by a click
// (while typing, each keystroke may choose another). A filter that hides everything leaves
// no system to go on with; clearing it brings the last choice back.
TEST_F(ExistingSystemPage, TheFilterFindsSystemsByNameOrEpsgCode) {
    arrive();
    typeFilter(QStringLiteral("27700"));
    const NameFilterProxy& shown = tree()->Proxy();
    ASSERT_EQ(shown.rowCount(), 1);
    EXPECT_EQ(shown.index(0, 0).data().toString(), kUk);
    EXPECT_EQ(shown.rowCount(shown.index(0, 0)), 1);
    EXPECT_EQ(current(), kBng);
    EXPECT_EQ(wizard.GetSelDtfName(), QStringLiteral("OSGB36 to WGS 84 (6)"));
    EXPECT_EQ(wizard.GetPrjMdName(), QStringLiteral("Transverse Mercator"));
    EXPECT_EQ(wizard.GetWizardButtons(), kBackNext);
    EXPECT_EQ(pane(), infoOf(kUk, kBng));
    expectStaticDataOfBng();

    const QString irish = QStringLiteral("OSNI 1952 / Irish National Grid");
    typeFilter(QStringLiteral("irish national"));
    ASSERT_EQ(shown.rowCount(), 1);
    EXPECT_EQ(current(), irish);
    EXPECT_EQ(page()->GetSystemName(), irish);

    pasteFilter(QStringLiteral("no such system"));
    EXPECT_EQ(shown.rowCount(), 0);
    EXPECT_FALSE(tree()->Current().isValid());
    EXPECT_EQ(wizard.GetWizardButtons(), kBackOnly);
    EXPECT_TRUE(pane().isEmpty());
    EXPECT_EQ(page()->GetSystemName(), irish); // the last choice stays in the sheet

    pasteFilter(QString());
    EXPECT_EQ(current(), irish);
    EXPECT_EQ(wizard.GetWizardButtons(), kBackNext);
    EXPECT_EQ(pane(), infoOf(kUk, irish));
}

// With nothing chosen, a filter that found nothing and was cleared leaves the page as
// activation did: Back and Next.
TEST_F(ExistingSystemPage, AClearedFilterWithNothingChosenOffersNextAgain) {
    arrive();
    pasteFilter(QStringLiteral("no such system"));
    EXPECT_EQ(wizard.GetWizardButtons(), kBackOnly);
    pasteFilter(QString());
    EXPECT_FALSE(tree()->Current().isValid());
    EXPECT_EQ(wizard.GetWizardButtons(), kBackNext);
    EXPECT_TRUE(wizard.GetSelDtfName().isEmpty());
}
