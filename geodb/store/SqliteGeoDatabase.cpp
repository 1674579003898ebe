#include "store/SqliteGeoDatabase.h"

#include "api/GeoKeys.h"
#include "api/ProjectionMethods.h"
#include "store/InfoTexts.h"
#include "store/Schema.h"
#include "store/StoreSql.h"
#include "store/SystemWriter.h"

SqliteGeoDatabase::SqliteGeoDatabase(std::unique_ptr<GeoStore> store) : m_store(std::move(store)) {}

SqliteGeoDatabase::~SqliteGeoDatabase() = default;

std::optional<SystemRecord> SqliteGeoDatabase::System(const QString& group,
                                                      const QString& system) const {
    return m_store->FindSystem(group, system);
}

std::optional<ProjectionRecord> SqliteGeoDatabase::Projection(const QString& name) const {
    if (auto prj = m_store->FindProjection(name))
        return prj;
    for (qsizetype at = name.lastIndexOf(QLatin1Char('_')); at > 0;
         at = name.lastIndexOf(QLatin1Char('_'), at - 1)) {
        auto base = m_store->FindProjection(name.left(at));
        const auto unit = m_store->FindUnit(name.mid(at + 1));
        if (!base || !unit)
            continue;
        const auto baseUnit = m_store->FindUnit(base->unitName);
        if (!baseUnit || baseUnit->metersPerUnit <= 0 || unit->metersPerUnit <= 0)
            return std::nullopt;
        const double ratio = baseUnit->metersPerUnit / unit->metersPerUnit;
        base->name = name;
        base->unitName = unit->name;
        base->epsgCode = 0;
        base->scope = 0; // stored nowhere yet
        for (PrjParamRecord& p : base->params) {
            if (p.type != PRM_LENGTH)
                continue;
            p.value *= ratio;
            p.valueText = QString::number(p.value, 'f', 6);
        }
        return base;
    }
    return std::nullopt;
}

QStringList SqliteGeoDatabase::NamesInScope(const QString& sql, int scope,
                                            const QVariantList& values) {
    QStringList names;
    for (const auto& [db, where] : StoreSql::Databases(*m_store, scope))
        names += StoreSql::Column(db, sql, values);
    StoreSql::SortNames(names);
    return names;
}

bool SqliteGeoDatabase::GetUnitDefinition(const QString& unitName, QString& suffix,
                                          double& metersPerUnit, int& category,
                                          QString& description) {
    const auto unit = m_store->FindUnit(unitName);
    if (!unit)
        return false;
    suffix = unit->suffix;
    metersPerUnit = unit->metersPerUnit;
    category = unit->category;
    description = unit->description;
    return true;
}

void SqliteGeoDatabase::GetGroupNames(QStringList& out, int dbType) {
    out = NamesInScope(QStringLiteral("SELECT name FROM sysgroup"), dbType);
}

void SqliteGeoDatabase::GetSystemNames(QStringList& out, const QString& group) {
    out = NamesInScope(QStringLiteral("SELECT c.name FROM coordsys c JOIN sysgroup g "
                                      "ON g.id = c.group_id WHERE g.name_key = ?"),
                       GEODB_ALL, {OrvSchema::NameKey(group)});
}

void SqliteGeoDatabase::GetUnitNames(QStringList& out) {
    out = NamesInScope(QStringLiteral("SELECT name FROM unit"), GEODB_ALL);
}

void SqliteGeoDatabase::GetEllipsoidNames(QStringList& out) {
    out = NamesInScope(QStringLiteral("SELECT name FROM ellipsoid"), GEODB_ALL);
}

bool SqliteGeoDatabase::FindProjectionSystem(const QString& prjName, QString& group,
                                             QString& system) {
    const auto prj = m_store->FindProjection(prjName);
    if (!prj)
        return false;
    // The first system by name, user systems before pre-defined ones.
    for (int scope : {GEODB_USER, GEODB_SYSTEM}) {
        for (const auto& [db, where] : StoreSql::Databases(*m_store, scope)) {
            QSqlQuery q(db);
            q.setForwardOnly(true);
            if (StoreSql::Run(q,
                              QStringLiteral("SELECT g.name, c.name FROM coordsys c JOIN sysgroup "
                                             "g ON g.id = c.group_id WHERE c.projection_name = ? "
                                             "ORDER BY c.name_key LIMIT 1"),
                              {prj->name}) &&
                q.next()) {
                group = q.value(0).toString();
                system = q.value(1).toString();
                return true;
            }
        }
    }
    return false;
}

