#include "EllipsoidsAndUnits.h"

#include "EpsgCodes.h"
#include "EpsgValues.h"
#include "ImportSession.h"
#include "ImportedNames.h"
#include "NameSet.h"
#include "UnitTable.h"

#include "api/GeoTypes.h"

#include <QVariant>

using namespace EpsgCodes;
using EpsgValues::NotNull;

namespace EllipsoidsAndUnits {

bool WriteEllipsoids(ImportSession& session, const UnitTable& units, ImportedNames& names) {
    QSqlQuery q = session.SourceQuery();
    if (!session.Select(q, QStringLiteral("SELECT e.code, e.name, e.description, "
                                          "e.semi_major_axis, e.uom_code, e.inv_flattening, "
                                          "e.semi_minor_axis FROM ellipsoid e JOIN "
                                          "celestial_body c ON c.auth_name = "
                                          "e.celestial_body_auth_name AND c.code = "
                                          "e.celestial_body_code WHERE e.auth_name = 'EPSG' AND "
                                          "e.deprecated = 0 AND c.name = 'Earth' ORDER BY "
                                          "CAST(e.code AS INTEGER)")))
        return false;
    QSqlQuery ins = session.PrepareInsert(
        QStringLiteral("INSERT INTO ellipsoid (name, name_key, semi_major, semi_minor, "
                       "inv_flattening, flattening, ecc_squared, second_ecc_squared, epsg_code, "
                       "remarks) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"));
    NameSet unique;
    while (q.next()) {
        const int code = q.value(0).toInt();
        const int uom = q.value(4).toInt();
        const auto a = units.Convert(q.value(3).toDouble(), uom, UomMetre);
        if (!a)
            continue;
        // EPSG defines an ellipsoid by a and 1/f or by a and b; the other one is derived.
        double b = *a;
        double invF = 0;
        if (!q.value(5).isNull()) {
            invF = q.value(5).toDouble();
            b = invF == 0 ? *a : *a * (1 - 1 / invF);
        } else {
            b = units.Convert(q.value(6).toDouble(), uom, UomMetre).value_or(*a);
            invF = b == *a ? 0 : *a / (*a - b);
        }
        const double f = invF == 0 ? 0 : 1 / invF;
        const double e2 = (*a * *a - b * b) / (*a * *a);
        const double e2b = (*a * *a - b * b) / (b * b);
        const QString name = unique.Unique(q.value(1).toString(), code);
        BindNameAndKey(ins, name);
        for (double v : {*a, b, invF, f, e2, e2b})
            ins.addBindValue(v);
        ins.addBindValue(code);
        ins.addBindValue(NotNull(q.value(2).toString()));
        if (!ins.exec())
            return session.Fail(QStringLiteral("cannot write ellipsoid %1").arg(name), ins);
        names.ellipsoids.insert(code, name);
        ++session.Counts().ellipsoids;
    }
    // Every transformation and system refers to WGS 84 by this name.
    if (names.ellipsoids.value(EllipsoidWgs84) != Wgs84Name)
        return session.Fail(QStringLiteral("proj.db lacks the WGS 84 ellipsoid"));
    return true;
}

bool WriteUnits(ImportSession& session, const UnitTable& units, ImportedNames& names) {
    QSqlQuery ins = session.PrepareInsert(
        QStringLiteral("INSERT INTO unit (name, name_key, meters_per_unit, suffix, description, "
                       "category, epsg_code) VALUES (?, ?, ?, ?, ?, ?, ?)"));
    NameSet unique;
    for (int code : units.SortedCodes()) {
        const Uom uom = units.Find(code);
        // Rates ("metres per year") share the length type in proj.db.
        if (uom.type != QLatin1String("length") || uom.deprecated || !uom.factor ||
            uom.name.contains(QLatin1String(" per ")))
            continue;
        const QString name = unique.Unique(code == UomMetre ? MetreName : uom.name, code);
        QString suffix = EpsgValues::UnitSuffix(code);
        if (suffix.isEmpty())
            suffix = uom.name;
        BindNameAndKey(ins, name);
        ins.addBindValue(*uom.factor);
        ins.addBindValue(suffix);
        ins.addBindValue(QStringLiteral("%1, %2 metres (EPSG unit %3)")
                             .arg(uom.name, EpsgValues::FormatPlain(*uom.factor))
                             .arg(code));
        ins.addBindValue(UNIT_CATEGORY_LENGTH);
        ins.addBindValue(code);
        if (!ins.exec())
            return session.Fail(QStringLiteral("cannot write unit %1").arg(name), ins);
        names.units.insert(code, name);
        ++session.Counts().units;
    }
    if (!names.units.contains(UomMetre))
        return session.Fail(QStringLiteral("proj.db lacks the metre"));
    return true;
}

} // namespace EllipsoidsAndUnits
