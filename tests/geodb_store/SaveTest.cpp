#include "StoreTestSupport.h"

#include "util/GeobaseToGeostatic.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

class StoreSave : public StoreTest {
protected:
    // Saving must fail, say why, and leave the user database as it was.
    void ExpectRefusedSave(const QString& reasonPart) {
        const QString before = DumpDatabase(m_store.userDbPath());
        EXPECT_FALSE(m_sd->SaveCoordSys());
        EXPECT_TRUE(m_sd->LastError().contains(reasonPart, Qt::CaseInsensitive))
            << m_sd->LastError().toStdString();
        EXPECT_EQ(DumpDatabase(m_store.userDbPath()), before);
    }
    // Points the record at the pre-defined datum transformation, projection and unit of the
    // UTM system, unchanged.
    void UsePredefinedParts() {
        m_sd->SelectLocalEllipsoid(QStringLiteral("International 1924"));
        QString method;
        DtfValues values{};
        std::array<double, 2> further{}, trailing{};
        unsigned char option = 0;
        ASSERT_TRUE(m_db->GetDtfParameters(QStringLiteral("ED50 to WGS 84 (1)"), method, values,
                                           further, option, trailing));
        m_sd->SetDtfName(QStringLiteral("ED50 to WGS 84 (1)"));
        m_sd->SetDtfMethod(method, m_sd->GetDtfMethodIndex(method));
        m_sd->SetDtfParameters(values, option, trailing[0], trailing[1]);
        PrjParamBlock block;
        QStringList texts, names;
        QList<unsigned> types;
        m_db->GetProjectionParameters(QStringLiteral("UTM Zone-31N"), block, texts, names, types);
        m_sd->SetProjectionMethod(QStringLiteral("UTM"));
        m_sd->SetProjectionName(QStringLiteral("UTM Zone-31N"), 1);
        m_sd->SetUtmMode(true);
        m_sd->SetUtmZoneText(texts[5]);
        m_sd->SetUtmHemisphereText(texts[6]);
        m_sd->SetProjectionParameters(block, texts, names, types);
        m_sd->SetUnitName(QStringLiteral("Meters"));
    }
};

int RowCount(const QString& path, const QString& table) {
    return int(DumpDatabase(path)
                   .section(QStringLiteral("[%1]\n").arg(table), 1, 1)
                   .section(QLatin1Char('['), 0, 0)
                   .count(QLatin1Char('\n')));
}

} // namespace

