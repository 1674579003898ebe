// The ellipsoid and datum transformation boxes: what a method shows and its rotation sign,
// choosing a stored transformation or creating a new one, and the two ellipsoid questions
// that differ on purpose.
#include "EditorTestSupport.h"

#include "dialogs/CreateNewDttrfmDlg.h"
#include "dialogs/DatumTransfmSelDlg.h"
#include "dialogs/SelEllipsoidDlg.h"
#include "resources/StringTable.h"
#include "util/COrvUnitCnv.h"

#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

namespace {

const char* const kValueEdits[] = {"shiftXEdit",        "shiftYEdit",        "shiftZEdit",
                                   "rotationXEdit",     "rotationYEdit",     "rotationZEdit",
                                   "scaleEdit",         "shiftXRateEdit",    "shiftYRateEdit",
                                   "shiftZRateEdit",    "rotationXRateEdit", "rotationYRateEdit",
                                   "rotationZRateEdit", "scaleRateEdit",     "epochEdit"};

const QString kPv7 = QStringLiteral("Position Vector (7 parameters)");
const QString kCf7 = QStringLiteral("Coordinate Frame (7 parameters)");
const QString kPv15 = QStringLiteral("Position Vector time-dependent (15 parameters)");
const QString kCf15 = QStringLiteral("Coordinate Frame time-dependent (15 parameters)");

double RotationSign() {
    return StaticFormats::GetUnitCnv().Factor(COrvUnitCnv::RotationCategory);
}

class DtfSection : public EditorTest {
protected:
    int ShownValues() {
        int shown = 0;
        for (const char* name : kValueEdits)
            shown += Control<QLineEdit>(QString::fromLatin1(name))->isVisible() ? 1 : 0;
        return shown;
    }
    void ExpectEllipsoidQuestion(MsgAnswer answer) {
        ui.ExpectMessage(LoadOrvString(StrId::EllipsoidChangedQuestion), QString(),
                         MsgButtons::YesNo, answer);
    }
    void ExpectEllipsoidPicked(const QString& name) {
        ui.ExpectModal<SelEllipsoidDlg>([name](SelEllipsoidDlg& d) { return Pick(d, name); });
    }
    QString GroupTitle() { return Control<QGroupBox>(QStringLiteral("dtfGroup"))->title(); }
};

} // namespace

// Method 0 shows nothing and zeroes every value; seven-value methods show seven, the
// time-dependent ones all fifteen with the nine labels.
TEST_F(DtfSection, EachMethodShowsItsValues) {
    StoreRig();
    Open(kGroup, kRig);
    EXPECT_EQ(ShownValues(), 15);
    EXPECT_TRUE(Control<QLabel>(QStringLiteral("epochLabel"))->isVisible());

    Choose(QStringLiteral("dtfMethodCombo"), QStringLiteral("None"));
    EXPECT_EQ(ShownValues(), 0);
    EXPECT_FALSE(Control<QLabel>(QStringLiteral("shiftXLabel"))->isVisible());
    EXPECT_FALSE(Control<QLabel>(QStringLiteral("rateLabel"))->isVisible());
    for (const char* name : kValueEdits)
        EXPECT_EQ(Text(QString::fromLatin1(name)).toDouble(), 0.0) << name;

    Choose(QStringLiteral("dtfMethodCombo"), kPv7);
    EXPECT_EQ(ShownValues(), 7);
    EXPECT_TRUE(Control<QLabel>(QStringLiteral("scaleLabel"))->isVisible());
    EXPECT_FALSE(Control<QLabel>(QStringLiteral("rateLabel"))->isVisible());
    EXPECT_EQ(Text(QStringLiteral("shiftXEdit")), QStringLiteral("0.000000"));
}

