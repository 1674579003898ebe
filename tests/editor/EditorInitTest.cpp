// The editor opened on a stored system: its boxes and labels, the values it shows and how,
// the read-only mode of a pre-defined system, the lists, and what the host hands it.
#include "EditorTestSupport.h"

#include "api/GeoKeys.h"
#include "resources/StringTable.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

namespace {

const QString kEurope = QStringLiteral("Europe");
const QString kEd50Utm = QStringLiteral("ED50 / UTM zone 31N");

QStringList Entries(QComboBox* list) {
    QStringList entries;
    for (int i = 0; list && i < list->count(); ++i)
        entries << list->itemText(i);
    return entries;
}

} // namespace

TEST_F(EditorTest, SevenBoxesWithTheirCaptionsAndLabels) {
    StoreHarbour();
    Open(kGroup, kHarbour);
    const std::pair<const char*, const char*> boxes[] = {
        {"satelliteGroup", "Satellite ellipsoid"},
        {"localGroup", "Local ellipsoid "},
        {"dtfGroup", "Transformation from  WGS 84 to International 1924"},
        {"prjGroup", "Projection"},
        {"unitGroup", "Unit"},
        {"geoidGroup", "Geoid model"},
        {"postGroup", "Post grid corrections"}};
    for (const auto& [name, title] : boxes)
        EXPECT_EQ(Control<QGroupBox>(QString::fromLatin1(name))->title(), QString::fromUtf8(title));
    const std::pair<const char*, const char*> labels[] = {
        {"shiftXLabel", "Shift X(m):"},
        {"shiftYLabel", "Shift Y(m):"},
        {"shiftZLabel", "Shift Z(m):"},
        {"scaleLabel", "Scale factor[ppm]:"},
        {"rotationXLabel", "Rotation X(sec):"},
        {"rotationYLabel", "Rotation Y(sec):"},
        {"rotationZLabel", "Rotation Z(sec):"},
        {"rateLabel", "Rate of change per Year"},
        {"epochLabel", "Datum Epoch:"},
        {"descriptionLabel", "Description:"},
        {"utmZoneLabel", "UTM-Zone"},
        {"hemisphereLabel", "Hemisphere"},
        {"separationLabel", "Separation manual input"},
        {"chartDatumApplyLabel", "Apply vertical datum transformation."},
        {"chartDatumLabel", "Chart datum:"},
        {"horRotationLabel", "Rotation @ origin(sec):"},
        {"vertSlopeELabel", "Slope east (ppm):"},
        {"vertSlopeNLabel", "Slope north (ppm):"}};
    for (const auto& [name, text] : labels)
        EXPECT_EQ(Control<QLabel>(QString::fromLatin1(name))->text(), QString::fromUtf8(text));
    EXPECT_EQ(Control<QCheckBox>(QStringLiteral("translationCheck"))->text(),
              QStringLiteral("Use translation"));
    EXPECT_EQ(Control<QCheckBox>(QStringLiteral("horAdjustCheck"))->text(),
              QStringLiteral("Use horizontal adjustement"));
    EXPECT_EQ(Control<QCheckBox>(QStringLiteral("vertAdjustCheck"))->text(),
              QStringLiteral("Use vertical adjustement"));
    EXPECT_EQ(Control<QPushButton>(QStringLiteral("dtfSelectButton"))->text(),
              QStringLiteral("Select ..."));
    EXPECT_EQ(Control<QPushButton>(QStringLiteral("dtfNewButton"))->text(), QStringLiteral("New"));
}

// The title is the template's with "--" and the system name, appended to whatever it is.
TEST_F(EditorTest, TitleIsAppendedEachTimeItIsSet) {
    StoreHarbour();
    Open(kGroup, kHarbour);
    EXPECT_EQ(editor->windowTitle(), QStringLiteral("Edit Coordinate System--Harbour"));
    AdvCoordSysDlgProbe(*editor).SetWindowTitle();
    EXPECT_EQ(editor->windowTitle(), QStringLiteral("Edit Coordinate System--Harbour--Harbour"));
}

