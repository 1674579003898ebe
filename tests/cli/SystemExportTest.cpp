// Systems exported as WKT2, PROJJSON and a PROJ pipeline: PROJ reads each and, from WGS 84 3D
// (EPSG:4979), computes the engine's numbers.
#include "SystemExport.h"
#include "Catalog.h"

#include "api/OrvGeoFactories.h"
#include "engine/GeoCoordSys.h"
#include "store/GeoStore.h"
#include "support/TempDataFolder.h"

#include <gtest/gtest.h>
#include <proj.h>

#include <cmath>
#include <memory>

namespace {

// The PROJ pipeline: 0.1 mm (of the system unit).
constexpr double Tolerance = 1e-4;
// A CRS read by PROJ, in metres: PROJ applies no transformation whose values are all zero,
// where the engine goes through geocentric coordinates (up to 0.11 mm between WGS 84 and
// GRS 1980).
constexpr double CrsTolerance = 2e-4;
constexpr double SampleHeight = 100.0;
constexpr double SampleEpoch = 2020.0;
// Every n-th pre-defined system is checked: a sample of every region, method and unit.
constexpr int SampleStep = 37;

struct PjDeleter {
    void operator()(PJ* pj) const { proj_destroy(pj); }
};
using PjPtr = std::unique_ptr<PJ, PjDeleter>;

struct ContextDeleter {
    void operator()(PJ_CONTEXT* ctx) const { proj_context_destroy(ctx); }
};
using ContextPtr = std::unique_ptr<PJ_CONTEXT, ContextDeleter>;

EllipsoidRecord Ellipsoid(const QString& name, double a, double rf) {
    EllipsoidRecord e;
    e.name = name;
    const double f = 1.0 / rf;
    e.values = {a, a * (1 - f), rf, f, f * (2 - f), f * (2 - f) / ((1 - f) * (1 - f))};
    return e;
}

// ED50 / UTM zone 31N through the published ED50 -> WGS 84 seven values, heights from EGM96.
SystemDefinition GeoidSystem() {
    SystemDefinition def;
    def.system.name = QStringLiteral("ED50 / UTM 31N + EGM96");
    def.system.geoidOn = true;
    def.system.geoidMethod = QStringLiteral("EGM96");
    def.satEllipsoid = Ellipsoid(QStringLiteral("WGS 84"), 6378137.0, 298.257223563);
    def.localEllipsoid = Ellipsoid(QStringLiteral("International 1924"), 6378388.0, 297.0);
    def.dtf.name = QStringLiteral("ED50 to WGS 84 (test)");
    def.dtf.methodIndex = DTF_7_POSITION_VECTOR;
    def.dtf.values = {-89.5, -93.8, -123.1, 0.0, 0.0, -0.156, 1.2};
    def.dtf.option = DTF_OPTION_PUBLISHED_TO_WGS84;
    def.projection.name = QStringLiteral("UTM Zone-31N");
    def.projection.methodId = 1;
    def.projection.epsgMethodCode = 9807;
    def.projection.params = {{QStringLiteral("UTM zone"), 31, QString(), PRM_HIDDEN},
                             {QStringLiteral("Hemisphere"), 0, QString(), PRM_HIDDEN}};
    def.unit.name = QStringLiteral("metre");
    def.unit.metersPerUnit = 1.0;
    return def;
}

// PROJ's result from EPSG:4979 to an exported CRS; false when PROJ cannot do it.
bool ProjConvert(PJ_CONTEXT* ctx, const QString& crsText, GeoPoint& p, bool timeDependent) {
    PjPtr target(proj_create(ctx, crsText.toUtf8().constData()));
    if (!target)
        return false;
    PjPtr source(proj_create(ctx, "EPSG:4979"));
    PjPtr op(proj_create_crs_to_crs_from_pj(ctx, source.get(), target.get(), nullptr, nullptr));
    if (!op)
        return false;
    PJ_COORD c = proj_coord(p.x, p.y, p.z, timeDependent ? p.time : HUGE_VAL);
    c = proj_trans(op.get(), PJ_FWD, c);
    p = {c.v[0], c.v[1], c.v[2], p.time};
    return std::isfinite(c.v[0]) && std::isfinite(c.v[1]) && std::isfinite(c.v[2]);
}

bool PipelineConvert(PJ_CONTEXT* ctx, const QString& pipeline, GeoPoint& p, bool timeDependent) {
    PjPtr op(proj_create(ctx, pipeline.toUtf8().constData()));
    if (!op)
        return false;
    PJ_COORD c = proj_coord(p.x, p.y, p.z, timeDependent ? p.time : HUGE_VAL);
    c = proj_trans(op.get(), PJ_FWD, c);
    p = {c.v[0], c.v[1], c.v[2], p.time};
    return std::isfinite(c.v[0]);
}

void ExpectSame(const GeoPoint& engine, const GeoPoint& proj, const QString& what,
                double tolerance = Tolerance) {
    EXPECT_NEAR(proj.x, engine.x, tolerance) << what.toStdString();
    EXPECT_NEAR(proj.y, engine.y, tolerance) << what.toStdString();
    EXPECT_NEAR(proj.z, engine.z, tolerance) << what.toStdString();
}

} // namespace

