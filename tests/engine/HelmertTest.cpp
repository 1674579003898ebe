// Datum transformations: EPSG Guidance Note 7-2 examples on geocentric coordinates, and the
// whole chain against PROJ's own EPSG operation.
#include "EngineTestSupport.h"
#include "engine/EpsgReference.h"
#include "engine/PipelineBuilder.h"

#include <gtest/gtest.h>
#include <proj.h>

#include <cmath>

using namespace EngineTest;

namespace {

// Applies one helmert step of the engine to geocentric coordinates.
PJ_COORD Geocentric(const DtfRecord& dtf, double x, double y, double z, double t = HUGE_VAL) {
    const QByteArray def = PipelineBuilder::HelmertStep(dtf).toUtf8();
    PJ* pj = proj_create(PJ_DEFAULT_CTX, def.constData());
    EXPECT_NE(pj, nullptr) << def.constData();
    PJ_COORD c = proj_coord(x, y, z, t);
    if (pj)
        c = proj_trans(pj, PJ_FWD, c);
    proj_destroy(pj);
    return c;
}

// A record of values given as published for the method (coordinate frame rotations in
// their own convention); the record holds them in the position-vector sign.
DtfRecord Dtf(int method, DtfValues values, unsigned char option = 0) {
    DtfRecord d;
    d.name = QStringLiteral("test dtf");
    d.methodIndex = method;
    d.values = DtfValuesInMethodSign(values, method);
    d.option = option;
    return d;
}

} // namespace

TEST(Helmert, PositionVectorAndCoordinateFrameExamples) {
    // WGS 72 -> WGS 84: the same transformation in both conventions.
    const PJ_COORD pv = Geocentric(Dtf(DTF_7_POSITION_VECTOR, {0, 0, 4.5, 0, 0, 0.554, 0.219}),
                                   3657660.66, 255768.55, 5201382.11);
    const PJ_COORD cf = Geocentric(Dtf(DTF_7_COORDINATE_FRAME, {0, 0, 4.5, 0, 0, -0.554, 0.219}),
                                   3657660.66, 255768.55, 5201382.11);
    for (const PJ_COORD& c : {pv, cf}) {
        EXPECT_NEAR(c.xyz.x, 3657660.78, 0.01);
        EXPECT_NEAR(c.xyz.y, 255778.43, 0.01);
        EXPECT_NEAR(c.xyz.z, 5201387.75, 0.01);
    }
}

TEST(Helmert, CoordinateFrameStepTakesThePublishedRotations) {
    // held in the position-vector sign, handed to PROJ in the method's own convention
    DtfRecord held;
    held.methodIndex = DTF_7_COORDINATE_FRAME;
    held.values = {1, 2, 3, 0.5, -0.25, 0.125, 2.5};
    const QString step = PipelineBuilder::HelmertStep(held);
    EXPECT_TRUE(step.contains(u"+rx=-0.5 +ry=0.25 +rz=-0.125 +s=2.5")) << step.toStdString();
    EXPECT_TRUE(step.endsWith(u"+convention=coordinate_frame"));
    held.methodIndex = DTF_7_POSITION_VECTOR;
    EXPECT_TRUE(PipelineBuilder::HelmertStep(held).contains(u"+rx=0.5 +ry=-0.25 +rz=0.125"));
}

TEST(Helmert, TimeDependentCoordinateFrameExample) {
    // ITRF2008 -> GDA94 at epoch 2013.9 (fifteen values, rates per year).
    const DtfValues v = {-0.08468,  -0.01942,  0.03201,   -0.0004254, 0.0022578,
                         0.0024015, 0.00971,   0.00142,   0.00134,    0.00090,
                         0.0015461, 0.0011820, 0.0011551, 0.000109,   1994.0};
    const PJ_COORD c = Geocentric(Dtf(DTF_15_COORDINATE_FRAME, v), -3789470.710, 4841770.404,
                                  -1690893.958, 2013.9);
    EXPECT_NEAR(c.xyz.x, -3789470.004, 0.002);
    EXPECT_NEAR(c.xyz.y, 4841770.686, 0.002);
    EXPECT_NEAR(c.xyz.z, -1690895.114, 0.002);
    // The epoch matters: a time of 0 would be far off, the epoch itself gives no rates.
    const PJ_COORD atEpoch = Geocentric(Dtf(DTF_15_COORDINATE_FRAME, v), -3789470.710, 4841770.404,
                                        -1690893.958, 1994.0);
    EXPECT_GT(std::abs(atEpoch.xyz.x - c.xyz.x), 0.01);
}

