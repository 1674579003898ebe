#include "TerrameterWindow.h"

#include "util/GeoFormat.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace {

QLineEdit* Edit(const char* name) {
    auto* edit = new QLineEdit;
    edit->setObjectName(QString::fromLatin1(name));
    return edit;
}

bool ReadNumber(const QLineEdit* edit, double& out) {
    bool ok = false;
    out = edit->text().trimmed().toDouble(&ok);
    return ok;
}

// Angles: decimal degrees or any angle text the library reads.
bool ReadAngle(const QLineEdit* edit, double& out) {
    return ReadNumber(edit, out) || StringToGeo(edit->text().trimmed(), out);
}

} // namespace

TerrameterWindow::TerrameterWindow(OrvGeoCoordSysBase& cs, const QString& group,
                                   const QString& system, bool timeDependent, QWidget* parent)
    : QWidget(parent), m_cs(cs), m_lat(Edit("latitudeEdit")), m_lon(Edit("longitudeEdit")),
      m_h(Edit("heightEdit")), m_epoch(Edit("epochEdit")), m_e(Edit("eastingEdit")),
      m_n(Edit("northingEdit")), m_z(Edit("zEdit")), m_status(new QLabel) {
    setWindowTitle(QStringLiteral("Terrameter - %1 / %2").arg(group, system));
    m_status->setObjectName(QStringLiteral("statusLabel"));
    m_status->setWordWrap(true);

    auto* wgs = new QGroupBox(QStringLiteral("WGS 84"));
    auto* left = new QFormLayout(wgs);
    left->addRow(QStringLiteral("Latitude:"), m_lat);
    left->addRow(QStringLiteral("Longitude:"), m_lon);
    left->addRow(QStringLiteral("Height:"), m_h);
    left->addRow(QStringLiteral("Epoch:"), m_epoch);
    // The epoch only matters for a time-dependent datum transformation.
    m_epoch->setVisible(timeDependent);
    left->labelForField(m_epoch)->setVisible(timeDependent);
    m_epoch->setPlaceholderText(QStringLiteral("decimal year"));

    auto* grid = new QGroupBox(system);
    grid->setObjectName(QStringLiteral("gridGroup"));
    auto* right = new QFormLayout(grid);
    right->addRow(QStringLiteral("Easting:"), m_e);
    right->addRow(QStringLiteral("Northing:"), m_n);
    right->addRow(QStringLiteral("Z:"), m_z);

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

bool TerrameterWindow::ReadEpoch(double& epoch) {
    epoch = 0;
    if (!m_epoch->isVisibleTo(this) || m_epoch->text().trimmed().isEmpty())
        return true;
    return ReadNumber(m_epoch, epoch);
}

void TerrameterWindow::ConvertForward() {
    GeoPoint p;
    double h = 0;
    if (!ReadAngle(m_lat, p.x) || !ReadAngle(m_lon, p.y) ||
        (!m_h->text().trimmed().isEmpty() && !ReadNumber(m_h, h)) || !ReadEpoch(p.time)) {
        m_status->setText(QStringLiteral("Enter latitude, longitude and height."));
        return;
    }
    p.z = h;
    if (!m_cs.Forward(p)) {
        m_e->clear();
        m_n->clear();
        m_z->clear();
        m_status->setText(m_cs.LastError());
        return;
    }
    m_e->setText(QString::number(p.x, 'f', 4));
    m_n->setText(QString::number(p.y, 'f', 4));
    m_z->setText(QString::number(p.z, 'f', 4));
    m_status->clear();
}

void TerrameterWindow::ConvertInverse() {
    GeoPoint p;
    double z = 0;
    if (!ReadNumber(m_e, p.x) || !ReadNumber(m_n, p.y) ||
        (!m_z->text().trimmed().isEmpty() && !ReadNumber(m_z, z)) || !ReadEpoch(p.time)) {
        m_status->setText(QStringLiteral("Enter Easting, Northing and Z."));
        return;
    }
    p.z = z;
    if (!m_cs.Inverse(p)) {
        m_lat->clear();
        m_lon->clear();
        m_h->clear();
        m_status->setText(m_cs.LastError());
        return;
    }
    m_lat->setText(QString::number(p.x, 'f', 9));
    m_lon->setText(QString::number(p.y, 'f', 9));
    m_h->setText(QString::number(p.z, 'f', 4));
    m_status->clear();
}
