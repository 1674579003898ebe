// terrameter: the geodetic calculator for one stored coordinate system.
#include "BatchRun.h"
#include "CommandLine.h"
#include "TerrameterWindow.h"

#include "store/ReadOnlySource.h"

#include <QApplication>
#include <QCoreApplication>
#include <QMessageBox>

#include <cstdio>
#include <memory>
#include <string_view>

namespace {

int Fail(const QString& message, bool gui) {
    std::fprintf(stderr, "terrameter: %s\n", message.toLocal8Bit().constData());
    if (gui)
        QMessageBox::critical(nullptr, QStringLiteral("Terrameter"), message);
    return BatchExitNotRun;
}

} // namespace

int main(int argc, char** argv) {
    // Batch mode, the usage and the version need no window system.
    bool batch = AsksForHelpOrVersion(argc, argv);
    for (int i = 1; i < argc; ++i)
        batch = batch || std::string_view(argv[i]) == "--batch";
    std::unique_ptr<QCoreApplication> app;
    if (batch)
        app = std::make_unique<QCoreApplication>(argc, argv);
    else
        app = std::make_unique<QApplication>(argc, argv);

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
        return Fail(source.error(), true);
    std::unique_ptr<OrvGeoCoordSysBase> cs = OpenNamedSystem(options, source.dllType(), error);
    if (!cs)
        return Fail(error, true);
    TerrameterWindow window(*cs, options.group, options.system, DescribeSystem(*cs));
    window.show();
    return app->exec();
}
