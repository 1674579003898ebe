#include "CommonDataFolder.h"
#include "PageTestSupport.h"

#include "api/GeoKeys.h"
#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/GridSelDlg.h"
#include "pages/WIZPage10.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

namespace {

QString key(int index) {
    return QString::fromWCharArray(GeoidmodelTypeKeys[index]);
}

class GeoidPage : public WizardPageTest {
protected:
    void SetUp() override { OpenOn(10); }
    WIZPage10* page() { return static_cast<WIZPage10*>(Page(10)); }
    QComboBox* methods() { return Control<QComboBox>(10, QStringLiteral("methodCombo")); }
    QComboBox* chartDatums() { return Control<QComboBox>(10, QStringLiteral("chartDatumCombo")); }
    QString file() { return Control<QLineEdit>(10, QStringLiteral("fileEdit"))->text(); }
    bool browseEnabled() {
        return Control<QPushButton>(10, QStringLiteral("browseFile"))->isEnabled();
    }
    // The three controls of the chart datum row are shown and hidden together.
    bool chartDatumRowShown() {
        const bool text = Control<QLabel>(10, QStringLiteral("chartDatumText"))->isVisible();
        const bool label = Control<QLabel>(10, QStringLiteral("chartDatumLabel"))->isVisible();
        EXPECT_EQ(text, label);
        EXPECT_EQ(text, chartDatums()->isVisible());
        return text;
    }
    // The person picks an entry of a list.
    void pick(QComboBox* combo, const QString& text) {
        const int index = combo->findText(text);
        ASSERT_GE(index, 0) << text.toStdString();
        combo->setCurrentIndex(index);
        emit combo->activated(index);
        Flush();
    }
    void pickMethod(int index) { pick(methods(), key(index)); }
    // "..." answered by a file dialog that must show filter and start folder.
    void browseFileDialog(const QString& filter, const QString& startFolder,
                          const QString& chosen) {
        ui.ExpectFileOpen(filter, startFolder, chosen);
        Click(10, QStringLiteral("browseFile"));
        EXPECT_TRUE(ui.Verify());
    }
    // "..." answered by the grid file picker, which must open for typeIndex on the current
    // file; choice is selected in its list and confirmed (empty: cancelled).
    void browseGridPicker(int typeIndex, const QString& current, const QString& choice) {
        ui.ExpectModal<GridSelDlg>([=](GridSelDlg& picker) {
            EXPECT_EQ(picker.GetTypeIndex(), typeIndex);
            EXPECT_EQ(picker.GetFile(), current);
            if (choice.isEmpty()) {
                picker.reject();
                return picker.result();
            }
            auto* list = picker.findChild<QListWidget*>(QStringLiteral("fileList"));
            const QList<QListWidgetItem*> found = list->findItems(choice, Qt::MatchExactly);
            EXPECT_EQ(found.size(), 1) << choice.toStdString();
            if (!found.isEmpty())
                list->setCurrentItem(found.first());
            picker.accept();
            return picker.result();
        });
        Click(10, QStringLiteral("browseFile"));
        EXPECT_TRUE(ui.Verify());
    }
    QString staticMethod() {
        QString out;
        return wizard.GetGeoStatic()->GetGeoidMethod(out);
    }
    QString staticFile() {
        QString out;
        return wizard.GetGeoStatic()->GetGeoidFile(out);
    }
    QString staticChartDatum() {
        QString out;
        return wizard.GetGeoStatic()->GetChartDatum(out);
    }

    CommonDataFolder common;
};

} // namespace