// A user system with every section filled shows each value in its format.
TEST_F(EditorTest, AUserSystemShowsEveryValueInItsFormat) {
    StoreRig();
    Open(kGroup, kRig);
    EXPECT_FALSE(editor->IsReadOnly());
    EXPECT_EQ(Text(QStringLiteral("satNameEdit")), QStringLiteral("WGS 84"));
    EXPECT_EQ(Text(QStringLiteral("localNameEdit")), QStringLiteral("International 1924"));
    EXPECT_EQ(editor->GetSrcEllipsoid(), QStringLiteral("WGS 84"));
    EXPECT_EQ(editor->GetTargetEllipsoid(), QStringLiteral("International 1924"));

    // datum transformation: six decimals, eight for the rates, three for the epoch
    EXPECT_EQ(Text(QStringLiteral("dtfNameEdit")), QStringLiteral("Rig 15 dtf"));
    EXPECT_EQ(Control<QComboBox>(QStringLiteral("dtfMethodCombo"))->currentText(),
              QStringLiteral("Position Vector time-dependent (15 parameters)"));
    EXPECT_EQ(Text(QStringLiteral("shiftXEdit")), QStringLiteral("-87.500000"));
    EXPECT_EQ(Text(QStringLiteral("rotationYEdit")), QStringLiteral("-0.125000"));
    EXPECT_EQ(Text(QStringLiteral("scaleEdit")), QStringLiteral("1.500000"));
    EXPECT_EQ(Text(QStringLiteral("shiftYRateEdit")), QStringLiteral("-0.00200000"));
    EXPECT_EQ(Text(QStringLiteral("scaleRateEdit")), QStringLiteral("0.00005000"));
    EXPECT_EQ(Text(QStringLiteral("epochEdit")), QStringLiteral("2010.000"));
    EXPECT_TRUE(Control<QLineEdit>(QStringLiteral("epochEdit"))->isVisible());
    EXPECT_TRUE(Control<QLineEdit>(QStringLiteral("shiftXEdit"))->isEnabled());
    EXPECT_TRUE(Control<QLabel>(QStringLiteral("rateLabel"))->isEnabled());
    EXPECT_EQ(Control<QPlainTextEdit>(QStringLiteral("descriptionEdit"))->toPlainText(),
              QStringLiteral("Fitted on the rig's reference points"));

    // projection: UTM with its zone and hemisphere, the rows laid out from the projection
    EXPECT_EQ(Text(QStringLiteral("prjNameEdit")), QStringLiteral("Rig 15 UTM ft"));
    EXPECT_EQ(Control<QComboBox>(QStringLiteral("prjMethodCombo"))->currentText(),
              QStringLiteral("UTM"));
    EXPECT_TRUE(Control<QComboBox>(QStringLiteral("utmZoneCombo"))->isVisible());
    EXPECT_EQ(Control<QComboBox>(QStringLiteral("utmZoneCombo"))->currentText(),
              QStringLiteral("Zone 31     (  3 E)"));
    EXPECT_EQ(Control<QComboBox>(QStringLiteral("hemisphereCombo"))->currentText(),
              QStringLiteral("Northern"));
    EXPECT_EQ(Control<QLabel>(QStringLiteral("paramLabel4"))->text(),
              QStringLiteral("False easting:"));
    EXPECT_EQ(Text(QStringLiteral("paramEdit4")), QStringLiteral("1640416.666667"));
    EXPECT_EQ(Text(QStringLiteral("paramEdit2")), QStringLiteral("003°00'00.0000000\"E"));
    EXPECT_FALSE(Control<QWidget>(QStringLiteral("paramEdit6"))->isVisible());

    // unit: the part of its text after the tab
    EXPECT_EQ(Text(QStringLiteral("unitNameEdit")), QStringLiteral("US survey foot"));
    QString unitText;
    db->GetUnitDescription(unitText, QStringLiteral("US survey foot"));
    EXPECT_EQ(Control<QPlainTextEdit>(QStringLiteral("unitDescription"))->toPlainText(),
              unitText.mid(unitText.indexOf(QLatin1Char('\t')) + 1)
                  .replace(QStringLiteral("\r\n"), QStringLiteral("\n")));

    // geoid model and post corrections
    EXPECT_EQ(Control<QComboBox>(QStringLiteral("geoidMethodCombo"))->currentText(),
              QStringLiteral("GTX Geoid Grid"));
    EXPECT_EQ(Text(QStringLiteral("geoidFileEdit")), QStringLiteral("egm96_15.gtx"));
    EXPECT_TRUE(Control<QPushButton>(QStringLiteral("geoidFileButton"))->isEnabled());
    EXPECT_FALSE(Control<QLabel>(QStringLiteral("chartDatumLabel"))->isVisible());
    EXPECT_FALSE(Control<QLineEdit>(QStringLiteral("separationEdit"))->isVisible());
    EXPECT_TRUE(Control<QCheckBox>(QStringLiteral("translationCheck"))->isChecked());
    EXPECT_EQ(Text(QStringLiteral("translationEEdit")), QStringLiteral("10.500000"));
    EXPECT_EQ(Text(QStringLiteral("translationNEdit")), QStringLiteral("-4.250000"));
    EXPECT_TRUE(Control<QCheckBox>(QStringLiteral("horAdjustCheck"))->isChecked());
    EXPECT_EQ(Text(QStringLiteral("horOriginEEdit")), QStringLiteral("1640000.000000"));
    EXPECT_EQ(Text(QStringLiteral("horRotationEdit")), QStringLiteral("1.500000"));
    EXPECT_EQ(Text(QStringLiteral("horScaleEdit")), QStringLiteral("1.000100"));
    EXPECT_FALSE(Control<QCheckBox>(QStringLiteral("vertAdjustCheck"))->isChecked());
    EXPECT_FALSE(Control<QLineEdit>(QStringLiteral("vertOriginEEdit"))->isEnabled());
    EXPECT_EQ(Control<QComboBox>(QStringLiteral("postMethodCombo"))->currentText(),
              QStringLiteral("--None--"));
    EXPECT_FALSE(Control<QPushButton>(QStringLiteral("postFileButton"))->isEnabled());
    // what the host gets back holds no change
    EXPECT_EQ(editor->GetGeoidModelName(), QString());
    EXPECT_EQ(editor->GetGeoidModelFileName(), QString());
    EXPECT_EQ(editor->GetGeoStaticData(), editor->GetGeoStatic());
    EXPECT_NE(editor->GetGeoDatabase(), nullptr);
}

