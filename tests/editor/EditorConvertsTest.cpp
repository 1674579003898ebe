// Each change a surveyor makes in the editor is saved and converts as expected afterwards: the
// system converts like a reference system stored with the same change through the library
// (or by the exact difference the change makes), and a coordinate system object defined
// before the save converts with the new values at once.
#include "EditorTestSupport.h"

#include "api/GeoKeys.h"
#include "api/OrvGeoFactories.h"
#include "dialogs/NewUnitDlg.h"
#include "resources/StringTable.h"

#include <QPlainTextEdit>

namespace {

const QString kRef = QStringLiteral("Reference");
// WGS 84 positions inside the model grids (50..54 N, 2..8 E).
const GeoPoint kPoints[] = {{52.0, 4.0, 50.0, 0.0}, {51.5, 3.2, 10.0, 0.0}};

class Converting : public EditorTest {
protected:
    void ExpectWarning() {
        ui.ExpectMessage(LoadOrvString(StrId::EditorSharedChangeWarning),
                         LoadOrvString(StrId::WarningCaption), MsgButtons::OkCancel, MsgAnswer::Ok);
    }
    // The edited system converts as the reference does.
    void ExpectConvertsLike(const QString& system, const QString& reference) {
        for (const GeoPoint& p : kPoints) {
            const GeoPoint got = Forward(kGroup, system, p);
            const GeoPoint want = Forward(kGroup, reference, p);
            EXPECT_NEAR(got.x, want.x, 1e-9) << system.toStdString();
            EXPECT_NEAR(got.y, want.y, 1e-9) << system.toStdString();
            EXPECT_NEAR(got.z, want.z, 1e-9) << system.toStdString();
        }
    }
    // Both differ before the change, so that the comparison shows the change was saved.
    void ExpectDiffersFrom(const QString& system, const QString& reference) {
        const GeoPoint got = Forward(kGroup, system, kPoints[0]);
        const GeoPoint want = Forward(kGroup, reference, kPoints[0]);
        EXPECT_TRUE(got.x != want.x || got.y != want.y || got.z != want.z);
    }
    static DtfValues RigValues() {
        return {-87.5,  -98.25, -121.125, 0.25,   -0.125,  0.5,     1.5,   0.001,
                -0.002, 0.003,  0.0001,   0.0002, -0.0003, 0.00005, 2010.0};
    }
    void SetUtmRows(OrvGeoStaticDataBase& s, double meridian, double falseNorthing,
                    const QString& zone, const QString& hemisphere) {
        s.SetUtmMode(true);
        s.SetUtmZoneText(zone);
        s.SetUtmHemisphereText(hemisphere);
        PrjParamBlock block;
        block.count = 5;
        block.values = {0.0, meridian, 0.9996, 1640416.666667, falseNorthing};
        s.SetProjectionParameters(block, {QString(), QString(), QString(), QString(), QString()},
                                  {QStringLiteral("Latitude of natural origin"),
                                   QStringLiteral("Longitude of natural origin"),
                                   QStringLiteral("Scale factor at natural origin"),
                                   QStringLiteral("False easting"),
                                   QStringLiteral("False northing")},
                                  {PRM_LATITUDE, PRM_LONGITUDE, PRM_SCALE, PRM_LENGTH, PRM_LENGTH});
    }
};

} // namespace

// A shift of the 15-value transformation: saved, and a coordinate system object defined before
// the save converts with the new shift at once.
TEST_F(Converting, AShiftValue) {
    StoreRig();
    StoreRig(kRef);
    Change(kRef, [](OrvGeoStaticDataBase& s) {
        DtfValues values = RigValues();
        values[0] = -88.0;
        s.SetDtfParameters(values, 0, 0.0, 0.0);
    });
    ExpectDiffersFrom(kRig, kRef);
    std::unique_ptr<OrvGeoCoordSysBase> held(
        OrvGeoCoordSysList::GetCoordSysList().Create(data.dllType()));
    ASSERT_TRUE(held->DefineSystem(kGroup, kRig, {}, {}, {}, {}, {}, {}, QStringLiteral("none")));
    GeoPoint before = kPoints[0];
    ASSERT_TRUE(held->Forward(before));

    Open(kGroup, kRig);
    SetText(QStringLiteral("shiftXEdit"), QStringLiteral("-88"));
    ExpectWarning();
    PressOk();
    ExpectConvertsLike(kRig, kRef);
    GeoPoint after = kPoints[0];
    ASSERT_TRUE(held->Forward(after)) << held->LastError().toStdString();
    const GeoPoint want = Forward(kGroup, kRef, kPoints[0]);
    EXPECT_NEAR(after.x, want.x, 1e-9);
    EXPECT_NEAR(after.y, want.y, 1e-9);
    EXPECT_NE(after.x, before.x);
}

