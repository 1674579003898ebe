// Throughput of a created coordinate system (7-value Helmert + Transverse Mercator + EGM96
// geoid grid) against a bare PROJ pipeline of the same steps, 1,000,000 points each, and
// terrameter --batch against cs2cs on the same 1,000,000-line file, cs2cs pinned to the
// stored system's own computation (its PROJJSON export), both in the same run. The whole
// batch (read, parse, convert, format, write) on one core is set against the bare pipeline of
// the same system over the same points, in CPU time and, under callgrind, in instructions.
//
//   bench_engine_throughput [--no-programs] [--no-instructions] [google benchmark options]
//
// The figures to watch: engine throughput / PROJ throughput (target >= 0.95), the batch per
// core against the bare pipeline (target >= 0.95), terrameter --batch with both cores against
// cs2cs (target >= 4, identical numbers).
#include "BatchConverter.h"
#include "SystemExport.h"

#include "api/OrvGeoFactories.h"
#include "engine/GeoCoordSys.h"
#include "store/GeoStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <proj.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <thread>
#include <vector>

#include <sys/resource.h>

#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#define ORV_HAVE_CALLGRIND 1
#else
#define ORV_HAVE_CALLGRIND 0
#define CALLGRIND_START_INSTRUMENTATION
#define CALLGRIND_STOP_INSTRUMENTATION
#endif

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

// One point at a time on the thread that created the object: a system defined from the store
// (which follows edits saved to the user database) against the same system defined directly.
void ForwardOnePointAtATime(benchmark::State& state, bool stored) {
    QTemporaryDir dir;
    std::unique_ptr<OrvGeoCoordSysBase> fromStore(
        OrvGeoCoordSysList::GetCoordSysList().Create(QStringLiteral("sqlite:") + dir.path()));
    const QString e;
    if (!fromStore || !fromStore->DefineSystem(QStringLiteral("Europe"),
                                               QStringLiteral("ED50 / UTM zone 31N"), e, e, e, e,
                                               e, e, QStringLiteral("none"))) {
        state.SkipWithError("the stored system cannot be defined");
        return;
    }
    GeoCoordSys direct;
    direct.Define(static_cast<GeoCoordSys&>(*fromStore).Definition());
    OrvGeoCoordSysBase& cs = stored ? *fromStore : direct;
    for (auto _ : state) {
        GeoPoint p{52.5, 4.25, 12.5, 0};
        benchmark::DoNotOptimize(cs.Forward(p));
        benchmark::DoNotOptimize(p);
    }
}

void BM_StoredSystemForward(benchmark::State& state) {
    ForwardOnePointAtATime(state, true);
}
BENCHMARK(BM_StoredSystemForward);

void BM_DefinedSystemForward(benchmark::State& state) {
    ForwardOnePointAtATime(state, false);
}
BENCHMARK(BM_DefinedSystemForward);