TEST(SystemExport, PreDefinedSystemsConvertInProjAsInTheEngine) {
    TempDataFolder folder;
    QString error;
    const std::unique_ptr<GeoStore> store = GeoStore::Open(folder.dllType(), &error);
    ASSERT_TRUE(store) << error.toStdString();
    QList<Catalog::Entry> systems;
    ASSERT_TRUE(Catalog::Load(*store, Catalog::Kind::System, systems, error));
    ContextPtr ctx(proj_context_create());
    proj_log_level(ctx.get(), PJ_LOG_NONE);
    int checked = 0;
    for (qsizetype i = 0; i < systems.size(); i += SampleStep) {
        const Catalog::Entry& entry = systems[i];
        const auto record = store->FindSystem(entry.group, entry.name, GEODB_ALL, &error);
        ASSERT_TRUE(record);
        std::unique_ptr<OrvGeoCoordSysBase> cs(
            OrvGeoCoordSysList::GetCoordSysList().Create(folder.dllType()));
        const QString e;
        if (!record->bboxSouth || !cs ||
            !cs->DefineSystem(entry.group, entry.name, e, e, e, e, e, e, QStringLiteral("none")))
            continue; // no area, or a method the engine does not compute
        const bool timeDependent = dynamic_cast<GeoCoordSys&>(*cs).IsTimeDependent();
        GeoPoint engine{(*record->bboxSouth + *record->bboxNorth) / 2,
                        (*record->bboxWest + *record->bboxEast) / 2, SampleHeight,
                        timeDependent ? SampleEpoch : 0};
        if (*record->bboxWest > *record->bboxEast) // across the antimeridian
            engine.y = std::remainder(engine.y + 180.0, 360.0);
        const GeoPoint start = engine;
        if (!cs->Forward(engine))
            continue;
        for (const auto format : {SystemExport::Format::Wkt2, SystemExport::Format::ProjJson,
                                  SystemExport::Format::Proj}) {
            QString text;
            const bool exported = SystemExport::ExportStored(*store, folder.path(), entry.group,
                                                             entry.name, format, text, error);
            if (!exported && format == SystemExport::Format::Wkt2 && timeDependent) {
                // PROJ 9.1 reads the yearly rates of a WKT2 bound system back wrongly.
                EXPECT_TRUE(error.contains(QStringLiteral("--format projjson")));
                continue;
            }
            ASSERT_TRUE(exported) << entry.name.toStdString() << ": " << error.toStdString();
            GeoPoint proj = start;
            const bool ok = format == SystemExport::Format::Proj
                                ? PipelineConvert(ctx.get(), text, proj, timeDependent)
                                : ProjConvert(ctx.get(), text, proj, timeDependent);
            ASSERT_TRUE(ok) << entry.name.toStdString() << "\n" << text.toStdString();
            const auto def = store->LoadDefinition(entry.group, entry.name, &error);
            ASSERT_TRUE(def);
            ExpectSame(engine, proj, entry.name + QStringLiteral(" format %1").arg(int(format)),
                       format == SystemExport::Format::Proj
                           ? Tolerance
                           : CrsTolerance / def->unit.metersPerUnit);
        }
        ++checked;
    }
    EXPECT_GT(checked, 80);
}

TEST(SystemExport, GeoidHeightsMakeACompoundSystem) {
    const SystemDefinition def = GeoidSystem();
    GeoCoordSys engine;
    ASSERT_TRUE(engine.Define(def)) << engine.LastError().toStdString();
    GeoPoint expected{52.0, 4.0, SampleHeight, 0};
    ASSERT_TRUE(engine.Forward(expected));
    ContextPtr ctx(proj_context_create());
    for (const auto format : {SystemExport::Format::Wkt2, SystemExport::Format::ProjJson}) {
        QString text, error;
        ASSERT_TRUE(SystemExport::Export(def, {}, format, text, error)) << error.toStdString();
        EXPECT_TRUE(text.contains(format == SystemExport::Format::Wkt2
                                      ? QStringLiteral("COMPOUNDCRS")
                                      : QStringLiteral("\"CompoundCRS\"")));
        EXPECT_TRUE(text.contains(QStringLiteral("egm96_15.gtx")));
        GeoPoint proj{52.0, 4.0, SampleHeight, 0};
        ASSERT_TRUE(ProjConvert(ctx.get(), text, proj, false)) << text.toStdString();
        ExpectSame(expected, proj, def.system.name);
    }
}

