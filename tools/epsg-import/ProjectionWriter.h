#pragma once

#include "NameSet.h"

#include "api/GeoTypes.h"

#include <QList>
#include <QSqlQuery>
#include <QString>

class ImportSession;

// One projection_param row.
struct ParamRow {
    QString name;
    double value = 0;
    QString text;
    unsigned type = PRM_PLAIN;
};

// One projection row and its parameters in order.
struct ProjectionRecord {
    QString name;
    int methodId = 0;
    QString unitName;
    int epsgCode = 0;
    int epsgMethod = 0;
    QString description;
    QList<ParamRow> params;
};

// Writes projections with their parameter rows. The UTM zones and the projections of the
// EPSG conversions share it, so both draw their names from one set.
class ProjectionWriter {
public:
    explicit ProjectionWriter(ImportSession& session);

    QString UniqueName(const QString& name, int epsgCode) { return m_names.Unique(name, epsgCode); }
    bool Write(const ProjectionRecord& projection);

private:
    ImportSession& m_session;
    NameSet m_names;
    QSqlQuery m_projectionInsert, m_paramInsert;
};
