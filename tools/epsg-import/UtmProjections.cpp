#include "UtmProjections.h"

#include "EpsgCodes.h"
#include "EpsgValues.h"
#include "ImportedNames.h"
#include "ProjectionWriter.h"

#include "api/GeoKeys.h"
#include "api/ProjectionMethods.h"
#include "util/UtmZones.h"

namespace UtmProjections {

namespace {

constexpr int UtmNorthFirst = 16001; // UTM zone 1N
constexpr int UtmSouthFirst = 16101; // UTM zone 1S
constexpr int ParamCentralMeridian = 8802;
constexpr int ParamFalseNorthing = 8807;

int ConversionCode(const Zone& z) {
    return (z.south ? UtmSouthFirst : UtmNorthFirst) + z.zone - 1;
}

QList<PrjParamRecord> ParamsOf(const Zone& z) {
    const QString zoneKey = QString::fromWCharArray(projectionParamKeys[ProjectionParamZoneKey]);
    const QString hemisphereKey =
        QString::fromWCharArray(projectionParamKeys[ProjectionParamHemisphereKey]);
    QList<PrjParamRecord> rows;
    for (const ProjectionMethods::Param& param :
         ProjectionMethods::ById(ProjectionMethods::UtmId)->params) {
        PrjParamRecord row{QString::fromLatin1(param.name), param.defaultValue, {}, param.type};
        if (param.epsgCode == ParamCentralMeridian)
            row.value = UtmZones::CentralMeridian(z.zone);
        else if (param.epsgCode == ParamFalseNorthing)
            row.value = z.south ? 10000000.0 : 0.0;
        if (row.name == zoneKey) {
            row.value = z.zone;
            row.valueText = UtmZones::ZoneText(z.zone);
        } else if (row.name == hemisphereKey) {
            row.value = z.south;
            row.valueText = z.south ? UtmZones::SouthernText() : UtmZones::NorthernText();
        } else {
            row.valueText = EpsgValues::ParamText(row.value, row.type);
        }
        rows.append(row);
    }
    return rows;
}

} // namespace

std::optional<Zone> ZoneOfConversion(int code) {
    if (code >= UtmNorthFirst && code < UtmNorthFirst + UtmZones::ZoneCount)
        return Zone{code - UtmNorthFirst + 1, false};
    if (code >= UtmSouthFirst && code < UtmSouthFirst + UtmZones::ZoneCount)
        return Zone{code - UtmSouthFirst + 1, true};
    return std::nullopt;
}

bool Write(ProjectionWriter& writer, ImportedNames& names) {
    for (const bool south : {false, true}) {
        for (int zone = 1; zone <= UtmZones::ZoneCount; ++zone) {
            const Zone z{zone, south};
            ProjectionRecord r;
            r.name = writer.UniqueName(
                QStringLiteral("UTM Zone-%1%2").arg(zone).arg(QChar(south ? u'S' : u'N')), 0);
            r.methodId = ProjectionMethods::UtmId;
            r.unitName = EpsgCodes::MetreName;
            r.epsgCode = ConversionCode(z);
            r.epsgMethodCode = EpsgCodes::MethodTransverseMercator;
            r.description =
                QStringLiteral("Universal Transverse Mercator zone %1, %2 hemisphere")
                    .arg(zone)
                    .arg(south ? QStringLiteral("southern") : QStringLiteral("northern"));
            r.params = ParamsOf(z);
            if (!writer.Write(r))
                return false;
            names.utmProjections.insert(r.epsgCode, r.name);
        }
    }
    return true;
}

} // namespace UtmProjections
