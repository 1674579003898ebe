#pragma once

#include "NameSet.h"

#include "api/GeoTypes.h"
#include "store/Records.h"

#include <QList>
#include <QSqlQuery>
#include <QString>

class ImportSession;

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
