#include "engine/PipelineBuilder.h"

#include "api/GeoKeys.h"
#include "api/ProjectionMethods.h"
#include "engine/ModelFiles.h"
#include "util/UtmZones.h"

#include <QByteArray>
#include <QDir>

#include <proj.h>
#include <proj_experimental.h>

#include <cmath>
#include <memory>
#include <numbers>
#include <vector>

namespace PipelineBuilder {

namespace {

constexpr double DegreeInRadians = 0.0174532925199433;
constexpr double ArcSecondInRadians = DegreeInRadians / 3600.0;

QString Num(double value) {
    return QString::number(value, 'g', 17);
}

// A grid path for +grids=; quoted, so that folders with blanks work.
QString GridArg(const QString& path) {
    return QStringLiteral("+grids=\"") + path + QLatin1Char('"');
}

struct PjDeleter {
    void operator()(PJ* pj) const { proj_destroy(pj); }
};
using PjPtr = std::unique_ptr<PJ, PjDeleter>;

QString ContextError(pj_ctx* ctx) {
    return QString::fromUtf8(proj_context_errno_string(ctx, proj_context_errno(ctx)));
}

// The EPSG parameter code of a stored parameter, from the method table; 0 when unknown.
int ParamCode(const ProjectionMethods::Method* method, const QString& name) {
    if (!method)
        return 0;
    for (const ProjectionMethods::Param& param : method->params) {
        if (name.compare(QString::fromUtf8(param.name), Qt::CaseInsensitive) == 0)
            return param.epsgCode;
    }
    return 0;
}

enum class ParamKind { Angle, Scale, Length, Skip };

ParamKind KindOf(const PrjParamRecord& param) {
    switch (param.type) {
    case PRM_LATITUDE:
    case PRM_LONGITUDE:
        return ParamKind::Angle;
    case PRM_SCALE:
        return ParamKind::Scale;
    case PRM_LENGTH:
        return ParamKind::Length;
    case PRM_HIDDEN:
        return ParamKind::Skip;
    default:
        break;
    }
    // Plain numbers: decide by the EPSG name.
    const QString name = param.name.toLower();
    if (name.contains(u"scale"))
        return ParamKind::Scale;
    if (name.contains(u"easting") || name.contains(u"northing") || name.contains(u"height"))
        return ParamKind::Length;
    return ParamKind::Angle;
}

const PrjParamRecord* FindParam(const ProjectionRecord& prj, const QString& name) {
    for (const PrjParamRecord& param : prj.params) {
        if (param.name.compare(name, Qt::CaseInsensitive) == 0)
            return &param;
    }
    return nullptr;
}

// UTM zone and hemisphere from the projection's hidden parameters or the system's texts.
bool UtmZone(const SystemDefinition& def, int& zone, bool& north) {
    zone = 0;
    north = true;
    const auto* zoneParam = FindParam(
        def.projection, QString::fromWCharArray(projectionParamKeys[ProjectionParamZoneKey]));
    const auto* hemiParam = FindParam(
        def.projection, QString::fromWCharArray(projectionParamKeys[ProjectionParamHemisphereKey]));
    if (zoneParam)
        zone = static_cast<int>(std::lround(zoneParam->value));
    if (zone < 1 || zone > UtmZones::ZoneCount) {
        int meridian = 0;
        QChar letter;
        if (!UtmZones::ParseZoneText(def.system.utmZoneText, zone, meridian, letter))
            return false;
    }
    if (hemiParam &&
        hemiParam->valueText.compare(UtmZones::SouthernText(), Qt::CaseInsensitive) == 0)
        north = false;
    else if (hemiParam &&
             hemiParam->valueText.compare(UtmZones::NorthernText(), Qt::CaseInsensitive) == 0)
        north = true;
    else if (hemiParam)
        north = hemiParam->value < 1.0; // 1 or a false northing of 10000000: southern
    else if (!def.system.utmHemisphereText.isEmpty())
        north = UtmZones::FalseNorthing(def.system.utmHemisphereText) == 0.0;
    return zone >= 1 && zone <= UtmZones::ZoneCount;
}

// Splits PROJ's export of a conversion into steps and keeps those that work on radians
// east of Greenwich: the radians-to-radians unit step and the prime-meridian shift of the
// input go, because the datum transformation hands over Greenwich longitudes.
QStringList ConversionSteps(const QString& exported) {
    QString text = exported.trimmed();
    QStringList parts;
    if (text.startsWith(u"+proj=pipeline")) {
        text = text.mid(QStringLiteral("+proj=pipeline").size());
        parts = text.split(QStringLiteral("+step "), Qt::SkipEmptyParts);
    } else {
        parts << text;
    }
    QStringList steps;
    for (QString part : parts) {
        part = part.trimmed();
        if (part.isEmpty())
            continue;
        if (part.startsWith(u"+proj=unitconvert +xy_in=rad +xy_out=rad"))
            continue;
        if (part.startsWith(u"+inv +proj=longlat"))
            continue;
        // Easting first: methods whose first axis is north or south (e.g. Krovak's
        // "swu") are turned into "wsu".
        const qsizetype axis = part.indexOf(u"+axis=");
        if (axis >= 0 && part.size() >= axis + 9) {
            const QChar first = part.at(axis + 6);
            if (first == u'n' || first == u's') {
                const QChar second = part.at(axis + 7);
                part[axis + 6] = second;
                part[axis + 7] = first;
            }
        }
        steps << part;
    }
    return steps;
}

// The cone constant n of Lambert Conic Conformal (2SP) on an ellipsoid of flattening f.
double LccConeConstant(double f, double lat1Deg, double lat2Deg) {
    const double e = std::sqrt(f * (2 - f));
    const auto m = [e](double phi) {
        return std::cos(phi) / std::sqrt(1 - e * e * std::sin(phi) * std::sin(phi));
    };
    const auto t = [e](double phi) {
        const double es = e * std::sin(phi);
        return std::tan(std::numbers::pi / 4 - phi / 2) / std::pow((1 - es) / (1 + es), e / 2);
    };
    const double p1 = lat1Deg * DegreeInRadians, p2 = lat2Deg * DegreeInRadians;
    if (std::abs(p1 - p2) < 1e-12)
        return std::sin(p1);
    return (std::log(m(p1)) - std::log(m(p2))) / (std::log(t(p1)) - std::log(t(p2)));
}

// Semi-major axis and inverse flattening of the ellipsoid the projection works on.
void LocalEllipsoid(const SystemDefinition& def, double& a, double& rf) {
    EllipsoidRecord ellipsoid = def.localEllipsoid;
    if (ellipsoid.values[0] <= 0)
        ellipsoid = def.satEllipsoid;
    a = ellipsoid.values[0] > 0 ? ellipsoid.values[0] : 6378137.0;
    rf = ellipsoid.values[0] > 0 ? ellipsoid.values[2] : 298.257223563;
    if (rf <= 0 && ellipsoid.values[1] > 0 && ellipsoid.values[1] != a)
        rf = a / (a - ellipsoid.values[1]);
}

} // namespace

QString EllipsoidParams(const EllipsoidRecord& ellipsoid) {
    const EllipsoidValues& v = ellipsoid.values;
    if (v[0] <= 0)
        return QStringLiteral("+ellps=WGS84");
    if (v[2] > 0)
        return QStringLiteral("+a=%1 +rf=%2").arg(Num(v[0]), Num(v[2]));
    if (v[1] > 0 && v[1] != v[0])
        return QStringLiteral("+a=%1 +b=%2").arg(Num(v[0]), Num(v[1]));
    return QStringLiteral("+R=%1").arg(Num(v[0]));
}

QString HelmertStep(const DtfRecord& dtf) {
    if (dtf.methodIndex < DTF_7_POSITION_VECTOR || dtf.methodIndex > DTF_15_COORDINATE_FRAME)
        return {};
    // PROJ takes the rotations in the method's own convention, as published.
    const DtfValues v = DtfValuesInMethodSign(dtf.values, dtf.methodIndex);
    const bool fifteen = dtf.methodIndex >= DTF_15_POSITION_VECTOR;
    const bool positionVector =
        dtf.methodIndex == DTF_7_POSITION_VECTOR || dtf.methodIndex == DTF_15_POSITION_VECTOR;
    QString step =
        (dtf.option & DTF_OPTION_PUBLISHED_TO_WGS84) ? QStringLiteral("+inv ") : QString();
    step += QStringLiteral("+proj=helmert +x=%1 +y=%2 +z=%3").arg(Num(v[0]), Num(v[1]), Num(v[2]));
    // Geocentric translations are the seven-value form with zero rotations and scale.
    const bool translationsOnly = !fifteen && v[3] == 0 && v[4] == 0 && v[5] == 0 && v[6] == 0;
    if (translationsOnly)
        return step;
    step += QStringLiteral(" +rx=%1 +ry=%2 +rz=%3 +s=%4")
                .arg(Num(v[3]), Num(v[4]), Num(v[5]), Num(v[6]));
    if (fifteen) {
        step += QStringLiteral(" +dx=%1 +dy=%2 +dz=%3 +drx=%4 +dry=%5 +drz=%6 +ds=%7 +t_epoch=%8")
                    .arg(Num(v[7]), Num(v[8]), Num(v[9]), Num(v[10]), Num(v[11]), Num(v[12]),
                         Num(v[13]), Num(v[14]));
    }
    step += positionVector ? QStringLiteral(" +convention=position_vector")
                           : QStringLiteral(" +convention=coordinate_frame");
    return step;
}

int GeoidMethodIndex(const QString& name) {
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty() || trimmed == u"--None--")
        return GeoidKey::None;
    for (int i = 0; i < GeoidmodelTypeKeyCount; ++i) {
        if (trimmed.compare(QString::fromWCharArray(GeoidmodelTypeKeys[i]), Qt::CaseInsensitive) ==
            0)
            return i;
    }
    return -1;
}

