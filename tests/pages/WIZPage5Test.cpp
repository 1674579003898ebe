#include "PageTestSupport.h"

#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoFactories.h"
#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/PickerTree.h"
#include "dialogs/SelEllipsoidDlg.h"
#include "pages/WIZPage1.h"
#include "pages/WIZPage4.h"
#include "pages/WIZPage5.h"
#include "store/SqliteStaticData.h"
#include "util/COrvUnitCnv.h"
#include "util/GeobaseToGeostatic.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

#include <memory>

namespace {

const QString kCaption = QStringLiteral("Datum Transformation Name Problem");
const QString kExists = QStringLiteral("The name already exists, please enter a new name.");
const QString kPredefinedChanged =
    QStringLiteral("A pre-defined Datum Transformation can not be changed. Enter a new name to "
                   "save the parameters as user-defined Datum Transformation.");
const QString kUserDefinedChanged = QStringLiteral(
    "Changes are made to a user-defined Datum Transformation. Press Yes to save the changes and "
    "continue. Press No to enter a new name and save the parameters as a new Datum "
    "Transformation.");
const QString kGda94 = QStringLiteral("GDA94 to WGS 84 (G1762) (1)");
const QString kUserDtf = QStringLiteral("Survey fit 2023");

const char* const kEdits[15] = {"shiftX",        "shiftY",     "shiftZ",        "rotationX",
                                "rotationY",     "rotationZ",  "scale",         "rateShiftX",
                                "rateShiftY",    "rateShiftZ", "rateRotationX", "rateRotationY",
                                "rateRotationZ", "rateScale",  "epoch"};
const char* const kLabels[9] = {"shiftXLabel",    "shiftYLabel",    "shiftZLabel",
                                "scaleLabel",     "rotationXLabel", "rotationYLabel",
                                "rotationZLabel", "rateHeading",    "epochLabel"};

// What the static data holds of its datum transformation.
struct DtfState {
    QString name, methodName, description;
    int methodIndex = 0;
    DtfValues values{};
    int option = 0;
    double obsEpoch = 0, trailing2 = 0;
    bool operator==(const DtfState&) const = default;
};

class DtfParametersPage : public WizardPageTest {
protected:
    WIZPage5* page() { return static_cast<WIZPage5*>(Page(5)); }
    QLineEdit* edit(const char* name) { return Control<QLineEdit>(5, QLatin1String(name)); }
    QString text(const char* name) { return edit(name)->text(); }
    QLineEdit* nameEdit() { return edit("name"); }
    QComboBox* method() { return Control<QComboBox>(5, QStringLiteral("method")); }
    // The person picks a method of the list.
    void pickMethod(int index) {
        method()->setCurrentIndex(index);
        emit method()->activated(index);
        Flush();
    }
    QString groupTitle() { return Control<QGroupBox>(5, QStringLiteral("dtfGroup"))->title(); }
    int shownEdits() {
        int shown = 0;
        for (const char* name : kEdits)
            shown += edit(name)->isVisibleTo(Page(5)) ? 1 : 0;
        return shown;
    }
    int shownLabels() {
        int shown = 0;
        for (const char* name : kLabels)
            shown += Control<QLabel>(5, QLatin1String(name))->isVisibleTo(Page(5)) ? 1 : 0;
        return shown;
    }
    const SystemDraft& draft() {
        return dynamic_cast<SqliteStaticData&>(*wizard.GetGeoStatic()).Draft();
    }
    DtfState staticDtf() {
        const SystemDraft& d = draft();
        return {d.dtf.name,   d.dtfMethodName, d.dtf.description, d.dtf.methodIndex,
                d.dtf.values, d.dtf.option,    d.dtf.obsEpoch,    d.dtf.trailing2};
    }
    DtfValues storedValues(const QString& dtf) {
        QString methodName;
        DtfValues values{};
        std::array<double, 2> further{}, trailing{};
        unsigned char option = 0;
        EXPECT_TRUE(wizard.GetGeoDatabase()->GetDtfParameters(dtf, methodName, values, further,
                                                              option, trailing));
        return values;
    }

