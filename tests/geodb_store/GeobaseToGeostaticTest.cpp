#include "StoreTestSupport.h"

#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"
#include "util/GeobaseToGeostatic.h"

using OrvGeoWizard::Utils::GeobaseToGeostatic;

namespace {

// What a saved system holds beyond its information text.
struct StoredExtras {
    double separation = 0, pm = 0;
    QString chartDatum, postModel, postFile;
    bool horOn = false, vertOn = false;
    bool operator==(const StoredExtras&) const = default;
};

StoredExtras ExtrasOf(OrvGeoDatabaseBase& db, const QString& group, const QString& system) {
    StoredExtras x;
    x.separation = db.GetManualGeoidSeparation(group, system);
    x.pm = db.GetPrimeMeridian(group, system);
    x.chartDatum = db.GetChartDatum(group, system);
    x.postModel = db.GetPostModelName(group, system);
    x.postFile = db.GetPostModelFile(group, system);
    x.horOn = db.HasPostHorAdjust(group, system);
    x.vertOn = db.HasPostVertAdjust(group, system);
    return x;
}

} // namespace

// The wizard's existing-system page copies each system the person clicks into the same
// static data: a copy over an earlier one must equal a copy into a fresh record, with the
// name given before kept.
TEST_F(StoreTest, GeobaseToGeostaticLeavesNothingOfAnEarlierCopy) {
    const QString group = QStringLiteral("Wind farms");
    FillNewSystem(*m_sd, group, QStringLiteral("Borssele"));
    m_sd->SetGeoidMethod(QStringLiteral("Manual Separation"));
    m_sd->SetManualGeoidSeparation(42.125);
    m_sd->SetChartDatum(QStringLiteral("LMSL"));
    m_sd->SetPostTranslationOn(true);
    m_sd->SetPostTranslation(0.5, 0.25, -0.125);
    m_sd->SetPostModelName(QStringLiteral("Local Height Shift"));
    m_sd->SetPostHorAdjustOn(true);
    m_sd->SetPostHorAdjust(1.00001, 10.0, 20.0, 0.5);
    m_sd->SetPrimeMeridian(2.5969213);
    ASSERT_TRUE(m_sd->SaveCoordSys()) << m_sd->LastError().toStdString();

    const QString europe = QStringLiteral("Europe");
    const QString plain = QStringLiteral("ED50 / UTM zone 31N");
    auto reused = m_store.staticData();
    reused->AssignSystemName(QStringLiteral("Reused \"copy\" 100% Ø"));
    reused->SetGroupName(group);
    ASSERT_TRUE(
        GeobaseToGeostatic(group, QStringLiteral("Borssele"), QString(), m_db.get(), reused.get()));
    ASSERT_TRUE(GeobaseToGeostatic(europe, plain, QString(), m_db.get(), reused.get()));
    QString out;
    EXPECT_EQ(reused->GetAssignedSystemName(out), QStringLiteral("Reused \"copy\" 100% Ø"));
    ASSERT_TRUE(reused->SaveCoordSys()) << reused->LastError().toStdString();

    auto fresh = m_store.staticData();
    ASSERT_TRUE(GeobaseToGeostatic(europe, plain, QString(), m_db.get(), fresh.get()));
    fresh->AssignSystemName(QStringLiteral("Fresh copy"));
    fresh->SetGroupName(group);
    ASSERT_TRUE(fresh->SaveCoordSys()) << fresh->LastError().toStdString();

    const StoredExtras a = ExtrasOf(*m_db, group, QStringLiteral("Reused \"copy\" 100% Ø"));
    const StoredExtras b = ExtrasOf(*m_db, group, QStringLiteral("Fresh copy"));
    EXPECT_EQ(a.separation, 0.0);
    EXPECT_TRUE(a == b);
    QString ta, tb;
    m_db->GetSystemInfoText(ta, group, QStringLiteral("Reused \"copy\" 100% Ø"), {}, {}, {}, {},
                            {});
    m_db->GetSystemInfoText(tb, group, QStringLiteral("Fresh copy"), {}, {}, {}, {}, {});
    EXPECT_EQ(ta.replace(QStringLiteral("Reused \"copy\" 100% Ø"), QStringLiteral("Fresh copy")),
              tb);
}

// A system that is not stored writes nothing: the copy made before stays whole.
TEST_F(StoreTest, GeobaseToGeostaticOfAnUnknownSystemKeepsTheRecord) {
    ASSERT_TRUE(GeobaseToGeostatic(QStringLiteral("Europe"), QStringLiteral("ED50 / UTM zone 31N"),
                                   QString(), m_db.get(), m_sd.get()));
    QString before;
    m_sd->GetOverviewText(before);
    EXPECT_FALSE(GeobaseToGeostatic(QStringLiteral("Europe"), QStringLiteral("No such system"),
                                    QString(), m_db.get(), m_sd.get()));
    QString after;
    EXPECT_EQ(m_sd->GetOverviewText(after), before);
}
