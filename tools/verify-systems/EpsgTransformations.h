#pragma once

#include <QHash>
#include <QList>
#include <QString>

// EPSG's Helmert transformations between WGS 84 and other datums, read from proj.db on their
// own (not from the system database), with what a choice among them rests on: accuracy, area
// of use, whether EPSG has replaced them.
struct EpsgTransformation {
    int code = 0;
    QString name;
    double accuracy = 0; // metres; 0 unknown
    int localDatum = 0;
    QString area;
    bool hasBox = false;
    double south = 0, west = 0, north = 0, east = 0; // west > east across 180°
    // Replaced by another operation that is not deprecated: proj.db's supersession table, or
    // the remark "Replaced by <name> (code <n>)." (as the importer reads them).
    QString replacedBy; // "Amersfoort to WGS 84 (2) (EPSG:1672)"; empty when current
    bool current() const { return replacedBy.isEmpty(); }
};

// A box of degrees, as the system database and proj.db give areas of use.
struct AreaBox {
    double south = 0, west = 0, north = 0, east = 0;
    // Longitude intervals: two when the box crosses 180°.
    QList<QPair<double, double>> Intervals() const;
    bool Contains(const AreaBox& other) const;
    bool SameAs(const AreaBox& other) const;
    double Overlap(const AreaBox& other) const; // square degrees
};

AreaBox BoxOf(const EpsgTransformation& t);

class EpsgTransformations {
public:
    // False with a reason when proj.db cannot be read.
    bool Load(const QString& projDbPath, QString* error);
    const EpsgTransformation* ByCode(int code) const;
    // The transformations of one local datum (current and replaced).
    QList<const EpsgTransformation*> OfDatum(int datum) const;

private:
    QHash<int, EpsgTransformation> m_byCode;
    QHash<int, QList<int>> m_byDatum;
};
