#include "UnitTable.h"

#include "EpsgCodes.h"
#include "EpsgValues.h"
#include "ImportSession.h"

#include <QVariant>

#include <algorithm>

using namespace EpsgCodes;

bool UnitTable::Load(ImportSession& session) {
    QSqlQuery q = session.SourceQuery();
    if (!session.Select(q, QStringLiteral("SELECT code, name, type, conv_factor, deprecated FROM "
                                          "unit_of_measure WHERE auth_name = 'EPSG'")))
        return false;
    while (q.next()) {
        Uom uom;
        uom.name = q.value(1).toString();
        uom.type = q.value(2).toString();
        if (!q.value(3).isNull())
            uom.factor = q.value(3).toDouble();
        uom.deprecated = q.value(4).toInt() != 0;
        m_uoms.insert(q.value(0).toInt(), uom);
    }
    for (int needed : {UomMetre, UomArcSecond, UomPpm, UomMetrePerYear, UomArcSecondPerYear,
                       UomPpmPerYear, UomYear}) {
        if (!m_uoms.value(needed).factor)
            return session.Fail(QStringLiteral("proj.db lacks the EPSG unit %1").arg(needed));
    }
    return true;
}

QList<int> UnitTable::SortedCodes() const {
    QList<int> codes = m_uoms.keys();
    std::sort(codes.begin(), codes.end());
    return codes;
}

std::optional<double> UnitTable::Convert(double value, int uom, int target) const {
    if (uom == target)
        return value;
    const auto from = m_uoms.value(uom).factor;
    const auto to = m_uoms.value(target).factor;
    if (!from || !to || *to == 0)
        return std::nullopt;
    return value * *from / *to;
}

std::optional<double> UnitTable::ToDegrees(double value, int uom) const {
    if (uom == UomDegree)
        return value;
    if (uom == UomSexagesimalDms || uom == UomSexagesimalDmsS)
        return EpsgValues::SexagesimalToDegrees(value, true);
    if (uom == UomSexagesimalDm)
        return EpsgValues::SexagesimalToDegrees(value, false);
    if (m_uoms.value(uom).type != QLatin1String("angle"))
        return std::nullopt;
    return Convert(value, uom, UomDegree); // by the ratio of proj.db's factors
}
