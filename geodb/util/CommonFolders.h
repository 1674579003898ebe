#pragma once

#include <QString>
#include <QStringList>

// The folders of an installation, as ORV.ini names them in section DATA_PATH_SECTION:
//   data root            pathKeys[2] (DataRoot)
//   data folder          data root + pathKeys[1] (DataFolder); the data root when absent
//   common data folder   data root + "Projects Common Files" while "UseDefaultCommonPath" is
//                        true or absent; else pathKeys[4] (CommonPath), or the data root
//                        when that entry is absent or empty. Geoid, chart-datum and
//                        shift-model files lie below it.
//   terrain model folder pathKeys[5] (TerrainModelPath); when absent or empty, the data
//                        folder + "DigitalTerrainModel"
// One separator rule for every folder: ORV.ini may write '\' or '/'; a folder is handed back
// with '/' only, without doubled separators or "." and ".." components (a leading "//" of a
// network path is kept), and ends in one '/'. A folder that follows from an absent data
// root is empty, never guessed.
struct DataPaths {
    QString dataRoot;
    QString dataFolder;
    QString commonDataFolder;
    QString terrainModelFolder;
};

// Reads the ORV.ini at iniPath into paths (emptied first). False when the file cannot be
// read.
bool ReadDataPaths(const QString& iniPath, DataPaths& paths);

// The common data folder of a data source whose folder holds ORV.ini (the engine's model
// files). False, and commonFolder empty, when ORV.ini cannot be read or names no common
// data folder.
bool GetCommonDataFolder(const QString& dataFolder, QString& commonFolder);

// The files of folder whose names match pattern (a wildcard; letter case does not matter),
// with their extensions, in the order a person reads them: the user's language's order
// (English when none is set), letter case ignored and digits compared as numbers ("map2"
// before "map10"). Folders and hidden files are left out; a
// missing or unreadable folder gives an empty list.
QStringList ListFolderFiles(const QString& folder, const QString& pattern = QStringLiteral("*"));
