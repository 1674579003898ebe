// The projection and unit boxes: the method and its rows, the UTM zone and hemisphere, a
// projection or a unit chosen or created, and the three callers of the length conversion with
// their directions (selecting a unit renames without converting, on purpose).
#include "EditorTestSupport.h"

#include "dialogs/CMaskEdit.h"
#include "dialogs/CreateNewPrjDlg.h"
#include "dialogs/NewUnitDlg.h"
#include "dialogs/PrjSelectDlg.h"
#include "dialogs/UnitSelectionDlg.h"
#include "resources/StringTable.h"
#include "wizard/WzdUtility.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

namespace {

class PrjSection : public EditorTest {
protected:
    // A Transverse Mercator system like the harbour one with its own projection name and unit.
    void StoreTm(const QString& system, const QString& projection, const QString& unit,
                 double falseEasting) {
        StoreHarbour(system);
        Change(system, [&](OrvGeoStaticDataBase& s) {
            s.SetUnitName(unit);
            s.SetProjectionName(projection, 2);
            PrjParamBlock block;
            block.count = 5;
            block.values = {52.5, 4.25, 0.9999, falseEasting, 463000.0};
            s.SetProjectionParameters(
                block,
                {QStringLiteral("52°30'00.0000000\"N"), QStringLiteral("004°15'00.0000000\"E"),
                 QStringLiteral("0.999900"), QString::asprintf("%f", falseEasting),
                 QStringLiteral("463000.000000")},
                {QStringLiteral("Latitude of natural origin"),
                 QStringLiteral("Longitude of natural origin"),
                 QStringLiteral("Scale factor at natural origin"), QStringLiteral("False easting"),
                 QStringLiteral("False northing")},
                {PRM_LATITUDE, PRM_LONGITUDE, PRM_SCALE, PRM_LENGTH, PRM_LENGTH});
        });
    }
    QString Row(int number) { return Text(QStringLiteral("paramEdit%1").arg(number)); }
    double RowAngle(int number) {
        return WzdUtility::ReadAngle(Control<CMaskEdit>(QStringLiteral("paramEdit%1").arg(number)));
    }
    QString UnitLine() {
        return Control<QPlainTextEdit>(QStringLiteral("unitDescription"))->toPlainText();
    }
    void ExpectUnitPicked(const QString& unit) {
        ui.ExpectModal<UnitSelectionDlg>([unit](UnitSelectionDlg& d) { return Pick(d, unit); });
    }
    void ExpectProjectionPicked(const QString& projection, const QString& method) {
        ui.ExpectModal<PrjSelectDlg>(
            [projection, method](PrjSelectDlg& d) { return Pick(d, projection, method); });
    }
    void ExpectNewUnit(const QString& name, const QString& factor) {
        ui.ExpectModal<NewUnitDlg>([name, factor](NewUnitDlg& d) {
            d.findChild<QLineEdit*>(QStringLiteral("nameEdit"))->setText(name);
            d.findChild<QLineEdit*>(QStringLiteral("factorEdit"))->setText(factor);
            d.findChild<QPlainTextEdit*>(QStringLiteral("suffixEdit"))
                ->setPlainText(QStringLiteral("u"));
            d.accept();
            return d.result();
        });
    }
    void ExpectMessage(int id, MsgButtons buttons, MsgAnswer answer) {
        ui.ExpectMessage(LoadOrvString(id), QString(), buttons, answer);
    }
};

} // namespace

// Another method lays out its own rows with their defaults; the stored method again gives the
// stored values back.
TEST_F(PrjSection, AnotherMethodHasItsDefaultsTheStoredOneItsValues) {
    StoreHarbour();
    Open(kGroup, kHarbour);
    EXPECT_EQ(Row(4), QStringLiteral("155000.000000"));
    Choose(QStringLiteral("prjMethodCombo"), QStringLiteral("Mercator (variant A)"));
    EXPECT_EQ(Control<QLabel>(QStringLiteral("paramLabel4"))->text(),
              QStringLiteral("False easting:"));
    EXPECT_EQ(Row(4), QStringLiteral("0.000000"));
    Choose(QStringLiteral("prjMethodCombo"), QStringLiteral("Transverse Mercator"));
    EXPECT_EQ(Row(4), QStringLiteral("155000.000000"));
    EXPECT_EQ(RowAngle(1), 52.5);
    EXPECT_EQ(AdvCoordSysDlgProbe(*editor).PrjMethodId(), 2);
}

