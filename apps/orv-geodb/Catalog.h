#pragma once

#include <QList>
#include <QString>

class GeoStore;

// The entries of the database by kind, to find by name or EPSG code and to list.
namespace Catalog {

enum class Kind { System, Ellipsoid, DatumTransformation, Projection, Unit };

struct Entry {
    QString name;
    QString group; // coordinate systems only
    int epsgCode = 0;
    QString detail; // area of use, method or defining values
    bool user = false;
};

// "systems", "ellipsoids", "dtfs", "projections" or "units" (singular forms and letter case
// do not matter).
bool ParseKind(const QString& text, Kind& kind);
QString KindTitle(Kind kind);
const QList<Kind>& AllKinds();

// Every entry of a kind in both databases, sorted by group and name; false with the reason
// when a database cannot be read.
bool Load(const GeoStore& store, Kind kind, QList<Entry>& entries, QString& error);

// A name as the search compares it: letters and digits only, case folded ("RD New" and
// "rd-new" are both "rdnew").
QString SearchKey(const QString& text);

// The entries whose name contains the text, ignoring case, blanks and punctuation, or whose
// EPSG code it is ("27700" or "EPSG:27700").
QList<Entry> Find(const QList<Entry>& entries, const QString& text);

// The entries as an aligned table with a heading line.
QString Table(Kind kind, const QList<Entry>& entries);

} // namespace Catalog
