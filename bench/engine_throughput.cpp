// Throughput of a created coordinate system (7-value Helmert + Transverse Mercator + EGM96
// geoid grid) against a bare PROJ pipeline of the same steps, 1,000,000 points each, and
// terrameter --batch against cs2cs on the same 1,000,000-line file.
//
//   bench_engine_throughput [--no-programs] [google benchmark options]
//
// The ratio line is the figure to watch: engine throughput / PROJ throughput (target >= 0.95).
#include "engine/GeoCoordSys.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <proj.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

constexpr std::size_t PointCount = 1000000;

EllipsoidRecord Ellipsoid(double a, double rf) {
    EllipsoidRecord e;
    const double f = 1.0 / rf;
    e.values = {a, a * (1 - f), rf, f, f * (2 - f), f * (2 - f) / ((1 - f) * (1 - f))};
    return e;
}

// ED50 / UTM zone 31N through a seven-value position-vector transformation (published
// ED50 -> WGS 84), heights from EGM96.
SystemDefinition BenchSystem() {
    SystemDefinition def;
    def.system.name = QStringLiteral("bench");
    def.system.geoidOn = true;
    def.system.geoidMethod = QStringLiteral("EGM96");
    def.satEllipsoid = Ellipsoid(6378137.0, 298.257223563);
    def.localEllipsoid = Ellipsoid(6378388.0, 297.0);
    def.dtf.methodIndex = DTF_7_POSITION_VECTOR;
    def.dtf.values = {-89.5, -93.8, -123.1, 0.0, 0.0, -0.156, 1.2};
    def.dtf.option = DTF_OPTION_PUBLISHED_TO_WGS84;
    def.projection.methodId = 1;
    def.projection.epsgMethodCode = 9807;
    def.projection.params = {{QStringLiteral("UTM zone"), 31, QString(), PRM_HIDDEN},
                             {QStringLiteral("Hemisphere"), 0, QString(), PRM_HIDDEN}};
    def.unit.metersPerUnit = 1.0;
    return def;
}

const char* const BarePipeline =
    "+proj=pipeline +step +proj=axisswap +order=2,1 +step +proj=unitconvert +xy_in=deg "
    "+xy_out=rad +step +inv +proj=vgridshift +grids=egm96_15.gtx +multiplier=1 +step "
    "+proj=push +v_3 +step +proj=cart +ellps=WGS84 +step +inv +proj=helmert +x=-89.5 +y=-93.8 "
    "+z=-123.1 +rx=0 +ry=0 +rz=-0.156 +s=1.2 +convention=position_vector +step +inv +proj=cart "
    "+ellps=intl +step +proj=pop +v_3 +step +proj=utm +zone=31 +ellps=intl";

std::vector<GeoPoint> Points() {
    std::vector<GeoPoint> points(PointCount);
    for (std::size_t i = 0; i < PointCount; ++i) {
        points[i] = {40.0 + double(i % 2000) * 0.01, 0.0 + double(i % 599) * 0.01, double(i % 100),
                     0};
    }
    return points;
}

GeoCoordSys& Engine() {
    static GeoCoordSys cs;
    if (!cs.IsDefined() && !cs.Define(BenchSystem())) {
        std::fprintf(stderr, "cannot define: %s\n", cs.LastError().toLocal8Bit().constData());
        std::exit(1);
    }
    return cs;
}

PJ* Bare() {
    static PJ* pj = proj_create(PJ_DEFAULT_CTX, BarePipeline);
    if (!pj) {
        std::fprintf(stderr, "cannot create the bare pipeline\n");
        std::exit(1);
    }
    return pj;
}

void EngineRun(std::vector<GeoPoint>& points, std::vector<char>& ok) {
    Engine().ForwardArray(points.data(), reinterpret_cast<bool*>(ok.data()), points.size());
}

void BareRun(std::vector<GeoPoint>& points) {
    const std::size_t n = points.size();
    proj_trans_generic(Bare(), PJ_FWD, &points[0].x, sizeof(GeoPoint), n, &points[0].y,
                       sizeof(GeoPoint), n, &points[0].z, sizeof(GeoPoint), n, nullptr, 0, 0);
}

void BM_EngineForwardArray(benchmark::State& state) {
    const std::vector<GeoPoint> input = Points();
    std::vector<GeoPoint> points = input;
    std::vector<char> ok(points.size());
    for (auto _ : state) {
        state.PauseTiming();
        points = input;
        state.ResumeTiming();
        EngineRun(points, ok);
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * int64_t(PointCount));
}
BENCHMARK(BM_EngineForwardArray)->Unit(benchmark::kMillisecond);

