#include "pages/WIZPage3.h"

#include "platform/DataExchange.h"
#include "resources/StringTable.h"
#include "ui_WIZPage3.h"
#include "wizard/GeoWizard.h"

namespace {
constexpr unsigned kBackNext = PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT;
} // namespace

WIZPage3::WIZPage3(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage3"), StrId::TitleDtf, kBackNext),
      m_ui(std::make_unique<Ui::WIZPage3>()) {
    m_ui->setupUi(ContentArea());
    connect(m_ui->optionExisting, &QRadioButton::clicked, this, &WIZPage3::OnOptionClicked);
    connect(m_ui->optionNew, &QRadioButton::clicked, this, &WIZPage3::OnOptionClicked);
    connect(m_ui->basedOnExisting, &QCheckBox::clicked, this, &WIZPage3::OnBasedOnExistingClicked);
}

WIZPage3::~WIZPage3() = default;

void WIZPage3::DoDataExchange(DataExchange* pDX) {
    DDX_Text(pDX, QStringLiteral("pageNumber"), m_pageNumberText);
    DDX_Text(pDX, QStringLiteral("choiceInfo"), m_choiceInfo);
    DDX_Radio(pDX, QStringLiteral("optionExisting"), m_option);
    DDX_Check(pDX, QStringLiteral("basedOnExisting"), m_basedOnExisting);
}

bool WIZPage3::OnInitDialog() {
    WizardPage::OnInitDialog();
    m_choiceInfo = LoadOrvString(StrId::DtfChoiceInfo);
    m_sheet->SetWizardButtons(kBackNext);
    UpdateData(false);
    return true;
}

bool WIZPage3::OnSetActive() {
    m_ui->basedOnExisting->setEnabled(m_option == NewDtf);
    m_sheet->SetWizardButtons(kBackNext);
    return WizardPage::OnSetActive();
}

void WIZPage3::OnOptionClicked() {
    optionChanged();
}

void WIZPage3::OnBasedOnExistingClicked() {
    // the option change reads the check box with the radio buttons
    optionChanged();
}

void WIZPage3::optionChanged() {
    UpdateData(true);
    // The projection pages start afresh after any new datum transformation choice.
    if (m_option == UseExisting) {
        m_ui->basedOnExisting->setEnabled(false);
        m_sheet->SetNewPrjPage(true);
        m_sheet->ReSetPages(GeoWizard::PagesUseExistingDtf);
    } else if (m_option == NewDtf) {
        m_ui->basedOnExisting->setEnabled(true);
        m_sheet->SetNewPrjPage(true);
        m_sheet->ReSetPages(m_basedOnExisting ? GeoWizard::PagesNewDtfFromOld
                                              : GeoWizard::PagesNewDtf);
    }
    m_sheet->SetWizardButtons(kBackNext);
    m_sheet->SetDtfOption(static_cast<unsigned>(m_option));
}

int WIZPage3::OnWizardNext() {
    UpdateData(true);
    if (m_option == UseExisting)
        m_sheet->ReSetPages(GeoWizard::PagesUseExistingDtf);
    else if (m_option == NewDtf)
        m_sheet->SetDtfFromOldDtf(m_basedOnExisting != 0);
    else
        return kStay;
    m_sheet->SetDtfOption(static_cast<unsigned>(m_option));
    return kMove;
}
