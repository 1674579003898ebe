#include "PageTestSupport.h"
#include "UserSystems.h"

#include "pages/WIZPage0.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

namespace {

const QList<int> kDefaultPages{0, 2, 3, 5, 10, 6, 7, 8, 9, 13, 11, 12};
const QList<int> kNotBasedPages{0, 2, 3, 4, 10, 6, 7, 8, 9, 13, 11, 12};
const QList<int> kBasedPages{0, 1, 5, 10, 9, 13, 11, 12};

// What a Next may change: the sheet's hand-over and the static data's system name.
struct Handover {
    QString newName, assigned;
    bool based, geoid, post;
    bool operator==(const Handover&) const = default;
};

class NamePage : public WizardPageTest {
protected:
    void SetUp() override { OpenOn(0); }
    WIZPage0* page() { return static_cast<WIZPage0*>(Page(0)); }
    QLineEdit* nameEdit() { return Control<QLineEdit>(0, QStringLiteral("newSystemName")); }
    QCheckBox* basedBox() { return Control<QCheckBox>(0, QStringLiteral("basedOnExisting")); }
    // Types key by key, each key carrying its character (as a keyboard layout that has it
    // would send it; keyClicks knows only ASCII).
    void type(const QString& name) {
        nameEdit()->clear();
        for (const QChar c : name)
            QTest::sendKeyEvent(QTest::Click, nameEdit(), Qt::Key_unknown, QString(c),
                                Qt::NoModifier);
    }
    Handover handover() {
        QString assigned;
        wizard.GetGeoStatic()->GetAssignedSystemName(assigned);
        return {wizard.GetNewSystemName(), assigned, wizard.GetPreSysStatu(),
                wizard.GetGeoModStatu(), wizard.GetPosModStatu()};
    }
    // Next is refused with this message; the page, the typed name, the sheet and the static
    // data stay as they were.
    void expectRefused(const QString& message) {
        const QString typed = nameEdit()->text();
        const Handover before = handover();
        ui.ExpectMessage(message, QString(), MsgButtons::Ok, MsgAnswer::Ok);
        Next();
        EXPECT_EQ(ShownPage(), 0);
        EXPECT_EQ(nameEdit()->text(), typed);
        EXPECT_TRUE(handover() == before);
    }
};

} // namespace

TEST_F(NamePage, ShowsItsTextsAndOffersNextOnly) {
    EXPECT_EQ(Control<QLabel>(0, QStringLiteral("nameLabel"))->text(),
              QStringLiteral("New coordinate system name:"));
    EXPECT_EQ(basedBox()->text(), QStringLiteral("Based on existing coordinate system:"));
    EXPECT_EQ(Control<QLabel>(0, QStringLiteral("infoText"))->text(),
              QStringLiteral("If an existing coordinate system is used, the datum transformation "
                             "parameters, the projection parameters, the geoid corrections, and "
                             "the post grid corrections can be changed."));
    EXPECT_EQ(page()->Title(), QStringLiteral("New Coordinate System"));
    EXPECT_EQ(Control<QLabel>(0, QStringLiteral("pageNumber"))->text(), QStringLiteral("1 of 12"));
    EXPECT_TRUE(nameEdit()->text().isEmpty());
    EXPECT_FALSE(basedBox()->isChecked());
    EXPECT_EQ(wizard.GetWizardButtons(), PropertySheet::PSWIZB_NEXT);
}

TEST_F(NamePage, AnEmptyNameIsRefused) {
    wizard.SetGeoModStatu(true); // a refused Next does not clear the flags either
    wizard.SetPosModStatu(true);
    expectRefused(QStringLiteral("Please give a name for the new system."));
}

// Both databases are asked, as they compare names (letter case ignored).
TEST_F(NamePage, ANameThatExistsInEitherDatabaseIsRefused) {
    type(QStringLiteral("osgb36 / BRITISH national grid"));
    expectRefused(QStringLiteral("The name already exists. Please give another name."));

    StoreUserSystem(data.dllType(), QStringLiteral("Harbour surveys"),
                    QStringLiteral("Dover harbour grid"));
    type(QStringLiteral("DOVER HARBOUR GRID"));
    expectRefused(QStringLiteral("The name already exists. Please give another name."));
}

// The name is not trimmed: blanks alone pass the empty check and are handed over as typed.
TEST_F(NamePage, ANameOfBlanksOnlyPassesAsItStands) {
    type(QStringLiteral("   "));
    Next();
    EXPECT_EQ(ShownPage(), 2);
    EXPECT_EQ(handover().newName, QStringLiteral("   "));
    EXPECT_EQ(handover().assigned, QStringLiteral("   "));
}

