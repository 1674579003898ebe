#pragma once

#include <QSortFilterProxyModel>

// Narrows a NameTreeModel to the entries whose name contains the filter text (letter case
// ignored) or whose EPSG code equals it. A group stays while any member matches, and a
// matching group shows all its members (at any depth). The model's order is kept (no sorting here).
class NameFilterProxy : public QSortFilterProxyModel {
    Q_OBJECT
public:
    explicit NameFilterProxy(QObject* parent = nullptr);

    void SetFilterText(const QString& text);
    QString FilterText() const { return m_text; }
    bool IsFiltering() const { return !m_text.isEmpty(); }

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;

private:
    bool matches(const QModelIndex& sourceIndex) const;

    QString m_text;
    int m_code = 0; // the filter read as an EPSG code; 0 when it is no number
};
