// The projection-method table the dialogs list and the importer maps EPSG methods with.

#include "api/ProjectionMethods.h"
#include "api/GeoKeys.h"
#include "api/GeoTypes.h"

#include <QSet>
#include <QString>

#include <gtest/gtest.h>

namespace {

using namespace ProjectionMethods;

TEST(ProjectionMethods, ListsIdsOneToThirtyTwoInOrder) {
    const auto all = All();
    ASSERT_EQ(all.size(), 32u);
    QSet<QString> names;
    QSet<int> codes;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const Method& m = all[i];
        EXPECT_EQ(m.id, static_cast<int>(i) + 1);
        EXPECT_EQ(ById(m.id), &m);
        EXPECT_LE(m.params.size(), static_cast<std::size_t>(PrjParamBlock::MaxParams)) << m.name;
        EXPECT_FALSE(names.contains(QString::fromLatin1(m.name).toCaseFolded())) << m.name;
        names.insert(QString::fromLatin1(m.name).toCaseFolded());
        for (int code : m.epsgMethodCodes) {
            EXPECT_FALSE(codes.contains(code)) << "EPSG method " << code << " twice";
            codes.insert(code);
        }
        // Every computed method names its PROJ operation; only "not implemented" has none.
        EXPECT_EQ(QString::fromLatin1(m.projName).isEmpty(), m.id == NotImplementedId) << m.name;
        EXPECT_EQ(m.unitFree, m.id != UtmId) << m.name;
    }
    EXPECT_EQ(ById(0), nullptr);
    EXPECT_EQ(ById(33), nullptr);
}

TEST(ProjectionMethods, MapsEpsgCodesIncludingSharedOnes) {
    EXPECT_EQ(ByEpsgCode(9807)->id, 2);
    EXPECT_EQ(ByEpsgCode(9808)->id, 3);
    EXPECT_EQ(ByEpsgCode(9802)->id, 5);
    EXPECT_EQ(ByEpsgCode(9815)->id, 10);
    EXPECT_EQ(ByEpsgCode(9820)->id, 15);
    // Krovak with south-west and with north-east axes are one method.
    EXPECT_EQ(ByEpsgCode(9819), ByEpsgCode(1041));
    EXPECT_EQ(QString::fromLatin1(ByEpsgCode(1041)->projName), QStringLiteral("krovak"));
    // Unknown and absent codes fall to "not implemented"; UTM has no EPSG method code.
    EXPECT_EQ(ByEpsgCode(9828)->id, NotImplementedId);
    EXPECT_EQ(ByEpsgCode(0)->id, NotImplementedId);
    EXPECT_EQ(ByEpsgCode(-5)->id, NotImplementedId);
    EXPECT_TRUE(ById(UtmId)->epsgMethodCodes.empty());
}

TEST(ProjectionMethods, FindsNamesWithoutRegardToCase) {
    ASSERT_NE(ByName(QStringLiteral("transverse MERCATOR")), nullptr);
    EXPECT_EQ(ByName(QStringLiteral("transverse MERCATOR"))->id, 2);
    EXPECT_EQ(ByName(QStringLiteral("utm"))->id, UtmId);
    EXPECT_EQ(ByName(QStringLiteral("Not Implemented"))->id, NotImplementedId);
    EXPECT_EQ(ByName(QStringLiteral("Transverse Mercator ")), nullptr);
    EXPECT_EQ(ByName(QString()), nullptr);
}

TEST(ProjectionMethods, UtmRowsAreTheFixedFiveAndTheHiddenZoneAndHemisphere) {
    const Method* utm = ById(UtmId);
    ASSERT_EQ(utm->params.size(), 7u);
    const struct {
        const char* name;
        unsigned type;
        double value;
    } expected[] = {
        {"Latitude of natural origin", PRM_LATITUDE, 0},
        {"Longitude of natural origin", PRM_LONGITUDE, 0},
        {"Scale factor at natural origin", PRM_SCALE, 0.9996},
        {"False easting", PRM_LENGTH, 500000},
        {"False northing", PRM_LENGTH, 0},
        {"UTM zone", PRM_HIDDEN, 0},
        {"Hemisphere", PRM_HIDDEN, 0},
    };
    for (std::size_t i = 0; i < 7; ++i) {
        EXPECT_STREQ(utm->params[i].name, expected[i].name);
        EXPECT_EQ(utm->params[i].type, expected[i].type) << expected[i].name;
        EXPECT_DOUBLE_EQ(utm->params[i].defaultValue, expected[i].value) << expected[i].name;
    }
    EXPECT_EQ(QString::fromLatin1(utm->params[ProjectionParamZoneKey].name),
              QString::fromWCharArray(projectionParamKeys[ProjectionParamZoneKey]));
    EXPECT_EQ(QString::fromLatin1(utm->params[ProjectionParamHemisphereKey].name),
              QString::fromWCharArray(projectionParamKeys[ProjectionParamHemisphereKey]));
}

TEST(ProjectionMethods, ParametersUseTheLibrarysSpellingsAndSensibleDefaults) {
    QSet<QString> keys;
    for (const wchar_t* key : projectionParamKeys)
        keys.insert(QString::fromWCharArray(key).toCaseFolded());
    for (const Method& m : All()) {
        for (const Param& p : m.params) {
            const QString name = QString::fromLatin1(p.name);
            // A name the key table knows must be spelled exactly as there.
            if (keys.contains(name.toCaseFolded())) {
                bool exact = false;
                for (const wchar_t* key : projectionParamKeys)
                    exact = exact || QString::fromWCharArray(key) == name;
                EXPECT_TRUE(exact) << p.name;
            }
            if (p.type == PRM_SCALE && m.id != UtmId) {
                EXPECT_DOUBLE_EQ(p.defaultValue, 1.0) << m.name << ": " << p.name;
            }
            EXPECT_EQ(p.epsgCode == 0, p.type == PRM_HIDDEN) << m.name << ": " << p.name;
        }
    }
    // Hotine variant B is the one with the centre's easting and northing.
    const Method* hotineB = ByEpsgCode(9815);
    ASSERT_EQ(hotineB->params.size(), 7u);
    EXPECT_EQ(hotineB->params[5].epsgCode, 8816);
    EXPECT_EQ(hotineB->params[2].type, PRM_PLAIN); // the azimuth, decimal degrees
}

} // namespace
