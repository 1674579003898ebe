#include "api/OrvGeoDatabaseBase.h"
#include "platform/ScriptedUi.h"
#include "support/TempDataFolder.h"
#include "wizard/GeoWizard.h"

#include <QApplication>
#include <QPushButton>

#include <gtest/gtest.h>

namespace {

constexpr int G = 10; // the geoid model page

void flush() {
    QApplication::processEvents();
}

QList<int> without(QList<int> pages, int page) {
    pages.removeAll(page);
    return pages;
}

struct PageList {
    QList<int> history; // codes sent before the one checked
    int code;
    QList<int> expected;
};

const PageList kLists[] = {
    {{}, 0, {0, 2, 3, 4, G, 6, 7, 8, 9, 13, 11, 12}},
    {{}, 1, {0, 1, 5, G, 9, 13, 11, 12}},
    {{}, 3, {0, 2, 3, 4, G, 6, 7, 8, 9, 13, 11, 12}},
    {{}, 21, {0, 2, G, 6, 7, 8, 9, 13, 11, 12}},
    {{}, 30, {0, 2, 3, 5, G, 6, 7, 8, 9, 13, 11, 12}},
    {{}, 31, {0, 2, 3, 4, 5, G, 6, 7, 8, 9, 13, 11, 12}},
    // the projection codes take their head from what earlier codes remembered
    {{}, 7, {0, 2, 3, 4, 5, G, 6, 7, 8, 13, 11, 12}},
    {{31}, 7, {0, 2, 3, 4, 5, G, 6, 7, 8, 13, 11, 12}},
    {{3}, 7, {0, 2, 3, 4, G, 6, 7, 8, 13, 11, 12}},
    {{1}, 7, {0, 2, 3, 5, G, 6, 7, 8, 13, 11, 12}},
    {{30}, 7, {0, 2, 3, 5, G, 6, 7, 8, 13, 11, 12}},
    {{21}, 7, {0, 2, G, 6, 7, 8, 13, 11, 12}},
    {{3}, 71, {0, 2, 3, 4, G, 6, 7, 8, 9, 13, 11, 12}},
    {{31}, 71, {0, 2, 3, 4, 5, G, 6, 7, 8, 9, 13, 11, 12}},
    {{21}, 72, {0, 2, G, 6, 7, 9, 13, 11, 12}},
    {{1}, 72, {0, 2, 3, 5, G, 6, 7, 9, 13, 11, 12}},
    // code 0 leaves the flags alone
    {{3, 0}, 7, {0, 2, 3, 4, G, 6, 7, 8, 13, 11, 12}},
    {{1, 0}, 7, {0, 2, 3, 5, G, 6, 7, 8, 13, 11, 12}},
    // code 1 sets only its own flag: an earlier "no datum transformation pages" still wins
    {{21, 1}, 7, {0, 2, G, 6, 7, 8, 13, 11, 12}},
    // 3 clears what 1 set, 31 clears everything
    {{1, 3}, 72, {0, 2, 3, 4, G, 6, 7, 9, 13, 11, 12}},
    {{21, 31}, 7, {0, 2, 3, 4, 5, G, 6, 7, 8, 13, 11, 12}},
    // projection codes change no flag
    {{3, 7, 71}, 72, {0, 2, 3, 4, G, 6, 7, 9, 13, 11, 12}},
    // an unknown code changes no flag either
    {{31, 99}, 7, {0, 2, 3, 4, 5, G, 6, 7, 8, 13, 11, 12}},
};

} // namespace

TEST(PageFlow, TheWizardStartsWithTheDefaultList) {
    GeoWizard wizard(QStringLiteral("Coordinate System"));
    EXPECT_EQ(wizard.PageNumbers(), (QList<int>{0, 2, 3, 5, G, 6, 7, 8, 9, 13, 11, 12}));
    EXPECT_TRUE(wizard.IsWizardMode());
    for (int n = 0; n < 14; ++n)
        EXPECT_FALSE(wizard.GetWizardPage(n)->HasHelp()) << n;
    EXPECT_EQ(wizard.GetWizardPage(14), nullptr);
}

TEST(PageFlow, EveryCodeAndHistoryGivesItsList) {
    for (const bool skip : {false, true}) {
        for (const PageList& list : kLists) {
            GeoWizard wizard(QStringLiteral("w"));
            if (skip)
                wizard.SetSkipGeoid(true);
            for (int code : list.history)
                wizard.ReSetPages(code);
            wizard.ReSetPages(list.code);
            const QList<int> expected = skip ? without(list.expected, G) : list.expected;
            EXPECT_EQ(wizard.PageNumbers(), expected)
                << "code " << list.code << " after " << list.history.size() << " codes, skip "
                << skip;
        }
    }
}

