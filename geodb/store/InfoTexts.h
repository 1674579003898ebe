#pragma once

#include "store/Records.h"

#include <QString>
#include <QStringList>

// Information texts of stored entries, as a surveyor reads them in the information panes:
// lines end in "\r\n", each indent level is one tab.
namespace InfoTexts {

// The datum transformation methods in index order (DtfMethodIndex).
const QStringList& DtfMethodNames();
// Index of a method name compared without regard to case; -1 when unknown.
int DtfMethodIndex(const QString& name);
// The method's name, or an empty string for an index outside the list.
QString DtfMethodName(int index);
// The name of a projection method id, or an empty string.
QString PrjMethodName(int methodId);

// First line a heading, then the six defining values and the EPSG code.
QString Ellipsoid(const EllipsoidRecord& ellipsoid);
// name + "\t" + "Metric Conversion Factor:" + metres per unit ("%f") + "\r\n" + "\t" +
// "Description: " + description + "\r\n".
QString UnitDescription(const UnitRecord& unit);
// The unit's description, or one built from its name and factor when it has none.
QString UnitDescriptionText(const UnitRecord& unit);
QString Dtf(const DtfRecord& dtf);
// With a system name, the text says which stored system uses the projection.
QString Projection(const ProjectionRecord& projection, const QString& group = QString(),
                   const QString& system = QString());
// The parts that could not be found are named as missing.
QString System(const SystemRecord& system, const DtfRecord* dtf, const ProjectionRecord* projection,
               const UnitRecord* unit);

// A stored coordinate system that uses an entry, and the projects marked as using it.
struct SystemUse {
    QString group;
    QString system;
    QStringList projects;
};
// The lines that tell who shares a datum transformation or a projection ("what" names the
// kind): the user systems one by one with their projects, the pre-defined ones as a count.
QString Users(const QString& what, const QList<SystemUse>& users, int predefinedCount);
// The line of a system's information text that names the projects using it (none: empty).
QString Projects(const QStringList& projects);

// The short texts the overview and the command-line tool share.
QString GeoidSummary(const SystemRecord& system);
QString PostSummary(const PostCorrection& post, const QString& unitSuffix);

} // namespace InfoTexts
