#include "ProjChoice.h"

#include <proj.h>

#include <QSet>

namespace {

const QSet<int> HelmertMethods{9603, 1031, 1035, 9606, 1033, 1037, 9607, 1032,
                               1038, 1053, 1054, 1055, 1056, 1057, 1058};

QString Text(const char* s) {
    return s ? QString::fromUtf8(s) : QString();
}

bool IsTransformationStep(PJ* step) {
    const PJ_TYPE type = proj_get_type(step);
    return type == PJ_TYPE_TRANSFORMATION || type == PJ_TYPE_OTHER_COORDINATE_OPERATION;
}

} // namespace

ProjChooser::ProjChooser() {
    m_ctx = proj_context_create();
    proj_log_level(m_ctx, PJ_LOG_NONE);
}

ProjChooser::~ProjChooser() {
    proj_context_destroy(m_ctx);
}

QString ProjChooser::DatabasePath() const {
    return Text(proj_context_get_database_path(m_ctx));
}

ProjChoice ProjChooser::For(int crsCode) {
    ProjChoice choice;
    PJ* src = proj_create(m_ctx, "EPSG:4326");
    PJ* dst = proj_create(m_ctx, QStringLiteral("EPSG:%1").arg(crsCode).toUtf8().constData());
    PJ_OPERATION_FACTORY_CONTEXT* factory = proj_create_operation_factory_context(m_ctx, nullptr);
    PJ_OBJ_LIST* ops = nullptr;
    if (src && dst && factory) {
        // As proj_create_crs_to_crs (cs2cs) sets it up without network access.
        proj_operation_factory_context_set_spatial_criterion(
            m_ctx, factory, PROJ_SPATIAL_CRITERION_PARTIAL_INTERSECTION);
        proj_operation_factory_context_set_grid_availability_use(
            m_ctx, factory, PROJ_GRID_AVAILABILITY_DISCARD_OPERATION_IF_MISSING_GRID);
        ops = proj_create_operations(m_ctx, src, dst, factory);
    }
    if (ops && proj_list_get_count(ops) > 0) {
        PJ* op = proj_list_get(m_ctx, ops, 0);
        choice.found = true;
        choice.name = Text(proj_get_name(op));
        QList<PJ*> steps;
        if (proj_get_type(op) == PJ_TYPE_CONCATENATED_OPERATION) {
            const int count = proj_concatoperation_get_step_count(m_ctx, op);
            for (int i = 0; i < count; ++i)
                steps << proj_concatoperation_get_step(m_ctx, op, i);
        } else {
            steps << proj_clone(m_ctx, op);
        }
        int transformations = 0;
        int helmert = 0;
        QString method;
        for (PJ* step : steps) {
            if (!step || !IsTransformationStep(step))
                continue;
            ++transformations;
            const QString auth = Text(proj_get_id_auth_name(step, 0));
            const char* methodName = nullptr;
            const char* methodCode = nullptr;
            proj_coordoperation_get_method_info(m_ctx, step, &methodName, nullptr, &methodCode);
            method = Text(methodName);
            if ((auth == u"EPSG" || auth == u"INVERSE(EPSG)") &&
                HelmertMethods.contains(Text(methodCode).toInt()))
                helmert = Text(proj_get_id_code(step, 0)).toInt();
        }
        if (proj_coordoperation_has_ballpark_transformation(m_ctx, op))
            choice.otherKind = QStringLiteral("a ballpark transformation");
        else if (transformations > 1)
            choice.otherKind = QStringLiteral("a chain of %1 transformations").arg(transformations);
        else if (transformations == 1 && helmert == 0)
            choice.otherKind = QStringLiteral("a transformation by the method \"%1\"").arg(method);
        else
            choice.helmertCode = helmert;
        for (PJ* step : steps)
            proj_destroy(step);
        proj_destroy(op);
    }
    proj_list_destroy(ops);
    proj_operation_factory_context_destroy(factory);
    proj_destroy(src);
    proj_destroy(dst);
    return choice;
}