TEST_F(StoreSave, ANewSystemWithAwkwardNamesRoundTripsThroughEveryLookUp) {
    const QString group = QStringLiteral("Nordsee 'Süd' 100% _Ølfelt_");
    const QString name = QStringLiteral("Platform \"A\" 50% _β_ O'Brien");
    FillNewSystem(*m_sd, group, name);
    m_sd->SetGeoidEnabled(true);
    m_sd->SetGeoidMethod(QStringLiteral("GTX Geoid Grid"));
    m_sd->SetGeoidFile(QStringLiteral("nlgeo2018.gtx"));
    m_sd->SetChartDatum(QStringLiteral("MLLW"));
    m_sd->SetPostTranslationOn(true);
    m_sd->SetPostTranslation(1.25, -2.5, 0.125);
    m_sd->SetPostModelName(QStringLiteral("NTv2 Shift Model"));
    m_sd->SetPostModelFile(QStringLiteral("rdtrans2018.gsb"));
    m_sd->SetPostHorAdjustOn(true);
    m_sd->SetPostHorAdjust(1.0000125, 155000.0, 463000.0, 0.75);
    ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();

    EXPECT_TRUE(m_db->SystemNameExists(name.toUpper(), GEODB_USER));
    EXPECT_FALSE(m_db->SystemNameExists(name, GEODB_SYSTEM));
    EXPECT_TRUE(m_db->GroupNameExists(group.toLower(), GEODB_USER));
    QStringList list;
    m_db->GetGroupNames(list, GEODB_USER);
    EXPECT_EQ(list, QStringList{group});
    m_db->GetSystemNames(list, group);
    EXPECT_EQ(list, QStringList{name});
    QString out;
    const QString dtf = name + QStringLiteral("-dtf");
    const QString prj = name + QStringLiteral("-Prj");
    const QString unit = name + QStringLiteral("-unit");
    EXPECT_EQ(m_db->GetSystemDtfName(out, group, name), dtf);
    EXPECT_EQ(m_db->GetSystemProjectionName(out, group, name), prj);
    EXPECT_EQ(m_db->GetCoordSysUnitName(group, name), unit);
    EXPECT_EQ(m_db->GetCoordSysPrjMethod(group, name), QStringLiteral("Transverse Mercator"));
    EXPECT_TRUE(m_db->IsDtfStoredOfType(dtf.toLower()));
    EXPECT_FALSE(m_db->IsDtfOfType(dtf));
    EXPECT_TRUE(m_db->IsPrjStoredOfType(prj));
    EXPECT_TRUE(m_db->UnitNameExists(unit, GEODB_USER));
    m_db->GetDtfNames(list, QStringLiteral("WGS 84"), QStringLiteral("International 1924"));
    EXPECT_TRUE(list.contains(dtf));
    m_db->GetProjectionNamesOfMethod(list, QStringLiteral("Transverse Mercator"));
    EXPECT_TRUE(list.contains(prj));
    QString g, s;
    ASSERT_TRUE(m_db->FindProjectionSystem(prj, g, s));
    EXPECT_EQ(g, group);
    EXPECT_EQ(s, name);
    EXPECT_EQ(m_db->GetUnitDescription(out, unit),
              unit + QStringLiteral("\tMetric Conversion Factor:0.500000\r\n"
                                    "\tDescription: half metre\r\n"));

    QString method;
    DtfValues values{};
    std::array<double, 2> further{}, trailing{};
    unsigned char option = 9;
    ASSERT_TRUE(m_db->GetDtfParameters(dtf, method, values, further, option, trailing));
    EXPECT_EQ(method, QStringLiteral("Coordinate Frame (7 parameters)"));
    EXPECT_EQ(values[2], -115.125);
    EXPECT_EQ(further[1], 0.0);
    EXPECT_EQ(option, 0);
    PrjParamBlock block;
    QStringList texts, names;
    QList<unsigned> types;
    m_db->GetProjectionParameters(prj, block, texts, names, types);
    ASSERT_EQ(block.count, 5);
    EXPECT_EQ(block.values[0], 52.5);
    EXPECT_EQ(texts[1], QStringLiteral("004°15'00.0000000\"E"));

    EXPECT_TRUE(m_db->SystemHasGeoidModel(group, name));
    EXPECT_EQ(m_db->GetGeoidModelName(group, name), QStringLiteral("GTX Geoid Grid"));
    EXPECT_EQ(m_db->GetGeoidModelFile(group, name), QStringLiteral("nlgeo2018.gtx"));
    EXPECT_TRUE(m_db->SystemHasPostCorrection(group, name));
    double e = 0, n = 0, z = 0, scale = 0;
    ASSERT_TRUE(m_db->GetPostTranslation(group, name, e, n, z));
    EXPECT_EQ(n, -2.5);
    EXPECT_TRUE(m_db->HasPostHorAdjust(group, name));
    EXPECT_FALSE(m_db->HasPostVertAdjust(group, name));
    ASSERT_TRUE(m_db->GetPostHorAdjust(group, name, e, n, z, scale));
    EXPECT_EQ(scale, 1.0000125);
    EXPECT_EQ(z, 0.75);
    EXPECT_EQ(m_db->GetPostModelName(group, name), QStringLiteral("NTv2 Shift Model"));

    const QString info = m_db->GetSystemInfoText(out, group, name, {}, {}, {}, {}, {});
    EXPECT_TRUE(info.contains(QStringLiteral("System: ") + name + QStringLiteral("\r\n")));
    EXPECT_TRUE(info.contains(QStringLiteral("chart datum MLLW")));
    EXPECT_TRUE(info.contains(QStringLiteral("EPSG code: none")));
    // The overview escapes every user text.
    const QString html = m_sd->GetOverviewText(out);
    EXPECT_TRUE(html.contains(QStringLiteral("Platform &quot;A&quot; 50% _β_ O'Brien")));
    EXPECT_TRUE(html.contains(QStringLiteral("MLLW")));
    EXPECT_TRUE(html.contains(QStringLiteral("-115.125000")));
}

