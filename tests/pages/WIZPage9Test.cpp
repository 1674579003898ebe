#include "PageTestSupport.h"
#include "UserSystems.h"

#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/CMaskEdit.h"
#include "pages/WIZPage9.h"
#include "resources/StringTable.h"
#include "store/SqliteStaticData.h"

#include <QComboBox>
#include <QLineEdit>

namespace {

class ParametersPage : public WizardPageTest {
protected:
    // The page as reached with a stored projection (option 0), or a new one based on it.
    void openOn(const QString& projection, unsigned option, bool basedOnOld = false) {
        wizard.SetPrePrjName(projection);
        wizard.SetPrjOption(option);
        wizard.SetPrjFromOldPrj(basedOnOld);
        wizard.SetUnit(QStringLiteral("Meters"));
        OpenOn(9);
    }
    WIZPage9* page() { return static_cast<WIZPage9*>(Page(9)); }
    CMaskEdit* row(int number) {
        return Control<CMaskEdit>(9, QStringLiteral("paramEdit%1").arg(number));
    }
    void choose(const QString& list, const QString& text) {
        auto* combo = Control<QComboBox>(9, list);
        const int index = combo->findText(text);
        ASSERT_GE(index, 0) << text.toStdString();
        combo->setCurrentIndex(index);
        emit combo->activated(index);
        Flush();
    }
    QString caption() { return LoadOrvString(StrId::PrjNameProblemCaption); }
};

} // namespace

// The zone list sets the central meridian (West negative), the hemisphere the false northing.
TEST_F(ParametersPage, UtmZonesAndHemispheresSetTheirRows) {
    openOn(QStringLiteral("UTM Zone-31N"), 1, true);
    ASSERT_TRUE(page()->IsUtmMode());
    EXPECT_EQ(page()->GetUsedRowCount(), 5);
    EXPECT_FALSE(row(1)->isEnabled());
    EXPECT_EQ(page()->GetZoneText(), QStringLiteral("Zone 31     (  3 E)"));
    EXPECT_EQ(Control<QComboBox>(9, QStringLiteral("zoneCombo"))->itemText(0),
              QStringLiteral("Zone  1     (177 W)"));
    const std::pair<const char*, double> zones[] = {{"Zone  1     (177 W)", -177},
                                                    {"Zone 30     (  3 W)", -3},
                                                    {"Zone 31     (  3 E)", 3},
                                                    {"Zone 60     (177 E)", 177}};
    for (const auto& [zone, meridian] : zones) {
        choose(QStringLiteral("zoneCombo"), QString::fromLatin1(zone));
        EXPECT_EQ(page()->GetCentralMeridian(), meridian) << zone;
        EXPECT_EQ(WzdUtility::ReadAngle(row(2)), meridian) << zone;
    }
    choose(QStringLiteral("hemisphereCombo"), QStringLiteral("Southern"));
    EXPECT_EQ(row(5)->text(), QStringLiteral("10000000.0000000"));
    choose(QStringLiteral("hemisphereCombo"), QStringLiteral("Northern"));
    EXPECT_EQ(row(5)->text(), QStringLiteral("0.0000000"));
}

// A new projection of the system N is proposed as "N-Prj"; a name that exists is refused.
TEST_F(ParametersPage, NewProjectionNameProposalAndClash) {
    wizard.EnsureInitialised();
    wizard.GetGeoStatic()->AssignSystemName(QStringLiteral("Harbour grid"));
    openOn(QString(), 1, false);
    EXPECT_EQ(Control<QLineEdit>(9, QStringLiteral("nameEdit"))->text(),
              QStringLiteral("Harbour grid-Prj"));

    Control<QLineEdit>(9, QStringLiteral("nameEdit"))->setText(QStringLiteral("rd new"));
    ui.ExpectMessage(LoadOrvString(StrId::NameExistsEnterNew), caption(), MsgButtons::Ok,
                     MsgAnswer::Ok);
    Next();
    EXPECT_EQ(ShownPage(), 9);
}