// The list offers "--None--" and the keys 2 to 31 without 8 to 12, 25 and 29; the page opens
// on "--None--" with nothing to browse and no chart datum row.
TEST_F(GeoidPage, OpensOnNoneWithTheWizardsMethods) {
    QStringList expected{QStringLiteral("--None--")};
    for (int index :
         {2, 3, 4, 5, 6, 7, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 26, 27, 28, 30, 31})
        expected << key(index);
    QStringList shown;
    for (int i = 0; i < methods()->count(); ++i)
        shown << methods()->itemText(i);
    EXPECT_EQ(shown, expected);

    EXPECT_EQ(methods()->currentIndex(), 0);
    EXPECT_TRUE(file().isEmpty());
    EXPECT_FALSE(browseEnabled());
    EXPECT_FALSE(chartDatumRowShown());
    EXPECT_FALSE(page()->GetGeoidOn());

    QStringList datums;
    for (int i = 0; i < chartDatums()->count(); ++i)
        datums << chartDatums()->itemText(i);
    EXPECT_EQ(datums,
              QStringList({"--None--", "LMSL", "MHHW", "MHW", "MTL", "DTL", "MLW", "MLLW"}));
    EXPECT_EQ(Control<QLabel>(10, QStringLiteral("geoidPageInfo"))->text(),
              QStringLiteral("A geoid model will calculate a local height from the satellite "
                             "ellipsoid height.\nIf as method a geoid model grid model is "
                             "selected, a file of a geoid model grid model can be selected.\n"
                             "Geoid model grid model has to be created in the grid model editor "
                             "in advance."));
}

// "..." is enabled exactly for the methods that take a model file.
TEST_F(GeoidPage, BrowseFollowsTheMethodsThatTakeAFile) {
    const QList<int> withFile{3, 6, 7, 14, 15, 16, 19, 20, 23, 24, 26, 27, 28};
    for (int i = methods()->count() - 1; i >= 0; --i) {
        const QString method = methods()->itemText(i);
        pick(methods(), method);
        bool takesFile = false;
        for (int k : withFile)
            takesFile = takesFile || method == key(k);
        EXPECT_EQ(browseEnabled(), takesFile) << method.toStdString();
        EXPECT_EQ(page()->GetGeoidOn(), i != 0) << method.toStdString();
        EXPECT_EQ(page()->GetMethod(), i == 0 ? QString() : method);
    }
}

// Each method with an ordinary file dialog asks with its filter, starting in its folder below
// the common data folder; the file is kept without its folder.
TEST_F(GeoidPage, FileDialogsOfferTheirFiltersAndFolders) {
    const QString c = common.Common();
    struct Case {
        int index;
        QString filter;
        QString folder;
    };
    const Case cases[] = {
        {16, "Quasigeoid File (binary format)|*.BIN||", c},
        {20, "Quasigeoid File (binary format)|*.BIN||", c},
        {23, "Canadian geoid File (.byn format)|*.BYN||", c},
        {26, "Trimble geoid grid File (.ggf format)|*.GGF||", c},
        {27, "VORF grid File (.vrf format)|*.vrf||", c},
        {14, "DRV90 geoid File (binary format)|*.01||", c + "General/Geoidmodels/Denmark/"},
        {24, "Ordnance Survey Geoid Model File (.txt or .gri format)|*.*||",
         c + "General/Geoidmodels/United Kingdom/"},
        {28, "RDANPTRANS2018 Geoid Model File (.gtx format)|*.gtx||",
         c + "General/Geoidmodels/Netherlands/"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.index);
        pickMethod(test.index);
        browseFileDialog(test.filter, test.folder,
                         QStringLiteral("/survey/models/model%1.x").arg(test.index));
        EXPECT_EQ(file(), QStringLiteral("model%1.x").arg(test.index));
        EXPECT_EQ(page()->GetFile(), QStringLiteral("model%1.x").arg(test.index));
        EXPECT_FALSE(chartDatumRowShown());
    }
}