TEST_F(StoreSave, ResavingUpdatesTheSystemAndItsPartsAndMovesItBetweenGroups) {
    const QString name = QStringLiteral("Harbour grid");
    FillNewSystem(*m_sd, QStringLiteral("Ports"), name);
    ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();
    ASSERT_TRUE(m_sd->SaveCoordSys()) << "saving twice in a row";

    ASSERT_TRUE(m_sd->LoadCoordSys(QStringLiteral("PORTS"), name));
    m_sd->SetGroupName(QStringLiteral("Harbours"));
    DtfValues values{-80.0, -90.0, -110.0, 0.0, 0.0, 0.0, 1.0};
    m_sd->SetDtfParameters(values, 0, 0.0, 0.0);
    // A stored unit is referenced: a stale suffix handed over by a page changes nothing.
    m_sd->SetUnitSuffix(QStringLiteral("m"));
    PrjParamBlock block;
    QStringList texts, names;
    QList<unsigned> types;
    m_db->GetProjectionParameters(name + QStringLiteral("-Prj"), block, texts, names, types);
    block.values[3] = 200000.0;
    texts[3] = QStringLiteral("200000.000000");
    m_sd->SetProjectionParameters(block, texts, names, types);
    ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();

    QStringList systems;
    m_db->GetSystemNames(systems, QStringLiteral("Ports"));
    EXPECT_TRUE(systems.isEmpty());
    m_db->GetSystemNames(systems, QStringLiteral("Harbours"));
    EXPECT_EQ(systems, QStringList{name});
    QString method;
    std::array<double, 2> further{}, trailing{};
    unsigned char option = 0;
    DtfValues stored{};
    ASSERT_TRUE(m_db->GetDtfParameters(name + QStringLiteral("-dtf"), method, stored, further,
                                       option, trailing));
    EXPECT_EQ(stored[0], -80.0);
    QString suffix, description;
    double factor = 0;
    int category = 0;
    ASSERT_TRUE(m_db->GetUnitDefinition(name + QStringLiteral("-unit"), suffix, factor, category,
                                        description));
    EXPECT_EQ(factor, 0.5);
    EXPECT_EQ(suffix, QStringLiteral("hm"));
    EXPECT_EQ(description, QStringLiteral("half metre"));
    m_db->GetProjectionParameters(name + QStringLiteral("-Prj"), block, texts, names, types);
    EXPECT_EQ(block.count, 5);
    EXPECT_EQ(block.values[3], 200000.0);
    EXPECT_EQ(RowCount(m_store.userDbPath(), QStringLiteral("coordsys")), 1);
    EXPECT_EQ(RowCount(m_store.userDbPath(), QStringLiteral("projection_param")), 5);
}

TEST_F(StoreSave, PredefinedPartsAreReferencedNotCopied) {
    m_sd->AssignSystemName(QStringLiteral("ED50 / UTM 31N (survey)"));
    m_sd->SetGroupName(QStringLiteral("Projects"));
    UsePredefinedParts();
    ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();
    EXPECT_EQ(RowCount(m_store.userDbPath(), QStringLiteral("dtf")), 0);
    EXPECT_EQ(RowCount(m_store.userDbPath(), QStringLiteral("projection")), 0);
    EXPECT_EQ(RowCount(m_store.userDbPath(), QStringLiteral("unit")), 0);
    QString out;
    EXPECT_EQ(m_db->GetSystemDtfName(out, QStringLiteral("Projects"),
                                     QStringLiteral("ED50 / UTM 31N (survey)")),
              QStringLiteral("ED50 to WGS 84 (1)"));
    const QString info =
        m_db->GetSystemInfoText(out, QStringLiteral("Projects"),
                                QStringLiteral("ED50 / UTM 31N (survey)"), {}, {}, {}, {}, {});
    EXPECT_TRUE(info.contains(QStringLiteral("UTM zone: Zone 31 ( 3 E)")));
}