// Another method: seven values instead of fifteen (the rates and the epoch go). The rotation
// sign of a coordinate frame method changes nothing the engine does with the same values held.
TEST_F(Converting, TheTransformationMethod) {
    StoreRig();
    StoreRig(kRef);
    Change(kRef, [](OrvGeoStaticDataBase& s) {
        DtfValues values = RigValues();
        for (int i = 7; i < 15; ++i)
            values[i] = 0.0;
        s.SetDtfMethod(QStringLiteral("Position Vector (7 parameters)"), DTF_7_POSITION_VECTOR);
        s.SetDtfParameters(values, 0, 0.0, 0.0);
    });
    ExpectDiffersFrom(kRig, kRef);
    Open(kGroup, kRig);
    Choose(QStringLiteral("dtfMethodCombo"), QStringLiteral("Position Vector (7 parameters)"));
    ExpectWarning(); // the rates of the stored transformation changed with it
    PressOk();
    ExpectConvertsLike(kRig, kRef);

    Open(kGroup, kRig);
    Choose(QStringLiteral("dtfMethodCombo"), QStringLiteral("Coordinate Frame (7 parameters)"));
    PressOk(); // the values are unchanged: no warning
    ExpectConvertsLike(kRig, kRef);
}

TEST_F(Converting, TheUtmZone) {
    StoreRig();
    StoreRig(kRef);
    Change(kRef, [this](OrvGeoStaticDataBase& s) {
        SetUtmRows(s, 9.0, 0.0, QStringLiteral("Zone 32     (  9 E)"), QStringLiteral("Northern"));
    });
    ExpectDiffersFrom(kRig, kRef);
    Open(kGroup, kRig);
    Choose(QStringLiteral("utmZoneCombo"), QStringLiteral("Zone 32     (  9 E)"));
    ExpectWarning();
    PressOk();
    ExpectConvertsLike(kRig, kRef);
}

TEST_F(Converting, TheHemisphere) {
    StoreRig();
    StoreRig(kRef);
    Change(kRef, [this](OrvGeoStaticDataBase& s) {
        SetUtmRows(s, 3.0, 10000000.0, QStringLiteral("Zone 31     (  3 E)"),
                   QStringLiteral("Southern"));
    });
    ExpectDiffersFrom(kRig, kRef);
    Open(kGroup, kRig);
    Choose(QStringLiteral("hemisphereCombo"), QStringLiteral("Southern"));
    ExpectWarning();
    PressOk();
    ExpectConvertsLike(kRig, kRef);
}

// A unit created on the spot converts the projection's lengths: the grid coordinates come out
// in the new unit, the same place.
TEST_F(Converting, TheUnitWithItsConversion) {
    StoreHarbour();
    GeoPoint before[2] = {Forward(kGroup, kHarbour, kPoints[0]),
                          Forward(kGroup, kHarbour, kPoints[1])};
    Open(kGroup, kHarbour);
    ui.ExpectModal<NewUnitDlg>([](NewUnitDlg& d) {
        d.findChild<QLineEdit*>(QStringLiteral("nameEdit"))->setText(QStringLiteral("Perch"));
        d.findChild<QLineEdit*>(QStringLiteral("factorEdit"))->setText(QStringLiteral("5.0292"));
        d.findChild<QPlainTextEdit*>(QStringLiteral("suffixEdit"))
            ->setPlainText(QStringLiteral("p"));
        d.accept();
        return d.result();
    });
    ui.ExpectMessage(LoadOrvString(StrId::UnitCreateConvertQuestion), QString(), MsgButtons::YesNo,
                     MsgAnswer::Yes);
    Click(QStringLiteral("unitNewButton"));
    PressOk();
    for (int i = 0; i < 2; ++i) {
        const GeoPoint after = Forward(kGroup, kHarbour, kPoints[i]);
        EXPECT_NEAR(after.x, before[i].x / 5.0292, 1e-5);
        EXPECT_NEAR(after.y, before[i].y / 5.0292, 1e-5);
    }
    QString projection;
    db->GetSystemProjectionName(projection, kGroup, kHarbour);
    EXPECT_EQ(projection, QStringLiteral("Harbour TM_Perch"));
    EXPECT_EQ(db->GetCoordSysUnitName(kGroup, kHarbour), QStringLiteral("Perch"));
}

