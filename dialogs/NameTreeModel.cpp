#include "dialogs/NameTreeModel.h"

#include <algorithm>

namespace {

// internalId of a top-level index; a child carries its parent's row + 1.
constexpr quintptr kTopLevel = 0;

// Digit runs are compared by value: each is padded with zeros to this width in the sort key.
constexpr int kNumberWidth = 20;

// A key whose plain order is the order a person reads names in: letter case folded, every
// run of digits left-padded so that 5 comes before 10. (QCollator's numeric mode is not
// available on every platform build, so the key is made here.)
QString naturalKey(const QString& name) {
    QString key;
    key.reserve(name.size() + kNumberWidth);
    const QString folded = name.toCaseFolded();
    for (qsizetype i = 0; i < folded.size();) {
        if (!folded[i].isDigit()) {
            key += folded[i++];
            continue;
        }
        qsizetype end = i;
        while (end < folded.size() && folded[end].isDigit())
            ++end;
        const QString digits = folded.mid(i, end - i);
        if (digits.size() < kNumberWidth)
            key += QString(kNumberWidth - digits.size(), QLatin1Char('0'));
        key += digits;
        i = end;
    }
    return key;
}

template <class T, class NameOf> void sortNaturally(QList<T>& items, NameOf nameOf) {
    // Keys once per name instead of n log n key computations.
    std::vector<std::pair<QString, qsizetype>> keys;
    keys.reserve(items.size());
    for (qsizetype i = 0; i < items.size(); ++i)
        keys.emplace_back(naturalKey(nameOf(items[i])), i);
    std::stable_sort(keys.begin(), keys.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    QList<T> sorted;
    sorted.reserve(items.size());
    for (const auto& key : keys)
        sorted.append(std::move(items[key.second]));
    items = std::move(sorted);
}

} // namespace

QList<NameTreeEntry> EntriesOf(const QStringList& names, const QHash<QString, int>& codes) {
    QList<NameTreeEntry> entries;
    entries.reserve(names.size());
    for (const QString& name : names)
        entries.append(NameTreeEntry{name, codes.value(name), {}});
    return entries;
}

void SortNamesNaturally(QStringList& names) {
    sortNaturally(names, [](const QString& name) { return name; });
}

NameTreeModel::NameTreeModel(QObject* parent) : QAbstractItemModel(parent) {}

void NameTreeModel::SetEntries(QList<NameTreeEntry> entries) {
    const auto nameOf = [](const NameTreeEntry& e) { return e.name; };
    for (NameTreeEntry& entry : entries)
        sortNaturally(entry.children, nameOf);
    sortNaturally(entries, nameOf);
    beginResetModel();
    m_entries = std::move(entries);
    endResetModel();
}

QModelIndex NameTreeModel::FindTopLevel(const QString& name) const {
    for (int row = 0; row < m_entries.size(); ++row)
        if (m_entries[row].name.compare(name, Qt::CaseInsensitive) == 0)
            return index(row, 0);
    return {};
}

const NameTreeEntry* NameTreeModel::entry(const QModelIndex& index) const {
    if (!index.isValid() || index.model() != this)
        return nullptr;
    if (index.internalId() == kTopLevel)
        return &m_entries[index.row()];
    return &m_entries[static_cast<int>(index.internalId() - 1)].children[index.row()];
}

QString NameTreeModel::NameAt(const QModelIndex& index) const {
    const NameTreeEntry* e = entry(index);
    return e ? e->name : QString();
}

int NameTreeModel::CodeAt(const QModelIndex& index) const {
    const NameTreeEntry* e = entry(index);
    return e ? e->code : 0;
}

QModelIndex NameTreeModel::index(int row, int column, const QModelIndex& parent) const {
    if (column != 0 || row < 0)
        return {};
    if (!parent.isValid())
        return row < m_entries.size() ? createIndex(row, 0, kTopLevel) : QModelIndex();
    if (parent.internalId() != kTopLevel || parent.row() >= m_entries.size())
        return {};
    if (row >= m_entries[parent.row()].children.size())
        return {};
    return createIndex(row, 0, static_cast<quintptr>(parent.row()) + 1);
}

QModelIndex NameTreeModel::parent(const QModelIndex& child) const {
    if (!child.isValid() || child.internalId() == kTopLevel)
        return {};
    return createIndex(static_cast<int>(child.internalId() - 1), 0, kTopLevel);
}

int NameTreeModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid())
        return static_cast<int>(m_entries.size());
    if (parent.internalId() != kTopLevel)
        return 0;
    return static_cast<int>(m_entries[parent.row()].children.size());
}

int NameTreeModel::columnCount(const QModelIndex&) const {
    return 1;
}

QVariant NameTreeModel::data(const QModelIndex& index, int role) const {
    const NameTreeEntry* e = entry(index);
    if (!e)
        return {};
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
        return e->name;
    if (role == CodeRole)
        return e->code;
    return {};
}
