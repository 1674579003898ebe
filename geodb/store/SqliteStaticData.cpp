#include "store/SqliteStaticData.h"

#include "api/ProjectionMethods.h"
#include "engine/DraftPreview.h"
#include "store/InfoTexts.h"
#include "util/GeoFormat.h"

#include <QRegularExpression>

#include <cmath>

namespace {

const QString NoneEntry = QStringLiteral("--None--");

// The list entry "--None--" stands for no model.
QString ModelText(const QString& text) {
    return text == NoneEntry ? QString() : text;
}

QString Esc(const QString& text) {
    return text.toHtmlEscaped();
}

QString Num(double value, int decimals) {
    return QString::number(value, 'f', decimals);
}

// The number a parameter's text shows: angles as latitude or longitude texts, everything
// else as a plain number (point or comma).
bool ParseParamText(const QString& text, unsigned type, double& out) {
    if (type == PRM_LATITUDE || type == PRM_LONGITUDE)
        return StringToGeo(text, out);
    bool ok = false;
    QString plain = text.trimmed();
    plain.replace(QLatin1Char(','), QLatin1Char('.'));
    const double value = plain.toDouble(&ok);
    if (ok && std::isfinite(value))
        out = value;
    return ok && std::isfinite(value);
}

// True when the text is the value rounded for display, so the value keeps its precision.
bool TextShowsValue(const QString& text, unsigned type, double parsed, double value) {
    double tolerance = 1e-9; // degrees: far below the 7 decimals of arc-seconds shown
    if (type != PRM_LATITUDE && type != PRM_LONGITUDE) {
        const qsizetype point = text.indexOf(QRegularExpression(QStringLiteral("[.,]")));
        const qsizetype decimals = point < 0 ? 0 : text.trimmed().size() - point - 1;
        tolerance = 0.5 * std::pow(10.0, -double(decimals)) * 1.000001;
    }
    return std::fabs(parsed - value) <= tolerance + 1e-12 * std::fabs(value);
}

QString ParamText(double value, unsigned type) {
    QString text;
    if (type == PRM_LATITUDE || type == PRM_LONGITUDE) {
        if (FormatGeogs(value, 7, 7, type == PRM_LATITUDE ? 10 : 11, text, true, true))
            return text;
    }
    return Num(value, 6);
}

// Metres, feet and the like with three decimals, never "-0.000".
QString Length(double value) {
    const QString text = Num(value, 3);
    return text == QStringLiteral("-0.000") ? QStringLiteral("0.000") : text;
}

QString Angle(double value, int kind) {
    QString text;
    if (!FormatGeogs(value, 7, 5, kind, text, true, true))
        text = QString::number(value, 'f', 9);
    return Esc(text);
}

// The overview's rows for the test point and the warnings of a draft.
QString PreviewRows(const DraftPreview& preview, const UnitRecord& unit) {
    constexpr int LatitudeKind = 10;
    constexpr int LongitudeKind = 11;
    auto row = [](const QString& label, const QString& valueHtml) {
        return QStringLiteral("<tr><td><b>%1</b></td><td>%2</td></tr>").arg(label, valueHtml);
    };
    QString html;
    if (preview.source == DraftPreview::PointSource::None) {
        html += row(QStringLiteral("Test point:"),
                    QStringLiteral("none: the definition has no area of use and no projection "
                                   "origin"));
    } else {
        const QString suffix = Esc(unit.suffix.isEmpty() ? unit.name : unit.suffix);
        QString point = QStringLiteral("WGS 84 latitude: %1<br>WGS 84 longitude: %2<br>"
                                       "WGS 84 height: %3 m")
                            .arg(Angle(preview.wgs84.x, LatitudeKind),
                                 Angle(preview.wgs84.y, LongitudeKind), Length(preview.wgs84.z));
        if (preview.converted)
            point += QStringLiteral("<br>Easting: %1 %4<br>Northing: %2 %4<br>Z: %3 %4")
                         .arg(Length(preview.grid.x), Length(preview.grid.y),
                              Length(preview.grid.z), suffix);
        else
            point += QStringLiteral("<br>Not converted: %1").arg(Esc(preview.failure));
        switch (preview.source) {
        case DraftPreview::PointSource::DtfAreaOfUse:
            point += QStringLiteral("<br>(the centre of the datum transformation's area of use)");
            break;
        case DraftPreview::PointSource::ProjectionOrigin:
            point += QStringLiteral("<br>(the origin of the projection)");
            break;
        default:
            point += QStringLiteral("<br>(the centre of the system's area of use)");
            break;
        }
        html += row(QStringLiteral("Test point:"), point);
    }
    for (const QString& warning : preview.warnings)
        html += row(QStringLiteral("<font color=\"#b00000\">Warning:</font>"),
                    QStringLiteral("<font color=\"#b00000\">%1</font>").arg(Esc(warning)));
    return html;
}

} // namespace