    // The sheet as the existing-system page leaves it for a system with this transformation
    // (page list of code 1, option "Use existing"), the static data as after the selection.
    void OpenExisting(const QString& dtf, const QString& local) {
        ASSERT_EQ(wizard.EnsureInitialised(), 1);
        wizard.ReSetPages(GeoWizard::PagesBasedOnSystem);
        wizard.SetDtfOption(0);
        wizard.SetSelDtfName(dtf);
        wizard.SetInitDtf(false);
        OrvGeoStaticDataBase& sd = *wizard.GetGeoStatic();
        QString text;
        sd.SelectLocalEllipsoid(local);
        sd.SetDtfName(dtf);
        sd.SetDtfDescription(wizard.GetGeoDatabase()->GetDtfDescription(text, dtf));
        OpenOn(5);
    }

    // A new transformation, not based on another, for the system named "system".
    void OpenNew(const QString& system) {
        ASSERT_EQ(wizard.EnsureInitialised(), 1);
        wizard.GetGeoStatic()->AssignSystemName(system);
        wizard.GetGeoStatic()->SelectLocalEllipsoid(QStringLiteral("International 1924"));
        OpenOn(3);
        Click(3, QStringLiteral("optionNew"));
        Next();
        ASSERT_EQ(ShownPage(), 5);
    }

    // A user-defined transformation stored with a copy of a pre-defined system.
    void StoreUserDtf() {
        ASSERT_EQ(wizard.EnsureInitialised(), 1);
        std::unique_ptr<OrvGeoStaticDataBase> sd(
            OrvGeoStaticDatabaseList::GetGeoStaticDataList().Create(data.dllType()));
        ASSERT_NE(sd, nullptr);
        ASSERT_TRUE(OrvGeoWizard::Utils::GeobaseToGeostatic(
            QStringLiteral("UK"), QStringLiteral("OSGB36 / British National Grid"), QString(),
            wizard.GetGeoDatabase(), sd.get()));
        sd->AssignSystemName(QStringLiteral("Survey grid"));
        sd->SetGroupName(QStringLiteral("Surveys"));
        sd->SetDtfName(kUserDtf);
        sd->SetDtfMethod(QStringLiteral("Position Vector (7 parameters)"), DTF_7_POSITION_VECTOR);
        sd->SetDtfDescription(QStringLiteral("Fitted on 14 control points"));
        sd->SetDtfParameters({446.5, -125.25, 542.0, 0.15, 0.25, 0.85, -20.5}, 0, 0.0, 0.0);
        ASSERT_TRUE(sd->SaveCoordSys()) << sd->LastError().toStdString();
    }
};

} // namespace

// A new transformation is named after the system and starts with the first method, "None",
// and every value 0: no value is shown. The group caption keeps its two blanks.
TEST_F(DtfParametersPage, ANewTransformationStartsEmptyWithTheSystemsName) {
    OpenNew(QStringLiteral("North Sea"));
    EXPECT_EQ(page()->Title(), QStringLiteral("Datum Transformation Parameters"));
    EXPECT_EQ(text("name"), QStringLiteral("North Sea-dtf"));
    EXPECT_EQ(method()->currentIndex(), 0);
    EXPECT_EQ(method()->currentText(), QStringLiteral("None"));
    EXPECT_EQ(method()->count(), 5);
    EXPECT_TRUE(method()->isEnabled());
    EXPECT_EQ(page()->GetValues(), DtfValues{});
    EXPECT_EQ(shownEdits(), 0);
    EXPECT_EQ(shownLabels(), 0);
    EXPECT_EQ(groupTitle(), QStringLiteral("Transformation from  WGS 84 to International 1924"));
    EXPECT_TRUE(wizard.GetDtfInit());
    EXPECT_EQ(page()->GetSnapshot().GetCount(), 0u); // no snapshot of a new one
}