PJ* CreateConversion(pj_ctx* ctx, const SystemDefinition& def, double lengthFactor,
                     QString& error) {
    const ProjectionRecord& prj = def.projection;
    if (prj.name.isEmpty() && prj.methodId == 0) {
        error = QStringLiteral("The system \"%1\" has no projection.").arg(def.system.name);
        return nullptr;
    }
    const ProjectionMethods::Method* method = ProjectionMethods::ById(prj.methodId);
    const QString methodName =
        method ? QString::fromUtf8(method->name) : QStringLiteral("method %1").arg(prj.methodId);
    if (prj.methodId == ProjectionMethods::NotImplementedId) {
        error = QStringLiteral("The projection method of \"%1\" (EPSG method %2) is not "
                               "implemented.")
                    .arg(prj.name)
                    .arg(prj.epsgMethodCode);
        return nullptr;
    }

    double a = 0, rf = 0;
    LocalEllipsoid(def, a, rf);

    PjPtr conversion;
    if (prj.methodId == ProjectionMethods::UtmId) {
        int zone = 0;
        bool north = true;
        if (!UtmZone(def, zone, north)) {
            error = QStringLiteral("The UTM projection \"%1\" has no valid zone.").arg(prj.name);
            return nullptr;
        }
        conversion.reset(proj_create_conversion_utm(ctx, zone, north ? 1 : 0));
    } else {
        int methodCode = prj.epsgMethodCode;
        if (methodCode == 0 && method && !method->epsgMethodCodes.empty())
            methodCode = method->epsgMethodCodes.front();
        if (methodCode == 0) {
            error =
                QStringLiteral("The projection method \"%1\" is not implemented.").arg(methodName);
            return nullptr;
        }
        // Lambert Conic Conformal (2SP Belgium) turns the cone by a = 29.2985" about its
        // apex: theta - a = n (lambda - (lambdaF + a / n)). PROJ maps the method to the plain
        // 2SP formulas and drops the turn, so the engine moves the longitude of false origin.
        double belgianShift = 0;
        if (methodCode == 9803) {
            const auto* lat1 = FindParam(prj, QStringLiteral("Latitude of 1st standard parallel"));
            const auto* lat2 = FindParam(prj, QStringLiteral("Latitude of 2nd standard parallel"));
            const double n =
                lat1 && lat2 ? LccConeConstant(rf > 0 ? 1 / rf : 0, lat1->value, lat2->value) : 0;
            if (n == 0 || !std::isfinite(n)) {
                error = QStringLiteral("The projection \"%1\" has no valid standard parallels.")
                            .arg(prj.name);
                return nullptr;
            }
            belgianShift = 29.2985 / 3600.0 / n;
            methodCode = 9802;
        }
        std::vector<QByteArray> names, codes;
        std::vector<PJ_PARAM_DESCRIPTION> params;
        names.reserve(prj.params.size());
        codes.reserve(prj.params.size());
        for (const PrjParamRecord& param : prj.params) {
            const ParamKind kind = KindOf(param);
            if (kind == ParamKind::Skip)
                continue;
            names.push_back(param.name.toUtf8());
            const int code = ParamCode(method, param.name);
            codes.push_back(code ? QByteArray::number(code) : QByteArray());
            PJ_PARAM_DESCRIPTION d{};
            d.name = names.back().constData();
            d.auth_name = code ? "EPSG" : nullptr;
            d.code = code ? codes.back().constData() : nullptr;
            switch (kind) {
            case ParamKind::Angle:
                d.value = param.value;
                if (code == 8822)
                    d.value += belgianShift;
                d.unit_name = "degree";
                d.unit_conv_factor = DegreeInRadians;
                d.unit_type = PJ_UT_ANGULAR;
                break;
            case ParamKind::Scale:
                d.value = param.value;
                d.unit_name = "unity";
                d.unit_conv_factor = 1.0;
                d.unit_type = PJ_UT_SCALE;
                break;
            default:
                d.value = param.value * lengthFactor;
                d.unit_name = "metre";
                d.unit_conv_factor = 1.0;
                d.unit_type = PJ_UT_LINEAR;
                break;
            }
            params.push_back(d);
        }
        const QByteArray code = QByteArray::number(methodCode);
        const QByteArray name = prj.name.isEmpty() ? QByteArray("projection") : prj.name.toUtf8();
        conversion.reset(proj_create_conversion(ctx, name.constData(), nullptr, nullptr, "", "EPSG",
                                                code.constData(), static_cast<int>(params.size()),
                                                params.data()));
    }
    if (!conversion) {
        error = QStringLiteral("The projection \"%1\" cannot be set up: %2")
                    .arg(prj.name, ContextError(ctx));
        return nullptr;
    }
    return conversion.release();
}

