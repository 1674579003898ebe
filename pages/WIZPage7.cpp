#include "pages/WIZPage7.h"

#include "platform/DataExchange.h"
#include "resources/StringTable.h"
#include "ui_WIZPage7.h"
#include "wizard/GeoWizard.h"

WIZPage7::WIZPage7(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage7"), StrId::TitleProjection,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT),
      m_ui(std::make_unique<Ui::WIZPage7>()) {
    m_ui->setupUi(ContentArea());
    connect(m_ui->optionExisting, &QRadioButton::clicked, this, &WIZPage7::OnOptionClicked);
    connect(m_ui->optionNew, &QRadioButton::clicked, this, &WIZPage7::OnOptionClicked);
    connect(m_ui->basedOnExisting, &QCheckBox::clicked, this, &WIZPage7::OnBasedOnExistingClicked);
}

WIZPage7::~WIZPage7() = default;

void WIZPage7::DoDataExchange(DataExchange* pDX) {
    DDX_Text(pDX, QStringLiteral("pageNumber"), m_pageNumberText);
    DDX_Radio(pDX, QStringLiteral("optionExisting"), m_option);
    DDX_Check(pDX, QStringLiteral("basedOnExisting"), m_basedOnExisting);
}

bool WIZPage7::OnInitDialog() {
    WizardPage::OnInitDialog();
    m_ui->prjChoiceInfo->setText(LoadOrvString(StrId::PrjChoiceInfo));
    return true;
}

bool WIZPage7::OnSetActive() {
    m_ui->basedOnExisting->setEnabled(m_option == kNewProjection);
    UpdateData(false);
    return WizardPage::OnSetActive();
}

void WIZPage7::OnOptionClicked() {
    OptionChange();
}

void WIZPage7::OnBasedOnExistingClicked() {
    m_basedOnExisting = m_ui->basedOnExisting->isChecked() ? 1 : 0;
    OptionChange();
}

void WIZPage7::OptionChange() {
    UpdateData(true);
    if (m_option == kUseExisting) {
        m_ui->basedOnExisting->setEnabled(false);
        m_sheet->ReSetPages(GeoWizard::PagesUseExistingPrj);
    } else if (m_option == kNewProjection) {
        m_ui->basedOnExisting->setEnabled(true);
        m_sheet->ReSetPages(m_basedOnExisting ? GeoWizard::PagesNewPrjFromOld
                                              : GeoWizard::PagesNewPrj);
    }
}

int WIZPage7::OnWizardNext() {
    UpdateData(true);
    m_sheet->SetPrjOption(static_cast<unsigned>(m_option));
    if (m_option == kNewProjection) {
        m_sheet->SetPrjFromOldPrj(m_basedOnExisting != 0);
        m_sheet->SetInitPrj(true);
    }
    if (m_sheet->GetNewPrjPage()) {
        OptionChange();
        m_sheet->SetNewPrjPage(false);
    }
    return kMove;
}
