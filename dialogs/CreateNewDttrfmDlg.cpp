#include "dialogs/CreateNewDttrfmDlg.h"

#include "api/OrvGeoDatabaseBase.h"
#include "dialogs/DatumTransfmSelDlg.h"
#include "platform/UiInteraction.h"
#include "resources/StringTable.h"
#include "ui_CreateNewDttrfmDlg.h"

#include <QLineEdit>
#include <QPushButton>

CreateNewDttrfmDlg::CreateNewDttrfmDlg(QWidget* parent) : CreateNewDttrfmDlg(nullptr, parent) {}

CreateNewDttrfmDlg::CreateNewDttrfmDlg(CoordSysEditorOwner* editor, QWidget* parent)
    : Dialog(parent), m_ui(std::make_unique<Ui::CreateNewDttrfmDlg>()), m_owner(editor) {
    m_ui->setupUi(this);
    connect(m_ui->nameEdit, &QLineEdit::textChanged, this, &CreateNewDttrfmDlg::OnChangeName);
    connect(m_ui->selectButton, &QPushButton::clicked, this, &CreateNewDttrfmDlg::OnSelect);
    connect(m_ui->okButton, &QPushButton::clicked, this, [this] { accept(); });
    connect(m_ui->cancelButton, &QPushButton::clicked, this, [this] { reject(); });
}

CreateNewDttrfmDlg::~CreateNewDttrfmDlg() = default;

void CreateNewDttrfmDlg::OnChangeName(const QString& text) {
    m_name = text;
}

void CreateNewDttrfmDlg::OnSelect() {
    DatumTransfmSelDlg picker(m_owner, this);
    // No ellipsoid names: the picker lists the transformations between the editor's current
    // ellipsoids.
    picker.SetEllipsoidNames(QString(), QString());
    picker.SetSelName(QString());
    if (picker.DoModal() != QDialog::Accepted)
        return;
    m_basedOnName = picker.GetSelName();
    m_ui->basedOnEdit->setText(m_basedOnName);
    m_basedOn = 1;
}

void CreateNewDttrfmDlg::OnOK() {
    m_name = m_ui->nameEdit->text();
    OrvGeoDatabaseBase* database = m_owner ? m_owner->GetGeoDatabase() : nullptr;
    if (!database)
        return;
    if (m_name.isEmpty()) {
        GetUi().MessageBox(this, LoadOrvString(StrId::DtfNameEmpty), QString(), MsgButtons::Ok);
        return;
    }
    if (database->IsDtfOfType(m_name, GEODB_ALL)) {
        GetUi().MessageBox(this, LoadOrvString(StrId::DtfNameExists), QString(), MsgButtons::Ok);
        return;
    }
    Dialog::OnOK();
}