QString SqliteGeoDatabase::GetSystemProjectionName(QString& out, const QString& group,
                                                   const QString& system) {
    const auto s = System(group, system);
    out = s ? s->projectionName : QString();
    return out;
}

void SqliteGeoDatabase::GetProjectionNamesOfMethod(QStringList& out, const QString& method) {
    out.clear();
    const ProjectionMethods::Method* m = ProjectionMethods::ByName(method);
    if (!m)
        return;
    out = NamesInScope(QStringLiteral("SELECT name FROM projection WHERE method_id = ?"), GEODB_ALL,
                       {m->id});
}

void SqliteGeoDatabase::GetDtfNames(QStringList& out, const QString& srcEllipsoid,
                                    const QString& desEllipsoid) {
    out = NamesInScope(QStringLiteral("SELECT name FROM dtf WHERE src_ellipsoid_key = ? AND "
                                      "dst_ellipsoid_key = ?"),
                       GEODB_ALL,
                       {OrvSchema::NameKey(srcEllipsoid), OrvSchema::NameKey(desEllipsoid)});
}

QString SqliteGeoDatabase::GetSystemDtfName(QString& out, const QString& group,
                                            const QString& system) {
    const auto s = System(group, system);
    out = s ? s->dtfName : QString();
    return out;
}

QString SqliteGeoDatabase::GetCoordSysUnitName(const QString& group, const QString& system) {
    const auto s = System(group, system);
    return s ? s->unitName : QString();
}

QString SqliteGeoDatabase::GetCoordSysPrjMethod(const QString& group, const QString& system) {
    const auto s = System(group, system);
    if (!s)
        return QString();
    QString method;
    return GetProjectionMethodName(method, s->projectionName);
}

QString SqliteGeoDatabase::GetProjectionMethodName(QString& out, const QString& projection) {
    const auto prj = Projection(projection);
    out = prj ? InfoTexts::PrjMethodName(prj->methodId) : QString();
    return out;
}

QString SqliteGeoDatabase::GetProjectionUnit(QString& out, const QString& projection) {
    const auto prj = Projection(projection);
    out = prj ? prj->unitName : QString();
    return out;
}

void SqliteGeoDatabase::GetProjectionParameters(const QString& prjName, PrjParamBlock& params,
                                                QStringList& values, QStringList& names,
                                                QList<unsigned>& types) {
    params = PrjParamBlock{};
    values.clear();
    names.clear();
    types.clear();
    const auto prj = Projection(prjName);
    if (!prj)
        return;
    for (const PrjParamRecord& p : prj->params) {
        if (params.count < PrjParamBlock::MaxParams)
            params.values[params.count++] = p.value;
        values << p.valueText;
        names << p.name;
        types << p.type;
    }
}

QString SqliteGeoDatabase::GetDtfAuxText(QString& out, const QString& dtf) {
    return GetDtfExtraText(out, dtf);
}

bool SqliteGeoDatabase::GetEllipsoidValues(const QString& ellipsoidName, EllipsoidValues& values) {
    const auto e = m_store->FindEllipsoid(ellipsoidName);
    if (!e)
        return false;
    values = e->values;
    return true;
}

bool SqliteGeoDatabase::GetDtfEllipsoids(const QString& dtfName, QString& localEllipsoidName,
                                         EllipsoidValues& values) {
    const auto dtf = m_store->FindDtf(dtfName);
    if (!dtf)
        return false;
    const auto e = m_store->FindEllipsoid(dtf->dstEllipsoid);
    if (!e)
        return false;
    localEllipsoidName = e->name;
    values = e->values;
    return true;
}

bool SqliteGeoDatabase::GetDtfParameters(const QString& dtfName, QString& method, DtfValues& values,
                                         std::array<double, 2>& further, unsigned char& option,
                                         std::array<double, 2>& trailing) {
    const auto dtf = m_store->FindDtf(dtfName);
    if (!dtf)
        return false;
    method = InfoTexts::DtfMethodName(dtf->methodIndex);
    values = dtf->values;
    further = {dtf->accuracy, double(dtf->epsgCode)};
    option = dtf->option;
    trailing = {dtf->obsEpoch, dtf->trailing2};
    return true;
}

