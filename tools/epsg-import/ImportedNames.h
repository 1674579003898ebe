#pragma once

#include "AreaOfUse.h"

#include <QHash>
#include <QList>
#include <QString>

// A written datum transformation, as a system on its local datum may choose it.
struct DtfCandidate {
    QString name;
    double accuracy = 0; // 0 unknown
    int code = 0;
    Box box;
};

// What the earlier steps wrote, by EPSG code: rows refer to each other by name, and the
// stored name may differ from EPSG's (the metre, a clash).
struct ImportedNames {
    QHash<int, QString> ellipsoids;
    QHash<int, QString> units;
    QHash<int, QString> utmProjections;          // by EPSG UTM conversion code
    QHash<int, QList<DtfCandidate>> dtfsByDatum; // local datum -> its transformations
};
