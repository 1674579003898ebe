#include "dialogs/CreateNewPrjDlg.h"

#include "api/OrvGeoDatabaseBase.h"
#include "dialogs/PrjSelectDlg.h"
#include "platform/UiInteraction.h"
#include "resources/StringTable.h"
#include "ui_CreateNewPrjDlg.h"

#include <QPushButton>

CreateNewPrjDlg::CreateNewPrjDlg(QWidget* parent) : CreateNewPrjDlg(nullptr, parent) {}

CreateNewPrjDlg::CreateNewPrjDlg(CoordSysEditorOwner* editor, QWidget* parent)
    : Dialog(parent), m_ui(std::make_unique<Ui::CreateNewPrjDlg>()), m_owner(editor) {
    m_ui->setupUi(this);
    connect(m_ui->selectButton, &QPushButton::clicked, this, &CreateNewPrjDlg::OnSelect);
    connect(m_ui->okButton, &QPushButton::clicked, this, [this] { accept(); });
    connect(m_ui->cancelButton, &QPushButton::clicked, this, [this] { reject(); });
}

CreateNewPrjDlg::~CreateNewPrjDlg() = default;

void CreateNewPrjDlg::DoDataExchange(DataExchange* pDX) {
    DDX_Text(pDX, QStringLiteral("nameEdit"), m_name);
    DDX_Text(pDX, QStringLiteral("basedOnEdit"), m_basedOnName);
}

bool CreateNewPrjDlg::OnInitDialog() {
    Dialog::OnInitDialog();
    return m_owner && m_owner->GetGeoStatic();
}

void CreateNewPrjDlg::OnSelect() {
    // keep what was typed: the fields are pushed back after the pick
    UpdateData(true);
    PrjSelectDlg picker(m_owner, this);
    if (picker.DoModal() != QDialog::Accepted)
        return;
    m_basedOnName = picker.GetSelName();
    m_basedOnMethod = picker.GetMethodName();
    m_basedOn = 1;
    UpdateData(false);
}

void CreateNewPrjDlg::OnOK() {
    UpdateData(true);
    OrvGeoDatabaseBase* database = m_owner ? m_owner->GetGeoDatabase() : nullptr;
    // The name check needs the database beside the static data.
    if (!m_owner || !m_owner->GetGeoStatic() || !database)
        return;
    if (m_name.isEmpty()) {
        GetUi().MessageBox(this, LoadOrvString(StrId::PrjNameEmpty), QString(), MsgButtons::Ok);
        return;
    }
    if (database->IsPrjOfType(m_name, GEODB_ALL)) {
        GetUi().MessageBox(this, LoadOrvString(StrId::PrjNameInUse), QString(), MsgButtons::Ok);
        return;
    }
    Dialog::OnOK();
}
