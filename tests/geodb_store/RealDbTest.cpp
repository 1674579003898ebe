#include "StoreTestSupport.h"

#include "store/GeoStore.h"
#include "support/TempDataFolder.h"
#include "util/GeobaseToGeostatic.h"

#include <QFileInfo>

#include <gtest/gtest.h>

namespace {

class RealSystemDb : public ::testing::Test {
protected:
    void SetUp() override {
        if (!QFileInfo::exists(TestSystemDbPath()))
            GTEST_SKIP() << "the generated system database is not built";
        m_dllType = QStringLiteral("sqlite:%1;system=%2").arg(m_folder.path(), TestSystemDbPath());
        m_db.reset(OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(m_dllType));
        ASSERT_NE(m_db, nullptr)
            << OrvGeoDatabaseBaseList::GetGeoDatabaseList().LastError().toStdString();
    }
    TempDataFolder m_folder;
    QString m_dllType;
    std::unique_ptr<OrvGeoDatabaseBase> m_db;
};

} // namespace

TEST_F(RealSystemDb, OffersTheUtmZonesAndTheMetre) {
    QStringList utm;
    m_db->GetProjectionNamesOfMethod(utm, QStringLiteral("UTM"));
    for (int zone = 1; zone <= 60; ++zone) {
        EXPECT_TRUE(utm.contains(QStringLiteral("UTM Zone-%1N").arg(zone))) << zone;
        EXPECT_TRUE(utm.contains(QStringLiteral("UTM Zone-%1S").arg(zone))) << zone;
    }
    EXPECT_TRUE(m_db->UnitNameExists(QStringLiteral("meters"), GEODB_SYSTEM));
    QString text;
    EXPECT_TRUE(m_db->GetEllipsoidInfoText(text, QStringLiteral("WGS 84"))
                    .contains(QStringLiteral("6378137.0000 m")));
}

// Coordinate frame rotations are held in the position-vector sign and printed as EPSG
// publishes them (EPSG 9688: rx = -0.0394924", rate of rz in EPSG 9686 = -0.00120716"/year).
TEST_F(RealSystemDb, CoordinateFrameRotationsAreHeldInThePositionVectorSign) {
    QString method;
    DtfValues values{};
    std::array<double, 2> further{}, trailing{};
    unsigned char option = 0;
    ASSERT_TRUE(m_db->GetDtfParameters(QStringLiteral("GDA94 to WGS 84 (2)"), method, values,
                                       further, option, trailing));
    EXPECT_EQ(method, QStringLiteral("Coordinate Frame (7 parameters)"));
    EXPECT_DOUBLE_EQ(values[3], 0.0394924);
    EXPECT_DOUBLE_EQ(values[6], -0.009994); // the scale keeps its sign
    QString text;
    m_db->GetDtfInfoText(text, QStringLiteral("GDA94 to WGS 84 (2)"));
    EXPECT_TRUE(text.contains(QStringLiteral("\t\tRotation X: -0.039492 \"\r\n")));

    ASSERT_TRUE(m_db->GetDtfParameters(QStringLiteral("GDA94 to WGS 84 (G1762) (1)"), method,
                                       values, further, option, trailing));
    EXPECT_DOUBLE_EQ(values[12], 0.00120716);
    m_db->GetDtfInfoText(text, QStringLiteral("GDA94 to WGS 84 (G1762) (1)"));
    EXPECT_TRUE(text.contains(QStringLiteral("\t\tRotation Z rate: -0.00120716 \"/year\r\n")));
}

TEST_F(RealSystemDb, EveryStoredSystemResolvesAllItsParts) {
    auto store = GeoStore::Open(m_dllType);
    ASSERT_NE(store, nullptr);
    QStringList groups;
    m_db->GetGroupNames(groups, GEODB_SYSTEM);
    ASSERT_GT(groups.size(), 50);
    int systems = 0;
    for (const QString& group : groups) {
        QStringList names;
        m_db->GetSystemNames(names, group);
        EXPECT_FALSE(names.isEmpty()) << group.toStdString();
        for (const QString& name : names) {
            QString error;
            EXPECT_TRUE(store->LoadDefinition(group, name, &error).has_value())
                << error.toStdString();
            ++systems;
        }
    }
    EXPECT_GT(systems, 1000);
}

TEST_F(RealSystemDb, CopiesOfPredefinedSystemsSaveUnchanged) {
    std::unique_ptr<OrvGeoStaticDataBase> sd(
        OrvGeoStaticDatabaseList::GetGeoStaticDataList().Create(m_dllType));
    ASSERT_NE(sd, nullptr);
    QStringList groups;
    m_db->GetGroupNames(groups, GEODB_SYSTEM);
    int copied = 0;
    for (int g = 0; g < groups.size(); g += 9) {
        QStringList names;
        m_db->GetSystemNames(names, groups[g]);
        const QString& name = names.first();
        sd->Clear();
        ASSERT_TRUE(OrvGeoWizard::Utils::GeobaseToGeostatic(groups[g], name, QString(), m_db.get(),
                                                            sd.get()));
        sd->AssignSystemName(name + QStringLiteral(" (copy)"));
        sd->SetGroupName(QStringLiteral("Copies"));
        EXPECT_TRUE(sd->SaveCoordSys())
            << name.toStdString() << ": " << sd->LastError().toStdString();
        QString a, b;
        m_db->GetSystemDtfName(a, groups[g], name);
        m_db->GetSystemDtfName(b, QStringLiteral("Copies"), name + QStringLiteral(" (copy)"));
        EXPECT_EQ(a, b);
        ++copied;
    }
    EXPECT_GT(copied, 5);
}
