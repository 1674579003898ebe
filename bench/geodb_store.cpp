// The store on the generated system database with an empty user database: what the
// selection dialog and the wizard's name page do. Targets: listing every group with its
// systems under 50 ms, one name check under 1 ms.

#include "BenchSupport.h"
#include "api/OrvGeoFactories.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

#include <memory>

namespace {

QString g_dllType;

std::unique_ptr<OrvGeoDatabaseBase> OpenDatabase() {
    return std::unique_ptr<OrvGeoDatabaseBase>(
        OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(g_dllType));
}

// A system in the middle of the list, so that look-ups do not start at the front.
void MiddleSystem(OrvGeoDatabaseBase& db, QString& group, QString& system) {
    QStringList groups;
    db.GetGroupNames(groups, GEODB_SYSTEM);
    group = groups.value(groups.size() / 2);
    QStringList systems;
    db.GetSystemNames(systems, group);
    system = systems.value(systems.size() / 2);
}

void BM_CreateDatabaseObject(benchmark::State& state) {
    for (auto _ : state) {
        auto db = OpenDatabase();
        if (!db) {
            state.SkipWithError("the data source cannot be opened");
            return;
        }
        benchmark::DoNotOptimize(db.get());
    }
    state.SetLabel("no target");
}
BENCHMARK(BM_CreateDatabaseObject)->Unit(benchmark::kMillisecond);

void BM_ListAllGroupsAndSystems(benchmark::State& state) {
    auto db = OpenDatabase();
    int systems = 0;
    for (auto _ : state) {
        QStringList groups;
        db->GetGroupNames(groups, GEODB_ALL);
        systems = 0;
        for (const QString& group : groups) {
            QStringList names;
            db->GetSystemNames(names, group);
            systems += int(names.size());
        }
        benchmark::DoNotOptimize(systems);
    }
    state.counters["systems"] = systems;
    state.SetLabel("target < 50 ms");
}
BENCHMARK(BM_ListAllGroupsAndSystems)->Unit(benchmark::kMillisecond);

void BM_SystemNameExists(benchmark::State& state) {
    auto db = OpenDatabase();
    QString group, system;
    MiddleSystem(*db, group, system);
    const QString asTyped = system.toUpper();
    for (auto _ : state)
        benchmark::DoNotOptimize(db->SystemNameExists(asTyped, GEODB_ALL));
    state.SetLabel("target < 1 ms");
}
BENCHMARK(BM_SystemNameExists)->Unit(benchmark::kMicrosecond);

void BM_GetSystemInfoText(benchmark::State& state) {
    auto db = OpenDatabase();
    QString group, system;
    MiddleSystem(*db, group, system);
    QString text;
    for (auto _ : state) {
        db->GetSystemInfoText(text, group, system, {}, {}, {}, {}, {});
        benchmark::DoNotOptimize(text.size());
    }
    state.SetLabel("no target");
}
BENCHMARK(BM_GetSystemInfoText)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    return RunBenchmarksOnSystemDatabase(
        argc, argv, g_dllType,
        "listing all groups and systems < 50 ms, one system name check < 1 ms");
}