// From a fifteen-value method to a seven-value one the rates and the epoch become zero; the
// seven parameters stay, also when typed just before.
TEST_F(DtfSection, ASevenValueMethodZeroesTheRatesAndTheEpoch) {
    StoreRig();
    Open(kGroup, kRig);
    SetText(QStringLiteral("shiftZEdit"), QStringLiteral("-120.5"));
    Choose(QStringLiteral("dtfMethodCombo"), kPv7);
    EXPECT_EQ(Text(QStringLiteral("shiftXEdit")), QStringLiteral("-87.500000"));
    EXPECT_EQ(Text(QStringLiteral("shiftZEdit")), QStringLiteral("-120.500000"));
    EXPECT_EQ(Text(QStringLiteral("shiftYRateEdit")), QStringLiteral("0.00000000"));
    EXPECT_EQ(Text(QStringLiteral("epochEdit")), QStringLiteral("0.000"));
    Choose(QStringLiteral("dtfMethodCombo"), kPv15);
    EXPECT_EQ(ShownValues(), 15);
    EXPECT_EQ(Text(QStringLiteral("shiftYRateEdit")), QStringLiteral("0.00000000"));
}

// Coordinate frame methods turn the shared rotation unit to -1, position vector ones to +1:
// the rotations held in the position-vector sign are shown in the method's own.
TEST_F(DtfSection, TheMethodSetsTheRotationSign) {
    StoreHarbour();
    Open(kGroup, kHarbour);
    EXPECT_EQ(RotationSign(), -1.0);
    EXPECT_EQ(Text(QStringLiteral("rotationXEdit")), QStringLiteral("-0.500000"));
    const std::pair<QString, double> methods[] = {
        {kPv7, 1.0}, {kCf15, -1.0}, {kPv15, 1.0}, {kCf7, -1.0}};
    for (const auto& [method, sign] : methods) {
        Choose(QStringLiteral("dtfMethodCombo"), method);
        EXPECT_EQ(RotationSign(), sign) << method.toStdString();
        EXPECT_EQ(Text(QStringLiteral("rotationXEdit")).toDouble(), 0.5 * sign)
            << method.toStdString();
    }
    EXPECT_EQ(StaticFormats::GetUnitCnv().Name(COrvUnitCnv::RotationCategory),
              LoadOrvString(StrId::RotationUnitName));
    EXPECT_EQ(StaticFormats::GetUnitCnv().Symbol(COrvUnitCnv::RotationCategory),
              QStringLiteral("\""));
}

// Choosing the method already chosen changes nothing, not even a value just typed.
TEST_F(DtfSection, TheCurrentMethodAgainDoesNothing) {
    StoreHarbour();
    Open(kGroup, kHarbour);
    SetText(QStringLiteral("shiftXEdit"), QStringLiteral("12.5"));
    Choose(QStringLiteral("dtfMethodCombo"), kCf7);
    EXPECT_EQ(Text(QStringLiteral("shiftXEdit")), QStringLiteral("12.5"));
    EXPECT_EQ(RotationSign(), -1.0);
}

// "Select ..." of the datum transformation: a pre-defined one keeps its name and its values
// cannot be typed over, its methods narrowed to its family; a user one can be edited.
TEST_F(DtfSection, AStoredTransformationIsLoadedAsItIs) {
    StoreHarbour();
    StoreRig();
    Open(kGroup, kHarbour);
    ui.ExpectModal<DatumTransfmSelDlg>([](DatumTransfmSelDlg& d) {
        EXPECT_EQ(d.GetSatelliteEllipsoidName(), QStringLiteral("WGS 84"));
        EXPECT_EQ(d.GetLocalEllipsoidName(), QStringLiteral("International 1924"));
        return Pick(d, QStringLiteral("ED50 to WGS 84 (1)"));
    });
    Click(QStringLiteral("dtfSelectButton"));
    EXPECT_EQ(Text(QStringLiteral("dtfNameEdit")), QStringLiteral("ED50 to WGS 84 (1)"));
    EXPECT_EQ(Text(QStringLiteral("shiftXEdit")), QStringLiteral("-87.000000"));
    EXPECT_FALSE(Control<QLineEdit>(QStringLiteral("shiftXEdit"))->isEnabled());
    EXPECT_FALSE(Control<QPlainTextEdit>(QStringLiteral("descriptionEdit"))->isEnabled());
    EXPECT_EQ(Control<QComboBox>(QStringLiteral("dtfMethodCombo"))->count(), 2);
    EXPECT_EQ(RotationSign(), 1.0);

    ui.ExpectModal<DatumTransfmSelDlg>(
        [](DatumTransfmSelDlg& d) { return Pick(d, QStringLiteral("Rig 15 dtf")); });
    Click(QStringLiteral("dtfSelectButton"));
    EXPECT_EQ(Text(QStringLiteral("dtfNameEdit")), QStringLiteral("Rig 15 dtf"));
    EXPECT_TRUE(Control<QLineEdit>(QStringLiteral("epochEdit"))->isEnabled());
    EXPECT_EQ(Text(QStringLiteral("epochEdit")), QStringLiteral("2010.000"));
    EXPECT_EQ(Control<QComboBox>(QStringLiteral("dtfMethodCombo"))->count(), 5);
    EXPECT_EQ(Control<QComboBox>(QStringLiteral("dtfMethodCombo"))->currentText(), kPv15);

    // Cancel changes nothing
    ui.ExpectModal<DatumTransfmSelDlg>([](DatumTransfmSelDlg& d) {
        d.reject();
        return d.result();
    });
    Click(QStringLiteral("dtfSelectButton"));
    EXPECT_EQ(Text(QStringLiteral("dtfNameEdit")), QStringLiteral("Rig 15 dtf"));
}

