#pragma once

#include "pages/WizardPage.h"

#include <QHash>
#include <QModelIndex>

#include <memory>

class PickerTree;

namespace Ui {
class WIZPage4;
}

// Datum transformation selection page: the datum transformations between the sheet's two
// ellipsoids, filled afresh on every activation, beside the information on the selected one.
// Next loads the selected transformation into the static data.
//
// The tree has the pickers' filter field (name fragment or EPSG code). With the field empty
// the page behaves as it always has: the static data's current transformation is selected
// again when it is listed, else the first, and Next is offered even when the list is empty.
// A filter stays from one activation to the next while it shows the entry to select (the
// current transformation, else any); otherwise the fill empties it. While a filter hides
// every entry there is no selection to go on with, and only Back is offered.
class WIZPage4 : public WizardPage {
    Q_OBJECT
public:
    explicit WIZPage4(GeoWizard* sheet);
    ~WIZPage4() override;

    QString GetSelName() const { return m_selName; }
    QString GetAuxText() const { return m_auxText; }
    QString GetInfoText() const { return m_infoText; }
    PickerTree* Tree() const { return m_tree; }

    bool OnInitDialog() override;
    void DoDataExchange(DataExchange* pDX) override;
    bool OnSetActive() override;
    int OnWizardNext() override;

    // The tree's current entry changed (a source index; invalid while the filter hides all).
    void OnSelChangedTree(const QModelIndex& sourceIndex);

private:
    // Refills the tree for the sheet's ellipsoids and selects an entry; false when nothing
    // can be selected.
    bool FillTree();
    // The selected transformation into the static data.
    void LoadSelectedDtf();

    std::unique_ptr<Ui::WIZPage4> m_ui;
    PickerTree* m_tree = nullptr;
    QString m_selName;
    QString m_auxText;
    QString m_infoText;
    QHash<QString, int> m_codes; // EPSG codes by name, read once
    bool m_codesRead = false;
};
