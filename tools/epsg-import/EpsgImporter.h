#pragma once

#include "ImportSummary.h"

#include <QString>

// Builds the system (pre-defined) database from PROJ's EPSG registry, proj.db. See
// docs/epsg-import.md for what is taken over and how. This class owns the files and the
// transaction; ImportSteps does the reading and writing.
class EpsgImporter {
public:
    // Reads projDbPath read-only and writes a fresh database to outPath. The database is
    // written to a temporary file beside outPath and renamed at the end, so a failed run
    // leaves outPath as it was. False: LastError() says why.
    bool Run(const QString& projDbPath, const QString& outPath);

    const ImportCounts& Counts() const { return m_counts; }
    // The EPSG version proj.db states (e.g. "v10.076"); empty when it states none.
    QString EpsgVersion() const { return m_epsgVersion; }
    QString LastError() const { return m_error; }

private:
    ImportCounts m_counts;
    QString m_epsgVersion;
    QString m_error;
};
