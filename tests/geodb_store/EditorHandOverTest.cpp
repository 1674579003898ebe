// What the store makes of the coordinate system editor's hand-overs, and the information
// that tells a surveyor which stored systems share a datum transformation or a projection.
#include "StoreTestSupport.h"

#include "api/ProjectionMethods.h"

namespace {

class EditorHandOver : public StoreTest {
protected:
    DtfValues Values(const QString& dtf, std::array<double, 2>& further,
                     std::array<double, 2>& trailing) {
        QString method;
        DtfValues values{};
        unsigned char option = 0;
        EXPECT_TRUE(m_db->GetDtfParameters(dtf, method, values, further, option, trailing));
        return values;
    }
    void SaveWithEpoch(const QString& name, double epoch) {
        FillNewSystem(*m_sd, QStringLiteral("Ports"), name);
        m_sd->SetDtfParameters({-81.5, -90.25, -115.125, 0.5, -0.25, 0.125, 2.5}, 0, epoch, 0.0);
        ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();
    }
};

} // namespace

// The editor hands over the further values (accuracy, EPSG code) where the wizard gives the
// trailing ones: a record loaded from a stored system keeps the trailing values of the
// transformation of its name, and an accuracy never becomes an observation epoch.
TEST_F(EditorHandOver, TheFurtherValuesNeverReplaceTheTrailingOnes) {
    SaveWithEpoch(QStringLiteral("Quay"), 2015.5);
    SaveWithEpoch(QStringLiteral("Pier"), 2005.25);
    std::array<double, 2> further{}, trailing{};
    const DtfValues values = Values(QStringLiteral("Quay-dtf"), further, trailing);
    ASSERT_EQ(trailing[0], 2015.5);

    // unchanged name: its own trailing values, although 5 m and code 1133 were handed over
    ASSERT_TRUE(m_sd->LoadCoordSys(QStringLiteral("Ports"), QStringLiteral("Quay")));
    m_sd->SetDtfParameters(values, 0, 5.0, 1133.0);
    ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();
    Values(QStringLiteral("Quay-dtf"), further, trailing);
    EXPECT_EQ(trailing[0], 2015.5);
    EXPECT_EQ(further[0], 0.0); // a user record keeps no further values

    // another stored transformation: its trailing values
    ASSERT_TRUE(m_sd->LoadCoordSys(QStringLiteral("Ports"), QStringLiteral("Quay")));
    m_sd->SetDtfName(QStringLiteral("Pier-dtf"));
    m_sd->SetDtfParameters(values, 0, 0.0, 0.0);
    ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();
    Values(QStringLiteral("Pier-dtf"), further, trailing);
    EXPECT_EQ(trailing[0], 2005.25);

    // a new name: the values came from the loaded one, and so do the trailing values
    ASSERT_TRUE(m_sd->LoadCoordSys(QStringLiteral("Ports"), QStringLiteral("Pier")));
    m_sd->SetDtfName(QStringLiteral("Pier copy"));
    m_sd->SetDtfParameters(values, 0, 5.0, 1133.0);
    ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();
    Values(QStringLiteral("Pier copy"), further, trailing);
    EXPECT_EQ(trailing[0], 2005.25);

    // a fresh record (the wizard's way) takes them as trailing values
    SaveWithEpoch(QStringLiteral("Jetty"), 1999.5);
    Values(QStringLiteral("Jetty-dtf"), further, trailing);
    EXPECT_EQ(trailing[0], 1999.5);
}

// A projection nothing can compute is never written; what was stored stays.
TEST_F(EditorHandOver, AProjectionNotImplementedIsNotWritten) {
    FillNewSystem(*m_sd, QStringLiteral("Ports"), QStringLiteral("Quay"));
    ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();
    const QString before = DumpDatabase(m_store.userDbPath());
    ASSERT_TRUE(m_sd->LoadCoordSys(QStringLiteral("Ports"), QStringLiteral("Quay")));
    m_sd->SetProjectionName(QStringLiteral("Quay-Prj"), ProjectionMethods::NotImplementedId);
    m_sd->SetProjectionMethod(QStringLiteral("Not implemented"));
    EXPECT_FALSE(m_sd->SaveCoordSys());
    EXPECT_TRUE(m_sd->LastError().contains(QStringLiteral("not implemented")))
        << m_sd->LastError().toStdString();
    EXPECT_EQ(DumpDatabase(m_store.userDbPath()), before);
}

// The information of a datum transformation and of a projection names every user system that
// uses it with the projects marked as using that system, and counts the pre-defined ones.
TEST_F(EditorHandOver, InformationTellsWhoSharesAnEntry) {
    FillNewSystem(*m_sd, QStringLiteral("Ports"), QStringLiteral("Quay"));
    ASSERT_TRUE(m_sd->SaveCoordSys());
    // a second system on the same transformation and projection
    ASSERT_TRUE(m_sd->LoadCoordSys(QStringLiteral("Ports"), QStringLiteral("Quay")));
    m_sd->AssignSystemName(QStringLiteral("Quay west"));
    m_sd->SetGroupName(QStringLiteral("Harbours"));
    ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();
    ASSERT_TRUE(m_db->SetSystemInUse(QStringLiteral("Ports"), QStringLiteral("Quay"),
                                     QStringLiteral("P-200"), true));
    ASSERT_TRUE(m_db->SetSystemInUse(QStringLiteral("Ports"), QStringLiteral("Quay"),
                                     QStringLiteral("P-100"), true));

    QString text;
    m_db->GetDtfInfoText(text, QStringLiteral("Quay-dtf"));
    EXPECT_TRUE(text.endsWith(
        QStringLiteral("\tStored coordinate systems with this datum transformation: 2\r\n"
                       "\t\tHarbours / Quay west, in no project\r\n"
                       "\t\tPorts / Quay, in the projects P-100, P-200\r\n")))
        << text.toStdString();
    const QString prj = m_db->GetProjectionInfoText(QStringLiteral("Quay-Prj"));
    EXPECT_TRUE(
        prj.contains(QStringLiteral("\tStored coordinate systems with this projection: 2\r\n"
                                    "\t\tHarbours / Quay west, in no project\r\n")))
        << prj.toStdString();
    EXPECT_EQ(m_db->GetSystemProjectionInfoText(QStringLiteral("Ports"), QStringLiteral("Quay"))
                  .count(QStringLiteral("Ports / Quay, in the projects P-100, P-200")),
              1);

    // pre-defined entries: the pre-defined systems are counted
    m_db->GetDtfInfoText(text, QStringLiteral("ED50 to WGS 84 (1)"));
    EXPECT_TRUE(text.endsWith(
        QStringLiteral("\tStored coordinate systems with this datum transformation: 1\r\n"
                       "\t\t1 pre-defined coordinate system\r\n")))
        << text.toStdString();
    m_db->GetDtfInfoText(text, QStringLiteral("WGS 84 identity"));
    EXPECT_TRUE(text.endsWith(
        QStringLiteral("\tStored coordinate systems with this datum transformation: none\r\n")));
}
