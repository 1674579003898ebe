#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <utility>

class ImportSession;

// A latitude band and one or two longitude intervals (two when the box crosses 180°).
struct Box {
    bool valid = false;
    double south = 0, west = 0, north = 0, east = 0;

    // The overlap in square degrees; line and point boxes keep a tiny area, so that
    // containment still counts for them.
    double OverlapArea(const Box& other) const;
    bool Intersects(const Box& other) const;
    // True when other lies wholly inside this box (both valid).
    bool Contains(const Box& other) const;
    QList<std::pair<double, double>> Intervals() const;
};

// Where and what for EPSG says an object is used.
struct AreaOfUse {
    QString area; // name of the extent
    QString scope;
    Box box;
};

// The usages of the objects the import takes over, from proj.db's extent, scope and usage
// tables.
class UsageTable {
public:
    enum class Kind { ProjectedCrs, HelmertTransformation, Conversion };

    bool Load(ImportSession& session);
    // An object may have several usages: the first one EPSG lists. Empty when it has none.
    AreaOfUse Of(Kind kind, int code) const;

private:
    struct Usage {
        int extent = 0;
        int scope = 0;
    };
    struct Extent {
        QString name;
        Box box;
    };

    QHash<int, Extent> m_extents;
    QHash<int, QString> m_scopes;
    QHash<int, Usage> m_usages[3]; // by Kind
};
