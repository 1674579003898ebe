#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <optional>

class ImportSession;

// One row of proj.db's unit_of_measure table.
struct Uom {
    QString name;
    QString type; // length, angle, scale, time
    std::optional<double> factor;
    bool deprecated = false;
};

// proj.db's EPSG units and the conversions between them. Every value the import takes over
// goes through this table, so all of them use proj.db's own factors.
class UnitTable {
public:
    // False (reported on the session) when proj.db cannot be read or lacks a unit the
    // datum transformations are stored in.
    bool Load(ImportSession& session);

    // An unknown code gives an empty unit (no type, no factor).
    Uom Find(int code) const { return m_uoms.value(code); }
    QList<int> SortedCodes() const;

    // value in unit uom, expressed in unit target (both of the same kind): value *
    // factor(uom) / factor(target). A value already in the target unit is taken over as
    // published, bit for bit. Nothing when a factor is missing.
    std::optional<double> Convert(double value, int uom, int target) const;
    // An angle in decimal degrees; the sexagesimal units are read from their decimal digits.
    std::optional<double> ToDegrees(double value, int uom) const;

private:
    QHash<int, Uom> m_uoms;
};