TEST_F(StoreSave, RefusedSavesLeaveTheUserDatabaseAsItWas) {
    FillNewSystem(*m_sd, QStringLiteral("Ports"), QStringLiteral("Existing"));
    ASSERT_TRUE(m_sd->SaveCoordSys());

    // A changed pre-defined datum transformation.
    m_sd->AssignSystemName(QStringLiteral("Changed"));
    UsePredefinedParts();
    DtfValues values{-87.0, -98.0, -121.0, 0.1, -0.2, 0.3, 1.6};
    m_sd->SetDtfParameters(values, 1, 0.0, 0.0);
    ExpectRefusedSave(QStringLiteral("A pre-defined datum transformation cannot be changed"));

    // A changed pre-defined projection and unit.
    UsePredefinedParts();
    PrjParamBlock block;
    QStringList texts, names;
    QList<unsigned> types;
    m_db->GetProjectionParameters(QStringLiteral("UTM Zone-31N"), block, texts, names, types);
    texts[3] = QStringLiteral("400000.000000"); // the text alone, as a page changes it
    m_sd->SetProjectionParameters(block, texts, names, types);
    ExpectRefusedSave(QStringLiteral("A pre-defined projection cannot be changed"));
    UsePredefinedParts();
    m_sd->SetUnitFactor(0.3048);
    ExpectRefusedSave(QStringLiteral("\"Meters\" is 1 m per unit and cannot be changed"));
    // So is another factor for a user unit other systems may measure in.
    UsePredefinedParts();
    m_sd->SetUnitName(QStringLiteral("Existing-unit"));
    m_sd->SetUnitFactor(0.25);
    ExpectRefusedSave(QStringLiteral("\"Existing-unit\" is 0.5 m per unit"));

    // Values that do not belong where they were handed over: no observation year.
    FillNewSystem(*m_sd, QStringLiteral("Ports"), QStringLiteral("Existing"));
    m_sd->SetDtfParameters({-81.5, -90.25, -115.125}, 0, 1133.0, 0.0);
    ExpectRefusedSave(QStringLiteral("1133"));
    m_sd->SetDtfParameters({-81.5, -90.25, -115.125}, 0, 2010.5, 0.0);
    EXPECT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();

    // Pre-defined group and system names.
    UsePredefinedParts();
    m_sd->SetGroupName(QStringLiteral("EUROPE"));
    ExpectRefusedSave(QStringLiteral("pre-defined"));
    m_sd->SetGroupName(QStringLiteral("Ports"));
    m_sd->AssignSystemName(QStringLiteral("ed50 / utm zone 31n"));
    ExpectRefusedSave(QStringLiteral("pre-defined"));

    // Incomplete records.
    m_sd->AssignSystemName(QStringLiteral("  "));
    ExpectRefusedSave(QStringLiteral("no name"));
    m_sd->AssignSystemName(QStringLiteral("Incomplete"));
    m_sd->SelectLocalEllipsoid(QStringLiteral("Clarke 1866"));
    ExpectRefusedSave(QStringLiteral("\"Clarke 1866\" is not stored"));
    UsePredefinedParts();
    m_sd->SetDtfMethod(QStringLiteral("Molodensky"), 7);
    ExpectRefusedSave(QStringLiteral("method"));
    UsePredefinedParts();
    m_sd->SetProjectionMethod(QStringLiteral("Bonne"));
    m_sd->SetProjectionName(QStringLiteral("Bonne grid"), 99);
    ExpectRefusedSave(QStringLiteral("no known method"));
    UsePredefinedParts();
    m_sd->SetUnitName(QStringLiteral("Nothing"));
    m_sd->SetUnitFactor(0.0);
    ExpectRefusedSave(QStringLiteral("positive"));
}

TEST_F(StoreSave, AFailureAtTheLastStatementRollsEverythingBack) {
    FillNewSystem(*m_sd, QStringLiteral("Ports"), QStringLiteral("Existing"));
    ASSERT_TRUE(m_sd->SaveCoordSys());
    // The system row is written last: make exactly that statement fail.
    ASSERT_TRUE(ExecOn(m_store.userDbPath(),
                       {QStringLiteral("CREATE TRIGGER fail_last BEFORE INSERT ON coordsys WHEN "
                                       "NEW.name = 'Doomed' BEGIN SELECT RAISE(ABORT, 'disk "
                                       "full'); END")}));
    const QByteArray bytesBefore = [&] {
        QFile f(m_store.userDbPath());
        f.open(QIODevice::ReadOnly);
        return f.readAll();
    }();
    FillNewSystem(*m_sd, QStringLiteral("New group"), QStringLiteral("Doomed"));
    ExpectRefusedSave(QStringLiteral("disk full"));
    QFile f(m_store.userDbPath());
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), bytesBefore);
    EXPECT_FALSE(m_db->GroupNameExists(QStringLiteral("New group")));
    EXPECT_FALSE(m_db->UnitNameExists(QStringLiteral("Doomed-unit")));
    // The store still works afterwards.
    FillNewSystem(*m_sd, QStringLiteral("New group"), QStringLiteral("Survivor"));
    EXPECT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();
}

