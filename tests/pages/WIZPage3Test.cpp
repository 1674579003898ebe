#include "PageTestSupport.h"

#include "pages/WIZPage3.h"

#include <QCheckBox>
#include <QLabel>
#include <QRadioButton>

namespace {

constexpr unsigned kBackNext = PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT;

// The page lists of the choices (the geoid model page is in: SkipGeoid is off).
const QList<int> kUseExisting{0, 2, 3, 4, 10, 6, 7, 8, 9, 13, 11, 12};
const QList<int> kNewDtf{0, 2, 3, 5, 10, 6, 7, 8, 9, 13, 11, 12};
const QList<int> kNewDtfFromOld{0, 2, 3, 4, 5, 10, 6, 7, 8, 9, 13, 11, 12};

class DtfChoicePage : public WizardPageTest {
protected:
    void SetUp() override { OpenOn(3); }
    WIZPage3* page() { return static_cast<WIZPage3*>(Page(3)); }
    QCheckBox* based() { return Control<QCheckBox>(3, QStringLiteral("basedOnExisting")); }
    QRadioButton* radio(const char* name) { return Control<QRadioButton>(3, QLatin1String(name)); }
};

} // namespace

TEST_F(DtfChoicePage, OpensOnUseExistingWithTheExplanation) {
    EXPECT_EQ(page()->Title(), QStringLiteral("Datum Transformation "));
    EXPECT_TRUE(radio("optionExisting")->isChecked());
    EXPECT_FALSE(radio("optionNew")->isChecked());
    EXPECT_FALSE(based()->isChecked());
    EXPECT_FALSE(based()->isEnabled());
    EXPECT_EQ(radio("optionExisting")->text(), QStringLiteral("Use existing datum transformation"));
    EXPECT_EQ(radio("optionNew")->text(), QStringLiteral("New datum transformation"));
    EXPECT_EQ(based()->text(), QStringLiteral("Based on existing datum transformation"));
    // the blanks inside the quotes belong to the text
    EXPECT_EQ(Control<QLabel>(3, QStringLiteral("choiceInfo"))->text(),
              QStringLiteral("If the option \"Use existing datum transformation\" is selected the "
                             "datum transformation parameters can not be modified.\nIf an "
                             "existing datum transformation has to be modified, select the option "
                             "\" New datum transformation\" with \" Based on existing datum "
                             "transformation\" checked."));
    EXPECT_EQ(wizard.GetWizardButtons(), kBackNext);
    EXPECT_EQ(Control<QLabel>(3, QStringLiteral("pageNumber"))->text(), QStringLiteral("3 of 12"));
}

// Every click rebuilds the page list for the choice, keeps this page shown, tells the sheet
// the option and has the projection pages start afresh.
TEST_F(DtfChoicePage, EachClickRebuildsThePageListForTheChoice) {
    Click(3, QStringLiteral("optionNew"));
    EXPECT_EQ(wizard.PageNumbers(), kNewDtf);
    EXPECT_EQ(ShownPage(), 3);
    EXPECT_TRUE(based()->isEnabled());
    EXPECT_EQ(wizard.GetDtfOption(), 1u);
    EXPECT_TRUE(wizard.GetNewPrjPage());
    EXPECT_EQ(wizard.GetWizardButtons(), kBackNext);

    Click(3, QStringLiteral("basedOnExisting"));
    EXPECT_EQ(wizard.PageNumbers(), kNewDtfFromOld);
    EXPECT_EQ(ShownPage(), 3);
    EXPECT_EQ(Control<QLabel>(3, QStringLiteral("pageNumber"))->text(), QStringLiteral("3 of 13"));
    Click(3, QStringLiteral("basedOnExisting"));
    EXPECT_EQ(wizard.PageNumbers(), kNewDtf);

    wizard.SetNewPrjPage(false);
    Click(3, QStringLiteral("optionExisting"));
    EXPECT_EQ(wizard.PageNumbers(), kUseExisting);
    EXPECT_FALSE(based()->isEnabled());
    EXPECT_EQ(wizard.GetDtfOption(), 0u);
    EXPECT_TRUE(wizard.GetNewPrjPage());
    // the "based on" choice is only read on Next, never by a click
    EXPECT_FALSE(wizard.GetDtfFromoldDtf());
}

// The check box handler runs the whole option change, so with "Use existing" selected it
// rebuilds the list for that choice again, whatever the box says.
TEST_F(DtfChoicePage, TheCheckBoxHandlerWithUseExistingRebuildsForUseExisting) {
    Click(3, QStringLiteral("optionNew"));
    Click(3, QStringLiteral("basedOnExisting"));
    Click(3, QStringLiteral("optionExisting"));
    ASSERT_TRUE(based()->isChecked());
    wizard.SetNewPrjPage(false);
    wizard.ReSetPages(GeoWizard::PagesNewDtf);
    page()->OnBasedOnExistingClicked();
    Flush();
    EXPECT_EQ(wizard.PageNumbers(), kUseExisting);
    EXPECT_TRUE(wizard.GetNewPrjPage());
    EXPECT_FALSE(based()->isEnabled());
    EXPECT_EQ(wizard.GetDtfOption(), 0u);
}

// "Use existing" ignores the check box even when it is left checked, and leads to the
// selection page.
TEST_F(DtfChoicePage, NextWithUseExistingIgnoresTheCheckBox) {
    Click(3, QStringLiteral("optionNew"));
    Click(3, QStringLiteral("basedOnExisting"));
    Click(3, QStringLiteral("optionExisting"));
    EXPECT_TRUE(based()->isChecked());
    EXPECT_FALSE(based()->isEnabled());
    Next();
    EXPECT_EQ(ShownPage(), 4);
    EXPECT_EQ(wizard.PageNumbers(), kUseExisting);
    EXPECT_EQ(wizard.GetDtfOption(), 0u);
    EXPECT_FALSE(wizard.GetDtfFromoldDtf());
}

// Next on the start list (no click yet) still builds the "Use existing" list.
TEST_F(DtfChoicePage, NextWithoutAClickLeadsToTheSelectionPage) {
    ASSERT_EQ(wizard.PageNumbers(), kNewDtf); // the list the wizard starts with
    Next();
    EXPECT_EQ(wizard.PageNumbers(), kUseExisting);
    EXPECT_EQ(ShownPage(), 4);
}

TEST_F(DtfChoicePage, NextWithANewTransformationSaysWhetherItIsBasedOnAnother) {
    Click(3, QStringLiteral("optionNew"));
    Click(3, QStringLiteral("basedOnExisting"));
    Next();
    EXPECT_EQ(ShownPage(), 4);
    EXPECT_TRUE(wizard.GetDtfFromoldDtf());
    EXPECT_EQ(wizard.GetDtfOption(), 1u);

    Back();
    ASSERT_EQ(ShownPage(), 3);
    EXPECT_TRUE(based()->isEnabled()); // activation follows the option
    Click(3, QStringLiteral("basedOnExisting"));
    Next();
    EXPECT_EQ(ShownPage(), 5);
    EXPECT_FALSE(wizard.GetDtfFromoldDtf());
}
