#include "TerrameterWindow.h"

#include "BatchFormat.h"

#include "api/GeoKeys.h"
#include "engine/GeoCoordSys.h"
#include "util/GeoFormat.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include <cmath>
#include <string>
#include <utility>

namespace {

// Latitude and longitude: degrees, minutes and decimal seconds (5 decimals: 0.3 mm).
constexpr unsigned DmsFormat = 7;
constexpr int DmsDecimals = 5;
constexpr int LatitudeKind = 10;
constexpr int LongitudeKind = 11;
constexpr int EpochDecimals = 3;
// Wide enough for the notes below the fields to wrap into a few lines.
constexpr int MinimumWidth = 720;

QLineEdit* Edit(const char* name) {
    auto* edit = new QLineEdit;
    edit->setObjectName(QString::fromLatin1(name));
    return edit;
}

QLabel* Label(const char* name, const QString& text = {}) {
    auto* label = new QLabel(text);
    label->setObjectName(QString::fromLatin1(name));
    return label;
}

// An edit with its unit.
QHBoxLayout* Row(QLineEdit* edit, QLabel* unit) {
    auto* row = new QHBoxLayout;
    row->addWidget(edit, 1);
    row->addWidget(unit);
    unit->setMinimumWidth(unit->fontMetrics().horizontalAdvance(QStringLiteral("ftUS0")));
    return row;
}

QString Fixed(double value, int decimals) {
    std::string text;
    BatchFormat::AppendFixed(text, value, decimals);
    return QString::fromStdString(text);
}

bool ReadNumber(const QLineEdit* edit, double& out) {
    bool ok = false;
    const double value = edit->text().trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return false;
    out = value;
    return true;
}

// Angles: decimal degrees or any angle text the library reads.
bool ReadAngle(const QLineEdit* edit, double& out) {
    return ReadNumber(edit, out) || StringToGeo(edit->text().trimmed(), out);
}

} // namespace

SystemFacts DescribeSystem(const OrvGeoCoordSysBase& cs) {
    SystemFacts facts;
    facts.unit = QStringLiteral("m");
    facts.unitName = QStringLiteral("metre");
    facts.zMeaning = QStringLiteral("height");
    const auto* engine = dynamic_cast<const GeoCoordSys*>(&cs);
    if (!engine || !engine->IsDefined())
        return facts;
    const SystemDefinition& def = engine->Definition();
    if (!def.unit.name.isEmpty()) {
        facts.unitName = def.unit.name;
        facts.unit = def.unit.suffix.isEmpty() ? def.unit.name : def.unit.suffix;
    }
    const SystemRecord& sys = def.system;
    const int geoid =
        sys.geoidOn ? PipelineBuilder::GeoidMethodIndex(sys.geoidMethod) : GeoidKey::None;
    const QString chartDatum = sys.chartDatum.trimmed();
    if (geoid == GeoidKey::ManualSeparation) {
        facts.zMeaning = QStringLiteral("height above the geoid: the WGS 84 height less a "
                                        "geoid separation of %1 m")
                             .arg(Fixed(sys.geoidSeparation, BatchFormat::LengthDecimals));
    } else if (geoid == GeoidKey::ChartDatum) {
        facts.zMeaning =
            chartDatum.isEmpty() || chartDatum == u"--None--"
                ? QStringLiteral("height above the vertical datum of %1").arg(sys.geoidFile)
                : QStringLiteral("height above chart datum %1 (%2)").arg(chartDatum, sys.geoidFile);
    } else if (geoid > GeoidKey::None) {
        facts.zMeaning = sys.geoidFile.trimmed().isEmpty()
                             ? QStringLiteral("height above the geoid (%1)").arg(sys.geoidMethod)
                             : QStringLiteral("height above the geoid (%1, %2)")
                                   .arg(sys.geoidMethod, sys.geoidFile);
    } else if (def.dtf.methodIndex != DTF_NONE) {
        const QString ellipsoid =
            def.localEllipsoid.name.isEmpty() ? QStringLiteral("local") : def.localEllipsoid.name;
        facts.zMeaning = QStringLiteral("height above the %1 ellipsoid").arg(ellipsoid);
    } else {
        facts.zMeaning = QStringLiteral("height above the WGS 84 ellipsoid");
    }
    if (sys.post.vertOn || (sys.post.on && sys.post.z != 0))
        facts.zMeaning += QStringLiteral(", with the system's vertical corrections");
    facts.timeDependent = engine->IsTimeDependent();
    if (facts.timeDependent) {
        const double epoch = def.dtf.obsEpoch != 0 ? def.dtf.obsEpoch : def.dtf.values[14];
        facts.defaultEpoch = Fixed(epoch, EpochDecimals);
    }
    return facts;
}