SqliteStaticData::SqliteStaticData(std::unique_ptr<GeoStore> store) : m_store(std::move(store)) {
    Clear();
}

SqliteStaticData::~SqliteStaticData() = default;

void SqliteStaticData::Clear() {
    m_draft = SystemDraft{};
    m_geoidMethod.clear();
    m_geoidFile.clear();
    m_loadedFromStore = false;
    m_keepDtfTrailing = false;
    m_draft.system.satEllipsoid = QStringLiteral("WGS 84");
    m_draft.unit.name.clear();
    m_draft.unit.metersPerUnit = 1.0;
    m_lastError.clear();
}

bool SqliteStaticData::LoadCoordSys(const QString& group, const QString& system) {
    m_lastError.clear();
    const auto def = m_store->LoadDefinition(group, system, &m_lastError);
    if (!def)
        return false;
    SystemDraft d;
    d.system = def->system;
    d.localValues = def->localEllipsoid.values;
    d.dtf = def->dtf;
    d.dtfMethodName = InfoTexts::DtfMethodName(def->dtf.methodIndex);
    d.projection = def->projection;
    d.prjMethodName = InfoTexts::PrjMethodName(def->projection.methodId);
    d.unit = def->unit;
    d.utmMode =
        !d.system.utmZoneText.isEmpty() || def->projection.methodId == ProjectionMethods::UtmId;
    m_draft = d;
    m_geoidMethod.clear();
    m_geoidFile.clear();
    m_loadedFromStore = true;
    m_keepDtfTrailing = false;
    return true;
}

SystemDraft SqliteStaticData::Resolved() const {
    SystemDraft d = m_draft;
    d.system.geoidMethod = EffectiveGeoidMethod();
    d.system.geoidFile = EffectiveGeoidFile();
    d.system.geoidOn = d.system.geoidOn && !d.system.geoidMethod.isEmpty();
    if (m_keepDtfTrailing) {
        // those of the transformation of that name when one is stored, else those loaded
        QString unread; // a transformation that cannot be read keeps the values loaded
        if (const auto stored = m_store->FindDtf(d.dtf.name, GEODB_ALL, &unread)) {
            d.dtf.obsEpoch = stored->obsEpoch;
            d.dtf.trailing2 = stored->trailing2;
        }
    }
    return d;
}

QString SqliteStaticData::EffectiveGeoidMethod() const {
    return m_geoidMethod.isEmpty() ? m_draft.system.geoidMethod : m_geoidMethod;
}

QString SqliteStaticData::EffectiveGeoidFile() const {
    // A file belongs to its method: a method chosen anew brings its own file (or none).
    if (!m_geoidMethod.isEmpty() || !m_geoidFile.isEmpty())
        return m_geoidFile;
    return m_draft.system.geoidFile;
}

bool SqliteStaticData::SaveCoordSys() {
    m_lastError.clear();
    return SystemWriter::Save(*m_store, Resolved(), &m_lastError);
}

void SqliteStaticData::GetDtfMethodNames(QStringList& out) {
    out = InfoTexts::DtfMethodNames();
}

int SqliteStaticData::GetDtfMethodIndex(const QString& method) {
    return InfoTexts::DtfMethodIndex(method);
}