// UTM chosen for a projection that is not a UTM one starts from the stored zone 30 N; the
// rows are then changed by the two lists only.
TEST_F(PrjSection, UtmShowsItsListsInPlaceOfTwoRows) {
    StoreHarbour();
    Open(kGroup, kHarbour);
    Choose(QStringLiteral("prjMethodCombo"), QStringLiteral("UTM"));
    AdvCoordSysDlgProbe probe(*editor);
    EXPECT_TRUE(probe.IsUtmMode());
    EXPECT_TRUE(Control<QComboBox>(QStringLiteral("utmZoneCombo"))->isVisible());
    EXPECT_EQ(Control<QComboBox>(QStringLiteral("utmZoneCombo"))->currentText(),
              QStringLiteral("Zone 30     (  3 W)"));
    EXPECT_FALSE(Control<QWidget>(QStringLiteral("paramEdit6"))->isVisible());
    EXPECT_FALSE(Control<QWidget>(QStringLiteral("paramEdit1"))->isEnabled());
    Choose(QStringLiteral("prjMethodCombo"), QStringLiteral("Transverse Mercator"));
    EXPECT_FALSE(probe.IsUtmMode());
    EXPECT_FALSE(Control<QComboBox>(QStringLiteral("utmZoneCombo"))->isVisible());
    EXPECT_TRUE(Control<QWidget>(QStringLiteral("paramEdit1"))->isEnabled());
}

// A zone's letter gives the sign of its central meridian; the hemisphere the false northing.
TEST_F(PrjSection, ZoneAndHemisphereWriteTheirRows) {
    StoreRig();
    Open(kGroup, kRig);
    AdvCoordSysDlgProbe probe(*editor);
    const std::pair<const char*, double> zones[] = {{"Zone 30     (  3 W)", -3.0},
                                                    {"Zone 31     (  3 E)", 3.0},
                                                    {"Zone  1     (177 W)", -177.0},
                                                    {"Zone 60     (177 E)", 177.0}};
    for (const auto& [zone, meridian] : zones) {
        Choose(QStringLiteral("utmZoneCombo"), QString::fromLatin1(zone));
        EXPECT_EQ(probe.CentralMeridian(), meridian) << zone;
        EXPECT_EQ(RowAngle(2), meridian) << zone;
    }
    Choose(QStringLiteral("hemisphereCombo"), QStringLiteral("Southern"));
    EXPECT_EQ(Row(5), QStringLiteral("10000000.0000000"));
    EXPECT_EQ(probe.FalseNorthing(), 10000000.0);
    Choose(QStringLiteral("hemisphereCombo"), QStringLiteral("Northern"));
    EXPECT_EQ(Row(5), QStringLiteral("0.0000000"));
}

// A projection whose unit is fixed as metres takes no other unit: selecting one, creating one
// or choosing a projection in another unit is refused, and nothing changes.
TEST_F(PrjSection, AMetreFixedProjectionRefusesAnotherUnit) {
    StoreRig();
    Open(kGroup, kRig);
    ExpectUnitPicked(QStringLiteral("Meters"));
    ExpectMessage(StrId::UnitSelectFixedMeter, MsgButtons::Ok, MsgAnswer::Ok);
    Click(QStringLiteral("unitSelectButton"));
    EXPECT_EQ(Text(QStringLiteral("unitNameEdit")), QStringLiteral("US survey foot"));

    ExpectNewUnit(QStringLiteral("Rig foot"), QStringLiteral("0.3048"));
    ExpectMessage(StrId::UnitCreateFixedMeter, MsgButtons::Ok, MsgAnswer::Ok);
    Click(QStringLiteral("unitNewButton"));
    EXPECT_EQ(Text(QStringLiteral("unitNameEdit")), QStringLiteral("US survey foot"));

    ExpectProjectionPicked(QStringLiteral("UTM Zone-32N"), QStringLiteral("UTM"));
    ExpectMessage(StrId::PrjSelectFixedMeter, MsgButtons::Ok, MsgAnswer::Ok);
    Click(QStringLiteral("prjSelectButton"));
    EXPECT_EQ(Text(QStringLiteral("prjNameEdit")), QStringLiteral("Rig 15 UTM ft"));
    EXPECT_EQ(Control<QComboBox>(QStringLiteral("utmZoneCombo"))->currentText(),
              QStringLiteral("Zone 31     (  3 E)"));
}