TerrameterWindow::TerrameterWindow(OrvGeoCoordSysBase& cs, const QString& group,
                                   const QString& system, const SystemFacts& facts, QWidget* parent)
    : QWidget(parent), m_cs(cs), m_lat(Edit("latitudeEdit")), m_lon(Edit("longitudeEdit")),
      m_h(Edit("heightEdit")), m_epoch(Edit("epochEdit")), m_e(Edit("eastingEdit")),
      m_n(Edit("northingEdit")), m_z(Edit("zEdit")), m_latDms(Label("latitudeDmsLabel")),
      m_lonDms(Label("longitudeDmsLabel")), m_status(Label("statusLabel")),
      m_timeDependent(facts.timeDependent) {
    setWindowTitle(QStringLiteral("Terrameter - %1 / %2").arg(group, system));
    setMinimumWidth(MinimumWidth);
    m_status->setWordWrap(true);
    const QString degree = QStringLiteral("\u00B0");

    auto* wgs = new QGroupBox(QStringLiteral("WGS 84"));
    auto* left = new QFormLayout(wgs);
    // Latitude and longitude also in degrees, minutes and seconds with their hemisphere.
    left->addRow(QStringLiteral("Latitude:"), Row(m_lat, Label("latitudeUnitLabel", degree)));
    left->addRow(QString(), m_latDms);
    left->addRow(QStringLiteral("Longitude:"), Row(m_lon, Label("longitudeUnitLabel", degree)));
    left->addRow(QString(), m_lonDms);
    left->addRow(QStringLiteral("Height:"),
                 Row(m_h, Label("heightUnitLabel", QStringLiteral("m"))));
    auto* heightNote =
        Label("heightNoteLabel", QStringLiteral("Height above the WGS 84 ellipsoid; empty is 0."));
    heightNote->setWordWrap(true);
    left->addRow(heightNote);
    m_lat->setPlaceholderText(QStringLiteral("52.5 or 52 30 00N"));
    m_lon->setPlaceholderText(QStringLiteral("4.25 or 4 15 00E"));
    m_h->setPlaceholderText(QStringLiteral("0"));
    // The epoch only matters for a time-dependent datum transformation.
    auto* epochRow = Row(m_epoch, Label("epochUnitLabel", QStringLiteral("year")));
    auto* epochNote = Label("epochNoteLabel",
                            QStringLiteral("Observation epoch as a decimal year; empty: %1, the "
                                           "datum transformation's default.")
                                .arg(facts.defaultEpoch));
    epochNote->setWordWrap(true);
    if (facts.timeDependent) {
        left->addRow(QStringLiteral("Epoch:"), epochRow);
        left->addRow(epochNote);
        m_epoch->setPlaceholderText(facts.defaultEpoch);
    } else {
        // Kept for the object tree, never shown.
        auto* hidden = new QWidget(this);
        hidden->setLayout(epochRow);
        hidden->hide();
        epochNote->setParent(hidden);
    }

    auto* grid = new QGroupBox(system);
    grid->setObjectName(QStringLiteral("gridGroup"));
    auto* right = new QFormLayout(grid);
    right->addRow(QStringLiteral("Easting:"), Row(m_e, Label("eastingUnitLabel", facts.unit)));
    right->addRow(QStringLiteral("Northing:"), Row(m_n, Label("northingUnitLabel", facts.unit)));
    right->addRow(QStringLiteral("Z:"), Row(m_z, Label("zUnitLabel", facts.unit)));
    auto* zNote =
        Label("zMeaningLabel",
              QStringLiteral("Z: %1, in %2 (%3).").arg(facts.zMeaning, facts.unitName, facts.unit));
    zNote->setWordWrap(true);
    right->addRow(zNote);

    auto* sides = new QHBoxLayout;
    sides->addWidget(wgs);
    sides->addWidget(grid);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(sides);
    layout->addWidget(m_status);

    for (QLineEdit* edit : {m_lat, m_lon, m_h, m_epoch})
        connect(edit, &QLineEdit::textEdited, this, &TerrameterWindow::ConvertForward);
    for (QLineEdit* edit : {m_e, m_n, m_z})
        connect(edit, &QLineEdit::textEdited, this, &TerrameterWindow::ConvertInverse);
}

