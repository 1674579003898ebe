// Geoid models, chart datums and post corrections.
#include "EngineTestSupport.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <proj.h>

#include <cmath>

using namespace EngineTest;

namespace {

// A common data folder with small exact grids over 50..54 N, 2..8 E.
class CommonFolder : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_dir.isValid()); }
    QString common() const { return m_dir.path(); }
    void Grid(const QString& relative, float value) {
        ASSERT_TRUE(WriteGtx(QDir(common()).filePath(relative), 50, 2, 1, 1, 5, 7,
                             std::vector<float>(35, value)));
    }
    PipelineOptions Options() const {
        PipelineOptions o;
        o.commonFolder = common();
        return o;
    }
    QTemporaryDir m_dir;
};

SystemDefinition WithGeoid(const char* method, const char* file) {
    SystemDefinition def = Utm(31, true);
    def.system.geoidOn = true;
    def.system.geoidMethod = QString::fromLatin1(method);
    def.system.geoidFile = QString::fromLatin1(file);
    return def;
}

GeoPoint Fwd(GeoCoordSys& cs, double lat, double lon, double h) {
    GeoPoint p{lat, lon, h, 0};
    EXPECT_TRUE(cs.Forward(p)) << cs.LastError().toStdString();
    return p;
}

} // namespace

TEST(Geoid, Egm96EqualsProjCompoundSystem) {
    GeoCoordSys cs;
    ASSERT_TRUE(cs.Define(WithGeoid("EGM96", ""))) << cs.LastError().toStdString();
    PJ* ref = proj_create_crs_to_crs(PJ_DEFAULT_CTX, "EPSG:4979", "EPSG:32631+5773", nullptr);
    ASSERT_NE(ref, nullptr);
    for (const auto& [lat, lon] : {std::pair{52.0, 4.0}, {45.5, 1.2}, {60.1, 5.9}, {0.5, 3.3}}) {
        PJ_COORD c = proj_trans(ref, PJ_FWD, proj_coord(lat, lon, 100, HUGE_VAL));
        // A ballpark fallback (no grid) would make this check meaningless.
        PJ* used = proj_trans_get_last_used_operation(ref);
        ASSERT_NE(used, nullptr);
        const char* def = proj_as_proj_string(PJ_DEFAULT_CTX, used, PJ_PROJ_5, nullptr);
        ASSERT_NE(std::string(def ? def : "").find("vgridshift"), std::string::npos);
        proj_destroy(used);
        const GeoPoint p = Fwd(cs, lat, lon, 100);
        EXPECT_NEAR(p.z, c.xyz.z, 1e-6);
        EXPECT_NEAR(p.x, c.xyz.x, 1e-6);
        EXPECT_NEAR(p.y, c.xyz.y, 1e-6);
    }
    proj_destroy(ref);
}

TEST_F(CommonFolder, GridFromTheCountryFolderAndItsDomain) {
    Grid(QStringLiteral("General/Geoidmodels/Netherlands/test.gtx"), 10.5f);
    GeoCoordSys cs;
    ASSERT_TRUE(cs.Define(WithGeoid("GTX Geoid Grid", "TEST.gtx"), Options()))
        << cs.LastError().toStdString();
    EXPECT_NEAR(Fwd(cs, 52, 4, 100).z, 89.5, 1e-6);
    // Outside the grid: an error for the point, which stays as it was.
    GeoPoint outside{40, 4, 100, 0};
    EXPECT_FALSE(cs.Forward(outside));
    EXPECT_EQ(outside.x, 40);
    EXPECT_EQ(outside.z, 100);
    EXPECT_FALSE(cs.LastError().isEmpty());
    // Back from the grid height to the ellipsoidal height.
    GeoPoint p = Fwd(cs, 52, 4, 100);
    ASSERT_TRUE(cs.Inverse(p));
    EXPECT_NEAR(p.z, 100, 1e-6);
}

TEST_F(CommonFolder, ManualSeparation) {
    SystemDefinition def = WithGeoid("Manual Separation", "");
    def.system.geoidSeparation = 47.25;
    GeoCoordSys cs;
    ASSERT_TRUE(cs.Define(def, Options()));
    EXPECT_NEAR(Fwd(cs, 52, 4, 100).z, 52.75, 1e-9);
}

