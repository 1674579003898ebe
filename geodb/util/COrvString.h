#pragma once

#include <QChar>
#include <QString>
#include <QStringList>

// A string split into items at a separator character, edited item by item and joined
// again.
class COrvString {
public:
    // trim: strip blanks around each item; skipEmpty: drop empty items.
    COrvString(const QString& text, QChar separator, bool trim = false, bool skipEmpty = false);
    COrvString(const COrvString& other) = default;
    ~COrvString() = default;

    int Size() const { return static_cast<int>(m_items.size()); }
    // Index must lie in 0..Size()-1.
    QString& operator[](int index) { return m_items[index]; }
    const QString& operator[](int index) const { return m_items[index]; }
    // False for an index outside the list.
    bool SetItem(int index, const QString& value);
    // Removes count items from first (clamped to the list).
    void Erase(int first, int count);
    QString GetString() const;
    // True when an item equals text (case-insensitive); position gets its index.
    bool HasSubString(const QString& text, int& position) const;

private:
    QStringList m_items;
    QChar m_separator;
};
