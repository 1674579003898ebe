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
    // EPSG has replaced it by another operation: it stays for users to pick, but no
    // pre-defined system takes it.
    bool superseded = false;
    // The variant number of an EPSG name "<source> to <target> (n)": a higher number of the
    // same source and target is a later transformation. 0 when the name has none.
    int variant = 0;
    QString family; // the name without its variant number
};

// What the earlier steps wrote, by EPSG code: rows refer to each other by name, and the
// stored name may differ from EPSG's (the metre, a clash).
struct ImportedNames {
    QHash<int, QString> ellipsoids;
    QHash<int, QString> units;
    QHash<int, QString> utmProjections;          // by EPSG UTM conversion code
    QHash<int, QList<DtfCandidate>> dtfsByDatum; // local datum -> its transformations
};