TEST_F(StoreSave, RemovingIsRefusedForPredefinedUnknownAndUsedSystems) {
    EXPECT_FALSE(
        m_db->RemoveSystem(QStringLiteral("Europe"), QStringLiteral("ED50 / UTM zone 31N")));
    EXPECT_TRUE(m_db->LastError().contains(QStringLiteral("pre-defined")));
    EXPECT_FALSE(m_db->RemoveSystem(QStringLiteral("Ports"), QStringLiteral("Nothing")));
    EXPECT_TRUE(m_db->LastError().contains(QStringLiteral("not stored")));

    FillNewSystem(*m_sd, QStringLiteral("Ports"), QStringLiteral("Quay wall"));
    ASSERT_TRUE(m_sd->SaveCoordSys());
    ASSERT_TRUE(m_db->SetSystemInUse(QStringLiteral("ports"), QStringLiteral("QUAY WALL"),
                                     QStringLiteral("P-2024-17"), true));
    ASSERT_TRUE(m_db->SetSystemInUse(QStringLiteral("Ports"), QStringLiteral("Quay wall"),
                                     QStringLiteral("P-2024-17"), true));
    EXPECT_TRUE(m_db->IsSystemInUse(QStringLiteral("Ports"), QStringLiteral("Quay wall")));
    EXPECT_FALSE(m_db->RemoveSystem(QStringLiteral("Ports"), QStringLiteral("Quay wall")));
    EXPECT_TRUE(m_db->LastError().contains(QStringLiteral("P-2024-17")));
    EXPECT_TRUE(m_db->SystemNameExists(QStringLiteral("Quay wall")));
    EXPECT_FALSE(m_db->SetSystemInUse(QStringLiteral("Ports"), QStringLiteral("Unknown"),
                                      QStringLiteral("P-1"), true));

    // One release frees a system marked twice by the same project.
    ASSERT_TRUE(m_db->SetSystemInUse(QStringLiteral("Ports"), QStringLiteral("Quay wall"),
                                     QStringLiteral("P-2024-17"), false));
    EXPECT_FALSE(m_db->IsSystemInUse(QStringLiteral("Ports"), QStringLiteral("Quay wall")));
    EXPECT_FALSE(m_db->RemoveSystem(QStringLiteral("Europe"), QStringLiteral("Quay wall")));
    ASSERT_TRUE(m_db->RemoveSystem(QStringLiteral("PORTS"), QStringLiteral("quay wall")))
        << m_db->LastError().toStdString();
    EXPECT_FALSE(m_db->SystemNameExists(QStringLiteral("Quay wall")));
    // Its parts stay for other systems.
    EXPECT_TRUE(m_db->IsDtfStoredOfType(QStringLiteral("Quay wall-dtf")));
    EXPECT_TRUE(m_db->IsPrjStoredOfType(QStringLiteral("Quay wall-Prj")));
    EXPECT_TRUE(m_db->UnitNameExists(QStringLiteral("Quay wall-unit")));
}

// The projects that use a system are listed by id, whatever the letter case of the names
// asked with, for a pre-defined system too; the system's information text names them.
TEST_F(StoreSave, ProjectsUsingASystemAreListedAndNamedInItsText) {
    const QString group = QStringLiteral("Ports");
    const QString quay = QStringLiteral("Quay wall");
    const QString utm = QStringLiteral("ED50 / UTM zone 31N");
    FillNewSystem(*m_sd, group, quay);
    ASSERT_TRUE(m_sd->SaveCoordSys());
    QString text;
    EXPECT_TRUE(m_db->GetSystemProjects(group, quay).isEmpty());
    EXPECT_TRUE(m_db->LastError().isEmpty());
    m_db->GetSystemInfoText(text, group, quay, {}, {}, {}, {}, {});
    EXPECT_FALSE(text.contains(QStringLiteral("Used by the projects")));

    for (const char* project : {"P-9", "P-10", "Dredging 2024"})
        ASSERT_TRUE(m_db->SetSystemInUse(group, quay, QString::fromLatin1(project), true));
    ASSERT_TRUE(m_db->SetSystemInUse(QStringLiteral("Europe"), utm, QStringLiteral("P-1"), true));
    const QStringList used{QStringLiteral("Dredging 2024"), QStringLiteral("P-10"),
                           QStringLiteral("P-9")};
    EXPECT_EQ(m_db->GetSystemProjects(QStringLiteral("PORTS"), QStringLiteral("quay WALL")), used);
    EXPECT_EQ(m_db->GetSystemProjects(QStringLiteral("europe"), utm),
              QStringList{QStringLiteral("P-1")});
    m_db->GetSystemInfoText(text, group, quay, {}, {}, {}, {}, {});
    EXPECT_TRUE(
        text.endsWith(QStringLiteral("\tUsed by the projects: Dredging 2024, P-10, P-9\r\n")))
        << text.toStdString();

    // a system of another group or none at all is used by no project
    EXPECT_TRUE(m_db->GetSystemProjects(QStringLiteral("Europe"), quay).isEmpty());
    EXPECT_TRUE(m_db->GetSystemProjects(group, QStringLiteral("Nothing")).isEmpty());
    ASSERT_TRUE(m_db->SetSystemInUse(group, quay, QStringLiteral("P-10"), false));
    EXPECT_EQ(m_db->GetSystemProjects(group, quay),
              (QStringList{QStringLiteral("Dredging 2024"), QStringLiteral("P-9")}));
}

