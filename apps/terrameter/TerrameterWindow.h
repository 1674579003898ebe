#pragma once

#include "api/OrvGeoCoordSysBase.h"

#include <QLabel>
#include <QLineEdit>
#include <QWidget>

// What the window tells about the system beside its fields.
struct SystemFacts {
    QString unit;     // E, N and Z: the unit's suffix ("m", "ftUS")
    QString unitName; // its name ("US survey foot")
    QString zMeaning; // what Z is: the height above which surface
    bool timeDependent = false;
    QString defaultEpoch; // the epoch an empty field stands for, "%.3f"; empty: none
};

// The facts of a defined system (the engine's definition).
SystemFacts DescribeSystem(const OrvGeoCoordSysBase& cs);

// The calculator window: WGS 84 latitude, longitude, height (and the epoch for a
// time-dependent datum transformation) on the left, Easting, Northing, Z on the right;
// typing on one side converts to the other. Every field shows its unit; latitude and
// longitude are also shown in degrees, minutes and seconds with their hemisphere. A bad
// entry clears the other side, so no old result stands next to an error.
class TerrameterWindow : public QWidget {
    Q_OBJECT
public:
    // cs stays owned by the caller and must outlive the window.
    TerrameterWindow(OrvGeoCoordSysBase& cs, const QString& group, const QString& system,
                     const SystemFacts& facts, QWidget* parent = nullptr);

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
    bool ReadEpoch(double& epoch, QString& why) const;
    void ShowAngles(double lat, double lon);
    void ClearGrid(const QString& why);
    void ClearWgs84(const QString& why);

    OrvGeoCoordSysBase& m_cs;
    QLineEdit* m_lat;
    QLineEdit* m_lon;
    QLineEdit* m_h;
    QLineEdit* m_epoch;
    QLineEdit* m_e;
    QLineEdit* m_n;
    QLineEdit* m_z;
    QLabel* m_latDms;
    QLabel* m_lonDms;
    QLabel* m_status;
    bool m_timeDependent;
};