// Selecting another unit renames the projection and takes the unit's factor, but converts
// nothing; the line under the unit still describes the one selected before.
TEST_F(PrjSection, SelectingAUnitRenamesWithoutConverting) {
    StoreTm(QStringLiteral("Quay"), QStringLiteral("ABC_Meters"), QStringLiteral("Meters"),
            155000.0);
    Open(kGroup, QStringLiteral("Quay"));
    const QString lineBefore = UnitLine();

    ExpectUnitPicked(QStringLiteral("foot"));
    ExpectMessage(StrId::UnitSelectConvertQuestion, MsgButtons::YesNo, MsgAnswer::No);
    Click(QStringLiteral("unitSelectButton"));
    EXPECT_EQ(Text(QStringLiteral("unitNameEdit")), QStringLiteral("Meters"));
    EXPECT_EQ(Text(QStringLiteral("prjNameEdit")), QStringLiteral("ABC_Meters"));

    ExpectUnitPicked(QStringLiteral("foot"));
    ExpectMessage(StrId::UnitSelectConvertQuestion, MsgButtons::YesNo, MsgAnswer::Yes);
    Click(QStringLiteral("unitSelectButton"));
    EXPECT_EQ(Text(QStringLiteral("unitNameEdit")), QStringLiteral("foot"));
    EXPECT_EQ(Text(QStringLiteral("prjNameEdit")), QStringLiteral("ABC_foot"));
    EXPECT_EQ(Row(4), QStringLiteral("155000.000000"));
    EXPECT_EQ(AdvCoordSysDlgProbe(*editor).UnitFactor(), 0.3048);
    EXPECT_EQ(UnitLine(), lineBefore);
    EXPECT_TRUE(UnitLine().startsWith(QStringLiteral("Metric Conversion Factor:1.000000")));
}

// A projection name that starts with the unit's name keeps it.
TEST_F(PrjSection, AProjectionNamedFirstByItsUnitKeepsItsName) {
    StoreTm(QStringLiteral("Quay"), QStringLiteral("Meters grid"), QStringLiteral("Meters"),
            155000.0);
    Open(kGroup, QStringLiteral("Quay"));
    ExpectUnitPicked(QStringLiteral("foot"));
    ExpectMessage(StrId::UnitSelectConvertQuestion, MsgButtons::YesNo, MsgAnswer::Yes);
    Click(QStringLiteral("unitSelectButton"));
    EXPECT_EQ(Text(QStringLiteral("prjNameEdit")), QStringLiteral("Meters grid"));
    EXPECT_EQ(Text(QStringLiteral("unitNameEdit")), QStringLiteral("foot"));
}

// A unit created on the spot converts the lengths from the old unit into it (old / new): the
// rows of length, the translation and the two origins; rotation, scale and slopes stay.
TEST_F(PrjSection, ACreatedUnitConvertsTheLengths) {
    StoreHarbour();
    Open(kGroup, kHarbour);
    ClickCheck(QStringLiteral("translationCheck"));
    SetText(QStringLiteral("translationEEdit"), QStringLiteral("100.5"));
    ClickCheck(QStringLiteral("horAdjustCheck"));
    SetText(QStringLiteral("horOriginEEdit"), QStringLiteral("10058.4"));
    SetText(QStringLiteral("horRotationEdit"), QStringLiteral("2.5"));
    ClickCheck(QStringLiteral("vertAdjustCheck"));
    SetText(QStringLiteral("vertOriginNEdit"), QStringLiteral("5029.2"));
    SetText(QStringLiteral("vertSlopeEEdit"), QStringLiteral("3.5"));

    ExpectNewUnit(QStringLiteral("Rod"), QStringLiteral("5.0292"));
    ExpectMessage(StrId::UnitCreateConvertQuestion, MsgButtons::YesNo, MsgAnswer::No);
    Click(QStringLiteral("unitNewButton"));
    EXPECT_EQ(Text(QStringLiteral("unitNameEdit")), QStringLiteral("Meters"));
    EXPECT_EQ(Row(4), QStringLiteral("155000.000000"));

    ExpectNewUnit(QStringLiteral("Perch"), QStringLiteral("5.0292"));
    ExpectMessage(StrId::UnitCreateConvertQuestion, MsgButtons::YesNo, MsgAnswer::Yes);
    Click(QStringLiteral("unitNewButton"));
    EXPECT_EQ(Text(QStringLiteral("unitNameEdit")), QStringLiteral("Perch"));
    EXPECT_EQ(Text(QStringLiteral("prjNameEdit")), QStringLiteral("Harbour TM_Perch"));
    EXPECT_EQ(Row(4), QString::asprintf("%f", 155000.0 / 5.0292));
    EXPECT_EQ(Row(5), QString::asprintf("%f", 463000.0 / 5.0292));
    EXPECT_EQ(Row(3), QStringLiteral("0.999900"));
    EXPECT_EQ(Text(QStringLiteral("translationEEdit")), QString::asprintf("%f", 100.5 / 5.0292));
    EXPECT_EQ(Text(QStringLiteral("horOriginEEdit")), QStringLiteral("2000.000000"));
    EXPECT_EQ(Text(QStringLiteral("horRotationEdit")), QStringLiteral("2.500000"));
    EXPECT_EQ(Text(QStringLiteral("vertOriginNEdit")), QStringLiteral("1000.000000"));
    EXPECT_EQ(Text(QStringLiteral("vertSlopeEEdit")), QStringLiteral("3.500000"));
    EXPECT_EQ(UnitLine(),
              QStringLiteral("Metric Conversion Factor:5.029200\n\tDescription: Perch, 5.0292 "
                             "metres (user-defined)\n"));
    EXPECT_EQ(AdvCoordSysDlgProbe(*editor).UnitFactor(), 5.0292);
}

