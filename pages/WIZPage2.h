#pragma once

#include "pages/WizardPage.h"

#include <memory>

namespace Ui {
class WIZPage2;
}

// Ellipsoid page: the satellite and the local ellipsoid of the new system, each picked with
// the ellipsoid picker and shown with its information. A confirmed pick goes into the sheet
// at once; Next hands both to the static data.
class WIZPage2 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage2(GeoWizard* sheet);
    ~WIZPage2() override;

    QString GetSatelliteName() const { return m_satelliteName; }
    QString GetLocalName() const { return m_localName; }
    QString GetSatelliteInfo() const { return m_satelliteInfo; }
    QString GetLocalInfo() const { return m_localInfo; }

    bool OnInitDialog() override;
    void DoDataExchange(DataExchange* pDX) override;
    int OnWizardNext() override;

    // The "Select ..." buttons.
    void OnSelectSatellite();
    void OnSelectLocal();

private:
    // Runs the picker preset to name; on OK takes its choice and information.
    bool pick(QString& name, QString& info);

    std::unique_ptr<Ui::WIZPage2> m_ui;
    QString m_satelliteInfo;
    QString m_localInfo;
    QString m_satelliteName;
    QString m_localName;
};
