#include "store/SqliteGeoDatabase.h"

#include "api/GeoKeys.h"
#include "api/ProjectionMethods.h"
#include "store/InfoTexts.h"
#include "store/Schema.h"
#include "store/StoreSql.h"
#include "store/SystemWriter.h"

SqliteGeoDatabase::SqliteGeoDatabase(std::unique_ptr<GeoStore> store) : m_store(std::move(store)) {}

SqliteGeoDatabase::~SqliteGeoDatabase() = default;

QString* SqliteGeoDatabase::Begin() {
    m_lastError.clear();
    return &m_lastError;
}

std::optional<SystemRecord> SqliteGeoDatabase::System(const QString& group, const QString& system) {
    return m_store->FindSystem(group, system, GEODB_ALL, &m_lastError);
}

std::optional<ProjectionRecord> SqliteGeoDatabase::Projection(const QString& name) {
    QString* e = &m_lastError;
    if (auto prj = m_store->FindProjection(name, GEODB_ALL, e); prj || Failed())
        return prj;
    for (qsizetype at = name.lastIndexOf(QLatin1Char('_')); at > 0;
         at = name.lastIndexOf(QLatin1Char('_'), at - 1)) {
        auto base = m_store->FindProjection(name.left(at), GEODB_ALL, e);
        const auto unit = m_store->FindUnit(name.mid(at + 1), GEODB_ALL, e);
        if (Failed())
            return std::nullopt;
        if (!base || !unit)
            continue;
        const auto baseUnit = m_store->FindUnit(base->unitName, GEODB_ALL, e);
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
    for (const auto& [db, where] : StoreSql::Databases(*m_store, scope)) {
        names += StoreSql::Column(db, sql, values, &m_lastError);
        if (Failed())
            return {};
    }
    StoreSql::SortNames(names);
    return names;
}

bool SqliteGeoDatabase::RowInScope(const QString& sql, int scope, const QVariantList& values) {
    for (const auto& [db, where] : StoreSql::Databases(*m_store, scope)) {
        if (StoreSql::HasRow(db, sql, values, &m_lastError))
            return true;
        if (Failed())
            return false;
    }
    return false;
}

bool SqliteGeoDatabase::GetUnitDefinition(const QString& unitName, QString& suffix,
                                          double& metersPerUnit, int& category,
                                          QString& description) {
    const auto unit = m_store->FindUnit(unitName, GEODB_ALL, Begin());
    if (!unit)
        return false;
    suffix = unit->suffix;
    metersPerUnit = unit->metersPerUnit;
    category = unit->category;
    description = unit->description;
    return true;
}

void SqliteGeoDatabase::GetGroupNames(QStringList& out, int dbType) {
    Begin();
    out = NamesInScope(QStringLiteral("SELECT name FROM sysgroup"), dbType);
}

void SqliteGeoDatabase::GetSystemNames(QStringList& out, const QString& group) {
    Begin();
    out = NamesInScope(QStringLiteral("SELECT c.name FROM coordsys c JOIN sysgroup g "
                                      "ON g.id = c.group_id WHERE g.name_key = ?"),
                       GEODB_ALL, {OrvSchema::NameKey(group)});
}

void SqliteGeoDatabase::GetUnitNames(QStringList& out) {
    Begin();
    out = NamesInScope(QStringLiteral("SELECT name FROM unit"), GEODB_ALL);
}

void SqliteGeoDatabase::GetEllipsoidNames(QStringList& out) {
    Begin();
    out = NamesInScope(QStringLiteral("SELECT name FROM ellipsoid"), GEODB_ALL);
}

bool SqliteGeoDatabase::FindProjectionSystem(const QString& prjName, QString& group,
                                             QString& system) {
    QString* e = Begin();
    const auto prj = m_store->FindProjection(prjName, GEODB_ALL, e);
    if (!prj)
        return false;
    // The first system by name, user systems before pre-defined ones.
    for (int scope : {GEODB_USER, GEODB_SYSTEM}) {
        for (const auto& [db, where] : StoreSql::Databases(*m_store, scope)) {
            StoreSql::Reader q(db, e);
            if (q.Exec(QStringLiteral("SELECT g.name, c.name FROM coordsys c JOIN sysgroup "
                                      "g ON g.id = c.group_id WHERE c.projection_name = ? "
                                      "ORDER BY c.name_key LIMIT 1"),
                       {prj->name}) &&
                q.Next()) {
                group = q.value(0).toString();
                system = q.value(1).toString();
                return true;
            }
            if (Failed())
                return false;
        }
    }
    return false;
}

QString SqliteGeoDatabase::GetSystemProjectionName(QString& out, const QString& group,
                                                   const QString& system) {
    Begin();
    const auto s = System(group, system);
    out = s ? s->projectionName : QString();
    return out;
}

void SqliteGeoDatabase::GetProjectionNamesOfMethod(QStringList& out, const QString& method) {
    Begin();
    out.clear();
    const ProjectionMethods::Method* m = ProjectionMethods::ByName(method);
    if (!m)
        return;
    out = NamesInScope(QStringLiteral("SELECT name FROM projection WHERE method_id = ?"), GEODB_ALL,
                       {m->id});
}

void SqliteGeoDatabase::GetDtfNames(QStringList& out, const QString& srcEllipsoid,
                                    const QString& desEllipsoid) {
    Begin();
    out = NamesInScope(QStringLiteral("SELECT name FROM dtf WHERE src_ellipsoid_key = ? AND "
                                      "dst_ellipsoid_key = ?"),
                       GEODB_ALL,
                       {OrvSchema::NameKey(srcEllipsoid), OrvSchema::NameKey(desEllipsoid)});
}

QString SqliteGeoDatabase::GetSystemDtfName(QString& out, const QString& group,
                                            const QString& system) {
    Begin();
    const auto s = System(group, system);
    out = s ? s->dtfName : QString();
    return out;
}

QString SqliteGeoDatabase::GetCoordSysUnitName(const QString& group, const QString& system) {
    Begin();
    const auto s = System(group, system);
    return s ? s->unitName : QString();
}

QString SqliteGeoDatabase::GetCoordSysPrjMethod(const QString& group, const QString& system) {
    Begin();
    const auto s = System(group, system);
    if (!s)
        return QString();
    QString method;
    return GetProjectionMethodName(method, s->projectionName);
}

QString SqliteGeoDatabase::GetProjectionMethodName(QString& out, const QString& projection) {
    Begin();
    const auto prj = Projection(projection);
    out = prj ? InfoTexts::PrjMethodName(prj->methodId) : QString();
    return out;
}

QString SqliteGeoDatabase::GetProjectionUnit(QString& out, const QString& projection) {
    Begin();
    const auto prj = Projection(projection);
    out = prj ? prj->unitName : QString();
    return out;
}

void SqliteGeoDatabase::GetProjectionParameters(const QString& prjName, PrjParamBlock& params,
                                                QStringList& values, QStringList& names,
                                                QList<unsigned>& types) {
    Begin();
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
    const auto e = m_store->FindEllipsoid(ellipsoidName, GEODB_ALL, Begin());
    if (!e)
        return false;
    values = e->values;
    return true;
}

bool SqliteGeoDatabase::GetDtfEllipsoids(const QString& dtfName, QString& localEllipsoidName,
                                         EllipsoidValues& values) {
    QString* error = Begin();
    const auto dtf = m_store->FindDtf(dtfName, GEODB_ALL, error);
    if (!dtf)
        return false;
    const auto e = m_store->FindEllipsoid(dtf->dstEllipsoid, GEODB_ALL, error);
    if (!e)
        return false;
    localEllipsoidName = e->name;
    values = e->values;
    return true;
}

bool SqliteGeoDatabase::GetDtfParameters(const QString& dtfName, QString& method, DtfValues& values,
                                         std::array<double, 2>& further, unsigned char& option,
                                         std::array<double, 2>& trailing) {
    const auto dtf = m_store->FindDtf(dtfName, GEODB_ALL, Begin());
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
    const auto d = m_store->FindDtf(dtf, GEODB_ALL, Begin());
    srcEllipsoid = d ? d->srcEllipsoid : QString();
    desEllipsoid = d ? d->dstEllipsoid : QString();
}

QString SqliteGeoDatabase::GetDtfExtraText(QString& out, const QString& dtfName) {
    const auto d = m_store->FindDtf(dtfName, GEODB_ALL, Begin());
    out = d ? d->extraText : QString();
    return out;
}

QString SqliteGeoDatabase::GetDtfDescription(QString& out, const QString& dtfName) {
    const auto d = m_store->FindDtf(dtfName, GEODB_ALL, Begin());
    out = d ? d->description : QString();
    return out;
}

QString SqliteGeoDatabase::GetSatelliteEllipsoidName(QString& out) {
    Begin();
    out = QStringLiteral("WGS 84");
    return out;
}

bool SqliteGeoDatabase::GroupNameExists(const QString& group, int dbType) {
    Begin();
    return RowInScope(QStringLiteral("SELECT 1 FROM sysgroup WHERE name_key = ?"), dbType,
                      {OrvSchema::NameKey(group)});
}

bool SqliteGeoDatabase::SystemNameExists(const QString& name, int dbType) {
    Begin();
    return RowInScope(QStringLiteral("SELECT 1 FROM coordsys WHERE name_key = ?"), dbType,
                      {OrvSchema::NameKey(name)});
}

bool SqliteGeoDatabase::IsDtfOfType(const QString& dtfName, int type) {
    Begin();
    return RowInScope(QStringLiteral("SELECT 1 FROM dtf WHERE name_key = ?"), type,
                      {OrvSchema::NameKey(dtfName)});
}

bool SqliteGeoDatabase::UnitNameExists(const QString& name, int scope) {
    Begin();
    return RowInScope(QStringLiteral("SELECT 1 FROM unit WHERE name_key = ?"), scope,
                      {OrvSchema::NameKey(name)});
}

bool SqliteGeoDatabase::IsPrjOfType(const QString& prjName, int type) {
    Begin();
    return RowInScope(QStringLiteral("SELECT 1 FROM projection WHERE name_key = ?"), type,
                      {OrvSchema::NameKey(prjName)});
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
            QString unread;
            use.projects = StoreSql::Column(
                m_store->userDb(),
                QStringLiteral(
                    "SELECT project FROM system_use WHERE system_key = ? ORDER BY project"),
                {q.value(2)}, &unread); // an information text: a failed read lists no project
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
    const auto d = m_store->FindDtf(dtf, GEODB_ALL, Begin());
    out = d ? InfoTexts::Dtf(*d) + UsersText(QStringLiteral("dtf_name"), d->name,
                                             QStringLiteral("datum transformation"))
            : QString();
    return out;
}

QString SqliteGeoDatabase::GetEllipsoidInfoText(QString& out, const QString& ellipsoid) {
    const auto e = m_store->FindEllipsoid(ellipsoid, GEODB_ALL, Begin());
    out = e ? InfoTexts::Ellipsoid(*e) : QString();
    return out;
}

QString SqliteGeoDatabase::GetSystemInfoText(QString& out, const QString& group,
                                             const QString& system, const QString&, const QString&,
                                             const QString&, const QString&, const QString&) {
    QString* e = Begin();
    out.clear();
    const auto s = System(group, system);
    if (!s)
        return out;
    // A part that cannot be read fails the text; a part that is not stored is named so.
    const auto dtf = m_store->FindDtf(s->dtfName, GEODB_ALL, e);
    const auto prj = m_store->FindProjection(s->projectionName, GEODB_ALL, e);
    const auto unit = m_store->FindUnit(s->unitName, GEODB_ALL, e);
    if (Failed())
        return out;
    out = InfoTexts::System(*s, dtf ? &*dtf : nullptr, prj ? &*prj : nullptr,
                            unit ? &*unit : nullptr);
    QString unread; // an information text: a failed read lists no project
    out += InfoTexts::Projects(SystemWriter::ProjectsUsing(*m_store, s->name, &unread));
    return out;
}

QString SqliteGeoDatabase::GetProjectionInfoText(const QString& prjName) {
    Begin();
    const auto prj = Projection(prjName);
    return prj ? InfoTexts::Projection(*prj) + UsersText(QStringLiteral("projection_name"),
                                                         prj->name, QStringLiteral("projection"))
               : QString();
}

QString SqliteGeoDatabase::GetSystemProjectionInfoText(const QString& group, const QString& system,
                                                       int /*flag*/) {
    QString* e = Begin();
    const auto s = System(group, system);
    if (!s)
        return QString();
    const auto prj = m_store->FindProjection(s->projectionName, GEODB_ALL, e);
    return prj ? InfoTexts::Projection(*prj, s->group, s->name) +
                     UsersText(QStringLiteral("projection_name"), prj->name,
                               QStringLiteral("projection"))
               : QString();
}

QString SqliteGeoDatabase::GetUnitDescription(QString& out, const QString& unitName) {
    const auto unit = m_store->FindUnit(unitName, GEODB_ALL, Begin());
    out = unit ? InfoTexts::UnitDescription(*unit) : QString();
    return out;
}

QString SqliteGeoDatabase::GetGeoidModelName(const QString& group, const QString& system) {
    Begin();
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
    Begin();
    const auto s = System(group, system);
    if (!s)
        return QString();
    return s->geoidKeys.isEmpty() ? DefaultGeoidKeys() : s->geoidKeys;
}

QString SqliteGeoDatabase::GetGeoidModelFile(const QString& group, const QString& system) {
    Begin();
    const auto s = System(group, system);
    return s ? s->geoidFile : QString();
}

QString SqliteGeoDatabase::GetChartDatum(const QString& group, const QString& system) {
    Begin();
    const auto s = System(group, system);
    return s ? s->chartDatum : QString();
}

double SqliteGeoDatabase::GetPrimeMeridian(const QString& group, const QString& system) {
    Begin();
    const auto s = System(group, system);
    return s ? s->primeMeridian : 0.0;
}

bool SqliteGeoDatabase::GetPostTranslation(const QString& group, const QString& system, double& e,
                                           double& n, double& z) {
    Begin();
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
    Begin();
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
    Begin();
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
    Begin();
    const auto s = System(group, system);
    return s ? s->post.modelFile : QString();
}

QString SqliteGeoDatabase::GetPostModelName(const QString& group, const QString& system) {
    // As stored: the dialogs themselves show an older "OSTN02" as "OSTN" together with the
    // geoid model file, which holds that shift model.
    Begin();
    const auto s = System(group, system);
    return s ? s->post.modelName : QString();
}

bool SqliteGeoDatabase::SystemHasGeoidModel(const QString& group, const QString& system) {
    Begin();
    const auto s = System(group, system);
    return s && s->geoidOn && !s->geoidMethod.isEmpty();
}

bool SqliteGeoDatabase::SystemHasPostCorrection(const QString& group, const QString& system) {
    Begin();
    const auto s = System(group, system);
    return s && (s->post.on || s->post.horOn || s->post.vertOn);
}

bool SqliteGeoDatabase::HasPostHorAdjust(const QString& group, const QString& system) {
    Begin();
    const auto s = System(group, system);
    return s && s->post.horOn;
}

bool SqliteGeoDatabase::HasPostVertAdjust(const QString& group, const QString& system) {
    Begin();
    const auto s = System(group, system);
    return s && s->post.vertOn;
}

double SqliteGeoDatabase::GetManualGeoidSeparation(const QString& group, const QString& system) {
    Begin();
    const auto s = System(group, system);
    return s ? s->geoidSeparation : 0.0;
}

bool SqliteGeoDatabase::RemoveSystem(const QString& group, const QString& system) {
    return SystemWriter::Remove(*m_store, group, system, Begin());
}

bool SqliteGeoDatabase::AddUnit(const QString& name, double metersPerUnit, const QString& suffix,
                                int category) {
    return SystemWriter::AddUnit(*m_store, name, metersPerUnit, suffix, category, Begin());
}

bool SqliteGeoDatabase::SetSystemInUse(const QString& group, const QString& system,
                                       const QString& projectId, bool inUse) {
    return SystemWriter::SetInUse(*m_store, group, system, projectId, inUse, Begin());
}

bool SqliteGeoDatabase::IsSystemInUse(const QString& group, const QString& system) {
    QString* e = Begin();
    const auto s = System(group, system);
    return s && SystemWriter::IsInUse(*m_store, s->name, e);
}

QStringList SqliteGeoDatabase::GetSystemProjects(const QString& group, const QString& system) {
    QString* e = Begin();
    const auto s = System(group, system);
    if (!s)
        return {};
    const QStringList projects = SystemWriter::ProjectsUsing(*m_store, s->name, e);
    return Failed() ? QStringList() : projects;
}

QHash<QString, int> SqliteGeoDatabase::GetEpsgCodes(GeoEntryKind kind) {
    QString* e = Begin();
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
        StoreSql::Reader q(db, e);
        if (!q.Exec(
                QStringLiteral("SELECT name, epsg_code FROM %1 WHERE epsg_code <> 0").arg(table)))
            return {};
        while (q.Next())
            codes.insert(q.value(0).toString(), q.value(1).toInt());
        if (q.failed())
            return {};
    }
    return codes;
}
