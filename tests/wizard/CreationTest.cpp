#include "api/OrvGeoFactories.h"
#include "support/TempDataFolder.h"
#include "wizard/GeoWizard.h"

#include <gtest/gtest.h>

namespace {

WIZPage0* page0(GeoWizard& wizard) {
    return static_cast<WIZPage0*>(wizard.GetWizardPage(0));
}

struct Texts : ::testing::Test {
    Texts() : wizard(QStringLiteral("Coordinate System")) { wizard.SetDllType(data.dllType()); }
    void open() { ASSERT_EQ(wizard.EnsureInitialised(), 1); }
    TempDataFolder data;
    GeoWizard wizard;
};

} // namespace

TEST(WizardState, InitialValues) {
    GeoWizard wizard(QStringLiteral("w"));
    EXPECT_TRUE(wizard.GetDllType().isEmpty());
    EXPECT_EQ(wizard.GetDefaultUnit(), QStringLiteral("Meters"));
    EXPECT_EQ(wizard.GetPrjOption(), 0xFFFFFFFFu);
    EXPECT_EQ(wizard.GetGroupsAllowed(), GEODB_USER);
    EXPECT_FALSE(wizard.GetPreSysStatu());
    EXPECT_FALSE(wizard.GetDtfFromoldDtf());
    EXPECT_FALSE(wizard.GetPrjFromoldPrj());
    EXPECT_FALSE(wizard.GetDtfInit() || wizard.GetPrjInit() || wizard.GetUnitInit() ||
                 wizard.GetInitGroup());
    EXPECT_FALSE(wizard.GetGeoModStatu() || wizard.GetPosModStatu() || wizard.GetNewPrjPage() ||
                 wizard.GetSelPrjUnitStatu() || wizard.GetSkipGeoid());
    EXPECT_TRUE(wizard.GetUnit().isEmpty());
    EXPECT_EQ(wizard.GetCreatedCoordSys(), nullptr);
    EXPECT_EQ(wizard.GetGeoDatabase(), nullptr);
    EXPECT_EQ(wizard.GetGeoStatic(), nullptr);
}

TEST(WizardState, PreDefinedNamesAreOnlyHandedOutWhenSet) {
    GeoWizard wizard(QStringLiteral("w"));
    QString out = QStringLiteral("kept");
    EXPECT_FALSE(wizard.GetPreGroupName(out));
    EXPECT_FALSE(wizard.GetPreSysName(out));
    EXPECT_EQ(out, QStringLiteral("kept"));

    wizard.SetPreGroupName(QStringLiteral("North Sea"));
    wizard.SetPreSysName(QStringLiteral("ED50 / UTM zone 31N"), QString());
    EXPECT_TRUE(wizard.GetPreGroupName(out));
    EXPECT_EQ(out, QStringLiteral("North Sea"));
    EXPECT_TRUE(wizard.GetPreSysName(out));
    EXPECT_EQ(out, QStringLiteral("ED50 / UTM zone 31N"));
    EXPECT_TRUE(page0(wizard)->GetNewSystemNameField().isEmpty());

    wizard.SetPreSysName(QStringLiteral("ED50 / UTM zone 31N"), QStringLiteral("Copy"));
    EXPECT_EQ(page0(wizard)->GetNewSystemNameField(), QStringLiteral("Copy"));
}

TEST(WizardState, BasedOnExistingReachesTheNamePageOnlyWhenAsked) {
    GeoWizard wizard(QStringLiteral("w"));
    wizard.SetPreSysStatu(true, false);
    EXPECT_TRUE(wizard.GetPreSysStatu());
    EXPECT_EQ(page0(wizard)->GetBasedOnExisting(), 0);
    wizard.SetPreSysStatu(true, true);
    EXPECT_EQ(page0(wizard)->GetBasedOnExisting(), 1);
    wizard.SetPreSysStatu(false, true);
    EXPECT_EQ(page0(wizard)->GetBasedOnExisting(), 0);
}

TEST(InfoTexts, IndentIsOneTabPerLevel) {
    EXPECT_EQ(GeoWizard::BuildIndentString(-3), QString());
    EXPECT_EQ(GeoWizard::BuildIndentString(0), QString());
    EXPECT_EQ(GeoWizard::BuildIndentString(2), QStringLiteral("\t\t"));
}

TEST(InfoTexts, PreDefinedSystemSummary) {
    GeoWizard wizard(QStringLiteral("w"));
    EXPECT_EQ(wizard.DumpPreSysInfoText(), QStringLiteral("Group: \r\nSystem: \r\n"));
    wizard.SetPreGroupName(QStringLiteral("North Sea"));
    wizard.SetPreSysName(QStringLiteral("ED50 / UTM zone 31N"), QString());
    EXPECT_EQ(wizard.DumpPreSysInfoText(),
              QStringLiteral("Group: North Sea\r\nSystem: ED50 / UTM zone 31N\r\n"));
}

