// terrameter: the geodetic calculator for one stored coordinate system.
#include "BatchRun.h"
#include "CommandLine.h"
#include "SystemChooser.h"
#include "TerrameterWindow.h"

#include "platform/WindowSystem.h"
#include "store/ReadOnlySource.h"

#include <QApplication>
#include <QCoreApplication>
#include <QMessageBox>

#include <cstdio>
#include <memory>
#include <string_view>

namespace {

// The message goes to standard error, and into a message box where a person can see one
// (started from a desktop menu, nobody reads standard error).
int Fail(const QString& message, bool gui) {
    std::fprintf(stderr, "terrameter: %s\n", message.toLocal8Bit().constData());
    if (!gui)
        return BatchExitNotRun;
    const QString platform = QGuiApplication::platformName();
    if (platform != u"offscreen" && platform != u"minimal")
        QMessageBox::critical(nullptr, QStringLiteral("Terrameter"), message);
    return BatchExitNotRun;
}

} // namespace

int main(int argc, char** argv) {
    // Batch mode, the usage and the version need no window system; without one the window
    // is not opened either, and the program says what it needs.
    bool batch = AsksForHelpOrVersion(argc, argv);
    for (int i = 1; i < argc; ++i)
        batch = batch || std::string_view(argv[i]) == "--batch";
    const bool gui = !batch && HasWindowSystem();
    std::unique_ptr<QCoreApplication> app;
    if (gui)
        app = std::make_unique<QApplication>(argc, argv);
    else
        app = std::make_unique<QCoreApplication>(argc, argv);

    TerrameterOptions options;
    QString error;
    if (!ParseTerrameterArgs(QCoreApplication::arguments(), options, error)) {
        std::fprintf(stderr, "terrameter: %s\n%s", error.toLocal8Bit().constData(),
                     TerrameterUsage().toLocal8Bit().constData());
        return BatchExitNotRun;
    }
    if (options.help) {
        std::printf("%s", TerrameterUsage().toLocal8Bit().constData());
        return 0;
    }
    if (options.version) {
        std::printf("%s", TerrameterVersion().toLocal8Bit().constData());
        return 0;
    }
    if (options.batch)
        return RunBatch(options, stderr);

    // The calculator only reads: a missing user database is not created.
    const ReadOnlySource source(options.dataSource);
    if (!source.ok())
        return Fail(source.error(), gui);
    const bool named = !options.group.isEmpty() && !options.system.isEmpty();
    if (!gui)
        return Fail(named ? QStringLiteral("No display: the calculator window needs a window "
                                           "system (DISPLAY or WAYLAND_DISPLAY); --batch "
                                           "converts files without one.")
                          : QStringLiteral("No display: choosing the system needs a window "
                                           "system (DISPLAY or WAYLAND_DISPLAY); name it with "
                                           "-G:\"group\" -S:\"system\" (and --batch to convert "
                                           "files without a display)."),
                    false);
    // Without -G and -S (started from a desktop menu) the person chooses the system;
    // Cancel ends the program quietly.
    if (!named && !ChooseSystem(source.dllType(), options.group, options.system))
        return 0;
    std::unique_ptr<OrvGeoCoordSysBase> cs = OpenNamedSystem(options, source.dllType(), error);
    if (!cs)
        return Fail(error, gui);
    TerrameterWindow window(*cs, options.group, options.system, DescribeSystem(*cs));
    window.show();
    return app->exec();
}