TEST_F(NamePage, QuotesPercentSignsAndNonAsciiPassUnchanged) {
    const QString name =
        QStringLiteral("Ørsted \"Hornsea\" 100% O'Neill – Å/Ü/ß 東京 \\ %s %1 ';--");
    type(name);
    EXPECT_EQ(nameEdit()->text(), name);
    Next();
    EXPECT_EQ(ShownPage(), 2);
    EXPECT_EQ(handover().newName, name);
    EXPECT_EQ(handover().assigned, name);
    EXPECT_EQ(page()->GetNewSystemNameField(), name);
}

// Next hands over the name and the check box and always clears the geoid-model and
// post-correction flags, also on a later pass through the page.
TEST_F(NamePage, NextHandsOverAndClearsTheModelFlagsEveryTime) {
    type(QStringLiteral("North Sea 2024"));
    wizard.SetPreSysStatu(true, false);
    wizard.SetGeoModStatu(true);
    wizard.SetPosModStatu(true);
    Next();
    EXPECT_EQ(ShownPage(), 2);
    EXPECT_TRUE(handover() == (Handover{QStringLiteral("North Sea 2024"),
                                        QStringLiteral("North Sea 2024"), false, false, false}));

    wizard.SetGeoModStatu(true);
    wizard.SetPosModStatu(true);
    Back();
    EXPECT_EQ(ShownPage(), 0);
    EXPECT_EQ(nameEdit()->text(), QStringLiteral("North Sea 2024"));
    type(QStringLiteral("North Sea 2025"));
    Next();
    EXPECT_TRUE(handover() == (Handover{QStringLiteral("North Sea 2025"),
                                        QStringLiteral("North Sea 2025"), false, false, false}));
}

// The check box rebuilds the page list at once, keeps the page and what was typed, and sets
// the new-projection-page flag; Next then goes on to the existing-system page.
TEST_F(NamePage, TheCheckBoxRebuildsThePageListAtOnce) {
    EXPECT_EQ(wizard.PageNumbers(), kDefaultPages);
    type(QStringLiteral("Based on BNG"));
    Click(0, QStringLiteral("basedOnExisting"));
    EXPECT_EQ(wizard.PageNumbers(), kBasedPages);
    EXPECT_EQ(ShownPage(), 0);
    EXPECT_TRUE(basedBox()->isChecked());
    EXPECT_EQ(page()->GetBasedOnExisting(), 1);
    EXPECT_EQ(nameEdit()->text(), QStringLiteral("Based on BNG"));
    EXPECT_TRUE(wizard.GetNewPrjPage());
    EXPECT_FALSE(wizard.HasPredefinedSystem());
    EXPECT_EQ(Control<QLabel>(0, QStringLiteral("pageNumber"))->text(), QStringLiteral("1 of 8"));
    EXPECT_EQ(wizard.GetWizardButtons(), PropertySheet::PSWIZB_NEXT);
    EXPECT_FALSE(wizard.GetPreSysStatu()); // the sheet learns it on Next

    Next();
    EXPECT_EQ(ShownPage(), 1);
    EXPECT_TRUE(wizard.GetPreSysStatu());
}

// Twice: the ellipsoid page follows again (in the list of a system not based on another);
// the new-projection-page flag stays set.
TEST_F(NamePage, TheCheckBoxClickedTwiceLeadsToTheEllipsoidPageAgain) {
    Click(0, QStringLiteral("basedOnExisting"));
    wizard.SetNewPrjPage(false);
    Click(0, QStringLiteral("basedOnExisting"));
    EXPECT_FALSE(basedBox()->isChecked());
    EXPECT_EQ(page()->GetBasedOnExisting(), 0);
    EXPECT_EQ(wizard.PageNumbers(), kNotBasedPages);
    EXPECT_TRUE(wizard.HasPredefinedSystem());
    EXPECT_TRUE(wizard.GetNewPrjPage());
    type(QStringLiteral("Not based"));
    Next();
    EXPECT_EQ(ShownPage(), 2);
    EXPECT_FALSE(wizard.GetPreSysStatu());
}

// A host presets the name and the check box through the sheet before the wizard is shown.
TEST(NamePagePreset, TheSheetsPresetsAppearInTheControls) {
    ScriptedUi ui([](const QString& message) { ADD_FAILURE() << message.toStdString(); });
    TempDataFolder data;
    GeoWizard wizard(QStringLiteral("Coordinate System"));
    wizard.SetDllType(data.dllType());
    wizard.SetPreSysName(QStringLiteral("OSGB36 / British National Grid"),
                         QStringLiteral("BNG (site copy)"));
    wizard.SetPreSysStatu(true, true);
    ASSERT_EQ(wizard.EnsureInitialised(), 1);
    auto* page = wizard.GetWizardPage(0);
    EXPECT_EQ(page->findChild<QLineEdit*>(QStringLiteral("newSystemName"))->text(),
              QStringLiteral("BNG (site copy)"));
    EXPECT_TRUE(page->findChild<QCheckBox*>(QStringLiteral("basedOnExisting"))->isChecked());
}