void SqliteGeoDatabase::GetDtfEllipsoidNames(const QString& dtf, QString& srcEllipsoid,
                                             QString& desEllipsoid) {
    const auto d = m_store->FindDtf(dtf);
    srcEllipsoid = d ? d->srcEllipsoid : QString();
    desEllipsoid = d ? d->dstEllipsoid : QString();
}

QString SqliteGeoDatabase::GetDtfExtraText(QString& out, const QString& dtfName) {
    const auto d = m_store->FindDtf(dtfName);
    out = d ? d->extraText : QString();
    return out;
}

QString SqliteGeoDatabase::GetDtfDescription(QString& out, const QString& dtfName) {
    const auto d = m_store->FindDtf(dtfName);
    out = d ? d->description : QString();
    return out;
}

QString SqliteGeoDatabase::GetSatelliteEllipsoidName(QString& out) {
    out = QStringLiteral("WGS 84");
    return out;
}

bool SqliteGeoDatabase::GroupNameExists(const QString& group, int dbType) {
    for (const auto& [db, where] : StoreSql::Databases(*m_store, dbType)) {
        if (StoreSql::HasRow(db, QStringLiteral("SELECT 1 FROM sysgroup WHERE name_key = ?"),
                             {OrvSchema::NameKey(group)}))
            return true;
    }
    return false;
}

bool SqliteGeoDatabase::SystemNameExists(const QString& name, int dbType) {
    for (const auto& [db, where] : StoreSql::Databases(*m_store, dbType)) {
        if (StoreSql::HasRow(db, QStringLiteral("SELECT 1 FROM coordsys WHERE name_key = ?"),
                             {OrvSchema::NameKey(name)}))
            return true;
    }
    return false;
}

bool SqliteGeoDatabase::IsDtfOfType(const QString& dtfName, int type) {
    return m_store->FindDtf(dtfName, type).has_value();
}

bool SqliteGeoDatabase::UnitNameExists(const QString& name, int scope) {
    for (const auto& [db, where] : StoreSql::Databases(*m_store, scope)) {
        if (StoreSql::HasRow(db, QStringLiteral("SELECT 1 FROM unit WHERE name_key = ?"),
                             {OrvSchema::NameKey(name)}))
            return true;
    }
    return false;
}

bool SqliteGeoDatabase::IsPrjOfType(const QString& prjName, int type) {
    for (const auto& [db, where] : StoreSql::Databases(*m_store, type)) {
        if (StoreSql::HasRow(db, QStringLiteral("SELECT 1 FROM projection WHERE name_key = ?"),
                             {OrvSchema::NameKey(prjName)}))
            return true;
    }
    return false;
}

bool SqliteGeoDatabase::IsDtfStoredOfType(const QString& dtfName, int type) {
    return IsDtfOfType(dtfName, type);
}

bool SqliteGeoDatabase::IsPrjStoredOfType(const QString& prjName, int type) {
    return IsPrjOfType(prjName, type);
}

QString SqliteGeoDatabase::UsersText(const QString& column, const QString& name,
                                     const QString& what) const {
    // A user entry is used by user systems only; a pre-defined one by both.
    QList<InfoTexts::SystemUse> users;
    int predefined = 0;
    const QString systems = QStringLiteral("SELECT g.name, c.name, c.name_key FROM coordsys c "
                                           "JOIN sysgroup g ON g.id = c.group_id WHERE c.%1 = ? "
                                           "ORDER BY g.name_key, c.name_key")
                                .arg(column);
    QSqlQuery q(m_store->userDb());
    q.setForwardOnly(true);
    if (StoreSql::Run(q, systems, {name})) {
        while (q.next()) {
            InfoTexts::SystemUse use{q.value(0).toString(), q.value(1).toString(), {}};
            use.projects = StoreSql::Column(
                m_store->userDb(),
                QStringLiteral(
                    "SELECT project FROM system_use WHERE system_key = ? ORDER BY project"),
                {q.value(2)});
            users << use;
        }
    }
    QSqlQuery count(m_store->systemDb());
    if (StoreSql::Run(count,
                      QStringLiteral("SELECT COUNT(*) FROM coordsys WHERE %1 = ?").arg(column),
                      {name}) &&
        count.next())
        predefined = count.value(0).toInt();
    return InfoTexts::Users(what, users, predefined);
}

