#include "dialogs/PickerTree.h"

#include "dialogs/NameFilterProxy.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QShortcut>
#include <QTreeView>

#include <algorithm>

namespace {

// Down in the filter field goes on into the tree.
class FilterKeys : public QObject {
public:
    FilterKeys(QTreeView* view, QObject* parent) : QObject(parent), m_view(view) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::KeyPress &&
            static_cast<QKeyEvent*>(event)->key() == Qt::Key_Down) {
            m_view->setFocus(Qt::ShortcutFocusReason);
            return true;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QTreeView* m_view;
};

} // namespace

PickerTree::PickerTree(QLineEdit* filter, QTreeView* view, QWidget* shortcutOwner)
    : QObject(view), m_filter(filter), m_view(view), m_model(new NameTreeModel(this)),
      m_proxy(new NameFilterProxy(this)) {
    m_proxy->setSourceModel(m_model);
    m_view->setModel(m_proxy);
    m_view->setHeaderHidden(true);
    m_view->setIndentation(m_view->fontMetrics().averageCharWidth() * 2); // room for long names
    m_view->setUniformRowHeights(true); // keeps layout linear in the rows shown
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);

    m_filter->setClearButtonEnabled(true);
    m_filter->installEventFilter(new FilterKeys(m_view, this));
    auto* find = new QShortcut(QKeySequence::Find, shortcutOwner);
    connect(find, &QShortcut::activated, this, [this] {
        m_filter->setFocus(Qt::ShortcutFocusReason);
        m_filter->selectAll();
    });
    connect(m_filter, &QLineEdit::textChanged, this, &PickerTree::applyFilter);
    connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) {
                if (current.isValid())
                    m_lastChosen = m_proxy->mapToSource(current);
                if (!m_filtering)
                    emit CurrentChanged(m_proxy->mapToSource(current));
            });
}

void PickerTree::SetEntries(QList<NameTreeEntry> entries) {
    m_lastChosen = QPersistentModelIndex();
    m_expandedBeforeFilter.clear();
    // a flat list needs no room for branch marks
    const bool grouped = std::any_of(entries.cbegin(), entries.cend(),
                                     [](const NameTreeEntry& e) { return !e.children.isEmpty(); });
    m_view->setRootIsDecorated(grouped);
    m_model->SetEntries(std::move(entries));
    if (m_proxy->IsFiltering())
        m_view->expandAll();
}

void PickerTree::Select(const QModelIndex& sourceIndex) {
    const QModelIndex shown = m_proxy->mapFromSource(sourceIndex);
    QItemSelectionModel* selection = m_view->selectionModel();
    if (!shown.isValid()) {
        selection->clear(); // emits currentChanged with an invalid index
        return;
    }
    selection->setCurrentIndex(shown, QItemSelectionModel::ClearAndSelect);
    m_view->scrollTo(shown, QAbstractItemView::PositionAtCenter);
}

void PickerTree::Expand(const QModelIndex& sourceIndex) {
    m_view->expand(m_proxy->mapFromSource(sourceIndex));
}

QModelIndex PickerTree::Current() const {
    return m_proxy->mapToSource(m_view->selectionModel()->currentIndex());
}

QModelIndex PickerTree::FirstShown() const {
    return m_proxy->mapToSource(m_proxy->index(0, 0));
}

void PickerTree::SetFilterText(const QString& text) {
    m_filter->setText(text);
}

QModelIndex PickerTree::firstMatch() const {
    // Every row shown matches, except a group shown only for its members: there the first
    // member is the entry a person is after.
    QModelIndex shown = m_proxy->index(0, 0);
    while (m_proxy->index(0, 0, shown).isValid())
        shown = m_proxy->index(0, 0, shown);
    return m_proxy->mapToSource(shown);
}

void PickerTree::rememberExpanded(const QModelIndex& sourceParent) {
    for (int row = 0; row < m_model->rowCount(sourceParent); ++row) {
        const QModelIndex item = m_model->index(row, 0, sourceParent);
        if (m_model->rowCount(item) == 0)
            continue;
        if (m_view->isExpanded(m_proxy->mapFromSource(item)))
            m_expandedBeforeFilter << QPersistentModelIndex(item);
        rememberExpanded(item);
    }
}

void PickerTree::applyFilter(const QString& text) {
    const QPersistentModelIndex before = Current();
    const bool wasFiltering = m_proxy->IsFiltering();
    if (!wasFiltering) {
        // the groups the person had open come back when the filter is cleared
        m_expandedBeforeFilter.clear();
        rememberExpanded({});
    }
    m_filtering = true;
    m_proxy->SetFilterText(text);
    // what was current, or what was chosen before a filter hid everything
    QModelIndex next = before.isValid() ? QModelIndex(before) : QModelIndex(m_lastChosen);
    if (!m_proxy->mapFromSource(next).isValid())
        next = m_proxy->IsFiltering() ? firstMatch() : QModelIndex();
    m_view->setUpdatesEnabled(false);
    if (m_proxy->IsFiltering()) {
        m_view->expandAll();
    } else if (wasFiltering) {
        m_view->collapseAll();
        for (const QPersistentModelIndex& group : std::as_const(m_expandedBeforeFilter))
            m_view->expand(m_proxy->mapFromSource(group));
        for (QModelIndex group = next.parent(); group.isValid(); group = group.parent())
            m_view->expand(m_proxy->mapFromSource(group));
    }
    Select(next);
    m_view->setUpdatesEnabled(true);
    m_filtering = false;
    if (QModelIndex(before) != next)
        emit CurrentChanged(next);
    emit FilterApplied();
}
