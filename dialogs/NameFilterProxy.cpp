#include "dialogs/NameFilterProxy.h"

#include "dialogs/NameTreeModel.h"

NameFilterProxy::NameFilterProxy(QObject* parent) : QSortFilterProxyModel(parent) {
    setRecursiveFilteringEnabled(true);
    setDynamicSortFilter(false);
}

void NameFilterProxy::SetFilterText(const QString& text) {
    const QString trimmed = text.trimmed();
    if (trimmed == m_text)
        return;
    m_text = trimmed;
    bool ok = false;
    const int code = m_text.toInt(&ok);
    m_code = ok && code > 0 ? code : 0;
    invalidateRowsFilter();
}

bool NameFilterProxy::matches(const QModelIndex& sourceIndex) const {
    if (m_code && sourceIndex.data(NameTreeModel::CodeRole).toInt() == m_code)
        return true;
    return sourceIndex.data(Qt::DisplayRole).toString().contains(m_text, Qt::CaseInsensitive);
}

bool NameFilterProxy::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const {
    if (m_text.isEmpty())
        return true;
    if (matches(sourceModel()->index(sourceRow, 0, sourceParent)))
        return true;
    // a member of a matching group
    for (QModelIndex group = sourceParent; group.isValid(); group = group.parent())
        if (matches(group))
            return true;
    return false;
}