void SqliteStaticData::GetPrjMethodNames(QStringList& out) {
    out.clear();
    for (const ProjectionMethods::Method& m : ProjectionMethods::All())
        out << QString::fromUtf8(m.name);
}

int SqliteStaticData::GetPrjMethodId(const QString& prjMethodName) {
    const ProjectionMethods::Method* m = ProjectionMethods::ByName(prjMethodName);
    return m ? m->id : -1;
}

bool SqliteStaticData::IsUtmMethod(int prjMethodId) {
    return prjMethodId == ProjectionMethods::UtmId;
}

void SqliteStaticData::AssignSystemName(const QString& name, const QString&) {
    m_draft.system.name = name;
}

void SqliteStaticData::SetGroupName(const QString& group, const QString&) {
    m_draft.system.group = group;
}

void SqliteStaticData::SetDtfName(const QString& name, const QString&) {
    m_draft.dtf.name = name;
}

void SqliteStaticData::SelectLocalEllipsoid(const QString& ellipsoid, const QString&) {
    m_draft.system.localEllipsoid = ellipsoid;
    // A look-up that cannot be read leaves the values; saving reads again and refuses.
    if (const auto e = m_store->FindEllipsoid(ellipsoid, GEODB_ALL, &m_lastError))
        m_draft.localValues = e->values;
}

void SqliteStaticData::SetUnitName(const QString& unit, const QString&) {
    m_draft.unit.name = unit;
    if (const auto u = m_store->FindUnit(unit, GEODB_ALL, &m_lastError)) {
        m_draft.unit.metersPerUnit = u->metersPerUnit;
        m_draft.unit.suffix = u->suffix;
        m_draft.unit.description = u->description;
        m_draft.unit.category = u->category;
    }
}

void SqliteStaticData::SetProjectionName(const QString& prjName, short methodId) {
    m_draft.projection.name = prjName;
    m_draft.projection.methodId = methodId;
    if (const ProjectionMethods::Method* m = ProjectionMethods::ById(methodId))
        m_draft.prjMethodName = QString::fromUtf8(m->name);
}

void SqliteStaticData::SetDtfExtraText(const QString& text) {
    m_draft.dtf.extraText = text;
}

void SqliteStaticData::SetDtfMethod(const QString& method, int index) {
    m_draft.dtfMethodName = method;
    m_draft.dtf.methodIndex = index;
}

void SqliteStaticData::SetUnitDefinition(double metersPerUnit, const QString& description,
                                         int category) {
    m_draft.unit.metersPerUnit = metersPerUnit;
    m_draft.unit.description = description;
    m_draft.unit.category = category;
}

void SqliteStaticData::SetUnitFactor(double metersPerUnit) {
    m_draft.unit.metersPerUnit = metersPerUnit;
}

void SqliteStaticData::SetDtfParameters(const DtfValues& values, unsigned char option,
                                        double trailing1, double trailing2) {
    m_draft.dtf.values = values;
    m_draft.dtf.option = option;
    if (m_loadedFromStore) {
        // The editor hands over the further values (accuracy, EPSG code) it read with
        // GetDtfParameters; a user record keeps none, and they are no observation epoch.
        m_keepDtfTrailing = true;
        return;
    }
    m_draft.dtf.obsEpoch = trailing1;
    m_draft.dtf.trailing2 = trailing2;
}

void SqliteStaticData::SetProjectionParameters(const PrjParamBlock& params,
                                               const QStringList& values, const QStringList& names,
                                               const QList<unsigned>& types) {
    // The text is what the person saw and edited; the number is kept only where the text
    // shows it (rounded), so that a text changed alone (a converted length) is not lost.
    QList<PrjParamRecord> list;
    for (int i = 0; i < names.size(); ++i) {
        PrjParamRecord p;
        p.name = names[i];
        const bool haveValue = i < params.count && i < PrjParamBlock::MaxParams;
        p.value = haveValue ? params.values[i] : 0.0;
        p.valueText = i < values.size() ? values[i] : QString();
        p.type = i < types.size() ? types[i] : PRM_PLAIN;
        double parsed = 0;
        if (p.type != PRM_HIDDEN) {
            if (!p.valueText.trimmed().isEmpty() && ParseParamText(p.valueText, p.type, parsed)) {
                if (!haveValue || !TextShowsValue(p.valueText, p.type, parsed, p.value))
                    p.value = parsed;
            } else if (p.valueText.trimmed().isEmpty() && haveValue) {
                p.valueText = ParamText(p.value, p.type);
            }
        }
        list << p;
    }
    m_draft.projection.params = list;
}

