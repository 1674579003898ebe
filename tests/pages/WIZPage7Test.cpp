#include "PageTestSupport.h"

#include "pages/WIZPage7.h"

#include <QCheckBox>
#include <QLabel>
#include <QRadioButton>

namespace {

constexpr int G = 10; // the geoid model page

class ProjectionChoicePage : public WizardPageTest {
protected:
    // As after the datum transformation choice page chose a new transformation: the head of
    // every projection flow is then 0, 2, 3, 5.
    void SetUp() override {
        wizard.ReSetPages(GeoWizard::PagesNewDtf);
        OpenOn(7);
    }
    QCheckBox* based() { return Control<QCheckBox>(7, QStringLiteral("basedOnExisting")); }
};

} // namespace

// The page opens on "Use existing projection" with the check box off and explains the
// choice; the blank inside the quotes belongs to the text.
TEST_F(ProjectionChoicePage, OpensOnUseExistingWithTheExplanation) {
    EXPECT_EQ(Page(7)->Title(), QStringLiteral("Projection"));
    EXPECT_TRUE(Control<QRadioButton>(7, QStringLiteral("optionExisting"))->isChecked());
    EXPECT_FALSE(based()->isChecked());
    EXPECT_EQ(
        Control<QLabel>(7, QStringLiteral("prjChoiceInfo"))->text(),
        QStringLiteral("If the option \"Use existing projection\" is selected, the projection "
                       "parameters can not be modified.\nIf an existing projection has to be "
                       "modified, select the option \" New projection\" with \"Based on "
                       "existing projection\" checked.\nThe projection that can be selected "
                       "or created will use the unit as selected in the unit page.\n"));
}

// A click rebuilds the page flow at once (7, 71, 72) but sets neither the sheet's projection
// option nor its based-on flag: those come with Next.
TEST_F(ProjectionChoicePage, ClicksChangeTheFlowNextSetsTheOption) {
    EXPECT_FALSE(based()->isEnabled());
    Click(7, QStringLiteral("optionNew"));
    EXPECT_TRUE(based()->isEnabled());
    EXPECT_EQ(wizard.PageNumbers(), (QList<int>{0, 2, 3, 5, G, 6, 7, 9, 13, 11, 12}));
    Click(7, QStringLiteral("basedOnExisting"));
    EXPECT_EQ(wizard.PageNumbers(), (QList<int>{0, 2, 3, 5, G, 6, 7, 8, 9, 13, 11, 12}));
    EXPECT_EQ(wizard.GetPrjOption(), 0xFFFFFFFFu);
    EXPECT_FALSE(wizard.GetPrjFromoldPrj());

    Next();
    EXPECT_EQ(wizard.GetPrjOption(), 1u);
    EXPECT_TRUE(wizard.GetPrjFromoldPrj());
    EXPECT_TRUE(wizard.GetPrjInit());
    EXPECT_EQ(ShownPage(), 8);
}

// With "Use existing projection" the check box is ignored and the sheet's based-on flag stays
// as it was.
TEST_F(ProjectionChoicePage, UseExistingIgnoresTheCheckBox) {
    wizard.SetPrjFromOldPrj(true);
    Click(7, QStringLiteral("optionNew"));
    Click(7, QStringLiteral("basedOnExisting"));
    Click(7, QStringLiteral("optionExisting"));
    EXPECT_FALSE(based()->isEnabled());
    EXPECT_EQ(wizard.PageNumbers(), (QList<int>{0, 2, 3, 5, G, 6, 7, 8, 13, 11, 12}));
    Next();
    EXPECT_EQ(wizard.GetPrjOption(), 0u);
    EXPECT_TRUE(wizard.GetPrjFromoldPrj());
    EXPECT_FALSE(wizard.GetPrjInit());
}

// After the earlier pages rebuilt the list, the first Next re-applies the flow of the current
// option and clears the new-projection-page flag.
TEST_F(ProjectionChoicePage, FirstNextAfterARebuildReappliesTheFlow) {
    wizard.ReSetPages(GeoWizard::PagesUseExistingDtf);
    wizard.SetNewPrjPage(true);
    Flush();
    ASSERT_EQ(ShownPage(), 7);
    Next();
    EXPECT_FALSE(wizard.GetNewPrjPage());
    EXPECT_EQ(wizard.PageNumbers(), (QList<int>{0, 2, 3, 4, G, 6, 7, 8, 13, 11, 12}));
    EXPECT_EQ(ShownPage(), 8);
}
