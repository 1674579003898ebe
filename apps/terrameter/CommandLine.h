#pragma once

#include <QString>
#include <QStringList>

// terrameter's command line:
//   terrameter -G:"group" -S:"system" [--data <data source>]
//   terrameter --batch [-G:group -S:system] [--data <source>] [--inverse] [in.csv|-] [out.csv|-]
struct TerrameterOptions {
    QString group, system;
    QString dataSource;
    bool dataSourceSet = false;
    bool batch = false;
    bool inverse = false;
    bool help = false;
    QString input = QStringLiteral("-");
    QString output = QStringLiteral("-");
};

// False with a message for an option it does not know.
bool ParseTerrameterArgs(const QStringList& args, TerrameterOptions& options, QString& error);
QString TerrameterUsage();
