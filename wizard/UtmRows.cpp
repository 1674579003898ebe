#include "wizard/UtmRows.h"

#include "api/GeoKeys.h"
#include "util/UtmZones.h"

#include <QComboBox>
#include <QSignalBlocker>

namespace UtmRows {

QString TemplateProjection() {
    return QStringLiteral("UTM Zone-30N");
}

void FillZoneList(QComboBox* list) {
    if (!list)
        return;
    const QSignalBlocker quiet(list);
    list->clear();
    for (int zone = 1; zone <= UtmZones::ZoneCount; ++zone)
        list->addItem(UtmZones::ZoneText(zone));
    list->setCurrentIndex(-1);
}

void FillHemisphereList(QComboBox* list) {
    if (!list)
        return;
    const QSignalBlocker quiet(list);
    list->clear();
    list->addItems({UtmZones::NorthernText(), UtmZones::SouthernText()});
    list->setCurrentIndex(0);
}

bool CentralMeridianOfZone(const QString& zoneText, double& meridian) {
    int zone = 0, degrees = 0;
    QChar letter;
    if (!UtmZones::ParseZoneText(zoneText, zone, degrees, letter))
        return false;
    if (letter == u'E' || letter == u'e')
        meridian = degrees;
    else if (letter == u'W' || letter == u'w')
        meridian = -degrees;
    else
        return false;
    return true;
}

QString FalseNorthingText(double falseNorthing) {
    // the format is built for the decimals, as the rows have always done it
    const QString format = QString::asprintf("%%.%df", FalseNorthingDecimals);
    return QString::asprintf(format.toLatin1().constData(), falseNorthing);
}

bool IsZoneParameter(const QString& name) {
    return name.compare(QString::fromWCharArray(projectionParamKeys[ProjectionParamZoneKey]),
                        Qt::CaseInsensitive) == 0;
}

bool IsHemisphereParameter(const QString& name) {
    return name.compare(QString::fromWCharArray(projectionParamKeys[ProjectionParamHemisphereKey]),
                        Qt::CaseInsensitive) == 0;
}

void SelectZoneAndHemisphere(const QStringList& names, const QStringList& values,
                             QComboBox* zoneList, QComboBox* hemisphereList, QString& zoneText,
                             QString& hemisphereText) {
    for (int i = 0; i < names.size() && i < values.size(); ++i) {
        QComboBox* list = nullptr;
        QString* text = nullptr;
        if (IsZoneParameter(names[i])) {
            list = zoneList;
            text = &zoneText;
        } else if (IsHemisphereParameter(names[i])) {
            list = hemisphereList;
            text = &hemisphereText;
        }
        if (!text)
            continue;
        if (list) {
            const QSignalBlocker quiet(list);
            list->setCurrentIndex(list->findText(values[i], Qt::MatchFixedString));
        }
        *text = values[i];
    }
}

} // namespace UtmRows