TEST_F(CommonFolder, ChartDatumGridsFollowTheVDatumFolders) {
    Grid(QStringLiteral("vdatum/core/MODEL1.gtx"), 20.0f);
    Grid(QStringLiteral("vdatum/MODEL1/tss.gtx"), 0.3f);
    Grid(QStringLiteral("vdatum/MODEL1/mllw.gtx"), -1.2f);
    SystemDefinition def = WithGeoid("VDatum", "MODEL1");
    GeoCoordSys cs;
    ASSERT_TRUE(cs.Define(def, Options())) << cs.LastError().toStdString();
    EXPECT_NEAR(Fwd(cs, 52, 4, 100).z, 80.0, 1e-5); // orthometric, no chart datum
    def.system.chartDatum = QStringLiteral("LMSL");
    ASSERT_TRUE(cs.Define(def, Options())) << cs.LastError().toStdString();
    EXPECT_NEAR(Fwd(cs, 52, 4, 100).z, 79.7, 1e-5);
    def.system.chartDatum = QStringLiteral("MLLW");
    ASSERT_TRUE(cs.Define(def, Options())) << cs.LastError().toStdString();
    EXPECT_NEAR(Fwd(cs, 52, 4, 100).z, 80.9, 1e-5);
    // A chart datum without its grid is refused, not silently zero.
    def.system.chartDatum = QStringLiteral("MHW");
    EXPECT_FALSE(cs.Define(def, Options()));
    EXPECT_TRUE(cs.LastError().contains(QStringLiteral("mhw"))) << cs.LastError().toStdString();
}

TEST_F(CommonFolder, UnreadableOrMissingModelFilesAreRefused) {
    QDir().mkpath(common() + QStringLiteral("/General/Geoidmodels"));
    QFile bin(common() + QStringLiteral("/General/Geoidmodels/quasi.BIN"));
    ASSERT_TRUE(bin.open(QIODevice::WriteOnly));
    bin.write("not a grid");
    bin.close();
    GeoCoordSys cs;
    EXPECT_FALSE(cs.Define(WithGeoid("GCG Quasigeoid", "quasi.BIN"), Options()));
    EXPECT_TRUE(cs.LastError().contains(QStringLiteral("format"))) << cs.LastError().toStdString();
    EXPECT_FALSE(cs.Define(WithGeoid("GTX Geoid Grid", "nowhere.gtx"), Options()));
    EXPECT_TRUE(cs.LastError().contains(QStringLiteral("cannot be found")));
    EXPECT_FALSE(cs.IsDefined());
    EXPECT_FALSE(cs.Define(WithGeoid("No Such Method", "x.gtx"), Options()));
}

TEST(PostCorrection, EachStepAndTheirOrder) {
    GeoCoordSys plain;
    ASSERT_TRUE(plain.Define(Utm(31, true)));
    const GeoPoint base = Fwd(plain, 52, 4, 100);

    SystemDefinition def = Utm(31, true);
    def.system.post.on = true;
    def.system.post.e = 10;
    def.system.post.n = -20;
    def.system.post.z = 0.5;
    GeoCoordSys cs;
    ASSERT_TRUE(cs.Define(def));
    GeoPoint p = Fwd(cs, 52, 4, 100);
    EXPECT_NEAR(p.x, base.x + 10, 1e-6);
    EXPECT_NEAR(p.y, base.y - 20, 1e-6);
    EXPECT_NEAR(p.z, base.z + 0.5, 1e-9);

    // Horizontal adjustment: scale and counter-clockwise rotation about an origin.
    def = Utm(31, true);
    def.system.post.horOn = true;
    def.system.post.horOriginE = 600000;
    def.system.post.horOriginN = 5700000;
    def.system.post.horScale = 1.0001;
    def.system.post.horRotation = 36; // arc-seconds
    ASSERT_TRUE(cs.Define(def));
    p = Fwd(cs, 52, 4, 100);
    const double t = 36.0 / 3600.0 * M_PI / 180.0;
    const double de = base.x - 600000, dn = base.y - 5700000;
    EXPECT_NEAR(p.x, 600000 + 1.0001 * (de * std::cos(t) - dn * std::sin(t)), 1e-6);
    EXPECT_NEAR(p.y, 5700000 + 1.0001 * (de * std::sin(t) + dn * std::cos(t)), 1e-6);
    EXPECT_NEAR(p.z, base.z, 1e-9);

    // Vertical adjustment: an inclined plane, slopes in ppm, about its origin.
    def = Utm(31, true);
    def.system.post.vertOn = true;
    def.system.post.vertOriginE = 600000;
    def.system.post.vertOriginN = 5700000;
    def.system.post.vertSlopeE = 2;
    def.system.post.vertSlopeN = -3;
    ASSERT_TRUE(cs.Define(def));
    p = Fwd(cs, 52, 4, 100);
    EXPECT_NEAR(p.x, base.x, 1e-9);
    EXPECT_NEAR(p.z, base.z + 2e-6 * de - 3e-6 * dn, 1e-9);

    // All three: adjustment first, plane on the adjusted position, translation last.
    def.system.post.horOn = true;
    def.system.post.horOriginE = 600000;
    def.system.post.horOriginN = 5700000;
    def.system.post.horScale = 1.0001;
    def.system.post.horRotation = 36;
    def.system.post.on = true;
    def.system.post.e = 10;
    def.system.post.z = 0.5;
    ASSERT_TRUE(cs.Define(def));
    p = Fwd(cs, 52, 4, 100);
    const double ae = 1.0001 * (de * std::cos(t) - dn * std::sin(t));
    const double an = 1.0001 * (de * std::sin(t) + dn * std::cos(t));
    EXPECT_NEAR(p.x, 600000 + ae + 10, 1e-6);
    EXPECT_NEAR(p.z, base.z + 2e-6 * ae - 3e-6 * an + 0.5, 1e-6);
    // and the inverse undoes them all
    ASSERT_TRUE(cs.Inverse(p));
    EXPECT_NEAR(p.x, 52, 1e-10);
    EXPECT_NEAR(p.y, 4, 1e-10);
    EXPECT_NEAR(p.z, 100, 1e-6);
}

