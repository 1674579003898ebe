#pragma once

#include "api/OrvGeoDatabaseBase.h"
#include "store/GeoStore.h"

#include <QVariant>

#include <memory>

// The database object on the two SQLite files of a GeoStore.
class SqliteGeoDatabase final : public OrvGeoDatabaseBase {
public:
    explicit SqliteGeoDatabase(std::unique_ptr<GeoStore> store);
    ~SqliteGeoDatabase() override;

    bool GetUnitDefinition(const QString& unitName, QString& suffix, double& metersPerUnit,
                           int& category, QString& description) override;
    void GetGroupNames(QStringList& out, int dbType = GEODB_ALL) override;
    void GetSystemNames(QStringList& out, const QString& group) override;
    void GetUnitNames(QStringList& out) override;
    void GetEllipsoidNames(QStringList& out) override;
    bool FindProjectionSystem(const QString& prjName, QString& group, QString& system) override;
    QString GetSystemProjectionName(QString& out, const QString& group,
                                    const QString& system) override;
    void GetProjectionNamesOfMethod(QStringList& out, const QString& method) override;
    void GetDtfNames(QStringList& out, const QString& srcEllipsoid,
                     const QString& desEllipsoid) override;
    QString GetSystemDtfName(QString& out, const QString& group, const QString& system) override;
    QString GetCoordSysUnitName(const QString& group, const QString& system) override;
    QString GetCoordSysPrjMethod(const QString& group, const QString& system) override;
    QString GetProjectionMethodName(QString& out, const QString& projection) override;
    QString GetProjectionUnit(QString& out, const QString& projection) override;
    void GetProjectionParameters(const QString& prjName, PrjParamBlock& params, QStringList& values,
                                 QStringList& names, QList<unsigned>& types) override;
    QString GetDtfAuxText(QString& out, const QString& dtf) override;
    bool GetEllipsoidValues(const QString& ellipsoidName, EllipsoidValues& values) override;
    bool GetDtfEllipsoids(const QString& dtfName, QString& localEllipsoidName,
                          EllipsoidValues& values) override;
    bool GetDtfParameters(const QString& dtfName, QString& method, DtfValues& values,
                          std::array<double, 2>& further, unsigned char& option,
                          std::array<double, 2>& trailing) override;
    void GetDtfEllipsoidNames(const QString& dtf, QString& srcEllipsoid,
                              QString& desEllipsoid) override;
    QString GetDtfExtraText(QString& out, const QString& dtfName) override;
    QString GetDtfDescription(QString& out, const QString& dtfName) override;
    QString GetSatelliteEllipsoidName(QString& out) override;
    bool GroupNameExists(const QString& group, int dbType = GEODB_ALL) override;
    bool SystemNameExists(const QString& name, int dbType = GEODB_ALL) override;
    bool IsDtfOfType(const QString& dtfName, int type = GEODB_SYSTEM) override;
    bool UnitNameExists(const QString& name, int scope = GEODB_ALL) override;
    bool IsPrjOfType(const QString& prjName, int type = GEODB_SYSTEM) override;
    bool IsDtfStoredOfType(const QString& dtfName, int type = GEODB_USER) override;
    bool IsPrjStoredOfType(const QString& prjName, int type = GEODB_USER) override;
    QString GetDtfInfoText(QString& out, const QString& dtf, int flag = 1) override;
    QString GetEllipsoidInfoText(QString& out, const QString& ellipsoid) override;
    QString GetSystemInfoText(QString& out, const QString& group, const QString& system,
                              const QString& s1, const QString& s2, const QString& s3,
                              const QString& s4, const QString& s5) override;
    QString GetProjectionInfoText(const QString& prjName) override;
    QString GetSystemProjectionInfoText(const QString& group, const QString& system,
                                        int flag = 1) override;
    QString GetUnitDescription(QString& out, const QString& unitName) override;
    QString GetGeoidModelName(const QString& group, const QString& system) override;
    QString GetCoordSysGeoidKeys(const QString& group, const QString& system) override;
    QString GetGeoidModelFile(const QString& group, const QString& system) override;
    bool GetPostTranslation(const QString& group, const QString& system, double& e, double& n,
                            double& z) override;
    bool GetPostHorAdjust(const QString& group, const QString& system, double& originE,
                          double& originN, double& rotation, double& scale) override;
    bool GetPostVertAdjust(const QString& group, const QString& system, double& originE,
                           double& originN, double& slopeE, double& slopeN) override;
    QString GetPostModelFile(const QString& group, const QString& system) override;
    QString GetPostModelName(const QString& group, const QString& system) override;
    bool SystemHasGeoidModel(const QString& group, const QString& system) override;
    bool SystemHasPostCorrection(const QString& group, const QString& system) override;
    bool HasPostHorAdjust(const QString& group, const QString& system) override;
    bool HasPostVertAdjust(const QString& group, const QString& system) override;
    double GetManualGeoidSeparation(const QString& group, const QString& system) override;
    bool RemoveSystem(const QString& group, const QString& system) override;
    bool AddUnit(const QString& name, double metersPerUnit, const QString& suffix,
                 int category = UNIT_CATEGORY_LENGTH) override;

    bool SetSystemInUse(const QString& group, const QString& system, const QString& projectId,
                        bool inUse) override;
    bool IsSystemInUse(const QString& group, const QString& system) override;
    QStringList GetSystemProjects(const QString& group, const QString& system) override;
    QString GetChartDatum(const QString& group, const QString& system) override;
    double GetPrimeMeridian(const QString& group, const QString& system) override;
    QHash<QString, int> GetEpsgCodes(GeoEntryKind kind) override;
    QString LastError() const override { return m_lastError; }

    // The geoid method keys offered to a system that stores none.
    static QString DefaultGeoidKeys();

private:
    // Starts an operation: LastError() is empty after one that succeeds, and names the
    // database and what went wrong after a read that failed (the operation then answers
    // empty or false, never a partial answer).
    QString* Begin();
    bool Failed() const { return !m_lastError.isEmpty(); }
    std::optional<SystemRecord> System(const QString& group, const QString& system);
    // A stored projection, or one the projection page converted to the wizard's unit and
    // named "<projection>_<unit>" but not saved yet: the stored projection's values with
    // every length converted into that unit.
    std::optional<ProjectionRecord> Projection(const QString& name);
    QStringList NamesInScope(const QString& sql, int scope, const QVariantList& values = {});
    // True when the statement gives a row in a database of the scope.
    bool RowInScope(const QString& sql, int scope, const QVariantList& values);
    // The lines of an information text that tell which stored systems use the datum
    // transformation or projection of that name (column: dtf_name or projection_name).
    QString UsersText(const QString& column, const QString& name, const QString& what) const;

    std::unique_ptr<GeoStore> m_store;
    QString m_lastError;
};
