#include "CommandLine.h"

namespace {

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
        if (arg.startsWith(u"-G:", Qt::CaseInsensitive)) {
            options.group = Unquote(arg.mid(3));
        } else if (arg.startsWith(u"-S:", Qt::CaseInsensitive)) {
            options.system = Unquote(arg.mid(3));
        } else if (arg == u"--batch") {
            options.batch = true;
        } else if (arg == u"--inverse") {
            options.inverse = true;
        } else if (arg == u"--data") {
            if (i + 1 >= args.size()) {
                error = QStringLiteral("--data needs a data source.");
                return false;
            }
            options.dataSource = args.at(++i);
            options.dataSourceSet = true;
        } else if (arg.startsWith(u"--data=")) {
            options.dataSource = arg.mid(7);
            options.dataSourceSet = true;
        } else if (arg == u"-h" || arg == u"--help") {
            options.help = true;
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
        "             [in.csv|-] [out.csv|-]\n"
        "Batch lines: latitude,longitude,height[,epoch] (or Easting,Northing,Z[,epoch] with\n"
        "--inverse); lines starting with '#' and empty lines are copied.\n");
}