// A stored projection in another unit is converted into the system's unit (projection unit /
// system unit); in the same unit it is taken as it is.
TEST_F(PrjSection, AChosenProjectionIsConvertedIntoTheSystemsUnit) {
    StoreTm(QStringLiteral("Quay"), QStringLiteral("Quay TM"), QStringLiteral("foot"), 500000.0);
    Open(kGroup, QStringLiteral("Quay"));
    ExpectProjectionPicked(QStringLiteral("British National Grid"),
                           QStringLiteral("Transverse Mercator"));
    ExpectMessage(StrId::PrjSelectConvertQuestion, MsgButtons::YesNo, MsgAnswer::No);
    Click(QStringLiteral("prjSelectButton"));
    EXPECT_EQ(Text(QStringLiteral("prjNameEdit")), QStringLiteral("Quay TM"));
    EXPECT_EQ(Row(4), QStringLiteral("500000.000000"));

    ExpectProjectionPicked(QStringLiteral("British National Grid"),
                           QStringLiteral("Transverse Mercator"));
    ExpectMessage(StrId::PrjSelectConvertQuestion, MsgButtons::YesNo, MsgAnswer::Yes);
    Click(QStringLiteral("prjSelectButton"));
    EXPECT_EQ(Text(QStringLiteral("prjNameEdit")), QStringLiteral("British National Grid"));
    EXPECT_EQ(Row(4), QString::asprintf("%f", 400000.0 / 0.3048));
    EXPECT_EQ(Row(5), QString::asprintf("%f", -100000.0 / 0.3048));
    EXPECT_EQ(RowAngle(1), 49.0);
    EXPECT_EQ(Text(QStringLiteral("unitNameEdit")), QStringLiteral("foot"));

    // the same unit: no question, no conversion
    StoreHarbour();
    Open(kGroup, kHarbour);
    ExpectProjectionPicked(QStringLiteral("British National Grid"),
                           QStringLiteral("Transverse Mercator"));
    Click(QStringLiteral("prjSelectButton"));
    EXPECT_EQ(Row(4), QStringLiteral("400000.000000"));
    EXPECT_TRUE(AdvCoordSysDlgProbe(*editor).PrjIsStored());
}

