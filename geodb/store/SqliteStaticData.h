#pragma once

#include "api/OrvGeoStaticDataBase.h"
#include "store/GeoStore.h"
#include "store/SystemWriter.h"

#include <memory>

// The working record of the system being built, saved through SystemWriter.
class SqliteStaticData final : public OrvGeoStaticDataBase {
public:
    explicit SqliteStaticData(std::unique_ptr<GeoStore> store);
    ~SqliteStaticData() override;

    bool SaveCoordSys() override;
    void GetDtfMethodNames(QStringList& out) override;
    int GetDtfMethodIndex(const QString& method) override;
    void GetPrjMethodNames(QStringList& out) override;
    int GetPrjMethodId(const QString& prjMethodName) override;
    bool IsUtmMethod(int prjMethodId) override;
    void AssignSystemName(const QString& name, const QString& other = QString()) override;
    void SetGroupName(const QString& group, const QString& other = QString()) override;
    void SetDtfName(const QString& name, const QString& other = QString()) override;
    void SelectLocalEllipsoid(const QString& ellipsoid, const QString& other = QString()) override;
    void SetUnitName(const QString& unit, const QString& other = QString()) override;
    void SetProjectionName(const QString& prjName, short methodId) override;
    void SetDtfExtraText(const QString& text) override;
    void SetDtfMethod(const QString& method, int index) override;
    void SetUnitDefinition(double metersPerUnit, const QString& description, int category) override;
    void SetUnitFactor(double metersPerUnit) override;
    void SetDtfParameters(const DtfValues& values, unsigned char option, double trailing1,
                          double trailing2) override;
    void SetProjectionParameters(const PrjParamBlock& params, const QStringList& values,
                                 const QStringList& names, const QList<unsigned>& types) override;
    void SetLocalEllipsoidValues(const EllipsoidValues& values) override;
    QString GetAssignedGroupName(QString& out) override;
    QString GetAssignedSystemName(QString& out) override;
    QString GetCurrentDtfName(QString& out) override;
    QString GetLocalEllipsoidName(QString& out) override;
    QString GetSystemUnit(QString& out) override;
    void GetCurrentUnitFactor(double& out) override;
    void SetDtfDescription(const QString& text) override;
    void SetUnitSuffix(const QString& suffix) override;
    QString GetDtfDescription(QString& out) override;
    QString GetCurrentUnitDescription(QString& out) override;
    QString GetOverviewText(QString& out) override;
    void SelectSatelliteEllipsoid(const QString& ellipsoid) override;
    QString GetSatelliteEllipsoidName(QString& out) override;
    void SetProjectionMethod(const QString& methodName) override;
    void SetGeoidModelName(const QString& text) override;
    void SetGeoidModelFile(const QString& text) override;
    void SetManualGeoidSeparation(double separation) override;
    void SetGeoidMethod(const QString& method) override;
    void SetGeoidFile(const QString& fileName) override;
    void SetChartDatum(const QString& chartDatum) override;
    QString GetGeoidMethod(QString& out) override;
    QString GetGeoidFile(QString& out) override;
    QString GetChartDatum(QString& out) override;
    void SetPostText1(const QString& text) override;
    void SetPostText2(const QString& text) override;
    void SetPostTranslation(double e, double n, double z) override;
    void GetPostTranslation(double& e, double& n, double& z) override;
    void SetPostHorAdjust(double scale, double originE, double originN, double rotation) override;
    void SetPostVertAdjust(double originE, double originN, double slopeE, double slopeN) override;
    void SetPostModelFile(const QString& text) override;
    QString GetPostModelFile(QString& out) override;
    void SetPostModelName(const QString& text) override;
    QString GetPostModelName(QString& out) override;
    void SetGeoidEnabled(bool on) override;
    void SetPostTranslationOn(bool on) override;
    bool IsPostTranslationOn() override;
    void SetPostHorAdjustOn(bool on) override;
    void SetPostVertAdjustOn(bool on) override;
    void SetUtmZoneText(const QString& zoneText) override;
    void SetUtmHemisphereText(const QString& hemisphereText) override;
    void SetUtmMode(bool on) override;
    bool IsMethodUnitFree(int methodId) override;

    void Clear() override;
    bool LoadCoordSys(const QString& group, const QString& system) override;
    QString LastError() const override { return m_lastError; }
    void SetPrimeMeridian(double degreesEast) override;

    const SystemDraft& Draft() const { return m_draft; }

private:
    // The record as it is saved: the geoid method and file given last win over the model.
    SystemDraft Resolved() const;
    QString EffectiveGeoidMethod() const;
    QString EffectiveGeoidFile() const;

    std::unique_ptr<GeoStore> m_store;
    SystemDraft m_draft;
    // SetGeoidMethod / SetGeoidFile; empty = the model of SetGeoidModelName / File stands.
    QString m_geoidMethod;
    QString m_geoidFile;
    // Loaded from a stored system (LoadCoordSys, the editor's way): SetDtfParameters then gets
    // the further values where the wizard gives the trailing ones, and the record keeps its
    // trailing values.
    bool m_loadedFromStore = false;
    bool m_keepDtfTrailing = false;
    QString m_lastError;
};
