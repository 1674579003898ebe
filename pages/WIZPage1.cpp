#include "pages/WIZPage1.h"

#include "api/OrvGeoDatabaseBase.h"
#include "dialogs/InformationPane.h"
#include "dialogs/NameFilterProxy.h"
#include "dialogs/PickerTree.h"
#include "platform/DataExchange.h"
#include "resources/StringTable.h"
#include "ui_WIZPage1.h"
#include "util/GeobaseToGeostatic.h"
#include "wizard/GeoWizard.h"

#include <QHeaderView>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextEdit>
#include <QTreeView>

namespace {
// SetWizardButtonByPage codes.
constexpr unsigned kButtonsBackNext = 3;
constexpr unsigned kButtonsBack = 4;
} // namespace

WIZPage1::WIZPage1(GeoWizard* sheet)
    : WizardPage(sheet, QStringLiteral("WIZPage1"), StrId::TitleSelectSystem,
                 PropertySheet::PSWIZB_BACK | PropertySheet::PSWIZB_NEXT),
      m_ui(std::make_unique<Ui::WIZPage1>()) {
    m_ui->setupUi(ContentArea());
    m_tree = new PickerTree(m_ui->filterEdit, m_ui->tree, this);
    // Names of systems run long: the tree scrolls sideways rather than cutting them.
    m_ui->tree->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_ui->tree->header()->setStretchLastSection(false);
    PrepareInformationPane(m_ui->infoPane);
    connect(m_tree, &PickerTree::CurrentChanged, this, &WIZPage1::OnSelChangedTree);
    connect(m_tree, &PickerTree::FilterApplied, this, &WIZPage1::OnFilterApplied);
}

WIZPage1::~WIZPage1() = default;

void WIZPage1::DoDataExchange(DataExchange* pDX) {
    DDX_Text(pDX, QStringLiteral("pageNumber"), m_pageNumberText);
}

bool WIZPage1::OnSetActive() {
    WizardPage::OnSetActive();
    FillTree();
    return true;
}

void WIZPage1::FillTree() {
    QString group;
    QString system;
    m_sheet->GetPreGroupName(group);
    const bool preset = m_sheet->GetPreSysName(system);

    QList<NameTreeEntry> entries;
    if (OrvGeoDatabaseBase* database = m_sheet->GetGeoDatabase()) {
        QStringList groups;
        database->GetGroupNames(groups, GEODB_ALL);
        const QHash<QString, int> codes = database->GetEpsgCodes(GeoEntryKind::CoordSys);
        entries.reserve(groups.size());
        for (const QString& name : std::as_const(groups)) {
            NameTreeEntry entry{name, 0, {}};
            QStringList systems;
            database->GetSystemNames(systems, name);
            entry.children.reserve(systems.size());
            for (const QString& member : std::as_const(systems))
                entry.children.append(NameTreeEntry{member, codes.value(member), {}});
            entries.append(std::move(entry));
        }
    }

    // Every arrival starts from the whole tree.
    m_quietTree = true;
    m_tree->SetFilterText(QString());
    m_tree->SetEntries(std::move(entries));
    m_quietTree = false;
    m_treeFilled = 1;
    if (preset)
        PreselectSystem(group, system);
}

void WIZPage1::PreselectSystem(const QString& group, const QString& system) {
    const NameTreeModel& model = m_tree->Model();
    const QModelIndex groupItem = model.FindTopLevel(group);
    if (!groupItem.isValid())
        return;
    m_tree->Expand(groupItem);
    QModelIndex systemItem;
    for (int row = 0; row < model.rowCount(groupItem) && !systemItem.isValid(); ++row) {
        const QModelIndex member = model.index(row, 0, groupItem);
        if (model.NameAt(member).compare(system, Qt::CaseInsensitive) == 0)
            systemItem = member;
    }
    if (!systemItem.isValid())
        return;
    m_quietTree = true;
    m_tree->Select(systemItem);
    m_quietTree = false;
    m_groupName = model.NameAt(groupItem);
    m_systemName = model.NameAt(systemItem);
    UseSystem(false);
}

