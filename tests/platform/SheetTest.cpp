#include "platform/PropertySheet.h"
#include "platform/ScriptedUi.h"

#include <QApplication>
#include <QPointer>
#include <QPushButton>

#include <gtest/gtest.h>

namespace {

void flush() {
    QApplication::processEvents();
}

ScriptedUi::FailureHandler failTest() {
    return [](const QString& message) { ADD_FAILURE() << message.toStdString(); };
}

// A page that counts its calls and can refuse each step.
class CountingPage : public PropertyPage {
public:
    explicit CountingPage(const QString& name) { setObjectName(name); }
    bool OnInitDialog() override {
        ++inits;
        return PropertyPage::OnInitDialog();
    }
    bool OnSetActive() override {
        ++activations;
        if (buttonsOnActive)
            GetParentSheet()->SetWizardButtons(buttonsOnActive);
        return allowActive;
    }
    bool OnKillActive() override {
        ++kills;
        return allowLeave;
    }
    int OnWizardNext() override { return nextResult; }
    int OnWizardBack() override { return backResult; }
    bool OnWizardFinish() override {
        ++finishes;
        return allowFinish;
    }

    int inits = 0, activations = 0, kills = 0, finishes = 0;
    bool allowActive = true, allowLeave = true, allowFinish = true;
    int nextResult = kMove, backResult = kMove;
    unsigned buttonsOnActive = 0;
};

struct Sheet : ::testing::Test {
    Sheet()
        : sheet(QStringLiteral("Sheet")), a(QStringLiteral("a")), b(QStringLiteral("b")),
          c(QStringLiteral("c")) {
        sheet.SetWizardMode();
        sheet.AddPage(&a);
        sheet.AddPage(&b);
        sheet.AddPage(&c);
    }
    PropertySheet sheet;
    CountingPage a, b, c;
};

} // namespace

TEST_F(Sheet, PagesAreAddedAndRemovedByIndex) {
    EXPECT_EQ(sheet.GetPageCount(), 3);
    EXPECT_EQ(sheet.GetPageIndex(&b), 1);
    sheet.RemovePage(0);
    EXPECT_EQ(sheet.GetPageCount(), 2);
    EXPECT_EQ(sheet.GetPage(0), &b);
    EXPECT_EQ(sheet.GetPageIndex(&a), -1);
    EXPECT_EQ(a.GetParentSheet(), nullptr);
    sheet.RemovePage(7); // outside the list: nothing
    EXPECT_EQ(sheet.GetPageCount(), 2);
    sheet.AddPage(&a);
    sheet.AddPage(&a); // already there
    EXPECT_EQ(sheet.GetPageCount(), 3);
    EXPECT_EQ(sheet.GetPage(2), &a);
    EXPECT_EQ(a.GetParentSheet(), &sheet);
}

TEST_F(Sheet, InitialisationActivatesTheStartPageOnly) {
    PropertySheet started(QStringLiteral("s"), nullptr, 1);
    CountingPage x(QStringLiteral("x")), y(QStringLiteral("y"));
    started.AddPage(&x);
    started.AddPage(&y);
    EXPECT_EQ(started.GetActiveIndex(), 1);
    EXPECT_EQ(started.EnsureInitialised(), 1);
    EXPECT_EQ(started.GetActivePage(), &y);
    EXPECT_EQ(y.inits, 1);
    EXPECT_EQ(y.activations, 1);
    EXPECT_EQ(x.inits, 0);
    EXPECT_EQ(y.kills, 0);
}

TEST_F(Sheet, EachPageIsInitialisedOnce) {
    sheet.EnsureInitialised();
    sheet.OnWizNext();
    sheet.OnWizBack();
    sheet.OnWizNext();
    EXPECT_EQ(a.inits, 1);
    EXPECT_EQ(b.inits, 1);
    EXPECT_EQ(c.inits, 0);
    EXPECT_EQ(b.activations, 2);
    EXPECT_EQ(a.kills, 2);
}

TEST_F(Sheet, HandlersCanKeepThePage) {
    sheet.EnsureInitialised();
    a.nextResult = PropertyPage::kStay;
    sheet.OnWizNext();
    EXPECT_EQ(sheet.GetActivePage(), &a);
    EXPECT_EQ(a.kills, 0);

    a.nextResult = PropertyPage::kMove;
    a.allowLeave = false; // validation refuses
    sheet.OnWizNext();
    EXPECT_EQ(sheet.GetActivePage(), &a);

    a.allowLeave = true;
    b.allowActive = false; // the next page refuses to be shown
    sheet.OnWizNext();
    EXPECT_EQ(sheet.GetActivePage(), &a);

    b.allowActive = true;
    sheet.OnWizNext();
    EXPECT_EQ(sheet.GetActivePage(), &b);
    b.backResult = PropertyPage::kStay;
    sheet.OnWizBack();
    EXPECT_EQ(sheet.GetActivePage(), &b);
}

TEST_F(Sheet, NextJumpsToTheIndexAPageNames) {
    sheet.EnsureInitialised();
    a.nextResult = 2;
    sheet.OnWizNext();
    EXPECT_EQ(sheet.GetActivePage(), &c);
    EXPECT_EQ(b.inits, 0);
}

TEST_F(Sheet, NoMoveBeyondEitherEnd) {
    sheet.EnsureInitialised();
    sheet.OnWizBack();
    EXPECT_EQ(sheet.GetActiveIndex(), 0);
    sheet.SetActivePage(2);
    sheet.OnWizNext();
    EXPECT_EQ(sheet.GetActiveIndex(), 2);
}