bool TerrameterWindow::ReadEpoch(double& epoch, QString& why) const {
    epoch = ObservationEpochNone;
    const QString text = m_epoch->text().trimmed();
    if (!m_timeDependent || text.isEmpty())
        return true;
    if (ReadNumber(m_epoch, epoch) && IsObservationEpochValid(epoch))
        return true;
    why = QStringLiteral("The epoch \"%1\" is not a year from %2 to %3 (empty: the default "
                         "epoch).")
              .arg(text)
              .arg(ObservationEpochMin)
              .arg(ObservationEpochMax);
    return false;
}

void TerrameterWindow::ShowAngles(double lat, double lon) {
    QString text;
    m_latDms->setText(FormatGeogs(lat, DmsFormat, DmsDecimals, LatitudeKind, text) ? text
                                                                                   : QString());
    m_lonDms->setText(FormatGeogs(lon, DmsFormat, DmsDecimals, LongitudeKind, text) ? text
                                                                                    : QString());
}

void TerrameterWindow::ClearGrid(const QString& why) {
    m_e->clear();
    m_n->clear();
    m_z->clear();
    m_status->setText(why);
}

void TerrameterWindow::ClearWgs84(const QString& why) {
    m_lat->clear();
    m_lon->clear();
    m_h->clear();
    m_latDms->clear();
    m_lonDms->clear();
    m_status->setText(why);
}

void TerrameterWindow::ConvertForward() {
    m_latDms->clear();
    m_lonDms->clear();
    GeoPoint p;
    QString why;
    const QString latText = m_lat->text().trimmed(), lonText = m_lon->text().trimmed();
    if (latText.isEmpty() || lonText.isEmpty()) {
        ClearGrid(QStringLiteral("Enter latitude and longitude."));
        return;
    }
    if (!ReadAngle(m_lat, p.x)) {
        ClearGrid(QStringLiteral("The latitude \"%1\" is not an angle.").arg(latText));
        return;
    }
    if (!(std::abs(p.x) <= BatchFormat::LatitudeLimit)) {
        ClearGrid(QStringLiteral("The latitude must lie between -90 and 90 degrees."));
        return;
    }
    if (!ReadAngle(m_lon, p.y)) {
        ClearGrid(QStringLiteral("The longitude \"%1\" is not an angle.").arg(lonText));
        return;
    }
    if (!BatchFormat::NormaliseLongitude(p.y)) {
        ClearGrid(QStringLiteral("The longitude must lie between -360 and 360 degrees."));
        return;
    }
    ShowAngles(p.x, p.y);
    if (!m_h->text().trimmed().isEmpty() && !ReadNumber(m_h, p.z)) {
        ClearGrid(QStringLiteral("The height \"%1\" is not a number.").arg(m_h->text().trimmed()));
        return;
    }
    if (!ReadEpoch(p.time, why)) {
        ClearGrid(why);
        return;
    }
    if (!m_cs.Forward(p)) {
        ClearGrid(m_cs.LastError());
        return;
    }
    m_e->setText(Fixed(p.x, BatchFormat::LengthDecimals));
    m_n->setText(Fixed(p.y, BatchFormat::LengthDecimals));
    m_z->setText(Fixed(p.z, BatchFormat::LengthDecimals));
    m_status->clear();
}

void TerrameterWindow::ConvertInverse() {
    GeoPoint p;
    QString why;
    if (m_e->text().trimmed().isEmpty() || m_n->text().trimmed().isEmpty()) {
        ClearWgs84(QStringLiteral("Enter Easting and Northing."));
        return;
    }
    for (const auto& [edit, name] : {std::pair{m_e, "Easting"}, std::pair{m_n, "Northing"}}) {
        double& value = edit == m_e ? p.x : p.y;
        if (!ReadNumber(edit, value)) {
            ClearWgs84(QStringLiteral("The %1 \"%2\" is not a number.")
                           .arg(QLatin1String(name), edit->text().trimmed()));
            return;
        }
    }
    if (!m_z->text().trimmed().isEmpty() && !ReadNumber(m_z, p.z)) {
        ClearWgs84(QStringLiteral("Z \"%1\" is not a number.").arg(m_z->text().trimmed()));
        return;
    }
    if (!ReadEpoch(p.time, why)) {
        ClearWgs84(why);
        return;
    }
    if (!m_cs.Inverse(p)) {
        ClearWgs84(m_cs.LastError());
        return;
    }
    m_lat->setText(Fixed(p.x, BatchFormat::AngleDecimals));
    m_lon->setText(Fixed(p.y, BatchFormat::AngleDecimals));
    m_h->setText(Fixed(p.z, BatchFormat::LengthDecimals));
    ShowAngles(p.x, p.y);
    m_status->clear();
}
