#include "store/InfoTexts.h"

#include "api/ProjectionMethods.h"

namespace InfoTexts {

namespace {

const QString Eol = QStringLiteral("\r\n");

QString Line(int level, const QString& text) {
    return QString(level, QLatin1Char('\t')) + text + Eol;
}

QString Fixed(double value, int decimals) {
    return QString::number(value, 'f', decimals);
}

// Enough digits to show the stored value without rounding it visibly.
QString Full(double value) {
    return QString::number(value, 'g', 15);
}

bool IsTimeDependent(const DtfRecord& dtf) {
    return dtf.methodIndex == DTF_15_POSITION_VECTOR || dtf.methodIndex == DTF_15_COORDINATE_FRAME;
}

// The epoch a point without one of its own is transformed at.
double DefaultEpoch(const DtfRecord& dtf) {
    return dtf.obsEpoch != 0.0 ? dtf.obsEpoch : dtf.values[14];
}

void AddDtfValues(QString& out, int level, const DtfRecord& dtf) {
    static const char* const Labels[7] = {"Shift X",    "Shift Y",    "Shift Z", "Rotation X",
                                          "Rotation Y", "Rotation Z", "Scale"};
    static const char* const Units[7] = {"m", "m", "m", "\"", "\"", "\"", "ppm"};
    const bool fifteen =
        dtf.methodIndex == DTF_15_POSITION_VECTOR || dtf.methodIndex == DTF_15_COORDINATE_FRAME;
    // in the method's own convention, as the parameters page shows them
    const DtfValues v = DtfValuesInMethodSign(dtf.values, dtf.methodIndex);
    for (int i = 0; i < 7; ++i)
        out += Line(level,
                    QStringLiteral("%1: %2 %3")
                        .arg(QLatin1String(Labels[i]), Fixed(v[i], 6), QLatin1String(Units[i])));
    if (!fifteen)
        return;
    for (int i = 0; i < 7; ++i)
        out += Line(
            level, QStringLiteral("%1 rate: %2 %3/year")
                       .arg(QLatin1String(Labels[i]), Fixed(v[7 + i], 8), QLatin1String(Units[i])));
    out += Line(level, QStringLiteral("Epoch: %1").arg(Fixed(v[14], 3)));
}

} // namespace

const QStringList& DtfMethodNames() {
    static const QStringList names{
        QStringLiteral("None"),
        QStringLiteral("Position Vector (7 parameters)"),
        QStringLiteral("Coordinate Frame (7 parameters)"),
        QStringLiteral("Position Vector time-dependent (15 parameters)"),
        QStringLiteral("Coordinate Frame time-dependent (15 parameters)"),
    };
    return names;
}

int DtfMethodIndex(const QString& name) {
    const QStringList& names = DtfMethodNames();
    for (int i = 0; i < names.size(); ++i) {
        if (names[i].compare(name, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

QString DtfMethodName(int index) {
    const QStringList& names = DtfMethodNames();
    return index >= 0 && index < names.size() ? names[index] : QString();
}

QString PrjMethodName(int methodId) {
    const ProjectionMethods::Method* method = ProjectionMethods::ById(methodId);
    return method ? QString::fromUtf8(method->name) : QString();
}

QString Ellipsoid(const EllipsoidRecord& e) {
    QString out = Line(0, QStringLiteral("Ellipsoid: %1").arg(e.name));
    out += Line(1, QStringLiteral("Semi-major axis (a): %1 m").arg(Fixed(e.values[0], 4)));
    out += Line(1, QStringLiteral("Semi-minor axis (b): %1 m").arg(Fixed(e.values[1], 4)));
    out += Line(1, e.values[2] == 0.0
                       ? QStringLiteral("Inverse flattening (1/f): 0 (sphere)")
                       : QStringLiteral("Inverse flattening (1/f): %1").arg(Fixed(e.values[2], 9)));
    out += Line(1, QStringLiteral("Flattening (f): %1").arg(Full(e.values[3])));
    out += Line(1, QStringLiteral("First eccentricity squared (e^2): %1").arg(Full(e.values[4])));
    out += Line(1, QStringLiteral("Second eccentricity squared (e'^2): %1").arg(Full(e.values[5])));
    out += Line(1, e.epsgCode ? QStringLiteral("EPSG code: %1").arg(e.epsgCode)
                              : QStringLiteral("EPSG code: none (user-defined)"));
    if (!e.remarks.isEmpty())
        out += Line(1, QStringLiteral("Remarks: %1").arg(e.remarks));
    return out;
}

QString UnitDescription(const UnitRecord& unit) {
    // The editor shows what follows the tab, the unit page what follows the first line feed:
    // the same two lines the dialogs write for a unit created on the spot.
    return unit.name + QLatin1Char('\t') +
           QStringLiteral("Metric Conversion Factor:%1").arg(Fixed(unit.metersPerUnit, 6)) + Eol +
           Line(1, QStringLiteral("Description: %1").arg(UnitDescriptionText(unit)));
}

QString UnitDescriptionText(const UnitRecord& unit) {
    if (!unit.description.trimmed().isEmpty())
        return unit.description;
    return QStringLiteral("%1, %2 metres (user-defined)")
        .arg(unit.name, QString::number(unit.metersPerUnit, 'g', 12));
}

QString Dtf(const DtfRecord& dtf) {
    QString out = Line(0, QStringLiteral("Datum transformation: %1").arg(dtf.name));
    out += Line(1, QStringLiteral("Method: %1").arg(DtfMethodName(dtf.methodIndex)));
    out += Line(1, QStringLiteral("Satellite ellipsoid: %1").arg(dtf.srcEllipsoid));
    out += Line(1, QStringLiteral("Local ellipsoid: %1").arg(dtf.dstEllipsoid));
    if (!dtf.localDatum.isEmpty())
        out += Line(1, QStringLiteral("Local datum: %1").arg(dtf.localDatum));
    if (dtf.methodIndex != DTF_NONE) {
        out += Line(1, QStringLiteral("Parameters:"));
        AddDtfValues(out, 2, dtf);
        if (dtf.option & DTF_OPTION_PUBLISHED_TO_WGS84)
            out += Line(1, QStringLiteral("The values are those published for %1 -> WGS 84; "
                                          "WGS 84 -> %1 applies them inverted.")
                               .arg(dtf.localDatum.isEmpty() ? dtf.dstEllipsoid : dtf.localDatum));
        if (IsTimeDependent(dtf)) {
            const QString epoch = Fixed(DefaultEpoch(dtf), 3);
            out += Line(1, QStringLiteral("Default observation epoch: %1 (taken for every point "
                                          "given without an observation epoch of its own)")
                               .arg(epoch));
            out += Line(1, QStringLiteral("A present-day observation needs its observation "
                                          "epoch: without one it is transformed as if observed "
                                          "in %1.")
                               .arg(epoch));
        } else if (dtf.obsEpoch != 0.0) {
            out += Line(
                1, QStringLiteral("Default observation epoch: %1").arg(Fixed(dtf.obsEpoch, 3)));
        }
    }
    out += Line(1, dtf.accuracy > 0 ? QStringLiteral("Accuracy: %1 m").arg(Full(dtf.accuracy))
                                    : QStringLiteral("Accuracy: unknown"));
    if (!dtf.extraText.isEmpty())
        out += Line(1, QStringLiteral("Area of use: %1").arg(dtf.extraText));
    out += Line(1, dtf.epsgCode ? QStringLiteral("EPSG code: %1").arg(dtf.epsgCode)
                                : QStringLiteral("EPSG code: none (user-defined)"));
    if (!dtf.description.isEmpty())
        out += Line(1, QStringLiteral("Description: %1").arg(dtf.description));
    return out;
}

QString Projection(const ProjectionRecord& prj, const QString& group, const QString& system) {
    QString out = Line(0, QStringLiteral("Projection: %1").arg(prj.name));
    if (!system.isEmpty())
        out += Line(1, QStringLiteral("Used by the coordinate system \"%1\" in the group \"%2\"")
                           .arg(system, group));
    out += Line(1, QStringLiteral("Method: %1").arg(PrjMethodName(prj.methodId)));
    out += Line(1, QStringLiteral("Unit: %1").arg(prj.unitName));
    if (!prj.params.isEmpty()) {
        out += Line(1, QStringLiteral("Parameters:"));
        for (const PrjParamRecord& p : prj.params) {
            const QString value = p.valueText.isEmpty() ? Full(p.value) : p.valueText;
            out += Line(2, QStringLiteral("%1: %2").arg(p.name, value));
        }
    }
    if (prj.epsgCode)
        out += Line(1, QStringLiteral("EPSG code: %1").arg(prj.epsgCode));
    if (!prj.description.isEmpty())
        out += Line(1, QStringLiteral("Description: %1").arg(prj.description));
    return out;
}

QString Users(const QString& what, const QList<SystemUse>& users, int predefinedCount) {
    const qsizetype total = users.size() + predefinedCount;
    QString out = Line(1, QStringLiteral("Stored coordinate systems with this %1: %2")
                              .arg(what, total ? QString::number(total) : QStringLiteral("none")));
    for (const SystemUse& use : users) {
        const QString projects =
            use.projects.isEmpty()
                ? QStringLiteral("in no project")
                : QStringLiteral("in the projects %1").arg(use.projects.join(QStringLiteral(", ")));
        out += Line(2, QStringLiteral("%1 / %2, %3").arg(use.group, use.system, projects));
    }
    if (predefinedCount > 0)
        out += Line(2, QStringLiteral("%1 pre-defined coordinate system%2")
                           .arg(predefinedCount)
                           .arg(predefinedCount == 1 ? QString() : QStringLiteral("s")));
    return out;
}

QString Projects(const QStringList& projects) {
    if (projects.isEmpty())
        return QString();
    return Line(
        1, QStringLiteral("Used by the projects: %1").arg(projects.join(QStringLiteral(", "))));
}

QString GeoidSummary(const SystemRecord& s) {
    if (!s.geoidOn || s.geoidMethod.isEmpty())
        return QStringLiteral("none");
    QString text = s.geoidMethod;
    if (s.geoidMethod.compare(QStringLiteral("Manual Separation"), Qt::CaseInsensitive) == 0)
        text += QStringLiteral(", separation %1 m").arg(Fixed(s.geoidSeparation, 3));
    if (!s.geoidFile.isEmpty())
        text += QStringLiteral(", file %1").arg(s.geoidFile);
    if (!s.chartDatum.isEmpty())
        text += QStringLiteral(", chart datum %1").arg(s.chartDatum);
    return text;
}

QString PostSummary(const PostCorrection& p, const QString& unitSuffix) {
    QStringList parts;
    if (p.on) {
        parts << QStringLiteral("translation E %1, N %2, Z %3%4")
                     .arg(Fixed(p.e, 3), Fixed(p.n, 3), Fixed(p.z, 3),
                          unitSuffix.isEmpty() ? QString() : QStringLiteral(" ") + unitSuffix);
        if (!p.modelName.isEmpty())
            parts << QStringLiteral("model %1%2")
                         .arg(p.modelName, p.modelFile.isEmpty()
                                               ? QString()
                                               : QStringLiteral(" (%1)").arg(p.modelFile));
    }
    if (p.horOn)
        parts << QStringLiteral("horizontal adjustment origin %1, %2, rotation %3\", scale %4")
                     .arg(Fixed(p.horOriginE, 3), Fixed(p.horOriginN, 3), Full(p.horRotation),
                          Full(p.horScale));
    if (p.vertOn)
        parts << QStringLiteral("vertical adjustment origin %1, %2, slopes %3 / %4 ppm")
                     .arg(Fixed(p.vertOriginE, 3), Fixed(p.vertOriginN, 3), Full(p.vertSlopeE),
                          Full(p.vertSlopeN));
    return parts.isEmpty() ? QStringLiteral("none") : parts.join(QStringLiteral("; "));
}

QString System(const SystemRecord& s, const DtfRecord* dtf, const ProjectionRecord* prj,
               const UnitRecord* unit) {
    const QString missing = QStringLiteral(" (not stored)");
    QString out = Line(0, QStringLiteral("Group: %1").arg(s.group));
    out += Line(0, QStringLiteral("System: %1").arg(s.name));
    out += Line(1, QStringLiteral("Satellite ellipsoid: %1").arg(s.satEllipsoid));
    out += Line(1, QStringLiteral("Local ellipsoid: %1").arg(s.localEllipsoid));
    out += Line(
        1, QStringLiteral("Datum transformation: %1%2").arg(s.dtfName, dtf ? QString() : missing));
    if (dtf) {
        out += Line(2, QStringLiteral("Method: %1").arg(DtfMethodName(dtf->methodIndex)));
        if (dtf->methodIndex != DTF_NONE) {
            const DtfValues v = DtfValuesInMethodSign(dtf->values, dtf->methodIndex);
            out += Line(2, QStringLiteral("Shifts: %1, %2, %3 m")
                               .arg(Fixed(v[0], 3), Fixed(v[1], 3), Fixed(v[2], 3)));
            out += Line(2, QStringLiteral("Rotations: %1, %2, %3\"")
                               .arg(Fixed(v[3], 6), Fixed(v[4], 6), Fixed(v[5], 6)));
            out += Line(2, QStringLiteral("Scale: %1 ppm").arg(Fixed(v[6], 6)));
            if (IsTimeDependent(*dtf))
                out += Line(2, QStringLiteral("Yearly rates, epoch %1; points without an "
                                              "observation epoch are taken at %2")
                                   .arg(Fixed(v[14], 3), Fixed(DefaultEpoch(*dtf), 3)));
        }
    }
    out += Line(
        1, QStringLiteral("Projection: %1%2").arg(s.projectionName, prj ? QString() : missing));
    if (prj) {
        out += Line(2, QStringLiteral("Method: %1").arg(PrjMethodName(prj->methodId)));
        if (!s.utmZoneText.isEmpty())
            out += Line(2, QStringLiteral("UTM zone: %1").arg(s.utmZoneText.simplified()));
        if (!s.utmHemisphereText.isEmpty())
            out += Line(2, QStringLiteral("Hemisphere: %1").arg(s.utmHemisphereText));
        for (const PrjParamRecord& p : prj->params) {
            if (p.type == PRM_HIDDEN)
                continue;
            out += Line(2, QStringLiteral("%1: %2").arg(
                               p.name, p.valueText.isEmpty() ? Full(p.value) : p.valueText));
        }
    }
    if (unit)
        out += Line(
            1,
            QStringLiteral("Unit: %1 (%2 m per unit)").arg(unit->name, Full(unit->metersPerUnit)));
    else
        out += Line(1, QStringLiteral("Unit: %1%2").arg(s.unitName, missing));
    if (s.primeMeridian != 0.0)
        out += Line(1, QStringLiteral("Prime meridian: %1 degrees east of Greenwich")
                           .arg(Full(s.primeMeridian)));
    out += Line(1, QStringLiteral("Geoid model: %1").arg(GeoidSummary(s)));
    out += Line(1, QStringLiteral("Post correction: %1")
                       .arg(PostSummary(s.post, unit ? unit->suffix : QString())));
    if (!s.area.isEmpty())
        out += Line(1, QStringLiteral("Area of use: %1").arg(s.area));
    out += Line(1, s.epsgCode ? QStringLiteral("EPSG code: %1").arg(s.epsgCode)
                              : QStringLiteral("EPSG code: none (user-defined)"));
    if (!s.remarks.isEmpty())
        out += Line(1, QStringLiteral("Remarks: %1").arg(s.remarks));
    return out;
}

} // namespace InfoTexts
