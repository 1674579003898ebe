// The wizard from end to end, as a surveyor uses it: from the name page by the wizard's
// buttons to Finish on a user database in a temporary folder, then the saved system is made
// usable with CreateCoordSys and converts points.
#include "CommonDataFolder.h"
#include "PageTestSupport.h"

#include "api/GeoKeys.h"
#include "api/OrvGeoCoordSysBase.h"
#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoFactories.h"
#include "dialogs/PickerTree.h"
#include "dialogs/SelEllipsoidDlg.h"
#include "pages/WIZPage1.h"
#include "pages/WIZPage4.h"
#include "pages/WIZPage8.h"
#include "resources/StringTable.h"
#include "support/GtxFile.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>

#include <proj.h>

#include <charconv>
#include <cmath>
#include <memory>

namespace {

const QString kUk = QStringLiteral("UK");
const QString kBng = QStringLiteral("OSGB36 / British National Grid");
const QString kBngDtf = QStringLiteral("OSGB36 to WGS 84 (6)");
const QString kSiteGroup = QStringLiteral("Humber estuary 2026");

// The point every walk converts: 53.0 N, 1.5 W, 100 m above the WGS 84 ellipsoid.
constexpr double kLat = 53.0, kLon = -1.5, kHeight = 100.0;
// The US survey foot in metres.
constexpr double kUsSurveyFoot = 1200.0 / 3937.0;
// The same definition converts the same point to the same numbers; a few nanometres allow for
// the order of floating-point operations.
constexpr double kSame = 1e-8;
// Agreement with PROJ's own pipeline of the same definition: better than 0.1 mm.
constexpr double kProjAgreement = 1e-5;
constexpr int kProgramTimeoutMs = 60000;

// The seven value edits of the datum transformation parameters page, in value order.
const char* const kDtfEdits[7] = {"shiftX",    "shiftY",    "shiftZ", "rotationX",
                                  "rotationY", "rotationZ", "scale"};

class EndToEnd : public WizardPageTest {
protected:
    // ---- the pages, as a person uses them ----

    void typeText(int page, const char* edit, const QString& text) {
        Control<QLineEdit>(page, QString::fromLatin1(edit))->setText(text);
    }
    // A person picks an entry of a drop-down list.
    void pick(int page, const char* list, const QString& text) {
        auto* combo = Control<QComboBox>(page, QString::fromLatin1(list));
        ASSERT_NE(combo, nullptr);
        const int index = combo->findText(text);
        ASSERT_GE(index, 0) << text.toStdString();
        combo->setCurrentIndex(index);
        emit combo->activated(index);
        Flush();
    }
    // An entry of a page's tree: a top-level name, or a name under it.
    static void choose(PickerTree* tree, const QString& top, const QString& child = QString()) {
        const NameTreeModel& model = tree->Model();
        QModelIndex item = model.FindTopLevel(top);
        ASSERT_TRUE(item.isValid()) << top.toStdString();
        if (!child.isEmpty()) {
            item = model.FindChild(item, child);
            ASSERT_TRUE(item.isValid()) << child.toStdString();
            tree->Expand(item.parent());
        }
        tree->Select(item);
        Flush();
    }
    void nextTo(int expectedPage) {
        Next();
        ASSERT_EQ(ShownPage(), expectedPage);
    }

    // Name page: the new name, and whether it starts from a stored system.
    void nameTheSystem(const QString& name, bool basedOnStored) {
        OpenOn(0);
        typeText(0, "newSystemName", name);
        if (basedOnStored)
            Click(0, QStringLiteral("basedOnExisting"));
    }
    // Existing system page: the stored system the new one starts from.
    void startFrom(const QString& group, const QString& system) {
        choose(static_cast<WIZPage1*>(Page(1))->Tree(), group, system);
    }
    // Ellipsoid page: the local ellipsoid from its picker.
    void chooseLocalEllipsoid(const QString& ellipsoid) {
        ui.ExpectModal<SelEllipsoidDlg>([ellipsoid](SelEllipsoidDlg& picker) {
            picker.Tree()->Select(picker.Tree()->Model().FindTopLevel(ellipsoid));
            picker.accept();
            return picker.result();
        });
        Click(2, QStringLiteral("selectLocal"));
    }
    // Save page: a new group by its name.
    void saveInNewGroup(const QString& group) {
        Click(11, QStringLiteral("newGroupRadio"));
        typeText(11, "newGroupName", group);
    }
    // Overview page: Finish saves and closes the wizard.
    void finish() {
        ASSERT_EQ(ShownPage(), 12);
        wizard.FinishButton()->click();
        Flush();
        ASSERT_FALSE(wizard.isVisible()) << ui.MessageTexts().join(QLatin1Char('\n')).toStdString();
        EXPECT_EQ(wizard.result(), PropertySheet::ID_WIZFINISH);
    }

