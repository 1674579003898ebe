#include "api/OrvGeoFactories.h"
#include "dialogs/CMaskEdit.h"
#include "platform/ScriptedUi.h"
#include "resources/StringTable.h"
#include "support/TempDataFolder.h"
#include "util/BrandingConfig.h"
#include "util/CommonFolders.h"
#include "wizard/DtfInfo.h"
#include "wizard/PrjInfo.h"
#include "wizard/WzdUtility.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

namespace {

ScriptedUi::FailureHandler failTest() {
    return [](const QString& message) { ADD_FAILURE() << message.toStdString(); };
}

// A program-data root with an ORV.ini for one test.
struct Settings : ::testing::Test {
    ~Settings() override { BrandingConfig::Instance().SetRootProgramDataFolder(QString()); }
    void writeIni(const QByteArray& text) {
        BrandingConfig::Instance().SetRootProgramDataFolder(root.path());
        ASSERT_TRUE(QDir(root.path()).mkpath(QStringLiteral("Geodesy")));
        QFile file(root.filePath(QStringLiteral("Geodesy/ORV.ini")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    QTemporaryDir root;
    WzdUtility utility;
};

} // namespace

TEST_F(Settings, DefaultCommonPathLiesUnderTheDataRoot) {
    writeIni("[DataPaths]\nDataRoot=/srv/orv/Data\nDataFolder=Projects\n");
    QString dataFolder;
    ASSERT_TRUE(utility.GetCommonFolders(dataFolder));
    EXPECT_EQ(utility.GetCommonDataFolder(),
              QStringLiteral("/srv/orv/Data/Projects Common Files/"));
    EXPECT_EQ(dataFolder, QStringLiteral("/srv/orv/Data/Projects/"));
    EXPECT_FALSE(utility.GetProgramFolder().isEmpty());
    EXPECT_TRUE(utility.GetProgramFolder().endsWith(QLatin1Char('/')));
    EXPECT_EQ(utility.GetProgramFileName(), QStringLiteral("test_wizard"));
}

TEST_F(Settings, AnOwnCommonPath) {
    writeIni("[DataPaths]\nDataRoot=/srv/orv/Data\nDataFolder=Projects\n"
             "UseDefaultCommonPath=false\nCommonPath=/mnt/survey/Common Files\n");
    QString dataFolder;
    ASSERT_TRUE(utility.GetCommonFolders(dataFolder));
    EXPECT_EQ(utility.GetCommonDataFolder(), QStringLiteral("/mnt/survey/Common Files/"));
}

TEST_F(Settings, NoCommonPathEntryLeavesTheDataRoot) {
    writeIni("[DataPaths]\nDataRoot=/srv/orv/Data\nUseDefaultCommonPath=0\n");
    QString dataFolder;
    ASSERT_TRUE(utility.GetCommonFolders(dataFolder));
    EXPECT_EQ(utility.GetCommonDataFolder(), QStringLiteral("/srv/orv/Data/"));
    EXPECT_EQ(dataFolder, QStringLiteral("/srv/orv/Data/"));
}

TEST_F(Settings, NoSettingsFileIsAFailureThatForgetsEarlierFolders) {
    writeIni("[DataPaths]\nDataRoot=/srv/orv/Data\n");
    QString dataFolder;
    ASSERT_TRUE(utility.GetCommonFolders(dataFolder));
    ASSERT_FALSE(utility.GetCommonDataFolder().isEmpty());

    ASSERT_TRUE(QFile::remove(root.filePath(QStringLiteral("Geodesy/ORV.ini"))));
    dataFolder = QStringLiteral("untouched");
    EXPECT_FALSE(utility.GetCommonFolders(dataFolder));
    EXPECT_EQ(dataFolder, QStringLiteral("untouched"));
    // callers then start from an empty common data folder, not the one found before
    EXPECT_TRUE(utility.GetCommonDataFolder().isEmpty());
}

TEST_F(Settings, ValuesEndingInASeparatorGetNoSecondOne) {
    writeIni("[DataPaths]\nDataRoot=/srv/orv/Data/\nDataFolder=Projects\\\n"
             "UseDefaultCommonPath=no\nCommonPath=D:\\Common\\\n");
    QString dataFolder;
    ASSERT_TRUE(utility.GetCommonFolders(dataFolder));
    EXPECT_EQ(utility.GetCommonDataFolder(), QStringLiteral("D:/Common/"));
    EXPECT_EQ(dataFolder, QStringLiteral("/srv/orv/Data/Projects/"));
}

// The wizard reads ORV.ini of the program-data folder, the engine that of its data source;
// given the same file, both name the same common data folder.
TEST_F(Settings, TheWizardAndTheEngineAgreeOnTheCommonDataFolder) {
    const QByteArray files[] = {
        "[DataPaths]\nDataRoot=/srv/orv/Data\nDataFolder=Projects\n",
        "[DataPaths]\nDataRoot=/srv/orv/Data/\nUseDefaultCommonPath=false\n",
        "[DataPaths]\nDataRoot=/srv//orv/Data\nUseDefaultCommonPath=no\n"
        "CommonPath=D:\\Survey\\Common\\\n",
        "[DataPaths]\nDataRoot=/srv/orv/Data\nUseDefaultCommonPath=off\nCommonPath=\n",
        "[DataPaths]\nUseDefaultCommonPath=0\nCommonPath=/mnt/survey/./Common Files\n",
    };
    for (const QByteArray& file : files) {
        writeIni(file);
        QString dataFolder, engineFolder;
        EXPECT_TRUE(utility.GetCommonFolders(dataFolder)) << file.toStdString();
        GetCommonDataFolder(BrandingConfig::Instance().GetProgramDataFolder(), engineFolder);
        EXPECT_EQ(utility.GetCommonDataFolder().toStdString(), engineFolder.toStdString())
            << file.toStdString();
        EXPECT_FALSE(engineFolder.isEmpty()) << file.toStdString();
    }
}

namespace {

struct Lists : ::testing::Test {
    Lists() {
        staticData.reset(OrvGeoStaticDatabaseList::GetGeoStaticDataList().Create(data.dllType()));
        if (staticData)
            staticData->GetDtfMethodNames(methods);
    }
    QStringList items() const {
        QStringList out;
        for (int i = 0; i < list.count(); ++i)
            out << list.itemText(i);
        return out;
    }
    TempDataFolder data;
    std::unique_ptr<OrvGeoStaticDataBase> staticData;
    QStringList methods;
    QComboBox list;
    WzdUtility utility;
};

} // namespace

TEST_F(Lists, MethodListsComeFromTheStaticData) {
    ASSERT_TRUE(staticData);
    ASSERT_GE(methods.size(), 5);
    utility.FillMethodList(staticData.get(), &list);
    EXPECT_EQ(items(), methods);
    EXPECT_EQ(list.currentIndex(), 0);

    int index = -1;
    EXPECT_TRUE(utility.SelectDtfMethod(staticData.get(), &list, methods[3], index));
    EXPECT_EQ(index, 3);
    EXPECT_EQ(list.currentIndex(), 3);
    EXPECT_FALSE(utility.SelectDtfMethod(nullptr, &list, methods[3], index));
    EXPECT_FALSE(utility.SelectDtfMethod(staticData.get(), nullptr, methods[3], index));

    QStringList names;
    EXPECT_TRUE(utility.FillPrjMethodList(staticData.get(), &list, names));
    EXPECT_FALSE(names.isEmpty());
    EXPECT_EQ(items(), names);
    EXPECT_EQ(list.currentIndex(), 0);
    EXPECT_FALSE(utility.FillPrjMethodList(nullptr, &list, names));
}

TEST_F(Lists, NarrowingKeepsTheFamilyOfTheSelectedMethod) {
    ASSERT_TRUE(staticData);
    const struct {
        int selected, shift;
        QStringList expected;
        int selection;
    } cases[] = {
        {0, 0, {methods[0]}, 0},
        {1, 1, {methods[1], methods[2]}, 0},
        {2, 1, {methods[1], methods[2]}, 1},
        {3, 3, {methods[3], methods[4]}, 0},
        {4, 3, {methods[3], methods[4]}, 1},
    };
    for (const auto& c : cases) {
        utility.FillMethodList(staticData.get(), &list);
        list.setCurrentIndex(c.selected);
        const int shift = utility.ReduceDtfMethodList(staticData.get(), &list, 0);
        EXPECT_EQ(shift, c.shift) << c.selected;
        EXPECT_EQ(items(), c.expected) << c.selected;
        EXPECT_EQ(list.currentIndex(), c.selection) << c.selected;
        // narrowing the narrowed list again changes nothing
        EXPECT_EQ(utility.ReduceDtfMethodList(staticData.get(), &list, shift), shift);
        EXPECT_EQ(items(), c.expected);
        EXPECT_EQ(list.currentIndex(), c.selection);
    }
    // nothing selected: the list stays as it is
    utility.FillMethodList(staticData.get(), &list);
    list.setCurrentIndex(-1);
    EXPECT_EQ(utility.ReduceDtfMethodList(staticData.get(), &list, 0), 0);
    EXPECT_EQ(items(), methods);
    EXPECT_EQ(utility.ReduceDtfMethodList(nullptr, &list, 3), 3);
}

namespace {

struct Rows : ::testing::Test {
    Rows() {
        for (int i = 0; i < WzdUtility::kMaxRows; ++i) {
            labelStore[i] = std::make_unique<QLabel>(QStringLiteral("label %1").arg(i), &owner);
            editStore[i] = std::make_unique<CMaskEdit>(&owner);
            editStore[i]->SetText(QStringLiteral("text %1").arg(i));
            labels[i] = labelStore[i].get();
            edits[i] = editStore[i].get();
        }
        owner.show();
    }
    ~Rows() override {
        for (auto& e : editStore)
            e.reset();
        for (auto& l : labelStore)
            l.reset();
    }
    QWidget owner;
    std::unique_ptr<QLabel> labelStore[WzdUtility::kMaxRows];
    std::unique_ptr<CMaskEdit> editStore[WzdUtility::kMaxRows];
    QLabel* labels[WzdUtility::kMaxRows];
    CMaskEdit* edits[WzdUtility::kMaxRows];
    WzdUtility utility;
};

} // namespace

TEST_F(Rows, ResettingEmptiesAndHidesTheFirstRows) {
    EXPECT_TRUE(utility.ResetParameterRows(labels, edits, 0));
    EXPECT_EQ(edits[0]->text(), QStringLiteral("text 0"));

    edits[1]->SetMask(WzdUtility::MaskForType(1));
    ASSERT_TRUE(utility.ResetParameterRows(labels, edits, 3));
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(labels[i]->text().isEmpty());
        EXPECT_FALSE(labels[i]->isVisible());
        EXPECT_TRUE(edits[i]->GetMask().isEmpty());
        EXPECT_EQ(edits[i]->text(), QStringLiteral("0.000000"));
        EXPECT_FALSE(edits[i]->isVisible());
    }
    EXPECT_EQ(edits[3]->text(), QStringLiteral("text 3"));
    EXPECT_TRUE(edits[3]->isVisible());

    // a row without its edit fails, the others are reset all the same; a count beyond the
    // rows stops at the last one
    CMaskEdit* missing[WzdUtility::kMaxRows];
    std::copy(std::begin(edits), std::end(edits), missing);
    missing[4] = nullptr;
    EXPECT_FALSE(utility.ResetParameterRows(labels, missing, 6));
    EXPECT_FALSE(labels[4]->isVisible());
    EXPECT_FALSE(edits[5]->isVisible());
    EXPECT_TRUE(utility.ResetParameterRows(labels, edits, 100));
    EXPECT_FALSE(edits[WzdUtility::kMaxRows - 1]->isVisible());
}

TEST_F(Rows, DatumTransformationValuesHaveSixEightAndThreeDecimals) {
    double values[16];
    for (int i = 0; i < 16; ++i)
        values[i] = 1.0 / 3.0 + i;
    std::unique_ptr<QLineEdit> more[16];
    QLineEdit* all[16];
    for (int i = 0; i < 16; ++i) {
        more[i] = std::make_unique<QLineEdit>();
        all[i] = more[i].get();
    }
    utility.ShowValues(all, values);
    EXPECT_EQ(all[0]->text(), QStringLiteral("0.333333"));
    EXPECT_EQ(all[6]->text(), QStringLiteral("6.333333"));
    EXPECT_EQ(all[7]->text(), QStringLiteral("7.33333333"));
    EXPECT_EQ(all[13]->text(), QStringLiteral("13.33333333"));
    EXPECT_EQ(all[14]->text(), QStringLiteral("14.333"));
    EXPECT_EQ(all[15]->text(), QStringLiteral("15.333"));

    // as many as there are both edits and values
    utility.ShowValues(std::span(all, 3), values);
    utility.ShowValues(all, std::span(values + 10, 1));
    EXPECT_EQ(all[0]->text(), QStringLiteral("10.333333"));
    EXPECT_EQ(all[1]->text(), QStringLiteral("1.333333"));
    EXPECT_EQ(all[3]->text(), QStringLiteral("3.333333"));
}

TEST_F(Rows, ProjectionRowsFollowTheParameterTypes) {
    const QStringList names{
        QStringLiteral("Latitude of natural origin"), QStringLiteral("Longitude of natural origin"),
        QStringLiteral("UTM zone"), QStringLiteral("Scale factor at natural origin"),
        QStringLiteral("False easting")};
    const QStringList values{QStringLiteral("52.5"), QStringLiteral("-3.25"), QStringLiteral("31"),
                             QString(), QStringLiteral("500000.000000")};
    const QList<unsigned> types{1, 2, 3, 4, 5};
    ASSERT_EQ(utility.LayoutParameterRows(labels, edits, names, values, types), 4);
    EXPECT_EQ(utility.RowParams(), (QList<int>{0, 1, 3, 4}));
    EXPECT_EQ(labels[0]->text(), QStringLiteral("Latitude of natural origin:"));
    EXPECT_EQ(edits[0]->text(), QStringLiteral("52\u00b030'00.0000000\"N"));
    EXPECT_EQ(edits[0]->GetMask(), WzdUtility::MaskForType(1));
    EXPECT_EQ(edits[1]->text(), QStringLiteral("003\u00b015'00.0000000\"W"));
    EXPECT_EQ(labels[2]->text(), QStringLiteral("Scale factor at natural origin:"));
    EXPECT_EQ(edits[2]->text(), QStringLiteral("1.000000"));
    EXPECT_EQ(edits[3]->text(), QStringLiteral("500000.000000"));
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(edits[i]->isVisible()) << i;
    for (int i = 4; i < WzdUtility::kMaxRows; ++i)
        EXPECT_FALSE(edits[i]->isVisible()) << i;

    ScriptedUi ui(failTest());
    QList<double> numbers;
    ASSERT_TRUE(utility.ReadParameterRows(edits, numbers, &owner));
    ASSERT_EQ(numbers.size(), 4);
    EXPECT_NEAR(numbers[0], 52.5, 1e-12);
    EXPECT_NEAR(numbers[1], -3.25, 1e-12);
    EXPECT_DOUBLE_EQ(numbers[2], 1.0);
    EXPECT_DOUBLE_EQ(numbers[3], 500000.0);

    // the user replaces the minutes "30" by "4": the emptied position reads as nothing
    edits[0]->SelectRange(3, 5);
    QTest::keyClick(edits[0], Qt::Key_4);
    EXPECT_EQ(edits[0]->text(), QStringLiteral("52\u00b04_'00.0000000\"N"));
    ASSERT_TRUE(utility.ReadParameterRows(edits, numbers, &owner));
    EXPECT_NEAR(numbers[0], 52.0 + 4.0 / 60.0, 1e-12);

    edits[2]->SetText(QStringLiteral("0.8"));
    ui.ExpectMessage(LoadOrvString(StrId::ScaleFactorTooSmall));
    EXPECT_FALSE(utility.ReadParameterRows(edits, numbers, &owner));
    edits[2]->SetText(QStringLiteral("0.9996"));
    edits[3]->SetText(QStringLiteral("five hundred"));
    ui.ExpectMessage(QString());
    EXPECT_FALSE(utility.ReadParameterRows(edits, numbers, &owner));
}

TEST(Angles, ReadAndFormat) {
    CMaskEdit edit;
    edit.SetText(WzdUtility::FormatLatitude(-33.8));
    EXPECT_EQ(edit.text(), QStringLiteral("33\u00b048'00.0000000\"S"));
    EXPECT_NEAR(WzdUtility::ReadAngle(&edit), -33.8, 1e-9);
    EXPECT_EQ(WzdUtility::ReadAngle(nullptr), 0.0);
    edit.SetText(QStringLiteral("not an angle"));
    EXPECT_EQ(WzdUtility::ReadAngle(&edit), 0.0);
    EXPECT_EQ(WzdUtility::FormatLongitude(177.0), QStringLiteral("177\u00b000'00.0000000\"E"));
    EXPECT_EQ(WzdUtility::FormatLatitude(95.0), QString()); // out of range
}

TEST(Messages, LookedUpById) {
    EXPECT_EQ(WzdUtility::LoadMessage(15905),
              QStringLiteral("You can't remove the coordinate system, because it is also used by "
                             "other projects or defined in other coordinate systems."));
    EXPECT_EQ(WzdUtility::LoadMessage(QStringLiteral("15905")), WzdUtility::LoadMessage(15905));
    EXPECT_EQ(WzdUtility::LoadMessage(1), QString());
    EXPECT_EQ(WzdUtility::LoadMessage(QStringLiteral("no id")), QString());
    EXPECT_EQ(LoadOrvString(StrId::TitleDtf), QStringLiteral("Datum Transformation "));
}

TEST(Messages, EveryIdOnceWithAText) {
    const QList<int> ids = OrvStringIds();
    ASSERT_FALSE(ids.isEmpty());
    for (int i = 0; i < ids.size(); ++i) {
        if (i > 0) {
            EXPECT_LT(ids[i - 1], ids[i]) << "ids must ascend: " << ids[i];
        }
        EXPECT_TRUE(HasOrvString(ids[i]));
        EXPECT_FALSE(LoadOrvString(ids[i]).isEmpty()) << ids[i];
    }
}

TEST(Snapshots, DtfInfoKeepsEightValues) {
    DtfInfo info;
    EXPECT_EQ(info.GetCount(), 0u);
    EXPECT_EQ(info.GetValues(), nullptr);
    const double values[15] = {-87, -98, -121, 0.5, -0.25, 1, 3.5, 0.01, 9, 9, 9, 9, 9, 9, 2010};
    info.Set(QStringLiteral("Coordinate Frame"), values);
    EXPECT_EQ(info.GetCount(), 8u);
    EXPECT_EQ(info.GetMethodName(), QStringLiteral("Coordinate Frame"));
    EXPECT_FALSE(info.Differs(QStringLiteral("Coordinate Frame"), values));

    double edited[15];
    std::copy(std::begin(values), std::end(values), edited);
    edited[14] = 2020; // beyond the eight: not compared
    EXPECT_FALSE(info.Differs(QStringLiteral("Coordinate Frame"), edited));
    edited[7] = 0.02;
    EXPECT_TRUE(info.Differs(QStringLiteral("Coordinate Frame"), edited));
    EXPECT_TRUE(info.Differs(QStringLiteral("Position Vector"), values));

    const double other[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    info.Set(QStringLiteral("Position Vector"), other);
    EXPECT_EQ(info.GetValues()[7], 8.0);
}

TEST(Snapshots, PrjInfoKeepsNames) {
    PrjInfo info;
    info.Set(QStringLiteral("UTM Zone-31N"), QStringLiteral("UTM"), QStringLiteral("Meters"),
             {QStringLiteral("UTM zone"), QStringLiteral("Hemisphere")});
    EXPECT_EQ(info.GetPrjName(), QStringLiteral("UTM Zone-31N"));
    EXPECT_EQ(info.GetMethodName(), QStringLiteral("UTM"));
    EXPECT_EQ(info.GetUnitName(), QStringLiteral("Meters"));
    EXPECT_EQ(info.GetParamNames().size(), 2);
}
