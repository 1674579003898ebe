// orv-coordsys: the host of the coordinate-system dialogs. See HostUsage() for what it does.
#include "HostProgram.h"
#include "Screenshots.h"

#include "platform/WindowSystem.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QTextStream>

#include <memory>

namespace {

QStringList Arguments(int argc, char** argv) {
    QStringList args;
    for (int i = 0; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);
    return args;
}

int Fail(int status, const QString& message, bool usage = false) {
    QTextStream err(stderr);
    err << "orv-coordsys: " << message << '\n';
    if (usage)
        err << "Run \"orv-coordsys --help\" for the options.\n";
    return status;
}

int RenderAll(const HostOptions& options, QTextStream& out) {
    // Never the user's data unless asked: a fresh data folder that goes with the program.
    QTemporaryDir scratch;
    QString source = options.dataSource;
    if (!options.dataSourceSet)
        source = QStringLiteral("sqlite:") + scratch.path();
    QString error;
    const QStringList files = RenderScreenshots(options.screenshotsFolder, source, error);
    for (const QString& file : files)
        out << file << '\n';
    if (files.isEmpty())
        return Fail(HostExitFailed, error);
    return HostExitOk;
}

} // namespace

int main(int argc, char** argv) {
    const QStringList args = Arguments(argc, argv);
    HostOptions options;
    QString error;
    const bool parsed = ParseHostArgs(args, options, error);
    const bool screenshots = parsed && options.mode == HostOptions::Mode::Screenshots;
    // Screenshots need no display: the offscreen platform, unless the caller chose one.
    if (screenshots && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    // Without a window system Qt's GUI application would abort: the usage, the version, bad
    // arguments and the data-source check are answered by a core application, which then
    // says what is missing.
    const bool windows = parsed && !HostAsksForHelpOrVersion(args) && HasWindowSystem();
    std::unique_ptr<QCoreApplication> app;
    if (windows)
        app = std::make_unique<QApplication>(argc, argv);
    else
        app = std::make_unique<QCoreApplication>(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("orv-coordsys"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORV_VERSION));

    QTextStream out(stdout);
    if (!parsed)
        return Fail(HostExitUsage, error, true);
    if (options.help) {
        out << HostUsage();
        return HostExitOk;
    }
    if (options.version) {
        out << HostVersion();
        return HostExitOk;
    }
    if (screenshots)
        return RenderAll(options, out);
    // Without a display nothing is made: the data source is only checked.
    if (!CheckDataSource(options.dataSource, windows, error))
        return Fail(HostExitFailed, error);
    if (!windows)
        return Fail(HostExitFailed,
                    QStringLiteral("No display: the dialogs need a window system (DISPLAY or "
                                   "WAYLAND_DISPLAY). --screenshots <folder> renders them to PNG "
                                   "files without one."));
    QApplication::setApplicationDisplayName(QStringLiteral("Coordinate System"));
    return RunHostDialog(options, out);
}
