#include "SystemExport.h"

#include "api/GeoKeys.h"
#include "engine/GeoCoordSys.h"
#include "engine/ModelFiles.h"
#include "store/GeoStore.h"
#include "util/CommonFolders.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <proj.h>
#include <proj_experimental.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <vector>

namespace SystemExport {

namespace {

constexpr double DegreeInRadians = 0.017453292519943295;
constexpr double ArcSecondInRadians = DegreeInRadians / 3600.0;
constexpr double PartsPerMillion = 1e-6;
// EPSG's year and the per-year rates derived from it (unit codes 1029, 1042, 1043, 1041).
constexpr double YearInSeconds = 31556925.445;
constexpr const char* Wgs84Geographic3D = "4979";

// EPSG methods of the datum transformation, by method index (geographic 2D domain).
constexpr std::array<const char*, 5> HelmertMethodCodes{"", "9606", "9607", "1054", "1057"};
constexpr std::array<const char*, 5> HelmertMethodNames{
    "", "Position Vector transformation (geog2D domain)",
    "Coordinate Frame rotation (geog2D domain)", "Time-dependent Position Vector tfm (geog2D)",
    "Time-dependent Coordinate Frame rotation (geog2D)"};

struct Parameter {
    const char* name;
    const char* code;
    const char* unit;
    double factor;
    PJ_UNIT_TYPE type;
};

// The fifteen values in the order DtfValues holds them, as EPSG names them.
constexpr std::array<Parameter, 15> HelmertParameters{{
    {"X-axis translation", "8605", "metre", 1.0, PJ_UT_LINEAR},
    {"Y-axis translation", "8606", "metre", 1.0, PJ_UT_LINEAR},
    {"Z-axis translation", "8607", "metre", 1.0, PJ_UT_LINEAR},
    {"X-axis rotation", "8608", "arc-second", ArcSecondInRadians, PJ_UT_ANGULAR},
    {"Y-axis rotation", "8609", "arc-second", ArcSecondInRadians, PJ_UT_ANGULAR},
    {"Z-axis rotation", "8610", "arc-second", ArcSecondInRadians, PJ_UT_ANGULAR},
    {"Scale difference", "8611", "parts per million", PartsPerMillion, PJ_UT_SCALE},
    {"Rate of change of X-axis translation", "1040", "metres per year", 1.0 / YearInSeconds,
     PJ_UT_LINEAR},
    {"Rate of change of Y-axis translation", "1041", "metres per year", 1.0 / YearInSeconds,
     PJ_UT_LINEAR},
    {"Rate of change of Z-axis translation", "1042", "metres per year", 1.0 / YearInSeconds,
     PJ_UT_LINEAR},
    {"Rate of change of X-axis rotation", "1043", "arc-seconds per year",
     ArcSecondInRadians / YearInSeconds, PJ_UT_ANGULAR},
    {"Rate of change of Y-axis rotation", "1044", "arc-seconds per year",
     ArcSecondInRadians / YearInSeconds, PJ_UT_ANGULAR},
    {"Rate of change of Z-axis rotation", "1045", "arc-seconds per year",
     ArcSecondInRadians / YearInSeconds, PJ_UT_ANGULAR},
    {"Rate of change of Scale difference", "1046", "parts per million per year",
     PartsPerMillion / YearInSeconds, PJ_UT_SCALE},
    {"Parameter reference epoch", "1047", "year", YearInSeconds, PJ_UT_TIME},
}};
constexpr std::size_t SevenValues = 7;

// How far PROJ's reading of an exported CRS may lie from the engine, in metres. PROJ applies
// no transformation whose values are all zero, where the engine goes through geocentric
// coordinates of both ellipsoids: between WGS 84 and GRS 1980 that moves latitude and height
// by up to 0.11 mm.
constexpr double ReadBackTolerance = 0.0002;
// Years after the transformation's epoch at which a time-dependent one is checked, so that
// its rates count.
constexpr double ProbeYears = 10.0;
constexpr double ProbeHeight = 100.0;

struct PjDeleter {
    void operator()(PJ* pj) const { proj_destroy(pj); }
};
using PjPtr = std::unique_ptr<PJ, PjDeleter>;

struct ContextDeleter {
    void operator()(PJ_CONTEXT* ctx) const { proj_context_destroy(ctx); }
};

QString ContextError(PJ_CONTEXT* ctx) {
    return QString::fromUtf8(proj_context_errno_string(ctx, proj_context_errno(ctx)));
}

QByteArray Utf8(const QString& text) {
    return text.toUtf8();
}

// What a CRS cannot say: the engine's corrections beyond the datum transformation.
QString Inexpressible(const SystemDefinition& def) {
    const SystemRecord& sys = def.system;
    const PostCorrection& post = sys.post;
    if (post.horOn)
        return QStringLiteral("a horizontal adjustment");
    if (post.vertOn)
        return QStringLiteral("a vertical adjustment");
    if (post.on && !post.modelName.trimmed().isEmpty() &&
        PipelineBuilder::GeoidMethodIndex(post.modelName) != GeoidKey::None)
        return QStringLiteral("a shift model");
    if (post.on && (post.e != 0 || post.n != 0 || post.z != 0))
        return QStringLiteral("a translation");
    if (sys.geoidOn) {
        const int geoid = PipelineBuilder::GeoidMethodIndex(sys.geoidMethod);
        if (geoid == GeoidKey::ManualSeparation)
            return QStringLiteral("a manual geoid separation");
        if (geoid == GeoidKey::ChartDatum)
            return QStringLiteral("a vertical datum transformation");
    }
    return {};
}

// The geoid grid of the engine's pipeline: its file name when PROJ finds it by name, else
// its path. Empty when the pipeline has none.
QString GeoidGrid(const QString& pipeline) {
    static const QRegularExpression grid(
        QStringLiteral("\\+inv \\+proj=vgridshift \\+grids=\"([^\"]+)\""));
    const QRegularExpressionMatch match = grid.match(pipeline);
    if (!match.hasMatch())
        return {};
    const QString path = match.captured(1);
    const QFileInfo info(path);
    for (const QString& folder : ModelFiles::ProjDataFolders()) {
        if (QDir(folder).absoluteFilePath(info.fileName()) == info.absoluteFilePath())
            return info.fileName();
    }
    return path;
}

class Builder {
public:
    Builder(const SystemDefinition& def, const PipelineOptions& options, QString& error)
        : m_def(def), m_options(options), m_error(error), m_ctx(proj_context_create()) {
        proj_log_level(m_ctx.get(), PJ_LOG_NONE);
        proj_context_set_enable_network(m_ctx.get(), 0);
    }

