#include "ProjectionWriter.h"

#include "EpsgValues.h"
#include "ImportSession.h"

#include <QVariant>

using EpsgValues::NotNull;

ProjectionWriter::ProjectionWriter(ImportSession& session)
    : m_session(session),
      m_projectionInsert(session.PrepareInsert(
          QStringLiteral("INSERT INTO projection (name, name_key, method_id, unit_name, epsg_code, "
                         "epsg_method_code, description) VALUES (?, ?, ?, ?, ?, ?, ?)"))),
      m_paramInsert(session.PrepareInsert(
          QStringLiteral("INSERT INTO projection_param (projection_id, ord, name, value, "
                         "value_text, type) VALUES (?, ?, ?, ?, ?, ?)"))) {}

bool ProjectionWriter::Write(const ProjectionRecord& r) {
    QSqlQuery& ins = m_projectionInsert;
    BindNameAndKey(ins, r.name);
    ins.addBindValue(r.methodId);
    ins.addBindValue(r.unitName);
    ins.addBindValue(r.epsgCode);
    ins.addBindValue(r.epsgMethodCode);
    ins.addBindValue(NotNull(r.description));
    if (!ins.exec())
        return m_session.Fail(QStringLiteral("cannot write projection %1").arg(r.name), ins);
    const qint64 id = ins.lastInsertId().toLongLong();
    for (int i = 0; i < r.params.size(); ++i) {
        const PrjParamRecord& row = r.params[i];
        QSqlQuery& p = m_paramInsert;
        p.addBindValue(id);
        p.addBindValue(i);
        p.addBindValue(row.name);
        p.addBindValue(row.value);
        p.addBindValue(NotNull(row.valueText));
        p.addBindValue(row.type);
        if (!p.exec())
            return m_session.Fail(QStringLiteral("cannot write the parameters of %1").arg(r.name),
                                  p);
    }
    ++m_session.Counts().projections;
    return true;
}
