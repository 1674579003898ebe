#include "CommonDataFolder.h"
#include "PageTestSupport.h"

#include "api/GeoKeys.h"
#include "api/OrvGeoStaticDataBase.h"
#include "pages/WIZPage13.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

QString key(int index) {
    return QString::fromWCharArray(GeoidmodelTypeKeys[index]);
}

const QString kShiftFilter =
    QStringLiteral("RDANPTRANS2018 Shift Model File (.gsb format)|*.gsb||");
// The United Kingdom shift model is asked for with the geoid model file's description.
const QString kOstnFilter =
    QStringLiteral("Ordnance Survey Geoid Model File (.txt or .gri format)|*.txt||");

struct Offsets {
    double e, n, z;
    bool operator==(const Offsets&) const = default;
};
void PrintTo(const Offsets& o, std::ostream* os) {
    *os << "(" << o.e << ", " << o.n << ", " << o.z << ")";
}

class PostPage : public WizardPageTest {
protected:
    void SetUp() override { OpenOn(13); }
    WIZPage13* page() { return static_cast<WIZPage13*>(Page(13)); }
    QComboBox* methods() { return Control<QComboBox>(13, QStringLiteral("methodCombo")); }
    QLineEdit* edit(const char* name) { return Control<QLineEdit>(13, QString::fromLatin1(name)); }
    QCheckBox* apply() { return Control<QCheckBox>(13, QStringLiteral("applyPostCorrection")); }
    bool enabled(const char* name) {
        return Control<QWidget>(13, QString::fromLatin1(name))->isEnabled();
    }
    void clickApply() { Click(13, QStringLiteral("applyPostCorrection")); }
    void type(double e, double n, double z) {
        edit("eastingEdit")->setText(QString::number(e));
        edit("northingEdit")->setText(QString::number(n));
        edit("zEdit")->setText(QString::number(z));
    }
    void pickMethod(const QString& text) {
        const int index = methods()->findText(text);
        ASSERT_GE(index, 0) << text.toStdString();
        methods()->setCurrentIndex(index);
        emit methods()->activated(index);
        Flush();
    }
    void browse(const QString& filter, const QString& folder, const QString& chosen) {
        ui.ExpectFileOpen(filter, folder, chosen);
        Click(13, QStringLiteral("browseFile"));
        EXPECT_TRUE(ui.Verify());
    }
    // Returns to the page as the sheet does when it is activated again.
    void reactivate() {
        ASSERT_TRUE(wizard.SetActivePage(wizard.GetPageIndex(Page(13))));
        Flush();
    }
    Offsets staticOffsets() {
        Offsets o{};
        wizard.GetGeoStatic()->GetPostTranslation(o.e, o.n, o.z);
        return o;
    }
    QString staticFile() {
        QString out;
        return wizard.GetGeoStatic()->GetPostModelFile(out);
    }
    QString staticMethod() {
        QString out;
        return wizard.GetGeoStatic()->GetPostModelName(out);
    }
    bool staticOn() { return wizard.GetGeoStatic()->IsPostTranslationOn(); }
    // Everything but the box follows it; the file row stays disabled.
    void expectFollowingApply(bool on) {
        for (const char* name :
             {"eastingLabel", "eastingEdit", "northingLabel", "northingEdit", "zLabel", "zEdit",
              "unitLabel", "unitText", "methodLabel", "methodCombo"})
            EXPECT_EQ(enabled(name), on) << name;
        for (const char* name : {"fileLabel", "fileEdit", "browseFile"})
            EXPECT_FALSE(enabled(name)) << name;
    }

    CommonDataFolder common;
};

} // namespace

// The page opens unchecked on "--None--" with the post correction methods in their order and
// everything but the box disabled.
TEST_F(PostPage, OpensUncheckedWithThePostMethods) {
    QStringList expected{QStringLiteral("--None--")};
    for (int index : {5, 31, 8, 14, 25, 4, 13, 29, 30})
        expected << key(index);
    QStringList shown;
    for (int i = 0; i < methods()->count(); ++i)
        shown << methods()->itemText(i);
    EXPECT_EQ(shown, expected);
    EXPECT_EQ(methods()->currentIndex(), 0);

    EXPECT_FALSE(apply()->isChecked());
    EXPECT_TRUE(apply()->isEnabled());
    expectFollowingApply(false);
    EXPECT_FALSE(wizard.GetPosModStatu());
    EXPECT_EQ(edit("eastingEdit")->text(), QStringLiteral("0"));
    EXPECT_EQ(Control<QLabel>(13, QStringLiteral("postPageInfo"))->text(),
              QStringLiteral("The Post Correction will be added to correct the calculated "
                             "Easting, Northing and Z."));
}