// 7 or 15 values by method, each with its rotation sign on the shared unit converter; what
// was typed stays through a method change, and the values a method does not show are 0.
TEST_F(DtfParametersPage, TheMethodDecidesTheValuesShownAndTheRotationSign) {
    OpenNew(QStringLiteral("North Sea"));
    const COrvUnitCnv& cnv = StaticFormats::GetUnitCnv();

    pickMethod(DTF_15_POSITION_VECTOR);
    EXPECT_EQ(shownEdits(), 15);
    EXPECT_EQ(shownLabels(), 9);
    EXPECT_EQ(cnv.Factor(COrvUnitCnv::RotationCategory), 1.0);
    EXPECT_EQ(cnv.Symbol(COrvUnitCnv::RotationCategory), QStringLiteral("\""));
    EXPECT_EQ(cnv.Name(COrvUnitCnv::RotationCategory),
              QStringLiteral("Datum Transformation Rotation Units"));
    edit("shiftX")->setText(QStringLiteral("-87.5"));
    edit("rotationX")->setText(QStringLiteral("0.25"));
    edit("rateShiftX")->setText(QStringLiteral("0.0015"));
    edit("epoch")->setText(QStringLiteral("2010.5"));

    pickMethod(DTF_15_COORDINATE_FRAME);
    EXPECT_EQ(cnv.Factor(COrvUnitCnv::RotationCategory), -1.0);
    EXPECT_EQ(page()->GetValues()[3], 0.25); // held as typed under the sign +1 ...
    EXPECT_EQ(text("rotationX"), QStringLiteral("-0.250000")); // ... shown with the new sign
    EXPECT_EQ(text("shiftX"), QStringLiteral("-87.500000"));
    EXPECT_EQ(text("rateShiftX"), QStringLiteral("0.00150000"));
    EXPECT_EQ(text("epoch"), QStringLiteral("2010.500"));

    // index 1 after a fifteen-value method: the rates and the epoch are 0 and hidden
    pickMethod(DTF_7_POSITION_VECTOR);
    EXPECT_EQ(shownEdits(), 7);
    EXPECT_EQ(shownLabels(), 7);
    EXPECT_FALSE(Control<QLabel>(5, QStringLiteral("rateHeading"))->isVisibleTo(Page(5)));
    EXPECT_EQ(cnv.Factor(COrvUnitCnv::RotationCategory), 1.0);
    for (int i = 7; i < 15; ++i)
        EXPECT_EQ(page()->GetValues()[i], 0.0) << i;
    EXPECT_EQ(text("epoch"), QStringLiteral("0.000"));
    EXPECT_EQ(page()->GetValues()[0], -87.5);
    EXPECT_EQ(page()->GetMethodName(), QStringLiteral("Position Vector (7 parameters)"));
    EXPECT_EQ(page()->GetMethodIndex(), 1);

    pickMethod(DTF_7_COORDINATE_FRAME);
    EXPECT_EQ(cnv.Factor(COrvUnitCnv::RotationCategory), -1.0);
    pickMethod(DTF_NONE);
    EXPECT_EQ(shownEdits(), 0);
    EXPECT_EQ(page()->GetValues(), DtfValues{});
}

// A text that is no number is refused with a message; the page stays with the text kept, the
// method change does not happen, and nothing reaches the sheet or the static data.
TEST_F(DtfParametersPage, ATextThatIsNoNumberIsRefused) {
    OpenNew(QStringLiteral("North Sea"));
    pickMethod(DTF_7_POSITION_VECTOR);
    const DtfState before = staticDtf();
    edit("shiftY")->setText(QStringLiteral("12,5 m"));

    ui.ExpectMessage(QStringLiteral("Please enter a number."), QString(), MsgButtons::Ok,
                     MsgAnswer::Ok);
    Next();
    EXPECT_EQ(ShownPage(), 5);
    EXPECT_EQ(text("shiftY"), QStringLiteral("12,5 m"));
    EXPECT_EQ(wizard.focusWidget(), edit("shiftY"));
    EXPECT_EQ(staticDtf(), before);
    EXPECT_TRUE(wizard.GetSelDtfName().isEmpty());

    ui.ExpectMessage(QStringLiteral("Please enter a number."), QString(), MsgButtons::Ok,
                     MsgAnswer::Ok);
    pickMethod(DTF_15_POSITION_VECTOR);
    EXPECT_EQ(method()->currentIndex(), DTF_7_POSITION_VECTOR);
    EXPECT_EQ(shownEdits(), 7);
    EXPECT_EQ(text("shiftY"), QStringLiteral("12,5 m"));
}