    // ---- the saved system in use ----

    // The saved system made usable as the host makes it, converting the point.
    GeoPoint convertWithCreated(const QString& group, const QString& system) {
        const QString none;
        OrvGeoCoordSysBase* created =
            wizard.CreateCoordSys(group, system, none, none, none, none, none);
        GeoPoint p{kLat, kLon, kHeight, 0};
        EXPECT_NE(created, nullptr) << "the saved system cannot be defined";
        if (created) {
            EXPECT_TRUE(created->Forward(p)) << created->LastError().toStdString();
        }
        return p;
    }
    // A stored system of the same data source, defined apart from the wizard.
    GeoPoint convertWithStored(const QString& group, const QString& system,
                               double height = kHeight) {
        std::unique_ptr<OrvGeoCoordSysBase> cs(
            OrvGeoCoordSysList::GetCoordSysList().Create(data.dllType()));
        GeoPoint p{kLat, kLon, height, 0};
        const QString none;
        EXPECT_TRUE(cs && cs->DefineSystem(group, system, none, none, none, none, none, none,
                                           QStringLiteral("none")));
        if (cs) {
            EXPECT_TRUE(cs->Forward(p)) << cs->LastError().toStdString();
        }
        return p;
    }
    static void expectNear(const GeoPoint& actual, const GeoPoint& expected, double tolerance) {
        EXPECT_NEAR(actual.x, expected.x, tolerance) << "Easting";
        EXPECT_NEAR(actual.y, expected.y, tolerance) << "Northing";
        EXPECT_NEAR(actual.z, expected.z, tolerance) << "Z";
    }
    bool saved(const QString& group, const QString& system) {
        QStringList systems;
        wizard.GetGeoDatabase()->GetSystemNames(systems, group);
        return systems.contains(system) &&
               wizard.GetGeoDatabase()->SystemNameExists(system, GEODB_USER);
    }
};

// Runs one of the programs built with this project; its exit code and standard output.
struct ProgramRun {
    int exitCode = -1;
    QString out, err;
};
ProgramRun RunProgram(const QString& program, const QStringList& arguments,
                      const QByteArray& input = {}) {
    QProcess process;
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    ProgramRun run;
    if (!process.waitForFinished(kProgramTimeoutMs))
        return run;
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}
// A number as the calculator writes it in a batch file (four decimals).
QString Fixed4(double value) {
    char buffer[64];
    const auto [end, ec] =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 4);
    return ec == std::errc() ? QString::fromLatin1(buffer, end - buffer) : QString();
}

} // namespace