// Checking the box shows the system unit, enables the offsets and the method, and sets the
// sheet's flag; "..." waits for the OSTN or NTv2 method, and the file row itself stays
// disabled.
TEST_F(PostPage, TheBoxEnablesTheRowsAndOnlyShiftModelsBrowse) {
    wizard.GetGeoStatic()->SetUnitName(QStringLiteral("US survey foot"), QString());
    clickApply();
    EXPECT_TRUE(wizard.GetPosModStatu());
    expectFollowingApply(true);
    EXPECT_EQ(Control<QLabel>(13, QStringLiteral("unitText"))->text(),
              QStringLiteral("US survey foot"));

    pickMethod(key(GeoidKey::Ntv2Shift));
    EXPECT_TRUE(enabled("browseFile"));
    EXPECT_FALSE(enabled("fileEdit"));
    EXPECT_FALSE(enabled("fileLabel"));
    pickMethod(key(GeoidKey::Egm2008));
    EXPECT_FALSE(enabled("browseFile"));
    pickMethod(key(GeoidKey::Ostn));
    EXPECT_TRUE(enabled("browseFile"));

    // the box again (off and on) disables "..." whatever the method
    clickApply();
    EXPECT_FALSE(wizard.GetPosModStatu());
    expectFollowingApply(false);
    clickApply();
    expectFollowingApply(true);
    EXPECT_EQ(methods()->currentText(), key(GeoidKey::Ostn));
}

// The shift model files: NTv2 grids from the Netherlands folder, the OSTN text file from the
// United Kingdom folder; the file is kept without its folder, a cancelled dialog changes
// nothing.
TEST_F(PostPage, ShiftModelFilesComeFromTheirDialogs) {
    clickApply();
    pickMethod(key(GeoidKey::Ntv2Shift));
    browse(kShiftFilter, common.Common() + QStringLiteral("General/Geoidmodels/Netherlands/"),
           QStringLiteral("/grids/rdtrans2018.gsb"));
    EXPECT_EQ(edit("fileEdit")->text(), QStringLiteral("rdtrans2018.gsb"));

    pickMethod(key(GeoidKey::Ostn));
    browse(kOstnFilter, common.Common() + QStringLiteral("General/Geoidmodels/United Kingdom/"),
           QString());
    EXPECT_EQ(edit("fileEdit")->text(), QStringLiteral("rdtrans2018.gsb"));
    browse(kOstnFilter, common.Common() + QStringLiteral("General/Geoidmodels/United Kingdom/"),
           QStringLiteral("/models/OSTN15_OSGM15_DataFile.txt"));
    EXPECT_EQ(page()->GetFile(), QStringLiteral("OSTN15_OSGM15_DataFile.txt"));
}

// Next hands offsets, file and method over and switches the correction on; returning, the
// page brings them back with "..." disabled until the method changes.
TEST_F(PostPage, NextHandsOverAndTheReturnBringsItBack) {
    clickApply();
    type(12.5, -3.25, 0.125);
    pickMethod(key(GeoidKey::Ntv2Shift));
    browse(kShiftFilter, common.Common() + QStringLiteral("General/Geoidmodels/Netherlands/"),
           QStringLiteral("/grids/rdtrans2018.gsb"));
    Next();
    EXPECT_EQ(ShownPage(), 11);
    EXPECT_EQ(staticOffsets(), (Offsets{12.5, -3.25, 0.125}));
    EXPECT_EQ(staticFile(), QStringLiteral("rdtrans2018.gsb"));
    EXPECT_EQ(staticMethod(), QStringLiteral("NTv2 Shift Model"));
    EXPECT_TRUE(staticOn());

    reactivate();
    EXPECT_TRUE(apply()->isChecked());
    EXPECT_EQ(edit("eastingEdit")->text(), QStringLiteral("12.5"));
    EXPECT_EQ(edit("northingEdit")->text(), QStringLiteral("-3.25"));
    EXPECT_EQ(edit("zEdit")->text(), QStringLiteral("0.125"));
    EXPECT_EQ(methods()->currentText(), key(GeoidKey::Ntv2Shift));
    EXPECT_EQ(edit("fileEdit")->text(), QStringLiteral("rdtrans2018.gsb"));
    expectFollowingApply(true);
}

// Back hands the page over too, so typed values are kept whichever way the person leaves.
TEST_F(PostPage, BackHandsOverAsWellAsNext) {
    clickApply();
    type(100, 200, -1.5);
    Back();
    EXPECT_EQ(ShownPage(), 9);
    EXPECT_EQ(staticOffsets(), (Offsets{100, 200, -1.5}));
    EXPECT_TRUE(staticMethod().isEmpty()) << "\"--None--\" is handed over as no method";
    EXPECT_TRUE(staticFile().isEmpty());
    EXPECT_TRUE(staticOn());

    reactivate();
    EXPECT_EQ(edit("northingEdit")->text(), QStringLiteral("200"));
    EXPECT_EQ(methods()->currentIndex(), 0);
}