// A system based on a stored one: the existing-system page leads here with the stored
// system's transformation, which goes on unchanged, exactly as stored.
TEST_F(DtfParametersPage, BasedOnAStoredSystemItsTransformationGoesOnUnchanged) {
    const QString osgb = QStringLiteral("OSGB36 to WGS 84 (6)");
    OpenOn(0);
    Control<QLineEdit>(0, QStringLiteral("newSystemName"))
        ->setText(QStringLiteral("OSGB36 / BNG (Thames site grid)"));
    Click(0, QStringLiteral("basedOnExisting"));
    Next();
    ASSERT_EQ(ShownPage(), 1);
    auto* existing = static_cast<WIZPage1*>(Page(1));
    const NameTreeModel& model = existing->Tree()->Model();
    const QModelIndex group = model.FindTopLevel(QStringLiteral("UK"));
    for (int row = 0; row < model.rowCount(group); ++row)
        if (model.NameAt(model.index(row, 0, group)) ==
            QStringLiteral("OSGB36 / British National Grid"))
            existing->Tree()->Select(model.index(row, 0, group));
    Flush();
    Next();
    ASSERT_EQ(ShownPage(), 5);
    EXPECT_EQ(text("name"), osgb);
    EXPECT_EQ(method()->currentText(), QStringLiteral("Position Vector (7 parameters)"));
    EXPECT_EQ(text("shiftX"), QStringLiteral("446.448000"));
    EXPECT_EQ(text("scale"), QStringLiteral("-20.489000"));
    EXPECT_EQ(shownEdits(), 7);
    EXPECT_EQ(groupTitle(), QStringLiteral("Transformation from  WGS 84 to Airy 1830"));
    Next();
    EXPECT_NE(ShownPage(), 5);
    EXPECT_EQ(staticDtf().name, osgb);
    EXPECT_EQ(staticDtf().methodIndex, DTF_7_POSITION_VECTOR);
    EXPECT_EQ(staticDtf().values, storedValues(osgb));
    EXPECT_EQ(staticDtf().option, DTF_OPTION_PUBLISHED_TO_WGS84);
}

// The values of a stored transformation in their formats: six decimals, eight for the rates,
// three for the epoch; coordinate frame rotations as published.
TEST_F(DtfParametersPage, AStoredTransformationIsShownInTheDisplayFormats) {
    OpenExisting(kGda94, QStringLiteral("GRS 1980"));
    EXPECT_EQ(text("name"), kGda94);
    EXPECT_EQ(method()->currentText(),
              QStringLiteral("Coordinate Frame time-dependent (15 parameters)"));
    EXPECT_EQ(groupTitle(), QStringLiteral("Transformation from  WGS 84 to GRS 1980"));
    EXPECT_EQ(shownEdits(), 15);
    const QStringList expected{"0.061550",    "-0.010870",  "-0.040190",   "-0.039492",
                               "-0.032722",   "-0.032898",  "-0.009994",   "0.00000000",
                               "0.00000000",  "0.00000000", "-0.00150379", "-0.00118346",
                               "-0.00120716", "0.00000000", "2020.000"};
    for (int i = 0; i < 15; ++i)
        EXPECT_EQ(text(kEdits[i]), expected[i]) << kEdits[i];
    QString description;
    wizard.GetGeoDatabase()->GetDtfDescription(description, kGda94);
    EXPECT_EQ(Control<QPlainTextEdit>(5, QStringLiteral("description"))->toPlainText(),
              description);
    EXPECT_EQ(page()->GetSnapshot().GetCount(), 8u);
    EXPECT_EQ(page()->GetSnapshot().GetMethodName(), page()->GetMethodName());
}

