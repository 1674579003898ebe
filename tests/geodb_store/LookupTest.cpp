#include "StoreTestSupport.h"

#include "api/ProjectionMethods.h"

#include <gtest/gtest.h>

namespace {

using StoreLookup = StoreTest;

QStringList Lines(const QString& text) {
    EXPECT_TRUE(text.endsWith(QStringLiteral("\r\n")));
    QStringList lines = text.split(QStringLiteral("\r\n"));
    lines.removeLast();
    for (const QString& line : lines)
        EXPECT_FALSE(line.contains(QLatin1Char('\n')) || line.contains(QLatin1Char('\r')));
    return lines;
}

} // namespace

TEST_F(StoreLookup, ListsAreSortedWithoutRegardToCaseAndFollowTheScope) {
    ASSERT_TRUE(m_db->AddUnit(QStringLiteral("chain"), 20.1168, QStringLiteral("ch")));
    QStringList units;
    m_db->GetUnitNames(units);
    EXPECT_EQ(units, (QStringList{QStringLiteral("chain"), QStringLiteral("Meters"),
                                  QStringLiteral("US survey foot")}));
    QStringList groups;
    m_db->GetGroupNames(groups, GEODB_SYSTEM);
    EXPECT_EQ(groups, (QStringList{QStringLiteral("Europe"), QStringLiteral("Österreich")}));
    m_db->GetGroupNames(groups, GEODB_USER);
    EXPECT_TRUE(groups.isEmpty());
    QStringList systems;
    m_db->GetSystemNames(systems, QStringLiteral("ÖSTERREICH"));
    EXPECT_EQ(systems, QStringList{QStringLiteral("DHDN / Gauß-Krüger 3")});
    m_db->GetSystemNames(systems, QStringLiteral("Asia"));
    EXPECT_TRUE(systems.isEmpty());
    QStringList ellipsoids;
    m_db->GetEllipsoidNames(ellipsoids);
    EXPECT_EQ(ellipsoids.size(), 3);
    EXPECT_EQ(ellipsoids.first(), QStringLiteral("Bessel 1841"));
}

TEST_F(StoreLookup, NameChecksIgnoreCaseAlsoBeyondAsciiAndHonourTheScope) {
    EXPECT_TRUE(m_db->SystemNameExists(QStringLiteral("ed50 / utm ZONE 31n")));
    EXPECT_TRUE(m_db->SystemNameExists(QStringLiteral("dhdn / gauß-krüger 3"), GEODB_SYSTEM));
    EXPECT_TRUE(m_db->SystemNameExists(QStringLiteral("DHDN / GAUß-KRÜGER 3"), GEODB_ALL));
    EXPECT_FALSE(m_db->SystemNameExists(QStringLiteral("ed50 / utm zone 31n"), GEODB_USER));
    EXPECT_TRUE(m_db->GroupNameExists(QStringLiteral("ÖSTERREICH")));
    EXPECT_FALSE(m_db->GroupNameExists(QStringLiteral("Osterreich")));
    EXPECT_TRUE(m_db->UnitNameExists(QStringLiteral("METERS"), GEODB_SYSTEM));
    EXPECT_FALSE(m_db->UnitNameExists(QStringLiteral("METERS"), GEODB_USER));
    EXPECT_TRUE(m_db->IsDtfOfType(QStringLiteral("ed50 to wgs 84 (1)")));
    EXPECT_FALSE(m_db->IsDtfStoredOfType(QStringLiteral("ed50 to wgs 84 (1)")));
    EXPECT_TRUE(m_db->IsPrjOfType(QStringLiteral("GAUß-KRÜGER ZONE 3")));
    // Pattern characters are plain characters.
    EXPECT_FALSE(m_db->SystemNameExists(QStringLiteral("ED50 / UTM zone 3_N")));
    EXPECT_FALSE(m_db->SystemNameExists(QStringLiteral("ED50%")));
    EXPECT_FALSE(m_db->SystemNameExists(QString()));
}

