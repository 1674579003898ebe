#pragma once

#include <QAbstractItemModel>
#include <QHash>
#include <QList>
#include <QString>

#include <vector>

// One entry of a name tree: a name, its EPSG code (0 for none) and the entries below it.
struct NameTreeEntry {
    QString name;
    int code = 0;
    QList<NameTreeEntry> children;
};

// A read-only tree of names (a flat list, groups with their members, or deeper), filled in
// one pass. Each level is kept in the order a person reads it: letter case ignored and
// numbers by value, so "UTM Zone-5N" comes before "UTM Zone-10N".
class NameTreeModel : public QAbstractItemModel {
    Q_OBJECT
public:
    // The EPSG code of an entry (int, 0 for none).
    static constexpr int CodeRole = Qt::UserRole + 1;

    explicit NameTreeModel(QObject* parent = nullptr);

    // Replaces the whole tree; every level is sorted here.
    void SetEntries(QList<NameTreeEntry> entries);
    // The first entry directly below parent (the top level for an invalid parent) whose name
    // equals name ignoring case; invalid when none.
    QModelIndex FindChild(const QModelIndex& parent, const QString& name) const;
    QModelIndex FindTopLevel(const QString& name) const { return FindChild({}, name); }
    // Takes one entry (and what is below it) out of the tree.
    void RemoveEntry(const QModelIndex& index);
    QString NameAt(const QModelIndex& index) const;
    int CodeAt(const QModelIndex& index) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

private:
    struct Node {
        QString name;
        int code = 0;
        int parent = -1; // index into m_nodes; -1 at the top level
        int row = 0;     // row below the parent
        std::vector<int> children;
    };
    void addNodes(QList<NameTreeEntry>& entries, int parent, std::vector<int>& rows);
    const Node* node(const QModelIndex& index) const;
    const std::vector<int>& childrenOf(const QModelIndex& parent) const;

    std::vector<Node> m_nodes;
    std::vector<int> m_topLevel;
};

// Top-level entries of names with their codes (0 for a name without one).
QList<NameTreeEntry> EntriesOf(const QStringList& names, const QHash<QString, int>& codes);

// Sorts names as a person reads them (see NameTreeModel).
void SortNamesNaturally(QStringList& names);
