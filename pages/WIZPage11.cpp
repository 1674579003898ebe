#include "pages/WIZPage11.h"

#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"
#include "platform/DataExchange.h"
#include "platform/UiInteraction.h"
#include "resources/StringTable.h"
#include "ui_WIZPage11.h"
#include "wizard/GeoWizard.h"

WIZPage11::WIZPage11(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage11"), StrId::TitleSaveSystem,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT),
      m_ui(std::make_unique<Ui::WIZPage11>()) {
    m_ui->setupUi(ContentArea());
    connect(m_ui->newGroupRadio, &QRadioButton::clicked, this, &WIZPage11::OnGroupChoice);
    connect(m_ui->existingGroupRadio, &QRadioButton::clicked, this, &WIZPage11::OnGroupChoice);
    connect(m_ui->groupList, &QComboBox::activated, this, &WIZPage11::OnGroupSelected);
}

WIZPage11::~WIZPage11() = default;

void WIZPage11::DoDataExchange(DataExchange* pDX) {
    DDX_Text(pDX, QStringLiteral("pageNumber"), m_pageNumberText);
    DDX_Radio(pDX, QStringLiteral("newGroupRadio"), m_groupChoice);
    DDX_Text(pDX, QStringLiteral("newGroupName"), m_newGroupName);
    DDX_CBString(pDX, QStringLiteral("groupList"), m_existingGroupName);
}

void WIZPage11::FillGroupList() {
    m_groupChoice = ExistingGroup;
    OrvGeoDatabaseBase* database = m_sheet->GetGeoDatabase();
    if (!database)
        return;
    QStringList groups;
    database->GetGroupNames(groups, m_sheet->GetGroupsAllowed());
    m_ui->groupList->clear();
    m_ui->groupList->addItems(groups);
    m_ui->groupList->setCurrentIndex(groups.isEmpty() ? -1 : 0);
    m_existingGroupName = groups.isEmpty() ? QString() : groups.constFirst();
}

bool WIZPage11::OnInitDialog() {
    WizardPage::OnInitDialog();
    FillGroupList();
    if (m_sheet->GetInitGroup()) {
        // An empty pre-selected group leaves the selection on the entry that begins with the
        // group taken; otherwise the pre-selected group is taken and selected.
        QString preGroup;
        if (m_sheet->GetPreGroupName(preGroup))
            m_existingGroupName = preGroup;
    }
    UpdateData(false);
    return true;
}

bool WIZPage11::OnSetActive() {
    // Every activation starts on the existing groups, the first one selected (kept so).
    FillGroupList();
    UpdateData(false);
    ApplyChoice();
    return WizardPage::OnSetActive();
}

void WIZPage11::ApplyChoice() {
    m_ui->groupList->setEnabled(m_groupChoice == ExistingGroup);
    m_ui->newGroupName->setEnabled(m_groupChoice == NewGroup);
}

void WIZPage11::OnGroupChoice() {
    UpdateData(true);
    ApplyChoice();
}

void WIZPage11::OnGroupSelected() {
    m_existingGroupName = m_ui->groupList->currentText();
}

int WIZPage11::Stay() {
    // The sheet has already posted Back and Finish for the move onto the last page; the
    // page stays, so Next is asked for again (the later request wins). Otherwise Finish
    // would close the wizard from here without saving.
    m_sheet->SetWizardButtons(PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT);
    return kStay;
}

int WIZPage11::OnWizardNext() {
    if (!UpdateData(true))
        return Stay();
    OrvGeoStaticDataBase* staticData = m_sheet->GetGeoStatic();
    QString group;
    switch (m_groupChoice) {
    case ExistingGroup:
        // The name edit is not looked at.
        if (m_existingGroupName.isEmpty()) {
            GetUi().MessageBox(this, LoadOrvString(StrId::GroupNameEmpty), QString(),
                               MsgButtons::Ok);
            return Stay();
        }
        group = m_existingGroupName;
        break;
    case NewGroup: {
        // The list is not looked at. A name of blanks only is no name either.
        if (m_newGroupName.trimmed().isEmpty()) {
            GetUi().MessageBox(this, LoadOrvString(StrId::GroupNameEmpty), QString(),
                               MsgButtons::Ok);
            return Stay();
        }
        OrvGeoDatabaseBase* database = m_sheet->GetGeoDatabase();
        if (database && database->GroupNameExists(m_newGroupName, GEODB_ALL)) {
            GetUi().MessageBox(this, LoadOrvString(StrId::NameExistsGiveAnother), QString(),
                               MsgButtons::Ok);
            return Stay();
        }
        group = m_newGroupName;
        break;
    }
    default:
        return Stay();
    }
    if (staticData)
        staticData->SetGroupName(group, QString());
    return kMove;
}
