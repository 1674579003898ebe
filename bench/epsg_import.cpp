// Time of one full EPSG import (the build runs it; it must stay well under a minute).

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

// The importer of this build tree, beside bench/.
QString ImporterPath() {
    return QDir::cleanPath(QCoreApplication::applicationDirPath() +
                           QStringLiteral("/../tools/epsg-import/epsg-import"));
}

void BM_FullImport(benchmark::State& state) {
    QTemporaryDir dir;
    const QString target = dir.filePath(QStringLiteral("orv-system.db"));
    for (auto _ : state) {
        QProcess process;
        process.start(ImporterPath(), {QStringLiteral("/usr/share/proj/proj.db"), target});
        if (!process.waitForFinished(120000) || process.exitCode() != 0) {
            state.SkipWithError("the importer failed");
            break;
        }
    }
}
BENCHMARK(BM_FullImport)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