QString SqliteGeoDatabase::GetDtfInfoText(QString& out, const QString& dtf, int /*flag*/) {
    const auto d = m_store->FindDtf(dtf);
    out = d ? InfoTexts::Dtf(*d) + UsersText(QStringLiteral("dtf_name"), d->name,
                                             QStringLiteral("datum transformation"))
            : QString();
    return out;
}

QString SqliteGeoDatabase::GetEllipsoidInfoText(QString& out, const QString& ellipsoid) {
    const auto e = m_store->FindEllipsoid(ellipsoid);
    out = e ? InfoTexts::Ellipsoid(*e) : QString();
    return out;
}

QString SqliteGeoDatabase::GetSystemInfoText(QString& out, const QString& group,
                                             const QString& system, const QString&, const QString&,
                                             const QString&, const QString&, const QString&) {
    out.clear();
    const auto s = System(group, system);
    if (!s)
        return out;
    const auto dtf = m_store->FindDtf(s->dtfName);
    const auto prj = m_store->FindProjection(s->projectionName);
    const auto unit = m_store->FindUnit(s->unitName);
    out = InfoTexts::System(*s, dtf ? &*dtf : nullptr, prj ? &*prj : nullptr,
                            unit ? &*unit : nullptr);
    return out;
}

QString SqliteGeoDatabase::GetProjectionInfoText(const QString& prjName) {
    const auto prj = Projection(prjName);
    return prj ? InfoTexts::Projection(*prj) + UsersText(QStringLiteral("projection_name"),
                                                         prj->name, QStringLiteral("projection"))
               : QString();
}

QString SqliteGeoDatabase::GetSystemProjectionInfoText(const QString& group, const QString& system,
                                                       int /*flag*/) {
    const auto s = System(group, system);
    if (!s)
        return QString();
    const auto prj = m_store->FindProjection(s->projectionName);
    return prj ? InfoTexts::Projection(*prj, s->group, s->name) +
                     UsersText(QStringLiteral("projection_name"), prj->name,
                               QStringLiteral("projection"))
               : QString();
}

QString SqliteGeoDatabase::GetUnitDescription(QString& out, const QString& unitName) {
    const auto unit = m_store->FindUnit(unitName);
    out = unit ? InfoTexts::UnitDescription(*unit) : QString();
    return out;
}

QString SqliteGeoDatabase::GetGeoidModelName(const QString& group, const QString& system) {
    const auto s = System(group, system);
    return s ? s->geoidMethod : QString();
}

QString SqliteGeoDatabase::DefaultGeoidKeys() {
    // What the editor offers a system for its geoid: every key but none, the legacy models
    // and the post-correction methods.
    QStringList keys;
    for (int i = 1; i < GeoidmodelTypeKeyCount; ++i) {
        if ((i >= 8 && i <= 12) || i == 25 || i == 29 || i == 30)
            continue;
        keys << QString::fromWCharArray(GeoidmodelTypeKeys[i]);
    }
    return keys.join(QLatin1Char(','));
}

QString SqliteGeoDatabase::GetCoordSysGeoidKeys(const QString& group, const QString& system) {
    const auto s = System(group, system);
    if (!s)
        return QString();
    return s->geoidKeys.isEmpty() ? DefaultGeoidKeys() : s->geoidKeys;
}

QString SqliteGeoDatabase::GetGeoidModelFile(const QString& group, const QString& system) {
    const auto s = System(group, system);
    return s ? s->geoidFile : QString();
}

QString SqliteGeoDatabase::GetChartDatum(const QString& group, const QString& system) {
    const auto s = System(group, system);
    return s ? s->chartDatum : QString();
}

double SqliteGeoDatabase::GetPrimeMeridian(const QString& group, const QString& system) {
    const auto s = System(group, system);
    return s ? s->primeMeridian : 0.0;
}

bool SqliteGeoDatabase::GetPostTranslation(const QString& group, const QString& system, double& e,
                                           double& n, double& z) {
    const auto s = System(group, system);
    if (!s)
        return false;
    e = s->post.e;
    n = s->post.n;
    z = s->post.z;
    return true;
}

