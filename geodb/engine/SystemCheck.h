#pragma once

#include "engine/GeoCoordSys.h"

#include <QList>
#include <QString>

// Checks a stored system against PROJ's own EPSG operation (EpsgReference) at points
// inside its area of use: the centre of the area and four points half-way to its corners.
struct SystemCheckResult {
    enum Status { Agree, Disagree, NotImplemented, NoReference, Failed };
    Status status = Failed;
    double maxDifference = 0; // metres, over all points and both axes
    QString message;
};

struct StoredSystemRef {
    QString group, name;
    int crsCode = 0;       // EPSG code of the system
    int operationCode = 0; // EPSG code of its datum transformation (0: none)
    double south = 0, west = 0, north = 0, east = 0;
    bool hasArea = false;
};

// All pre-defined systems of the store; empty with error set when they cannot be read.
QList<StoredSystemRef> PreDefinedSystems(const GeoStore& store, QString* error);

// toleranceMetres: the largest difference that still agrees.
SystemCheckResult CheckSystem(GeoCoordSys& cs, const StoredSystemRef& ref,
                              double toleranceMetres = 0.001);
