#include "api/GeoKeys.h"

// Index roles are fixed by the dialogs: 1 manual separation; 7 the vertical datum
// transformation with a chart datum; 3, 6, 7, 14, 15, 16, 19, 20, 23, 24, 26, 27, 28 take a
// model file; 25 and 29 are shift models of the post correction; 8 to 12 are kept for
// stored systems but not offered by the wizard.
const wchar_t* const GeoidmodelTypeKeys[GeoidmodelTypeKeyCount] = {
    L"None",                              // 0  no geoid model
    L"Manual Separation",                 // 1  one constant geoid separation N
    L"EGM96",                             // 2  global model, grid shipped with the library
    L"Geoid Model",                       // 3  geoid model file of the terrain model data
    L"EGM2008",                           // 4  global model (grid under the common folder)
    L"Height Reference Surface",          // 5  local height reference surface
    L"SWEN (Sweden)",                     // 6  Swedish .grd models
    L"VDatum",                            // 7  vertical datum transformation + chart datum
    L"Inclined Plane",                    // 8  plane fitted to levelled points
    L"GEOID99",                           // 9  legacy US model
    L"GEOID03",                           // 10 legacy US model
    L"AUSGeoid09",                        // 11 legacy Australian model
    L"NKG2005",                           // 12 legacy Nordic model
    L"Tidal Surface",                     // 13 tidal surface (post correction)
    L"DVR90 (Denmark)",                   // 14 Danish .01 files
    L"Grid Model(Satellite coordinates)", // 15 grid model of the grid model editor
    L"GCG Quasigeoid",                    // 16 German quasigeoid .BIN
    L"EGM84",                             // 17 global model
    L"OSU91A",                            // 18 global model
    L"NN2000 (Norway)",                   // 19 Norwegian .bin models
    L"Quasigeoid (binary)",               // 20 other .BIN quasigeoids
    L"GEOID12B",                          // 21 US model
    L"GEOID18",                           // 22 US model
    L"CGG (Canada)",                      // 23 Canadian .byn
    L"OSGM",                              // 24 Ordnance Survey geoid file
    L"OSTN",                              // 25 Ordnance Survey shift model (post)
    L"GGF Geoid Grid",                    // 26 .ggf grids
    L"VORF",                              // 27 UK Hydrographic .vrf
    L"GTX Geoid Grid",                    // 28 .gtx grids (e.g. NLGEO2018, egm96_15)
    L"NTv2 Shift Model",                  // 29 .gsb shift grids (post)
    L"Polynomial Correction",             // 30 polynomial surface
    L"Local Height Shift",                // 31 constant local height shift
};

const wchar_t* const ChartDatums[ChartDatumCount] = {
    L"--None--", L"LMSL", L"MHHW", L"MHW", L"MTL", L"DTL", L"MLW", L"MLLW",
};

int ChartDatumIndex(const QString& text) {
    for (int i = 0; i < ChartDatumCount; ++i)
        if (text.compare(QString::fromWCharArray(ChartDatums[i]), Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

const wchar_t* const DATA_PATH_SECTION = L"DataPaths";

// Index 2 is the data root, 1 the data folder below it, 4 the common data folder used
// when "UseDefaultCommonPath" is false.
const wchar_t* const pathKeys[PathKeyCount] = {
    L"ProgramPath", L"DataFolder", L"DataRoot", L"ProjectPath", L"CommonPath", L"TerrainModelPath",
};

const wchar_t* const projectionParamKeys[ProjectionParamKeyCount] = {
    L"Latitude of natural origin",
    L"Longitude of natural origin",
    L"Scale factor at natural origin",
    L"False easting",
    L"False northing",
    L"UTM zone",
    L"Hemisphere",
    L"Latitude of 1st standard parallel",
    L"Latitude of 2nd standard parallel",
    L"Latitude of false origin",
    L"Longitude of false origin",
    L"Easting at false origin",
    L"Northing at false origin",
    L"Latitude of projection centre",
    L"Longitude of projection centre",
    L"Azimuth of initial line",
    L"Angle from Rectified to Skew Grid",
    L"Scale factor on initial line",
    L"Easting at projection centre",
    L"Northing at projection centre",
};