// A copy of the stored British National Grid, changed nowhere, saved into a new group: it
// converts exactly as the stored system does, here and in the programs outside the wizard.
TEST_F(EndToEnd, StoredSystemTakenOverUnchanged) {
    const QString name = QStringLiteral("Humber BNG");
    nameTheSystem(name, true);
    nextTo(1);
    startFrom(kUk, kBng);
    nextTo(5); // the datum transformation as stored
    nextTo(10);
    nextTo(9); // the projection as stored
    nextTo(13);
    nextTo(11);
    saveInNewGroup(kSiteGroup);
    nextTo(12);
    finish();

    EXPECT_EQ(wizard.GetGroupName(), kSiteGroup);
    EXPECT_EQ(wizard.GetSystemName(), name);
    EXPECT_TRUE(saved(kSiteGroup, name));
    const GeoPoint stored = convertWithStored(kUk, kBng);
    const GeoPoint created = convertWithCreated(kSiteGroup, name);
    expectNear(created, stored, kSame);

    // The saved system is usable outside the wizard: the database view finds it in its
    // group, and the calculator converts with it on the same data source.
    const ProgramRun listed =
        RunProgram(QStringLiteral(ORV_GEODB_PROGRAM), {QStringLiteral("--data"), data.dllType(),
                                                       QStringLiteral("systems"), kSiteGroup});
    EXPECT_EQ(listed.exitCode, 0) << listed.err.toStdString();
    EXPECT_TRUE(listed.out.contains(name)) << listed.out.toStdString();

    const ProgramRun converted =
        RunProgram(QStringLiteral(TERRAMETER_PROGRAM),
                   {QStringLiteral("--batch"), QStringLiteral("-G:") + kSiteGroup,
                    QStringLiteral("-S:") + name, QStringLiteral("--data"), data.dllType()},
                   "53,-1.5,100\n");
    EXPECT_EQ(converted.exitCode, 0) << converted.err.toStdString();
    EXPECT_EQ(converted.out, Fixed4(stored.x) + QLatin1Char(',') + Fixed4(stored.y) +
                                 QLatin1Char(',') + Fixed4(stored.z) + QLatin1Char('\n'));
}

// A new system from scratch: a new seven-value datum transformation typed by hand onto the
// International 1924 ellipsoid, UTM zone 31 north as a new projection, metres. It converts
// as PROJ does with the same definition.
TEST_F(EndToEnd, NewTransformationAndNewUtmProjection) {
    const QString name = QStringLiteral("North Sea rig 7");
    nameTheSystem(name, false);
    nextTo(2);
    chooseLocalEllipsoid(QStringLiteral("International 1924"));
    nextTo(3);
    Click(3, QStringLiteral("optionNew"));
    nextTo(5);
    auto* method = Control<QComboBox>(5, QStringLiteral("method"));
    method->setCurrentIndex(DTF_7_POSITION_VECTOR);
    emit method->activated(DTF_7_POSITION_VECTOR);
    Flush();
    // WGS 84 to the local datum: shifts in metres, rotations in seconds of arc, scale in ppm
    const double values[7] = {87.123, 98.456, 121.789, 0.59, 0.32, -1.21, -2.5};
    for (int i = 0; i < 7; ++i)
        typeText(5, kDtfEdits[i], QString::number(values[i], 'f', 6));
    nextTo(10);
    nextTo(6);
    EXPECT_EQ(Control<QComboBox>(6, QStringLiteral("unitCombo"))->currentText(),
              QStringLiteral("Meters"));
    nextTo(7);
    Click(7, QStringLiteral("optionNew"));
    nextTo(9);
    EXPECT_EQ(Control<QLineEdit>(9, QStringLiteral("nameEdit"))->text(),
              name + QStringLiteral("-Prj"));
    pick(9, "methodCombo", QStringLiteral("UTM"));
    pick(9, "zoneCombo", QStringLiteral("Zone 31     (  3 E)"));
    pick(9, "hemisphereCombo", QStringLiteral("Northern"));
    nextTo(13);
    nextTo(11);
    saveInNewGroup(kSiteGroup);
    nextTo(12);
    finish();
    ASSERT_TRUE(saved(kSiteGroup, name));
    EXPECT_TRUE(wizard.GetGeoDatabase()->IsPrjOfType(name + QStringLiteral("-Prj"), GEODB_USER));

    const QString helmert =
        QStringLiteral("+proj=helmert +x=%1 +y=%2 +z=%3 +rx=%4 +ry=%5 +rz=%6 +s=%7 "
                       "+convention=position_vector")
            .arg(values[0], 0, 'g', 17)
            .arg(values[1], 0, 'g', 17)
            .arg(values[2], 0, 'g', 17)
            .arg(values[3], 0, 'g', 17)
            .arg(values[4], 0, 'g', 17)
            .arg(values[5], 0, 'g', 17)
            .arg(values[6], 0, 'g', 17);
    const QByteArray pipeline =
        (QStringLiteral("+proj=pipeline +step +proj=axisswap +order=2,1 "
                        "+step +proj=unitconvert +xy_in=deg +xy_out=rad "
                        "+step +proj=cart +ellps=WGS84 +step ") +
         helmert +
         QStringLiteral(" +step +inv +proj=cart +ellps=intl +step +proj=utm +zone=31 +ellps=intl"))
            .toLatin1();
    PJ* reference = proj_create(PJ_DEFAULT_CTX, pipeline.constData());
    ASSERT_NE(reference, nullptr) << pipeline.constData();
    OrvGeoCoordSysBase* created = wizard.CreateCoordSys(kSiteGroup, name, {}, {}, {}, {}, {});
    ASSERT_NE(created, nullptr);
    for (const auto& [lat, lon] : {std::pair{kLat, kLon}, {56.5, 3.2}, {61.0, 4.9}}) {
        const PJ_COORD c = proj_trans(reference, PJ_FWD, proj_coord(lat, lon, kHeight, 0));
        GeoPoint p{lat, lon, kHeight, 0};
        ASSERT_TRUE(created->Forward(p)) << created->LastError().toStdString();
        EXPECT_NEAR(p.x, c.xyz.x, kProjAgreement) << lat << " " << lon;
        EXPECT_NEAR(p.y, c.xyz.y, kProjAgreement) << lat << " " << lon;
        EXPECT_NEAR(p.z, c.xyz.z, kProjAgreement) << lat << " " << lon;
    }
    proj_destroy(reference);
}

