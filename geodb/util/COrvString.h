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

    // An empty text holds no items; "a,,b" holds three items (two with skipEmpty).
    int Size() const { return static_cast<int>(m_items.size()); }
    // An index outside 0..Size()-1 gives an empty scratch string that is not part of the
    // list (writing to it changes nothing), so a stale index cannot crash a dialog.
    QString& operator[](int index);
    const QString& operator[](int index) const;
    // False for an index outside the list.
    bool SetItem(int index, const QString& value);
    // Removes count items from first (clamped to the list).
    void Erase(int first, int count);
    QString GetString() const;
    // True when an item equals text (case-insensitive); position gets the index of the first
    // such item, or -1 when there is none.
    bool HasSubString(const QString& text, int& position) const;

private:
    QStringList m_items;
    QChar m_separator;
    QString m_outside;
};
