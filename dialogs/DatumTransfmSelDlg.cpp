#include "dialogs/DatumTransfmSelDlg.h"

#include "api/OrvGeoDatabaseBase.h"
#include "dialogs/PickerTree.h"
#include "platform/DataExchange.h"
#include "ui_DatumTransfmSelDlg.h"

#include <QTreeView>

DatumTransfmSelDlg::DatumTransfmSelDlg(QWidget* parent) : DatumTransfmSelDlg(nullptr, parent, 0) {}

DatumTransfmSelDlg::DatumTransfmSelDlg(CoordSysEditorOwner* editor, QWidget* parent)
    : DatumTransfmSelDlg(editor, parent, 0) {}

DatumTransfmSelDlg::DatumTransfmSelDlg(PropertySheet* sheet, QWidget* parent)
    : DatumTransfmSelDlg(OwnerOfSheet(sheet), ParentForSheet(sheet, parent), 0) {}

DatumTransfmSelDlg::DatumTransfmSelDlg(DialogOwner* owner, QWidget* parent, int)
    : PickerDialog(owner, parent), m_ui(std::make_unique<Ui::DatumTransfmSelDlg>()) {
    m_ui->setupUi(this);
    BindControls(m_ui->filterEdit, m_ui->tree, m_ui->infoPane, m_ui->okButton, m_ui->cancelButton);
}

DatumTransfmSelDlg::~DatumTransfmSelDlg() = default;

void DatumTransfmSelDlg::SetEllipsoidNames(const QString& satellite, const QString& local) {
    m_satelliteName = satellite;
    m_localName = local;
}

void DatumTransfmSelDlg::DoDataExchange(DataExchange* pDX) {
    DDX_Text(pDX, QStringLiteral("infoPane"), m_paneText);
}

bool DatumTransfmSelDlg::OnInitDialog() {
    PickerDialog::OnInitDialog();
    FillTree();
    return true;
}

void DatumTransfmSelDlg::FillTree() {
    if (m_satelliteName.isEmpty() && m_localName.isEmpty()) {
        if (DialogOwner* owner = GetOwner()) {
            m_satelliteName = owner->CurrentSatelliteEllipsoid();
            m_localName = owner->CurrentLocalEllipsoid();
        }
        m_ui->tree->setUpdatesEnabled(false);
        Tree()->SetEntries({});
        m_ui->tree->setUpdatesEnabled(true);
    }
    QStringList names;
    QHash<QString, int> codes;
    if (OrvGeoDatabaseBase* database = Database()) {
        database->GetDtfNames(names, m_satelliteName, m_localName);
        codes = database->GetEpsgCodes(GeoEntryKind::DatumTransformation);
    }
    FillAndSelect(names, codes, m_selName);
    m_ui->tree->setUpdatesEnabled(true);
}

void DatumTransfmSelDlg::OnSelChangedTree(const QModelIndex& sourceIndex) {
    m_paneText.clear();
    if (sourceIndex.isValid()) {
        m_selName = Tree()->Model().NameAt(sourceIndex);
        if (OrvGeoDatabaseBase* database = Database()) {
            database->GetDtfAuxText(m_auxText, m_selName);
            database->GetDtfInfoText(m_paneText, m_selName, 1);
        }
    }
    UpdateData(false);
}
