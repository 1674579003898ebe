#pragma once

#include <QString>

// Key tables of the geodetic library. The dialogs identify geoid and post-correction
// methods by index into GeoidmodelTypeKeys; see docs/geoid-methods.md for the table.
constexpr int GeoidmodelTypeKeyCount = 32;
extern const wchar_t* const GeoidmodelTypeKeys[GeoidmodelTypeKeyCount];

// Entries of the DATA_PATH_SECTION section of ORV.ini.
constexpr int PathKeyCount = 6;
extern const wchar_t* const pathKeys[PathKeyCount];
extern const wchar_t* const DATA_PATH_SECTION;

// Names of projection parameters as the library stores them; ProjectionParamZoneKey and
// ProjectionParamHemisphereKey index the UTM zone and hemisphere parameters.
constexpr int ProjectionParamKeyCount = 20;
extern const wchar_t* const projectionParamKeys[ProjectionParamKeyCount];
constexpr int ProjectionParamZoneKey = 5;
constexpr int ProjectionParamHemisphereKey = 6;

// The tidal chart datums a vertical datum transformation can reduce heights to, as the
// dialogs list them: "--None--" (no chart datum) first, then "LMSL", "MHHW", "MHW", "MTL",
// "DTL", "MLW", "MLLW".
constexpr int ChartDatumCount = 8;
extern const wchar_t* const ChartDatums[ChartDatumCount];
constexpr int ChartDatumNone = 0; // index of "--None--"
constexpr int ChartDatumLmsl = 1; // index of "LMSL", the datum the others refer to
// The index of a chart datum text (letter case ignored), -1 when it is none of the list.
int ChartDatumIndex(const QString& text);

// Geoid method indexes with a fixed role.
namespace GeoidKey {
constexpr int None = 0;
constexpr int ManualSeparation = 1;
constexpr int Egm96 = 2;
constexpr int GeoidModel = 3; // a geoid model of the terrain model data
constexpr int Egm2008 = 4;
constexpr int HeightReferenceSurface = 5;
constexpr int Swen = 6;       // Swedish models
constexpr int ChartDatum = 7; // vertical datum transformation with a chart datum
constexpr int InclinedPlane = 8;
constexpr int Geoid99 = 9;
constexpr int Geoid03 = 10;
constexpr int AusGeoid09 = 11;
constexpr int Nkg2005 = 12;
constexpr int TidalSurface = 13;
constexpr int Dvr90 = 14;     // Danish .01 files
constexpr int GridModel = 15; // a grid model of the terrain model data
constexpr int GcgQuasigeoid = 16;
constexpr int Egm84 = 17;
constexpr int Osu91a = 18;
constexpr int Nn2000 = 19; // Norwegian models
constexpr int Quasigeoid = 20;
constexpr int Geoid12b = 21;
constexpr int Geoid18 = 22;
constexpr int Cgg = 23;
constexpr int Osgm = 24;
constexpr int Ostn = 25;
constexpr int Ggf = 26;
constexpr int Vorf = 27;
constexpr int Gtx = 28;
constexpr int Ntv2Shift = 29;
constexpr int PolynomialCorrection = 30;
constexpr int LocalHeightShift = 31;
} // namespace GeoidKey