TEST(Helmert, PublishedDirectionIsInvertedExactly) {
    // Stored as published (local -> WGS 84) with the option bit: the step is "+inv".
    const DtfRecord published = Dtf(DTF_7_POSITION_VECTOR, {-87, -98, -121, 0.1, 0.2, 0.3, 1.5},
                                    DTF_OPTION_PUBLISHED_TO_WGS84);
    EXPECT_TRUE(PipelineBuilder::HelmertStep(published).startsWith(u"+inv +proj=helmert"));
    const PJ_COORD back = Geocentric(published, 4000000, 300000, 4900000);
    // Applying the published direction to the result gives the start again (PROJ's
    // inverse is exact to the micrometre for such rotations).
    DtfRecord forward = published;
    forward.option = 0;
    const PJ_COORD start = Geocentric(forward, back.xyz.x, back.xyz.y, back.xyz.z);
    EXPECT_NEAR(start.xyz.x, 4000000, 1e-4);
    EXPECT_NEAR(start.xyz.y, 300000, 1e-4);
    EXPECT_NEAR(start.xyz.z, 4900000, 1e-4);
}

TEST(Helmert, ChainEqualsProjEpsgOperation) {
    // ED50 / UTM zone 31N through "ED50 to WGS 84 (1)" (EPSG:1133, geocentric translations,
    // published ED50 -> WGS 84).
    SystemDefinition def = Utm(31, true, Ellipsoid("International 1924", 6378388, 297));
    def.dtf =
        Dtf(DTF_7_POSITION_VECTOR, {-87, -98, -121, 0, 0, 0, 0}, DTF_OPTION_PUBLISHED_TO_WGS84);
    GeoCoordSys cs;
    ASSERT_TRUE(cs.Define(def)) << cs.LastError().toStdString();
    EpsgReference ref;
    QString why;
    ASSERT_TRUE(ref.Create(23031, 1133, why)) << why.toStdString();
    for (const auto& [lat, lon] : {std::pair{40.0, 2.0}, {52.0, 4.5}, {60.0, 0.1}, {45.3, 5.9}}) {
        double e = 0, n = 0;
        ASSERT_TRUE(ref.Forward(lat, lon, HUGE_VAL, e, n));
        GeoPoint p{lat, lon, 0, 0};
        ASSERT_TRUE(cs.Forward(p));
        EXPECT_NEAR(p.x, e, 0.001);
        EXPECT_NEAR(p.y, n, 0.001);
    }
}

TEST(Helmert, TimeDependentSystemUsesThePointsEpoch) {
    SystemDefinition def = Utm(55, false, Ellipsoid("GRS 1980", 6378137, 298.257222101));
    def.dtf = Dtf(DTF_15_COORDINATE_FRAME,
                  {-0.08468, -0.01942, 0.03201, -0.0004254, 0.0022578, 0.0024015, 0.00971, 0.00142,
                   0.00134, 0.00090, 0.0015461, 0.0011820, 0.0011551, 0.000109, 1994.0});
    def.dtf.obsEpoch = 2013.9;
    GeoCoordSys cs;
    ASSERT_TRUE(cs.Define(def)) << cs.LastError().toStdString();
    EXPECT_TRUE(cs.IsTimeDependent());
    GeoPoint noTime{-37.8, 145.0, 10, 0};
    GeoPoint given{-37.8, 145.0, 10, 2013.9};
    GeoPoint other{-37.8, 145.0, 10, 1994.0};
    ASSERT_TRUE(cs.Forward(noTime));
    ASSERT_TRUE(cs.Forward(given));
    ASSERT_TRUE(cs.Forward(other));
    // No time: the default observation epoch; the time field is given back unchanged.
    EXPECT_NEAR(noTime.x, given.x, 1e-9);
    EXPECT_NEAR(noTime.y, given.y, 1e-9);
    EXPECT_EQ(noTime.time, 0);
    EXPECT_EQ(given.time, 2013.9);
    EXPECT_GT(std::hypot(other.x - given.x, other.y - given.y), 0.01);
    // Inverse with the same epoch returns to the start.
    ASSERT_TRUE(cs.Inverse(given));
    EXPECT_NEAR(given.x, -37.8, 1e-9);
    EXPECT_NEAR(given.y, 145.0, 1e-9);
    EXPECT_NEAR(given.z, 10, 1e-4);
}
