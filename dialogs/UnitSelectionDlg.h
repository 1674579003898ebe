#pragma once

#include "dialogs/PickerDialog.h"

#include <memory>

namespace Ui {
class UnitSelectionDlg;
}

// "Select Unit": the units of the database, alphabetically, beside the information of the
// current one. The caller presets the unit name and reads the chosen one after OK; nothing
// is checked on OK.
class UnitSelectionDlg : public PickerDialog {
    Q_OBJECT
public:
    // For the editor: its database.
    explicit UnitSelectionDlg(CoordSysEditorOwner* editor, QWidget* parent = nullptr);
    // On a database of the caller's (borrowed; may be null: the dialog is then empty).
    explicit UnitSelectionDlg(OrvGeoDatabaseBase* database, QWidget* parent = nullptr);
    ~UnitSelectionDlg() override;

    void SetUnitName(const QString& name) { m_unitName = name; }
    QString GetSelUnitName() const { return m_unitName; }

    // False, with the tree empty, without a database.
    bool OnInitDialog() override;
    void DoDataExchange(DataExchange* pDX) override;

protected:
    void OnSelChangedTree(const QModelIndex& sourceIndex) override;

private:
    void setUp();

    std::unique_ptr<Ui::UnitSelectionDlg> m_ui;
    QString m_unitName;
    QString m_paneText;
};
