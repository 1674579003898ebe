#include "dialogs/NameTreeModel.h"

#include <algorithm>

namespace {

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

void NameTreeModel::addNodes(QList<NameTreeEntry>& entries, int parent, std::vector<int>& rows) {
    sortNaturally(entries, [](const NameTreeEntry& e) { return e.name; });
    rows.reserve(entries.size());
    for (qsizetype i = 0; i < entries.size(); ++i) {
        const int id = static_cast<int>(m_nodes.size());
        m_nodes.push_back(
            Node{std::move(entries[i].name), entries[i].code, parent, static_cast<int>(i), {}});
        rows.push_back(id);
        std::vector<int> children;
        addNodes(entries[i].children, id, children);
        m_nodes[id].children = std::move(children);
    }
}

void NameTreeModel::SetEntries(QList<NameTreeEntry> entries) {
    beginResetModel();
    m_nodes.clear();
    m_topLevel.clear();
    addNodes(entries, -1, m_topLevel);
    endResetModel();
}

const NameTreeModel::Node* NameTreeModel::node(const QModelIndex& index) const {
    if (!index.isValid() || index.model() != this)
        return nullptr;
    return &m_nodes[index.internalId()];
}

const std::vector<int>& NameTreeModel::childrenOf(const QModelIndex& parent) const {
    const Node* n = node(parent);
    return n ? n->children : m_topLevel;
}

QModelIndex NameTreeModel::FindChild(const QModelIndex& parent, const QString& name) const {
    const std::vector<int>& children = childrenOf(parent);
    for (std::size_t row = 0; row < children.size(); ++row)
        if (m_nodes[children[row]].name.compare(name, Qt::CaseInsensitive) == 0)
            return createIndex(static_cast<int>(row), 0, static_cast<quintptr>(children[row]));
    return {};
}

void NameTreeModel::RemoveEntry(const QModelIndex& index) {
    const Node* n = node(index);
    if (!n)
        return;
    const int row = n->row;
    std::vector<int>& siblings = n->parent < 0 ? m_topLevel : m_nodes[n->parent].children;
    beginRemoveRows(index.parent(), row, row);
    siblings.erase(siblings.begin() + row);
    for (std::size_t i = static_cast<std::size_t>(row); i < siblings.size(); ++i)
        m_nodes[siblings[i]].row = static_cast<int>(i);
    endRemoveRows();
}

QString NameTreeModel::NameAt(const QModelIndex& index) const {
    const Node* n = node(index);
    return n ? n->name : QString();
}

int NameTreeModel::CodeAt(const QModelIndex& index) const {
    const Node* n = node(index);
    return n ? n->code : 0;
}

QModelIndex NameTreeModel::index(int row, int column, const QModelIndex& parent) const {
    if (column != 0 || row < 0 || (parent.isValid() && parent.model() != this))
        return {};
    const std::vector<int>& children = childrenOf(parent);
    if (static_cast<std::size_t>(row) >= children.size())
        return {};
    return createIndex(row, 0, static_cast<quintptr>(children[row]));
}

QModelIndex NameTreeModel::parent(const QModelIndex& child) const {
    const Node* n = node(child);
    if (!n || n->parent < 0)
        return {};
    const Node& p = m_nodes[n->parent];
    return createIndex(p.row, 0, static_cast<quintptr>(n->parent));
}

int NameTreeModel::rowCount(const QModelIndex& parent) const {
    if (parent.isValid() && parent.model() != this)
        return 0;
    return static_cast<int>(childrenOf(parent).size());
}

int NameTreeModel::columnCount(const QModelIndex&) const {
    return 1;
}

QVariant NameTreeModel::data(const QModelIndex& index, int role) const {
    const Node* n = node(index);
    if (!n)
        return {};
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
        return n->name;
    if (role == CodeRole)
        return n->code;
    return {};
}
