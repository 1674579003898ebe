#pragma once

#include "pages/WizardPage.h"

#include <QStringList>

#include <memory>

namespace Ui {
class WIZPage6;
}

// Unit page: the unit of the projection parameters, which becomes the system unit. A unit is
// picked from the database's units or created with "New"; the static data gets it at once and
// again on Next. Next hands over the factor and suffix of the unit selected when the list was
// filled (or last created) with the name selected now: that order of hand-overs is kept.
class WIZPage6 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage6(GeoWizard* sheet);
    ~WIZPage6() override;

    QString GetUnitName() const { return m_unitName; }
    QString GetCreatedUnitName() const { return m_createdUnitName; }
    double GetMetersPerUnit() const { return m_metersPerUnit; }
    QString GetUnitSuffix() const { return m_unitSuffix; }
    QString GetInformation() const { return m_information; }

    bool OnInitDialog() override;
    void DoDataExchange(DataExchange* pDX) override;
    bool OnSetActive() override;
    int OnWizardNext() override;

    // Handlers: the combo's selection changed; "New".
    void OnSelChangeUnit();
    void OnNewUnit();

private:
    void FillUnitCombo();
    // Hands the selected unit to the static data and shows its information.
    void ApplySelection();
    // Hands a unit to the static data.
    void HandOver(double metersPerUnit, const QString& name, const QString& suffix);
    // The unit's description after its first line.
    QString UnitInformation(const QString& name) const;
    void SelectUnit(const QString& name);

    std::unique_ptr<Ui::WIZPage6> m_ui;
    QString m_information;
    QString m_unitName;
    QStringList m_unitNames;
    QString m_createdUnitName;
    QString m_unitSuffix;
    double m_metersPerUnit = 0.0;
    int m_lastIndex = -1;
    int m_currentIndex = -1;
};
