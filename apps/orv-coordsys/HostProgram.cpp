#include "HostProgram.h"

#include "api/OrvGeoFactories.h"
#include "apps/CommandLineOption.h"
#include "resources/StringTable.h"
#include "selection/SysSelectionDlg.h"
#include "store/DataSource.h"
#include "wizard/GeoWizard.h"

#include <QDialog>
#include <QTextStream>

#include <memory>

namespace {

// The data source in every program is --data; --data-source is the older spelling.
const QStringList DataOptionNames = {QStringLiteral("--data"), QStringLiteral("--data-source")};

// A mode option; false with a message when another mode was chosen before.
bool SetMode(HostOptions& options, HostOptions::Mode mode, const QString& arg, QString& chosen,
             QString& error) {
    if (!chosen.isEmpty() && chosen != arg) {
        error = QStringLiteral("%1 and %2 cannot be used together.").arg(chosen, arg);
        return false;
    }
    chosen = arg;
    options.mode = mode;
    return true;
}

// The information messages of a failed Create, on one line.
QString OneLine(QString text) {
    text.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    text.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return text.simplified();
}

void PrintChoice(QTextStream& out, const QString& group, const QString& system) {
    out << group << '\n' << system << '\n';
    out.flush();
}

} // namespace

bool ParseHostArgs(const QStringList& args, HostOptions& options, QString& error) {
    QString mode; // the mode option given, for the message when two are
    for (int i = 1; i < args.size(); ++i) {
        const QString& arg = args.at(i);
        QString value;
        bool matched = false;
        if (arg == u"-h" || arg == u"--help" || arg == u"--help-all") {
            options.help = true;
        } else if (arg == u"-v" || arg == u"--version") {
            options.version = true;
        } else if (arg == u"--add") {
            if (!SetMode(options, HostOptions::Mode::Add, arg, mode, error))
                return false;
        } else if (arg == u"--wizard") {
            if (!SetMode(options, HostOptions::Mode::Wizard, arg, mode, error))
                return false;
        } else if (!OptionValue(args, i, {QStringLiteral("--screenshots")}, value, matched,
                                error)) {
            return false;
        } else if (matched) {
            if (!SetMode(options, HostOptions::Mode::Screenshots, QStringLiteral("--screenshots"),
                         mode, error))
                return false;
            if (value.isEmpty()) {
                error = QStringLiteral("--screenshots needs a folder.");
                return false;
            }
            options.screenshotsFolder = value;
        } else if (!OptionValue(args, i, DataOptionNames, value, matched, error)) {
            return false;
        } else if (matched) {
            options.dataSource = value;
            options.dataSourceSet = true;
        } else if (!OptionValue(args, i, {QStringLiteral("--group")}, value, matched, error)) {
            return false;
        } else if (matched) {
            options.group = value;
        } else if (!OptionValue(args, i, {QStringLiteral("--system")}, value, matched, error)) {
            return false;
        } else if (matched) {
            options.system = value;
        } else if (arg.startsWith(u"-")) {
            error = QStringLiteral("Unknown option \"%1\".").arg(arg);
            return false;
        } else {
            error = QStringLiteral("Unexpected argument \"%1\".").arg(arg);
            return false;
        }
    }
    const bool presets = !options.group.isEmpty() || !options.system.isEmpty();
    if (presets && options.mode != HostOptions::Mode::Select &&
        options.mode != HostOptions::Mode::Add) {
        error = QStringLiteral("--group and --system preset the selection dialog; %1 takes "
                               "neither.")
                    .arg(mode);
        return false;
    }
    return true;
}

QString HostUsage() {
    return QStringLiteral(
        "Usage:\n"
        "  orv-coordsys [--data <source>] [--group <group> --system <system>]\n"
        "  orv-coordsys --add [--data <source>] [--group <group> --system <system>]\n"
        "  orv-coordsys --wizard [--data <source>]\n"
        "  orv-coordsys --screenshots <folder> [--data <source>]\n"
        "  orv-coordsys --help | --version\n"
        "\n"
        "Opens the dialog \"Select Coordinate System\" on the coordinate-system database, as a\n"
        "host application does: the stored systems of both databases under their groups, the\n"
        "information of the selected one, Edit and Remove. On OK the chosen group and system\n"
        "are printed, one line each; Cancel prints nothing. The exit status is 0 either way.\n"
        "\n"
        "A host opens the dialog with its edit flag on, so that Edit and Remove are offered\n"
        "(never for the host's current system), and the edit flag turns Add off. To create a\n"
        "system here, use --add or --wizard.\n"
        "\n"
        "Options:\n"
        "  --data <source>        the data source: \"\" (default) for the installed system\n"
        "                         database and the user database in the user's data folder;\n"
        "                         \"sqlite:<folder>\" keeps the user database and ORV.ini in\n"
        "                         <folder> (made when missing)\n"
        "  --group <group>        the host's current group: opened and selected\n"
        "  --system <system>      the host's current system in that group: selected\n"
        "  --add                  the dialog with the edit flag off: Add (the wizard) is on,\n"
        "                         Edit and Remove are off; OK prints the choice as above\n"
        "  --wizard               the wizard alone; after Finish the group and name of the\n"
        "                         saved system are printed, one line each\n"
        "  --screenshots <folder> renders every dialog to PNG files in <folder> without a\n"
        "                         display, prints their paths and exits (a fresh temporary\n"
        "                         data source unless --data is given)\n"
        "  -h, --help             this text\n"
        "  -v, --version          the program's version\n"
        "\n"
        "Exit status: 0 chosen or cancelled, 1 the data source cannot be opened, no display or\n"
        "nothing rendered, 2 bad arguments.\n");
}

QString HostVersion() {
    return QStringLiteral("orv-coordsys %1\n").arg(QStringLiteral(ORV_VERSION));
}

bool HostAsksForHelpOrVersion(const QStringList& args) {
    for (qsizetype i = 1; i < args.size(); ++i) {
        const QString& arg = args.at(i);
        if (arg == u"-h" || arg == u"--help" || arg == u"--help-all" || arg == u"-v" ||
            arg == u"--version")
            return true;
    }
    return false;
}

bool CheckDataSource(const QString& dataSource, bool open, QString& error) {
    if (!DataSource::Resolve(dataSource, &error))
        return false;
    if (!open)
        return true;
    OrvGeoDatabaseBaseList& list = OrvGeoDatabaseBaseList::GetGeoDatabaseList();
    const std::unique_ptr<OrvGeoDatabaseBase> database(list.Create(dataSource));
    if (database)
        return true;
    error = QStringLiteral("The data source \"%1\" cannot be opened: %2")
                .arg(dataSource, OneLine(list.LastError()));
    return false;
}

int RunHostDialog(const HostOptions& options, QTextStream& out) {
    if (options.mode == HostOptions::Mode::Wizard) {
        GeoWizard wizard(LoadOrvString(StrId::TitleHostWizard), nullptr, 0);
        wizard.SetDllType(options.dataSource);
        if (wizard.DoModal() == PropertySheet::ID_WIZFINISH)
            PrintChoice(out, wizard.GetGroupName(), wizard.GetSystemName());
        return HostExitOk;
    }
    const bool editFlag = options.mode != HostOptions::Mode::Add;
    SysSelectionDlg dialog(geodb_type(0), editFlag);
    dialog.SetDllType(options.dataSource);
    dialog.SetGroupName(options.group);
    dialog.SetSystemName(options.system);
    if (dialog.DoModal() == QDialog::Accepted)
        PrintChoice(out, dialog.GetGroupName(), dialog.GetSystemName());
    return HostExitOk;
}