TEST(PageFlow, UnknownCodesAndSeventyThreeOrMoreLeaveNoPages) {
    for (int code : {2, 4, 5, 8, 20, 22, 70, 73, 74, 1000, -1}) {
        GeoWizard wizard(QStringLiteral("w"));
        wizard.ReSetPages(code);
        EXPECT_EQ(wizard.GetPageCount(), 0) << code;
    }
}

TEST(PageFlow, PredefinedSystemFlagFollowsTheCodes) {
    GeoWizard wizard(QStringLiteral("w"));
    EXPECT_FALSE(wizard.HasPredefinedSystem());
    wizard.ReSetPages(0);
    EXPECT_TRUE(wizard.HasPredefinedSystem());
    wizard.ReSetPages(3); // leaves it
    EXPECT_TRUE(wizard.HasPredefinedSystem());
    wizard.ReSetPages(1); // false although the system is then based on one
    EXPECT_FALSE(wizard.HasPredefinedSystem());
    wizard.ReSetPages(21);
    EXPECT_TRUE(wizard.HasPredefinedSystem());
    wizard.ReSetPages(80);
    EXPECT_TRUE(wizard.HasPredefinedSystem());
}

TEST(PageFlow, SkippingTheGeoidPageDropsItAndOnePageFromTheCount) {
    GeoWizard wizard(QStringLiteral("w"));
    wizard.SetSkipGeoid(true);
    EXPECT_EQ(wizard.PageNumbers(), (QList<int>{0, 2, 3, 5, 6, 7, 8, 9, 13, 11, 12}));
    EXPECT_EQ(wizard.DisplayPageNumber(wizard.GetWizardPage(12)), QStringLiteral("11 of 11"));
    wizard.SetSkipGeoid(false);
    EXPECT_EQ(wizard.GetPageCount(), 12);
    EXPECT_EQ(wizard.DisplayPageNumber(wizard.GetWizardPage(12)), QStringLiteral("12 of 12"));
}

struct OpenWizard : ::testing::Test {
    OpenWizard() : wizard(QStringLiteral("Coordinate System")) {
        wizard.SetDllType(data.dllType());
    }
    void open() {
        ASSERT_EQ(wizard.EnsureInitialised(), 1);
        flush();
    }
    TempDataFolder data;
    GeoWizard wizard;
};

TEST_F(OpenWizard, TheIndexComesBackNotThePage) {
    open();
    ASSERT_TRUE(wizard.SetActivePage(4));
    EXPECT_EQ(wizard.GetActivePage(), wizard.GetWizardPage(G));
    wizard.ReSetPages(1); // 0, 1, 5, 10, 9, ...
    EXPECT_EQ(wizard.GetActiveIndex(), 4);
    EXPECT_EQ(wizard.GetActivePage(), wizard.GetWizardPage(9));
}

TEST_F(OpenWizard, TheCheckBoxOfTheFirstPageKeepsItActive) {
    open();
    wizard.ReSetPages(1);
    EXPECT_EQ(wizard.GetActivePage(), wizard.GetWizardPage(0));
    wizard.ReSetPages(0);
    EXPECT_EQ(wizard.GetActivePage(), wizard.GetWizardPage(0));
    EXPECT_EQ(wizard.GetWizardPage(0)->IsInitialised(), true);
}

TEST_F(OpenWizard, ButtonCodesOfThePages) {
    open();
    const struct { unsigned state, flags; } codes[] = {{0, 2}, {1, 5}, {2, 4}, {3, 3}, {4, 1}};
    for (const auto& c : codes) {
        wizard.SetWizardButtonByPage(c.state);
        flush();
        EXPECT_EQ(wizard.GetWizardButtons(), c.flags) << c.state;
    }
    wizard.SetWizardButtonByPage(3);
    flush();
    for (unsigned other : {5u, 6u, 100u}) {
        wizard.SetWizardButtonByPage(other);
        flush();
        EXPECT_EQ(wizard.GetWizardButtons(), 3u) << other;
    }
}

TEST_F(OpenWizard, TheLaterButtonRequestWins) {
    open();
    wizard.SetWizardButtonByPage(0);
    wizard.SetWizardButtonByPage(4);
    EXPECT_EQ(wizard.GetWizardButtons(), PropertySheet::PSWIZB_NEXT); // the first page's own
    flush();
    EXPECT_EQ(wizard.GetWizardButtons(), PropertySheet::PSWIZB_BACK);
}

