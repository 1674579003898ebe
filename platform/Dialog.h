#pragma once

#include "platform/DataExchange.h"

#include <QDialog>

// A modal dialog with the life of the dialogs it stands in for: OnInitDialog once before
// it is first shown, DoDataExchange moving fields to and from the controls, OnOK that
// validates before it closes, OnCancel.
class Dialog : public QDialog {
    Q_OBJECT
public:
    explicit Dialog(QWidget* parent = nullptr);

    // Runs the dialog through the injected interface (so tests can script it).
    int DoModal();
    bool UpdateData(bool saveAndValidate = true);
    // Runs OnInitDialog unless it ran already.
    void EnsureInitialised();
    bool IsInitialised() const { return m_initialised; }

    // Default: load the fields into the controls.
    virtual bool OnInitDialog();
    virtual void DoDataExchange(DataExchange* pDX);
    // Default: validate (UpdateData(true)) and close with Accepted.
    virtual void OnOK();
    virtual void OnCancel();

    void accept() override;
    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    bool m_initialised = false;
    bool m_closing = false;
};

// Runs an exchange over root: fill does the DDX_* calls. False when a value was refused.
bool RunDataExchange(QWidget* root, bool saveAndValidate,
                     const std::function<void(DataExchange*)>& fill);
