// Converts every pre-defined system with the engine and with PROJ's own EPSG operation
// pinned to the system's datum transformation, at points inside its area of use, and
// prints how many agree within 1 mm.
#include "engine/GeoCoordSys.h"
#include "engine/SystemCheck.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Checks the pre-defined coordinate systems against PROJ's EPSG operations."));
    parser.addHelpOption();
    const QCommandLineOption data(QStringLiteral("data"),
                                  QStringLiteral("Data source (default: the installed databases)."),
                                  QStringLiteral("source"));
    const QCommandLineOption verbose(QStringLiteral("verbose"),
                                     QStringLiteral("List every system that does not agree."));
    const QCommandLineOption tolerance(QStringLiteral("tolerance"),
                                       QStringLiteral("Largest difference that agrees, metres."),
                                       QStringLiteral("m"), QStringLiteral("0.001"));
    parser.addOptions({data, verbose, tolerance});
    parser.process(app);

    QTextStream out(stdout);
    QTextStream err(stderr);
    QString why;
    std::unique_ptr<GeoStore> store = GeoStore::Open(parser.value(data), &why);
    if (!store) {
        err << "Cannot open the data source: " << why << "\n";
        return 2;
    }
    const QList<StoredSystemRef> systems = PreDefinedSystems(*store, &why);
    if (!why.isEmpty()) {
        err << why << "\n";
        return 2;
    }
    GeoCoordSys cs(std::move(store));
    const double tol = parser.value(tolerance).toDouble();

    int counts[5] = {};
    double worst = 0;
    for (const StoredSystemRef& ref : systems) {
        const SystemCheckResult r = CheckSystem(cs, ref, tol);
        ++counts[r.status];
        if (r.status == SystemCheckResult::Agree)
            worst = std::max(worst, r.maxDifference);
        const bool show = r.status == SystemCheckResult::Disagree ||
                          r.status == SystemCheckResult::Failed ||
                          (parser.isSet(verbose) && r.status != SystemCheckResult::Agree);
        if (show) {
            static const char* const Names[] = {"agrees", "DIFFERS", "not implemented",
                                                "no reference", "FAILED"};
            out << Names[r.status] << ": " << ref.group << " / " << ref.name
                << " (EPSG:" << ref.crsCode << " via EPSG:" << ref.operationCode
                << "): " << r.message << "\n";
        }
    }
    const int checked = counts[SystemCheckResult::Agree] + counts[SystemCheckResult::Disagree] +
                        counts[SystemCheckResult::Failed];
    out << "Systems: " << systems.size() << "\n"
        << "Agree within " << tol * 1000 << " mm: " << counts[SystemCheckResult::Agree] << " of "
        << checked << " checked (largest difference " << QString::number(worst * 1000, 'f', 4)
        << " mm)\n"
        << "Differ: " << counts[SystemCheckResult::Disagree] << "\n"
        << "Failed to define: " << counts[SystemCheckResult::Failed] << "\n"
        << "Method not implemented: " << counts[SystemCheckResult::NotImplemented] << "\n"
        << "No PROJ reference: " << counts[SystemCheckResult::NoReference] << "\n";
    out.flush();
    return counts[SystemCheckResult::Disagree] + counts[SystemCheckResult::Failed] == 0 ? 0 : 1;
}
