#include "Screenshots.h"

#include "wizard/GeoWizard.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTemporaryDir>
#include <QTextStream>

#include <cstdio>
#include <memory>

namespace {

// The usage and the version are answered without a window system.
bool AsksForHelpOrVersion(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        const QByteArray arg(argv[i]);
        if (arg == "-h" || arg == "--help" || arg == "--help-all" || arg == "--version")
            return true;
    }
    return false;
}

} // namespace

int main(int argc, char** argv) {
    // Screenshots need no display: choose the offscreen platform before Qt starts, unless
    // the caller chose one.
    for (int i = 1; i < argc; ++i)
        if (QByteArray(argv[i]) == "--screenshots" &&
            qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");

    const bool textOnly = AsksForHelpOrVersion(argc, argv);
    std::unique_ptr<QCoreApplication> app;
    if (textOnly)
        app = std::make_unique<QCoreApplication>(argc, argv);
    else
        app = std::make_unique<QApplication>(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("orv-coordsys"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORV_VERSION));
    if (!textOnly)
        QApplication::setApplicationDisplayName(QStringLiteral("Coordinate System"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Coordinate systems of the survey package: choose, create and edit them."));
    parser.addHelpOption();
    parser.addVersionOption();
    QCommandLineOption screenshots(QStringLiteral("screenshots"),
                                   QStringLiteral("Render every dialog to PNG files in <folder> "
                                                  "(offscreen) and exit."),
                                   QStringLiteral("folder"));
    // --data-source is the older spelling of --data.
    QCommandLineOption dataSource(
        {QStringLiteral("data"), QStringLiteral("data-source")},
        QStringLiteral("Data source of the dialogs: empty for the default databases, "
                       "sqlite:<folder> for a user database in <folder>. Screenshots use a "
                       "fresh temporary folder unless this is given."),
        QStringLiteral("string"));
    parser.addOption(screenshots);
    parser.addOption(dataSource);
    parser.process(*app);

    QTextStream err(stderr);
    QTextStream out(stdout);

    if (parser.isSet(screenshots)) {
        QTemporaryDir scratch;
        QString source = parser.value(dataSource);
        if (!parser.isSet(dataSource))
            source = QStringLiteral("sqlite:") + scratch.path();
        QString error;
        const QStringList files = RenderScreenshots(parser.value(screenshots), source, error);
        for (const QString& file : files)
            out << file << '\n';
        if (files.isEmpty()) {
            err << "orv-coordsys: " << error << '\n';
            return 1;
        }
        return 0;
    }

    // Until the selection dialog is there, the program runs the wizard (what its Add does).
    GeoWizard wizard(QStringLiteral("Coordinate System"));
    wizard.SetDllType(parser.value(dataSource));
    const int result = wizard.DoModal();
    if (result == PropertySheet::ID_WIZFINISH)
        out << wizard.GetGroupName() << '\t' << wizard.GetSystemName() << '\n';
    return 0;
}
