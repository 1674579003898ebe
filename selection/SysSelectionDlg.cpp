#include "selection/SysSelectionDlg.h"

#include "api/OrvGeoFactories.h"
#include "dialogs/InformationPane.h"
#include "dialogs/PickerTree.h"
#include "editor/AdvCoordSysDlg.h"
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
    // a filter that keeps the current system keeps what Edit took from the editor
    connect(m_tree, &PickerTree::FilterApplied, this, [this] {
        if (m_tree->Current() != m_shown)
            Refresh(m_tree->Current());
    });
    connect(m_ui->addButton, &QPushButton::clicked, this, &SysSelectionDlg::OnAdd);
    connect(m_ui->editButton, &QPushButton::clicked, this, &SysSelectionDlg::OnEdit);
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

bool SysSelectionDlg::OpenDatabase() {
    m_database.reset(); // the old object closes its files before the new one opens them
    m_database.reset(OrvGeoDatabaseBaseList::GetGeoDatabaseList().Create(m_dllType));
    return m_database != nullptr;
}

void SysSelectionDlg::BuildTree() {
    if (!OpenDatabase()) {
        m_tree->SetEntries({});
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
    m_shown = sourceIndex;
    const NameTreeModel& model = m_tree->Model();
    const bool system = IsSystem(sourceIndex);
    m_groupName = !sourceIndex.isValid() ? QString()
                  : system               ? model.NameAt(sourceIndex.parent())
                                         : model.NameAt(sourceIndex);
    m_systemName = system ? model.NameAt(sourceIndex) : QString();

    // the host's own system keeps the geoid and post values the host gave
    const bool hostsSystem =
        sameName(m_groupName, m_curGroupName) && sameName(m_systemName, m_curSystemName);
    m_geoidModelName = hostsSystem ? m_presetGeoidModelName : QString();
    m_geoidModelFile = hostsSystem ? m_presetGeoidModelFile : QString();
    m_chartDatum = hostsSystem ? m_presetChartDatum : QString();
    m_postModelName = hostsSystem ? m_presetPostModelName : QString();
    m_postModelFile = hostsSystem ? m_presetPostModelFile : QString();

    m_ui->infoPane->setPlainText(sourceIndex.isValid() ? SystemInfoText() : QString());
    SetButtons(sourceIndex);
}

QString SysSelectionDlg::SystemInfoText() const {
    QString text;
    if (m_database)
        m_database->GetSystemInfoText(text, m_groupName, m_systemName, m_geoidModelName,
                                      m_geoidModelFile, m_chartDatum, m_postModelName,
                                      m_postModelFile);
    return text;
}

bool SysSelectionDlg::CanChange(const QModelIndex& sourceIndex) const {
    // Changing systems needs the edit flag and a database; the system in use is neither
    // edited nor removed here.
    return m_editFlag && m_database && IsSystem(sourceIndex) &&
           !sameName(m_systemName, m_curSystemName);
}

void SysSelectionDlg::SetButtons(const QModelIndex& sourceIndex) {
    const bool changeable = CanChange(sourceIndex);
    m_ui->addButton->setEnabled(!m_editFlag);
    m_ui->editButton->setEnabled(changeable);
    m_ui->removeButton->setEnabled(changeable);
    m_ui->okButton->setEnabled(IsSystem(sourceIndex)); // only a system is a choice
}

void SysSelectionDlg::OnOK() {
    if (!IsSystem(m_tree->Current()))
        return; // a database or a group is no choice
    Dialog::OnOK();
}

void SysSelectionDlg::OnAdd() {
    if (m_editFlag)
        return; // Add belongs to a dialog that does not change systems
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
    if (!CanChange(item))
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
    // The item stays, and the selection stays on the entry after it. Above that entry's
    // information the pane keeps the library's reason: the projects that use the system,
    // or that it is pre-defined.
    const QString reason = m_database->LastError();
    GetUi().MessageBox(this, LoadOrvString(StrId::RemoveSystemFailed), QString(), MsgButtons::Ok);
    const QString shown = m_ui->infoPane->toPlainText();
    if (!reason.isEmpty())
        m_ui->infoPane->setPlainText(shown.isEmpty() ? reason
                                                     : reason + QStringLiteral("\n\n") + shown);
}

void SysSelectionDlg::OnEdit() {
    if (!CanChange(m_tree->Current()))
        return;
    AdvCoordSysDlg editor(m_groupName, m_systemName, m_geoidModelName, m_geoidModelFile,
                          m_chartDatum, m_postModelName, m_postModelFile, true, nullptr, true);
    editor.SetDllType(m_dllType);
    if (editor.DoModal() != QDialog::Accepted)
        return;
    m_geoidModelName = editor.GetGeoidModelName();
    m_geoidModelFile = editor.GetGeoidModelFileName();
    m_chartDatum = editor.GetGeoidChartDatum();
    m_postModelName = editor.GetPostModelName();
    m_postModelFile = editor.GetPostModelFileName();
    // A fresh database object reads what the editor saved.
    OpenDatabase();
    m_ui->infoPane->setPlainText(SystemInfoText());
    SetButtons(m_tree->Current());
}