// Unchanged, a pre-defined transformation goes to the static data exactly as stored (the
// shown texts round it), with its option byte and default observation epoch.
TEST_F(DtfParametersPage, AnUnchangedPredefinedTransformationPasses) {
    OpenExisting(kGda94, QStringLiteral("GRS 1980"));
    Next();
    EXPECT_NE(ShownPage(), 5);
    const DtfState after = staticDtf();
    EXPECT_EQ(after.name, kGda94);
    EXPECT_EQ(after.methodIndex, DTF_15_COORDINATE_FRAME);
    EXPECT_EQ(after.values, storedValues(kGda94));
    EXPECT_EQ(after.option, DTF_OPTION_PUBLISHED_TO_WGS84);
    EXPECT_EQ(after.obsEpoch, 2020.0);
    EXPECT_EQ(after.trailing2, 0.0);
}

// A changed pre-defined transformation (values or method) is refused until it gets a name
// of its own; the refusal changes nothing.
TEST_F(DtfParametersPage, AChangedPredefinedTransformationNeedsANewName) {
    OpenExisting(kGda94, QStringLiteral("GRS 1980"));
    const DtfState before = staticDtf();
    Control<QPlainTextEdit>(5, QStringLiteral("description"))->setFocus();
    edit("shiftX")->setText(QStringLiteral("0.07"));
    ui.ExpectMessage(kPredefinedChanged, kCaption, MsgButtons::Ok, MsgAnswer::Ok);
    Next();
    EXPECT_EQ(ShownPage(), 5);
    EXPECT_EQ(wizard.focusWidget(), nameEdit());
    EXPECT_EQ(text("shiftX"), QStringLiteral("0.07"));
    EXPECT_EQ(staticDtf(), before);

    edit("shiftX")->setText(QStringLiteral("0.061550"));
    pickMethod(DTF_15_POSITION_VECTOR);
    ui.ExpectMessage(kPredefinedChanged, kCaption, MsgButtons::Ok, MsgAnswer::Ok);
    Next();
    EXPECT_EQ(ShownPage(), 5);
    EXPECT_EQ(staticDtf(), before);

    nameEdit()->setText(QStringLiteral("  GDA94 local fit  "));
    Next();
    EXPECT_NE(ShownPage(), 5);
    EXPECT_EQ(staticDtf().name, QStringLiteral("GDA94 local fit"));
    EXPECT_EQ(staticDtf().methodIndex, DTF_15_POSITION_VECTOR);
    EXPECT_EQ(staticDtf().values[0], 0.06155);
}

// A changed user-defined transformation keeps the page after Yes and after No; only No
// moves the focus to the name. Only its values count: a method change alone passes.
TEST_F(DtfParametersPage, AChangedUserDefinedTransformationKeepsThePageEitherWay) {
    StoreUserDtf();
    OpenExisting(kUserDtf, QStringLiteral("Airy 1830"));
    ASSERT_EQ(text("scale"), QStringLiteral("-20.500000"));
    const DtfState before = staticDtf();
    edit("scale")->setText(QStringLiteral("-20.4"));
    Control<QPlainTextEdit>(5, QStringLiteral("description"))->setFocus();

    ui.ExpectMessage(kUserDefinedChanged, kCaption, MsgButtons::YesNo, MsgAnswer::Yes);
    Next();
    EXPECT_EQ(ShownPage(), 5);
    EXPECT_EQ(wizard.focusWidget(), Control<QPlainTextEdit>(5, QStringLiteral("description")));
    EXPECT_EQ(staticDtf(), before);

    ui.ExpectMessage(kUserDefinedChanged, kCaption, MsgButtons::YesNo, MsgAnswer::No);
    Next();
    EXPECT_EQ(ShownPage(), 5);
    EXPECT_EQ(wizard.focusWidget(), nameEdit());
    EXPECT_EQ(staticDtf(), before);

    edit("scale")->setText(QStringLiteral("-20.500000"));
    pickMethod(DTF_7_COORDINATE_FRAME);
    Next();
    EXPECT_NE(ShownPage(), 5);
    EXPECT_EQ(staticDtf().name, kUserDtf);
    EXPECT_EQ(staticDtf().methodIndex, DTF_7_COORDINATE_FRAME);
}