// Another geoid file, chosen in the file dialog.
TEST_F(Converting, TheGeoidFile) {
    ModelFolders models(data.path());
    StoreRig();
    StoreRig(kRef);
    Change(kRef, [](OrvGeoStaticDataBase& s) { s.SetGeoidFile(QStringLiteral("site.gtx")); });
    ExpectDiffersFrom(kRig, kRef);
    Open(kGroup, kRig);
    ui.ExpectFileOpen(LoadOrvString(StrId::FilterRdGeoid) + QStringLiteral("|*.gtx||"),
                      models.Common() + QStringLiteral("General/Geoidmodels/Netherlands/"),
                      models.Common() + QStringLiteral("General/Geoidmodels/Netherlands/site.gtx"));
    Click(QStringLiteral("geoidFileButton"));
    PressOk();
    EXPECT_EQ(db->GetGeoidModelFile(kGroup, kRig), QStringLiteral("site.gtx"));
    ExpectConvertsLike(kRig, kRef);
}

// Another chart datum of the vertical datum transformation: heights reduced to MLLW (-1.2 m
// from the mean sea level) instead of LMSL (0.3 m from the model), 1.2 m higher.
TEST_F(Converting, TheChartDatum) {
    ModelFolders models(data.path());
    StoreHarbour(QStringLiteral("Tide"));
    Change(QStringLiteral("Tide"), [](OrvGeoStaticDataBase& s) {
        s.SetGeoidEnabled(true);
        s.SetGeoidMethod(QString::fromWCharArray(GeoidmodelTypeKeys[GeoidKey::ChartDatum]));
        s.SetGeoidFile(QStringLiteral("MODEL1"));
        s.SetChartDatum(QStringLiteral("LMSL"));
    });
    const GeoPoint before = Forward(kGroup, QStringLiteral("Tide"), kPoints[0]);
    EXPECT_NEAR(before.z, 50.0 - 20.0 - 0.3, 1e-5);
    Open(kGroup, QStringLiteral("Tide"));
    Choose(QStringLiteral("chartDatumCombo"), QStringLiteral("MLLW"));
    PressOk();
    EXPECT_EQ(db->GetChartDatum(kGroup, QStringLiteral("Tide")), QStringLiteral("MLLW"));
    const GeoPoint after = Forward(kGroup, QStringLiteral("Tide"), kPoints[0]);
    EXPECT_NEAR(after.z, 50.0 - 20.0 - 0.3 + 1.2, 1e-5);
    EXPECT_NEAR(after.x, before.x, 1e-3); // the height moves the position a little
}

// Post offsets: the translation and the horizontal adjustment's values.
TEST_F(Converting, ThePostOffsets) {
    StoreRig();
    StoreRig(kRef);
    Change(kRef, [](OrvGeoStaticDataBase& s) {
        s.SetPostTranslation(20.5, -4.25, 1.75);
        s.SetPostHorAdjust(1.0002, 1640000.0, 5000.0, 1.5);
    });
    ExpectDiffersFrom(kRig, kRef);
    Open(kGroup, kRig);
    SetText(QStringLiteral("translationEEdit"), QStringLiteral("20.5"));
    SetText(QStringLiteral("translationZEdit"), QStringLiteral("1.75"));
    SetText(QStringLiteral("horScaleEdit"), QStringLiteral("1.0002"));
    PressOk();
    ExpectConvertsLike(kRig, kRef);
}
