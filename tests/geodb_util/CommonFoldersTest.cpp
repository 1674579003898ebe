#include "util/CommonFolders.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

struct Ini : ::testing::Test {
    DataPaths read(const QByteArray& text) {
        const QString path = dir.filePath(QStringLiteral("ORV.ini"));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        DataPaths paths;
        EXPECT_TRUE(ReadDataPaths(path, paths));
        return paths;
    }
    QTemporaryDir dir;
};

} // namespace

TEST_F(Ini, EveryFolderUsesSlashesAndEndsInOne) {
    DataPaths paths = read("[DataPaths]\nDataRoot=C:\\ProgramData\\ORV\\Data\n"
                           "DataFolder=Projects\\\\Harbour\nUseDefaultCommonPath=false\n"
                           "CommonPath=\\\\server\\survey\\Common Files\n");
    EXPECT_EQ(paths.dataRoot, u"C:/ProgramData/ORV/Data/");
    EXPECT_EQ(paths.dataFolder, u"C:/ProgramData/ORV/Data/Projects/Harbour/");
    EXPECT_EQ(paths.commonDataFolder, u"//server/survey/Common Files/") << "a network path";
    EXPECT_EQ(paths.terrainModelFolder,
              u"C:/ProgramData/ORV/Data/Projects/Harbour/DigitalTerrainModel/");

    paths = read("[DataPaths]\nDataRoot=/srv/orv/./Data/\nTerrainModelPath=/mnt/dtm//Terrain\n");
    EXPECT_EQ(paths.dataFolder, u"/srv/orv/Data/") << "no DataFolder entry";
    EXPECT_EQ(paths.commonDataFolder, u"/srv/orv/Data/Projects Common Files/");
    EXPECT_EQ(paths.terrainModelFolder, u"/mnt/dtm/Terrain/");
}

TEST_F(Ini, NoDataRootGuessesNoFolder) {
    const DataPaths paths = read("[DataPaths]\nDataFolder=Projects\n");
    EXPECT_EQ(paths.dataFolder + paths.commonDataFolder + paths.terrainModelFolder, QString());
}