TEST_F(StoreSave, AddUnitRefusesBadNamesAndFactors) {
    // An empty name is a name like any other: stored once, then refused as existing.
    ASSERT_TRUE(m_db->AddUnit(QString(), 1.0, QString())) << m_db->LastError().toStdString();
    EXPECT_TRUE(m_db->UnitNameExists(QStringLiteral(""), GEODB_USER));
    EXPECT_FALSE(m_db->AddUnit(QStringLiteral(""), 2.0, QStringLiteral("x")));
    EXPECT_FALSE(m_db->AddUnit(QStringLiteral("meters"), 1.0, QStringLiteral("m")));
    EXPECT_TRUE(m_db->LastError().contains(QStringLiteral("already exists")));
    for (double bad : {0.0, -1.0, std::nan(""), HUGE_VAL})
        EXPECT_FALSE(m_db->AddUnit(QStringLiteral("Bad"), bad, QString())) << bad;
    EXPECT_FALSE(m_db->UnitNameExists(QStringLiteral("Bad")));
    ASSERT_TRUE(m_db->AddUnit(QStringLiteral("Klafter (Wiener)"), 1.8965, QStringLiteral("°"),
                              UNIT_CATEGORY_LENGTH));
    EXPECT_FALSE(m_db->AddUnit(QStringLiteral("KLAFTER (WIENER)"), 1.9, QString()));
    QString suffix, description;
    double factor = 0;
    int category = 0;
    ASSERT_TRUE(m_db->GetUnitDefinition(QStringLiteral("klafter (wiener)"), suffix, factor,
                                        category, description));
    EXPECT_EQ(factor, 1.8965);
    EXPECT_EQ(suffix, QStringLiteral("°"));
    EXPECT_EQ(category, UNIT_CATEGORY_LENGTH);
}

TEST_F(StoreSave, GeobaseToGeostaticCopiesAStoredSystem) {
    const QString group = QStringLiteral("Wind farms");
    FillNewSystem(*m_sd, group, QStringLiteral("Borssele"));
    m_sd->SetGeoidMethod(QStringLiteral("MANUAL SEPARATION"));
    m_sd->SetManualGeoidSeparation(42.125);
    m_sd->SetPostTranslationOn(true);
    m_sd->SetPostTranslation(0.5, 0.25, -0.125);
    m_sd->SetPostModelName(QStringLiteral("Local Height Shift"));
    m_sd->SetPostVertAdjustOn(true);
    m_sd->SetPostVertAdjust(1.0, 2.0, 3.0, 4.0);
    m_sd->SetPrimeMeridian(2.5969213);
    ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();

    auto copy = m_store.staticData();
    ASSERT_TRUE(OrvGeoWizard::Utils::GeobaseToGeostatic(
        group, QStringLiteral("Borssele"), QStringLiteral("stale method"), m_db.get(), copy.get()));
    QString out;
    EXPECT_EQ(copy->GetGeoidMethod(out), QStringLiteral("Manual Separation"));
    copy->AssignSystemName(QStringLiteral("Borssele copy"));
    copy->SetGroupName(group);
    ASSERT_TRUE(copy->SaveCoordSys()) << copy->LastError().toStdString();

    QString a, b;
    m_db->GetSystemInfoText(a, group, QStringLiteral("Borssele"), {}, {}, {}, {}, {});
    m_db->GetSystemInfoText(b, group, QStringLiteral("Borssele copy"), {}, {}, {}, {}, {});
    // The copy names the geoid model in the key table's spelling.
    a.replace(QStringLiteral("MANUAL SEPARATION"), QStringLiteral("Manual Separation"));
    EXPECT_EQ(b.replace(QStringLiteral("Borssele copy"), QStringLiteral("Borssele")), a);
    EXPECT_EQ(m_db->GetManualGeoidSeparation(group, QStringLiteral("Borssele copy")), 42.125);
    EXPECT_EQ(m_db->GetPrimeMeridian(group, QStringLiteral("Borssele copy")), 2.5969213);
    double e = 0, n = 0, se = 0, sn = 0;
    ASSERT_TRUE(m_db->GetPostVertAdjust(group, QStringLiteral("Borssele copy"), e, n, se, sn));
    EXPECT_EQ(sn, 4.0);

    // A pre-defined UTM system copies into a user system that references its parts.
    auto utm = m_store.staticData();
    ASSERT_TRUE(OrvGeoWizard::Utils::GeobaseToGeostatic(QStringLiteral("Europe"),
                                                        QStringLiteral("ED50 / UTM zone 31N"),
                                                        QString(), m_db.get(), utm.get()));
    utm->AssignSystemName(QStringLiteral("ED50 / UTM 31N copy"));
    utm->SetGroupName(group);
    ASSERT_TRUE(utm->SaveCoordSys()) << utm->LastError().toStdString();
    m_db->GetSystemInfoText(a, QStringLiteral("Europe"), QStringLiteral("ED50 / UTM zone 31N"), {},
                            {}, {}, {}, {});
    m_db->GetSystemInfoText(b, group, QStringLiteral("ED50 / UTM 31N copy"), {}, {}, {}, {}, {});
    EXPECT_TRUE(b.contains(QStringLiteral("UTM zone: Zone 31 ( 3 E)")));
    // Ellipsoids, datum transformation, projection, unit, geoid and post correction agree.
    auto core = [](const QString& text) {
        const qsizetype from = text.indexOf(QStringLiteral("\tSatellite ellipsoid"));
        const qsizetype to = text.indexOf(QStringLiteral("\tArea of use"));
        return text.mid(from, to < 0 ? text.indexOf(QStringLiteral("\tEPSG")) - from : to - from);
    };
    EXPECT_FALSE(core(a).isEmpty());
    EXPECT_EQ(core(b), core(a));

    EXPECT_FALSE(OrvGeoWizard::Utils::GeobaseToGeostatic(group, QStringLiteral("Nothing"),
                                                         QString(), m_db.get(), copy.get()));
    EXPECT_FALSE(OrvGeoWizard::Utils::GeobaseToGeostatic(group, QStringLiteral("Borssele"),
                                                         QString(), nullptr, copy.get()));
}