// "New": a new name, based on a stored transformation when one is chosen in the naming
// dialog; the new one is no longer compared with what is stored.
TEST_F(DtfSection, ANewTransformationTakesTheNewName) {
    StoreHarbour();
    Open(kGroup, kHarbour);
    ui.ExpectModal<CreateNewDttrfmDlg>([this](CreateNewDttrfmDlg& d) {
        d.findChild<QLineEdit*>(QStringLiteral("nameEdit"))->setText(QStringLiteral("Quay dtf"));
        ui.ExpectModal<DatumTransfmSelDlg>(
            [](DatumTransfmSelDlg& p) { return Pick(p, QStringLiteral("ED50 to WGS 84 (1)")); });
        d.findChild<QPushButton*>(QStringLiteral("selectButton"))->click();
        d.accept();
        return d.result();
    });
    Click(QStringLiteral("dtfNewButton"));
    AdvCoordSysDlgProbe probe(*editor);
    EXPECT_FALSE(probe.DtfIsStored());
    EXPECT_EQ(Text(QStringLiteral("dtfNameEdit")), QStringLiteral("Quay dtf"));
    EXPECT_EQ(Text(QStringLiteral("shiftXEdit")), QStringLiteral("-87.000000"));
    EXPECT_TRUE(Control<QLineEdit>(QStringLiteral("shiftXEdit"))->isEnabled());
    EXPECT_EQ(Control<QComboBox>(QStringLiteral("dtfMethodCombo"))->count(), 5);
    EXPECT_EQ(Control<QComboBox>(QStringLiteral("dtfMethodCombo"))->currentText(), kPv7);
    EXPECT_TRUE(Control<QPushButton>(QStringLiteral("localSelectButton"))->isEnabled());

    // not based on another: the values stay, the name is the new one
    ui.ExpectModal<CreateNewDttrfmDlg>([](CreateNewDttrfmDlg& d) {
        d.findChild<QLineEdit*>(QStringLiteral("nameEdit"))->setText(QStringLiteral("Quay 2"));
        d.accept();
        return d.result();
    });
    SetText(QStringLiteral("shiftYEdit"), QStringLiteral("-97.5"));
    Click(QStringLiteral("dtfNewButton"));
    EXPECT_EQ(Text(QStringLiteral("dtfNameEdit")), QStringLiteral("Quay 2"));
    EXPECT_EQ(Text(QStringLiteral("shiftXEdit")), QStringLiteral("-87.000000"));
    EXPECT_EQ(Text(QStringLiteral("shiftYEdit")), QStringLiteral("-97.500000"));
}