void WIZPage1::OnSelChangedTree(const QModelIndex& item) {
    if (m_quietTree)
        return;
    const NameTreeModel& model = m_tree->Model();
    if (!item.isValid())
        return; // only a filter leaves nothing current: OnFilterApplied sees to it
    if (model.rowCount(item) > 0) {
        // a group
        m_sheet->SetWizardButtonByPage(kButtonsBack);
        ShowInfo(QString());
    } else if (item.parent().isValid()) {
        m_sheet->SetWizardButtonByPage(kButtonsBackNext);
        m_groupName = model.NameAt(item.parent());
        m_systemName = model.NameAt(item);
        m_sheet->SetPreGroupName(m_groupName);
        m_sheet->SetPreSysName(m_systemName, QString());
        UseSystem(true);
        UpdateData(true);
    } else {
        // a group without systems
        m_sheet->SetWizardButtonByPage(kButtonsBack);
    }
}

void WIZPage1::OnFilterApplied() {
    if (m_quietTree || m_tree->Current().isValid())
        return;
    if (m_tree->Proxy().IsFiltering()) {
        // The filter hides every system: none to go on with.
        m_sheet->SetWizardButtonByPage(kButtonsBack);
        ShowInfo(QString());
    } else {
        // Cleared with nothing chosen: as activation left the page.
        m_sheet->SetWizardButtonByPage(kButtonsBackNext);
    }
}

void WIZPage1::UseSystem(bool withMethodAndUnit) {
    OrvGeoDatabaseBase* database = m_sheet->GetGeoDatabase();
    if (!database)
        return;
    QString dtfName;
    m_sheet->SetSelDtfName(database->GetSystemDtfName(dtfName, m_groupName, m_systemName));

    QString prjName;
    database->GetSystemProjectionName(prjName, m_groupName, m_systemName);
    m_sheet->SetPrePrjName(prjName);
    if (withMethodAndUnit) {
        QString text;
        m_sheet->SetPrjMdName(database->GetProjectionMethodName(text, prjName));
        m_sheet->SetUnit(database->GetProjectionUnit(text, prjName));
    }
    m_sheet->SetPrjOption(0);

    ShowInfo(QString());
    QString info;
    ShowInfo(database->GetSystemInfoText(info, m_groupName, m_systemName, QString(), QString(),
                                         QString(), QString(), QString()));

    OrvGeoWizard::Utils::GeobaseToGeostatic(m_groupName, m_systemName, m_sheet->GetPrjMdName(),
                                            database, m_sheet->GetGeoStatic());
}

void WIZPage1::ShowInfo(const QString& text) {
    // Each line of the text is a paragraph indented by its leading tabs, and a line too long
    // for the half page wraps under its own text (not back to the left edge), so that the
    // levels stay readable.
    QTextEdit* pane = m_ui->infoPane;
    pane->clear();
    if (text.isEmpty())
        return;
    const qreal level = pane->tabStopDistance(); // one tab of the text
    const qreal hanging = level;
    QTextCursor cursor(pane->document());
    const QStringList lines = QString(text).remove(QLatin1Char('\r')).split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString& line = lines[i];
        qsizetype tabs = 0;
        while (tabs < line.size() && line[tabs] == QLatin1Char('\t'))
            ++tabs;
        QTextBlockFormat format;
        format.setLeftMargin(tabs * level + hanging);
        format.setTextIndent(-hanging);
        if (i == 0)
            cursor.setBlockFormat(format);
        else
            cursor.insertBlock(format);
        cursor.insertText(line.mid(tabs));
    }
    pane->moveCursor(QTextCursor::Start);
}

int WIZPage1::OnWizardBack() {
    m_sheet->SetGeoModStatu(false);
    m_sheet->SetPosModStatu(false);
    return kMove;
}

int WIZPage1::OnWizardNext() {
    m_sheet->SetDtfOption(0);
    m_sheet->SetInitDtf(false);
    m_sheet->SetInitPrj(false);
    m_sheet->SetInitUnit(false);
    m_sheet->SetDtfFromOldDtf(false);
    m_sheet->SetPrjFromOldPrj(false);
    if (OrvGeoDatabaseBase* database = m_sheet->GetGeoDatabase()) {
        m_sheet->SetGeoModStatu(database->SystemHasGeoidModel(m_groupName, m_systemName));
        m_sheet->SetPosModStatu(database->SystemHasPostCorrection(m_groupName, m_systemName));
    }
    return kMove;
}
