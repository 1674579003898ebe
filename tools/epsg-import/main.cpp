#include "EpsgImporter.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <cstdio>

// epsg-import <proj.db> <orv-system.db>: writes the system database from PROJ's EPSG registry.
int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() != 3) {
        std::fprintf(stderr, "usage: epsg-import <proj.db> <output system database>\n");
        return 2;
    }
    QElapsedTimer timer;
    timer.start();
    EpsgImporter importer;
    if (!importer.Run(args[1], args[2])) {
        std::fprintf(stderr, "epsg-import: failed: %s\n", qPrintable(importer.LastError()));
        return 1;
    }
    std::printf("%s\n", qPrintable(ImportSummary(importer.EpsgVersion(), importer.Counts(),
                                                 timer.elapsed())));
    return 0;
}
