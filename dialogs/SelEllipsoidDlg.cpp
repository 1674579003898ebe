#include "dialogs/SelEllipsoidDlg.h"

#include "api/OrvGeoDatabaseBase.h"
#include "dialogs/PickerTree.h"
#include "platform/DataExchange.h"
#include "ui_SelEllipsoidDlg.h"

SelEllipsoidDlg::SelEllipsoidDlg(QWidget* parent) : SelEllipsoidDlg(nullptr, parent, 0) {}

SelEllipsoidDlg::SelEllipsoidDlg(CoordSysEditorOwner* editor, QWidget* parent)
    : SelEllipsoidDlg(editor, parent, 0) {}

SelEllipsoidDlg::SelEllipsoidDlg(PropertySheet* sheet, QWidget* parent)
    : SelEllipsoidDlg(OwnerOfSheet(sheet), ParentForSheet(sheet, parent), 0) {}

SelEllipsoidDlg::SelEllipsoidDlg(DialogOwner* owner, QWidget* parent, int)
    : PickerDialog(owner, parent), m_ui(std::make_unique<Ui::SelEllipsoidDlg>()) {
    m_ui->setupUi(this);
    BindControls(m_ui->filterEdit, m_ui->tree, m_ui->infoPane, m_ui->okButton, m_ui->cancelButton);
}

SelEllipsoidDlg::~SelEllipsoidDlg() = default;

void SelEllipsoidDlg::DoDataExchange(DataExchange* pDX) {
    DDX_Text(pDX, QStringLiteral("infoPane"), m_paneText);
}

bool SelEllipsoidDlg::OnInitDialog() {
    PickerDialog::OnInitDialog();
    FillTree();
    return true;
}

void SelEllipsoidDlg::FillTree() {
    Tree()->SetEntries({});
    QStringList names;
    QHash<QString, int> codes;
    if (OrvGeoDatabaseBase* database = Database()) {
        database->GetEllipsoidNames(names);
        codes = database->GetEpsgCodes(GeoEntryKind::Ellipsoid);
    }
    FillAndSelect(names, codes, m_selName);
}

void SelEllipsoidDlg::OnSelChangedTree(const QModelIndex& sourceIndex) {
    m_paneText.clear();
    if (sourceIndex.isValid()) {
        m_selName = Tree()->Model().NameAt(sourceIndex);
        if (OrvGeoDatabaseBase* database = Database())
            database->GetEllipsoidInfoText(m_paneText, m_selName);
        const qsizetype lineFeed = m_paneText.indexOf(QLatin1Char('\n'));
        m_infoText = lineFeed >= 0 ? m_paneText.mid(lineFeed + 1) : QString();
    }
    UpdateData(false);
}