bool ProjectionSteps(pj_ctx* ctx, const SystemDefinition& def, double lengthFactor,
                     QStringList& steps, QString& error) {
    const ProjectionRecord& prj = def.projection;
    const ProjectionMethods::Method* method = ProjectionMethods::ById(prj.methodId);
    const QString methodName =
        method ? QString::fromUtf8(method->name) : QStringLiteral("method %1").arg(prj.methodId);
    PjPtr conversion(CreateConversion(ctx, def, lengthFactor, error));
    if (!conversion)
        return false;
    double a = 0, rf = 0;
    LocalEllipsoid(def, a, rf);

    // A base geographic system in radians, longitude first: PROJ then exports the
    // projection alone.
    PjPtr cs(proj_create_ellipsoidal_2D_cs(ctx, PJ_ELLPS2D_LONGITUDE_LATITUDE, "radian", 1.0));
    const double pm = def.system.primeMeridian;
    PjPtr geog(proj_create_geographic_crs(ctx, "local", "local datum", "local ellipsoid", a, rf,
                                          pm == 0 ? "Greenwich" : "local meridian", pm, "degree",
                                          DegreeInRadians, cs.get()));
    if (!geog) {
        error = QStringLiteral("The local ellipsoid of \"%1\" is not valid (%2).")
                    .arg(def.system.name, ContextError(ctx));
        return false;
    }

    PjPtr cartesian(proj_create_cartesian_2D_cs(ctx, PJ_CART2D_EASTING_NORTHING, "metre", 1.0));
    PjPtr projected(
        proj_create_projected_crs(ctx, "system", geog.get(), conversion.get(), cartesian.get()));
    PjPtr operation(projected ? proj_crs_get_coordoperation(ctx, projected.get()) : nullptr);
    const char* exported =
        operation ? proj_as_proj_string(ctx, operation.get(), PJ_PROJ_5, nullptr) : nullptr;
    if (!exported) {
        error = QStringLiteral("The projection method \"%1\" (EPSG method %2) of \"%3\" is not "
                               "implemented.")
                    .arg(methodName)
                    .arg(prj.epsgMethodCode)
                    .arg(prj.name);
        return false;
    }
    steps = ConversionSteps(QString::fromUtf8(exported));
    if (steps.isEmpty()) {
        error = QStringLiteral("The projection \"%1\" gave no operation.").arg(prj.name);
        return false;
    }
    return true;
}