void SqliteStaticData::SetLocalEllipsoidValues(const EllipsoidValues& values) {
    m_draft.localValues = values;
}

QString SqliteStaticData::GetAssignedGroupName(QString& out) {
    return out = m_draft.system.group;
}

QString SqliteStaticData::GetAssignedSystemName(QString& out) {
    return out = m_draft.system.name;
}

QString SqliteStaticData::GetCurrentDtfName(QString& out) {
    return out = m_draft.dtf.name;
}

QString SqliteStaticData::GetLocalEllipsoidName(QString& out) {
    return out = m_draft.system.localEllipsoid;
}

QString SqliteStaticData::GetSystemUnit(QString& out) {
    return out = m_draft.unit.name;
}

void SqliteStaticData::GetCurrentUnitFactor(double& out) {
    out = m_draft.unit.metersPerUnit;
}

void SqliteStaticData::SetDtfDescription(const QString& text) {
    m_draft.dtf.description = text;
}

void SqliteStaticData::SetUnitSuffix(const QString& suffix) {
    m_draft.unit.suffix = suffix;
}

QString SqliteStaticData::GetDtfDescription(QString& out) {
    return out = m_draft.dtf.description;
}

QString SqliteStaticData::GetCurrentUnitDescription(QString& out) {
    return out = m_draft.unit.description;
}

