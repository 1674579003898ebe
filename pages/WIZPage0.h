#pragma once

#include "pages/WizardPage.h"

#include <memory>

namespace Ui {
class WIZPage0;
}

// System name page: the name of the new system and whether it is based on an existing one.
// The check box rebuilds the sheet's page list at once; Next checks the name against both
// databases and hands it to the sheet and the static data.
class WIZPage0 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage0(GeoWizard* sheet);
    ~WIZPage0() override;

    // The name edit and the "Based on existing coordinate system:" check box (the sheet's
    // SetPreSysName and SetPreSysStatu preset them before the page is shown).
    void SetNewSystemNameField(const QString& name) { m_newSystemName = name; }
    QString GetNewSystemNameField() const { return m_newSystemName; }
    void SetBasedOnExisting(int checked) { m_basedOnExisting = checked; }
    int GetBasedOnExisting() const { return m_basedOnExisting; }

    bool OnInitDialog() override;
    void DoDataExchange(DataExchange* pDX) override;
    int OnWizardNext() override;

    // The check box was clicked.
    void OnBasedOnExisting();

private:
    std::unique_ptr<Ui::WIZPage0> m_ui;
    QString m_newSystemName;
    int m_basedOnExisting = 0;
};