// The local ellipsoid question is asked even for the same ellipsoid; No keeps everything.
TEST_F(DtfSection, NoToTheLocalEllipsoidQuestionKeepsEverything) {
    StoreHarbour();
    Open(kGroup, kHarbour);
    ExpectEllipsoidPicked(QStringLiteral("Airy 1830"));
    ExpectEllipsoidQuestion(MsgAnswer::No);
    Click(QStringLiteral("localSelectButton"));
    EXPECT_EQ(Text(QStringLiteral("localNameEdit")), QStringLiteral("International 1924"));
    EXPECT_EQ(Text(QStringLiteral("dtfNameEdit")), QStringLiteral("Harbour dtf"));
    EXPECT_EQ(Text(QStringLiteral("shiftXEdit")), QStringLiteral("-81.500000"));
    EXPECT_EQ(GroupTitle(), QStringLiteral("Transformation from  WGS 84 to International 1924"));
}

// Yes with another local ellipsoid zeroes the values and renames the transformation after
// the system and the box title; Yes with the same one keeps the values and still renames.
TEST_F(DtfSection, YesToTheLocalEllipsoidQuestionRenamesTheTransformation) {
    StoreHarbour();
    Open(kGroup, kHarbour);
    ExpectEllipsoidPicked(QStringLiteral("International 1924"));
    ExpectEllipsoidQuestion(MsgAnswer::Yes);
    Click(QStringLiteral("localSelectButton"));
    EXPECT_EQ(Text(QStringLiteral("shiftXEdit")), QStringLiteral("-81.500000"));
    EXPECT_EQ(Text(QStringLiteral("dtfNameEdit")),
              QStringLiteral("Harbour-Transformation from  WGS 84 to International 1924"));

    ExpectEllipsoidPicked(QStringLiteral("Airy 1830"));
    ExpectEllipsoidQuestion(MsgAnswer::Yes);
    Click(QStringLiteral("localSelectButton"));
    EXPECT_EQ(Text(QStringLiteral("localNameEdit")), QStringLiteral("Airy 1830"));
    EXPECT_EQ(editor->GetTargetEllipsoid(), QStringLiteral("Airy 1830"));
    EXPECT_EQ(GroupTitle(), QStringLiteral("Transformation from  WGS 84 to Airy 1830"));
    EXPECT_EQ(Text(QStringLiteral("dtfNameEdit")),
              QStringLiteral("Harbour-Transformation from  WGS 84 to Airy 1830"));
    for (const char* name : {"shiftXEdit", "rotationZEdit", "scaleEdit"})
        EXPECT_EQ(Text(QString::fromLatin1(name)), QStringLiteral("0.000000")) << name;
    EXPECT_TRUE(Control<QLineEdit>(QStringLiteral("shiftXEdit"))->isEnabled());
}

// The satellite ellipsoid asks only when it changes; the same one renames without a word.
TEST_F(DtfSection, TheSatelliteEllipsoidAsksOnlyWhenItChanges) {
    StoreHarbour();
    Open(kGroup, kHarbour);
    ExpectEllipsoidPicked(QStringLiteral("WGS 84"));
    Click(QStringLiteral("satSelectButton"));
    EXPECT_EQ(Text(QStringLiteral("dtfNameEdit")),
              QStringLiteral("Harbour-Transformation from  WGS 84 to International 1924"));
    EXPECT_EQ(Text(QStringLiteral("shiftXEdit")), QStringLiteral("-81.500000"));

    ExpectEllipsoidPicked(QStringLiteral("GRS 1980"));
    ExpectEllipsoidQuestion(MsgAnswer::No);
    Click(QStringLiteral("satSelectButton"));
    EXPECT_EQ(Text(QStringLiteral("satNameEdit")), QStringLiteral("WGS 84"));
    EXPECT_EQ(Text(QStringLiteral("shiftXEdit")), QStringLiteral("-81.500000"));

    ExpectEllipsoidPicked(QStringLiteral("GRS 1980"));
    ExpectEllipsoidQuestion(MsgAnswer::Yes);
    Click(QStringLiteral("satSelectButton"));
    EXPECT_EQ(editor->GetSrcEllipsoid(), QStringLiteral("GRS 1980"));
    EXPECT_EQ(Text(QStringLiteral("shiftXEdit")), QStringLiteral("0.000000"));
    EXPECT_EQ(GroupTitle(), QStringLiteral("Transformation from  GRS 1980 to International 1924"));
}