// A pre-defined system opens read-only: nothing of the ellipsoids, the datum transformation,
// the projection, the unit and the post corrections can be changed; its datum transformation
// methods are narrowed to the family of its own.
TEST_F(EditorTest, APredefinedSystemOpensReadOnly) {
    Open(kEurope, kEd50Utm);
    ASSERT_TRUE(editor->IsReadOnly());
    for (const char* name :
         {"shiftXEdit",       "shiftYEdit",        "shiftZEdit",       "rotationXEdit",
          "rotationYEdit",    "rotationZEdit",     "scaleEdit",        "shiftXRateEdit",
          "scaleRateEdit",    "epochEdit",         "descriptionEdit",  "prjMethodCombo",
          "utmZoneCombo",     "hemisphereCombo",   "paramEdit1",       "paramEdit4",
          "satSelectButton",  "localSelectButton", "dtfSelectButton",  "dtfNewButton",
          "prjSelectButton",  "prjNewButton",      "unitSelectButton", "unitNewButton",
          "translationCheck", "horAdjustCheck",    "vertAdjustCheck",  "translationEEdit",
          "horOriginEEdit",   "vertSlopeNEdit",    "postMethodCombo",  "postFileButton"})
        EXPECT_FALSE(Control<QWidget>(QString::fromLatin1(name))->isEnabled()) << name;
    // the geoid model stays open to change
    EXPECT_TRUE(Control<QComboBox>(QStringLiteral("geoidMethodCombo"))->isEnabled());
    auto* methods = Control<QComboBox>(QStringLiteral("dtfMethodCombo"));
    EXPECT_TRUE(methods->isEnabled());
    EXPECT_EQ(Entries(methods), (QStringList{QStringLiteral("Position Vector (7 parameters)"),
                                             QStringLiteral("Coordinate Frame (7 parameters)")}));
    EXPECT_EQ(methods->currentIndex(), 0);
    EXPECT_EQ(AdvCoordSysDlgProbe(*editor).MethodShift(), 1);
    EXPECT_EQ(Text(QStringLiteral("dtfNameEdit")), QStringLiteral("ED50 to WGS 84 (1)"));
    EXPECT_EQ(Text(QStringLiteral("shiftXEdit")), QStringLiteral("-87.000000"));
    EXPECT_FALSE(Control<QWidget>(QStringLiteral("shiftXRateEdit"))->isVisible());
    EXPECT_EQ(Control<QComboBox>(QStringLiteral("utmZoneCombo"))->currentText(),
              QStringLiteral("Zone 31     (  3 E)"));
}

