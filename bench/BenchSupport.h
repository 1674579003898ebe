#pragma once

#include "store/DataSource.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>

// Runs the benchmarks of a program on the generated system database with a fresh user
// database in a temporary folder; dllType gets the data source. targets is printed first.
inline int RunBenchmarksOnSystemDatabase(int argc, char** argv, QString& dllType,
                                         const char* targets) {
    QTemporaryDir userFolder;
    const QString systemDb = DataSource::DefaultSystemDbPath();
    if (!QFileInfo::exists(systemDb)) {
        std::fprintf(stderr, "The system database %s is not built.\n", qPrintable(systemDb));
        return 1;
    }
    dllType = QStringLiteral("sqlite:%1;system=%2").arg(userFolder.path(), systemDb);
    std::printf("System database: %s\nTargets: %s\n", qPrintable(systemDb), targets);
    ::benchmark::Initialize(&argc, argv);
    ::benchmark::RunSpecifiedBenchmarks();
    ::benchmark::Shutdown();
    return 0;
}
