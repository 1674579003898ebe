#pragma once

#include "api/OrvGeoCoordSysBase.h"

#include <QLabel>
#include <QLineEdit>
#include <QWidget>

// The calculator window: WGS 84 latitude, longitude, height (and the epoch for a
// time-dependent datum transformation) on the left, Easting, Northing, Z on the right;
// typing on one side converts to the other.
class TerrameterWindow : public QWidget {
    Q_OBJECT
public:
    // cs stays owned by the caller and must outlive the window.
    TerrameterWindow(OrvGeoCoordSysBase& cs, const QString& group, const QString& system,
                     bool timeDependent, QWidget* parent = nullptr);

    QLineEdit* latitudeEdit() const { return m_lat; }
    QLineEdit* longitudeEdit() const { return m_lon; }
    QLineEdit* heightEdit() const { return m_h; }
    QLineEdit* epochEdit() const { return m_epoch; }
    QLineEdit* eastingEdit() const { return m_e; }
    QLineEdit* northingEdit() const { return m_n; }
    QLineEdit* zEdit() const { return m_z; }
    QString statusText() const { return m_status->text(); }

private:
    void ConvertForward();
    void ConvertInverse();
    bool ReadEpoch(double& epoch);

    OrvGeoCoordSysBase& m_cs;
    QLineEdit* m_lat;
    QLineEdit* m_lon;
    QLineEdit* m_h;
    QLineEdit* m_epoch;
    QLineEdit* m_e;
    QLineEdit* m_n;
    QLineEdit* m_z;
    QLabel* m_status;
};
