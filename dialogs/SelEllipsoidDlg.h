#pragma once

#include "dialogs/PickerDialog.h"

#include <memory>

namespace Ui {
class SelEllipsoidDlg;
}

// "Select Ellipsoid": one level of ellipsoid names beside the information of the current
// one. The caller presets the name to select and reads the chosen name and its information
// (without the heading line) after OK.
class SelEllipsoidDlg : public PickerDialog {
    Q_OBJECT
public:
    // Without an owner there is no database: the tree stays empty.
    explicit SelEllipsoidDlg(QWidget* parent = nullptr);
    // For the editor: its database.
    explicit SelEllipsoidDlg(CoordSysEditorOwner* editor, QWidget* parent = nullptr);
    // For the wizard sheet: its database (GetGeoDatabase).
    explicit SelEllipsoidDlg(PropertySheet* sheet, QWidget* parent = nullptr);
    ~SelEllipsoidDlg() override;

    void SetSelName(const QString& name) { m_selName = name; }
    QString GetSelName() const { return m_selName; }
    // The information of the chosen ellipsoid without its first (heading) line.
    QString GetInfoText() const { return m_infoText; }

    bool OnInitDialog() override;
    void DoDataExchange(DataExchange* pDX) override;

protected:
    void OnSelChangedTree(const QModelIndex& sourceIndex) override;

private:
    SelEllipsoidDlg(DialogOwner* owner, QWidget* parent, int);
    void FillTree();

    std::unique_ptr<Ui::SelEllipsoidDlg> m_ui;
    QString m_selName;
    QString m_infoText;
    QString m_paneText; // the whole information text shown in the pane
};