bool Build(pj_ctx* ctx, const SystemDefinition& def, const PipelineOptions& options,
           PipelineSpec& spec, QString& error) {
    spec = PipelineSpec{};
    const SystemRecord& sys = def.system;
    const double unitFactor = def.unit.metersPerUnit > 0 ? def.unit.metersPerUnit : 1.0;
    const double lengthFactor =
        options.projectionUnitFactor > 0 ? options.projectionUnitFactor : unitFactor;
    spec.unitFactor = unitFactor;

    QStringList steps;
    steps << QStringLiteral("+proj=axisswap +order=2,1")
          << QStringLiteral("+proj=unitconvert +xy_in=deg +xy_out=rad");

    // Heights: geoid model and chart datum, on the WGS 84 position.
    bool heightSteps = false;
    if (sys.geoidOn) {
        const int geoid = GeoidMethodIndex(sys.geoidMethod);
        if (geoid < 0) {
            error = QStringLiteral("The geoid method \"%1\" is not known.").arg(sys.geoidMethod);
            return false;
        }
        QStringList grids;
        switch (geoid) {
        case GeoidKey::None:
            break;
        case GeoidKey::ManualSeparation:
            steps << QStringLiteral("+proj=affine +zoff=%1").arg(Num(-sys.geoidSeparation));
            heightSteps = true;
            break;
        case GeoidKey::ChartDatum: {
            const QString geoidGrid =
                ModelFiles::FindVDatumGeoid(sys.geoidFile, options.commonFolder);
            if (sys.geoidFile.trimmed().isEmpty() || geoidGrid.isEmpty()) {
                error = QStringLiteral("The geoid model \"%1\" of the vertical datum "
                                       "transformation is not in %2.")
                            .arg(sys.geoidFile, QDir::cleanPath(options.commonFolder +
                                                                QStringLiteral("/vdatum/core")));
                return false;
            }
            grids << geoidGrid;
            const QString datum = sys.chartDatum.trimmed();
            const int datumIndex = ChartDatumIndex(datum);
            if (!datum.isEmpty() && datumIndex != ChartDatumNone) {
                if (datumIndex < 0) {
                    error = QStringLiteral("The chart datum \"%1\" is not known.").arg(datum);
                    return false;
                }
                const QString tss = ModelFiles::FindChartDatumGrid(
                    sys.geoidFile, QString::fromWCharArray(ChartDatums[ChartDatumLmsl]),
                    options.commonFolder);
                if (tss.isEmpty()) {
                    error = QStringLiteral("The LMSL grid (tss.gtx) of the geoid model \"%1\" "
                                           "is missing.")
                                .arg(sys.geoidFile);
                    return false;
                }
                grids << tss;
                if (datumIndex != ChartDatumLmsl) {
                    const QString cd =
                        ModelFiles::FindChartDatumGrid(sys.geoidFile, datum, options.commonFolder);
                    if (cd.isEmpty()) {
                        error = QStringLiteral("The chart datum grid %1.gtx of the geoid model "
                                               "\"%2\" is missing.")
                                    .arg(datum.toLower(), sys.geoidFile);
                        return false;
                    }
                    grids << cd;
                }
            }
            break;
        }
        case 8: // inclined plane: the vertical adjustment of the post correction
        case 9: // legacy models without a grid format PROJ reads
        case 10:
        case 11:
        case 12:
        case 13:
        case 17:
        case 18:
        case 30:
        case 31:
        case GeoidKey::Ostn:
        case GeoidKey::Ntv2Shift:
            error =
                QStringLiteral("The geoid method \"%1\" is not implemented.").arg(sys.geoidMethod);
            return false;
        default: {
            QString file = sys.geoidFile.trimmed();
            if (file.isEmpty() && geoid == GeoidKey::Egm96)
                file = QStringLiteral("egm96_15.gtx");
            if (file.isEmpty() && geoid == 4)
                file = QStringLiteral("egm08_25.gtx");
            if (file.isEmpty()) {
                error = QStringLiteral("The geoid method \"%1\" needs a model file.")
                            .arg(sys.geoidMethod);
                return false;
            }
            const QString path =
                ModelFiles::Find(file, geoid, options.commonFolder, options.projFolders);
            if (path.isEmpty()) {
                error = QStringLiteral("The geoid model file \"%1\" cannot be found.").arg(file);
                return false;
            }
            if (!ModelFiles::IsVerticalGrid(path)) {
                error = QStringLiteral("The geoid model file \"%1\" is in a format the engine "
                                       "cannot read; use a .gtx or GeoTIFF grid.")
                            .arg(file);
                return false;
            }
            grids << path;
            break;
        }
        }
        for (const QString& grid : grids) {
            if (grid.contains(QLatin1Char('"'))) {
                error = QStringLiteral("The model file path \"%1\" holds a quote.").arg(grid);
                return false;
            }
            steps << QStringLiteral("+inv +proj=vgridshift %1 +multiplier=1").arg(GridArg(grid));
            heightSteps = true;
        }
    }

    // Datum transformation on geocentric coordinates. With a geoid the height is kept
    // aside, as PROJ does for compound systems.
    const QString helmert = HelmertStep(def.dtf);
    if (def.dtf.methodIndex > DTF_15_COORDINATE_FRAME || def.dtf.methodIndex < DTF_NONE) {
        error = QStringLiteral("The datum transformation method %1 of \"%2\" is not implemented.")
                    .arg(def.dtf.methodIndex)
                    .arg(def.dtf.name);
        return false;
    }
    if (def.dtf.methodIndex >= DTF_15_POSITION_VECTOR) {
        // Without its epoch a 15-value transformation moves every point by the rates times
        // some two thousand years; a default observation epoch that is no year does the same.
        const double epoch = def.dtf.values[14];
        if (!(epoch >= ObservationEpochMin && epoch <= ObservationEpochMax)) {
            error = QStringLiteral("The time-dependent datum transformation \"%1\" has no "
                                   "reference epoch (Datum Epoch %2 is not a year from %3 to %4).")
                        .arg(def.dtf.name, QString::number(epoch, 'g', 12))
                        .arg(ObservationEpochMin, 0, 'f', 0)
                        .arg(ObservationEpochMax, 0, 'f', 0);
            return false;
        }
    }
    if (def.dtf.methodIndex != DTF_NONE && !IsObservationEpochValid(def.dtf.obsEpoch)) {
        error = QStringLiteral("The default observation epoch %1 of the datum transformation "
                               "\"%2\" is not a year from %3 to %4.")
                    .arg(QString::number(def.dtf.obsEpoch, 'g', 12), def.dtf.name)
                    .arg(ObservationEpochMin, 0, 'f', 0)
                    .arg(ObservationEpochMax, 0, 'f', 0);
        return false;
    }
    if (!helmert.isEmpty()) {
        if (heightSteps)
            steps << QStringLiteral("+proj=push +v_3");
        steps << QStringLiteral("+proj=cart ") + EllipsoidParams(def.satEllipsoid) << helmert
              << QStringLiteral("+inv +proj=cart ") +
                     EllipsoidParams(def.localEllipsoid.values[0] > 0 ? def.localEllipsoid
                                                                      : def.satEllipsoid);
        if (heightSteps)
            steps << QStringLiteral("+proj=pop +v_3");
        if (def.dtf.methodIndex >= DTF_15_POSITION_VECTOR) {
            spec.timeDependent = true;
            spec.defaultEpoch = def.dtf.obsEpoch != 0 ? def.dtf.obsEpoch : HUGE_VAL;
        }
    }

    // Post correction: shift model on the local latitude and longitude.
    const PostCorrection& post = sys.post;
    const int postMethod = post.on ? GeoidMethodIndex(post.modelName) : GeoidKey::None;
    if (postMethod < 0) {
        error =
            QStringLiteral("The post correction method \"%1\" is not known.").arg(post.modelName);
        return false;
    }
    if (postMethod != GeoidKey::None) {
        if (postMethod != GeoidKey::Ntv2Shift && postMethod != GeoidKey::Ostn) {
            error = QStringLiteral("The post correction method \"%1\" is not implemented.")
                        .arg(post.modelName);
            return false;
        }
        const QString file = post.modelFile.trimmed();
        const QString path =
            file.isEmpty()
                ? QString()
                : ModelFiles::Find(file, postMethod, options.commonFolder, options.projFolders);
        if (path.isEmpty()) {
            error = QStringLiteral("The shift model file \"%1\" cannot be found.").arg(file);
            return false;
        }
        if (!ModelFiles::IsHorizontalGrid(path)) {
            error = QStringLiteral("The shift model file \"%1\" is in a format the engine cannot "
                                   "read; use an NTv2 .gsb or GeoTIFF grid.")
                        .arg(file);
            return false;
        }
        if (path.contains(QLatin1Char('"'))) {
            error = QStringLiteral("The model file path \"%1\" holds a quote.").arg(path);
            return false;
        }
        steps << QStringLiteral("+proj=hgridshift ") + GridArg(path);
    }

    QStringList projection;
    if (!ProjectionSteps(ctx, def, lengthFactor, projection, error))
        return false;
    steps << projection;

    if (unitFactor != 1.0) {
        steps << QStringLiteral("+proj=unitconvert +xy_in=m +xy_out=%1 +z_in=m +z_out=%1")
                     .arg(Num(unitFactor));
    }

    // Grid corrections in the system unit.
    if (post.horOn) {
        const double k = post.horScale != 0 ? post.horScale : 1.0;
        const double t = post.horRotation * ArcSecondInRadians;
        const double c = k * std::cos(t), s = k * std::sin(t);
        const double e0 = post.horOriginE, n0 = post.horOriginN;
        steps << QStringLiteral("+proj=affine +xoff=%1 +yoff=%2 +s11=%3 +s12=%4 +s21=%5 +s22=%6")
                     .arg(Num(e0 - c * e0 + s * n0), Num(n0 - s * e0 - c * n0), Num(c), Num(-s),
                          Num(s), Num(c));
    }
    if (post.vertOn) {
        const double se = post.vertSlopeE * 1e-6, sn = post.vertSlopeN * 1e-6;
        steps << QStringLiteral("+proj=affine +zoff=%1 +s31=%2 +s32=%3")
                     .arg(Num(-(se * post.vertOriginE + sn * post.vertOriginN)), Num(se), Num(sn));
    }
    if (post.on && (post.e != 0 || post.n != 0 || post.z != 0)) {
        steps << QStringLiteral("+proj=affine +xoff=%1 +yoff=%2 +zoff=%3")
                     .arg(Num(post.e), Num(post.n), Num(post.z));
    }

    spec.definition = QStringLiteral("+proj=pipeline");
    for (const QString& step : steps)
        spec.definition += QStringLiteral(" +step ") + step;
    return true;
}

} // namespace PipelineBuilder