TEST_F(OpenWizard, MovingOntoTheLastPageShowsFinish) {
    // The save page (second to last) moves on only with a group to save in.
    wizard.SetGroupsAllowed(GEODB_SYSTEM);
    open();
    const int count = wizard.GetPageCount();
    wizard.SetActivePage(count - 3);
    flush();
    wizard.OnWizNext();
    flush();
    EXPECT_EQ(wizard.GetActiveIndex(), count - 2);
    EXPECT_EQ(wizard.GetWizardButtons(), PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT);
    wizard.OnWizNext();
    flush();
    EXPECT_EQ(wizard.GetActiveIndex(), count - 1);
    EXPECT_EQ(wizard.GetWizardButtons(), PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_FINISH);
    EXPECT_FALSE(wizard.FinishButton()->isHidden());
    EXPECT_TRUE(wizard.NextButton()->isHidden());
}

TEST_F(OpenWizard, BackOntoTheFirstPagesOffersNextOnly) {
    open();
    wizard.SetActivePage(2);
    wizard.OnWizBack();
    flush();
    EXPECT_EQ(wizard.GetActiveIndex(), 1);
    EXPECT_EQ(wizard.GetWizardButtons(), PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT);
    wizard.OnWizBack();
    flush();
    EXPECT_EQ(wizard.GetActiveIndex(), 0);
    EXPECT_EQ(wizard.GetWizardButtons(), PropertySheet::PSWIZB_NEXT);
}

TEST_F(OpenWizard, PageNumbers) {
    open();
    EXPECT_EQ(wizard.DisplayPageNumber(wizard.GetWizardPage(0)), QStringLiteral("1 of 12"));
    EXPECT_EQ(wizard.DisplayPageNumber(wizard.GetWizardPage(5)), QStringLiteral("4 of 12"));
    EXPECT_EQ(wizard.DisplayPageNumber(wizard.GetWizardPage(1)), QStringLiteral("0 of 12"));
    wizard.ReSetPages(1);
    EXPECT_EQ(wizard.DisplayPageNumber(wizard.GetWizardPage(1)), QStringLiteral("2 of 8"));
}

TEST_F(OpenWizard, InitialisationTakesTheSatelliteEllipsoidAndInitialisesTheFirstPage) {
    open();
    ASSERT_NE(wizard.GetGeoDatabase(), nullptr);
    ASSERT_NE(wizard.GetGeoStatic(), nullptr);
    QString satellite;
    wizard.GetGeoDatabase()->GetSatelliteEllipsoidName(satellite);
    EXPECT_FALSE(satellite.isEmpty());
    EXPECT_EQ(wizard.GetSrcElpName(), satellite);
    EXPECT_TRUE(wizard.GetWizardPage(0)->IsInitialised());
    for (int n = 1; n < 14; ++n)
        EXPECT_FALSE(wizard.GetWizardPage(n)->IsInitialised()) << n;
}

TEST(WizardInit, ANullFactoryStopsInitialisationSilently) {
    ScriptedUi ui([](const QString& m) { ADD_FAILURE() << m.toStdString(); });
    GeoWizard wizard(QStringLiteral("Coordinate System"));
    wizard.SetDllType(QStringLiteral("nosuch:x"));
    EXPECT_EQ(wizard.OnInitDialog(), 0);
    EXPECT_EQ(wizard.GetGeoDatabase(), nullptr);
    EXPECT_EQ(wizard.GetGeoStatic(), nullptr);
    EXPECT_TRUE(wizard.GetSrcElpName().isEmpty());
    EXPECT_FALSE(wizard.IsInitialised());
    for (int n = 0; n < 14; ++n)
        EXPECT_FALSE(wizard.GetWizardPage(n)->IsInitialised()) << n;
    EXPECT_EQ(wizard.GetActivePage(), nullptr);
    EXPECT_TRUE(ui.Events().isEmpty());
}

TEST(WizardInit, ShowingAWizardWithoutItsDatabaseInitialisesNoPage) {
    ScriptedUi ui([](const QString& m) { ADD_FAILURE() << m.toStdString(); });
    GeoWizard wizard(QStringLiteral("Coordinate System"));
    wizard.SetDllType(QStringLiteral("nosuch:x"));
    wizard.show();
    flush();
    EXPECT_EQ(wizard.EnsureInitialised(), 0); // the result of the one run
    for (int n = 0; n < 14; ++n)
        EXPECT_FALSE(wizard.GetWizardPage(n)->IsInitialised()) << n;
    EXPECT_TRUE(ui.Events().isEmpty());
    wizard.hide();
}