TEST(PostCorrection, Ntv2ShiftModelOnTheLocalPosition) {
    // ntf_r93.gsb from proj-data: applied between the datum transformation and the
    // projection, as a PROJ hgridshift.
    SystemDefinition def = Utm(31, true);
    def.system.post.on = true;
    def.system.post.modelName = QStringLiteral("NTv2 Shift Model");
    def.system.post.modelFile = QStringLiteral("ntf_r93.gsb");
    GeoCoordSys cs;
    ASSERT_TRUE(cs.Define(def)) << cs.LastError().toStdString();
    PJ* ref = proj_create(PJ_DEFAULT_CTX,
                          "+proj=pipeline +step +proj=axisswap +order=2,1 +step +proj=unitconvert "
                          "+xy_in=deg +xy_out=rad +step +proj=hgridshift +grids=ntf_r93.gsb "
                          "+step +proj=utm +zone=31 +ellps=WGS84");
    ASSERT_NE(ref, nullptr);
    const PJ_COORD c = proj_trans(ref, PJ_FWD, proj_coord(47, 2.5, 0, HUGE_VAL));
    proj_destroy(ref);
    const GeoPoint p = Fwd(cs, 47, 2.5, 0);
    EXPECT_NEAR(p.x, c.xyz.x, 1e-6);
    EXPECT_NEAR(p.y, c.xyz.y, 1e-6);
    GeoCoordSys plain;
    ASSERT_TRUE(plain.Define(Utm(31, true)));
    EXPECT_GT(std::abs(Fwd(plain, 47, 2.5, 0).x - p.x), 1.0); // the shift is real

    def.system.post.modelName = QStringLiteral("OSTN");
    def.system.post.modelFile = QStringLiteral("/usr/share/proj/nad.lst");
    EXPECT_FALSE(cs.Define(def));
    EXPECT_TRUE(cs.LastError().contains(QStringLiteral("format"))) << cs.LastError().toStdString();
    def.system.post.modelName = QStringLiteral("Polynomial Correction");
    EXPECT_FALSE(cs.Define(def));
    EXPECT_TRUE(cs.LastError().contains(QStringLiteral("not implemented")));
}

TEST(Arrays, BadPointsFailAloneAndStayUnchanged) {
    SystemDefinition def = Utm(31, true);
    def.unit.metersPerUnit = 0.3048;
    def.unit.name = QStringLiteral("Foot");
    def.projection.unitName = QStringLiteral("Metre");
    PipelineOptions options;
    options.projectionUnitFactor = 1.0; // projection lengths in metres, results in feet
    GeoCoordSys cs;
    ASSERT_TRUE(cs.Define(def, options)) << cs.LastError().toStdString();
    std::vector<GeoPoint> points(10000);
    for (std::size_t i = 0; i < points.size(); ++i)
        points[i] = {45 + (i % 100) * 0.1, 1 + (i % 37) * 0.1, double(i % 50), 0};
    points[17] = {95, 3, 1, 0};    // beyond the pole
    points[5000] = {NAN, 3, 1, 0}; // not a number
    std::vector<GeoPoint> input = points;
    std::vector<char> ok(points.size());
    EXPECT_EQ(cs.ForwardArray(points.data(), reinterpret_cast<bool*>(ok.data()), points.size()),
              points.size() - 2);
    EXPECT_FALSE(ok[17]);
    EXPECT_FALSE(ok[5000]);
    EXPECT_TRUE(ok[18]);
    EXPECT_EQ(points[17].x, 95);
    EXPECT_FALSE(cs.LastError().isEmpty());
    // Feet: the origin of zone 31 is 500000 m east.
    GeoPoint origin{0, 3, 0, 0};
    ASSERT_TRUE(cs.Forward(origin));
    EXPECT_NEAR(origin.x, 500000 / 0.3048, 1e-6);
    // Back again
    EXPECT_EQ(cs.InverseArray(points.data(), reinterpret_cast<bool*>(ok.data()), points.size()),
              points.size() - 1); // the NaN point stays NaN
    for (std::size_t i : {0u, 18u, 9999u}) {
        EXPECT_NEAR(points[i].x, input[i].x, 1e-9);
        EXPECT_NEAR(points[i].y, input[i].y, 1e-9);
        EXPECT_NEAR(points[i].z, input[i].z, 1e-6);
    }
}
