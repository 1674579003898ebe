#pragma once

#include "dialogs/NameTreeModel.h"

#include <QObject>
#include <QPersistentModelIndex>

class NameFilterProxy;
class QLineEdit;
class QTreeView;
class QWidget;

// The tree of a picker with its filter field: a NameTreeModel shown through a
// NameFilterProxy in the view, and the field above it narrowing the tree as the person
// types (Ctrl+F reaches the field, Down goes on into the tree). While a filter narrows the
// tree every group is open; a current entry that stays visible stays current, otherwise the
// first matching entry becomes current (none when nothing matches). Clearing the field
// restores the whole tree with the current entry kept and the groups that were open before
// the filter open again.
class PickerTree : public QObject {
    Q_OBJECT
public:
    // shortcutOwner: the dialog whose Ctrl+F focuses the field.
    PickerTree(QLineEdit* filter, QTreeView* view, QWidget* shortcutOwner);

    NameTreeModel& Model() { return *m_model; }
    const NameFilterProxy& Proxy() const { return *m_proxy; }
    QTreeView* View() const { return m_view; }
    QLineEdit* FilterEdit() const { return m_filter; }

    void SetEntries(QList<NameTreeEntry> entries);
    // Makes an entry of the model (a source index) current and selected, scrolled into view;
    // an invalid or filtered-out index clears the selection.
    void Select(const QModelIndex& sourceIndex);
    // Opens a group (a source index) in the view.
    void Expand(const QModelIndex& sourceIndex);
    // The current entry as a source index; invalid when there is none.
    QModelIndex Current() const;
    // The first entry shown (the first by name while the filter is empty), or invalid.
    QModelIndex FirstShown() const;
    // Types text into the filter field (as the person would).
    void SetFilterText(const QString& text);

signals:
    // The current entry changed (a source index, invalid for none).
    void CurrentChanged(const QModelIndex& sourceIndex);
    // The filter text was applied (after any CurrentChanged it caused).
    void FilterApplied();

private:
    void applyFilter(const QString& text);
    // The first entry shown, a group's first member rather than the group.
    QModelIndex firstMatch() const;
    void rememberExpanded(const QModelIndex& sourceParent);

    QLineEdit* m_filter;
    QTreeView* m_view;
    NameTreeModel* m_model;
    NameFilterProxy* m_proxy;
    QList<QPersistentModelIndex> m_expandedBeforeFilter;
    QPersistentModelIndex m_lastChosen; // the last current entry, kept while a filter hides all
    bool m_filtering = false; // the filter is being applied: currentChanged is ours to tell
};