TEST_F(StoreSave, GeobaseToGeostaticKeepsTheChartDatum) {
    const QString group = QStringLiteral("Harbours");
    FillNewSystem(*m_sd, group, QStringLiteral("Harbour approach"));
    m_sd->SetGeoidMethod(QStringLiteral("VDatum"));
    m_sd->SetGeoidFile(QStringLiteral("xGEOID20B"));
    m_sd->SetChartDatum(QStringLiteral("MLLW"));
    ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();
    EXPECT_EQ(m_db->GetChartDatum(group, QStringLiteral("Harbour approach")),
              QStringLiteral("MLLW"));

    auto copy = m_store.staticData();
    ASSERT_TRUE(OrvGeoWizard::Utils::GeobaseToGeostatic(group, QStringLiteral("Harbour approach"),
                                                        QString(), m_db.get(), copy.get()));
    QString out;
    EXPECT_EQ(copy->GetChartDatum(out), QStringLiteral("MLLW"));
    EXPECT_EQ(copy->GetGeoidFile(out), QStringLiteral("xGEOID20B"));
}

TEST_F(StoreSave, TheEditorsUnchangedGeoidAndAnOldShiftModelSurviveASave) {
    const QString group = QStringLiteral("Ports");
    const QString name = QStringLiteral("Dover");
    FillNewSystem(*m_sd, group, name);
    m_sd->SetGeoidEnabled(true);
    m_sd->SetGeoidMethod(QStringLiteral("OSGM"));
    m_sd->SetGeoidFile(QStringLiteral("OSTN02_OSGM02_GB.txt"));
    m_sd->SetPostTranslationOn(true);
    m_sd->SetPostModelName(QStringLiteral("OSTN02"));
    ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();
    // Stored names come back as stored; the dialogs map the old shift model themselves.
    EXPECT_EQ(m_db->GetPostModelName(group, name), QStringLiteral("OSTN02"));

    // The editor hands over the stored model, then only what the user changed: nothing.
    auto edit = [&](const QString& method, const QString& file) {
        ASSERT_TRUE(m_sd->LoadCoordSys(group, name));
        m_sd->SetGeoidEnabled(true);
        m_sd->SetGeoidModelName(m_db->GetGeoidModelName(group, name));
        m_sd->SetGeoidModelFile(m_db->GetGeoidModelFile(group, name));
        m_sd->SetGeoidMethod(method);
        m_sd->SetGeoidFile(file);
        ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();
    };
    edit(QString(), QString());
    EXPECT_TRUE(m_db->SystemHasGeoidModel(group, name));
    EXPECT_EQ(m_db->GetGeoidModelName(group, name), QStringLiteral("OSGM"));
    EXPECT_EQ(m_db->GetGeoidModelFile(group, name), QStringLiteral("OSTN02_OSGM02_GB.txt"));
    edit(QString(), QStringLiteral("OSGM15_GB.txt")); // another file only
    EXPECT_EQ(m_db->GetGeoidModelName(group, name), QStringLiteral("OSGM"));
    EXPECT_EQ(m_db->GetGeoidModelFile(group, name), QStringLiteral("OSGM15_GB.txt"));
    edit(QStringLiteral("EGM96"), QString()); // a method without a file
    EXPECT_EQ(m_db->GetGeoidModelName(group, name), QStringLiteral("EGM96"));
    EXPECT_TRUE(m_db->GetGeoidModelFile(group, name).isEmpty());
    edit(QStringLiteral("--None--"), QString());
    EXPECT_FALSE(m_db->SystemHasGeoidModel(group, name));

    // A copy names the old shift model as the lists do, with the file that holds it.
    ASSERT_TRUE(m_sd->LoadCoordSys(group, name));
    m_sd->SetGeoidModelName(QStringLiteral("OSGM"));
    m_sd->SetGeoidModelFile(QStringLiteral("OSTN02_OSGM02_GB.txt"));
    ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();
    auto copy = m_store.staticData();
    ASSERT_TRUE(
        OrvGeoWizard::Utils::GeobaseToGeostatic(group, name, QString(), m_db.get(), copy.get()));
    QString out;
    EXPECT_EQ(copy->GetPostModelName(out), QStringLiteral("OSTN"));
    EXPECT_EQ(copy->GetPostModelFile(out), QStringLiteral("OSTN02_OSGM02_GB.txt"));
    EXPECT_EQ(copy->GetGeoidMethod(out), QStringLiteral("OSGM"));
}

