#pragma once

#include "dialogs/DialogOwner.h"
#include "platform/Dialog.h"

#include <QString>

#include <memory>

namespace Ui {
class CreateNewPrjDlg;
}

// "Create New Projection": asks the editor's user for the name of a new projection,
// optionally based on a pre-defined one (and its method) chosen with "Select ...". OK
// refuses an empty name and a name either database holds; nothing is stored here.
class CreateNewPrjDlg : public Dialog {
    Q_OBJECT
public:
    // Without an owner there is no static data: OK does nothing.
    explicit CreateNewPrjDlg(QWidget* parent = nullptr);
    // For the editor: its database and static data.
    explicit CreateNewPrjDlg(CoordSysEditorOwner* editor, QWidget* parent = nullptr);
    ~CreateNewPrjDlg() override;

    QString GetName() const { return m_name; }
    // 1 once a projection was chosen with "Select ...", else 0.
    int GetBasedOn() const { return m_basedOn; }
    QString GetBasedOnName() const { return m_basedOnName; }
    QString GetBasedOnMethod() const { return m_basedOnMethod; }
    CoordSysEditorOwner* GetOwner() const { return m_owner; }

    // False when the owner has no static data object.
    bool OnInitDialog() override;
    void DoDataExchange(DataExchange* pDX) override;
    void OnOK() override;

private:
    void OnSelect();

    std::unique_ptr<Ui::CreateNewPrjDlg> m_ui;
    QString m_name;
    QString m_basedOnName;
    int m_basedOn = 0;
    QString m_basedOnMethod;
    CoordSysEditorOwner* m_owner = nullptr;
};
