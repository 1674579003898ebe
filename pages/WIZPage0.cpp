#include "pages/WIZPage0.h"

#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"
#include "platform/DataExchange.h"
#include "platform/UiInteraction.h"
#include "resources/StringTable.h"
#include "ui_WIZPage0.h"
#include "wizard/GeoWizard.h"

WIZPage0::WIZPage0(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage0"), StrId::TitleNewSystem,
                 PropertySheet::PSWIZB_NEXT),
      m_ui(std::make_unique<Ui::WIZPage0>()) {
    m_ui->setupUi(ContentArea());
    connect(m_ui->basedOnExisting, &QCheckBox::clicked, this, &WIZPage0::OnBasedOnExisting);
}

WIZPage0::~WIZPage0() = default;

void WIZPage0::DoDataExchange(DataExchange* pDX) {
    DDX_Text(pDX, QStringLiteral("pageNumber"), m_pageNumberText);
    DDX_Text(pDX, QStringLiteral("newSystemName"), m_newSystemName);
    DDX_Check(pDX, QStringLiteral("basedOnExisting"), m_basedOnExisting);
}

bool WIZPage0::OnInitDialog() {
    // the base pushes the fields the host may have preset through the sheet
    WizardPage::OnInitDialog();
    m_ui->infoText->setText(LoadOrvString(StrId::NamePageInfo));
    return true;
}

void WIZPage0::OnBasedOnExisting() {
    // The field toggles (the box and the field move together); what was typed in the name
    // edit is taken first so that pushing the fields back does not wipe it.
    const int toggled = m_basedOnExisting ? 0 : 1;
    UpdateData(true);
    m_basedOnExisting = toggled;
    m_sheet->ReSetPages(m_basedOnExisting ? GeoWizard::PagesBasedOnSystem
                                          : GeoWizard::PagesNotBased);
    m_sheet->SetNewPrjPage(true);
    UpdateData(false);
    // the rebuilt page list took the page out of the sheet and back: keep the person's place
    m_ui->basedOnExisting->setFocus();
}

int WIZPage0::OnWizardNext() {
    UpdateData(true);
    // Not trimmed: a name of blanks only passes here and goes to the name check as it is.
    if (m_newSystemName.isEmpty()) {
        GetUi().MessageBox(this, LoadOrvString(StrId::NameEmpty), QString(), MsgButtons::Ok);
        return kStay;
    }
    OrvGeoDatabaseBase* database = m_sheet->GetGeoDatabase();
    if (database && database->SystemNameExists(m_newSystemName, GEODB_ALL)) {
        GetUi().MessageBox(this, LoadOrvString(StrId::NameExists), QString(), MsgButtons::Ok);
        return kStay;
    }
    m_sheet->SetNewSystemName(m_newSystemName);
    if (OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic())
        staticData->AssignSystemName(m_newSystemName, QString());
    m_sheet->SetPreSysStatu(m_basedOnExisting != 0, false);
    m_sheet->SetGeoModStatu(false);
    m_sheet->SetPosModStatu(false);
    return kMove;
}
