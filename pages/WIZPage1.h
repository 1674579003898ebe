#pragma once

#include "pages/WizardPage.h"

#include <QModelIndex>

#include <memory>

class PickerTree;

namespace Ui {
class WIZPage1;
}

// Existing system page: every stored system of both databases in a tree of groups, with a
// filter field above it and the chosen system's information beside it. Choosing a system
// makes it the starting point of the new one: its datum transformation, projection,
// projection method and unit go into the sheet and its definition into the static data.
class WIZPage1 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage1(GeoWizard* sheet);
    ~WIZPage1() override;

    // The group and system chosen last (empty until one is chosen).
    QString GetGroupName() const { return m_groupName; }
    QString GetSystemName() const { return m_systemName; }
    int GetTreeFilled() const { return m_treeFilled; }
    PickerTree* Tree() const { return m_tree; }

    void DoDataExchange(DataExchange* pDX) override;
    // Offers Back and Next and builds the tree anew, so that systems added elsewhere appear.
    bool OnSetActive() override;
    int OnWizardBack() override;
    int OnWizardNext() override;

    // The current tree entry changed (a source index of the tree's model; invalid for none).
    void OnSelChangedTree(const QModelIndex& item);

private:
    void FillTree();
    // Selects the system of the group the sheet was preset to (names ignoring case).
    void PreselectSystem(const QString& group, const QString& system);
    // The chosen system into the sheet, the information pane and the static data. A click
    // also hands over the projection method and unit; a preselection leaves them as the
    // sheet had them.
    void UseSystem(bool withMethodAndUnit);
    void ShowInfo(const QString& text);
    // Nothing current after filtering: a filter that hides every system offers Back only; a
    // cleared one leaves the page as activation did.
    void OnFilterApplied();

    std::unique_ptr<Ui::WIZPage1> m_ui;
    PickerTree* m_tree = nullptr;
    QString m_groupName;
    QString m_systemName;
    int m_treeFilled = 0;
    bool m_quietTree = false; // the page itself changes the tree: no selection handling
};