QString SqliteStaticData::GetOverviewText(QString& out) {
    const SystemDraft d = Resolved();
    const SystemRecord& s = d.system;
    auto row = [](const QString& label, const QString& valueHtml) {
        return QStringLiteral("<tr><td><b>%1</b></td><td>%2</td></tr>").arg(label, valueHtml);
    };
    QString html =
        QStringLiteral("<html><body><h3>%1</h3><table cellspacing=\"2\">").arg(Esc(s.name));
    html += row(QStringLiteral("Group:"), Esc(s.group));
    html += row(QStringLiteral("Satellite ellipsoid:"), Esc(s.satEllipsoid));
    html +=
        row(QStringLiteral("Local ellipsoid:"),
            QStringLiteral("%1 (a = %2 m, 1/f = %3)")
                .arg(Esc(s.localEllipsoid), Num(d.localValues[0], 3), Num(d.localValues[2], 9)));

    const int method =
        d.dtfMethodName.isEmpty() ? d.dtf.methodIndex : InfoTexts::DtfMethodIndex(d.dtfMethodName);
    QString dtf =
        QStringLiteral("%1<br>%2")
            .arg(Esc(d.dtf.name), Esc(d.dtfMethodName.isEmpty() ? InfoTexts::DtfMethodName(method)
                                                                : d.dtfMethodName));
    if (method > DTF_NONE) {
        // in the method's own convention, as the parameters page showed them
        const DtfValues v = DtfValuesInMethodSign(d.dtf.values, method);
        dtf += QStringLiteral("<br>Shifts X, Y, Z: %1, %2, %3 m")
                   .arg(Num(v[0], 6), Num(v[1], 6), Num(v[2], 6));
        dtf += QStringLiteral("<br>Rotations X, Y, Z: %1, %2, %3 &quot;")
                   .arg(Num(v[3], 6), Num(v[4], 6), Num(v[5], 6));
        dtf += QStringLiteral("<br>Scale: %1 ppm").arg(Num(v[6], 6));
        if (method >= DTF_15_POSITION_VECTOR) {
            dtf += QStringLiteral("<br>Shift rates: %1, %2, %3 m/year")
                       .arg(Num(v[7], 8), Num(v[8], 8), Num(v[9], 8));
            dtf += QStringLiteral("<br>Rotation rates: %1, %2, %3 &quot;/year")
                       .arg(Num(v[10], 8), Num(v[11], 8), Num(v[12], 8));
            dtf += QStringLiteral("<br>Scale rate: %1 ppm/year<br>Epoch: %2")
                       .arg(Num(v[13], 8), Num(v[14], 3));
        }
    }
    if (s.primeMeridian != 0.0)
        html += row(QStringLiteral("Prime meridian:"),
                    QStringLiteral("%1 degrees east of Greenwich")
                        .arg(QString::number(s.primeMeridian, 'g', 15)));
    html += row(QStringLiteral("Datum transformation:"), dtf);
    html += row(QStringLiteral("Unit:"),
                QStringLiteral("%1 (%2 m per unit)")
                    .arg(Esc(d.unit.name), QString::number(d.unit.metersPerUnit, 'g', 12)));

    QString prj = QStringLiteral("%1<br>%2").arg(Esc(d.projection.name), Esc(d.prjMethodName));
    if (d.utmMode && !s.utmZoneText.isEmpty()) {
        prj += QStringLiteral("<br>UTM zone: %1<br>Hemisphere: %2")
                   .arg(Esc(s.utmZoneText.simplified()), Esc(s.utmHemisphereText));
    } else {
        for (const PrjParamRecord& p : d.projection.params) {
            if (p.type == PRM_HIDDEN)
                continue;
            const QString value =
                p.valueText.isEmpty() ? QString::number(p.value, 'g', 15) : p.valueText;
            prj += QStringLiteral("<br>%1: %2").arg(Esc(p.name), Esc(value));
        }
    }
    html += row(QStringLiteral("Projection:"), prj);

    if (s.geoidOn && !s.geoidMethod.isEmpty()) {
        QString geoid = Esc(s.geoidMethod);
        if (s.geoidMethod.compare(QStringLiteral("Manual Separation"), Qt::CaseInsensitive) == 0)
            geoid += QStringLiteral("<br>Separation: %1 m").arg(Num(s.geoidSeparation, 3));
        if (!s.geoidFile.isEmpty())
            geoid += QStringLiteral("<br>File: %1").arg(Esc(s.geoidFile));
        html += row(QStringLiteral("Geoid model:"), geoid);
        html += row(QStringLiteral("Chart datum:"),
                    s.chartDatum.isEmpty() ? QStringLiteral("None") : Esc(s.chartDatum));
    } else {
        html += row(QStringLiteral("Geoid model:"), QStringLiteral("None"));
    }
    html +=
        row(QStringLiteral("Post correction:"), Esc(InfoTexts::PostSummary(s.post, d.unit.suffix)));
    // What the system will do: a point converted with it, and what looks like a mistake.
    html += PreviewRows(PreviewDraft(*m_store, d), d.unit);
    html += QStringLiteral("</table></body></html>");
    return out = html;
}

void SqliteStaticData::SelectSatelliteEllipsoid(const QString& ellipsoid) {
    m_draft.system.satEllipsoid = ellipsoid;
}

QString SqliteStaticData::GetSatelliteEllipsoidName(QString& out) {
    return out = m_draft.system.satEllipsoid;
}

void SqliteStaticData::SetProjectionMethod(const QString& methodName) {
    m_draft.prjMethodName = methodName;
    if (const ProjectionMethods::Method* m = ProjectionMethods::ByName(methodName))
        m_draft.projection.methodId = m->id;
}

void SqliteStaticData::SetGeoidModelName(const QString& text) {
    // The model as stored; a method set afterwards (only a changed one) overrides it.
    m_draft.system.geoidMethod = ModelText(text);
    m_geoidMethod.clear();
    if (!m_draft.system.geoidMethod.isEmpty())
        m_draft.system.geoidOn = true;
}

void SqliteStaticData::SetGeoidModelFile(const QString& text) {
    m_draft.system.geoidFile = text;
    m_geoidFile.clear();
}

void SqliteStaticData::SetManualGeoidSeparation(double separation) {
    m_draft.system.geoidSeparation = separation;
}