TEST_F(Sheet, RemovingTheActivePageLeavesNoActivePage) {
    sheet.EnsureInitialised();
    sheet.SetActivePage(1);
    sheet.RemovePage(1);
    EXPECT_EQ(sheet.GetActivePage(), nullptr);
    EXPECT_EQ(sheet.GetActiveIndex(), -1);
    const int killsBefore = b.kills;
    EXPECT_TRUE(sheet.SetActivePage(1));
    EXPECT_EQ(sheet.GetActivePage(), &c);
    EXPECT_EQ(b.kills, killsBefore); // a removed page is not asked
}

TEST_F(Sheet, AnIndexPastTheEndActivatesTheLastPage) {
    sheet.EnsureInitialised();
    EXPECT_TRUE(sheet.SetActivePage(9));
    EXPECT_EQ(sheet.GetActivePage(), &c);
    PropertySheet empty(QStringLiteral("e"));
    empty.EnsureInitialised();
    EXPECT_FALSE(empty.SetActivePage(0));
}

TEST_F(Sheet, ButtonRequestsArePostedAndTheLaterWins) {
    sheet.EnsureInitialised();
    flush();
    sheet.SetWizardButtons(PropertySheet::PSWIZB_NEXT);
    sheet.SetWizardButtons(PropertySheet::PSWIZB_BACK);
    EXPECT_EQ(sheet.GetWizardButtons(), PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT);
    flush();
    EXPECT_EQ(sheet.GetWizardButtons(), PropertySheet::PSWIZB_BACK);
    EXPECT_TRUE(sheet.BackButton()->isEnabled());
    EXPECT_FALSE(sheet.NextButton()->isEnabled());
}

TEST_F(Sheet, FinishReplacesNext) {
    sheet.show();
    sheet.SetWizardButtons(PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_FINISH);
    flush();
    EXPECT_TRUE(sheet.FinishButton()->isVisible());
    EXPECT_TRUE(sheet.FinishButton()->isEnabled());
    EXPECT_FALSE(sheet.NextButton()->isVisible());
    sheet.SetWizardButtons(PropertySheet::PSWIZB_NEXT);
    flush();
    EXPECT_FALSE(sheet.FinishButton()->isVisible());
    EXPECT_TRUE(sheet.NextButton()->isVisible());
    EXPECT_TRUE(sheet.NextButton()->isEnabled());
    EXPECT_FALSE(sheet.BackButton()->isEnabled());
    sheet.hide();
}

TEST_F(Sheet, ARequestOfTheNewPageComesAfterTheSheetsOwn) {
    sheet.EnsureInitialised();
    b.buttonsOnActive = PropertySheet::PSWIZB_BACK;
    sheet.SetWizardButtons(PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT);
    sheet.OnWizNext();
    flush();
    EXPECT_EQ(sheet.GetWizardButtons(), PropertySheet::PSWIZB_BACK);
}

TEST_F(Sheet, ButtonsDriveTheHandlers) {
    sheet.show();
    flush();
    sheet.NextButton()->click();
    EXPECT_EQ(sheet.GetActivePage(), &b);
    sheet.BackButton()->click();
    EXPECT_EQ(sheet.GetActivePage(), &a);
    sheet.hide();
}

TEST_F(Sheet, FinishAndCancelCloseTheSheet) {
    sheet.EnsureInitialised();
    a.allowFinish = false;
    sheet.OnWizFinish();
    EXPECT_EQ(a.finishes, 1);
    EXPECT_EQ(sheet.result(), 0);

    ScriptedUi ui(failTest());
    ui.ExpectModal<PropertySheet>([](PropertySheet& s) {
        s.OnWizFinish();
        return s.result();
    });
    a.allowFinish = true;
    EXPECT_EQ(sheet.DoModal(), PropertySheet::ID_WIZFINISH);

    ui.ExpectModal<PropertySheet>([](PropertySheet& s) {
        s.OnWizCancel();
        return s.result();
    });
    EXPECT_EQ(sheet.DoModal(), int(QDialog::Rejected));
}

TEST_F(Sheet, HelpFollowsThePageFlag) {
    b.SetHasHelp(false);
    sheet.show();
    flush();
    EXPECT_TRUE(sheet.HelpButton()->isVisible());
    sheet.OnWizNext();
    EXPECT_FALSE(sheet.HelpButton()->isVisible());
    sheet.hide();
}

TEST(SheetLifetime, PagesMayGoBeforeTheSheet) {
    PropertySheet sheet(QStringLiteral("s"));
    {
        CountingPage page(QStringLiteral("p"));
        sheet.AddPage(&page);
        sheet.EnsureInitialised();
        EXPECT_EQ(sheet.GetActivePage(), &page);
    }
    EXPECT_EQ(sheet.GetPageCount(), 0);
    EXPECT_EQ(sheet.GetActivePage(), nullptr);
}

// The sheet never owns its pages: a page removed from it, or still in it when the sheet
// goes, lives on (without a parent) until its maker destroys it.
TEST(SheetLifetime, PagesOutliveTheSheet) {
    auto* kept = new CountingPage(QStringLiteral("kept"));
    auto* removed = new CountingPage(QStringLiteral("removed"));
    QPointer<CountingPage> keptAlive(kept), removedAlive(removed);
    {
        PropertySheet sheet(QStringLiteral("s"));
        sheet.AddPage(kept);
        sheet.AddPage(removed);
        sheet.EnsureInitialised();
        sheet.RemovePage(1);
        EXPECT_EQ(removed->parentWidget(), nullptr);
        EXPECT_EQ(removed->GetParentSheet(), nullptr);
    }
    ASSERT_FALSE(keptAlive.isNull());
    ASSERT_FALSE(removedAlive.isNull());
    EXPECT_EQ(kept->parentWidget(), nullptr);
    EXPECT_EQ(kept->GetParentSheet(), nullptr);
    delete kept;
    delete removed;
}
