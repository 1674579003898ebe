#pragma once

#include <QString>
#include <QStringList>

class QTextStream;

// orv-coordsys's command line:
//   orv-coordsys [--data <source>] [--group <group> --system <system>]   the selection dialog
//   orv-coordsys --add [--data <source>] [--group <group> --system <system>]
//   orv-coordsys --wizard [--data <source>]
//   orv-coordsys --screenshots <folder> [--data <source>]
//   orv-coordsys --help | --version
struct HostOptions {
    enum class Mode {
        Select,      // the selection dialog as a host opens it: edit flag on, Add off
        Add,         // the selection dialog with the edit flag off: Add on, Edit and Remove off
        Wizard,      // the wizard alone
        Screenshots, // every dialog rendered to PNG files
    };
    Mode mode = Mode::Select;
    QString dataSource;
    bool dataSourceSet = false;
    QString group, system;
    QString screenshotsFolder;
    bool help = false;
    bool version = false;
};

// Exit status of the program.
constexpr int HostExitOk = 0;     // a choice printed, or cancelled (nothing printed)
constexpr int HostExitFailed = 1; // the data source cannot be opened, no display, no picture
constexpr int HostExitUsage = 2;  // bad arguments

// False with a one-line message for an option it does not know, a missing value or options
// that do not go together.
bool ParseHostArgs(const QStringList& args, HostOptions& options, QString& error);
QString HostUsage();
QString HostVersion();

// True when the arguments ask for the usage or the version only (answered without a window
// system).
bool HostAsksForHelpOrVersion(const QStringList& args);

// Checks the data source the dialogs would open; false with a one-line reason: a kind of
// source the library does not know, and with open also a folder that cannot be made or a
// database that cannot be read (opening makes a missing user database).
bool CheckDataSource(const QString& dataSource, bool open, QString& error);

// Runs the dialog of options.mode (not Screenshots) on its data source and prints the chosen
// group and system on out, one line each; prints nothing when the person cancels.
int RunHostDialog(const HostOptions& options, QTextStream& out);
