// The geoid model and post correction boxes: the method lists, the model files through the
// file dialogs and the grid file picker, the chart datum line, the three adjustment groups, and
// the host's values (emptied when equal to what is stored).
#include "EditorTestSupport.h"

#include "api/GeoKeys.h"
#include "dialogs/GridSelDlg.h"
#include "resources/StringTable.h"

#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

namespace {

QString Key(int index) {
    return QString::fromWCharArray(GeoidmodelTypeKeys[index]);
}

class GeoidSection : public EditorTest {
protected:
    QComboBox* Methods() { return Control<QComboBox>(QStringLiteral("geoidMethodCombo")); }
    QComboBox* ChartDatums() { return Control<QComboBox>(QStringLiteral("chartDatumCombo")); }
    bool ChartDatumLineShown() {
        const bool text = Control<QLabel>(QStringLiteral("chartDatumApplyLabel"))->isVisible();
        EXPECT_EQ(text, Control<QLabel>(QStringLiteral("chartDatumLabel"))->isVisible());
        EXPECT_EQ(text, ChartDatums()->isVisible());
        return text;
    }
    bool FileButton() {
        return Control<QPushButton>(QStringLiteral("geoidFileButton"))->isEnabled();
    }
    // A harbour system with a vertical datum model and a chart datum.
    void StoreVDatum(const QString& system, const QString& chartDatum) {
        StoreHarbour(system);
        Change(system, [&](OrvGeoStaticDataBase& s) {
            s.SetGeoidEnabled(true);
            s.SetGeoidMethod(Key(GeoidKey::ChartDatum));
            s.SetGeoidFile(QStringLiteral("MODEL1"));
            s.SetChartDatum(chartDatum);
        });
    }
    // The grid file picker answered with an entry of its list (empty: cancelled).
    void ExpectGridPicker(int typeIndex, const QString& choice) {
        ui.ExpectModal<GridSelDlg>([=](GridSelDlg& picker) {
            EXPECT_EQ(picker.GetTypeIndex(), typeIndex);
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
    }
};

} // namespace

// The list: "--None--", then the keys from 2 on without the legacy models and what the post
// list offers; a method chosen again that the system has stored hands the host nothing.
TEST_F(GeoidSection, TheStoredMethodAgainHandsTheHostNothing) {
    StoreRig();
    Open(kGroup, kRig);
    QStringList expected{QStringLiteral("--None--")};
    for (int i = GeoidKey::Egm96; i < GeoidmodelTypeKeyCount; ++i)
        if ((i < 8 || i > 12) && i != 25 && i != 29 && i != 30)
            expected << Key(i);
    QStringList shown;
    for (int i = 0; i < Methods()->count(); ++i)
        shown << Methods()->itemText(i);
    EXPECT_EQ(shown, expected);

    Choose(QStringLiteral("geoidMethodCombo"), Key(GeoidKey::Egm96));
    EXPECT_EQ(editor->GetGeoidModelName(), Key(GeoidKey::Egm96));
    EXPECT_EQ(Text(QStringLiteral("geoidFileEdit")), QString());
    EXPECT_FALSE(FileButton());

    Choose(QStringLiteral("geoidMethodCombo"), Key(GeoidKey::Gtx));
    EXPECT_EQ(editor->GetGeoidModelName(), QString());
    EXPECT_TRUE(FileButton());
    EXPECT_EQ(Text(QStringLiteral("geoidFileEdit")), QString()); // the file went with the change
}

// "--None--" hands "--None--" to the host and empties the file and the chart datum.
TEST_F(GeoidSection, NoneSwitchesTheModelOff) {
    StoreVDatum(QStringLiteral("Tide"), QStringLiteral("MLLW"));
    EditorArgs args;
    args.chartDatum = QStringLiteral("MLLW");
    args.geoidFile = QStringLiteral("MODEL1");
    Open(kGroup, QStringLiteral("Tide"), args);
    EXPECT_TRUE(ChartDatumLineShown());
    EXPECT_EQ(ChartDatums()->currentText(), QStringLiteral("MLLW"));
    Choose(QStringLiteral("geoidMethodCombo"), QStringLiteral("--None--"));
    EXPECT_EQ(editor->GetGeoidModelName(), QStringLiteral("--None--"));
    EXPECT_EQ(editor->GetGeoidModelFileName(), QString());
    EXPECT_EQ(editor->GetGeoidChartDatum(), QString());
    EXPECT_EQ(Text(QStringLiteral("geoidFileEdit")), QString());
    EXPECT_FALSE(ChartDatumLineShown());
    EXPECT_EQ(ChartDatums()->currentText(), QStringLiteral("--None--"));
    EXPECT_FALSE(FileButton());
    EXPECT_FALSE(AdvCoordSysDlgProbe(*editor).GeoidInUse());
}

// The vertical datum transformation shows its chart datum line only with a model file: none
// after the method is chosen, the line once the grid file picker gave one.
TEST_F(GeoidSection, TheChartDatumLineFollowsTheModelFile) {
    ModelFolders models(data.path());
    StoreHarbour();
    Open(kGroup, kHarbour);
    EXPECT_FALSE(ChartDatumLineShown());
    Choose(QStringLiteral("geoidMethodCombo"), Key(GeoidKey::ChartDatum));
    EXPECT_FALSE(ChartDatumLineShown());
    EXPECT_TRUE(FileButton());

    ExpectGridPicker(GeoidKey::ChartDatum, QString());
    Click(QStringLiteral("geoidFileButton"));
    EXPECT_FALSE(ChartDatumLineShown());

    ExpectGridPicker(GeoidKey::ChartDatum, QStringLiteral("MODEL1"));
    Click(QStringLiteral("geoidFileButton"));
    EXPECT_TRUE(ChartDatumLineShown());
    EXPECT_EQ(Text(QStringLiteral("geoidFileEdit")), QStringLiteral("MODEL1"));
    EXPECT_EQ(editor->GetGeoidModelFileName(), QStringLiteral("MODEL1"));
    EXPECT_EQ(ChartDatums()->currentText(), QStringLiteral("--None--"));
}

// A stored chart datum is selected when the host names none; a chart datum chosen is handed
// to the host unless it is the stored one.
TEST_F(GeoidSection, TheChartDatumFollowsTheHostsRule) {
    StoreVDatum(QStringLiteral("Tide"), QStringLiteral("LMSL"));
    Open(kGroup, QStringLiteral("Tide"));
    EXPECT_TRUE(ChartDatumLineShown());
    EXPECT_EQ(ChartDatums()->currentText(), QStringLiteral("LMSL"));
    QStringList entries;
    for (int i = 0; i < ChartDatums()->count(); ++i)
        entries << ChartDatums()->itemText(i);
    EXPECT_EQ(entries,
              (QStringList{QStringLiteral("--None--"), QStringLiteral("LMSL"),
                           QStringLiteral("MHHW"), QStringLiteral("MHW"), QStringLiteral("MTL"),
                           QStringLiteral("DTL"), QStringLiteral("MLW"), QStringLiteral("MLLW")}));
    Choose(QStringLiteral("chartDatumCombo"), QStringLiteral("MLLW"));
    EXPECT_EQ(editor->GetGeoidChartDatum(), QStringLiteral("MLLW"));
    Choose(QStringLiteral("chartDatumCombo"), QStringLiteral("LMSL"));
    EXPECT_EQ(editor->GetGeoidChartDatum(), QString());
    // the host's chart datum comes first
    EditorArgs args;
    args.chartDatum = QStringLiteral("MHW");
    Open(kGroup, QStringLiteral("Tide"), args);
    EXPECT_EQ(ChartDatums()->currentText(), QStringLiteral("MHW"));
}

// A file from a file dialog is kept without its folder; the stored file again hands the host
// nothing. The dialog starts in the method's folder below the common data folder.
TEST_F(GeoidSection, AFileDialogGivesTheFileWithoutItsFolder) {
    ModelFolders models(data.path());
    StoreRig();
    Open(kGroup, kRig);
    const QString filter = LoadOrvString(StrId::FilterRdGeoid) + QStringLiteral("|*.gtx||");
    const QString folder = models.Common() + QStringLiteral("General/Geoidmodels/Netherlands/");
    ui.ExpectFileOpen(filter, folder, QStringLiteral("/survey/models/site.gtx"));
    Click(QStringLiteral("geoidFileButton"));
    EXPECT_EQ(Text(QStringLiteral("geoidFileEdit")), QStringLiteral("site.gtx"));
    EXPECT_EQ(editor->GetGeoidModelFileName(), QStringLiteral("site.gtx"));
    EXPECT_EQ(editor->GetGeoidModelName(), QString());

    ui.ExpectFileOpen(filter, folder, models.Common() + QStringLiteral("egm96_15.gtx"));
    Click(QStringLiteral("geoidFileButton"));
    EXPECT_EQ(editor->GetGeoidModelFileName(), QString());

    // cancelled: the file stays
    ui.ExpectFileOpen(filter, folder, QString());
    Click(QStringLiteral("geoidFileButton"));
    EXPECT_EQ(Text(QStringLiteral("geoidFileEdit")), QStringLiteral("egm96_15.gtx"));
}

// A system with a manual separation lists that method (and only then) and shows the
// separation in place of the file.
TEST_F(GeoidSection, AManualSeparationShowsItsValueInPlaceOfTheFile) {
    StoreHarbour(QStringLiteral("Manual"));
    Change(QStringLiteral("Manual"), [](OrvGeoStaticDataBase& s) {
        s.SetGeoidEnabled(true);
        s.SetGeoidMethod(Key(GeoidKey::ManualSeparation));
        s.SetManualGeoidSeparation(47.25);
    });
    Open(kGroup, QStringLiteral("Manual"));
    EXPECT_EQ(Methods()->currentText(), Key(GeoidKey::ManualSeparation));
    EXPECT_EQ(Methods()->itemText(1), Key(GeoidKey::ManualSeparation));
    EXPECT_TRUE(Control<QLineEdit>(QStringLiteral("separationEdit"))->isVisible());
    EXPECT_EQ(Text(QStringLiteral("separationEdit")), QStringLiteral("47.25"));
    EXPECT_FALSE(Control<QLineEdit>(QStringLiteral("geoidFileEdit"))->isVisible());
    EXPECT_FALSE(Control<QPushButton>(QStringLiteral("geoidFileButton"))->isVisible());
    Choose(QStringLiteral("geoidMethodCombo"), Key(GeoidKey::Gtx));
    EXPECT_FALSE(Control<QLineEdit>(QStringLiteral("separationEdit"))->isVisible());
    EXPECT_TRUE(Control<QLineEdit>(QStringLiteral("geoidFileEdit"))->isVisible());

    StoreHarbour();
    Open(kGroup, kHarbour);
    EXPECT_EQ(Methods()->findText(Key(GeoidKey::ManualSeparation)), -1);
}

// The post list in its order; a shift model file only for the two shift models, asked for
// with the shift model's description; any other method empties the file.
TEST_F(GeoidSection, OnlyTheShiftModelsTakeAPostFile) {
    ModelFolders models(data.path());
    StoreHarbour();
    Open(kGroup, kHarbour);
    auto* post = Control<QComboBox>(QStringLiteral("postMethodCombo"));
    QStringList entries;
    for (int i = 0; i < post->count(); ++i)
        entries << post->itemText(i);
    EXPECT_EQ(entries, (QStringList{QStringLiteral("--None--"), Key(5), Key(31), Key(8), Key(25),
                                    Key(4), Key(13), Key(29), Key(30)}));
    EXPECT_FALSE(Control<QPushButton>(QStringLiteral("postFileButton"))->isEnabled());

    Choose(QStringLiteral("postMethodCombo"), Key(GeoidKey::Ostn));
    EXPECT_TRUE(Control<QPushButton>(QStringLiteral("postFileButton"))->isEnabled());
    EXPECT_EQ(editor->GetPostModelName(), Key(GeoidKey::Ostn));
    ui.ExpectFileOpen(LoadOrvString(StrId::FilterOsShift) + QStringLiteral("|*.txt||"),
                      models.Common() + QStringLiteral("General/Geoidmodels/United Kingdom/"),
                      QStringLiteral("/models/OSTN15_OSGM15_GB.txt"));
    Click(QStringLiteral("postFileButton"));
    EXPECT_EQ(Text(QStringLiteral("postFileEdit")), QStringLiteral("OSTN15_OSGM15_GB.txt"));
    EXPECT_EQ(editor->GetPostModelFileName(), QStringLiteral("OSTN15_OSGM15_GB.txt"));

    // the other shift model keeps the file until one is chosen for it
    Choose(QStringLiteral("postMethodCombo"), Key(GeoidKey::Ntv2Shift));
    EXPECT_EQ(Text(QStringLiteral("postFileEdit")), QStringLiteral("OSTN15_OSGM15_GB.txt"));
    ui.ExpectFileOpen(LoadOrvString(StrId::FilterRdShift) + QStringLiteral("|*.gsb||"),
                      models.Common() + QStringLiteral("General/Geoidmodels/Netherlands/"),
                      QStringLiteral("/models/rdtrans2018.gsb"));
    Click(QStringLiteral("postFileButton"));
    EXPECT_EQ(Text(QStringLiteral("postFileEdit")), QStringLiteral("rdtrans2018.gsb"));

    Choose(QStringLiteral("postMethodCombo"), Key(GeoidKey::Egm2008));
    EXPECT_FALSE(Control<QPushButton>(QStringLiteral("postFileButton"))->isEnabled());
    EXPECT_FALSE(Control<QLineEdit>(QStringLiteral("postFileEdit"))->isEnabled());
    EXPECT_EQ(Text(QStringLiteral("postFileEdit")), QString());
    EXPECT_EQ(editor->GetPostModelName(), Key(GeoidKey::Egm2008));
}

// A stored "OSTN02" shows as "OSTN" with the geoid model's file; chosen again it hands the
// host nothing only when the stored name is the list's.
TEST_F(GeoidSection, AStoredOstn02ShowsAsOstnWithTheGeoidFile) {
    StoreHarbour(QStringLiteral("Thames"));
    Change(QStringLiteral("Thames"), [](OrvGeoStaticDataBase& s) {
        s.SetGeoidEnabled(true);
        s.SetGeoidMethod(Key(GeoidKey::Osgm));
        s.SetGeoidFile(QStringLiteral("OSGM15_GB.gri"));
        s.SetPostTranslationOn(true);
        s.SetPostModelName(QStringLiteral("OSTN02"));
        s.SetPostModelFile(QStringLiteral("old.txt"));
    });
    Open(kGroup, QStringLiteral("Thames"));
    EXPECT_EQ(Control<QComboBox>(QStringLiteral("postMethodCombo"))->currentText(),
              Key(GeoidKey::Ostn));
    EXPECT_EQ(Text(QStringLiteral("postFileEdit")), QStringLiteral("OSGM15_GB.gri"));
    EXPECT_EQ(editor->GetPostModelName(), Key(GeoidKey::Ostn)); // not the stored "OSTN02"
}

// The host's post model comes first; its file with it.
TEST_F(GeoidSection, TheHostsPostModelComesFirst) {
    StoreRig();
    EditorArgs args;
    args.postName = Key(GeoidKey::Ntv2Shift);
    args.postFile = QStringLiteral("rdtrans2018.gsb");
    Open(kGroup, kRig, args);
    EXPECT_EQ(Control<QComboBox>(QStringLiteral("postMethodCombo"))->currentText(),
              Key(GeoidKey::Ntv2Shift));
    EXPECT_EQ(Text(QStringLiteral("postFileEdit")), QStringLiteral("rdtrans2018.gsb"));
    EXPECT_EQ(editor->GetPostModelFileName(), QStringLiteral("rdtrans2018.gsb"));
}

// Each check box enables the values of its group.
TEST_F(GeoidSection, TheCheckBoxesEnableTheirGroups) {
    StoreRig();
    Open(kGroup, kRig);
    const std::pair<const char*, QStringList> groups[] = {
        {"translationCheck",
         {QStringLiteral("translationEEdit"), QStringLiteral("translationNEdit"),
          QStringLiteral("translationZEdit"), QStringLiteral("translationZLabel")}},
        {"horAdjustCheck",
         {QStringLiteral("horOriginEEdit"), QStringLiteral("horOriginNEdit"),
          QStringLiteral("horRotationEdit"), QStringLiteral("horScaleEdit"),
          QStringLiteral("horScaleLabel")}},
        {"vertAdjustCheck",
         {QStringLiteral("vertOriginEEdit"), QStringLiteral("vertOriginNEdit"),
          QStringLiteral("vertSlopeEEdit"), QStringLiteral("vertSlopeNEdit"),
          QStringLiteral("vertSlopeNLabel")}}};
    for (const auto& [check, controls] : groups) {
        const bool was = Control<QCheckBox>(QString::fromLatin1(check))->isChecked();
        for (const QString& name : controls)
            EXPECT_EQ(Control<QWidget>(name)->isEnabled(), was) << name.toStdString();
        ClickCheck(QString::fromLatin1(check));
        for (const QString& name : controls)
            EXPECT_EQ(Control<QWidget>(name)->isEnabled(), !was) << name.toStdString();
    }
}
