#include "dialogs/NewUnitDlg.h"

#include "api/OrvGeoDatabaseBase.h"
#include "platform/PropertySheet.h"
#include "platform/UiInteraction.h"
#include "resources/StringTable.h"
#include "ui_NewUnitDlg.h"

#include <QPushButton>

namespace {
const QString kNameEdit = QStringLiteral("nameEdit");
const QString kFactorEdit = QStringLiteral("factorEdit");
const QString kSuffixEdit = QStringLiteral("suffixEdit");
} // namespace

NewUnitDlg::NewUnitDlg(QWidget* parent) : NewUnitDlg(nullptr, parent, 0) {}

NewUnitDlg::NewUnitDlg(CoordSysEditorOwner* editor, QWidget* parent)
    : NewUnitDlg(editor, parent, 0) {}

NewUnitDlg::NewUnitDlg(PropertySheet* sheet, QWidget* parent)
    : NewUnitDlg(dynamic_cast<DialogOwner*>(sheet), parent ? parent : sheet, 0) {}

NewUnitDlg::NewUnitDlg(DialogOwner* owner, QWidget* parent, int)
    : Dialog(parent), m_ui(std::make_unique<Ui::NewUnitDlg>()) {
    if (owner) {
        m_geoDatabase = owner->GetGeoDatabase();
        m_geoStatic = owner->GetGeoStatic();
    }
    m_ui->setupUi(this);
    connect(m_ui->okButton, &QPushButton::clicked, this, [this] { accept(); });
    connect(m_ui->cancelButton, &QPushButton::clicked, this, [this] { reject(); });
}

NewUnitDlg::~NewUnitDlg() = default;

void NewUnitDlg::DoDataExchange(DataExchange* pDX) {
    DDX_Text(pDX, kSuffixEdit, m_nameSuffix);
    DDX_Text(pDX, kFactorEdit, m_metersPerUnit);
    DDX_Text(pDX, kNameEdit, m_name);
}

bool NewUnitDlg::OnInitDialog() {
    Dialog::OnInitDialog();
    m_ui->factorLabel->setText(LoadOrvString(StrId::MetersPerUnitLabel));
    return true;
}

void NewUnitDlg::OnOK() {
    // A factor that is no number is refused by the exchange with its own message.
    if (!UpdateData(true) || !m_geoDatabase)
        return;
    if (m_geoDatabase->UnitNameExists(m_name, GEODB_ALL)) {
        GetUi().MessageBox(this, LoadOrvString(StrId::NameExistsGiveAnother), QString(),
                           MsgButtons::Ok);
        return;
    }
    if (!m_geoDatabase->AddUnit(m_name, m_metersPerUnit, m_nameSuffix, UNIT_CATEGORY_LENGTH)) {
        // e.g. a read-only or locked user database: say why and keep what was typed
        GetUi().MessageBox(this,
                           LoadOrvString(StrId::UnitStoreFailed).arg(m_geoDatabase->LastError()),
                           QString(), MsgButtons::Ok);
        return;
    }
    Dialog::OnOK();
}