// A model folder that exists in another letter case is the one the dialog starts in; without
// a settings file only the sub-folder is left.
TEST_F(GeoidPage, StartFoldersFollowTheFoldersOnDisk) {
    common.WriteCommon(QStringLiteral("general/GEOIDMODELS/Denmark/dvr90.01"));
    pickMethod(GeoidKey::Dvr90);
    browseFileDialog(QStringLiteral("DRV90 geoid File (binary format)|*.01||"),
                     common.Common() + QStringLiteral("general/GEOIDMODELS/Denmark/"),
                     common.Common() + QStringLiteral("general/GEOIDMODELS/Denmark/dvr90.01"));
    EXPECT_EQ(file(), QStringLiteral("dvr90.01"));

    common.RemoveIni();
    pickMethod(GeoidKey::Gtx);
    browseFileDialog(QStringLiteral("RDANPTRANS2018 Geoid Model File (.gtx format)|*.gtx||"),
                     QStringLiteral("General/Geoidmodels/Netherlands/"),
                     QStringLiteral("/elsewhere/nlgeo2018.gtx"));
    EXPECT_EQ(file(), QStringLiteral("nlgeo2018.gtx"));
}

// A cancelled dialog or picker changes nothing; the same method again keeps its file, another
// one clears it.
TEST_F(GeoidPage, CancelKeepsTheFileAndOnlyANewMethodClearsIt) {
    pickMethod(GeoidKey::Gtx);
    browseFileDialog(QStringLiteral("RDANPTRANS2018 Geoid Model File (.gtx format)|*.gtx||"),
                     common.Common() + QStringLiteral("General/Geoidmodels/Netherlands/"),
                     QStringLiteral("/usr/share/proj/egm96_15.gtx"));
    EXPECT_EQ(file(), QStringLiteral("egm96_15.gtx"));
    browseFileDialog(QStringLiteral("RDANPTRANS2018 Geoid Model File (.gtx format)|*.gtx||"),
                     common.Common() + QStringLiteral("General/Geoidmodels/Netherlands/"),
                     QString());
    EXPECT_EQ(file(), QStringLiteral("egm96_15.gtx"));

    pickMethod(GeoidKey::Gtx);
    EXPECT_EQ(file(), QStringLiteral("egm96_15.gtx"));

    pickMethod(GeoidKey::Swen);
    EXPECT_TRUE(file().isEmpty());
    common.WriteCommon(QStringLiteral("General/GeoidModels/Sweden/SWEN17_RH2000.grd"));
    browseGridPicker(GeoidKey::Swen, QString(), QStringLiteral("SWEN17_RH2000"));
    EXPECT_EQ(file(), QStringLiteral("SWEN17_RH2000"));
    browseGridPicker(GeoidKey::Swen, QStringLiteral("SWEN17_RH2000"), QString());
    EXPECT_EQ(file(), QStringLiteral("SWEN17_RH2000"));

    pick(methods(), QStringLiteral("--None--"));
    EXPECT_TRUE(file().isEmpty());
    EXPECT_FALSE(page()->GetGeoidOn());
}

// The picker opens with the method's own index for each method it serves.
TEST_F(GeoidPage, GridPickerOpensForItsMethods) {
    for (int index :
         {GeoidKey::GeoidModel, GeoidKey::Swen, GeoidKey::GridModel, GeoidKey::Nn2000}) {
        SCOPED_TRACE(index);
        pickMethod(index);
        browseGridPicker(index, QString(), QString());
        EXPECT_TRUE(file().isEmpty());
    }
}

