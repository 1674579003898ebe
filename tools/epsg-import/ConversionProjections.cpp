#include "ConversionProjections.h"

#include "AreaOfUse.h"
#include "EpsgValues.h"
#include "ImportSession.h"
#include "ImportedNames.h"
#include "UnitTable.h"

#include "api/ProjectionMethods.h"

#include <QVariant>

#include <algorithm>

bool ConversionProjections::Load() {
    QSqlQuery names = m_session.SourceQuery();
    if (!m_session.Select(names, QStringLiteral("SELECT code, name FROM conversion_param WHERE "
                                                "auth_name = 'EPSG'")))
        return false;
    while (names.next())
        m_paramNames.insert(names.value(0).toInt(), names.value(1).toString());
    QString sql = QStringLiteral("SELECT code, name, description, method_code");
    for (int i = 1; i <= 7; ++i)
        sql += QStringLiteral(", param%1_code, param%1_value, param%1_uom_code").arg(i);
    sql += QStringLiteral(" FROM conversion_table WHERE auth_name = 'EPSG' AND deprecated = "
                          "0 AND method_auth_name = 'EPSG'");
    QSqlQuery q = m_session.SourceQuery();
    if (!m_session.Select(q, sql))
        return false;
    while (q.next()) {
        Conversion conv;
        conv.name = q.value(1).toString();
        conv.description = q.value(2).toString();
        conv.method = q.value(3).toInt();
        for (int i = 0; i < 7; ++i) {
            const int column = 4 + 3 * i;
            if (q.value(column).isNull() || q.value(column + 1).isNull())
                continue;
            conv.params.append(ConvParam{q.value(column).toInt(), q.value(column + 1).toDouble(),
                                         q.value(column + 2).toInt()});
        }
        m_conversions.insert(q.value(0).toInt(), conv);
    }
    return true;
}

std::optional<QString> ConversionProjections::For(int convCode, int axisUom) {
    const QString key = QStringLiteral("%1:%2").arg(convCode).arg(axisUom);
    if (const auto it = m_projections.constFind(key); it != m_projections.cend())
        return *it;
    const auto conv = m_conversions.constFind(convCode);
    if (conv == m_conversions.cend())
        return std::nullopt;
    const ProjectionMethods::Method* method = ProjectionMethods::ByEpsgCode(conv->method);
    const auto rows = RowsOf(*conv, *method, axisUom);
    if (!rows)
        return std::nullopt;
    // A conversion used in two units becomes two projections; the second carries its unit.
    const QString unitName = m_names.units.value(axisUom);
    QString wanted = conv->name;
    if (m_conversionsWritten.contains(convCode))
        wanted += QStringLiteral(" (%1)").arg(unitName);
    m_conversionsWritten.insert(convCode);

    ProjectionRecord r;
    r.name = m_writer.UniqueName(wanted, convCode);
    r.methodId = method->id;
    r.unitName = unitName;
    r.epsgCode = convCode;
    r.epsgMethodCode = conv->method; // tells apart what one method id stands for (Krovak's axes)
    r.description = EpsgValues::JoinTexts(
        conv->description, m_usages.Of(UsageTable::Kind::Conversion, convCode).scope);
    r.params = *rows;
    if (!m_writer.Write(r))
        return std::nullopt;
    m_projections.insert(key, r.name);
    return r.name;
}

std::optional<QList<PrjParamRecord>>
ConversionProjections::RowsOf(const Conversion& conv, const ProjectionMethods::Method& method,
                              int axisUom) const {
    if (method.id == ProjectionMethods::NotImplementedId)
        return UntypedRowsOf(conv, axisUom);
    QList<PrjParamRecord> rows;
    for (const ProjectionMethods::Param& param : method.params) {
        const QString name = QString::fromLatin1(param.name);
        const auto found =
            std::find_if(conv.params.cbegin(), conv.params.cend(),
                         [&](const ConvParam& p) { return p.code == param.epsgCode; });
        if (found == conv.params.cend()) {
            // EPSG leaves out nothing the method lists; keep the method's default.
            rows.append(PrjParamRecord{name, param.defaultValue,
                                       EpsgValues::ParamText(param.defaultValue, param.type),
                                       param.type});
            continue;
        }
        if (!AppendRow(rows, *found, param.type, name, axisUom))
            return std::nullopt;
    }
    return rows;
}

std::optional<QList<PrjParamRecord>> ConversionProjections::UntypedRowsOf(const Conversion& conv,
                                                                          int axisUom) const {
    QList<PrjParamRecord> rows;
    for (const ConvParam& p : conv.params) {
        const QString name = m_paramNames.value(p.code);
        const QString kind = m_units.Find(p.uom).type;
        unsigned type = PRM_PLAIN;
        if (kind == QLatin1String("length"))
            type = PRM_LENGTH;
        else if (kind == QLatin1String("scale"))
            type = PRM_SCALE;
        else if (kind == QLatin1String("angle") &&
                 name.contains(QLatin1String("longitude"), Qt::CaseInsensitive))
            type = PRM_LONGITUDE;
        else if (kind == QLatin1String("angle") &&
                 name.contains(QLatin1String("latitude"), Qt::CaseInsensitive) &&
                 !name.startsWith(QLatin1String("Co-latitude")))
            type = PRM_LATITUDE;
        if (rows.size() == PrjParamBlock::MaxParams)
            break;
        if (!AppendRow(rows, p, type, name, axisUom))
            return std::nullopt;
    }
    return rows;
}

bool ConversionProjections::AppendRow(QList<PrjParamRecord>& rows, const ConvParam& p,
                                      unsigned type, const QString& name, int axisUom) const {
    PrjParamRecord row{name, p.value, {}, type};
    const Uom uom = m_units.Find(p.uom);
    if (uom.type == QLatin1String("angle")) {
        const auto degrees = m_units.ToDegrees(p.value, p.uom);
        if (!degrees)
            return false;
        row.value = *degrees;
    } else if (uom.type == QLatin1String("length")) {
        const auto value = m_units.Convert(p.value, p.uom, axisUom);
        if (!value)
            return false;
        row.value = *value;
    } else if (uom.type == QLatin1String("scale")) {
        row.value = p.value * uom.factor.value_or(1.0);
    }
    row.valueText = EpsgValues::ParamText(row.value, type);
    rows.append(row);
    return true;
}
