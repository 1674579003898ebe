#include "PageTestSupport.h"

#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/PickerTree.h"
#include "dialogs/SelEllipsoidDlg.h"
#include "store/SqliteStaticData.h"

#include <QComboBox>
#include <QLineEdit>

namespace {

// The fifteen values edits of the parameters page, in value order.
const char* const kValueEdits[15] = {
    "shiftX",        "shiftY",        "shiftZ",        "rotationX",  "rotationY",
    "rotationZ",     "scale",         "rateShiftX",    "rateShiftY", "rateShiftZ",
    "rateRotationX", "rateRotationY", "rateRotationZ", "rateScale",  "epoch"};

class Walk : public WizardPageTest {};

} // namespace

// A new system, not based on a stored one, walked from the name page to the unit page with a
// new fifteen-value datum transformation typed by hand: the sheet and the static data hold
// exactly what was chosen and typed.
TEST_F(Walk, NewSystemWithAFifteenValueTransformationTypedByHand) {
    OpenOn(0);
    Control<QLineEdit>(0, QStringLiteral("newSystemName"))
        ->setText(QStringLiteral("Harbour survey 2026"));
    Next();
    ASSERT_EQ(ShownPage(), 2);

    ui.ExpectModal<SelEllipsoidDlg>([](SelEllipsoidDlg& picker) {
        picker.Tree()->Select(picker.Tree()->Model().FindTopLevel(QStringLiteral("GRS 1980")));
        picker.accept();
        return picker.result();
    });
    Click(2, QStringLiteral("selectLocal"));
    Next();
    ASSERT_EQ(ShownPage(), 3);

    Click(3, QStringLiteral("optionNew"));
    Next();
    ASSERT_EQ(ShownPage(), 5);
    auto* method = Control<QComboBox>(5, QStringLiteral("method"));
    method->setCurrentIndex(DTF_15_POSITION_VECTOR);
    emit method->activated(DTF_15_POSITION_VECTOR);
    Flush();
    const DtfValues typed = {0.06155,    -0.01087,  -0.04019, -0.0394924, -0.0327221,
                             -0.0328979, -0.009994, 0.00141,  0.00141,    0.00141,
                             0.00141,    0.00141,   0.00141,  0.00042,    2020.0};
    for (int i = 0; i < 15; ++i)
        Control<QLineEdit>(5, QLatin1String(kValueEdits[i]))
            ->setText(QString::number(typed[i], 'f', 8));
    Next();
    ASSERT_EQ(ShownPage(), 10);
    Next();
    ASSERT_EQ(ShownPage(), 6);
    Next();
    ASSERT_EQ(ShownPage(), 7);

    EXPECT_EQ(wizard.GetSrcElpName(), QStringLiteral("WGS 84"));
    EXPECT_EQ(wizard.GetDesElpName(), QStringLiteral("GRS 1980"));
    EXPECT_EQ(wizard.GetDtfOption(), 1u);
    EXPECT_FALSE(wizard.GetDtfFromoldDtf());
    EXPECT_EQ(wizard.GetUnit(), QStringLiteral("Meters"));

    const SystemDraft& d = dynamic_cast<SqliteStaticData&>(*wizard.GetGeoStatic()).Draft();
    EXPECT_EQ(d.system.name, QStringLiteral("Harbour survey 2026"));
    EXPECT_EQ(d.system.satEllipsoid, QStringLiteral("WGS 84"));
    EXPECT_EQ(d.system.localEllipsoid, QStringLiteral("GRS 1980"));
    EXPECT_EQ(d.dtf.name, QStringLiteral("Harbour survey 2026-dtf"));
    EXPECT_EQ(d.dtf.methodIndex, DTF_15_POSITION_VECTOR);
    for (int i = 0; i < 15; ++i)
        EXPECT_DOUBLE_EQ(d.dtf.values[i], typed[i]) << kValueEdits[i];
    EXPECT_EQ(d.unit.name, QStringLiteral("Meters"));
    EXPECT_EQ(d.unit.metersPerUnit, 1.0);
}