// Leaving with the box unchecked stores zero offsets and no model and switches the correction
// off, even when values were typed and handed over before.
TEST_F(PostPage, UncheckedHandsOverZerosAndOff) {
    clickApply();
    type(7, 8, 9);
    pickMethod(key(GeoidKey::Ostn));
    browse(kOstnFilter, common.Common() + QStringLiteral("General/Geoidmodels/United Kingdom/"),
           QStringLiteral("/models/ostn.txt"));
    Next();
    EXPECT_TRUE(staticOn());

    reactivate();
    clickApply();
    EXPECT_EQ(edit("eastingEdit")->text(), QStringLiteral("7")) << "the typed text stays";
    Next();
    EXPECT_EQ(ShownPage(), 11);
    EXPECT_EQ(staticOffsets(), (Offsets{0, 0, 0}));
    EXPECT_TRUE(staticFile().isEmpty());
    EXPECT_TRUE(staticMethod().isEmpty());
    EXPECT_FALSE(staticOn());
    EXPECT_FALSE(page()->GetApply());

    // the box is unchecked, so nothing is brought back
    reactivate();
    EXPECT_FALSE(apply()->isChecked());
    EXPECT_FALSE(wizard.GetPosModStatu());
}

// The check box handler runs before the reload: a correction switched on in the static data
// is only brought back when the box was already checked, whatever the sheet's flag said (as
// after a system taken over with its post correction).
TEST_F(PostPage, TheReloadNeedsTheBoxChecked) {
    OrvGeoStaticDataBase* staticData = wizard.GetGeoStatic();
    staticData->SetPostTranslation(1, 2, 3);
    staticData->SetPostModelName(key(GeoidKey::Ntv2Shift));
    staticData->SetPostModelFile(QStringLiteral("nl.gsb"));
    staticData->SetPostTranslationOn(true);
    wizard.SetPosModStatu(true);
    reactivate();
    EXPECT_FALSE(wizard.GetPosModStatu());
    EXPECT_FALSE(apply()->isChecked());
    EXPECT_EQ(edit("eastingEdit")->text(), QStringLiteral("0"));
    EXPECT_EQ(methods()->currentIndex(), 0);

    clickApply();
    reactivate();
    EXPECT_EQ(edit("eastingEdit")->text(), QStringLiteral("1"));
    EXPECT_EQ(methods()->currentText(), key(GeoidKey::Ntv2Shift));
    EXPECT_EQ(edit("fileEdit")->text(), QStringLiteral("nl.gsb"));

    // a stored method the list does not offer shows as "--None--"
    staticData->SetPostModelName(QStringLiteral("Unknown Model"));
    reactivate();
    EXPECT_EQ(methods()->currentIndex(), 0);
}

// An offset that is no number is refused on Next and on Back while the box is checked: the
// page stays with the text kept and nothing is handed over. Unchecked, such a text is not used
// and gives way to the last number.
TEST_F(PostPage, AnOffsetThatIsNoNumberIsRefused) {
    clickApply();
    type(1, 2, 3);
    edit("northingEdit")->setText(QStringLiteral("12,5 m"));
    ui.ExpectMessage(QStringLiteral("Please enter a number."), QString(), MsgButtons::Ok,
                     MsgAnswer::Ok);
    Next();
    EXPECT_EQ(ShownPage(), 13);
    EXPECT_EQ(edit("northingEdit")->text(), QStringLiteral("12,5 m"));
    EXPECT_FALSE(staticOn());

    ui.ExpectMessage(QStringLiteral("Please enter a number."), QString(), MsgButtons::Ok,
                     MsgAnswer::Ok);
    Back();
    EXPECT_EQ(ShownPage(), 13);
    EXPECT_EQ(edit("northingEdit")->text(), QStringLiteral("12,5 m"));
    EXPECT_FALSE(staticOn());
    EXPECT_TRUE(ui.Verify());

    edit("northingEdit")->setText(QStringLiteral("12.5"));
    Next();
    EXPECT_EQ(ShownPage(), 11);
    EXPECT_EQ(staticOffsets(), (Offsets{1, 12.5, 3}));

    reactivate();
    edit("zEdit")->setText(QStringLiteral("abc"));
    clickApply();
    EXPECT_EQ(edit("zEdit")->text(), QStringLiteral("3"));
    Next();
    EXPECT_EQ(ShownPage(), 11);
    EXPECT_FALSE(staticOn());
}
