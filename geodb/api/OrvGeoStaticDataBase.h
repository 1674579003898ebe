#pragma once

#include "api/GeoTypes.h"

// The working record of the coordinate system being built or edited, the static method
// lists, and saving. Strings are copied on set and get. Operations keep the declared order.
class OrvGeoStaticDataBase {
public:
    virtual ~OrvGeoStaticDataBase() = default;

    // Writes the system with its new or changed datum transformation, projection and unit
    // into the user database in one transaction; false leaves the database as it was.
    virtual bool SaveCoordSys() = 0;
    virtual void GetDtfMethodNames(QStringList& out) = 0;
    virtual int GetDtfMethodIndex(const QString& method) = 0;
    virtual void GetPrjMethodNames(QStringList& out) = 0;
    virtual int GetPrjMethodId(const QString& prjMethodName) = 0;
    virtual bool IsUtmMethod(int prjMethodId) = 0;
    virtual void AssignSystemName(const QString& name, const QString& other = QString()) = 0;
    virtual void SetGroupName(const QString& group, const QString& other = QString()) = 0;
    virtual void SetDtfName(const QString& name, const QString& other = QString()) = 0;
    virtual void SelectLocalEllipsoid(const QString& ellipsoid,
                                      const QString& other = QString()) = 0;
    virtual void SetUnitName(const QString& unit, const QString& other = QString()) = 0;
    virtual void SetProjectionName(const QString& prjName, short methodId) = 0;
    virtual void SetDtfExtraText(const QString& text) = 0;
    virtual void SetDtfMethod(const QString& method, int index) = 0;
    virtual void SetUnitDefinition(double metersPerUnit, const QString& description,
                                   int category) = 0;
    virtual void SetUnitFactor(double metersPerUnit) = 0;
    // The fifteen values, the option byte and the two trailing values of GetDtfParameters.
    virtual void SetDtfParameters(const DtfValues& values, unsigned char option, double trailing1,
                                  double trailing2) = 0;
    virtual void SetProjectionParameters(const PrjParamBlock& params, const QStringList& values,
                                         const QStringList& names,
                                         const QList<unsigned>& types) = 0;
    virtual void SetLocalEllipsoidValues(const EllipsoidValues& values) = 0;
    virtual QString GetAssignedGroupName(QString& out) = 0;
    virtual QString GetAssignedSystemName(QString& out) = 0;
    virtual QString GetCurrentDtfName(QString& out) = 0;
    virtual QString GetLocalEllipsoidName(QString& out) = 0;
    virtual QString GetSystemUnit(QString& out) = 0;
    virtual void GetCurrentUnitFactor(double& out) = 0;
    virtual void SetDtfDescription(const QString& text) = 0;
    virtual void SetUnitSuffix(const QString& suffix) = 0;
    virtual QString GetDtfDescription(QString& out) = 0;
    virtual QString GetCurrentUnitDescription(QString& out) = 0;
    // Rich text (HTML) overview of the system being built.
    virtual QString GetOverviewText(QString& out) = 0;
    virtual void SelectSatelliteEllipsoid(const QString& ellipsoid) = 0;
    virtual QString GetSatelliteEllipsoidName(QString& out) = 0;
    virtual void SetProjectionMethod(const QString& methodName) = 0;
    virtual void SetGeoidModelName(const QString& text) = 0; // same field as SetGeoidMethod
    virtual void SetGeoidModelFile(const QString& text) = 0; // same field as SetGeoidFile
    virtual void SetManualGeoidSeparation(double separation) = 0;
    virtual void SetGeoidMethod(const QString& method) = 0;
    virtual void SetGeoidFile(const QString& fileName) = 0;
    virtual void SetChartDatum(const QString& chartDatum) = 0;
    virtual QString GetGeoidMethod(QString& out) = 0;
    virtual QString GetGeoidFile(QString& out) = 0;
    virtual QString GetChartDatum(QString& out) = 0;
    virtual void SetPostText1(const QString& text) = 0; // same field as SetPostModelName
    virtual void SetPostText2(const QString& text) = 0; // same field as SetPostModelFile
    virtual void SetPostTranslation(double e, double n, double z) = 0;
    virtual void GetPostTranslation(double& e, double& n, double& z) = 0;
    virtual void SetPostHorAdjust(double scale, double originE, double originN,
                                  double rotation) = 0;
    virtual void SetPostVertAdjust(double originE, double originN, double slopeE,
                                   double slopeN) = 0;
    virtual void SetPostModelFile(const QString& text) = 0;
    virtual QString GetPostModelFile(QString& out) = 0;
    virtual void SetPostModelName(const QString& text) = 0;
    virtual QString GetPostModelName(QString& out) = 0;
    virtual void SetGeoidEnabled(bool on) = 0;
    virtual void SetPostTranslationOn(bool on) = 0;
    virtual bool IsPostTranslationOn() = 0;
    virtual void SetPostHorAdjustOn(bool on) = 0;
    virtual void SetPostVertAdjustOn(bool on) = 0;
    virtual void SetUtmZoneText(const QString& zoneText) = 0;
    virtual void SetUtmHemisphereText(const QString& hemisphereText) = 0;
    virtual void SetUtmMode(bool on) = 0;
    virtual bool IsMethodUnitFree(int methodId) = 0;

    // --- beyond the dialogs' contract ---

    // Starts a fresh record (all fields empty, satellite ellipsoid the default).
    virtual void Clear() = 0;
    // Fills the record from a stored system, so that editing and saving it again keeps
    // every field the dialogs do not touch.
    virtual bool LoadCoordSys(const QString& group, const QString& system) = 0;
    virtual QString LastError() const = 0;
    // Prime meridian of the system being built, degrees east of Greenwich (0 = Greenwich).
    virtual void SetPrimeMeridian(double degreesEast) = 0;
};
