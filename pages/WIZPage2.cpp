#include "pages/WIZPage2.h"

#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/SelEllipsoidDlg.h"
#include "platform/DataExchange.h"
#include "platform/UiInteraction.h"
#include "resources/StringTable.h"
#include "ui_WIZPage2.h"
#include "wizard/GeoWizard.h"

WIZPage2::WIZPage2(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage2"), StrId::TitleEllipsoids,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT),
      m_ui(std::make_unique<Ui::WIZPage2>()) {
    m_ui->setupUi(ContentArea());
    connect(m_ui->selectSatellite, &QPushButton::clicked, this, &WIZPage2::OnSelectSatellite);
    connect(m_ui->selectLocal, &QPushButton::clicked, this, &WIZPage2::OnSelectLocal);
}

WIZPage2::~WIZPage2() = default;

void WIZPage2::DoDataExchange(DataExchange* pDX) {
    DDX_Text(pDX, QStringLiteral("satelliteInfo"), m_satelliteInfo);
    DDX_Text(pDX, QStringLiteral("localInfo"), m_localInfo);
    DDX_Text(pDX, QStringLiteral("pageNumber"), m_pageNumberText);
    DDX_Text(pDX, QStringLiteral("satelliteName"), m_satelliteName);
    DDX_Text(pDX, QStringLiteral("localName"), m_localName);
}

bool WIZPage2::OnInitDialog() {
    WizardPage::OnInitDialog();
    // The local side stays empty until the person picks one.
    m_satelliteName = m_sheet->GetSrcElpName();
    m_satelliteInfo = m_sheet->DumpElpInfoText(m_satelliteName);
    UpdateData(false);
    return true;
}

bool WIZPage2::pick(QString& name, QString& info) {
    UpdateData(true);
    SelEllipsoidDlg picker(m_sheet);
    picker.SetSelName(name);
    if (picker.DoModal() != QDialog::Accepted)
        return false;
    name = picker.GetSelName();
    info = picker.GetInfoText();
    return true;
}

void WIZPage2::OnSelectSatellite() {
    if (!pick(m_satelliteName, m_satelliteInfo))
        return;
    m_sheet->SetSrcElpName(m_satelliteName);
    UpdateData(false);
}

void WIZPage2::OnSelectLocal() {
    if (!pick(m_localName, m_localInfo))
        return;
    m_sheet->SetDesElpName(m_localName);
    UpdateData(false);
}

int WIZPage2::OnWizardNext() {
    UpdateData(true);
    if (m_satelliteName.isEmpty() || m_localName.isEmpty()) {
        GetUi().MessageBox(this, LoadOrvString(StrId::NoEllipsoidSelection), QString(),
                           MsgButtons::Ok);
        return kStay;
    }
    if (OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic()) {
        staticData->SelectSatelliteEllipsoid(m_satelliteName);
        staticData->SelectLocalEllipsoid(m_localName, QString());
    }
    return kMove;
}
