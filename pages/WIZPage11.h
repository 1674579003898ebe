#pragma once

#include "pages/WizardPage.h"

#include <memory>

namespace Ui {
class WIZPage11;
}

// Save page: the group the new system is saved in, a new one named here or an existing one
// of the groups the sheet allows. Every activation starts again on the existing groups with
// the first one selected; Next hands the group to the static data.
class WIZPage11 : public WizardPage {
    Q_OBJECT
public:
    // The group choice: the radio buttons in their order.
    enum GroupChoice : int { NewGroup = 0, ExistingGroup = 1 };

    explicit WIZPage11(GeoWizard* sheet);
    ~WIZPage11() override;

    int GetGroupChoice() const { return m_groupChoice; }
    QString GetNewGroupName() const { return m_newGroupName; }
    QString GetExistingGroupName() const { return m_existingGroupName; }

    bool OnInitDialog() override;
    bool OnSetActive() override;
    void DoDataExchange(DataExchange* pDX) override;
    int OnWizardNext() override;

    // A radio button was chosen.
    void OnGroupChoice();
    // Another entry of the group list was selected.
    void OnGroupSelected();

private:
    // Choice 1 and the allowed groups in the list, the first selected and taken.
    void FillGroupList();
    // Choice 0 enables the name edit, choice 1 the list.
    void ApplyChoice();
    // kStay, keeping Back and Next.
    int Stay();

    std::unique_ptr<Ui::WIZPage11> m_ui;
    int m_groupChoice = ExistingGroup;
    QString m_newGroupName;
    QString m_existingGroupName;
};
