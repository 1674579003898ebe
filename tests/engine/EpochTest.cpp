// Observation epochs: a point's epoch is a year from 1900 to 2200 or 0 (the stored default);
// a 15-value transformation needs the epoch of its parameters.
#include "EngineTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace EngineTest;

namespace {

SystemDefinition TimeDependent() {
    SystemDefinition def = Utm(55, false, Ellipsoid("GRS 1980", 6378137, 298.257222101));
    def.dtf.name = QStringLiteral("GDA94 to WGS 84 (test)");
    def.dtf.methodIndex = DTF_15_COORDINATE_FRAME;
    def.dtf.values = {-0.08468,  -0.01942,  0.03201,   -0.0004254, 0.0022578,
                      0.0024015, 0.00971,   0.00142,   0.00134,    0.00090,
                      0.0015461, 0.0011820, 0.0011551, 0.000109,   1994.0};
    return def;
}

SystemDefinition SevenValues() {
    SystemDefinition def = Utm(31, true, Ellipsoid("International 1924", 6378388, 297));
    def.dtf.name = QStringLiteral("ED50 to WGS 84 (test)");
    def.dtf.methodIndex = DTF_7_POSITION_VECTOR;
    def.dtf.values = {-87, -98, -121};
    return def;
}

const double NotANumber = std::numeric_limits<double>::quiet_NaN();

} // namespace

TEST(Epochs, APointWithAnEpochThatIsNoYearIsRefusedAlone) {
    for (const SystemDefinition& def : {TimeDependent(), SevenValues()}) {
        GeoCoordSys cs;
        ASSERT_TRUE(cs.Define(def)) << cs.LastError().toStdString();
        const double lat = def.dtf.methodIndex == DTF_15_COORDINATE_FRAME ? -37.8 : 52.0;
        const double lon = def.dtf.methodIndex == DTF_15_COORDINATE_FRAME ? 145.0 : 3.0;
        for (double time : {3000.0, 2025e3, -5.0, 1899.99, 2200.01, 1.0, NotANumber,
                            std::numeric_limits<double>::infinity()}) {
            GeoPoint p{lat, lon, 10, time};
            EXPECT_FALSE(cs.Forward(p)) << time;
            EXPECT_TRUE(cs.LastError().contains(QStringLiteral("observation epoch")))
                << cs.LastError().toStdString();
            EXPECT_EQ(p.x, lat);
            EXPECT_EQ(p.y, lon);
            GeoPoint grid{500000, 5800000, 0, time};
            EXPECT_FALSE(cs.Inverse(grid)) << time;
        }
        for (double time : {0.0, 1900.0, 2024.5, 2200.0}) {
            GeoPoint p{lat, lon, 10, time};
            EXPECT_TRUE(cs.Forward(p)) << time << ": " << cs.LastError().toStdString();
            EXPECT_EQ(p.time, time);
        }

        // In a batch only the points with a wrong epoch fail.
        GeoPoint points[4] = {
            {lat, lon, 0, 2024.0}, {lat, lon, 0, 20240.0}, {lat, lon, 0, 0}, {lat, lon, 0, -1}};
        bool ok[4] = {};
        EXPECT_EQ(cs.ForwardArray(points, ok, 4), 2u);
        EXPECT_TRUE(ok[0]);
        EXPECT_FALSE(ok[1]);
        EXPECT_TRUE(ok[2]);
        EXPECT_FALSE(ok[3]);
        EXPECT_EQ(points[1].x, lat);
        EXPECT_EQ(points[1].time, 20240.0);
        EXPECT_TRUE(cs.LastError().contains(QStringLiteral("20240")))
            << cs.LastError().toStdString();
    }
}

TEST(Epochs, AFifteenValueTransformationWithoutItsEpochIsNotDefined) {
    SystemDefinition def = TimeDependent();
    def.dtf.values[14] = 0;
    GeoCoordSys cs;
    EXPECT_FALSE(cs.Define(def));
    EXPECT_TRUE(cs.LastError().contains(QStringLiteral("Datum Epoch")))
        << cs.LastError().toStdString();

    def = TimeDependent();
    def.dtf.obsEpoch = 5; // a default observation epoch that is no year
    EXPECT_FALSE(cs.Define(def));
    EXPECT_TRUE(cs.LastError().contains(QStringLiteral("default observation epoch")))
        << cs.LastError().toStdString();

    def.dtf.obsEpoch = 2020.0;
    EXPECT_TRUE(cs.Define(def)) << cs.LastError().toStdString();
}