// The British National Grid taken over into a system in US survey feet, with the conversion
// of the projection accepted: its false easting and northing are converted, and the system
// gives the metre system's numbers divided by the US survey foot.
TEST_F(EndToEnd, ProjectionTakenOverInUsSurveyFeet) {
    const QString name = QStringLiteral("Humber BNG feet");
    nameTheSystem(name, false);
    nextTo(2);
    chooseLocalEllipsoid(QStringLiteral("Airy 1830"));
    nextTo(3); // "Use existing datum transformation"
    nextTo(4);
    choose(static_cast<WIZPage4*>(Page(4))->Tree(), kBngDtf);
    nextTo(10);
    nextTo(6);
    pick(6, "unitCombo", QStringLiteral("US survey foot"));
    nextTo(7); // "Use existing projection"
    nextTo(8);
    choose(static_cast<WIZPage8*>(Page(8))->Tree(), QStringLiteral("Transverse Mercator"),
           QStringLiteral("British National Grid"));
    ui.ExpectMessage(LoadOrvString(StrId::PrjUnitConvertQuestion), QString(), MsgButtons::YesNo,
                     MsgAnswer::Yes);
    nextTo(9); // the converted projection, unchanged
    EXPECT_EQ(Control<QLineEdit>(9, QStringLiteral("nameEdit"))->text(),
              QStringLiteral("British National Grid_US survey foot"));
    nextTo(13);
    nextTo(11);
    saveInNewGroup(kSiteGroup);
    nextTo(12);
    finish();
    ASSERT_TRUE(saved(kSiteGroup, name));

    // the converted projection is stored under its own name, its lengths in feet
    const QString converted = QStringLiteral("British National Grid_US survey foot");
    EXPECT_TRUE(wizard.GetGeoDatabase()->IsPrjOfType(converted, GEODB_USER));
    PrjParamBlock block;
    QStringList texts, names;
    QList<unsigned> types;
    wizard.GetGeoDatabase()->GetProjectionParameters(converted, block, texts, names, types);
    const qsizetype eastingRow = names.indexOf(QStringLiteral("False easting"));
    const qsizetype northingRow = names.indexOf(QStringLiteral("False northing"));
    ASSERT_GE(eastingRow, 0) << names.join(QLatin1Char('|')).toStdString();
    ASSERT_GE(northingRow, 0);
    EXPECT_NEAR(block.values[eastingRow], 400000.0 / kUsSurveyFoot, 1e-6);
    EXPECT_NEAR(block.values[northingRow], -100000.0 / kUsSurveyFoot, 1e-6);
    QString unit;
    EXPECT_EQ(wizard.GetGeoDatabase()->GetProjectionUnit(unit, converted),
              QStringLiteral("US survey foot"));

    const GeoPoint metres = convertWithStored(kUk, kBng);
    const GeoPoint feet = convertWithCreated(kSiteGroup, name);
    expectNear(
        feet,
        GeoPoint{metres.x / kUsSurveyFoot, metres.y / kUsSurveyFoot, metres.z / kUsSurveyFoot, 0},
        1e-6);
}

