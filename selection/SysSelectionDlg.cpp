#include "selection/SysSelectionDlg.h"

#include "api/OrvGeoFactories.h"
#include "dialogs/InformationPane.h"
#include "dialogs/PickerTree.h"
#include "platform/UiInteraction.h"
#include "resources/StringTable.h"
#include "ui_SysSelectionDlg.h"
#include "wizard/GeoWizard.h"

#include <QTreeView>

namespace {

// Tree levels: the databases, their groups, the systems.
constexpr int kSystemDepth = 2;

int depthOf(QModelIndex index) {
    int depth = -1;
    for (; index.isValid(); index = index.parent())
        ++depth;
    return depth;
}

bool sameName(const QString& a, const QString& b) {
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

} // namespace

SysSelectionDlg::SysSelectionDlg(geodb_type scope, bool editFlag, QWidget* parent)
    : Dialog(parent), m_ui(std::make_unique<Ui::SysSelectionDlg>()), m_scope(scope),
      m_editFlag(editFlag) {
    m_ui->setupUi(this);
    m_tree = new PickerTree(m_ui->filterEdit, m_ui->tree, this);
    PrepareInformationPane(m_ui->infoPane);
    connect(m_tree, &PickerTree::CurrentChanged, this, &SysSelectionDlg::OnSelChangedTree);
    connect(m_tree, &PickerTree::FilterApplied, this, [this] { Refresh(m_tree->Current()); });
    connect(m_ui->addButton, &QPushButton::clicked, this, &SysSelectionDlg::OnAdd);
    connect(m_ui->removeButton, &QPushButton::clicked, this, &SysSelectionDlg::OnRemove);
    connect(m_ui->okButton, &QPushButton::clicked, this, [this] { accept(); });
    connect(m_ui->cancelButton, &QPushButton::clicked, this, [this] { reject(); });
}

SysSelectionDlg::~SysSelectionDlg() = default;

void SysSelectionDlg::SetGroupName(QString group) {
    m_groupName = group;
    m_curGroupName = group;
}

void SysSelectionDlg::SetSystemName(QString system) {
    m_systemName = system;
    m_curSystemName = system;
}

bool SysSelectionDlg::OnInitDialog() {
    Dialog::OnInitDialog();
    BuildTree();
    m_ui->tree->setFocus();
    return true;
}

bool SysSelectionDlg::IsSystem(const QModelIndex& sourceIndex) const {
    return depthOf(sourceIndex) == kSystemDepth;
}

void SysSelectionDlg::BuildTree() {
    m_database.reset();
    m_database.reset(OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(m_dllType));
    if (!m_database) {
        Refresh({});
        return;
    }
    const QHash<QString, int> codes = m_database->GetEpsgCodes(GeoEntryKind::CoordSys);
    const auto database = [&](int rootId, int groupScope) {
        NameTreeEntry root{LoadOrvString(rootId), 0, {}};
        QStringList groups;
        m_database->GetGroupNames(groups, groupScope);
        for (const QString& group : std::as_const(groups)) {
            QStringList systems;
            m_database->GetSystemNames(systems, group);
            root.children.append(NameTreeEntry{group, 0, EntriesOf(systems, codes)});
        }
        return root;
    };
    QList<NameTreeEntry> roots;
    if (!(m_scope & GEODB_SYSTEM))
        roots.append(database(StrId::RootSystemDatabase, GEODB_SYSTEM));
    if (!(m_scope & GEODB_USER))
        roots.append(database(StrId::RootUserDatabase, GEODB_USER));
    m_tree->SetEntries(std::move(roots));

    const NameTreeModel& model = m_tree->Model();
    QModelIndex current;
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex root = model.index(row, 0);
        m_tree->Expand(root);
        const QModelIndex group = model.FindChild(root, m_curGroupName);
        if (group.isValid() && !current.isValid()) {
            m_tree->Expand(group);
            current = model.FindChild(group, m_curSystemName);
        }
    }
    m_tree->Select(current);
    Refresh(current);
}

void SysSelectionDlg::OnSelChangedTree(const QModelIndex& sourceIndex) {
    Refresh(sourceIndex);
}

void SysSelectionDlg::Refresh(const QModelIndex& sourceIndex) {
    const NameTreeModel& model = m_tree->Model();
    const bool system = IsSystem(sourceIndex);
    QString text;
    if (sourceIndex.isValid()) {
        m_groupName = system ? model.NameAt(sourceIndex.parent()) : model.NameAt(sourceIndex);
        m_systemName = system ? model.NameAt(sourceIndex) : QString();
        if (m_database)
            m_database->GetSystemInfoText(text, m_groupName, m_systemName, {}, {}, {}, {}, {});
    }
    m_ui->infoPane->setPlainText(text);

    // the host's own system keeps the geoid and post values the host gave
    const bool hostsSystem =
        sameName(m_groupName, m_curGroupName) && sameName(m_systemName, m_curSystemName);
    m_geoidModelName = hostsSystem ? m_presetGeoidModelName : QString();
    m_geoidModelFile = hostsSystem ? m_presetGeoidModelFile : QString();
    m_chartDatum = hostsSystem ? m_presetChartDatum : QString();
    m_postModelName = hostsSystem ? m_presetPostModelName : QString();
    m_postModelFile = hostsSystem ? m_presetPostModelFile : QString();

    // Changing systems needs the edit flag; the system in use is neither edited nor removed
    // here; only a system is a choice.
    const bool changeable = m_editFlag && system && !sameName(m_systemName, m_curSystemName);
    m_ui->addButton->setEnabled(!m_editFlag);
    m_ui->editButton->setEnabled(changeable);
    m_ui->removeButton->setEnabled(changeable);
    m_ui->okButton->setEnabled(system);
}

void SysSelectionDlg::OnOK() {
    if (!IsSystem(m_tree->Current()))
        return; // a database or a group is no choice
    Dialog::OnOK();
}

void SysSelectionDlg::OnAdd() {
    GeoWizard wizard(LoadOrvString(StrId::TitleHostWizard), nullptr, 0);
    wizard.SetDllType(m_dllType);
    if (wizard.DoModal() != PropertySheet::ID_WIZFINISH)
        return;
    m_ui->tree->setUpdatesEnabled(false);
    BuildTree();
    m_ui->tree->setUpdatesEnabled(true);
}

void SysSelectionDlg::OnRemove() {
    const QModelIndex item = m_tree->Current();
    if (!IsSystem(item) || !m_database)
        return;
    const QString group = m_groupName;
    const QString system = m_systemName;
    const QPersistentModelIndex removed(item);
    // the selection moves on first: to the next system of the group, or to nothing
    const QModelIndex next = item.sibling(item.row() + 1, 0);
    m_tree->Select(next);
    Refresh(next);
    if (m_database->RemoveSystem(group, system)) {
        m_tree->Model().RemoveEntry(removed);
        return;
    }
    // the item stays, and the selection stays on the entry after it
    GetUi().MessageBox(this, LoadOrvString(StrId::RemoveSystemFailed), QString(), MsgButtons::Ok);
}
