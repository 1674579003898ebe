// terrameter: the geodetic calculator for one stored coordinate system.
#include "BatchConverter.h"
#include "CommandLine.h"
#include "TerrameterWindow.h"

#include "api/OrvGeoFactories.h"
#include "engine/GeoCoordSys.h"

#include <QApplication>
#include <QCoreApplication>
#include <QMessageBox>

#include <cstdio>
#include <memory>
#include <string_view>
#include <unistd.h>

namespace {

int Fail(const QString& message, bool gui) {
    std::fprintf(stderr, "terrameter: %s\n", message.toLocal8Bit().constData());
    if (gui)
        QMessageBox::critical(nullptr, QStringLiteral("Terrameter"), message);
    return 2;
}

std::unique_ptr<OrvGeoCoordSysBase> OpenSystem(const TerrameterOptions& options, QString& error) {
    if (options.group.isEmpty() || options.system.isEmpty()) {
        error = QStringLiteral("Name the coordinate system with -G:\"group\" -S:\"system\".");
        return nullptr;
    }
    OrvGeoCoordSysList& list = OrvGeoCoordSysList::GetCoordSysList();
    std::unique_ptr<OrvGeoCoordSysBase> cs(list.Create(options.dataSource));
    if (!cs) {
        error = QStringLiteral("The coordinate-system database cannot be opened: %1")
                    .arg(list.LastError());
        return nullptr;
    }
    const QString empty;
    if (!cs->DefineSystem(options.group, options.system, empty, empty, empty, empty, empty, empty,
                          QStringLiteral("none"))) {
        error = cs->LastError();
        return nullptr;
    }
    return cs;
}

int RunBatch(const TerrameterOptions& options) {
    QString error;
    std::unique_ptr<OrvGeoCoordSysBase> cs = OpenSystem(options, error);
    if (!cs)
        return Fail(error, false);
    std::FILE* in = stdin;
    std::FILE* out = stdout;
    if (options.input != u"-") {
        in = std::fopen(options.input.toLocal8Bit().constData(), "rb");
        if (!in)
            return Fail(QStringLiteral("Cannot read \"%1\".").arg(options.input), false);
    }
    if (options.output != u"-") {
        out = std::fopen(options.output.toLocal8Bit().constData(), "wb");
        if (!out) {
            if (in != stdin)
                std::fclose(in);
            return Fail(QStringLiteral("Cannot write \"%1\".").arg(options.output), false);
        }
    }
    // Progress only for a terminal, and only for files large enough to wait for.
    long total = 0;
    if (in != stdin && std::fseek(in, 0, SEEK_END) == 0) {
        total = std::ftell(in);
        std::rewind(in);
    }
    const bool showProgress = isatty(fileno(stderr)) && total > (16L << 20);
    BatchConverter converter(*cs, options.inverse);
    const BatchConverter::Result r = converter.Run(
        in, out,
        [](std::size_t line, const std::string& why) {
            std::fprintf(stderr, "line %zu: %s\n", line, why.c_str());
        },
        [&](std::size_t bytes) {
            if (showProgress)
                std::fprintf(stderr, "\r%3d%%", int(100.0 * double(bytes) / double(total)));
        });
    if (showProgress)
        std::fprintf(stderr, "\r");
    if (in != stdin)
        std::fclose(in);
    const bool written = (out == stdout ? std::fflush(out) : std::fclose(out)) == 0;
    if (!written)
        return Fail(QStringLiteral("Writing \"%1\" failed.").arg(options.output), false);
    if (r.bad > 0)
        std::fprintf(stderr, "terrameter: %zu of %zu lines not converted\n", r.bad, r.lines);
    return r.bad > 0 ? 1 : 0;
}

} // namespace

int main(int argc, char** argv) {
    // Batch mode needs no window system.
    bool batch = false;
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
        return 2;
    }
    if (options.help) {
        std::printf("%s", TerrameterUsage().toLocal8Bit().constData());
        return 0;
    }
    if (options.batch)
        return RunBatch(options);

    std::unique_ptr<OrvGeoCoordSysBase> cs = OpenSystem(options, error);
    if (!cs)
        return Fail(error, true);
    const auto* engine = dynamic_cast<const GeoCoordSys*>(cs.get());
    TerrameterWindow window(*cs, options.group, options.system,
                            engine && engine->IsTimeDependent());
    window.show();
    return app->exec();
}