TEST_F(StoreLookup, UnknownNamesGiveEmptyAnswers) {
    const QString nobody = QStringLiteral("No such thing");
    QString out = QStringLiteral("stale");
    EXPECT_TRUE(m_db->GetSystemDtfName(out, nobody, nobody).isEmpty());
    EXPECT_TRUE(out.isEmpty());
    EXPECT_TRUE(m_db->GetCoordSysUnitName(nobody, nobody).isEmpty());
    EXPECT_TRUE(m_db->GetCoordSysPrjMethod(nobody, nobody).isEmpty());
    EXPECT_TRUE(m_db->GetProjectionInfoText(nobody).isEmpty());
    EXPECT_TRUE(m_db->GetSystemProjectionInfoText(nobody, nobody).isEmpty());
    EXPECT_TRUE(m_db->GetUnitDescription(out, nobody).isEmpty());
    EXPECT_TRUE(m_db->GetEllipsoidInfoText(out, nobody).isEmpty());
    EXPECT_TRUE(m_db->GetDtfInfoText(out, nobody).isEmpty());
    EXPECT_TRUE(m_db->GetSystemInfoText(out, nobody, nobody, {}, {}, {}, {}, {}).isEmpty());
    EXPECT_TRUE(m_db->GetCoordSysGeoidKeys(nobody, nobody).isEmpty());
    EXPECT_FALSE(m_db->SystemHasGeoidModel(nobody, nobody));
    QString suffix, description;
    double factor = 7;
    int category = 0;
    EXPECT_FALSE(m_db->GetUnitDefinition(nobody, suffix, factor, category, description));
    EllipsoidValues values{};
    EXPECT_FALSE(m_db->GetEllipsoidValues(nobody, values));
    QString group, system;
    EXPECT_FALSE(m_db->FindProjectionSystem(nobody, group, system));
    QStringList names;
    m_db->GetProjectionNamesOfMethod(names, nobody);
    EXPECT_TRUE(names.isEmpty());
    // A system looked for in the wrong group is not found.
    EXPECT_TRUE(
        m_db->GetCoordSysUnitName(QStringLiteral("Europe"), QStringLiteral("DHDN / Gauß-Krüger 3"))
            .isEmpty());
}

