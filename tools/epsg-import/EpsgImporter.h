#pragma once

#include <QString>

// Builds the system (pre-defined) database from PROJ's EPSG registry, proj.db. See
// docs/epsg-import.md for what is taken over and how.
class EpsgImporter {
public:
    struct Counts {
        int ellipsoids = 0;
        int units = 0;
        int dtfs = 0;
        int projections = 0;
        int systems = 0;
        int groups = 0;
        int skippedSystems = 0; // projected systems left out (no datum transformation, ...)
    };

    // Reads projDbPath read-only and writes a fresh database to outPath. The database is
    // written to a temporary file beside outPath and renamed at the end, so a failed run
    // leaves outPath as it was. False: LastError() says why.
    bool Run(const QString& projDbPath, const QString& outPath);

    const Counts& ImportCounts() const { return m_counts; }
    // The EPSG version proj.db states (e.g. "v10.076"); empty when it states none.
    QString EpsgVersion() const { return m_epsgVersion; }
    QString LastError() const { return m_error; }

private:
    Counts m_counts;
    QString m_epsgVersion;
    QString m_error;
};
