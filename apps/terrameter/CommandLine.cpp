#include "CommandLine.h"

#include "BatchFormat.h"
#include "api/OrvGeoFactories.h"
#include "apps/CommandLineOption.h"

#include <string_view>

namespace {

// The most threads a batch run starts, whatever --threads says.
constexpr int MaxThreads = 64;

// -G:"name" arrives as -G:name (the shell or the starter removes the quotes); a name may
// still carry them when the program is started without a shell.
QString Unquote(QString value) {
    if (value.size() >= 2 && value.startsWith(QLatin1Char('"')) && value.endsWith(QLatin1Char('"')))
        value = value.mid(1, value.size() - 2);
    return value;
}

} // namespace

bool ParseTerrameterArgs(const QStringList& args, TerrameterOptions& options, QString& error) {
    QStringList positional;
    for (int i = 1; i < args.size(); ++i) {
        const QString& arg = args.at(i);
        QString value;
        bool matched = false;
        if (arg.startsWith(u"-G:", Qt::CaseInsensitive)) {
            options.group = Unquote(arg.mid(3));
        } else if (arg.startsWith(u"-S:", Qt::CaseInsensitive)) {
            options.system = Unquote(arg.mid(3));
        } else if (arg == u"--batch") {
            options.batch = true;
        } else if (arg == u"--inverse") {
            options.inverse = true;
        } else if (arg == u"--header") {
            options.header = TerrameterOptions::Header::Present;
        } else if (arg == u"--no-header") {
            options.header = TerrameterOptions::Header::Absent;
        } else if (arg == u"-h" || arg == u"--help") {
            options.help = true;
        } else if (arg == u"--version") {
            options.version = true;
        } else if (!OptionValue(args, i, {QStringLiteral("--data")}, value, matched, error)) {
            return false;
        } else if (matched) {
            options.dataSource = value;
            options.dataSourceSet = true;
        } else if (!OptionValue(args, i, {QStringLiteral("--columns")}, value, matched, error)) {
            return false;
        } else if (matched) {
            options.columns = value;
        } else if (!OptionValue(args, i, {QStringLiteral("--separator")}, value, matched, error)) {
            return false;
        } else if (matched) {
            BatchFormat::Separator separator;
            if (!BatchFormat::ParseSeparator(value, separator)) {
                error = QStringLiteral("Unknown separator \"%1\": use comma, semicolon, tab or "
                                       "space.")
                            .arg(value);
                return false;
            }
            options.separator = value;
        } else if (!OptionValue(args, i, {QStringLiteral("--threads")}, value, matched, error)) {
            return false;
        } else if (matched) {
            bool ok = false;
            options.threads = value.toInt(&ok);
            if (!ok || options.threads < 1 || options.threads > MaxThreads) {
                error = QStringLiteral("--threads takes a number from 1 to %1.").arg(MaxThreads);
                return false;
            }
        } else if (arg == u"-" || !arg.startsWith(u"-")) {
            positional << arg;
        } else {
            error = QStringLiteral("Unknown option \"%1\".").arg(arg);
            return false;
        }
    }
    if (positional.size() > 2 || (!options.batch && !positional.isEmpty())) {
        error = QStringLiteral("Too many arguments: %1").arg(positional.join(QLatin1Char(' ')));
        return false;
    }
    if (!positional.isEmpty())
        options.input = positional.at(0);
    if (positional.size() > 1)
        options.output = positional.at(1);
    return true;
}

QString TerrameterUsage() {
    return QStringLiteral(
        "Usage:\n"
        "  terrameter -G:\"group\" -S:\"system\" [--data <data source>]\n"
        "  terrameter --batch -G:\"group\" -S:\"system\" [--data <data source>] [--inverse]\n"
        "             [--columns <spec>] [--header | --no-header] [--separator <name>]\n"
        "             [--threads <n>] [in.csv|-] [out.csv|-]\n"
        "  terrameter [--data <data source>]\n"
        "  terrameter --help | --version\n"
        "\n"
        "Without -G and -S the dialog \"Select Coordinate System\" opens to choose the system\n"
        "(a preset when one of them is given); Cancel ends the program. The window and the\n"
        "dialog need a display; --batch does not.\n"
        "  --data <source>    \"\" (default): the installed databases; \"sqlite:<folder>\": the\n"
        "                     user database in <folder>. The calculator only reads.\n"
        "\n"
        "Batch mode converts one point per line; the output has one row per input row.\n"
        "  --columns <spec>   what each column holds, e.g. id,lat,lon,h,epoch: lat, lon, h\n"
        "                     (WGS 84) or e, n, z (grid, converted back); epoch; id or - for\n"
        "                     a column copied as it is. Default lat,lon,h (e,n,z with\n"
        "                     --inverse); further columns are copied.\n"
        "  --header           the first line names the columns (otherwise detected)\n"
        "  --no-header        the first line holds data\n"
        "  --separator <name> comma, semicolon, tab or space (otherwise detected)\n"
        "  --threads <n>      conversion threads (default: one per core)\n"
        "Angles: decimal degrees or degrees, minutes and seconds (52 30 15.5N, 52:30:15.5,\n"
        "52°30'15.5\"N); longitudes from -360 to 360. Lines starting with '#' and empty lines\n"
        "are copied. A line that fails keeps its row with '*' in its result columns and is\n"
        "reported on standard error. Exit status: 0 all converted, 1 some lines failed, 2 not\n"
        "run (the output file is then left as it was).\n");
}

QString TerrameterVersion() {
    return QStringLiteral("terrameter %1\n").arg(QStringLiteral(ORV_VERSION));
}

bool AsksForHelpOrVersion(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        const std::string_view arg(argv[i]);
        if (arg == "-h" || arg == "--help" || arg == "--version")
            return true;
    }
    return false;
}

std::unique_ptr<OrvGeoCoordSysBase> OpenNamedSystem(const TerrameterOptions& options,
                                                    const QString& dllType, QString& error) {
    if (options.group.isEmpty() || options.system.isEmpty()) {
        error = QStringLiteral("Name the coordinate system with -G:\"group\" -S:\"system\".");
        return nullptr;
    }
    OrvGeoCoordSysList& list = OrvGeoCoordSysList::GetCoordSysList();
    std::unique_ptr<OrvGeoCoordSysBase> cs(list.Create(dllType));
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