TEST_F(StoreSave, ProjectionRowsRoundTripAsThePagesHandThemOver) {
    const QString group = QStringLiteral("Rigs");
    PrjParamBlock block;
    QStringList texts, names;
    QList<unsigned> types;
    auto read = [&](const QString& prj) {
        m_db->GetProjectionParameters(prj, block, texts, names, types);
    };

    // UTM: the five rows shown, the zone and hemisphere texts apart.
    FillNewSystem(*m_sd, group, QStringLiteral("Rig"));
    read(QStringLiteral("UTM Zone-31N"));
    m_sd->SetProjectionMethod(QStringLiteral("UTM"));
    m_sd->SetProjectionName(QStringLiteral("Rig-Prj"), 1);
    m_sd->SetUtmMode(true);
    m_sd->SetUtmZoneText(QStringLiteral("Zone 32     (  9 E)"));
    m_sd->SetUtmHemisphereText(QStringLiteral("Southern"));
    block.values[1] = 9.0;
    block.values[4] = 10000000.0;
    m_sd->SetProjectionParameters(block,
                                  {texts[0], QStringLiteral("009°00'00.0000000\"E"), texts[2],
                                   texts[3], QStringLiteral("10000000.0000000")},
                                  names.mid(0, 5), types.mid(0, 5));
    ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();
    read(QStringLiteral("Rig-Prj"));
    ASSERT_EQ(names.size(), 7);
    EXPECT_EQ(names[5], QStringLiteral("UTM zone"));
    EXPECT_EQ(texts[5], QStringLiteral("Zone 32     (  9 E)"));
    EXPECT_EQ(texts[6], QStringLiteral("Southern"));
    EXPECT_EQ(types[6], unsigned(PRM_HIDDEN));
    EXPECT_EQ(block.values[4], 10000000.0);

    // A method changed from UTM keeps no zone.
    ASSERT_TRUE(m_sd->LoadCoordSys(group, QStringLiteral("Rig")));
    FillNewSystem(*m_sd, group, QStringLiteral("Rig"));
    m_sd->SetUtmMode(true);
    m_sd->SetUtmZoneText(QStringLiteral("Zone 32     (  9 E)"));
    ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();
    QString info;
    m_db->GetSystemInfoText(info, group, QStringLiteral("Rig"), {}, {}, {}, {}, {});
    EXPECT_FALSE(info.contains(QStringLiteral("UTM zone"))) << info.toStdString();

    // The projection page converts a projection into the wizard's unit by its texts and
    // names it "<projection>_<unit>"; the library answers for that name before it is saved.
    const QString converted = QStringLiteral("Gauß-Krüger Zone 3_US survey foot");
    QString out;
    EXPECT_EQ(m_db->GetProjectionMethodName(out, converted), QStringLiteral("Transverse Mercator"));
    EXPECT_EQ(m_db->GetProjectionUnit(out, converted), QStringLiteral("US survey foot"));
    EXPECT_FALSE(m_db->IsPrjOfType(converted, GEODB_ALL));
    read(converted);
    ASSERT_EQ(block.count, 5);
    const double feet = 3500000.0 / (1200.0 / 3937.0);
    EXPECT_NEAR(block.values[3], feet, 1e-6);
    EXPECT_EQ(texts[3], QString::number(feet, 'f', 6));
    EXPECT_EQ(texts[1], QStringLiteral("009°00'00.0000000\"E"));

    read(QStringLiteral("Gauß-Krüger Zone 3"));
    texts[3] = QString::number(feet, 'f', 6); // the text alone, as the page converts it
    FillNewSystem(*m_sd, group, QStringLiteral("Rig (ftUS)"));
    m_sd->SetUnitName(QStringLiteral("US survey foot"));
    m_sd->SetProjectionMethod(QStringLiteral("Transverse Mercator"));
    m_sd->SetProjectionName(converted, 2);
    m_sd->SetProjectionParameters(block, texts, names, types);
    ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();
    EXPECT_TRUE(m_db->IsPrjStoredOfType(converted));
    read(converted);
    EXPECT_NEAR(block.values[3], feet, 1e-6);
    EXPECT_EQ(block.values[1], 9.0); // an angle its text shows keeps its full value
}
