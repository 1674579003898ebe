#pragma once

#include "pages/WizardPage.h"

#include <QModelIndex>

#include <memory>

class PickerTree;

namespace Ui {
class WIZPage8;
}

// Projection selection page: every stored projection under its method beside its
// information. Next checks the projection's unit against the unit page's, offers to convert
// its lengths into that unit, and hands the projection to the static data.
class WIZPage8 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage8(GeoWizard* sheet);
    ~WIZPage8() override;

    QString GetSelPrjName() const { return m_selPrjName; }
    QString GetSelMethodName() const { return m_selMethodName; }
    PickerTree* Tree() const { return m_tree; }

    void DoDataExchange(DataExchange* pDX) override;
    bool OnSetActive() override;
    int OnWizardNext() override;

    // The tree's selection changed (a source index of its model).
    void OnSelChangedTree(const QModelIndex& sourceIndex);

private:
    bool FillTree();
    // Hands the selected projection, converted to the wizard's unit when asked, to the sheet
    // and the static data.
    void CommitSelection();

    std::unique_ptr<Ui::WIZPage8> m_ui;
    PickerTree* m_tree;
    QString m_information;
    QString m_selPrjName;
    QString m_selMethodName;
    bool m_convertUnit = false;
};