// VDatum: the chart datum row shows only once a model is chosen; the chart datum goes with the
// method and the file to the static data on Next and comes back on the next activation.
TEST_F(GeoidPage, VerticalDatumTransformationWithChartDatum) {
    common.WriteCommon(QStringLiteral("vdatum/core/geoid.inf"), "geoid_models=GEOID12B,GEOID18\n");
    pickMethod(GeoidKey::ChartDatum);
    EXPECT_TRUE(browseEnabled());
    EXPECT_FALSE(chartDatumRowShown());
    EXPECT_EQ(chartDatums()->currentIndex(), ChartDatumNone);

    browseGridPicker(GeoidKey::ChartDatum, QString(), QStringLiteral("GEOID18"));
    EXPECT_EQ(file(), QStringLiteral("GEOID18"));
    EXPECT_TRUE(chartDatumRowShown());
    EXPECT_EQ(chartDatums()->currentIndex(), -1) << "no chart datum yet: none selected";

    pick(chartDatums(), QStringLiteral("MLLW"));
    EXPECT_EQ(page()->GetChartDatum(), QStringLiteral("MLLW"));

    Next();
    EXPECT_EQ(ShownPage(), 6);
    EXPECT_EQ(staticMethod(), key(GeoidKey::ChartDatum));
    EXPECT_EQ(staticFile(), QStringLiteral("GEOID18"));
    EXPECT_EQ(staticChartDatum(), QStringLiteral("MLLW"));
    EXPECT_TRUE(wizard.GetGeoModStatu());

    Back();
    EXPECT_EQ(ShownPage(), 10);
    EXPECT_EQ(methods()->currentText(), key(GeoidKey::ChartDatum));
    EXPECT_EQ(file(), QStringLiteral("GEOID18"));
    EXPECT_TRUE(browseEnabled());
    EXPECT_TRUE(chartDatumRowShown());
    EXPECT_EQ(chartDatums()->currentText(), QStringLiteral("MLLW"));

    // another method drops file and chart datum at once
    pickMethod(GeoidKey::Egm96);
    EXPECT_FALSE(chartDatumRowShown());
    EXPECT_TRUE(page()->GetChartDatum().isEmpty());
    Next();
    EXPECT_EQ(staticMethod(), key(GeoidKey::Egm96));
    EXPECT_TRUE(staticFile().isEmpty());
    EXPECT_TRUE(staticChartDatum().isEmpty());
}

// Next hands method and file over and switches the geoid model on; leaving later with
// "--None--" hands empty texts and switches it off.
TEST_F(GeoidPage, NextHandsOverAndNoneSwitchesOff) {
    pickMethod(GeoidKey::Gtx);
    browseFileDialog(QStringLiteral("RDANPTRANS2018 Geoid Model File (.gtx format)|*.gtx||"),
                     common.Common() + QStringLiteral("General/Geoidmodels/Netherlands/"),
                     QStringLiteral("/usr/share/proj/egm96_15.gtx"));
    Next();
    EXPECT_EQ(ShownPage(), 6);
    EXPECT_EQ(staticMethod(), QStringLiteral("GTX Geoid Grid"));
    EXPECT_EQ(staticFile(), QStringLiteral("egm96_15.gtx"));
    EXPECT_TRUE(wizard.GetGeoModStatu());

    Back();
    pick(methods(), QStringLiteral("--None--"));
    Next();
    EXPECT_TRUE(staticMethod().isEmpty());
    EXPECT_TRUE(staticFile().isEmpty());
    EXPECT_TRUE(staticChartDatum().isEmpty());
    EXPECT_FALSE(wizard.GetGeoModStatu());
}

// Back hands nothing over; coming back, the page shows what the static data holds.
TEST_F(GeoidPage, BackHandsNothingOverAndTheReturnShowsTheStaticData) {
    pickMethod(GeoidKey::Gtx);
    browseFileDialog(QStringLiteral("RDANPTRANS2018 Geoid Model File (.gtx format)|*.gtx||"),
                     common.Common() + QStringLiteral("General/Geoidmodels/Netherlands/"),
                     QStringLiteral("/data/nlgeo2018.gtx"));
    Back();
    EXPECT_EQ(ShownPage(), 5);
    EXPECT_TRUE(staticMethod().isEmpty());
    EXPECT_FALSE(wizard.GetGeoModStatu());

    ASSERT_TRUE(wizard.SetActivePage(wizard.GetPageIndex(Page(10))));
    Flush();
    EXPECT_EQ(methods()->currentIndex(), 0);
    EXPECT_TRUE(file().isEmpty());
    EXPECT_FALSE(browseEnabled());
    EXPECT_FALSE(page()->GetGeoidOn());
}