// The best CPU time of a few runs of single-threaded work: other load on the machine does
// not count.
template <typename F> double BestSeconds(int runs, F&& f) {
    double best = 1e300;
    for (int i = 0; i < runs; ++i) {
        const std::clock_t start = std::clock();
        f();
        best = std::min(best, double(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return best;
}

// The best CPU time of the calling thread over a few runs.
template <typename F> double ThreadBestSeconds(int runs, F&& f) {
    double best = 1e300;
    for (int i = 0; i < runs; ++i) {
        timespec start{}, end{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &start);
        f();
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &end);
        best = std::min(best, double(end.tv_sec - start.tv_sec) +
                                  double(end.tv_nsec - start.tv_nsec) * 1e-9);
    }
    return best;
}

// The engine against the bare pipeline; returns the bare pipeline's best time.
double CompareInOneRun() {
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

    // Both cores: one engine object (and PROJ context) per thread, as terrameter --batch
    // converts. Each thread's CPU time against the bare pipeline's on one core.
    constexpr int Threads = 2;
    std::vector<double> cpu(Threads, 1e300);
    const auto wallStart = std::chrono::steady_clock::now();
    std::vector<std::thread> threads;
    for (int t = 0; t < Threads; ++t) {
        threads.emplace_back([&, t] {
            GeoCoordSys cs;
            if (!cs.Define(BenchSystem()))
                return;
            std::vector<GeoPoint> points;
            std::vector<char> flags(PointCount);
            cpu[t] = ThreadBestSeconds(3, [&] {
                points = input;
                cs.ForwardArray(points.data(), reinterpret_cast<bool*>(flags.data()),
                                points.size());
            });
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    const double wall =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - wallStart).count();
    const double slowest = *std::max_element(cpu.begin(), cpu.end());
    std::printf("engine on %d threads: %.0f points/s per thread = %.3f of bare PROJ on one core "
                "(target >= 0.95); %.0f points/s together (wall time)\n",
                Threads, PointCount / slowest, bare / slowest, 3.0 * Threads * PointCount / wall);
    return bare;
}

struct ProgramRun {
    double seconds = -1;   // wall time; negative when the program failed
    double cpuSeconds = 0; // user and system time
    long peakKib = 0;      // largest resident set seen
};

double ChildCpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) * 1e-6;
}

// The peak resident set of a running process (VmHWM), 0 when it cannot be read.
long PeakKib(qint64 pid) {
    QFile status(QStringLiteral("/proc/%1/status").arg(pid));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toLong();
    }
    return 0;
}

// Runs a program with standard input and output on files.
ProgramRun RunProgram(const QString& program, const QStringList& args, const QString& in,
                      const QString& out) {
    constexpr int PollMs = 20;
    QProcess process;
    process.setProgram(program);
    process.setArguments(args);
    process.setStandardInputFile(in);
    process.setStandardOutputFile(out);
    process.setStandardErrorFile(QProcess::nullDevice());
    ProgramRun run;
    const double cpu = ChildCpuSeconds();
    const auto start = std::chrono::steady_clock::now();
    process.start();
    if (!process.waitForStarted(-1))
        return run;
    while (!process.waitForFinished(PollMs))
        run.peakKib = std::max(run.peakKib, PeakKib(process.processId()));
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    run.cpuSeconds = ChildCpuSeconds() - cpu;
    if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        run.seconds = seconds;
    return run;
}

// Lines whose numbers differ between two outputs (fields split at blanks and tabs).
std::size_t DifferentLines(const QString& a, const QString& b, std::size_t& lines) {
    QFile fa(a), fb(b);
    lines = 0;
    if (!fa.open(QIODevice::ReadOnly) || !fb.open(QIODevice::ReadOnly))
        return std::size_t(-1);
    std::size_t differ = 0;
    static const QRegularExpression blanks(QStringLiteral("[ \t]+"));
    while (!fa.atEnd() || !fb.atEnd()) {
        const QStringList x = QString::fromLatin1(fa.readLine().trimmed()).split(blanks);
        const QStringList y = QString::fromLatin1(fb.readLine().trimmed()).split(blanks);
        ++lines;
        differ += x != y;
    }
    return differ;
}

// terrameter --batch against cs2cs on the same 1,000,000 lines, in this run. cs2cs is pinned
// to the system's own computation: its target is the system as orv-geodb exports it (PROJJSON,
// three-dimensional, bound to WGS 84 by the system's datum transformation), so both compute
// the same thing, and the numbers are compared line by line.
void ComparePrograms(const char* argv0) {
    const QString buildDir =
        QFileInfo(QString::fromLocal8Bit(argv0)).absolutePath() + QStringLiteral("/..");
    const QString terrameter = qEnvironmentVariable(
        "TERRAMETER", buildDir + QStringLiteral("/apps/terrameter/terrameter"));
    if (!QFileInfo::exists(terrameter) || std::system("command -v cs2cs > /dev/null") != 0) {
        std::printf("terrameter (%s) or cs2cs not found: program timing skipped\n",
                    terrameter.toLocal8Bit().constData());
        return;
    }
    QTemporaryDir dir;
    const QString data = QStringLiteral("sqlite:") + dir.path();
    const QString group = QStringLiteral("Europe"), system = QStringLiteral("ED50 / UTM zone 31N");
    QString target, error;
    {
        const std::unique_ptr<GeoStore> store = GeoStore::Open(data, &error);
        if (!store || !SystemExport::ExportStored(*store, dir.path(), group, system,
                                                  SystemExport::Format::ProjJson, target, error)) {
            std::printf("%s cannot be exported: %s\n", system.toLocal8Bit().constData(),
                        error.toLocal8Bit().constData());
            return;
        }
    }
    // The stored system's own pipeline, bare, on one core: what the batch's conversion costs.
    QString pipeline;
    double systemBare = 0;
    {
        const std::unique_ptr<GeoStore> store = GeoStore::Open(data, &error);
        if (store)
            SystemExport::ExportStored(*store, dir.path(), group, system,
                                       SystemExport::Format::Proj, pipeline, error);
        PJ* pj = proj_create(PJ_DEFAULT_CTX, pipeline.toUtf8().constData());
        if (!pj) {
            std::printf("the pipeline of %s cannot be set up\n", system.toLocal8Bit().constData());
            return;
        }
        const std::vector<GeoPoint> input = Points();
        std::vector<GeoPoint> work;
        systemBare = BestSeconds(3, [&] {
            work = input;
            proj_trans_generic(pj, PJ_FWD, &work[0].x, sizeof(GeoPoint), work.size(), &work[0].y,
                               sizeof(GeoPoint), work.size(), &work[0].z, sizeof(GeoPoint),
                               work.size(), nullptr, 0, 0);
        });
        proj_destroy(pj);
    }
    // One input for both: latitude, longitude, height separated by blanks.
    const QString points = dir.filePath(QStringLiteral("points.txt"));
    const QString small = dir.filePath(QStringLiteral("small.txt"));
    {
        std::FILE* t = std::fopen(points.toLocal8Bit().constData(), "wb");
        std::FILE* s = std::fopen(small.toLocal8Bit().constData(), "wb");
        std::size_t i = 0;
        for (const GeoPoint& p : Points()) {
            std::fprintf(t, "%.9f %.9f %.3f\n", p.x, p.y, p.z);
            if (i++ < PointCount / 10)
                std::fprintf(s, "%.9f %.9f %.3f\n", p.x, p.y, p.z);
        }
        std::fclose(t);
        std::fclose(s);
    }
    const QString ours = dir.filePath(QStringLiteral("terrameter.out"));
    const QString theirs = dir.filePath(QStringLiteral("cs2cs.out"));
    const QStringList batch{QStringLiteral("--batch"), QStringLiteral("-G:") + group,
                            QStringLiteral("-S:") + system, QStringLiteral("--data"), data};
    const QStringList cs2cs{QStringLiteral("--3d"), QStringLiteral("-f"), QStringLiteral("%.4f"),
                            QStringLiteral("EPSG:4979"), target};
    // Memory for a tenth of the lines and for all of them: flat when they are alike.
    const long smallPeak = RunProgram(terrameter, batch, small, ours).peakKib;
    constexpr int Runs = 3;
    ProgramRun two, one, reference;
    auto best = [](ProgramRun& best, const ProgramRun& run) {
        if (run.seconds < 0 || (best.seconds >= 0 && best.seconds <= run.seconds))
            return run.seconds >= 0;
        best = run;
        return true;
    };
    bool ok = true;
    for (int run = 0; run < Runs; ++run) {
        ok = best(two,
                  RunProgram(terrameter,
                             batch + QStringList{QStringLiteral("--threads"), QStringLiteral("2")},
                             points, ours)) &&
             ok;
        ok = best(one,
                  RunProgram(terrameter,
                             batch + QStringList{QStringLiteral("--threads"), QStringLiteral("1")},
                             points, ours)) &&
             ok;
        ok = best(reference, RunProgram(QStringLiteral("cs2cs"), cs2cs, points, theirs)) && ok;
    }
    if (!ok) {
        std::printf("terrameter or cs2cs failed: program timing skipped\n");
        return;
    }
    std::size_t lines = 0;
    const std::size_t differ = DifferentLines(ours, theirs, lines);
    const QByteArray numbers =
        differ == 0 ? QByteArray("identical on every line")
                    : QStringLiteral("%1 of %2 lines differ").arg(differ).arg(lines).toLocal8Bit();
    std::printf(
        "%zu lines, wall time (CPU time): terrameter --batch %.2f s (%.2f s) with 2 threads, "
        "%.2f s (%.2f s) with 1; cs2cs pinned to the system's pipeline %.2f s (%.2f s)\n"
        "terrameter --batch with both cores %.1fx as fast as cs2cs (target >= 4); "
        "%.1fx in CPU time per line; numbers: %s\n"
        "terrameter --batch per core, reading and writing text: %.0f lines/s of CPU time = "
        "%.2f of the system's bare PROJ pipeline (%.0f points/s in memory)\n"
        "terrameter peak memory: %ld KiB for %zu lines, %ld KiB for %zu\n",
        PointCount, two.seconds, two.cpuSeconds, one.seconds, one.cpuSeconds, reference.seconds,
        reference.cpuSeconds, reference.seconds / two.seconds,
        reference.cpuSeconds / one.cpuSeconds, numbers.constData(), PointCount / one.cpuSeconds,
        systemBare / one.cpuSeconds, PointCount / systemBare, smallPeak, PointCount / 10,
        std::max(two.peakKib, one.peakKib), PointCount);
}

// ---- The whole batch (read, parse, convert, format, write) on one core against the bare
// pipeline of the same system over the same points, in CPU time and in instructions ----

constexpr std::size_t InstructionLines = 100000; // lines counted under callgrind

// UTM zone 31N on WGS 84: the projection alone, no datum transformation, no geoid.
SystemDefinition PlainUtmSystem() {
    SystemDefinition def = BenchSystem();
    def.system.name = QStringLiteral("plain UTM");
    def.system.geoidOn = false;
    def.system.geoidMethod.clear();
    def.localEllipsoid = def.satEllipsoid;
    def.dtf = DtfRecord{};
    return def;
}

struct BatchCase {
    const char* name;
    SystemDefinition (*definition)();
};

constexpr BatchCase BatchCases[] = {{"helmert-utm-geoid", BenchSystem},
                                    {"plain-utm", PlainUtmSystem}};

const BatchCase* FindBatchCase(const char* name) {
    for (const BatchCase& c : BatchCases) {
        if (std::strcmp(c.name, name) == 0)
            return &c;
    }
    return nullptr;
}

// The batch input: latitude, longitude, height separated by blanks, as a survey export
// writes them (the same lines the program comparison feeds to terrameter and cs2cs).
bool WriteBatchInput(const QString& path, std::size_t lines) {
    std::FILE* f = std::fopen(QFile::encodeName(path).constData(), "wb");
    if (!f)
        return false;
    const std::vector<GeoPoint> points = Points();
    for (std::size_t i = 0; i < lines; ++i) {
        const GeoPoint& p = points[i % points.size()];
        std::fprintf(f, "%.9f %.9f %.3f\n", p.x, p.y, p.z);
    }
    return std::fclose(f) == 0;
}

// The points of a batch input, read outside any measurement.
std::vector<GeoPoint> ReadBatchInput(const QString& path) {
    std::vector<GeoPoint> points;
    std::FILE* f = std::fopen(QFile::encodeName(path).constData(), "rb");
    if (!f)
        return points;
    GeoPoint p{0, 0, 0, 0};
    while (std::fscanf(f, "%lf %lf %lf", &p.x, &p.y, &p.z) == 3)
        points.push_back(p);
    std::fclose(f);
    return points;
}

std::unique_ptr<GeoCoordSys> DefineCase(const BatchCase& c) {
    auto cs = std::make_unique<GeoCoordSys>();
    if (!cs->Define(c.definition())) {
        std::fprintf(stderr, "cannot define %s: %s\n", c.name,
                     cs->LastError().toLocal8Bit().constData());
        return nullptr;
    }
    return cs;
}

// The system's own pipeline, bare, on its own context with PROJ's data folders.
PJ* BarePipelineOf(const GeoCoordSys& cs) {
    return proj_create(PJ_DEFAULT_CTX, cs.PipelineDefinition().toUtf8().constData());
}

// One batch run on one converting thread; false when a line failed or the output could not
// be written.
bool RunBatchOnce(GeoCoordSys& cs, const QString& in, const QString& out) {
    std::FILE* input = std::fopen(QFile::encodeName(in).constData(), "rb");
    std::FILE* output = std::fopen(QFile::encodeName(out).constData(), "wb");
    bool ok = input && output;
    if (ok) {
        BatchConverter::Settings settings;
        const BatchConverter::Result r =
            BatchConverter({&cs}, settings).Run(input, output, [](std::size_t, const std::string&) {
            });
        ok = r.failed == 0 && !r.readFailed && !r.writeFailed;
    }
    if (input)
        std::fclose(input);
    if (output)
        ok = std::fclose(output) == 0 && ok;
    return ok;
}

void RunBarePipeline(PJ* pj, std::vector<GeoPoint>& points) {
    proj_trans_generic(pj, PJ_FWD, &points[0].x, sizeof(GeoPoint), points.size(), &points[0].y,
                       sizeof(GeoPoint), points.size(), &points[0].z, sizeof(GeoPoint),
                       points.size(), nullptr, 0, 0);
}

// The child run under callgrind (instrumentation off at the start): sets up outside the
// count, then counts one batch run or one bare pass over the same points.
int CountInstructions(const char* what, const char* caseName, const char* in, const char* out) {
    const BatchCase* c = FindBatchCase(caseName);
    const std::unique_ptr<GeoCoordSys> cs = c ? DefineCase(*c) : nullptr;
    if (!cs)
        return 1;
    const QString input = QString::fromLocal8Bit(in), output = QString::fromLocal8Bit(out);
    if (std::strcmp(what, "batch") == 0) {
        CALLGRIND_START_INSTRUMENTATION;
        const bool ok = RunBatchOnce(*cs, input, output);
        CALLGRIND_STOP_INSTRUMENTATION;
        return ok ? 0 : 1;
    }
    std::vector<GeoPoint> points = ReadBatchInput(input);
    PJ* pj = BarePipelineOf(*cs);
    if (!pj || points.empty())
        return 1;
    CALLGRIND_START_INSTRUMENTATION;
    RunBarePipeline(pj, points);
    CALLGRIND_STOP_INSTRUMENTATION;
    proj_destroy(pj);
    return 0;
}

// Instructions counted by callgrind in a child run of this program; 0 when it failed.
double CallgrindInstructions(const char* argv0, const QString& folder, const char* what,
                             const char* caseName, const QString& in, const QString& out) {
    const QString profile =
        folder +
        QStringLiteral("/callgrind.%1.%2").arg(QLatin1String(what), QLatin1String(caseName));
    QProcess process;
    process.setProgram(QStringLiteral("valgrind"));
    process.setArguments({QStringLiteral("--tool=callgrind"), QStringLiteral("--instr-atstart=no"),
                          QStringLiteral("--callgrind-out-file=") + profile,
                          QFileInfo(QString::fromLocal8Bit(argv0)).absoluteFilePath(),
                          QStringLiteral("--count-instructions"), QLatin1String(what),
                          QLatin1String(caseName), in, out});
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start();
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        return 0;
    QFile file(profile);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().trimmed();
        if (line.startsWith("totals:"))
            return line.mid(line.indexOf(':') + 1).trimmed().split(' ').value(0).toDouble();
    }
    return 0;
}