TEST_F(Texts, EllipsoidTextLosesItsHeadingLine) {
    open();
    QStringList names;
    wizard.GetGeoDatabase()->GetEllipsoidNames(names);
    ASSERT_FALSE(names.isEmpty());
    const QString name = wizard.GetSrcElpName();
    QString full;
    wizard.GetGeoDatabase()->GetEllipsoidInfoText(full, name);
    const qsizetype lineFeed = full.indexOf(QLatin1Char('\n'));
    ASSERT_GT(lineFeed, 0) << "the library's text has a heading line";
    const QString text = wizard.DumpElpInfoText(name);
    EXPECT_EQ(text, full.mid(lineFeed + 1));
    EXPECT_FALSE(text.startsWith(QLatin1Char('\n')));
    EXPECT_TRUE(text.endsWith(full.right(2))); // the further lines keep their own ends
    EXPECT_EQ(wizard.DumpElpInfoText(QStringLiteral("no such ellipsoid")), QString());
}

TEST_F(Texts, UnitTextOfTheCurrentUnit) {
    open();
    wizard.GetGeoStatic()->SetUnitDefinition(0.3048, QStringLiteral("International foot"),
                                             UNIT_CATEGORY_LENGTH);
    EXPECT_EQ(wizard.DumpUnitInfoText(), QStringLiteral("\tMetric Conversion Factor:0.304800\r\n"
                                                        "\tDescription: International foot\r\n"));
    wizard.GetGeoStatic()->SetUnitDefinition(1.0, QString(), UNIT_CATEGORY_LENGTH);
    EXPECT_EQ(wizard.DumpUnitInfoText(),
              QStringLiteral("\tMetric Conversion Factor:1.000000\r\n\tDescription: \r\n"));
}

TEST(CreateCoordSys, ANullFactoryGivesNull) {
    GeoWizard wizard(QStringLiteral("w"));
    wizard.SetDllType(QStringLiteral("nosuch:x"));
    EXPECT_EQ(wizard.CreateCoordSys(QStringLiteral("g"), QStringLiteral("s"), {}, {}, {}, {}, {}),
              nullptr);
    EXPECT_EQ(wizard.GetCreatedCoordSys(), nullptr);
}

TEST_F(Texts, AFailedDefinitionIsNotRemembered) {
    EXPECT_EQ(wizard.CreateCoordSys(QStringLiteral("No group"), QStringLiteral("No system"), {}, {},
                                    {}, {}, {}),
              nullptr);
    EXPECT_EQ(wizard.GetCreatedCoordSys(), nullptr);
}

TEST_F(Texts, CreatedSystemsBelongToTheWizardUntilReplaced) {
    open();
    // a stored pre-defined system the engine can define
    QStringList groups;
    wizard.GetGeoDatabase()->GetGroupNames(groups, GEODB_SYSTEM);
    ASSERT_FALSE(groups.isEmpty());
    QString group, system;
    OrvGeoCoordSysBase* first = nullptr;
    for (const QString& g : groups) {
        QStringList systems;
        wizard.GetGeoDatabase()->GetSystemNames(systems, g);
        for (int i = 0; i < systems.size() && i < 5 && !first; ++i) {
            first = wizard.CreateCoordSys(g, systems[i], {}, {}, {}, {}, {});
            group = g;
            system = systems[i];
        }
        if (first)
            break;
    }
    ASSERT_NE(first, nullptr) << "no stored system could be defined";
    EXPECT_EQ(wizard.GetCreatedCoordSys(), first);

    GeoPoint point{52.0, 3.0, 0.0, 0.0};
    EXPECT_TRUE(first->Forward(point)) << first->LastError().toStdString();

    // a second success replaces the pointer; the first now belongs to the caller
    OrvGeoCoordSysBase* second = wizard.CreateCoordSys(group, system, {}, {}, {}, {}, {});
    ASSERT_NE(second, nullptr);
    EXPECT_NE(second, first);
    EXPECT_EQ(wizard.GetCreatedCoordSys(), second);
    delete first;

    // a failure forgets the remembered one, which is the caller's from then on
    EXPECT_EQ(wizard.CreateCoordSys(group, QStringLiteral("No system"), {}, {}, {}, {}, {}),
              nullptr);
    EXPECT_EQ(wizard.GetCreatedCoordSys(), nullptr);
    delete second;
}

TEST_F(Texts, TheWizardDestroysWhatItRemembers) {
    open();
    QStringList groups;
    wizard.GetGeoDatabase()->GetGroupNames(groups, GEODB_SYSTEM);
    ASSERT_FALSE(groups.isEmpty());
    QStringList systems;
    wizard.GetGeoDatabase()->GetSystemNames(systems, groups.first());
    ASSERT_FALSE(systems.isEmpty());
    // destroyed with the wizard at the end of the test (a leak or double free shows under
    // the sanitizers and valgrind)
    wizard.CreateCoordSys(groups.first(), systems.first(), {}, {}, {}, {}, {});
    SUCCEED();
}
