#include "platform/PropertyPage.h"

#include "platform/Dialog.h"
#include "platform/PropertySheet.h"

PropertyPage::PropertyPage(QWidget* parent) : QWidget(parent) {}

PropertyPage::~PropertyPage() {
    if (m_sheet)
        m_sheet->detachPage(this);
}

bool PropertyPage::UpdateData(bool saveAndValidate) {
    return RunDataExchange(this, saveAndValidate,
                           [this](DataExchange* pDX) { DoDataExchange(pDX); });
}

void PropertyPage::EnsureInitialised() {
    if (m_initialised)
        return;
    m_initialised = true;
    OnInitDialog();
}

bool PropertyPage::OnInitDialog() {
    UpdateData(false);
    return true;
}

void PropertyPage::DoDataExchange(DataExchange*) {}

bool PropertyPage::OnSetActive() {
    return true;
}

bool PropertyPage::OnKillActive() {
    return UpdateData(true);
}

int PropertyPage::OnWizardBack() {
    return kMove;
}

int PropertyPage::OnWizardNext() {
    return kMove;
}

bool PropertyPage::OnWizardFinish() {
    return true;
}

bool PropertyPage::OnQueryCancel() {
    return true;
}