// The batch per core against the bare pipeline: CPU time of 1,000,000 lines (both threads
// of the run: the reader and writer, and the converter), and instructions of 100,000 lines.
void CompareBatchPerCore(const char* argv0, bool instructions) {
    QTemporaryDir dir;
    const QString large = dir.filePath(QStringLiteral("batch.txt"));
    const QString small = dir.filePath(QStringLiteral("batch-small.txt"));
    const QString out = dir.filePath(QStringLiteral("batch.out"));
    if (!WriteBatchInput(large, PointCount) || !WriteBatchInput(small, InstructionLines)) {
        std::printf("the batch input cannot be written: batch per core skipped\n");
        return;
    }
    const bool valgrind =
        instructions && ORV_HAVE_CALLGRIND && std::system("command -v valgrind > /dev/null") == 0;
    const std::vector<GeoPoint> input = ReadBatchInput(large);
    for (const BatchCase& c : BatchCases) {
        const std::unique_ptr<GeoCoordSys> cs = DefineCase(c);
        PJ* pj = cs ? BarePipelineOf(*cs) : nullptr;
        if (!pj || !RunBatchOnce(*cs, large, out)) {
            std::printf("%s: the batch or its bare pipeline fails\n", c.name);
            proj_destroy(pj);
            continue;
        }
        std::vector<GeoPoint> work;
        const double bare = BestSeconds(3, [&] {
            work = input;
            RunBarePipeline(pj, work);
        });
        proj_destroy(pj);
        const double batch = BestSeconds(3, [&] { RunBatchOnce(*cs, large, out); });
        std::printf("batch per core, %s: %.0f lines/s of CPU time, bare pipeline %.0f points/s: "
                    "%.3f of the bare pipeline's throughput (target >= 0.95)\n",
                    c.name, PointCount / batch, PointCount / bare, bare / batch);
        if (!valgrind)
            continue;
        const double batchIr =
            CallgrindInstructions(argv0, dir.path(), "batch", c.name, small, out);
        const double bareIr = CallgrindInstructions(argv0, dir.path(), "bare", c.name, small, out);
        if (batchIr > 0 && bareIr > 0)
            std::printf(
                "batch per core, %s, in instructions (callgrind, %zu lines): %.0f per line, "
                "bare pipeline %.0f per point: %.3f\n",
                c.name, InstructionLines, batchIr / InstructionLines, bareIr / InstructionLines,
                bareIr / batchIr);
        else
            std::printf("batch per core, %s: callgrind failed\n", c.name);
    }
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    constexpr int CountArgs = 6; // program --count-instructions batch|bare CASE IN OUT
    if (argc == CountArgs && std::strcmp(argv[1], "--count-instructions") == 0)
        return CountInstructions(argv[2], argv[3], argv[4], argv[5]);
    bool programs = true, instructions = true;
    std::vector<char*> args;
    for (int i = 0; i < argc; ++i) {
        if (std::strcmp(argv[i], "--no-programs") == 0)
            programs = false;
        else if (std::strcmp(argv[i], "--no-instructions") == 0)
            instructions = false;
        else
            args.push_back(argv[i]);
    }
    int n = int(args.size());
    benchmark::Initialize(&n, args.data());
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    CompareInOneRun();
    CompareBatchPerCore(argv[0], instructions);
    if (programs)
        ComparePrograms(argv[0]);
    return 0;
}
