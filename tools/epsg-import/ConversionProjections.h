#pragma once

#include "ProjectionWriter.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

#include <optional>

class ImportSession;
class UnitTable;
class UsageTable;
struct ImportedNames;

namespace ProjectionMethods {
struct Method;
}

// The projections of EPSG's conversions, one per conversion and axis unit, written when a
// system first uses it, so that only the conversions of imported systems are stored.
class ConversionProjections {
public:
    ConversionProjections(ImportSession& session, const UnitTable& units, const UsageTable& usages,
                          const ImportedNames& names, ProjectionWriter& writer)
        : m_session(session), m_units(units), m_usages(usages), m_names(names), m_writer(writer) {}

    // Reads the conversions and their parameter names from proj.db.
    bool Load();

    // The name of the conversion's projection with lengths in axisUom. Nothing when the
    // conversion is unknown or has a value in a unit that does not convert (the system is
    // left out), or when writing failed (then the session has the error).
    std::optional<QString> For(int conversionCode, int axisUom);

private:
    struct ConvParam {
        int code = 0;
        double value = 0;
        int uom = 0;
    };
    struct Conversion {
        QString name;
        QString description;
        int method = 0;
        QList<ConvParam> params;
    };

    // The parameter rows in the method's order; nothing when a value does not convert.
    std::optional<QList<PrjParamRecord>>
    RowsOf(const Conversion& conv, const ProjectionMethods::Method& method, int axisUom) const;
    // Every parameter in EPSG order, typed by its unit and name, for a method the engine
    // does not compute.
    std::optional<QList<PrjParamRecord>> UntypedRowsOf(const Conversion& conv, int axisUom) const;
    // Appends the row of p: angles in degrees, lengths in the axis unit, scales unitless.
    // False when the value's unit does not convert.
    bool AppendRow(QList<PrjParamRecord>& rows, const ConvParam& p, unsigned type,
                   const QString& name, int axisUom) const;

    ImportSession& m_session;
    const UnitTable& m_units;
    const UsageTable& m_usages;
    const ImportedNames& m_names;
    ProjectionWriter& m_writer;

    QHash<int, QString> m_paramNames;
    QHash<int, Conversion> m_conversions;
    QHash<QString, QString> m_projections; // "conversion:unit" -> projection name
    QSet<int> m_conversionsWritten;
};