    PjPtr Crs(const QString& pipeline);
    PJ_CONTEXT* context() const { return m_ctx.get(); }

private:
    PjPtr LocalGeographic();
    PjPtr Projected(const PJ* geographic);
    PjPtr Transformation(PJ* source, PJ* hub);
    bool Fail(const QString& what) {
        m_error = QStringLiteral("The system \"%1\" cannot be exported: %2 (%3).")
                      .arg(m_def.system.name, what, ContextError(m_ctx.get()));
        return false;
    }

    const SystemDefinition& m_def;
    const PipelineOptions& m_options;
    QString& m_error;
    std::unique_ptr<PJ_CONTEXT, ContextDeleter> m_ctx;
};

PjPtr Builder::LocalGeographic() {
    const EllipsoidRecord& ellipsoid =
        m_def.localEllipsoid.values[0] > 0 ? m_def.localEllipsoid : m_def.satEllipsoid;
    const double a = ellipsoid.values[0] > 0 ? ellipsoid.values[0] : 6378137.0;
    double rf = ellipsoid.values[0] > 0 ? ellipsoid.values[2] : 298.257223563;
    if (rf <= 0 && ellipsoid.values[1] > 0 && ellipsoid.values[1] != a)
        rf = a / (a - ellipsoid.values[1]);
    const double pm = m_def.system.primeMeridian;
    const QString datum = !m_def.dtf.localDatum.isEmpty() ? m_def.dtf.localDatum
                          : !m_def.dtf.name.isEmpty()
                              ? QStringLiteral("Datum of %1").arg(m_def.dtf.name)
                              : QStringLiteral("Datum of %1").arg(m_def.system.name);
    const QString ellipsoidName =
        ellipsoid.name.isEmpty() ? QStringLiteral("Local ellipsoid") : ellipsoid.name;
    PjPtr cs(proj_create_ellipsoidal_2D_cs(m_ctx.get(), PJ_ELLPS2D_LATITUDE_LONGITUDE, "degree",
                                           DegreeInRadians));
    return PjPtr(proj_create_geographic_crs(
        m_ctx.get(), Utf8(datum).constData(), Utf8(datum).constData(),
        Utf8(ellipsoidName).constData(), a, rf, pm == 0 ? "Greenwich" : "Local meridian", pm,
        "degree", DegreeInRadians, cs.get()));
}

PjPtr Builder::Projected(const PJ* geographic) {
    const double unitFactor = m_def.unit.metersPerUnit > 0 ? m_def.unit.metersPerUnit : 1.0;
    const double lengthFactor =
        m_options.projectionUnitFactor > 0 ? m_options.projectionUnitFactor : unitFactor;
    QString why;
    PjPtr conversion(PipelineBuilder::CreateConversion(m_ctx.get(), m_def, lengthFactor, why));
    if (!conversion) {
        m_error = why;
        return nullptr;
    }
    const QByteArray unit =
        Utf8(m_def.unit.name.isEmpty() ? QStringLiteral("metre") : m_def.unit.name);
    PjPtr cartesian(proj_create_cartesian_2D_cs(m_ctx.get(), PJ_CART2D_EASTING_NORTHING,
                                                unit.constData(), unitFactor));
    return PjPtr(proj_create_projected_crs(m_ctx.get(), Utf8(m_def.system.name).constData(),
                                           geographic, conversion.get(), cartesian.get()));
}

PjPtr Builder::Transformation(PJ* source, PJ* hub) {
    const DtfRecord& dtf = m_def.dtf;
    const int method = dtf.methodIndex;
    if (method < DTF_7_POSITION_VECTOR || method > DTF_15_COORDINATE_FRAME)
        return nullptr;
    // A CRS is bound by the transformation local -> WGS 84, the direction EPSG publishes.
    // Values stored for WGS 84 -> local are turned round by their sign (exact for
    // translations; rotations and scale within millimetres).
    const bool published = (dtf.option & DTF_OPTION_PUBLISHED_TO_WGS84) != 0;
    // The rotations in the method's own convention, as EPSG publishes them.
    const DtfValues values = DtfValuesInMethodSign(dtf.values, method);
    const std::size_t count =
        method >= DTF_15_POSITION_VECTOR ? HelmertParameters.size() : SevenValues;
    std::vector<PJ_PARAM_DESCRIPTION> params;
    for (std::size_t i = 0; i < count; ++i) {
        const Parameter& p = HelmertParameters[i];
        const bool epoch = i + 1 == HelmertParameters.size();
        params.push_back({p.name, "EPSG", p.code, published || epoch ? values[i] : -values[i],
                          p.unit, p.factor, p.type});
    }
    const QByteArray name =
        Utf8(dtf.name.isEmpty() ? QStringLiteral("Datum transformation") : dtf.name);
    return PjPtr(proj_create_transformation(m_ctx.get(), name.constData(), nullptr, nullptr, source,
                                            hub, nullptr, HelmertMethodNames[method], "EPSG",
                                            HelmertMethodCodes[method], int(params.size()),
                                            params.data(), dtf.accuracy > 0 ? dtf.accuracy : -1));
}

PjPtr Builder::Crs(const QString& pipeline) {
    PJ_CONTEXT* ctx = m_ctx.get();
    PjPtr geographic = LocalGeographic();
    if (!geographic && !Fail(QStringLiteral("its local ellipsoid is not valid")))
        return nullptr;
    PjPtr projected = Projected(geographic.get());
    if (!projected) {
        if (m_error.isEmpty())
            Fail(QStringLiteral("PROJ cannot build its projected system"));
        return nullptr;
    }
    PjPtr hub(
        proj_create_from_database(ctx, "EPSG", Wgs84Geographic3D, PJ_CATEGORY_CRS, false, nullptr));
    if (!hub && !Fail(QStringLiteral("WGS 84 is not in PROJ's database")))
        return nullptr;
    PjPtr hub2D(proj_crs_demote_to_2D(ctx, nullptr, hub.get()));
    const QString grid = GeoidGrid(pipeline);

    // Without a geoid Z is the height above the local ellipsoid: a three-dimensional system
    // carries it through the datum transformation.
    PjPtr horizontal = std::move(projected);
    if (grid.isEmpty()) {
        horizontal.reset(proj_crs_promote_to_3D(ctx, nullptr, horizontal.get()));
        // Z in the system unit, as E and N.
        if (horizontal && m_def.unit.metersPerUnit > 0 && m_def.unit.metersPerUnit != 1.0)
            horizontal.reset(proj_crs_alter_cs_linear_unit(
                ctx, horizontal.get(), Utf8(m_def.unit.name).constData(), m_def.unit.metersPerUnit,
                nullptr, nullptr));
        if (!horizontal && !Fail(QStringLiteral("PROJ cannot give it heights")))
            return nullptr;
    }
    PjPtr base(proj_crs_get_geodetic_crs(ctx, horizontal.get()));
    PjPtr transformation = Transformation(base.get(), grid.isEmpty() ? hub.get() : hub2D.get());
    if (m_def.dtf.methodIndex != DTF_NONE && !transformation &&
        !Fail(QStringLiteral("PROJ cannot build its datum transformation")))
        return nullptr;
    if (transformation) {
        horizontal.reset(proj_crs_create_bound_crs(
            ctx, horizontal.get(), grid.isEmpty() ? hub.get() : hub2D.get(), transformation.get()));
        if (!horizontal && !Fail(QStringLiteral("PROJ cannot bind it to WGS 84")))
            return nullptr;
    }
    if (grid.isEmpty())
        return horizontal;

    // Z = h - N on the WGS 84 position: a vertical system bound to WGS 84 by the grid.
    const double unitFactor = m_def.unit.metersPerUnit > 0 ? m_def.unit.metersPerUnit : 1.0;
    const QByteArray unit =
        Utf8(m_def.unit.name.isEmpty() ? QStringLiteral("metre") : m_def.unit.name);
    const QByteArray heights = Utf8(QStringLiteral("%1 height").arg(m_def.system.geoidMethod));
    PjPtr vertical(proj_create_vertical_crs(ctx, heights.constData(), heights.constData(),
                                            unit.constData(), unitFactor));
    PjPtr boundVertical(vertical ? proj_crs_create_bound_vertical_crs(
                                       ctx, vertical.get(), hub.get(), Utf8(grid).constData())
                                 : nullptr);
    if (!boundVertical && !Fail(QStringLiteral("PROJ cannot bind its heights to the geoid grid")))
        return nullptr;
    PjPtr compound(proj_create_compound_crs(ctx, Utf8(m_def.system.name).constData(),
                                            horizontal.get(), boundVertical.get()));
    if (!compound)
        Fail(QStringLiteral("PROJ cannot combine its position and height"));
    return compound;
}

// Points where the engine and PROJ's reading of the export are compared: the middle of the
// system's area, the projection's origin, the equator at Greenwich.
QList<GeoPoint> Probes(const SystemDefinition& def, bool timeDependent) {
    const SystemRecord& sys = def.system;
    const double t = timeDependent ? def.dtf.values[14] + ProbeYears : 0;
    QList<GeoPoint> probes;
    if (sys.bboxSouth && sys.bboxNorth && sys.bboxWest && sys.bboxEast) {
        double lon = (*sys.bboxWest + *sys.bboxEast) / 2;
        if (*sys.bboxWest > *sys.bboxEast) // across the antimeridian
            lon = std::remainder(lon + 180.0, 360.0);
        probes.append({(*sys.bboxSouth + *sys.bboxNorth) / 2, lon, ProbeHeight, t});
    }
    double lat = 0, lon = 0;
    for (const PrjParamRecord& param : def.projection.params) {
        if (param.type == PRM_LATITUDE && lat == 0)
            lat = param.value;
        if (param.type == PRM_LONGITUDE && lon == 0)
            lon = param.value;
    }
    probes.append({lat, lon, ProbeHeight, t});
    probes.append({0, 0, ProbeHeight, t});
    return probes;
}

// PROJ reads the exported text back and converts a probe from WGS 84 3D as the engine does;
// false with the reason when it does not.
bool ReadsBackAsTheEngine(const QString& text, GeoCoordSys& engine, const SystemDefinition& def,
                          const QString& formatName, QString& error) {
    const std::unique_ptr<PJ_CONTEXT, ContextDeleter> ctx(proj_context_create());
    proj_log_level(ctx.get(), PJ_LOG_NONE);
    PjPtr crs(proj_create(ctx.get(), Utf8(text).constData()));
    PjPtr wgs84(proj_create(ctx.get(), "EPSG:4979"));
    PjPtr op(crs && wgs84 ? proj_create_crs_to_crs_from_pj(ctx.get(), wgs84.get(), crs.get(),
                                                           nullptr, nullptr)
                          : nullptr);
    if (!op) {
        error = QStringLiteral("PROJ cannot read the %1 of the system \"%2\" back: %3.")
                    .arg(formatName, def.system.name, ContextError(ctx.get()));
        return false;
    }
    const double unit = def.unit.metersPerUnit > 0 ? def.unit.metersPerUnit : 1.0;
    for (GeoPoint probe : Probes(def, engine.IsTimeDependent())) {
        GeoPoint expected = probe;
        if (!engine.Forward(expected))
            continue;
        const PJ_COORD c = proj_trans(op.get(), PJ_FWD,
                                      proj_coord(probe.x, probe.y, probe.z,
                                                 engine.IsTimeDependent() ? probe.time : HUGE_VAL));
        const double apart = std::max({std::abs(c.v[0] - expected.x), std::abs(c.v[1] - expected.y),
                                       std::abs(c.v[2] - expected.z)}) *
                             unit;
        if (std::isfinite(apart) && apart <= ReadBackTolerance)
            return true;
        error =
            QStringLiteral("PROJ reads the %1 of the system \"%2\" back %3 m away from what "
                           "the engine computes%4; \"--format %5\" exports it faithfully.")
                .arg(formatName, def.system.name,
                     std::isfinite(apart) ? QString::number(apart, 'g', 3)
                                          : QStringLiteral("infinitely"),
                     engine.IsTimeDependent()
                         ? QStringLiteral(" (the yearly rates of its datum transformation)")
                         : QString(),
                     formatName == u"WKT2" ? QStringLiteral("projjson") : QStringLiteral("proj"));
        return false;
    }
    return true; // no point of the system converts: nothing to compare
}

} // namespace

bool ParseFormat(const QString& text, Format& format) {
    const QString name = text.trimmed().toLower();
    if (name == u"wkt2" || name == u"wkt")
        format = Format::Wkt2;
    else if (name == u"projjson" || name == u"json")
        format = Format::ProjJson;
    else if (name == u"proj" || name == u"pipeline")
        format = Format::Proj;
    else
        return false;
    return true;
}

bool Export(const SystemDefinition& definition, const PipelineOptions& options, Format format,
            QString& text, QString& error) {
    text.clear();
    error.clear();
    // The engine's own pipeline: the Proj format, and the grid files the CRS names.
    GeoCoordSys engine;
    if (!engine.Define(definition, options)) {
        error = engine.LastError();
        return false;
    }
    const QString pipeline = engine.PipelineDefinition();
    if (format == Format::Proj) {
        text = pipeline;
        return true;
    }
    const QString missing = Inexpressible(definition);
    if (!missing.isEmpty()) {
        error = QStringLiteral("The system \"%1\" has %2, which WKT2 and PROJJSON cannot "
                               "describe; \"--format proj\" exports its whole PROJ pipeline.")
                    .arg(definition.system.name, missing);
        return false;
    }
    Builder builder(definition, options, error);
    PjPtr crs = builder.Crs(pipeline);
    if (!crs)
        return false;
    const char* const wktOptions[] = {"MULTILINE=YES", nullptr};
    const char* exported = format == Format::Wkt2
                               ? proj_as_wkt(builder.context(), crs.get(), PJ_WKT2_2019, wktOptions)
                               : proj_as_projjson(builder.context(), crs.get(), nullptr);
    if (!exported) {
        error =
            QStringLiteral("PROJ cannot write the system \"%1\" as %2.")
                .arg(definition.system.name,
                     format == Format::Wkt2 ? QStringLiteral("WKT2") : QStringLiteral("PROJJSON"));
        return false;
    }
    text = QString::fromUtf8(exported);
    if (!ReadsBackAsTheEngine(
            text, engine, definition,
            format == Format::Wkt2 ? QStringLiteral("WKT2") : QStringLiteral("PROJJSON"), error)) {
        text.clear();
        return false;
    }
    return true;
}

bool ExportStored(const GeoStore& store, const QString& dataFolder, const QString& group,
                  const QString& system, Format format, QString& text, QString& error) {
    QString why;
    const std::optional<SystemDefinition> def = store.LoadDefinition(group, system, &why);
    if (!def) {
        error = QStringLiteral("The coordinate system \"%1\" of the group \"%2\" cannot be "
                               "loaded: %3")
                    .arg(system, group, why.isEmpty() ? QStringLiteral("it does not exist.") : why);
        return false;
    }
    // What the engine uses besides the stored records (as DefineSystem does).
    PipelineOptions options;
    GetCommonDataFolder(dataFolder, options.commonFolder);
    const ProjectionRecord& prj = def->projection;
    if (!prj.unitName.isEmpty() && prj.unitName.compare(def->unit.name, Qt::CaseInsensitive) != 0) {
        QString failure;
        const auto unit = store.FindUnit(prj.unitName, GEODB_ALL, &failure);
        if (!failure.isEmpty()) {
            error = failure;
            return false;
        }
        if (unit && unit->metersPerUnit > 0)
            options.projectionUnitFactor = unit->metersPerUnit;
    }
    return Export(*def, options, format, text, error);
}

} // namespace SystemExport