// "New": the projection takes the new name at once; based on a stored one it shows that one's
// rows in the system's unit, otherwise the method's defaults.
TEST_F(PrjSection, ANewProjectionTakesTheNewName) {
    StoreHarbour();
    Open(kGroup, kHarbour);
    ui.ExpectModal<CreateNewPrjDlg>([this](CreateNewPrjDlg& d) {
        d.findChild<QLineEdit*>(QStringLiteral("nameEdit"))->setText(QStringLiteral("Quay grid"));
        ui.ExpectModal<PrjSelectDlg>([](PrjSelectDlg& p) {
            return Pick(p, QStringLiteral("British National Grid"),
                        QStringLiteral("Transverse Mercator"));
        });
        d.findChild<QPushButton*>(QStringLiteral("selectButton"))->click();
        d.accept();
        return d.result();
    });
    Click(QStringLiteral("prjNewButton"));
    AdvCoordSysDlgProbe probe(*editor);
    EXPECT_FALSE(probe.PrjIsStored());
    EXPECT_EQ(Text(QStringLiteral("prjNameEdit")), QStringLiteral("Quay grid"));
    EXPECT_EQ(Row(4), QStringLiteral("400000.000000"));
    EXPECT_TRUE(Control<QWidget>(QStringLiteral("paramEdit4"))->isEnabled());
    EXPECT_TRUE(Control<QComboBox>(QStringLiteral("prjMethodCombo"))->isEnabled());

    ui.ExpectModal<CreateNewPrjDlg>([](CreateNewPrjDlg& d) {
        d.findChild<QLineEdit*>(QStringLiteral("nameEdit"))->setText(QStringLiteral("Blank grid"));
        d.accept();
        return d.result();
    });
    Click(QStringLiteral("prjNewButton"));
    EXPECT_EQ(Text(QStringLiteral("prjNameEdit")), QStringLiteral("Blank grid"));
    EXPECT_EQ(Row(4), QStringLiteral("0.000000"));
}

// A projection whose method cannot be computed is refused when the page is filled in: the
// unit, geoid and post values are not handed over, and the dialog still closes. The library
// refuses to write such a projection, so the stored system stays as it was.
TEST_F(PrjSection, AMethodNotImplementedStopsTheFillingButTheDialogCloses) {
    StoreHarbour();
    const QString before = DumpUserDb();
    Open(kGroup, kHarbour);
    ClickCheck(QStringLiteral("translationCheck"));
    SetText(QStringLiteral("translationEEdit"), QStringLiteral("99"));
    Choose(QStringLiteral("prjMethodCombo"), QStringLiteral("Not implemented"));
    // the rows of the stored user projection changed: the warning comes first
    ui.ExpectMessage(LoadOrvString(StrId::EditorSharedChangeWarning),
                     LoadOrvString(StrId::WarningCaption), MsgButtons::OkCancel, MsgAnswer::Ok);
    ui.ExpectMessage(LoadOrvString(StrId::PrjNotImplemented), QString(), MsgButtons::Ok,
                     MsgAnswer::Ok);
    PressOk();
    EXPECT_EQ(editor->result(), QDialog::Accepted);
    double e = 0.0, n = 0.0, z = 0.0;
    editor->GetGeoStaticData()->GetPostTranslation(e, n, z);
    EXPECT_EQ(e, 0.0);
    EXPECT_FALSE(editor->GetGeoStaticData()->IsPostTranslationOn());
    QString name;
    editor->GetGeoStaticData()->GetAssignedSystemName(name);
    EXPECT_EQ(name, kHarbour); // from loading, not from the filling
    EXPECT_EQ(DumpUserDb(), before);
    EXPECT_FALSE(editor->EditSave());
}

TEST_F(PrjSection, ASpecialProjectionCannotBeFilledIn) {
    StoreHarbour();
    Open(kGroup, kHarbour);
    AdvCoordSysDlgProbe probe(*editor);
    probe.SetPrjMethodId(-1);
    ui.ExpectMessage(LoadOrvString(StrId::PrjSpecial), QString(), MsgButtons::Ok, MsgAnswer::Ok);
    EXPECT_FALSE(probe.FillInGeoStaticData());
}

// The conversion does nothing and says so without a factor to convert with.
TEST_F(PrjSection, AConversionWithoutAFactorIsANoOp) {
    StoreHarbour();
    Open(kGroup, kHarbour);
    AdvCoordSysDlgProbe probe(*editor);
    EXPECT_FALSE(probe.Convert(true, 0.0, true));
    EXPECT_FALSE(probe.Convert(false, 2.0, true));
    probe.SetUnitFactor(0.0);
    EXPECT_FALSE(probe.Convert(true, 2.0, false));
    EXPECT_EQ(Row(4), QStringLiteral("155000.000000"));
    probe.SetUnitFactor(1.0);
    EXPECT_TRUE(probe.Convert(true, 2.0, true));
    EXPECT_EQ(Row(4), QStringLiteral("310000.000000"));
    EXPECT_EQ(probe.BuildIndentString(0), QString());
    EXPECT_EQ(probe.BuildIndentString(-1), QString());
    EXPECT_EQ(probe.BuildIndentString(2), QStringLiteral("\t\t"));
}