TEST_F(StoreLookup, SystemPartsDatumTransformationsAndProjections) {
    const QString europe = QStringLiteral("europe");
    const QString utm = QStringLiteral("ed50 / utm zone 31n");
    QString out;
    EXPECT_EQ(m_db->GetSystemDtfName(out, europe, utm), QStringLiteral("ED50 to WGS 84 (1)"));
    EXPECT_EQ(m_db->GetSystemProjectionName(out, europe, utm), QStringLiteral("UTM Zone-31N"));
    EXPECT_EQ(m_db->GetCoordSysUnitName(europe, utm), QStringLiteral("Meters"));
    EXPECT_EQ(m_db->GetCoordSysPrjMethod(europe, utm), QStringLiteral("UTM"));
    EXPECT_EQ(m_db->GetProjectionUnit(out, QStringLiteral("utm zone-31n")),
              QStringLiteral("Meters"));

    QStringList dtfs;
    m_db->GetDtfNames(dtfs, QStringLiteral("wgs 84"), QStringLiteral("INTERNATIONAL 1924"));
    EXPECT_EQ(dtfs, QStringList{QStringLiteral("ED50 to WGS 84 (1)")});
    QString src, dst;
    m_db->GetDtfEllipsoidNames(QStringLiteral("DHDN to WGS 84 (2)"), src, dst);
    EXPECT_EQ(src, QStringLiteral("WGS 84"));
    EXPECT_EQ(dst, QStringLiteral("Bessel 1841"));
    QString local;
    EllipsoidValues ev{};
    ASSERT_TRUE(m_db->GetDtfEllipsoids(QStringLiteral("DHDN to WGS 84 (2)"), local, ev));
    EXPECT_EQ(local, QStringLiteral("Bessel 1841"));
    EXPECT_DOUBLE_EQ(ev[0], 6377397.155);
    EXPECT_DOUBLE_EQ(ev[2], 299.1528128);

    QString method;
    DtfValues values{};
    std::array<double, 2> further{}, trailing{};
    unsigned char option = 0;
    ASSERT_TRUE(m_db->GetDtfParameters(QStringLiteral("ED50 TO WGS 84 (1)"), method, values,
                                       further, option, trailing));
    EXPECT_EQ(method, QStringLiteral("Position Vector (7 parameters)"));
    EXPECT_EQ(values[0], -87.0);
    EXPECT_EQ(values[6], 1.5);
    EXPECT_EQ(further[0], 5.0);
    EXPECT_EQ(further[1], 1133.0);
    EXPECT_EQ(option, DTF_OPTION_PUBLISHED_TO_WGS84);
    EXPECT_EQ(m_db->GetDtfExtraText(out, QStringLiteral("ED50 to WGS 84 (1)")),
              QStringLiteral("Europe - west"));
    EXPECT_EQ(m_db->GetDtfAuxText(out, QStringLiteral("ED50 to WGS 84 (1)")),
              QStringLiteral("Europe - west"));
    EXPECT_EQ(m_db->GetDtfDescription(out, QStringLiteral("ED50 to WGS 84 (1)")),
              QStringLiteral("Derived at 85 stations."));

    QStringList prjs;
    m_db->GetProjectionNamesOfMethod(prjs, QStringLiteral("transverse mercator"));
    EXPECT_EQ(prjs, QStringList{QStringLiteral("Gauß-Krüger Zone 3")});
    PrjParamBlock block;
    QStringList texts, names;
    QList<unsigned> types;
    m_db->GetProjectionParameters(QStringLiteral("UTM Zone-31N"), block, texts, names, types);
    ASSERT_EQ(block.count, 7);
    EXPECT_EQ(block.values[1], 3.0);
    EXPECT_EQ(names[5], QStringLiteral("UTM zone"));
    EXPECT_EQ(types[6], unsigned(PRM_HIDDEN));
    EXPECT_EQ(texts[6], QStringLiteral("Northern"));

    QString group, system;
    ASSERT_TRUE(m_db->FindProjectionSystem(QStringLiteral("utm zone-31n"), group, system));
    EXPECT_EQ(group, QStringLiteral("Europe"));
    EXPECT_EQ(system, QStringLiteral("ED50 / UTM zone 31N"));
    EXPECT_EQ(m_db->GetSatelliteEllipsoidName(out), QStringLiteral("WGS 84"));
}

TEST_F(StoreLookup, GeoidKeysAreTheStoredOnesOrEveryKeyOffered) {
    EXPECT_EQ(m_db->GetCoordSysGeoidKeys(QStringLiteral("Österreich"),
                                         QStringLiteral("DHDN / Gauß-Krüger 3")),
              QStringLiteral("EGM96,GTX Geoid Grid"));
    const QStringList offered =
        m_db->GetCoordSysGeoidKeys(QStringLiteral("Europe"), QStringLiteral("ED50 / UTM zone 31N"))
            .split(QLatin1Char(','));
    EXPECT_TRUE(offered.contains(QStringLiteral("Manual Separation")));
    EXPECT_TRUE(offered.contains(QStringLiteral("GTX Geoid Grid")));
    EXPECT_FALSE(offered.contains(QStringLiteral("None")));
    EXPECT_FALSE(offered.contains(QStringLiteral("OSTN")));
}

