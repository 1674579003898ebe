#include "engine/DraftPreview.h"

#include "api/GeoKeys.h"
#include "api/ProjectionMethods.h"
#include "engine/GeoCoordSys.h"
#include "engine/ModelFiles.h"
#include "engine/PipelineBuilder.h"
#include "store/GeoStore.h"
#include "store/InfoTexts.h"
#include "store/SystemWriter.h"
#include "util/CommonFolders.h"
#include "util/UtmZones.h"

#include <proj.h>

#include <cmath>

namespace {

constexpr double MinutesPerDegree = 60.0;
// PROJ's answer for a bound of an unknown area of use.
constexpr double ProjUnknownBound = -1000.0;
// The engine's defaults for the global models named without a file.
const QString Egm96Grid = QStringLiteral("egm96_15.gtx");
const QString Egm2008Grid = QStringLiteral("egm08_25.gtx");
constexpr int Egm2008Method = 4;

double NormalisedLongitude(double lon) {
    while (lon > 180.0)
        lon -= 360.0;
    while (lon < -180.0)
        lon += 360.0;
    return lon;
}

// A test point reads best on whole minutes.
double WholeMinutes(double degrees) {
    return std::round(degrees * MinutesPerDegree) / MinutesPerDegree;
}

// The centre of the EPSG area of use of a datum transformation, from PROJ's registry.
bool DtfAreaCentre(int epsgCode, double& lat, double& lon) {
    if (epsgCode <= 0)
        return false;
    PJ_CONTEXT* ctx = proj_context_create();
    if (!ctx)
        return false;
    proj_log_level(ctx, PJ_LOG_NONE);
    proj_context_set_enable_network(ctx, 0);
    const QByteArray code = QByteArray::number(epsgCode);
    PJ* op = proj_create_from_database(ctx, "EPSG", code.constData(),
                                       PJ_CATEGORY_COORDINATE_OPERATION, 0, nullptr);
    double west = 0, south = 0, east = 0, north = 0;
    const bool found = op && proj_get_area_of_use(ctx, op, &west, &south, &east, &north, nullptr) &&
                       west > ProjUnknownBound && south > ProjUnknownBound;
    proj_destroy(op);
    proj_context_destroy(ctx);
    if (!found)
        return false;
    if (east < west) // across the antimeridian
        east += 360.0;
    lat = WholeMinutes((south + north) / 2.0);
    lon = WholeMinutes(NormalisedLongitude((west + east) / 2.0));
    return true;
}

bool IsAngleNamed(const PrjParamRecord& p, unsigned type, const QString& word) {
    if (p.type == PRM_HIDDEN)
        return false;
    return p.type == type || (p.type == PRM_PLAIN && p.name.startsWith(word, Qt::CaseInsensitive));
}

// The first angle of that kind that names an origin or a centre, else the first of that kind.
const PrjParamRecord* OriginAngle(const QList<PrjParamRecord>& params, unsigned type,
                                  const QString& word) {
    const PrjParamRecord* first = nullptr;
    for (const PrjParamRecord& p : params) {
        if (!IsAngleNamed(p, type, word))
            continue;
        if (p.name.contains(u"origin", Qt::CaseInsensitive) ||
            p.name.contains(u"centre", Qt::CaseInsensitive))
            return &p;
        if (!first)
            first = &p;
    }
    return first;
}

bool ProjectionOrigin(const SystemDraft& d, const ProjectionMethods::Method* method, double& lat,
                      double& lon) {
    if (method && method->id == ProjectionMethods::UtmId) {
        int zone = 0, meridian = 0;
        QChar letter;
        if (UtmZones::ParseZoneText(d.system.utmZoneText, zone, meridian, letter) && zone >= 1 &&
            zone <= UtmZones::ZoneCount) {
            lat = 0.0;
            lon = UtmZones::CentralMeridian(zone);
            return true;
        }
    }
    const auto* latitude =
        OriginAngle(d.projection.params, PRM_LATITUDE, QStringLiteral("Latitude"));
    const auto* longitude =
        OriginAngle(d.projection.params, PRM_LONGITUDE, QStringLiteral("Longitude"));
    if (!latitude && !longitude)
        return false;
    lat = latitude ? latitude->value : 0.0;
    lon = NormalisedLongitude((longitude ? longitude->value : 0.0) + d.system.primeMeridian);
    return std::isfinite(lat) && std::isfinite(lon) && std::fabs(lat) <= 90.0;
}

bool SystemAreaCentre(const SystemRecord& s, double& lat, double& lon) {
    if (!s.bboxSouth || !s.bboxNorth || !s.bboxWest || !s.bboxEast)
        return false;
    double east = *s.bboxEast;
    if (east < *s.bboxWest)
        east += 360.0;
    lat = WholeMinutes((*s.bboxSouth + *s.bboxNorth) / 2.0);
    lon = WholeMinutes(NormalisedLongitude((*s.bboxWest + east) / 2.0));
    return true;
}

QString Quoted(const QString& text) {
    return QLatin1Char('"') + text + QLatin1Char('"');
}

QString WhereModelsAre(const QString& commonFolder) {
    if (commonFolder.isEmpty())
        return QStringLiteral("ORV.ini names no common data folder; PROJ's data folders were "
                              "searched");
    return QStringLiteral("searched below %1General/Geoidmodels/ and in PROJ's data folders")
        .arg(commonFolder);
}

// The model files the engine would look for, each that is nowhere to be found.
void CheckModelFiles(const SystemRecord& s, const PipelineOptions& options, QStringList& warnings) {
    if (s.geoidOn) {
        const int method = PipelineBuilder::GeoidMethodIndex(s.geoidMethod);
        const QString file = s.geoidFile.trimmed();
        if (method == GeoidKey::ChartDatum) {
            if (!file.isEmpty() &&
                ModelFiles::FindVDatumGeoid(file, options.commonFolder).isEmpty())
                warnings << QStringLiteral("The geoid model %1 of the vertical datum "
                                           "transformation cannot be found (searched in "
                                           "%2vdatum/core/).")
                                .arg(Quoted(file), options.commonFolder);
            const int datum = ChartDatumIndex(s.chartDatum.trimmed());
            if (!file.isEmpty() && datum > ChartDatumNone) {
                QStringList needed{QString::fromWCharArray(ChartDatums[ChartDatumLmsl])};
                if (datum != ChartDatumLmsl)
                    needed << QString::fromWCharArray(ChartDatums[datum]);
                for (const QString& level : needed) {
                    if (ModelFiles::FindChartDatumGrid(file, level, options.commonFolder).isEmpty())
                        warnings << QStringLiteral("The %1 grid of the geoid model %2 cannot be "
                                                   "found, so the chart datum %3 cannot be "
                                                   "applied.")
                                        .arg(level, Quoted(file), s.chartDatum.trimmed());
                }
            }
        } else if (method > GeoidKey::ManualSeparation) {
            QString grid = file;
            if (grid.isEmpty() && method == GeoidKey::Egm96)
                grid = Egm96Grid;
            if (grid.isEmpty() && method == Egm2008Method)
                grid = Egm2008Grid;
            if (!grid.isEmpty() &&
                ModelFiles::Find(grid, method, options.commonFolder, options.projFolders).isEmpty())
                warnings << QStringLiteral("The geoid model file %1 cannot be found (%2).")
                                .arg(Quoted(grid), WhereModelsAre(options.commonFolder));
        }
    }
    const PostCorrection& post = s.post;
    const int postMethod = post.on ? PipelineBuilder::GeoidMethodIndex(post.modelName) : 0;
    if (postMethod == GeoidKey::Ntv2Shift || postMethod == GeoidKey::Ostn) {
        const QString file = post.modelFile.trimmed();
        if (file.isEmpty())
            warnings << QStringLiteral("The post correction %1 has no shift model file.")
                            .arg(Quoted(post.modelName));
        else if (ModelFiles::Find(file, postMethod, options.commonFolder, options.projFolders)
                     .isEmpty())
            warnings << QStringLiteral("The shift model file %1 cannot be found (%2).")
                            .arg(Quoted(file), WhereModelsAre(options.commonFolder));
    }
}

} // namespace

