#pragma once

#include "pages/WizardPage.h"

#include <memory>

namespace Ui {
class WIZPage3;
}

// Datum transformation choice page: use an existing datum transformation, make a new one, or
// make a new one from an existing one. Every click rebuilds the sheet's page list for the
// choice (page-set codes 3, 30, 31) and hands the option to the sheet.
class WIZPage3 : public WizardPage {
    Q_OBJECT
public:
    // The radio group.
    enum Option : int { UseExisting = 0, NewDtf = 1 };

    explicit WIZPage3(GeoWizard* sheet);
    ~WIZPage3() override;

    int GetOption() const { return m_option; }
    int GetBasedOnExisting() const { return m_basedOnExisting; }

    bool OnInitDialog() override;
    void DoDataExchange(DataExchange* pDX) override;
    bool OnSetActive() override;
    int OnWizardNext() override;

    // Either radio button and the check box.
    void OnOptionClicked();
    void OnBasedOnExistingClicked();

private:
    // Reads the choice and rebuilds the page list for it.
    void optionChanged();

    std::unique_ptr<Ui::WIZPage3> m_ui;
    int m_option = UseExisting;
    int m_basedOnExisting = 0;
    QString m_choiceInfo;
};
