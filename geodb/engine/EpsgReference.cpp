#include "engine/EpsgReference.h"

#include <proj.h>

#include <cmath>

namespace {

QString Text(const char* s) {
    return s ? QString::fromUtf8(s) : QString();
}

// True when op is, uses or inverts the EPSG operation code (its name for inverses).
bool UsesOperation(PJ_CONTEXT* ctx, PJ* op, const QString& code, const QString& name) {
    const QString auth = Text(proj_get_id_auth_name(op, 0));
    if ((auth == u"EPSG" || auth == u"INVERSE(EPSG)") && Text(proj_get_id_code(op, 0)) == code)
        return true;
    const QString opName = Text(proj_get_name(op));
    if (!name.isEmpty() && (opName == name || opName == QStringLiteral("Inverse of ") + name))
        return true;
    const int steps = proj_concatoperation_get_step_count(ctx, op);
    for (int i = 0; i < steps; ++i) {
        PJ* step = proj_concatoperation_get_step(ctx, op, i);
        const bool uses = step && UsesOperation(ctx, step, code, name);
        proj_destroy(step);
        if (uses)
            return true;
    }
    return false;
}

bool IsTransformation(PJ* op) {
    const PJ_TYPE type = proj_get_type(op);
    return type == PJ_TYPE_TRANSFORMATION || type == PJ_TYPE_CONCATENATED_OPERATION;
}

} // namespace

EpsgReference::EpsgReference() {
    m_ctx = proj_context_create();
    proj_log_level(m_ctx, PJ_LOG_NONE);
}

EpsgReference::~EpsgReference() {
    Clear();
    proj_context_destroy(m_ctx);
}

void EpsgReference::Clear() {
    proj_destroy(m_op);
    m_op = nullptr;
    m_definition.clear();
}

bool EpsgReference::Create(int crsCode, int operationCode, QString& error) {
    Clear();
    PJ* src = proj_create(m_ctx, "EPSG:4326");
    PJ* dst = proj_create(m_ctx, QStringLiteral("EPSG:%1").arg(crsCode).toUtf8().constData());
    if (!src || !dst) {
        proj_destroy(src);
        proj_destroy(dst);
        error = QStringLiteral("PROJ does not know EPSG:%1.").arg(crsCode);
        return false;
    }
    QString opName;
    if (operationCode != 0) {
        PJ* t =
            proj_create(m_ctx, QStringLiteral("EPSG:%1").arg(operationCode).toUtf8().constData());
        opName = t ? Text(proj_get_name(t)) : QString();
        proj_destroy(t);
    }

    PJ_OPERATION_FACTORY_CONTEXT* factory = proj_create_operation_factory_context(m_ctx, nullptr);
    proj_operation_factory_context_set_allow_ballpark_transformations(m_ctx, factory, 0);
    proj_operation_factory_context_set_grid_availability_use(m_ctx, factory,
                                                             PROJ_GRID_AVAILABILITY_IGNORED);
    proj_operation_factory_context_set_spatial_criterion(
        m_ctx, factory, PROJ_SPATIAL_CRITERION_PARTIAL_INTERSECTION);
    // The pinned operation is wanted even where its area of use misses the system's (a
    // system whose area no transformation covers still uses the nearest one).
    proj_operation_factory_context_set_crs_extent_use(m_ctx, factory, PJ_CRS_EXTENT_NONE);
    proj_operation_factory_context_set_discard_superseded(m_ctx, factory, 0);
    PJ_OBJ_LIST* ops = proj_create_operations(m_ctx, src, dst, factory);
    const QString code = QString::number(operationCode);
    const int count = ops ? proj_list_get_count(ops) : 0;
    for (int i = 0; i < count && !m_op; ++i) {
        PJ* op = proj_list_get(m_ctx, ops, i);
        const bool match =
            operationCode == 0 ? !IsTransformation(op) : UsesOperation(m_ctx, op, code, opName);
        if (match)
            m_op = op;
        else
            proj_destroy(op);
    }
    proj_list_destroy(ops);
    proj_operation_factory_context_destroy(factory);

    if (m_op) {
        // Axis order and direction of the target system.
        PJ* cs = proj_crs_get_coordinate_system(m_ctx, dst);
        const int axes = cs ? proj_cs_get_axis_count(m_ctx, cs) : 0;
        for (int i = 0; i < axes && i < 2; ++i) {
            const char* abbrev = nullptr;
            const char* direction = nullptr;
            proj_cs_get_axis_info(m_ctx, cs, i, nullptr, &abbrev, &direction, nullptr, nullptr,
                                  nullptr, nullptr);
            const QString abbr = Text(abbrev).toUpper();
            const QString dir = Text(direction).toLower();
            // Polar systems have both axes "south" (along meridians): the abbreviation tells.
            if (abbr == u"E")
                m_eastIndex = i;
            else if (abbr == u"N")
                m_northIndex = i;
            else if (dir.startsWith(u"east") || dir.startsWith(u"west"))
                m_eastIndex = i;
            else if (dir.startsWith(u"north") || dir.startsWith(u"south"))
                m_northIndex = i;
        }
        if (m_eastIndex == m_northIndex)
            m_northIndex = 1 - m_eastIndex;
        proj_destroy(cs);
        m_definition = Text(proj_as_proj_string(m_ctx, m_op, PJ_PROJ_5, nullptr));
    } else {
        error = QStringLiteral("PROJ has no operation from EPSG:4326 to EPSG:%1 through "
                               "EPSG:%2.")
                    .arg(crsCode)
                    .arg(operationCode);
    }
    proj_destroy(src);
    proj_destroy(dst);
    return m_op != nullptr;
}

bool EpsgReference::Forward(double lat, double lon, double time, double& east,
                            double& north) const {
    if (!m_op)
        return false;
    PJ_COORD c = proj_coord(lat, lon, 0, time);
    c = proj_trans(m_op, PJ_FWD, c);
    if (!std::isfinite(c.v[0]) || !std::isfinite(c.v[1]) || c.v[0] == HUGE_VAL)
        return false;
    east = c.v[m_eastIndex];
    north = c.v[m_northIndex];
    return true;
}