TEST_F(StoreLookup, InformationTextsHoldTheValuesInTheirLayout) {
    QString text;
    const QStringList ellipsoid =
        Lines(m_db->GetEllipsoidInfoText(text, QStringLiteral("international 1924")));
    ASSERT_GE(ellipsoid.size(), 8);
    EXPECT_FALSE(ellipsoid[0].startsWith(QLatin1Char('\t')));
    EXPECT_TRUE(ellipsoid[0].contains(QStringLiteral("International 1924")));
    EXPECT_TRUE(ellipsoid[1].startsWith(QStringLiteral("\tSemi-major axis")));
    EXPECT_TRUE(ellipsoid[1].contains(QStringLiteral("6378388.0000 m")));
    EXPECT_TRUE(text.contains(QStringLiteral("297.000000000")));
    EXPECT_TRUE(text.contains(QStringLiteral("EPSG code: 7022")));

    // The editor shows what follows the tab, the unit page what follows the first line feed.
    EXPECT_EQ(m_db->GetUnitDescription(text, QStringLiteral("meters")),
              QStringLiteral("Meters\tMetric Conversion Factor:1.000000\r\n"
                             "\tDescription: International metre\r\n"));
    EXPECT_EQ(text.mid(text.indexOf(QLatin1Char('\n')) + 1),
              QStringLiteral("\tDescription: International metre\r\n"));
    // A unit stored without a description still gets one worth reading.
    ASSERT_TRUE(m_db->AddUnit(QStringLiteral("chain"), 20.1168, QStringLiteral("ch")));
    EXPECT_EQ(m_db->GetUnitDescription(text, QStringLiteral("chain")),
              QStringLiteral("chain\tMetric Conversion Factor:20.116800\r\n"
                             "\tDescription: chain, 20.1168 metres (user-defined)\r\n"));

    const QStringList dtf = Lines(m_db->GetDtfInfoText(text, QStringLiteral("ED50 to WGS 84 (1)")));
    EXPECT_TRUE(text.contains(QStringLiteral("\tMethod: Position Vector (7 parameters)\r\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("\t\tShift X: -87.000000 m\r\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("\t\tScale: 1.500000 ppm\r\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("applies them inverted")));
    EXPECT_TRUE(text.contains(QStringLiteral("\tAccuracy: 5 m\r\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("\tArea of use: Europe - west\r\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("\tEPSG code: 1133\r\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("\tDescription: Derived at 85 stations.\r\n")));
    m_db->GetDtfInfoText(text, QStringLiteral("WGS 84 identity"));
    EXPECT_FALSE(text.contains(QStringLiteral("Shift X")));
    EXPECT_FALSE(text.contains(QStringLiteral("inverted")));

    const QString prj = m_db->GetProjectionInfoText(QStringLiteral("Gauß-Krüger Zone 3"));
    Lines(prj);
    EXPECT_TRUE(prj.contains(QStringLiteral("\tMethod: Transverse Mercator\r\n")));
    EXPECT_TRUE(
        prj.contains(QStringLiteral("\t\tLongitude of natural origin: 009°00'00.0000000\"E")));
    EXPECT_FALSE(prj.contains(QStringLiteral("Used by")));
    const QString sysPrj = m_db->GetSystemProjectionInfoText(
        QStringLiteral("Österreich"), QStringLiteral("DHDN / Gauß-Krüger 3"));
    EXPECT_TRUE(sysPrj.contains(QStringLiteral("\"DHDN / Gauß-Krüger 3\"")));
    EXPECT_TRUE(sysPrj.contains(QStringLiteral("False easting: 3500000.000000")));

    const QStringList sys = Lines(m_db->GetSystemInfoText(
        text, QStringLiteral("Europe"), QStringLiteral("ED50 / UTM zone 31N"), {}, {}, {}, {}, {}));
    EXPECT_EQ(sys[0], QStringLiteral("Group: Europe"));
    EXPECT_EQ(sys[1], QStringLiteral("System: ED50 / UTM zone 31N"));
    EXPECT_TRUE(text.contains(QStringLiteral("\tLocal ellipsoid: International 1924\r\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("\tDatum transformation: ED50 to WGS 84 (1)\r\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("\t\tShifts: -87.000, -98.000, -121.000 m\r\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("\t\tUTM zone: Zone 31 ( 3 E)\r\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("\t\tHemisphere: Northern\r\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("\tUnit: Meters (1 m per unit)\r\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("\tGeoid model: none\r\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("\tEPSG code: 23031\r\n")));
    EXPECT_FALSE(text.contains(QStringLiteral("UTM zone: \r\n")));
}

TEST_F(StoreLookup, MethodListsOfTheStaticData) {
    QStringList dtfMethods;
    m_sd->GetDtfMethodNames(dtfMethods);
    EXPECT_EQ(dtfMethods,
              (QStringList{QStringLiteral("None"), QStringLiteral("Position Vector (7 parameters)"),
                           QStringLiteral("Coordinate Frame (7 parameters)"),
                           QStringLiteral("Position Vector time-dependent (15 parameters)"),
                           QStringLiteral("Coordinate Frame time-dependent (15 parameters)")}));
    EXPECT_EQ(m_sd->GetDtfMethodIndex(QStringLiteral("coordinate frame (7 PARAMETERS)")), 2);
    EXPECT_EQ(m_sd->GetDtfMethodIndex(QStringLiteral("Molodensky")), -1);
    QStringList prjMethods;
    m_sd->GetPrjMethodNames(prjMethods);
    ASSERT_EQ(prjMethods.size(), qsizetype(ProjectionMethods::All().size()));
    EXPECT_EQ(prjMethods.first(), QStringLiteral("UTM"));
    EXPECT_EQ(m_sd->GetPrjMethodId(QStringLiteral("transverse mercator")), 2);
    EXPECT_EQ(m_sd->GetPrjMethodId(QStringLiteral("Bonne")), -1);
    EXPECT_TRUE(m_sd->IsUtmMethod(1));
    EXPECT_FALSE(m_sd->IsUtmMethod(2));
    EXPECT_FALSE(m_sd->IsMethodUnitFree(1));
    EXPECT_TRUE(m_sd->IsMethodUnitFree(2));
    EXPECT_TRUE(m_sd->IsMethodUnitFree(999));
    QString out;
    EXPECT_EQ(m_sd->GetSatelliteEllipsoidName(out), QStringLiteral("WGS 84"));
}

TEST_F(StoreLookup, SettingKnownNamesLoadsTheirValues) {
    m_sd->SelectLocalEllipsoid(QStringLiteral("bessel 1841"));
    QString out;
    EXPECT_EQ(m_sd->GetLocalEllipsoidName(out), QStringLiteral("bessel 1841"));
    m_sd->SetUnitName(QStringLiteral("US survey foot"));
    double factor = 0;
    m_sd->GetCurrentUnitFactor(factor);
    EXPECT_DOUBLE_EQ(factor, 1200.0 / 3937.0);
    EXPECT_EQ(m_sd->GetCurrentUnitDescription(out), QStringLiteral("US survey foot, 1200/3937 m"));
    m_sd->SetUnitName(QStringLiteral("Brand-new unit"));
    m_sd->GetCurrentUnitFactor(factor);
    EXPECT_DOUBLE_EQ(factor, 1200.0 / 3937.0); // an unknown name keeps the values given
    // The paired setters write the same fields.
    m_sd->SetGeoidModelName(QStringLiteral("EGM96"));
    EXPECT_EQ(m_sd->GetGeoidMethod(out), QStringLiteral("EGM96"));
    m_sd->SetGeoidModelFile(QStringLiteral("egm96_15.gtx"));
    EXPECT_EQ(m_sd->GetGeoidFile(out), QStringLiteral("egm96_15.gtx"));
    m_sd->SetPostText1(QStringLiteral("OSTN"));
    EXPECT_EQ(m_sd->GetPostModelName(out), QStringLiteral("OSTN"));
    m_sd->SetPostText2(QStringLiteral("OSTN15.gsb"));
    EXPECT_EQ(m_sd->GetPostModelFile(out), QStringLiteral("OSTN15.gsb"));
    m_sd->Clear();
    EXPECT_TRUE(m_sd->GetPostModelFile(out).isEmpty());
    EXPECT_EQ(m_sd->GetSatelliteEllipsoidName(out), QStringLiteral("WGS 84"));
}
