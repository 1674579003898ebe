#include "dialogs/UnitSelectionDlg.h"

#include "api/OrvGeoDatabaseBase.h"
#include "dialogs/PickerTree.h"
#include "platform/DataExchange.h"
#include "ui_UnitSelectionDlg.h"

UnitSelectionDlg::UnitSelectionDlg(CoordSysEditorOwner* editor, QWidget* parent)
    : PickerDialog(editor, parent) {
    setUp();
}

UnitSelectionDlg::UnitSelectionDlg(OrvGeoDatabaseBase* database, QWidget* parent)
    : PickerDialog(database, parent) {
    setUp();
}

void UnitSelectionDlg::setUp() {
    m_ui = std::make_unique<Ui::UnitSelectionDlg>();
    m_ui->setupUi(this);
    BindControls(m_ui->filterEdit, m_ui->tree, m_ui->infoPane, m_ui->okButton, m_ui->cancelButton);
}

UnitSelectionDlg::~UnitSelectionDlg() = default;

void UnitSelectionDlg::DoDataExchange(DataExchange* pDX) {
    DDX_Text(pDX, QStringLiteral("infoPane"), m_paneText);
}

bool UnitSelectionDlg::OnInitDialog() {
    PickerDialog::OnInitDialog();
    OrvGeoDatabaseBase* database = Database();
    if (!database)
        return false;
    Tree()->SetEntries({});
    QStringList names;
    database->GetUnitNames(names);
    FillAndSelect(names, database->GetEpsgCodes(GeoEntryKind::Unit), m_unitName);
    return true;
}

void UnitSelectionDlg::OnSelChangedTree(const QModelIndex& sourceIndex) {
    m_paneText.clear();
    if (sourceIndex.isValid()) {
        m_unitName = Tree()->Model().NameAt(sourceIndex);
        if (OrvGeoDatabaseBase* database = Database())
            database->GetUnitDescription(m_paneText, m_unitName);
    }
    UpdateData(false);
}