// The stored values come back when the page's first method is chosen again; a changed row of a
// pre-defined projection is refused.
TEST_F(ParametersPage, StoredValuesAndThePredefinedRule) {
    openOn(QStringLiteral("British National Grid"), 0);
    EXPECT_EQ(page()->GetMethodName(), QStringLiteral("Transverse Mercator"));
    EXPECT_EQ(row(4)->text(), QStringLiteral("400000.000000"));
    choose(QStringLiteral("methodCombo"), QStringLiteral("Mercator (variant A)"));
    EXPECT_NE(row(4)->text(), QStringLiteral("400000.000000"));
    choose(QStringLiteral("methodCombo"), QStringLiteral("Transverse Mercator"));
    EXPECT_EQ(row(4)->text(), QStringLiteral("400000.000000"));

    row(4)->setText(QStringLiteral("400001.000000"));
    ui.ExpectMessage(LoadOrvString(StrId::PrjPredefinedChanged), caption(), MsgButtons::Ok,
                     MsgAnswer::Ok);
    Next();
    EXPECT_EQ(ShownPage(), 9);
    row(4)->setText(QStringLiteral("400000.000000"));
    Next();
    EXPECT_EQ(ShownPage(), 13);
}

TEST_F(ParametersPage, AScaleFactorNotBiggerThanPointEightIsRefused) {
    openOn(QStringLiteral("British National Grid"), 1, true);
    row(3)->setText(QStringLiteral("0.8"));
    ui.ExpectMessage(QStringLiteral("The value of scale factor must be bigger than 0.8."));
    Next();
    EXPECT_EQ(ShownPage(), 9);
}

// A changed row of a user-defined projection asks whether to save the changes; the page stays
// whatever the answer, and No also puts the keyboard focus into the name.
TEST_F(ParametersPage, AChangedUserDefinedProjectionAsksAndStays) {
    StoreUserSystem(data.dllType(), QStringLiteral("Harbour surveys"),
                    QStringLiteral("Dover harbour grid"), [](OrvGeoStaticDataBase& sd) {
                        sd.SetProjectionName(QStringLiteral("Dover TM"),
                                             sd.GetPrjMethodId(QStringLiteral("Transverse "
                                                                              "Mercator")));
                    });
    openOn(QStringLiteral("Dover TM"), 0);
    ASSERT_EQ(row(4)->text(), QStringLiteral("400000.000000"));
    row(4)->setText(QStringLiteral("400100.000000"));
    row(4)->setFocus();
    const QString question = LoadOrvString(StrId::PrjUserDefinedChanged);
    ui.ExpectMessage(question, caption(), MsgButtons::YesNo, MsgAnswer::Yes);
    Next();
    EXPECT_EQ(ShownPage(), 9);
    EXPECT_EQ(Page(9)->focusWidget(), row(4));
    ui.ExpectMessage(question, caption(), MsgButtons::YesNo, MsgAnswer::No);
    Next();
    EXPECT_EQ(ShownPage(), 9);
    EXPECT_EQ(Page(9)->focusWidget(), Control<QLineEdit>(9, QStringLiteral("nameEdit")));
    EXPECT_EQ(row(4)->text(), QStringLiteral("400100.000000"));
}

// UTM is fixed to metres: choosing it for a system in feet says so, and Next refuses it.
TEST_F(ParametersPage, AMethodFixedAsMetersInAnotherUnitIsRefused) {
    openOn(QStringLiteral("British National Grid"), 1, true);
    wizard.SetUnit(QStringLiteral("US survey foot"));
    Control<QLineEdit>(9, QStringLiteral("nameEdit"))->setText(QStringLiteral("Feet grid"));
    const QString message = LoadOrvString(StrId::PrjUnitFixedSelectAnother);
    ui.ExpectMessage(message, QString(), MsgButtons::Ok, MsgAnswer::Ok);
    choose(QStringLiteral("methodCombo"), QStringLiteral("UTM"));
    EXPECT_TRUE(page()->IsUtmMode());
    ui.ExpectMessage(message, QString(), MsgButtons::Ok, MsgAnswer::Ok);
    Next();
    EXPECT_EQ(ShownPage(), 9);
    // the method that is free of units goes on in feet
    choose(QStringLiteral("methodCombo"), QStringLiteral("Transverse Mercator"));
    Next();
    EXPECT_EQ(ShownPage(), 13);
}

// A row that is no number is refused and the static data keeps its projection.
TEST_F(ParametersPage, ARowThatIsNoNumberIsRefused) {
    openOn(QStringLiteral("British National Grid"), 1, true);
    Control<QLineEdit>(9, QStringLiteral("nameEdit"))->setText(QStringLiteral("Typed grid"));
    row(4)->setText(QStringLiteral("four hundred"));
    ui.ExpectMessage(LoadOrvString(StrId::EnterNumber), QString(), MsgButtons::Ok, MsgAnswer::Ok);
    Next();
    EXPECT_EQ(ShownPage(), 9);
    EXPECT_NE(dynamic_cast<SqliteStaticData&>(*wizard.GetGeoStatic()).Draft().projection.name,
              QStringLiteral("Typed grid"));
}
