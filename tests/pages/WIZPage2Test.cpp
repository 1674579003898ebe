#include "PageTestSupport.h"

#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/PickerTree.h"
#include "dialogs/SelEllipsoidDlg.h"
#include "pages/WIZPage2.h"

#include <QLabel>
#include <QLineEdit>

namespace {

class EllipsoidPage : public WizardPageTest {
protected:
    void SetUp() override { OpenOn(2); }
    WIZPage2* page() { return static_cast<WIZPage2*>(Page(2)); }
    QString shown(const QString& name) { return Control<QLineEdit>(2, name)->text(); }
    QString info(const QString& name) { return Control<QLabel>(2, name)->text(); }
    // Scripts the picker: checks what it opened on, picks choice (empty: cancels).
    void expectPicker(const QString& openedOn, const QString& choice) {
        ui.ExpectModal<SelEllipsoidDlg>([openedOn, choice](SelEllipsoidDlg& picker) {
            EXPECT_EQ(picker.GetSelName(), openedOn);
            if (choice.isEmpty()) {
                picker.reject();
            } else {
                picker.Tree()->Select(picker.Tree()->Model().FindTopLevel(choice));
                picker.accept();
            }
            return picker.result();
        });
    }
};

} // namespace

// The page opens on the sheet's satellite ellipsoid with its information and an empty local
// side; Next is refused until both are chosen.
TEST_F(EllipsoidPage, OpensOnTheSatelliteEllipsoidAndWantsBoth) {
    EXPECT_EQ(shown(QStringLiteral("satelliteName")), QStringLiteral("WGS 84"));
    EXPECT_EQ(info(QStringLiteral("satelliteInfo")),
              wizard.DumpElpInfoText(QStringLiteral("WGS 84")));
    EXPECT_TRUE(shown(QStringLiteral("localName")).isEmpty());
    EXPECT_TRUE(info(QStringLiteral("localInfo")).isEmpty());

    ui.ExpectMessage(QStringLiteral("No ellipsoid selection."), QString(), MsgButtons::Ok,
                     MsgAnswer::Ok);
    Next();
    EXPECT_EQ(ShownPage(), 2);
}

// A confirmed pick shows the name and its information and goes into the sheet at once
// (even when the person then goes Back); Next hands both to the static data.
TEST_F(EllipsoidPage, PicksGoIntoTheSheetAtOnceAndToTheStaticDataOnNext) {
    // nothing preset: the picker opens on the first ellipsoid by name
    expectPicker(QStringLiteral("Airy 1830"), QStringLiteral("International 1924"));
    Click(2, QStringLiteral("selectLocal"));
    EXPECT_EQ(shown(QStringLiteral("localName")), QStringLiteral("International 1924"));
    EXPECT_EQ(info(QStringLiteral("localInfo")),
              wizard.DumpElpInfoText(QStringLiteral("International 1924")));
    EXPECT_EQ(wizard.GetDesElpName(), QStringLiteral("International 1924"));

    expectPicker(QStringLiteral("WGS 84"), QStringLiteral("GRS 1980"));
    Click(2, QStringLiteral("selectSatellite"));
    EXPECT_EQ(wizard.GetSrcElpName(), QStringLiteral("GRS 1980"));

    QString local, satellite;
    Next();
    EXPECT_EQ(ShownPage(), 3);
    wizard.GetGeoStatic()->GetLocalEllipsoidName(local);
    wizard.GetGeoStatic()->GetSatelliteEllipsoidName(satellite);
    EXPECT_EQ(local, QStringLiteral("International 1924"));
    EXPECT_EQ(satellite, QStringLiteral("GRS 1980"));
}

TEST_F(EllipsoidPage, ACancelledPickChangesNothing) {
    expectPicker(QStringLiteral("WGS 84"), QString());
    Click(2, QStringLiteral("selectSatellite"));
    EXPECT_EQ(shown(QStringLiteral("satelliteName")), QStringLiteral("WGS 84"));
    EXPECT_EQ(page()->GetSatelliteInfo(), wizard.DumpElpInfoText(QStringLiteral("WGS 84")));
    EXPECT_EQ(wizard.GetSrcElpName(), QStringLiteral("WGS 84"));
    EXPECT_TRUE(wizard.GetDesElpName().isEmpty());
}