void BM_BareProjPipeline(benchmark::State& state) {
    const std::vector<GeoPoint> input = Points();
    std::vector<GeoPoint> points = input;
    for (auto _ : state) {
        state.PauseTiming();
        points = input;
        state.ResumeTiming();
        BareRun(points);
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * int64_t(PointCount));
}
BENCHMARK(BM_BareProjPipeline)->Unit(benchmark::kMillisecond);

template <typename F> double BestSeconds(int runs, F&& f) {
    double best = 1e300;
    for (int i = 0; i < runs; ++i) {
        const auto start = std::chrono::steady_clock::now();
        f();
        best = std::min(
            best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    return best;
}

void CompareInOneRun() {
    const std::vector<GeoPoint> input = Points();
    std::vector<GeoPoint> a = input, b = input;
    std::vector<char> ok(PointCount);
    // Same results first: the comparison is only fair for the same work.
    EngineRun(a, ok);
    BareRun(b);
    double worst = 0;
    for (std::size_t i = 0; i < PointCount; i += 997)
        worst = std::max({worst, std::abs(a[i].x - b[i].x), std::abs(a[i].y - b[i].y),
                          std::abs(a[i].z - b[i].z)});
    const double engine = BestSeconds(5, [&] {
        a = input;
        EngineRun(a, ok);
    });
    const double bare = BestSeconds(5, [&] {
        b = input;
        BareRun(b);
    });
    std::printf("engine:   %.0f points/s\nbare PROJ: %.0f points/s\nratio (engine/PROJ "
                "throughput): %.3f (target >= 0.95); largest difference %.2e\n",
                PointCount / engine, PointCount / bare, bare / engine, worst);
}

// terrameter --batch against cs2cs on the same 1,000,000 points.
void ComparePrograms(const char* argv0) {
    const QString terrameter =
        qEnvironmentVariable("TERRAMETER", QFileInfo(QString::fromLocal8Bit(argv0)).absolutePath() +
                                               QStringLiteral("/../apps/terrameter/terrameter"));
    if (!QFileInfo::exists(terrameter) || std::system("command -v cs2cs > /dev/null") != 0) {
        std::printf("terrameter (%s) or cs2cs not found: program timing skipped\n",
                    terrameter.toLocal8Bit().constData());
        return;
    }
    QTemporaryDir dir;
    const QString csv = dir.filePath(QStringLiteral("points.csv"));
    const QString txt = dir.filePath(QStringLiteral("points.txt"));
    {
        std::FILE* c = std::fopen(csv.toLocal8Bit().constData(), "wb");
        std::FILE* t = std::fopen(txt.toLocal8Bit().constData(), "wb");
        for (const GeoPoint& p : Points()) {
            std::fprintf(c, "%.9f,%.9f,%.3f\n", p.x, p.y, p.z);
            std::fprintf(t, "%.9f %.9f %.3f\n", p.x, p.y, p.z);
        }
        std::fclose(c);
        std::fclose(t);
    }
    // The same system: ED50 / UTM zone 31N of the pre-defined data, PROJ's choice of the
    // ED50 transformation for cs2cs.
    const QByteArray ours =
        QStringLiteral("\"%1\" --batch -G:Europe \"-S:ED50 / UTM zone 31N\" \"%2\" > /dev/null")
            .arg(terrameter, csv)
            .toLocal8Bit();
    const QByteArray theirs =
        QStringLiteral("cs2cs -f %.4f EPSG:4326 EPSG:23031 < \"%1\" > /dev/null")
            .arg(txt)
            .toLocal8Bit();
    const double t1 = BestSeconds(3, [&] { (void)std::system(ours.constData()); });
    const double t2 = BestSeconds(3, [&] { (void)std::system(theirs.constData()); });
    std::printf("terrameter --batch: %.2f s, cs2cs: %.2f s for %zu lines (terrameter %.1fx "
                "as fast; target > 1)\n",
                t1, t2, PointCount, t2 / t1);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    bool programs = true;
    std::vector<char*> args;
    for (int i = 0; i < argc; ++i) {
        if (std::strcmp(argv[i], "--no-programs") == 0)
            programs = false;
        else
            args.push_back(argv[i]);
    }
    int n = int(args.size());
    benchmark::Initialize(&n, args.data());
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    CompareInOneRun();
    if (programs)
        ComparePrograms(argv[0]);
    return 0;
}
