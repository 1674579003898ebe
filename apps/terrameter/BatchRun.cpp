#include "BatchRun.h"

#include "BatchConverter.h"

#include "engine/GeoCoordSys.h"
#include "store/ReadOnlySource.h"

#include <QFile>
#include <QSaveFile>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <thread>

namespace {

// Progress is shown on a terminal for inputs large enough to wait for.
constexpr long ProgressMinBytes = 16L << 20;

int Fail(std::FILE* err, const QString& message) {
    std::fprintf(err, "terrameter: %s\n", message.toLocal8Bit().constData());
    return BatchExitNotRun;
}

QString SystemError() {
    return QString::fromLocal8Bit(std::strerror(errno));
}

QString UnitLabel(const OrvGeoCoordSysBase& cs) {
    const auto* engine = dynamic_cast<const GeoCoordSys*>(&cs);
    if (!engine)
        return QStringLiteral("m");
    const UnitRecord& unit = engine->Definition().unit;
    return !unit.suffix.isEmpty() ? unit.suffix
           : !unit.name.isEmpty() ? unit.name
                                  : QStringLiteral("m");
}

// Closes the input unless it is standard input.
struct InputFile {
    std::FILE* file = nullptr;
    ~InputFile() {
        if (file && file != stdin)
            std::fclose(file);
    }
};

} // namespace

int RunBatch(const TerrameterOptions& options, std::FILE* err) {
    BatchConverter::Settings settings;
    QString error;
    if (!BatchFormat::ColumnSpec::Parse(options.columns, options.inverse, settings.columns, error))
        return Fail(err, error);
    if (!options.separator.isEmpty())
        BatchFormat::ParseSeparator(options.separator, settings.separator);
    settings.header =
        options.header == TerrameterOptions::Header::Present  ? BatchConverter::Header::Present
        : options.header == TerrameterOptions::Header::Absent ? BatchConverter::Header::Absent
                                                              : BatchConverter::Header::Detect;

    // One system per thread: each has its own PROJ context.
    const int threads = options.threads > 0 ? options.threads
                                            : std::max(1, int(std::thread::hardware_concurrency()));
    // The calculator only reads: a missing user database is not created.
    const ReadOnlySource source(options.dataSource);
    if (!source.ok())
        return Fail(err, source.error());
    std::vector<std::unique_ptr<OrvGeoCoordSysBase>> systems;
    std::vector<OrvGeoCoordSysBase*> pointers;
    for (int i = 0; i < threads; ++i) {
        systems.push_back(OpenNamedSystem(options, source.dllType(), error));
        if (!systems.back())
            return Fail(err, error);
        pointers.push_back(systems.back().get());
    }
    settings.unitLabel = UnitLabel(*systems.front());

    InputFile in;
    if (options.input == u"-") {
        in.file = stdin;
    } else {
        in.file = std::fopen(QFile::encodeName(options.input).constData(), "rb");
        if (!in.file)
            return Fail(
                err, QStringLiteral("Cannot read \"%1\": %2.").arg(options.input, SystemError()));
    }
    struct stat inStat {};
    if (fstat(fileno(in.file), &inStat) != 0)
        return Fail(err,
                    QStringLiteral("Cannot read \"%1\": %2.").arg(options.input, SystemError()));
    if (S_ISDIR(inStat.st_mode))
        return Fail(
            err,
            QStringLiteral("\"%1\" is a folder: name the file to convert.").arg(options.input));

    // The output: standard output, a device or pipe written directly, or a file replaced
    // only after a complete run.
    std::unique_ptr<QFileDevice> file;
    QSaveFile* saveFile = nullptr;
    if (options.output != u"-") {
        const QByteArray path = QFile::encodeName(options.output);
        struct stat outStat {};
        const bool exists = stat(path.constData(), &outStat) == 0;
        if (exists && outStat.st_dev == inStat.st_dev && outStat.st_ino == inStat.st_ino)
            return Fail(err, QStringLiteral("The output \"%1\" is the input file: write the "
                                            "results to another file.")
                                 .arg(options.output));
        if (exists && S_ISDIR(outStat.st_mode))
            return Fail(
                err,
                QStringLiteral("The output \"%1\" is a folder: name a file.").arg(options.output));
        if (exists && !S_ISREG(outStat.st_mode)) {
            file = std::make_unique<QFile>(options.output);
        } else {
            auto save = std::make_unique<QSaveFile>(options.output);
            saveFile = save.get();
            file = std::move(save);
        }
        if (!file->open(QIODevice::WriteOnly))
            return Fail(err, QStringLiteral("Cannot write \"%1\": %2.")
                                 .arg(options.output, file->errorString()));
    }

    long total = 0;
    if (S_ISREG(inStat.st_mode))
        total = long(inStat.st_size);
    const bool showProgress = isatty(fileno(err)) && total > ProgressMinBytes;

    BatchConverter converter(pointers, settings);
    const auto sink = [&](const char* data, std::size_t size) {
        if (file)
            return file->write(data, qint64(size)) == qint64(size);
        return std::fwrite(data, 1, size, stdout) == size;
    };
    const BatchConverter::Result r = converter.Run(
        in.file, sink,
        [err](std::size_t line, const std::string& why) {
            std::fprintf(err, "line %zu: %s\n", line, why.c_str());
        },
        [&](std::size_t bytes) {
            if (showProgress)
                std::fprintf(err, "\r%3d%%", int(100.0 * double(bytes) / double(total)));
        });
    if (showProgress)
        std::fprintf(err, "\r    \r");

    const QString outputName =
        options.output == u"-" ? QStringLiteral("standard output") : options.output;
    if (r.readFailed) {
        if (saveFile)
            saveFile->cancelWriting();
        return Fail(
            err,
            QStringLiteral("Reading \"%1\" failed: %2.%3")
                .arg(options.input == u"-" ? QStringLiteral("standard input") : options.input,
                     QString::fromLocal8Bit(r.readError.c_str()),
                     saveFile ? QStringLiteral(" \"%1\" is left as it was.").arg(options.output)
                              : QString()));
    }
    bool written = !r.writeFailed;
    if (saveFile) {
        if (!written)
            saveFile->cancelWriting();
        written = saveFile->commit() && written;
    } else if (file) {
        file->close();
        written = written && file->error() == QFileDevice::NoError;
    } else {
        written = std::fflush(stdout) == 0 && written;
    }
    if (!written)
        return Fail(err, QStringLiteral("Writing \"%1\" failed%2.")
                             .arg(outputName,
                                  file ? QStringLiteral(": ") + file->errorString() : QString()));
    if (r.failed > 0)
        std::fprintf(err, "terrameter: %zu of %zu lines not converted\n", r.failed, r.lines);
    return r.failed > 0 ? BatchExitFailed : BatchExitOk;
}
