#pragma once

#include <QString>
#include <QStringList>

// Where the engine finds geoid, chart-datum and shift-model files. Stored systems name a
// model file without its folder; the engine looks for it, in this order:
//   1. the name itself when it is an absolute path;
//   2. <common>/General/Geoidmodels/<country>/ for the methods that have one (DVR90:
//      Denmark, OSGM/OSTN: United Kingdom, GTX and NTv2: Netherlands, SWEN: Sweden,
//      NN2000: Norway);
//   3. <common>/General/Geoidmodels/ and each of its sub-folders;
//   4. PROJ's data folders (where proj-data installs egm96_15.gtx).
// Folder and file names compare without regard to case.
//
// The vertical datum transformation (geoid method 7) names a model of
// <common>/vdatum/core/geoid.inf. Its files:
//   <common>/vdatum/core/<model>.gtx     the geoid model: N above the WGS 84 ellipsoid
//   <common>/vdatum/<model>/tss.gtx      LMSL above the model's vertical datum
//   <common>/vdatum/<model>/<cd>.gtx     the chart datum cd (mhhw, mhw, mtl, dtl, mlw,
//                                        mllw) above LMSL
// (.tif/.tiff grids are accepted wherever .gtx is.)
namespace ModelFiles {

// Grid formats PROJ reads: vertical grids (.gtx, GeoTIFF) and horizontal shift grids
// (NTv2 .gsb, GeoTIFF).
bool IsVerticalGrid(const QString& path);
bool IsHorizontalGrid(const QString& path);

// The country folder below General/Geoidmodels for a geoid method index; empty for none.
QString CountryFolder(int methodIndex);

// Finds a model file as described above; empty when it is nowhere.
QString Find(const QString& fileName, int methodIndex, const QString& commonFolder,
             const QStringList& projFolders);

// base/relative resolved component by component without regard to case; empty when a
// component is missing.
QString ResolveNoCase(const QString& base, const QString& relative);

// Vertical datum transformation files; empty when missing. The chart datum is one of the
// fixed list ("LMSL", "MHHW", ...).
QString FindVDatumGeoid(const QString& model, const QString& commonFolder);
QString FindChartDatumGrid(const QString& model, const QString& chartDatum,
                           const QString& commonFolder);

// PROJ's data folders as the loaded PROJ reports them (its search path, which follows
// PROJ_DATA), then the data folder PROJ was installed with.
QStringList ProjDataFolders();

} // namespace ModelFiles
