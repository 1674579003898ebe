#include "PageTestSupport.h"

#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/PickerTree.h"
#include "pages/WIZPage8.h"
#include "resources/StringTable.h"

#include <QTextEdit>

namespace {

class ProjectionPage : public WizardPageTest {
protected:
    void open(const QString& wizardUnit) {
        wizard.SetUnit(wizardUnit);
        OpenOn(8);
    }
    WIZPage8* page() { return static_cast<WIZPage8*>(Page(8)); }
    void select(const QString& method, const QString& projection) {
        const NameTreeModel& model = page()->Tree()->Model();
        const QModelIndex parent = model.FindTopLevel(method);
        QModelIndex item = parent;
        for (int row = 0; !projection.isEmpty() && row < model.rowCount(parent); ++row)
            if (model.NameAt(model.index(row, 0, parent)) == projection)
                item = model.index(row, 0, parent);
        ASSERT_TRUE(item.isValid());
        page()->Tree()->Select(item);
        Flush();
    }
    unsigned buttons() { return wizard.GetWizardButtons(); }
};

constexpr unsigned kBack = PropertySheet::PSWIZB_BACK;
constexpr unsigned kBackNext = PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT;

} // namespace

// Activation fills the tree with the first method selected and open, and both buttons on;
// a method turns Next off, a projection on and shows its information.
TEST_F(ProjectionPage, AMethodTurnsNextOffAProjectionOn) {
    open(QStringLiteral("Meters"));
    EXPECT_EQ(buttons(), kBackNext);
    EXPECT_FALSE(page()->Tree()->Current().parent().isValid());

    select(QStringLiteral("Transverse Mercator"), QString());
    EXPECT_EQ(buttons(), kBack);
    select(QStringLiteral("Transverse Mercator"), QStringLiteral("British National Grid"));
    EXPECT_EQ(buttons(), kBackNext);
    QString group, system;
    ASSERT_TRUE(wizard.GetGeoDatabase()->FindProjectionSystem(
        QStringLiteral("British National Grid"), group, system));
    EXPECT_EQ(Control<QTextEdit>(8, QStringLiteral("infoPane"))->toPlainText(),
              wizard.GetGeoDatabase()
                  ->GetSystemProjectionInfoText(group, system, 1)
                  .replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
}

// A unit that differs only in letter case passes without a question; the projection goes to
// the sheet and the static data as it is stored.
TEST_F(ProjectionPage, SameUnitIgnoringCaseAsksNothing) {
    open(QStringLiteral("meters"));
    select(QStringLiteral("Transverse Mercator"), QStringLiteral("British National Grid"));
    Next();
    EXPECT_EQ(ShownPage(), 9);
    EXPECT_EQ(wizard.GetPrePrjName(), QStringLiteral("British National Grid"));
    EXPECT_EQ(wizard.GetPrjMdName(), QStringLiteral("Transverse Mercator"));
}

// Declining the conversion keeps the page and leaves the sheet alone; accepting it names the
// projection "<name>_<unit>" and converts only the lengths (type 5) into the wizard's unit.
TEST_F(ProjectionPage, ConversionToTheWizardUnit) {
    open(QStringLiteral("US survey foot"));
    select(QStringLiteral("Transverse Mercator"), QStringLiteral("British National Grid"));
    const QString question = LoadOrvString(StrId::PrjUnitConvertQuestion);
    ui.ExpectMessage(question, QString(), MsgButtons::YesNo, MsgAnswer::No);
    Next();
    EXPECT_EQ(ShownPage(), 8);
    EXPECT_TRUE(wizard.GetPrePrjName().isEmpty());
    EXPECT_TRUE(wizard.GetPrjMdName().isEmpty());

    ui.ExpectMessage(question, QString(), MsgButtons::YesNo, MsgAnswer::Yes);
    Next();
    EXPECT_EQ(ShownPage(), 9);
    EXPECT_EQ(wizard.GetPrePrjName(), QStringLiteral("British National Grid_US survey foot"));

    // the library answers for the converted, not yet saved projection by that name
    PrjParamBlock stored, converted;
    QStringList storedValues, convertedValues, names;
    QList<unsigned> types;
    wizard.GetGeoDatabase()->GetProjectionParameters(QStringLiteral("British National Grid"),
                                                     stored, storedValues, names, types);
    wizard.GetGeoDatabase()->GetProjectionParameters(
        QStringLiteral("British National Grid_US survey foot"), converted, convertedValues, names,
        types);
    const double foot = 1200.0 / 3937.0;
    for (int i = 0; i < types.size(); ++i) {
        if (types[i] == PRM_LENGTH)
            EXPECT_NEAR(converted.values[i], stored.values[i] / foot, 1e-6) << i;
        else
            EXPECT_EQ(converted.values[i], stored.values[i]) << i;
    }
}

// A method fixed to metres refuses another wizard unit and sends the person back.
TEST_F(ProjectionPage, UnitFixedAsMetersSendsThePersonBack) {
    QStringList methods;
    QString fixedMethod, projection;
    open(QStringLiteral("US survey foot"));
    wizard.GetGeoStatic()->GetPrjMethodNames(methods);
    for (const QString& method : std::as_const(methods)) {
        const int id = wizard.GetGeoStatic()->GetPrjMethodId(method);
        QStringList projections;
        wizard.GetGeoDatabase()->GetProjectionNamesOfMethod(projections, method);
        if (!wizard.GetGeoStatic()->IsMethodUnitFree(id) && !projections.isEmpty()) {
            fixedMethod = method;
            projection = projections.first();
            break;
        }
    }
    if (fixedMethod.isEmpty())
        GTEST_SKIP() << "no method with a unit fixed as metres has a stored projection";
    select(fixedMethod, projection);
    ui.ExpectMessage(LoadOrvString(StrId::PrjUnitFixedGoBack), QString(), MsgButtons::Ok,
                     MsgAnswer::Ok);
    Next();
    EXPECT_EQ(ShownPage(), 8);
}