// A new transformation may not take the name of any stored one; the name is trimmed before
// the test and stored trimmed.
TEST_F(DtfParametersPage, ANewTransformationNeedsANameNotStoredYet) {
    StoreUserDtf();
    OpenNew(QStringLiteral("North Sea"));
    const DtfState before = staticDtf();
    nameEdit()->setText(QStringLiteral("  ed50 TO wgs 84 (1) "));
    ui.ExpectMessage(kExists, kCaption, MsgButtons::Ok, MsgAnswer::Ok);
    Next();
    EXPECT_EQ(ShownPage(), 5);
    EXPECT_EQ(text("name"), QStringLiteral("  ed50 TO wgs 84 (1) ")); // as typed
    nameEdit()->setText(QStringLiteral(" survey FIT 2023"));
    ui.ExpectMessage(kExists, kCaption, MsgButtons::Ok, MsgAnswer::Ok);
    Next();
    EXPECT_EQ(ShownPage(), 5);
    EXPECT_EQ(staticDtf(), before);

    nameEdit()->setText(QStringLiteral("\tNorth Sea fit  "));
    Next();
    EXPECT_EQ(ShownPage(), 10);
    EXPECT_EQ(staticDtf().name, QStringLiteral("North Sea fit"));
}

// The fields are initialised once per choice: coming back without a new one keeps the edits,
// a selection on the selection page starts them again from the transformation chosen.
TEST_F(DtfParametersPage, TheFieldsAreInitialisedOncePerChoice) {
    OpenNew(QStringLiteral("North Sea"));
    pickMethod(DTF_7_POSITION_VECTOR);
    edit("shiftZ")->setText(QStringLiteral("-121.25"));
    nameEdit()->setText(QStringLiteral("Kept"));
    Back();
    ASSERT_EQ(ShownPage(), 3);
    Next();
    ASSERT_EQ(ShownPage(), 5);
    EXPECT_EQ(text("shiftZ"), QStringLiteral("-121.25"));
    EXPECT_EQ(page()->GetValues()[2], -121.25);
    EXPECT_EQ(text("name"), QStringLiteral("Kept"));
    EXPECT_EQ(method()->currentIndex(), DTF_7_POSITION_VECTOR);
}

// "Based on existing": the transformation chosen on the selection page, under the system's
// name; its option byte and trailing values go on with it.
TEST_F(DtfParametersPage, ANewTransformationBasedOnAnExistingOne) {
    ASSERT_EQ(wizard.EnsureInitialised(), 1);
    wizard.GetGeoStatic()->AssignSystemName(QStringLiteral("Perth Harbour"));
    wizard.SetDesElpName(QStringLiteral("GRS 1980"));
    wizard.GetGeoStatic()->SetDtfName(kGda94); // selected on the selection page
    wizard.ReSetPages(GeoWizard::PagesNewDtfFromOld);
    wizard.SetDtfOption(1);
    wizard.SetDtfFromOldDtf(true);
    OpenOn(4);
    ASSERT_EQ(static_cast<WIZPage4*>(Page(4))->GetSelName(), kGda94);
    Next();
    ASSERT_EQ(ShownPage(), 5);
    EXPECT_EQ(text("name"), QStringLiteral("Perth Harbour-dtf"));
    EXPECT_EQ(text("rotationX"), QStringLiteral("-0.039492"));
    EXPECT_EQ(text("epoch"), QStringLiteral("2020.000"));
    QString description;
    wizard.GetGeoDatabase()->GetDtfDescription(description, kGda94);
    EXPECT_EQ(Control<QPlainTextEdit>(5, QStringLiteral("description"))->toPlainText(),
              description);
    EXPECT_EQ(page()->GetSnapshot().GetCount(), 0u);

    Next();
    EXPECT_EQ(ShownPage(), 10);
    const DtfState after = staticDtf();
    EXPECT_EQ(after.name, QStringLiteral("Perth Harbour-dtf"));
    EXPECT_EQ(after.values, storedValues(kGda94));
    EXPECT_EQ(after.option, DTF_OPTION_PUBLISHED_TO_WGS84);
    EXPECT_EQ(after.obsEpoch, 2020.0);
}

