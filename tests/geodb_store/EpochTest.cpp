// Epochs of datum transformations as they are saved and described.
#include "StoreTestSupport.h"

#include "support/TempDataFolder.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

using StoreEpochs = StoreTest;

QByteArray ReadAll(const QString& path) {
    QFile f(path);
    f.open(QIODevice::ReadOnly);
    return f.readAll();
}

} // namespace

TEST_F(StoreEpochs, AFifteenValueTransformationIsNotSavedWithoutItsEpoch) {
    FillNewSystem(*m_sd, QStringLiteral("Ports"), QStringLiteral("Moving quay"));
    m_sd->SetDtfMethod(QStringLiteral("Coordinate Frame time-dependent (15 parameters)"),
                       DTF_15_COORDINATE_FRAME);
    DtfValues values{0.1, 0.2, 0.3, 0.001, 0.002, 0.003, 0.01, 0.001, 0.001, 0.001};
    m_sd->SetDtfParameters(values, 0, 0.0, 0.0);
    const QByteArray before = ReadAll(m_store.userDbPath());
    EXPECT_FALSE(m_sd->SaveCoordSys());
    EXPECT_TRUE(m_sd->LastError().contains(QStringLiteral("\"Datum Epoch\"")))
        << m_sd->LastError().toStdString();
    EXPECT_TRUE(m_sd->LastError().contains(QStringLiteral("Moving quay-dtf")));
    values[14] = 12010.0;
    m_sd->SetDtfParameters(values, 0, 0.0, 0.0);
    EXPECT_FALSE(m_sd->SaveCoordSys());
    EXPECT_TRUE(m_sd->LastError().contains(QStringLiteral("12010")));
    EXPECT_EQ(ReadAll(m_store.userDbPath()), before);

    values[14] = 2010.0;
    m_sd->SetDtfParameters(values, 0, 2024.25, 0.0);
    ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();
    QString info;
    m_db->GetDtfInfoText(info, QStringLiteral("Moving quay-dtf"));
    EXPECT_TRUE(info.contains(QStringLiteral("Default observation epoch: 2024.250")))
        << info.toStdString();

    // A seven-value transformation has no epoch to give.
    FillNewSystem(*m_sd, QStringLiteral("Ports"), QStringLiteral("Still quay"));
    EXPECT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();
}

TEST(StoreEpochTexts, TimeDependentPreDefinedTransformationsSayWhichEpochTheyUse) {
    TempDataFolder folder;
    std::unique_ptr<OrvGeoDatabaseBase> db(
        OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(folder.dllType()));
    ASSERT_NE(db, nullptr);
    const QString name = QStringLiteral("GDA2020 to WGS 84 (G1762) (1)");
    QString info;
    db->GetDtfInfoText(info, name);
    ASSERT_FALSE(info.isEmpty()) << "the system database has no " << name.toStdString();
    EXPECT_TRUE(info.contains(QStringLiteral("Default observation epoch: 2020.000 (taken for "
                                             "every point given without an observation epoch")))
        << info.toStdString();
    EXPECT_TRUE(info.contains(QStringLiteral("A present-day observation needs its observation "
                                             "epoch: without one it is transformed as if "
                                             "observed in 2020.000.")))
        << info.toStdString();
    // Accuracy and area of use are part of every datum transformation's text.
    EXPECT_TRUE(info.contains(QStringLiteral("\tAccuracy: ")));
    EXPECT_TRUE(info.contains(QStringLiteral("\tArea of use: Australia")));
}
