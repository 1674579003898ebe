#pragma once

#include "dialogs/PickerDialog.h"

#include <memory>

namespace Ui {
class PrjSelectDlg;
}

// "Select Projection": the stored projections under their projection methods beside the
// information of the current one. OK is offered only on a projection; the caller reads the
// chosen projection and its method after OK. There is no preselection.
class PrjSelectDlg : public PickerDialog {
    Q_OBJECT
public:
    // Without an owner there is neither database nor static data: the tree stays empty.
    explicit PrjSelectDlg(QWidget* parent = nullptr);
    // For the editor: its database and its static data (the method list).
    explicit PrjSelectDlg(CoordSysEditorOwner* editor, QWidget* parent = nullptr);
    // For the wizard sheet: its database and static data.
    explicit PrjSelectDlg(PropertySheet* sheet, QWidget* parent = nullptr);
    ~PrjSelectDlg() override;

    QString GetSelName() const { return m_selName; }
    // The method of the chosen projection (its parent in the tree).
    QString GetMethodName() const { return m_methodName; }

    // False, with the tree empty, without a database or static data object.
    bool OnInitDialog() override;
    void DoDataExchange(DataExchange* pDX) override;

protected:
    void OnSelChangedTree(const QModelIndex& sourceIndex) override;
    bool CanAccept(const QModelIndex& current) const override;

private:
    PrjSelectDlg(DialogOwner* owner, QWidget* parent, int);
    bool FillTree();

    std::unique_ptr<Ui::PrjSelectDlg> m_ui;
    QString m_selName;
    QString m_methodName;
    QString m_paneText;
};
