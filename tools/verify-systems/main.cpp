// Checks every pre-defined system in two ways:
// 1. its conversion with the engine against PROJ's own EPSG operation pinned to the system's
//    datum transformation, at points inside its area of use (how many agree within 1 mm);
// 2. its datum transformation against the one PROJ itself would choose, and against the
//    other current transformations of its datum (how many store PROJ's choice, and why the
//    others differ; how many store one that a transformation with the same area of use and a
//    better accuracy would beat; how many store a superseded one).
#include "ChoiceReport.h"
#include "EpsgTransformations.h"
#include "ProjChoice.h"

#include "engine/GeoCoordSys.h"
#include "engine/SystemCheck.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QMap>
#include <QTextStream>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationVersion(QStringLiteral(ORV_VERSION));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Checks the pre-defined coordinate systems against PROJ's EPSG operations."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption data(
        QStringLiteral("data"),
        QStringLiteral("Data source: \"\" (default) for the installed databases, "
                       "\"sqlite:<folder>\" for the user database in <folder>."),
        QStringLiteral("source"));
    const QCommandLineOption verbose(QStringLiteral("verbose"),
                                     QStringLiteral("List every system that does not agree."));
    const QCommandLineOption tolerance(QStringLiteral("tolerance"),
                                       QStringLiteral("Largest difference that agrees, metres."),
                                       QStringLiteral("m"), QStringLiteral("0.001"));
    const QCommandLineOption noChoice(QStringLiteral("no-choice"),
                                      QStringLiteral("Skip the comparison with PROJ's choice."));
    parser.addOptions({data, verbose, tolerance, noChoice});
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
    const bool choice = !parser.isSet(noChoice);

    ProjChooser chooser;
    EpsgTransformations epsg;
    if (choice && !epsg.Load(chooser.DatabasePath(), &why)) {
        err << "Cannot read PROJ's database: " << why << "\n";
        return 2;
    }

    int counts[5] = {};
    double worst = 0;
    QMap<ChoiceReport::Verdict, int> verdicts;
    QStringList otherChoices, beaten, superseded;
    for (const StoredSystemRef& ref : systems) {
        const SystemCheckResult r = CheckSystem(cs, ref, tol);
        ++counts[r.status];
        if (r.status == SystemCheckResult::Agree)
            worst = std::max(worst, r.maxDifference);
        const QString label = QStringLiteral("%1 / %2 (EPSG:%3 via EPSG:%4)")
                                  .arg(ref.group, ref.name)
                                  .arg(ref.crsCode)
                                  .arg(ref.operationCode);
        const bool show = r.status == SystemCheckResult::Disagree ||
                          r.status == SystemCheckResult::Failed ||
                          (parser.isSet(verbose) && r.status != SystemCheckResult::Agree);
        if (show) {
            static const char* const Names[] = {"agrees", "DIFFERS", "not implemented",
                                                "no reference", "FAILED"};
            out << Names[r.status] << ": " << label << ": " << r.message << "\n";
        }
        if (!choice || ref.crsCode == 0)
            continue;
        const ChoiceReport::Comparison c =
            ChoiceReport::Compare(epsg, ref, chooser.For(ref.crsCode));
        ++verdicts[c.verdict];
        if (c.verdict != ChoiceReport::Verdict::Same)
            otherChoices << QStringLiteral("  %1: %2").arg(label, c.reason);
        if (const EpsgTransformation* better =
                ChoiceReport::BetterWithSameArea(epsg, ref.operationCode))
            beaten << QStringLiteral("  %1: EPSG:%2 \"%3\" has the same area and %4 m")
                          .arg(label)
                          .arg(better->code)
                          .arg(better->name)
                          .arg(better->accuracy);
        if (const EpsgTransformation* stored = epsg.ByCode(ref.operationCode);
            stored && !stored->current())
            superseded << QStringLiteral("  %1: superseded by %2").arg(label, stored->replacedBy);
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
    if (choice) {
        int compared = 0;
        for (int n : verdicts)
            compared += n;
        out << "\nStore the transformation PROJ would choose from EPSG:4326: "
            << verdicts.value(ChoiceReport::Verdict::Same) << " of " << compared << "\n";
        for (auto it = verdicts.cbegin(); it != verdicts.cend(); ++it) {
            if (it.key() != ChoiceReport::Verdict::Same)
                out << "  another, because " << ChoiceReport::Label(it.key()) << ": " << it.value()
                    << "\n";
        }
        out << "Store a transformation that a current one with the same area and a better "
               "accuracy would beat: "
            << beaten.size() << "\n";
        out << "Store a superseded transformation: " << superseded.size() << "\n";
        if (!otherChoices.isEmpty())
            out << "\nSystems that store another transformation than PROJ's choice:\n"
                << otherChoices.join(QLatin1Char('\n')) << "\n";
        if (!beaten.isEmpty())
            out << "\nSystems whose transformation is beaten:\n"
                << beaten.join(QLatin1Char('\n')) << "\n";
        if (!superseded.isEmpty())
            out << "\nSystems with a superseded transformation:\n"
                << superseded.join(QLatin1Char('\n')) << "\n";
    }
    out.flush();
    const bool bad = counts[SystemCheckResult::Disagree] + counts[SystemCheckResult::Failed] > 0 ||
                     !beaten.isEmpty() || !superseded.isEmpty();
    return bad ? 1 : 0;
}
