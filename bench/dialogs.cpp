// The pickers on the full system database with an empty user database. Targets: a picker
// ready (constructed, filled, its first or preset entry selected and shown, painted once)
// under 50 ms, for the projection picker and for the datum transformation picker of the
// ellipsoid pair with the most transformations; one keystroke in the projection picker's
// filter, until the tree and the pane are updated and painted, under 8 ms. The selection
// dialog ready on every system (tree built, the host's system selected, its information
// shown, painted once) under 50 ms; one keystroke in its filter under 8 ms.

#include "BenchSupport.h"
#include "api/OrvGeoFactories.h"
#include "dialogs/DatumTransfmSelDlg.h"
#include "dialogs/PickerTree.h"
#include "dialogs/PrjSelectDlg.h"
#include "selection/SysSelectionDlg.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <memory>

namespace {

QString g_dllType;

// The editor as the pickers see it.
class BenchOwner : public CoordSysEditorOwner {
public:
    BenchOwner()
        : m_database(OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(g_dllType)),
          m_static(OrvGeoStaticDatabaseList::GetGeoStaticDataList().Create(g_dllType)) {}
    bool IsOpen() const { return m_database && m_static; }
    OrvGeoDatabaseBase* GetGeoDatabase() const override { return m_database.get(); }
    OrvGeoStaticDataBase* GetGeoStatic() const override { return m_static.get(); }
    QString CurrentSatelliteEllipsoid() const override { return m_satellite; }
    QString CurrentLocalEllipsoid() const override { return m_local; }

    // The ellipsoid pair with the most datum transformations becomes the current one.
    int ChooseBusiestPair() {
        QStringList ellipsoids;
        m_database->GetEllipsoidNames(ellipsoids);
        int most = 0;
        for (const QString& local : std::as_const(ellipsoids)) {
            QStringList names;
            m_database->GetDtfNames(names, QStringLiteral("WGS 84"), local);
            if (names.size() > most) {
                most = int(names.size());
                m_local = local;
            }
        }
        return most;
    }

private:
    std::unique_ptr<OrvGeoDatabaseBase> m_database;
    std::unique_ptr<OrvGeoStaticDataBase> m_static;
    QString m_satellite = QStringLiteral("WGS 84");
    QString m_local;
};

void settle() {
    QApplication::processEvents();
}

template <class Picker> void pickerReady(benchmark::State& state, BenchOwner& owner) {
    for (auto _ : state) {
        Picker picker(&owner);
        picker.EnsureInitialised();
        picker.show();
        settle();
        benchmark::DoNotOptimize(picker.GetSelName().size());
    }
}

void BM_ProjectionPickerReady(benchmark::State& state) {
    BenchOwner owner;
    if (!owner.IsOpen())
        return state.SkipWithError("the data source cannot be opened");
    pickerReady<PrjSelectDlg>(state, owner);
    state.SetLabel("target < 50 ms");
}
BENCHMARK(BM_ProjectionPickerReady)->Unit(benchmark::kMillisecond);

void BM_DtfPickerReadyBusiestPair(benchmark::State& state) {
    BenchOwner owner;
    if (!owner.IsOpen())
        return state.SkipWithError("the data source cannot be opened");
    state.counters["transformations"] = owner.ChooseBusiestPair();
    pickerReady<DatumTransfmSelDlg>(state, owner);
    state.SetLabel("target < 50 ms");
}
BENCHMARK(BM_DtfPickerReadyBusiestPair)->Unit(benchmark::kMillisecond);

// One keystroke per iteration: the filter goes from shorter to longer and back.
void typeAlternately(benchmark::State& state, PickerTree& tree, const QString& shorter,
                     const QString& longer) {
    tree.SetFilterText(shorter);
    settle();
    bool typed = false;
    for (auto _ : state) {
        typed = !typed;
        tree.SetFilterText(typed ? longer : shorter);
        settle();
    }
    state.SetLabel("target < 8 ms");
}

// One keystroke typed and taken back in turn: from "zone-3" to "zone-31" (a narrow filter)
// or from nothing to "a" (almost every projection matches: the widest redraw).
void projectionFilterKeystroke(benchmark::State& state, const QString& shorter,
                               const QString& longer) {
    BenchOwner owner;
    if (!owner.IsOpen())
        return state.SkipWithError("the data source cannot be opened");
    PrjSelectDlg picker(&owner);
    picker.EnsureInitialised();
    picker.show();
    settle();
    PickerTree* tree = picker.Tree();
    typeAlternately(state, *tree, shorter, longer);
}

void BM_ProjectionFilterKeystrokeNarrow(benchmark::State& state) {
    projectionFilterKeystroke(state, QStringLiteral("zone-3"), QStringLiteral("zone-31"));
}
BENCHMARK(BM_ProjectionFilterKeystrokeNarrow)->Unit(benchmark::kMillisecond);

void BM_ProjectionFilterKeystrokeWidest(benchmark::State& state) {
    projectionFilterKeystroke(state, QString(), QStringLiteral("a"));
}
BENCHMARK(BM_ProjectionFilterKeystrokeWidest)->Unit(benchmark::kMillisecond);

// The host's usual call: both databases, the edit flag, its current system preset.
std::unique_ptr<SysSelectionDlg> openSelection() {
    auto dialog = std::make_unique<SysSelectionDlg>(geodb_type(0), true);
    dialog->SetDllType(g_dllType);
    dialog->SetGroupName(QStringLiteral("UK"));
    dialog->SetSystemName(QStringLiteral("OSGB36 / British National Grid"));
    dialog->EnsureInitialised();
    dialog->show();
    settle();
    return dialog;
}

int systemCount(SysSelectionDlg& dialog) {
    const NameTreeModel& model = dialog.Tree()->Model();
    int systems = 0;
    for (int root = 0; root < model.rowCount(); ++root) {
        const QModelIndex database = model.index(root, 0);
        for (int group = 0; group < model.rowCount(database); ++group)
            systems += model.rowCount(model.index(group, 0, database));
    }
    return systems;
}

void BM_SelectionDialogReady(benchmark::State& state) {
    int systems = 0;
    for (auto _ : state) {
        auto dialog = openSelection();
        if (dialog->GetSystemName().isEmpty())
            return state.SkipWithError("the preset system was not selected");
        state.PauseTiming();
        systems = systemCount(*dialog);
        state.ResumeTiming();
    }
    state.counters["systems"] = systems;
    state.SetLabel("target < 50 ms");
}
BENCHMARK(BM_SelectionDialogReady)->Unit(benchmark::kMillisecond);

// As for the projection picker: a narrow filter ("britis" to "british"), and the widest
// one (nothing to "a").
void selectionFilterKeystroke(benchmark::State& state, const QString& shorter,
                              const QString& longer) {
    auto dialog = openSelection();
    PickerTree* tree = dialog->Tree();
    typeAlternately(state, *tree, shorter, longer);
}

void BM_SelectionFilterKeystrokeNarrow(benchmark::State& state) {
    selectionFilterKeystroke(state, QStringLiteral("britis"), QStringLiteral("british"));
}
BENCHMARK(BM_SelectionFilterKeystrokeNarrow)->Unit(benchmark::kMillisecond);

void BM_SelectionFilterKeystrokeWidest(benchmark::State& state) {
    selectionFilterKeystroke(state, QString(), QStringLiteral("a"));
}
BENCHMARK(BM_SelectionFilterKeystrokeWidest)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    return RunBenchmarksOnSystemDatabase(
        argc, argv, g_dllType,
        "a picker or the selection dialog ready < 50 ms, one filter keystroke in the projection "
        "picker or the selection dialog < 8 ms");
}
