#pragma once

#include "pages/WizardPage.h"

#include <memory>

namespace Ui {
class WIZPage7;
}

// Projection choice page: an existing projection, a new one, or a new one based on an
// existing one. A click changes the page flow at once; the sheet's projection option and the
// new-projection-page flag are set on Next only.
class WIZPage7 : public WizardPage {
    Q_OBJECT
public:
    // The options of the radio group.
    static constexpr int kUseExisting = 0;
    static constexpr int kNewProjection = 1;

    explicit WIZPage7(GeoWizard* sheet);
    ~WIZPage7() override;

    int GetOption() const { return m_option; }
    int GetBasedOnExisting() const { return m_basedOnExisting; }

    bool OnInitDialog() override;
    void DoDataExchange(DataExchange* pDX) override;
    bool OnSetActive() override;
    int OnWizardNext() override;

    // Handlers: either radio button, the check box.
    void OnOptionClicked();
    void OnBasedOnExistingClicked();

private:
    // Rebuilds the page flow for the option (and the check box).
    void OptionChange();

    std::unique_ptr<Ui::WIZPage7> m_ui;
    int m_option = kUseExisting;
    int m_basedOnExisting = 0;
};
