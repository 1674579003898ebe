#pragma once

#include "api/GeoTypes.h"

#include <QString>
#include <QStringList>

#include <optional>

// Plain records of the stored entries, as the store reads and writes them. Units are
// those of the schema (store/Schema.cpp).

struct EllipsoidRecord {
    QString name;
    EllipsoidValues values{}; // a, b, 1/f, f, e^2, e'^2
    int epsgCode = 0;
    QString remarks;
    int scope = 0; // GEODB_USER or GEODB_SYSTEM: where the record was found
};

struct UnitRecord {
    QString name;
    double metersPerUnit = 1.0;
    QString suffix;
    QString description;
    int category = UNIT_CATEGORY_LENGTH;
    int epsgCode = 0;
    int scope = 0;
};

struct DtfRecord {
    QString name;
    QString srcEllipsoid;     // satellite side (WGS 84)
    QString dstEllipsoid;     // local side
    int methodIndex = 0;      // DtfMethodIndex
    DtfValues values{};       // 15 values
    double accuracy = 0;      // further value 1
    int epsgCode = 0;         // further value 2
    unsigned char option = 0; // DtfOption bits
    double obsEpoch = 0;      // trailing value 1
    double trailing2 = 0;     // trailing value 2
    QString description;
    QString extraText;
    QString localDatum;
    int scope = 0;
};

struct PrjParamRecord {
    QString name;
    double value = 0;
    QString valueText;
    unsigned type = PRM_PLAIN;
};

struct ProjectionRecord {
    QString name;
    int methodId = 0;
    QString unitName;
    int epsgCode = 0;
    int epsgMethodCode = 0;
    QString description;
    QList<PrjParamRecord> params; // display order
    int scope = 0;
};

struct PostCorrection {
    bool on = false; // translation and shift model
    double e = 0, n = 0, z = 0;
    QString modelName, modelFile;
    bool horOn = false;
    double horOriginE = 0, horOriginN = 0, horRotation = 0 /* arc-seconds */, horScale = 1;
    bool vertOn = false;
    double vertOriginE = 0, vertOriginN = 0, vertSlopeE = 0 /* ppm */, vertSlopeN = 0;
};

struct SystemRecord {
    QString name;
    QString group;
    QString satEllipsoid;
    QString localEllipsoid;
    QString dtfName;
    QString projectionName;
    QString unitName;
    double primeMeridian = 0; // degrees east of Greenwich
    QString utmZoneText, utmHemisphereText;
    bool geoidOn = false;
    QString geoidMethod, geoidFile, chartDatum;
    double geoidSeparation = 0;
    QString geoidKeys;
    PostCorrection post;
    int epsgCode = 0;
    QString area;
    std::optional<double> bboxSouth, bboxWest, bboxNorth, bboxEast;
    QString remarks;
    int scope = 0;
};

// A stored system with everything it references, as the engine needs it.
struct SystemDefinition {
    SystemRecord system;
    EllipsoidRecord satEllipsoid;
    EllipsoidRecord localEllipsoid;
    DtfRecord dtf;
    ProjectionRecord projection;
    UnitRecord unit;
};
