#include "dialogs/GridSelDlg.h"
#include "api/GeoKeys.h"
#include "util/BrandingConfig.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QListWidget>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

// A program-data root with ORV.ini and the model folders of one test:
//   data root           <root>/Data
//   common data folder  <root>/Data/Projects Common Files/
//   terrain model data  <root>/Data/Projects/DigitalTerrainModel/
struct GridSel : ::testing::Test {
    GridSel() { BrandingConfig::Instance().SetRootProgramDataFolder(root.path()); }
    ~GridSel() override { BrandingConfig::Instance().SetRootProgramDataFolder(QString()); }
    void writeIni(const QString& extra = QString()) {
        write(QStringLiteral("Geodesy/ORV.ini"),
              QStringLiteral("[DataPaths]\nDataRoot=%1/Data\nDataFolder=Projects\n%2")
                  .arg(root.path(), extra)
                  .toUtf8());
    }
    // A file below the root, with its folders.
    void write(const QString& relative, const QByteArray& text = QByteArray()) {
        const QString path = root.filePath(relative);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    void writeCommon(const QString& relative, const QByteArray& text = QByteArray()) {
        write(QStringLiteral("Data/Projects Common Files/") + relative, text);
    }
    static QListWidget* list(GridSelDlg& dialog) {
        return dialog.findChild<QListWidget*>(QStringLiteral("fileList"));
    }
    static QStringList entries(int typeIndex, const QString& file = QString()) {
        GridSelDlg dialog(typeIndex, file);
        dialog.EnsureInitialised();
        QStringList texts;
        for (int row = 0; row < list(dialog)->count(); ++row)
            texts << list(dialog)->item(row)->text();
        return texts;
    }

    QTemporaryDir root;

private:
};

} // namespace

TEST_F(GridSel, VerticalDatumModelsComeFromEveryGeoidModelsLine) {
    writeIni();
    writeCommon(QStringLiteral("vdatum/core/geoid.inf"),
                "# vertical datum models\r\n"
                "geoid_models=GEOID96,geoid96,GEOID12B\r\n"
                "geoid_models GEOID99\r\n"
                "other_models=GEOID03\r\n"
                " \tgeoid_models = geoid18 , GEOID96,\r\n");
    EXPECT_EQ(entries(GeoidKey::ChartDatum), QStringList({"geoid96", "GEOID12B", "geoid18"}));
}

TEST_F(GridSel, TheCurrentFileIsPreselectedAndOkReturnsTheLastSelection) {
    writeIni();
    writeCommon(QStringLiteral("vdatum/core/geoid.inf"), "geoid_models=geoid12b,geoid18\n");

    GridSelDlg dialog(GeoidKey::ChartDatum, QStringLiteral("geoid18"));
    dialog.EnsureInitialised();
    QListWidget* files = list(dialog);
    ASSERT_EQ(files->count(), 2);
    EXPECT_EQ(files->currentRow(), 1);
    EXPECT_TRUE(files->item(1)->isSelected());
    files->setCurrentRow(0);
    EXPECT_EQ(dialog.GetFile(), u"geoid12b") << "a selection sets the file at once";
    dialog.accept();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.GetFile(), u"geoid12b");

    // A file that is not listed: nothing selected, OK returns it unchanged.
    GridSelDlg other(GeoidKey::ChartDatum, QStringLiteral("xgeoid20"));
    other.EnsureInitialised();
    EXPECT_TRUE(list(other)->selectedItems().isEmpty());
    other.accept();
    EXPECT_EQ(other.result(), QDialog::Accepted);
    EXPECT_EQ(other.GetFile(), u"xgeoid20");
}

TEST_F(GridSel, CountryModelsAreListedAndReturnedWithoutExtension) {
    writeIni();
    writeCommon(QStringLiteral("General/GeoidModels/Sweden/model.grd"));
    writeCommon(QStringLiteral("General/GeoidModels/Sweden/SWEN17_RH2000.GRD"));
    writeCommon(QStringLiteral("General/GeoidModels/Sweden/readme.txt"));
    ASSERT_TRUE(QDir(root.path())
                    .mkpath(QStringLiteral(
                        "Data/Projects Common Files/General/GeoidModels/Sweden/folder.grd")));
    GridSelDlg dialog(GeoidKey::Swen, QString());
    dialog.EnsureInitialised();
    list(dialog)->setCurrentRow(0);
    dialog.accept();
    EXPECT_EQ(dialog.GetFile(), u"model");

    // Norway, in the folder spelled as the engine writes it: found all the same.
    ASSERT_TRUE(QDir(root.filePath(QStringLiteral("Data/Projects Common Files/General")))
                    .removeRecursively());
    writeCommon(QStringLiteral("General/Geoidmodels/Norway/NN2000_10.bin"));
    writeCommon(QStringLiteral("General/Geoidmodels/Norway/NN2000_9.bin"));
    EXPECT_EQ(entries(GeoidKey::Nn2000), QStringList({"NN2000_9", "NN2000_10"}));
}

TEST_F(GridSel, TerrainModelDataGivesTheGeoidAndGridModelFolders) {
    writeIni();
    write(QStringLiteral("Data/Projects/Geoid-Model/harbour10.gm"));
    write(QStringLiteral("Data/Projects/Geoid-Model/harbour9.gm"));
    write(QStringLiteral("Data/Projects/Geoid-Model-Grid/grid.ggm"));
    EXPECT_EQ(entries(GeoidKey::GeoidModel), QStringList({"harbour9.gm", "harbour10.gm"}));
    EXPECT_EQ(entries(GeoidKey::GridModel), QStringList({"grid.ggm"}));

    // A terrain model folder of its own: its models lie beside it.
    writeIni(
        QStringLiteral("TerrainModelPath=%1\\Survey\\DigitalTerrainModel\\\n").arg(root.path()));
    write(QStringLiteral("Survey/Geoid-Model/own.gm"));
    EXPECT_EQ(entries(GeoidKey::GeoidModel), QStringList({"own.gm"}));
    writeIni(QStringLiteral("TerrainModelPath=%1/Survey/Terrain\n").arg(root.path()));
    EXPECT_TRUE(entries(GeoidKey::GeoidModel).isEmpty());
}

TEST_F(GridSel, MissingSettingsFilesAndFoldersGiveEmptyLists) {
    const int all[] = {GeoidKey::GeoidModel, GeoidKey::Swen, GeoidKey::ChartDatum,
                       GeoidKey::GridModel, GeoidKey::Nn2000};
    for (int index : all)
        EXPECT_TRUE(entries(index).isEmpty()) << "no ORV.ini, index " << index;

    writeIni();
    for (int index : all)
        EXPECT_TRUE(entries(index).isEmpty()) << "no folders, index " << index;

    // geoid.inf that is a folder; files of a method that lists none
    ASSERT_TRUE(QDir(root.path())
                    .mkpath(QStringLiteral("Data/Projects Common Files/vdatum/core/geoid.inf")));
    writeCommon(QStringLiteral("General/GeoidModels/Netherlands/nl.gtx"));
    EXPECT_TRUE(entries(GeoidKey::ChartDatum).isEmpty());
    EXPECT_TRUE(entries(GeoidKey::Gtx).isEmpty());
    EXPECT_TRUE(entries(GeoidKey::None).isEmpty());
}