// A geoid model from a grid file and a post correction with offsets on the British National
// Grid: Z is the height above the geoid (h - N) plus the Z offset, and Easting and Northing
// are the grid's at that height plus their offsets (the geoid height is taken through the
// datum transformation and kept, as for a compound system).
TEST_F(EndToEnd, GeoidGridAndPostCorrection) {
    // the model file lies in the common data folder that the wizard's file dialog starts in
    // and that the engine reads from the data source's ORV.ini
    CommonDataFolder common;
    {
        QFile ini(QDir(data.path()).filePath(QStringLiteral("ORV.ini")));
        ASSERT_TRUE(ini.open(QIODevice::WriteOnly));
        ini.write(QStringLiteral("[DataPaths]\nDataRoot=%1/Data\nDataFolder=Projects\n")
                      .arg(common.Root())
                      .toUtf8());
    }
    constexpr float kSeparation = 47.25f; // N over 52..54 N, 3 W..0 E
    const QString gridFolder = common.Common() + QStringLiteral("General/Geoidmodels/Netherlands/");
    ASSERT_TRUE(WriteGtx(gridFolder + QStringLiteral("humber.gtx"), 52, -3, 1, 1, 3, 4,
                         std::vector<float>(12, kSeparation)));
    const double offsetE = 12.5, offsetN = -7.25, offsetZ = 0.375;

    const QString name = QStringLiteral("Humber BNG heights");
    nameTheSystem(name, true);
    nextTo(1);
    startFrom(kUk, kBng);
    nextTo(5);
    nextTo(10);
    pick(10, "methodCombo", QString::fromWCharArray(GeoidmodelTypeKeys[GeoidKey::Gtx]));
    ui.ExpectFileOpen(LoadOrvString(StrId::FilterRdGeoid) + QStringLiteral("|*.gtx||"), gridFolder,
                      gridFolder + QStringLiteral("humber.gtx"));
    Click(10, QStringLiteral("browseFile"));
    EXPECT_EQ(Control<QLineEdit>(10, QStringLiteral("fileEdit"))->text(),
              QStringLiteral("humber.gtx"));
    nextTo(9);
    nextTo(13);
    Click(13, QStringLiteral("applyPostCorrection"));
    typeText(13, "eastingEdit", QString::number(offsetE));
    typeText(13, "northingEdit", QString::number(offsetN));
    typeText(13, "zEdit", QString::number(offsetZ));
    nextTo(11);
    saveInNewGroup(kSiteGroup);
    nextTo(12);
    finish();
    ASSERT_TRUE(saved(kSiteGroup, name));

    const GeoPoint grid = convertWithStored(kUk, kBng, kHeight - kSeparation);
    const GeoPoint created = convertWithCreated(kSiteGroup, name);
    expectNear(created,
               GeoPoint{grid.x + offsetE, grid.y + offsetN, kHeight - kSeparation + offsetZ, 0},
               kSame);
    // and back: the offsets and the geoid height are undone (the way back through the
    // datum transformation is good to a few millimetres, not to the last digit)
    OrvGeoCoordSysBase* cs = wizard.GetCreatedCoordSys();
    ASSERT_NE(cs, nullptr);
    GeoPoint back = created;
    ASSERT_TRUE(cs->Inverse(back)) << cs->LastError().toStdString();
    constexpr double kRoundTripDegrees = 1e-7; // about a centimetre
    EXPECT_NEAR(back.x, kLat, kRoundTripDegrees);
    EXPECT_NEAR(back.y, kLon, kRoundTripDegrees);
    EXPECT_NEAR(back.z, kHeight, 1e-3);
}

// The headings of the pages a walk passes after the unit page.
TEST_F(EndToEnd, PagesShowTheirHeadings) {
    const std::pair<int, const char*> headings[] = {
        {7, "Projection"},      {8, "Select Projection"},       {9, "Projection Parameters"},
        {10, "Geoid Model"},    {11, "Save Coordinate System"}, {12, "Coordinate System Overview"},
        {13, "Post Correction"}};
    for (const auto& [page, heading] : headings)
        EXPECT_EQ(Page(page)->Title(), QString::fromLatin1(heading)) << page;
}