TEST(SystemExport, FeetAndTheOtherDirectionOfTheTransformation) {
    // A system in US survey feet whose transformation is stored WGS 84 -> local: Z in feet,
    // the translations turned round exactly.
    SystemDefinition def = GeoidSystem();
    def.system.geoidOn = false;
    def.system.geoidMethod.clear();
    def.dtf.values = {89.5, 93.8, 123.1, 0, 0, 0, 0};
    def.dtf.option = 0;
    def.unit.name = QStringLiteral("US survey foot");
    def.unit.metersPerUnit = 0.304800609601219;
    GeoCoordSys engine;
    ASSERT_TRUE(engine.Define(def)) << engine.LastError().toStdString();
    GeoPoint expected{52.0, 4.0, SampleHeight, 0};
    ASSERT_TRUE(engine.Forward(expected));
    QString text, error;
    ASSERT_TRUE(SystemExport::Export(def, {}, SystemExport::Format::Wkt2, text, error))
        << error.toStdString();
    ContextPtr ctx(proj_context_create());
    GeoPoint proj{52.0, 4.0, SampleHeight, 0};
    ASSERT_TRUE(ProjConvert(ctx.get(), text, proj, false)) << text.toStdString();
    ExpectSame(expected, proj, def.system.name);
}

TEST(SystemExport, TimeDependentTransformationsKeepTheirRates) {
    SystemDefinition def = GeoidSystem();
    def.system.geoidOn = false;
    def.dtf.methodIndex = DTF_15_COORDINATE_FRAME;
    def.dtf.values = {0.05,  -0.03,  0.02,   0.001,  -0.002,  0.003, 0.01,  0.001,
                      0.002, -0.001, 0.0001, 0.0002, -0.0003, 0.001, 2010.0};
    GeoCoordSys engine;
    ASSERT_TRUE(engine.Define(def)) << engine.LastError().toStdString();
    ContextPtr ctx(proj_context_create());
    for (const auto format : {SystemExport::Format::ProjJson, SystemExport::Format::Proj}) {
        QString text, error;
        ASSERT_TRUE(SystemExport::Export(def, {}, format, text, error)) << error.toStdString();
        for (const double epoch : {2010.0, 2030.0}) {
            GeoPoint expected{52.0, 4.0, SampleHeight, epoch};
            ASSERT_TRUE(engine.Forward(expected));
            GeoPoint proj{52.0, 4.0, SampleHeight, epoch};
            ASSERT_TRUE(format == SystemExport::Format::Proj
                            ? PipelineConvert(ctx.get(), text, proj, true)
                            : ProjConvert(ctx.get(), text, proj, true))
                << text.toStdString();
            ExpectSame(expected, proj, QStringLiteral("epoch %1").arg(epoch));
        }
    }
    // WKT2 as PROJ 9.1 writes it loses the rates on reading: refused rather than wrong.
    QString text, error;
    if (!SystemExport::Export(def, {}, SystemExport::Format::Wkt2, text, error)) {
        EXPECT_TRUE(error.contains(QStringLiteral("yearly rates"))) << error.toStdString();
    }
}

TEST(SystemExport, WhatACrsCannotSayIsRefusedWithTheWayOut) {
    SystemDefinition def = GeoidSystem();
    def.system.post.on = true;
    def.system.post.e = 1.5;
    QString text, error;
    EXPECT_FALSE(SystemExport::Export(def, {}, SystemExport::Format::Wkt2, text, error));
    EXPECT_TRUE(error.contains(QStringLiteral("a translation")));
    EXPECT_TRUE(error.contains(QStringLiteral("--format proj")));
    // The pipeline has it all.
    ASSERT_TRUE(SystemExport::Export(def, {}, SystemExport::Format::Proj, text, error));
    EXPECT_TRUE(text.contains(QStringLiteral("+xoff=1.5")));

    SystemExport::Format format;
    EXPECT_TRUE(SystemExport::ParseFormat(QStringLiteral("PROJJSON"), format));
    EXPECT_EQ(format, SystemExport::Format::ProjJson);
    EXPECT_FALSE(SystemExport::ParseFormat(QStringLiteral("gml"), format));
}

TEST(SystemExport, UnknownSystemsSayWhich) {
    TempDataFolder folder;
    QString error, text;
    const std::unique_ptr<GeoStore> store = GeoStore::Open(folder.dllType(), &error);
    ASSERT_TRUE(store);
    EXPECT_FALSE(SystemExport::ExportStored(*store, folder.path(), QStringLiteral("Europe"),
                                            QStringLiteral("No such system"),
                                            SystemExport::Format::Wkt2, text, error));
    EXPECT_TRUE(error.contains(QStringLiteral("No such system")));
}