bool SqliteGeoDatabase::GetPostHorAdjust(const QString& group, const QString& system,
                                         double& originE, double& originN, double& rotation,
                                         double& scale) {
    const auto s = System(group, system);
    if (!s)
        return false;
    originE = s->post.horOriginE;
    originN = s->post.horOriginN;
    rotation = s->post.horRotation;
    scale = s->post.horScale;
    return true;
}

bool SqliteGeoDatabase::GetPostVertAdjust(const QString& group, const QString& system,
                                          double& originE, double& originN, double& slopeE,
                                          double& slopeN) {
    const auto s = System(group, system);
    if (!s)
        return false;
    originE = s->post.vertOriginE;
    originN = s->post.vertOriginN;
    slopeE = s->post.vertSlopeE;
    slopeN = s->post.vertSlopeN;
    return true;
}

QString SqliteGeoDatabase::GetPostModelFile(const QString& group, const QString& system) {
    const auto s = System(group, system);
    return s ? s->post.modelFile : QString();
}

QString SqliteGeoDatabase::GetPostModelName(const QString& group, const QString& system) {
    // As stored: the dialogs themselves show an older "OSTN02" as "OSTN" together with the
    // geoid model file, which holds that shift model.
    const auto s = System(group, system);
    return s ? s->post.modelName : QString();
}

bool SqliteGeoDatabase::SystemHasGeoidModel(const QString& group, const QString& system) {
    const auto s = System(group, system);
    return s && s->geoidOn && !s->geoidMethod.isEmpty();
}

bool SqliteGeoDatabase::SystemHasPostCorrection(const QString& group, const QString& system) {
    const auto s = System(group, system);
    return s && (s->post.on || s->post.horOn || s->post.vertOn);
}

bool SqliteGeoDatabase::HasPostHorAdjust(const QString& group, const QString& system) {
    const auto s = System(group, system);
    return s && s->post.horOn;
}

bool SqliteGeoDatabase::HasPostVertAdjust(const QString& group, const QString& system) {
    const auto s = System(group, system);
    return s && s->post.vertOn;
}

double SqliteGeoDatabase::GetManualGeoidSeparation(const QString& group, const QString& system) {
    const auto s = System(group, system);
    return s ? s->geoidSeparation : 0.0;
}

bool SqliteGeoDatabase::RemoveSystem(const QString& group, const QString& system) {
    m_lastError.clear();
    return SystemWriter::Remove(*m_store, group, system, &m_lastError);
}

bool SqliteGeoDatabase::AddUnit(const QString& name, double metersPerUnit, const QString& suffix,
                                int category) {
    m_lastError.clear();
    return SystemWriter::AddUnit(*m_store, name, metersPerUnit, suffix, category, &m_lastError);
}

bool SqliteGeoDatabase::SetSystemInUse(const QString& group, const QString& system,
                                       const QString& projectId, bool inUse) {
    m_lastError.clear();
    return SystemWriter::SetInUse(*m_store, group, system, projectId, inUse, &m_lastError);
}

bool SqliteGeoDatabase::IsSystemInUse(const QString& group, const QString& system) {
    const auto s = System(group, system);
    return s && SystemWriter::IsInUse(*m_store, s->name);
}

QHash<QString, int> SqliteGeoDatabase::GetEpsgCodes(GeoEntryKind kind) {
    QString table;
    switch (kind) {
    case GeoEntryKind::Ellipsoid:
        table = QStringLiteral("ellipsoid");
        break;
    case GeoEntryKind::DatumTransformation:
        table = QStringLiteral("dtf");
        break;
    case GeoEntryKind::Projection:
        table = QStringLiteral("projection");
        break;
    case GeoEntryKind::Unit:
        table = QStringLiteral("unit");
        break;
    case GeoEntryKind::CoordSys:
        table = QStringLiteral("coordsys");
        break;
    }
    QHash<QString, int> codes;
    for (const auto& [db, where] : StoreSql::Databases(*m_store, GEODB_ALL)) {
        QSqlQuery q(db);
        q.setForwardOnly(true);
        if (!StoreSql::Run(
                q,
                QStringLiteral("SELECT name, epsg_code FROM %1 WHERE epsg_code <> 0").arg(table)))
            continue;
        while (q.next())
            codes.insert(q.value(0).toString(), q.value(1).toInt());
    }
    return codes;
}
