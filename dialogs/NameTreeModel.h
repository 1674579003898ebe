#pragma once

#include <QAbstractItemModel>
#include <QHash>
#include <QList>
#include <QString>

// One entry of a name tree: a name, its EPSG code (0 for none) and, at the top level, the
// entries below it.
struct NameTreeEntry {
    QString name;
    int code = 0;
    QList<NameTreeEntry> children;
};

// A read-only tree of names at most two levels deep (a flat list, or groups with their
// members), filled in one pass. Each level is kept in the order a person reads it: letter
// case ignored and numbers by value, so "UTM Zone-5N" comes before "UTM Zone-10N".
class NameTreeModel : public QAbstractItemModel {
    Q_OBJECT
public:
    // The EPSG code of an entry (int, 0 for none).
    static constexpr int CodeRole = Qt::UserRole + 1;

    explicit NameTreeModel(QObject* parent = nullptr);

    // Replaces the whole tree; both levels are sorted here.
    void SetEntries(QList<NameTreeEntry> entries);
    // The first top-level entry whose name equals name ignoring case; invalid when none.
    QModelIndex FindTopLevel(const QString& name) const;
    QString NameAt(const QModelIndex& index) const;
    int CodeAt(const QModelIndex& index) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

private:
    const NameTreeEntry* entry(const QModelIndex& index) const;

    QList<NameTreeEntry> m_entries;
};

// Top-level entries of names with their codes (0 for a name without one).
QList<NameTreeEntry> EntriesOf(const QStringList& names, const QHash<QString, int>& codes);

// Sorts names as a person reads them (see NameTreeModel).
void SortNamesNaturally(QStringList& names);
