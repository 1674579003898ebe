#include "dialogs/PrjSelectDlg.h"

#include "api/OrvGeoDatabaseBase.h"
#include "api/OrvGeoStaticDataBase.h"
#include "dialogs/PickerTree.h"
#include "dialogs/ProjectionTree.h"
#include "platform/DataExchange.h"
#include "ui_PrjSelectDlg.h"

#include <QTreeView>

PrjSelectDlg::PrjSelectDlg(QWidget* parent) : PrjSelectDlg(nullptr, parent, 0) {}

PrjSelectDlg::PrjSelectDlg(CoordSysEditorOwner* editor, QWidget* parent)
    : PrjSelectDlg(editor, parent, 0) {}

PrjSelectDlg::PrjSelectDlg(PropertySheet* sheet, QWidget* parent)
    : PrjSelectDlg(OwnerOfSheet(sheet), ParentForSheet(sheet, parent), 0) {}

PrjSelectDlg::PrjSelectDlg(DialogOwner* owner, QWidget* parent, int)
    : PickerDialog(owner, parent), m_ui(std::make_unique<Ui::PrjSelectDlg>()) {
    m_ui->setupUi(this);
    BindControls(m_ui->filterEdit, m_ui->tree, m_ui->infoPane, m_ui->okButton, m_ui->cancelButton);
}

PrjSelectDlg::~PrjSelectDlg() = default;

void PrjSelectDlg::DoDataExchange(DataExchange* pDX) {
    DDX_Text(pDX, QStringLiteral("infoPane"), m_paneText);
}

bool PrjSelectDlg::OnInitDialog() {
    PickerDialog::OnInitDialog();
    const bool filled = FillTree();
    UpdateOkButton();
    return filled;
}

bool PrjSelectDlg::FillTree() {
    m_ui->tree->setUpdatesEnabled(false);
    Tree()->SetEntries({});
    m_ui->tree->setUpdatesEnabled(true);
    OrvGeoDatabaseBase* database = Database();
    OrvGeoStaticDataBase* staticData = GetOwner() ? GetOwner()->GetGeoStatic() : nullptr;
    if (!database || !staticData)
        return false;

    // a method nothing is stored for is not offered
    Tree()->SetEntries(ProjectionTreeEntries(*staticData, *database, false));
    m_ui->tree->setFocus();
    Tree()->Select(Tree()->FirstShown());
    return true;
}

void PrjSelectDlg::OnSelChangedTree(const QModelIndex& sourceIndex) {
    m_paneText.clear();
    if (sourceIndex.isValid()) {
        const NameTreeModel& model = Tree()->Model();
        m_selName = model.NameAt(sourceIndex);
        if (!sourceIndex.parent().isValid()) {
            Tree()->Expand(sourceIndex); // a method: show what it holds
        } else if (OrvGeoDatabaseBase* database = Database()) {
            m_methodName = model.NameAt(sourceIndex.parent());
            m_paneText = ProjectionInformation(*database, m_selName);
        }
    }
    UpdateData(false);
}

bool PrjSelectDlg::CanAccept(const QModelIndex& current) const {
    return current.parent().isValid();
}