DraftPreview PreviewDraft(const GeoStore& store, const SystemDraft& d) {
    DraftPreview preview;

    // A look-up the database cannot answer; the point is then not converted.
    QString readError;

    // The definition as it would be saved and then loaded by DefineSystem.
    SystemDefinition def;
    def.system = d.system;
    if (def.system.satEllipsoid.isEmpty())
        def.system.satEllipsoid = QStringLiteral("WGS 84");
    if (const auto sat = store.FindEllipsoid(def.system.satEllipsoid, GEODB_ALL, &readError))
        def.satEllipsoid = *sat;
    def.localEllipsoid.name = d.system.localEllipsoid;
    def.localEllipsoid.values = d.localValues;
    if (def.localEllipsoid.values[0] <= 0) {
        if (const auto local = store.FindEllipsoid(d.system.localEllipsoid, GEODB_ALL, &readError))
            def.localEllipsoid = *local;
    }
    def.dtf = d.dtf;
    if (const int index = InfoTexts::DtfMethodIndex(d.dtfMethodName); index >= 0)
        def.dtf.methodIndex = index;
    const ProjectionMethods::Method* method = d.prjMethodName.isEmpty()
                                                  ? ProjectionMethods::ById(d.projection.methodId)
                                                  : ProjectionMethods::ByName(d.prjMethodName);
    def.projection = d.projection;
    if (method)
        def.projection.methodId = method->id;
    def.unit = d.unit;
    if (!d.utmMode) {
        def.system.utmZoneText.clear();
        def.system.utmHemisphereText.clear();
    }

    PipelineOptions options;
    GetCommonDataFolder(store.source().dataFolder, options.commonFolder);
    options.projFolders = ModelFiles::ProjDataFolders();
    // A pre-defined projection is saved by reference and keeps the lengths of its own unit.
    if (const auto stored = store.FindProjection(def.projection.name, GEODB_SYSTEM, &readError);
        stored && !stored->unitName.isEmpty() &&
        stored->unitName.compare(def.unit.name, Qt::CaseInsensitive) != 0) {
        if (const auto unit = store.FindUnit(stored->unitName, GEODB_ALL, &readError);
            unit && unit->metersPerUnit > 0)
            options.projectionUnitFactor = unit->metersPerUnit;
    }

    // Definitions that are almost certainly mistakes.
    const bool fifteen = def.dtf.methodIndex == DTF_15_POSITION_VECTOR ||
                         def.dtf.methodIndex == DTF_15_COORDINATE_FRAME;
    if (fifteen && def.dtf.values[14] == 0.0)
        preview.warnings << QStringLiteral("The datum transformation %1 has fifteen values but "
                                           "the epoch 0: its yearly rates would be applied over "
                                           "some two thousand years. Give the reference epoch "
                                           "of its values (for example 2010.0).")
                                .arg(Quoted(def.dtf.name));
    const bool hasProjection = !d.projection.name.isEmpty() || !d.prjMethodName.isEmpty();
    if (hasProjection && (!method || method->id == ProjectionMethods::NotImplementedId))
        preview.warnings
            << QStringLiteral("The projection method %1 is not implemented: the system cannot "
                              "convert points. Choose another projection.")
                   .arg(Quoted(d.prjMethodName.isEmpty()
                                   ? InfoTexts::PrjMethodName(ProjectionMethods::NotImplementedId)
                                   : d.prjMethodName));
    CheckModelFiles(def.system, options, preview.warnings);

    // The test point.
    double lat = 0, lon = 0;
    // The pages hand over a stored transformation by its name and values, not its code.
    int dtfCode = def.dtf.epsgCode;
    if (dtfCode == 0 && !def.dtf.name.isEmpty()) {
        if (const auto stored = store.FindDtf(def.dtf.name, GEODB_ALL, &readError))
            dtfCode = stored->epsgCode;
    }
    if (def.dtf.methodIndex != DTF_NONE && DtfAreaCentre(dtfCode, lat, lon))
        preview.source = DraftPreview::PointSource::DtfAreaOfUse;
    else if (ProjectionOrigin(d, method, lat, lon))
        preview.source = DraftPreview::PointSource::ProjectionOrigin;
    else if (SystemAreaCentre(def.system, lat, lon))
        preview.source = DraftPreview::PointSource::SystemArea;
    else
        return preview;
    preview.wgs84.x = lat;
    preview.wgs84.y = lon;
    preview.wgs84.z = 0.0;

    if (!readError.isEmpty()) {
        preview.failure = readError;
        return preview;
    }
    GeoCoordSys cs;
    if (!cs.Define(def, options)) {
        preview.failure = cs.LastError();
        return preview;
    }
    GeoPoint point = preview.wgs84;
    if (!cs.Forward(point)) {
        preview.failure = cs.LastError();
        return preview;
    }
    preview.grid = point;
    preview.converted = true;
    return preview;
}