// A read-only system lists only the geoid methods its own key text names.
TEST_F(EditorTest, AReadOnlySystemListsOnlyItsOwnGeoidMethods) {
    Open(kEurope, kEd50Utm);
    const QStringList keys =
        db->GetCoordSysGeoidKeys(kEurope, kEd50Utm).split(QLatin1Char(','), Qt::SkipEmptyParts);
    const QStringList shown = Entries(Control<QComboBox>(QStringLiteral("geoidMethodCombo")));
    ASSERT_FALSE(shown.isEmpty());
    EXPECT_EQ(shown.first(), QStringLiteral("--None--"));
    for (const QString& entry : shown.mid(1))
        EXPECT_TRUE(keys.contains(entry, Qt::CaseInsensitive)) << entry.toStdString();
}

TEST_F(EditorTest, TheUtmListsHoldSixtyZonesAndTwoHemispheres) {
    StoreHarbour();
    Open(kGroup, kHarbour);
    const QStringList zones = Entries(Control<QComboBox>(QStringLiteral("utmZoneCombo")));
    ASSERT_EQ(zones.size(), 60);
    EXPECT_EQ(zones[0], QStringLiteral("Zone  1     (177 W)"));
    EXPECT_EQ(zones[29], QStringLiteral("Zone 30     (  3 W)"));
    EXPECT_EQ(zones[30], QStringLiteral("Zone 31     (  3 E)"));
    EXPECT_EQ(zones[59], QStringLiteral("Zone 60     (177 E)"));
    EXPECT_EQ(Entries(Control<QComboBox>(QStringLiteral("hemisphereCombo"))),
              (QStringList{QStringLiteral("Northern"), QStringLiteral("Southern")}));
    // not a UTM projection: the lists are hidden
    EXPECT_FALSE(Control<QComboBox>(QStringLiteral("utmZoneCombo"))->isVisible());
    EXPECT_TRUE(Control<QWidget>(QStringLiteral("paramEdit5"))->isVisible());
}

// Without the geoid section the box is gone and the host's geoid values come back as given.
TEST_F(EditorTest, AHiddenGeoidSectionKeepsTheHostsValues) {
    StoreHarbour();
    EditorArgs args;
    args.geoidName = QStringLiteral("EGM96");
    args.geoidFile = QStringLiteral("x.gtx");
    args.chartDatum = QStringLiteral("MLLW");
    args.showGeoid = false;
    Open(kGroup, kHarbour, args);
    EXPECT_FALSE(Control<QGroupBox>(QStringLiteral("geoidGroup"))->isVisible());
    EXPECT_EQ(editor->GetGeoidModelName(), QStringLiteral("EGM96"));
    EXPECT_EQ(editor->GetGeoidModelFileName(), QStringLiteral("x.gtx"));
    EXPECT_EQ(editor->GetGeoidChartDatum(), QStringLiteral("MLLW"));
}

