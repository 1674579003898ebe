#pragma once

#include <QString>
#include <QStringList>

class QComboBox;

// The UTM zone and hemisphere lists and the parameter rows they write, as the projection
// parameters page and the coordinate system editor show them. In UTM mode five rows carry
// values: latitude and longitude of origin, scale factor, false easting, false northing; the
// zone list writes the central meridian into the longitude row, the hemisphere list the false
// northing into its row.
namespace UtmRows {

constexpr int CentralMeridianRow = 1; // index into the parameter rows
constexpr int FalseNorthingRow = 4;
constexpr int RowCount = 5;
constexpr int FalseNorthingDecimals = 7;

// The stored projection a UTM layout is taken from when there is no projection of its own.
QString TemplateProjection(); // "UTM Zone-30N"

// The 60 zone texts, none selected; "Northern" and "Southern", "Northern" selected.
void FillZoneList(QComboBox* list);
void FillHemisphereList(QComboBox* list);

// The central meridian of a zone text: +meridian for the letter E or e, -meridian for W or
// w; false (meridian untouched) for any other letter or a text that is no zone text.
bool CentralMeridianOfZone(const QString& zoneText, double& meridian);
// The false northing as its row shows it: "%.7f" (0.0000000 or 10000000.0000000).
QString FalseNorthingText(double falseNorthing);

// Selects in the two lists the zone and hemisphere a projection's parameters name (its hidden
// zone and hemisphere parameters, names compared without regard to case) and gives their
// texts; a list whose parameter is missing keeps its selection and its text stays as given.
void SelectZoneAndHemisphere(const QStringList& names, const QStringList& values,
                             QComboBox* zoneList, QComboBox* hemisphereList, QString& zoneText,
                             QString& hemisphereText);

// Whether a parameter name is the library's zone or hemisphere key.
bool IsZoneParameter(const QString& name);
bool IsHemisphereParameter(const QString& name);

} // namespace UtmRows
