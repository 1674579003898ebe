#pragma once

#include "api/GeoTypes.h"

#include <QHash>

// The persistent geodetic database: groups of coordinate systems, stored systems,
// ellipsoids, datum transformations (DTF), projections, units, geoid and post models.
// Query operations answer empty strings or lists for unknown names; name checks answer
// false. A query that cannot be read (a damaged file) answers the same, never a partial
// answer, and LastError() then says why: it is empty after every operation that succeeded.
// Names compare without regard to case (full case folding: "Gauß" is "GAUSS"). Operations
// keep the declared order.
class OrvGeoDatabaseBase {
public:
    virtual ~OrvGeoDatabaseBase() = default;

    // Unit: suffix, metres per unit, unit category (8 = length) and description.
    virtual bool GetUnitDefinition(const QString& unitName, QString& suffix, double& metersPerUnit,
                                   int& category, QString& description) = 0;
    virtual void GetGroupNames(QStringList& out, int dbType = GEODB_ALL) = 0;
    virtual void GetSystemNames(QStringList& out, const QString& group) = 0;
    virtual void GetUnitNames(QStringList& out) = 0;
    virtual void GetEllipsoidNames(QStringList& out) = 0;
    // True when a stored system uses the projection; group and system are returned.
    virtual bool FindProjectionSystem(const QString& prjName, QString& group, QString& system) = 0;
    virtual QString GetSystemProjectionName(QString& out, const QString& group,
                                            const QString& system) = 0;
    virtual void GetProjectionNamesOfMethod(QStringList& out, const QString& method) = 0;
    virtual void GetDtfNames(QStringList& out, const QString& srcEllipsoid,
                             const QString& desEllipsoid) = 0;
    virtual QString GetSystemDtfName(QString& out, const QString& group, const QString& system) = 0;
    virtual QString GetCoordSysUnitName(const QString& group, const QString& system) = 0;
    virtual QString GetCoordSysPrjMethod(const QString& group, const QString& system) = 0;
    virtual QString GetProjectionMethodName(QString& out, const QString& projection) = 0;
    virtual QString GetProjectionUnit(QString& out, const QString& projection) = 0;
    virtual void GetProjectionParameters(const QString& prjName, PrjParamBlock& params,
                                         QStringList& values, QStringList& names,
                                         QList<unsigned>& types) = 0;
    virtual QString GetDtfAuxText(QString& out, const QString& dtf) = 0;
    virtual bool GetEllipsoidValues(const QString& ellipsoidName, EllipsoidValues& values) = 0;
    virtual bool GetDtfEllipsoids(const QString& dtfName, QString& localEllipsoidName,
                                  EllipsoidValues& values) = 0;
    // Method name, the fifteen values, two further values (accuracy in metres and the
    // EPSG code of the operation, 0 for user entries), the option byte (DtfOption) and two
    // trailing values (default observation epoch as a decimal year, 0 = none; reserved).
    virtual bool GetDtfParameters(const QString& dtfName, QString& method, DtfValues& values,
                                  std::array<double, 2>& further, unsigned char& option,
                                  std::array<double, 2>& trailing) = 0;
    virtual void GetDtfEllipsoidNames(const QString& dtf, QString& srcEllipsoid,
                                      QString& desEllipsoid) = 0;
    virtual QString GetDtfExtraText(QString& out, const QString& dtfName) = 0;
    virtual QString GetDtfDescription(QString& out, const QString& dtfName) = 0;
    virtual QString GetSatelliteEllipsoidName(QString& out) = 0;
    virtual bool GroupNameExists(const QString& group, int dbType = GEODB_ALL) = 0;
    virtual bool SystemNameExists(const QString& name, int dbType = GEODB_ALL) = 0;
    virtual bool IsDtfOfType(const QString& dtfName, int type = GEODB_SYSTEM) = 0;
    virtual bool UnitNameExists(const QString& name, int scope = GEODB_ALL) = 0;
    virtual bool IsPrjOfType(const QString& prjName, int type = GEODB_SYSTEM) = 0;
    virtual bool IsDtfStoredOfType(const QString& dtfName, int type = GEODB_USER) = 0;
    virtual bool IsPrjStoredOfType(const QString& prjName, int type = GEODB_USER) = 0;
    virtual QString GetDtfInfoText(QString& out, const QString& dtf, int flag = 1) = 0;
    // The first line is a heading.
    virtual QString GetEllipsoidInfoText(QString& out, const QString& ellipsoid) = 0;
    virtual QString GetSystemInfoText(QString& out, const QString& group, const QString& system,
                                      const QString& s1, const QString& s2, const QString& s3,
                                      const QString& s4, const QString& s5) = 0;
    virtual QString GetProjectionInfoText(const QString& prjName) = 0;
    // Arguments are the group and system FindProjectionSystem returned.
    virtual QString GetSystemProjectionInfoText(const QString& group, const QString& system,
                                                int flag = 1) = 0;
    // "name", a tab, then the description.
    virtual QString GetUnitDescription(QString& out, const QString& unitName) = 0;
    virtual QString GetGeoidModelName(const QString& group, const QString& system) = 0;
    virtual QString GetCoordSysGeoidKeys(const QString& group, const QString& system) = 0;
    virtual QString GetGeoidModelFile(const QString& group, const QString& system) = 0;
    virtual bool GetPostTranslation(const QString& group, const QString& system, double& e,
                                    double& n, double& z) = 0;
    // Origin E, origin N, rotation (arc-seconds), scale factor.
    virtual bool GetPostHorAdjust(const QString& group, const QString& system, double& originE,
                                  double& originN, double& rotation, double& scale) = 0;
    // Origin E, origin N, slope east (ppm), slope north (ppm).
    virtual bool GetPostVertAdjust(const QString& group, const QString& system, double& originE,
                                   double& originN, double& slopeE, double& slopeN) = 0;
    virtual QString GetPostModelFile(const QString& group, const QString& system) = 0;
    virtual QString GetPostModelName(const QString& group, const QString& system) = 0;
    virtual bool SystemHasGeoidModel(const QString& group, const QString& system) = 0;
    virtual bool SystemHasPostCorrection(const QString& group, const QString& system) = 0;
    virtual bool HasPostHorAdjust(const QString& group, const QString& system) = 0;
    virtual bool HasPostVertAdjust(const QString& group, const QString& system) = 0;
    virtual double GetManualGeoidSeparation(const QString& group, const QString& system) = 0;
    // Refused for a pre-defined system and for a system a project still uses.
    virtual bool RemoveSystem(const QString& group, const QString& system) = 0;
    virtual bool AddUnit(const QString& name, double metersPerUnit, const QString& suffix,
                         int category = UNIT_CATEGORY_LENGTH) = 0;

