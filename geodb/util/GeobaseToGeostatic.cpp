#include "util/GeobaseToGeostatic.h"

#include "api/GeoKeys.h"
#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"
#include "util/UtmZones.h"

#include <cmath>

namespace OrvGeoWizard::Utils {

namespace {

// The stored geoid model name in the spelling of the key table. Entry 3 is the generic
// "Geoid Model" of terrain model data: a stored name equal to it stays as stored.
QString GeoidKeySpelling(const QString& stored) {
    for (int i = 0; i < GeoidmodelTypeKeyCount; ++i) {
        if (i == 3)
            continue;
        const QString key = QString::fromWCharArray(GeoidmodelTypeKeys[i]);
        if (key.compare(stored, Qt::CaseInsensitive) == 0)
            return key;
    }
    return stored;
}

// Zone and hemisphere texts of a UTM projection: from its hidden rows when it has them,
// otherwise from its central meridian and false northing.
void UtmTexts(const PrjParamBlock& block, const QStringList& values, const QStringList& names,
              QString& zoneText, QString& hemisphereText) {
    const QString zoneKey = QString::fromWCharArray(projectionParamKeys[ProjectionParamZoneKey]);
    const QString hemiKey =
        QString::fromWCharArray(projectionParamKeys[ProjectionParamHemisphereKey]);
    double meridian = 0;
    double falseNorthing = 0;
    bool haveMeridian = false;
    for (int i = 0; i < names.size(); ++i) {
        const double value = i < block.count ? block.values[i] : 0.0;
        const QString text = i < values.size() ? values[i] : QString();
        if (names[i].compare(zoneKey, Qt::CaseInsensitive) == 0)
            zoneText = text;
        else if (names[i].compare(hemiKey, Qt::CaseInsensitive) == 0)
            hemisphereText = text;
        else if (names[i].compare(QString::fromWCharArray(projectionParamKeys[1]),
                                  Qt::CaseInsensitive) == 0) {
            meridian = value;
            haveMeridian = true;
        } else if (names[i].compare(QString::fromWCharArray(projectionParamKeys[4]),
                                    Qt::CaseInsensitive) == 0)
            falseNorthing = value;
    }
    if (zoneText.isEmpty() && haveMeridian) {
        const int zone = static_cast<int>(std::lround((meridian + 183.0) / 6.0));
        if (zone >= 1 && zone <= UtmZones::ZoneCount)
            zoneText = UtmZones::ZoneText(zone);
    }
    if (hemisphereText.isEmpty())
        hemisphereText = falseNorthing == 0.0 ? UtmZones::NorthernText() : UtmZones::SouthernText();
}

} // namespace

bool GeobaseToGeostatic(const QString& group, const QString& system, const QString& prjMethodName,
                        OrvGeoDatabaseBase* db, OrvGeoStaticDataBase* sd) {
    if (!db || !sd)
        return false;
    QString dtfName;
    db->GetSystemDtfName(dtfName, group, system);
    if (dtfName.isEmpty())
        return false;

    // Ellipsoids.
    QString satellite, local;
    db->GetDtfEllipsoidNames(dtfName, satellite, local);
    if (satellite.isEmpty())
        db->GetSatelliteEllipsoidName(satellite);
    EllipsoidValues ellipsoid{};
    db->GetEllipsoidValues(local, ellipsoid);
    sd->SelectSatelliteEllipsoid(satellite);
    sd->SelectLocalEllipsoid(local);
    sd->SetLocalEllipsoidValues(ellipsoid);
    // Longitudes of a system on a local prime meridian count from it (Paris, Bern, ...).
    sd->SetPrimeMeridian(db->GetPrimeMeridian(group, system));

    // Datum transformation.
    QString dtfMethod, text;
    DtfValues values{};
    std::array<double, 2> further{};
    std::array<double, 2> trailing{};
    unsigned char option = 0;
    if (db->GetDtfParameters(dtfName, dtfMethod, values, further, option, trailing)) {
        sd->SetDtfDescription(db->GetDtfDescription(text, dtfName));
        sd->SetDtfExtraText(db->GetDtfExtraText(text, dtfName));
        sd->SetDtfName(dtfName);
        sd->SetDtfMethod(dtfMethod, sd->GetDtfMethodIndex(dtfMethod));
        sd->SetDtfParameters(values, option, trailing[0], trailing[1]);
    }

    // Unit.
    const QString unitName = db->GetCoordSysUnitName(group, system);
    QString suffix, description;
    double factor = 1.0;
    int category = UNIT_CATEGORY_LENGTH;
    const bool knownUnit = db->GetUnitDefinition(unitName, suffix, factor, category, description);
    sd->SetUnitFactor(factor);
    sd->SetUnitName(unitName);
    sd->SetUnitSuffix(suffix);
    if (knownUnit)
        sd->SetUnitDefinition(factor, description, category);

    // Projection: the stored method wins over the caller's, which may be stale.
    QString method = db->GetCoordSysPrjMethod(group, system);
    if (method.isEmpty())
        method = prjMethodName;
    const int methodId = sd->GetPrjMethodId(method);
    QString prjName;
    db->GetSystemProjectionName(prjName, group, system);
    PrjParamBlock block;
    QStringList prmValues, prmNames;
    QList<unsigned> prmTypes;
    db->GetProjectionParameters(prjName, block, prmValues, prmNames, prmTypes);
    sd->SetProjectionMethod(method);
    sd->SetProjectionName(prjName, static_cast<short>(methodId));
    const bool utm = sd->IsUtmMethod(methodId);
    sd->SetUtmMode(utm);
    if (utm) {
        QString zoneText, hemisphereText;
        UtmTexts(block, prmValues, prmNames, zoneText, hemisphereText);
        sd->SetUtmZoneText(zoneText);
        sd->SetUtmHemisphereText(hemisphereText);
    }
    sd->SetProjectionParameters(block, prmValues, prmNames, prmTypes);

    // Geoid model. The wizard copies one system after another into the same static data as
    // the person clicks through the stored systems: every field is written, so that nothing
    // of a system chosen before stays behind (a separation kept from a manual model would
    // come back as soon as that method is chosen again).
    const bool geoid = db->SystemHasGeoidModel(group, system);
    const QString model =
        geoid ? GeoidKeySpelling(db->GetGeoidModelName(group, system)) : QString();
    const bool manual =
        model == QString::fromWCharArray(GeoidmodelTypeKeys[GeoidKey::ManualSeparation]);
    sd->SetGeoidModelName(model);
    sd->SetGeoidModelFile(geoid ? db->GetGeoidModelFile(group, system) : QString());
    sd->SetChartDatum(geoid ? db->GetChartDatum(group, system) : QString());
    sd->SetManualGeoidSeparation(manual ? db->GetManualGeoidSeparation(group, system) : 0.0);
    sd->SetGeoidEnabled(geoid);

    // Post correction.
    double e = 0, n = 0, z = 0;
    const bool post = db->SystemHasPostCorrection(group, system);
    if (post)
        db->GetPostTranslation(group, system, e, n, z);
    sd->SetPostTranslation(e, n, z);
    sd->SetPostTranslationOn(post);
    QString postModel = post ? db->GetPostModelName(group, system) : QString();
    QString postFile = post ? db->GetPostModelFile(group, system) : QString();
    // Older systems name the shift model "OSTN02" and keep it in the geoid model file; the
    // method lists know it as OSTN.
    if (postModel.compare(QStringLiteral("OSTN02"), Qt::CaseInsensitive) == 0) {
        postModel = QString::fromWCharArray(GeoidmodelTypeKeys[GeoidKey::Ostn]);
        if (postFile.isEmpty())
            postFile = db->GetGeoidModelFile(group, system);
    }
    sd->SetPostText1(postModel);
    sd->SetPostText2(postFile);
    double a = 0, b = 0, c = 0, d = 1.0;
    const bool hor = post && db->HasPostHorAdjust(group, system);
    if (hor)
        db->GetPostHorAdjust(group, system, a, b, c, d);
    sd->SetPostHorAdjustOn(hor);
    sd->SetPostHorAdjust(hor ? d : 1.0, hor ? a : 0.0, hor ? b : 0.0, hor ? c : 0.0);
    a = b = c = d = 0;
    const bool vert = post && db->HasPostVertAdjust(group, system);
    if (vert)
        db->GetPostVertAdjust(group, system, a, b, c, d);
    sd->SetPostVertAdjustOn(vert);
    sd->SetPostVertAdjust(a, b, c, d);
    return true;
}

} // namespace OrvGeoWizard::Utils
