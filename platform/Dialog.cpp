#include "platform/Dialog.h"

#include "platform/UiInteraction.h"

bool RunDataExchange(QWidget* root, bool saveAndValidate,
                     const std::function<void(DataExchange*)>& fill) {
    DataExchange dx(root, saveAndValidate);
    fill(&dx);
    return !dx.Failed();
}

Dialog::Dialog(QWidget* parent) : QDialog(parent) {}

int Dialog::DoModal() {
    return GetUi().RunModal(*this);
}

bool Dialog::UpdateData(bool saveAndValidate) {
    return RunDataExchange(this, saveAndValidate,
                           [this](DataExchange* pDX) { DoDataExchange(pDX); });
}

void Dialog::EnsureInitialised() {
    if (m_initialised)
        return;
    m_initialised = true;
    OnInitDialog();
}

bool Dialog::OnInitDialog() {
    UpdateData(false);
    return true;
}

void Dialog::DoDataExchange(DataExchange*) {}

void Dialog::OnOK() {
    if (!UpdateData(true))
        return;
    m_closing = true;
    QDialog::accept();
    m_closing = false;
}

void Dialog::OnCancel() {
    m_closing = true;
    QDialog::reject();
    m_closing = false;
}

void Dialog::accept() {
    if (m_closing)
        QDialog::accept();
    else
        OnOK();
}

void Dialog::reject() {
    if (m_closing)
        QDialog::reject();
    else
        OnCancel();
}

void Dialog::showEvent(QShowEvent* event) {
    EnsureInitialised();
    QDialog::showEvent(event);
}