// The walk of a new system through the ellipsoid page, the choice page and this page with
// a new fifteen-value coordinate frame transformation typed by hand: exactly the typed
// values reach the static data (rotations held in the position-vector sign), with the name
// (quotes, percent sign, non-ASCII letters kept) trimmed.
TEST_F(DtfParametersPage, WalkWithANewFifteenValueTransformationTypedByHand) {
    ASSERT_EQ(wizard.EnsureInitialised(), 1);
    wizard.GetGeoStatic()->AssignSystemName(QStringLiteral("Nordsee \"Ølfeld\" 100%"));
    OpenOn(2);
    ui.ExpectModal<SelEllipsoidDlg>([](SelEllipsoidDlg& picker) {
        picker.Tree()->Select(
            picker.Tree()->Model().FindTopLevel(QStringLiteral("International 1924")));
        picker.accept();
        return picker.result();
    });
    Click(2, QStringLiteral("selectLocal"));
    Next();
    ASSERT_EQ(ShownPage(), 3);
    Click(3, QStringLiteral("optionNew"));
    Next();
    ASSERT_EQ(ShownPage(), 5);
    EXPECT_EQ(text("name"), QStringLiteral("Nordsee \"Ølfeld\" 100%-dtf"));
    EXPECT_EQ(groupTitle(), QStringLiteral("Transformation from  WGS 84 to International 1924"));

    pickMethod(DTF_15_COORDINATE_FRAME);
    const char* typed[15] = {"-87.5",      "-98.25",   "-121.125", "0.123456", "-0.25",
                             "1.5",        "2.75",     "0.0012",   "-0.0025",  "0.003",
                             "0.00012345", "-0.00002", "0.00005",  "0.001",    "2010.5"};
    for (int i = 0; i < 15; ++i)
        edit(kEdits[i])->setText(QLatin1String(typed[i]));
    nameEdit()->setText(QStringLiteral("  Nordsee \"Ølfeld\" 100% – Anpassung "));
    Control<QPlainTextEdit>(5, QStringLiteral("description"))
        ->setPlainText(QStringLiteral("Fit on 12 platforms, 50% of them \"north\""));
    Next();
    EXPECT_EQ(ShownPage(), 10);

    const DtfState expected{QStringLiteral("Nordsee \"Ølfeld\" 100% – Anpassung"),
                            QStringLiteral("Coordinate Frame time-dependent (15 parameters)"),
                            QStringLiteral("Fit on 12 platforms, 50% of them \"north\""),
                            DTF_15_COORDINATE_FRAME,
                            {-87.5, -98.25, -121.125, -0.123456, 0.25, -1.5, 2.75, 0.0012, -0.0025,
                             0.003, -0.00012345, 0.00002, -0.00005, 0.001, 2010.5},
                            0,
                            0.0,
                            0.0};
    EXPECT_EQ(staticDtf(), expected);
    QString satellite, local;
    wizard.GetGeoStatic()->GetSatelliteEllipsoidName(satellite);
    wizard.GetGeoStatic()->GetLocalEllipsoidName(local);
    EXPECT_EQ(satellite, QStringLiteral("WGS 84"));
    EXPECT_EQ(local, QStringLiteral("International 1924"));

    EXPECT_EQ(wizard.GetDtfOption(), 1u);
    EXPECT_FALSE(wizard.GetDtfFromoldDtf());
    EXPECT_TRUE(wizard.GetDtfInit());
    EXPECT_TRUE(wizard.GetNewPrjPage());
    EXPECT_TRUE(wizard.GetSelDtfName().isEmpty());
    EXPECT_EQ(wizard.GetDesElpName(), QStringLiteral("International 1924"));
    EXPECT_EQ(wizard.PageNumbers(), (QList<int>{0, 2, 3, 5, 10, 6, 7, 8, 9, 13, 11, 12}));
}