    // --- beyond the dialogs' contract ---

    // Marks (or clears) the use of a stored system by a host project; a used system cannot
    // be removed. The same project may mark a system more than once; one clear releases it.
    virtual bool SetSystemInUse(const QString& group, const QString& system,
                                const QString& projectId, bool inUse) = 0;
    virtual bool IsSystemInUse(const QString& group, const QString& system) = 0;
    // The projects that use a stored system, in the order of their ids; empty for a system
    // no project uses, for an unknown one and for a read that failed (LastError says so).
    virtual QStringList GetSystemProjects(const QString& group, const QString& system) = 0;
    // Chart datum of a stored system's vertical datum transformation (empty = none).
    virtual QString GetChartDatum(const QString& group, const QString& system) = 0;
    // Longitude of a stored system's prime meridian, degrees east of Greenwich (0 = Greenwich).
    virtual double GetPrimeMeridian(const QString& group, const QString& system) = 0;
    // The EPSG codes of the entries of one kind that have one, by name as stored (both
    // databases). Lets the pickers find an entry by its code.
    virtual QHash<QString, int> GetEpsgCodes(GeoEntryKind kind) = 0;
    // Why the last operation failed, in words a surveyor can act on; empty when it
    // succeeded.
    virtual QString LastError() const = 0;
};
