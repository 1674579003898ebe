#pragma once

#include "api/OrvGeoCoordSysBase.h"

#include <QString>
#include <QStringList>

#include <memory>

// terrameter's command line:
//   terrameter -G:"group" -S:"system" [--data <data source>]
//   terrameter --batch -G:"group" -S:"system" [--data <source>] [--inverse] [--columns <spec>]
//              [--header|--no-header] [--separator <name>] [--threads <n>] [in|-] [out|-]
//   terrameter [--data <data source>]        (the system chosen in the selection dialog)
//   terrameter --help | --version
struct TerrameterOptions {
    QString group, system;
    QString dataSource;
    bool dataSourceSet = false;
    bool batch = false;
    bool inverse = false;
    bool help = false;
    bool version = false;
    QString columns;   // empty: lat,lon,h (or e,n,z with --inverse)
    QString separator; // empty: detected
    enum class Header { Detect, Present, Absent } header = Header::Detect;
    int threads = 0;                      // 0: one per core
    QString input = QStringLiteral("-");  // "-": standard input
    QString output = QStringLiteral("-"); // "-": standard output
};

// False with a message for an option it does not know or a value it cannot use.
bool ParseTerrameterArgs(const QStringList& args, TerrameterOptions& options, QString& error);
QString TerrameterUsage();
QString TerrameterVersion();

// True when the arguments ask for the usage or the version only: the program answers those
// without a window system.
bool AsksForHelpOrVersion(int argc, char** argv);

// The stored system named by -G and -S on the data source dllType (the calculator only
// reads: open it through a ReadOnlySource of options.dataSource); null with the reason.
std::unique_ptr<OrvGeoCoordSysBase> OpenNamedSystem(const TerrameterOptions& options,
                                                    const QString& dllType, QString& error);