// The three stored Ordnance Survey names show as "OSGM" with the file of their area; the
// older grid model name as the list's.
TEST_F(EditorTest, OlderStoredGeoidNamesShowAsTheListNamesThem) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"OSGM02 - GB", "OSGM", "OSTN02_OSGM02_GB.txt"},
        {"OSGM02 - NI", "OSGM", "OSGM02_NI.txt"},
        {"OSGM02 - RoI", "OSGM", "OSGM02_RoI.txt"},
        {"Grid Model Geoid Model", "Grid Model(Satellite coordinates)", "site.grd"}};
    int n = 0;
    for (const auto& [stored, shown, file] : cases) {
        const QString system = QStringLiteral("Old %1").arg(++n);
        StoreHarbour(system);
        // A copy: clang 14 cannot capture a structured binding.
        const QString method = QString::fromLatin1(stored);
        Change(system, [&](OrvGeoStaticDataBase& s) {
            s.SetGeoidEnabled(true);
            s.SetGeoidMethod(method);
            s.SetGeoidFile(QStringLiteral("site.grd"));
        });
        Open(kGroup, system);
        EXPECT_EQ(Control<QComboBox>(QStringLiteral("geoidMethodCombo"))->currentText(),
                  QString::fromLatin1(shown))
            << stored;
        EXPECT_EQ(Text(QStringLiteral("geoidFileEdit")), QString::fromLatin1(file)) << stored;
    }
}

// The host's geoid model replaces the stored one, with its file; "--None--" empties both.
TEST_F(EditorTest, TheHostsGeoidModelComesFirst) {
    StoreRig();
    EditorArgs args;
    args.geoidName = QStringLiteral("--None--");
    args.geoidFile = QStringLiteral("other.gtx");
    Open(kGroup, kRig, args);
    EXPECT_EQ(Control<QComboBox>(QStringLiteral("geoidMethodCombo"))->currentText(),
              QStringLiteral("--None--"));
    EXPECT_EQ(Text(QStringLiteral("geoidFileEdit")), QString());
    EXPECT_EQ(editor->GetGeoidModelFileName(), QString());
    EXPECT_EQ(editor->GetGeoidModelName(), QStringLiteral("--None--"));
    EXPECT_FALSE(AdvCoordSysDlgProbe(*editor).GeoidInUse());

    args.geoidName = QStringLiteral("DVR90 (Denmark)");
    args.geoidFile = QStringLiteral("dvr90.01");
    Open(kGroup, kRig, args);
    EXPECT_EQ(Control<QComboBox>(QStringLiteral("geoidMethodCombo"))->currentText(),
              QStringLiteral("DVR90 (Denmark)"));
    EXPECT_EQ(Text(QStringLiteral("geoidFileEdit")), QStringLiteral("dvr90.01"));
    EXPECT_EQ(editor->GetGeoidModelName(), QStringLiteral("DVR90 (Denmark)"));
    EXPECT_EQ(editor->GetGeoidModelFileName(), QStringLiteral("dvr90.01"));
}

// A data source that cannot be opened leaves the page empty; OK closes without a word.
TEST_F(EditorTest, ADataSourceThatCannotBeOpenedLeavesThePageEmpty) {
    editor = std::make_unique<AdvCoordSysDlg>(kGroup, kHarbour, QString(), QString(), QString(),
                                              QString(), QString(), true);
    editor->SetDllType(QStringLiteral("nosuchsource:"));
    editor->show();
    Flush();
    EXPECT_EQ(editor->GetGeoDatabase(), nullptr);
    EXPECT_EQ(Text(QStringLiteral("dtfNameEdit")), QString());
    EXPECT_FALSE(editor->EditSave());
    PressOk();
    EXPECT_EQ(editor->result(), QDialog::Accepted);
}

// A system that is not stored: no lookup succeeds, no message is shown.
TEST_F(EditorTest, AnUnknownSystemOpensWithoutItsLists) {
    Open(kGroup, QStringLiteral("Nowhere"));
    EXPECT_EQ(Control<QComboBox>(QStringLiteral("prjMethodCombo"))->count(), 0);
    EXPECT_TRUE(ui.MessageTexts().isEmpty());
}