void SqliteStaticData::SetGeoidMethod(const QString& method) {
    // An empty method leaves the model as it is (the editor hands over only changes);
    // "--None--" switches it off. Naming a method applies it; SetGeoidEnabled has the last
    // word.
    if (method == NoneEntry) {
        m_geoidMethod.clear();
        m_draft.system.geoidOn = false;
        return;
    }
    m_geoidMethod = method;
    if (!method.isEmpty())
        m_draft.system.geoidOn = true;
}

void SqliteStaticData::SetGeoidFile(const QString& fileName) {
    m_geoidFile = fileName;
}

void SqliteStaticData::SetChartDatum(const QString& chartDatum) {
    m_draft.system.chartDatum = ModelText(chartDatum);
}

QString SqliteStaticData::GetGeoidMethod(QString& out) {
    return out = m_draft.system.geoidOn ? EffectiveGeoidMethod() : QString();
}

QString SqliteStaticData::GetGeoidFile(QString& out) {
    return out = m_draft.system.geoidOn ? EffectiveGeoidFile() : QString();
}

QString SqliteStaticData::GetChartDatum(QString& out) {
    return out = m_draft.system.chartDatum;
}

void SqliteStaticData::SetPostText1(const QString& text) {
    SetPostModelName(text);
}

void SqliteStaticData::SetPostText2(const QString& text) {
    SetPostModelFile(text);
}

void SqliteStaticData::SetPostTranslation(double e, double n, double z) {
    m_draft.system.post.e = e;
    m_draft.system.post.n = n;
    m_draft.system.post.z = z;
}

void SqliteStaticData::GetPostTranslation(double& e, double& n, double& z) {
    e = m_draft.system.post.e;
    n = m_draft.system.post.n;
    z = m_draft.system.post.z;
}

void SqliteStaticData::SetPostHorAdjust(double scale, double originE, double originN,
                                        double rotation) {
    PostCorrection& p = m_draft.system.post;
    p.horScale = scale;
    p.horOriginE = originE;
    p.horOriginN = originN;
    p.horRotation = rotation;
}

void SqliteStaticData::SetPostVertAdjust(double originE, double originN, double slopeE,
                                         double slopeN) {
    PostCorrection& p = m_draft.system.post;
    p.vertOriginE = originE;
    p.vertOriginN = originN;
    p.vertSlopeE = slopeE;
    p.vertSlopeN = slopeN;
}

void SqliteStaticData::SetPostModelFile(const QString& text) {
    m_draft.system.post.modelFile = text;
}

QString SqliteStaticData::GetPostModelFile(QString& out) {
    return out = m_draft.system.post.modelFile;
}

void SqliteStaticData::SetPostModelName(const QString& text) {
    m_draft.system.post.modelName = ModelText(text);
}

QString SqliteStaticData::GetPostModelName(QString& out) {
    return out = m_draft.system.post.modelName;
}

void SqliteStaticData::SetGeoidEnabled(bool on) {
    m_draft.system.geoidOn = on;
}

void SqliteStaticData::SetPostTranslationOn(bool on) {
    m_draft.system.post.on = on;
}

bool SqliteStaticData::IsPostTranslationOn() {
    return m_draft.system.post.on;
}

void SqliteStaticData::SetPostHorAdjustOn(bool on) {
    m_draft.system.post.horOn = on;
}

void SqliteStaticData::SetPostVertAdjustOn(bool on) {
    m_draft.system.post.vertOn = on;
}

void SqliteStaticData::SetUtmZoneText(const QString& zoneText) {
    m_draft.system.utmZoneText = zoneText;
}

void SqliteStaticData::SetUtmHemisphereText(const QString& hemisphereText) {
    m_draft.system.utmHemisphereText = hemisphereText;
}

void SqliteStaticData::SetUtmMode(bool on) {
    m_draft.utmMode = on;
}

void SqliteStaticData::SetPrimeMeridian(double degreesEast) {
    m_draft.system.primeMeridian = degreesEast;
}

bool SqliteStaticData::IsMethodUnitFree(int methodId) {
    const ProjectionMethods::Method* m = ProjectionMethods::ById(methodId);
    return m ? m->unitFree : true;
}
