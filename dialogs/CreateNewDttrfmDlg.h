#pragma once

#include "dialogs/DialogOwner.h"
#include "platform/Dialog.h"

#include <QString>

#include <memory>

namespace Ui {
class CreateNewDttrfmDlg;
}

// "Create new datum transformation": asks the editor's user for the name of a new datum
// transformation, optionally based on a pre-defined one chosen with "Select ...". OK refuses
// an empty name and a name either database holds; nothing is stored here. The name is read
// from its edit as it changes (no automatic exchange).
class CreateNewDttrfmDlg : public Dialog {
    Q_OBJECT
public:
    // Without an owner there is no database: OK does nothing.
    explicit CreateNewDttrfmDlg(QWidget* parent = nullptr);
    // For the editor: its database and its current ellipsoids.
    explicit CreateNewDttrfmDlg(CoordSysEditorOwner* editor, QWidget* parent = nullptr);
    ~CreateNewDttrfmDlg() override;

    QString GetName() const { return m_name; }
    // 1 once a datum transformation was chosen with "Select ...", else 0.
    int GetBasedOn() const { return m_basedOn; }
    QString GetBasedOnName() const { return m_basedOnName; }
    CoordSysEditorOwner* GetOwner() const { return m_owner; }

    void OnOK() override;

private:
    void OnChangeName(const QString& text);
    void OnSelect();

    std::unique_ptr<Ui::CreateNewDttrfmDlg> m_ui;
    QString m_name;
    QString m_basedOnName;
    int m_basedOn = 0;
    CoordSysEditorOwner* m_owner = nullptr;
};
