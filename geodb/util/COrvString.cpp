#include "util/COrvString.h"

#include <algorithm>

COrvString::COrvString(const QString& text, QChar separator, bool trim, bool skipEmpty)
    : m_separator(separator) {
    // An empty text holds no items (not one empty item), so Size() counts real entries.
    if (text.isEmpty())
        return;
    const QStringList parts = text.split(separator, Qt::KeepEmptyParts);
    m_items.reserve(parts.size());
    for (const QString& part : parts) {
        const QString item = trim ? part.trimmed() : part;
        if (skipEmpty && item.isEmpty())
            continue;
        m_items.append(item);
    }
}

QString& COrvString::operator[](int index) {
    if (index >= 0 && index < Size())
        return m_items[index];
    m_outside.clear();
    return m_outside;
}

const QString& COrvString::operator[](int index) const {
    static const QString empty;
    if (index >= 0 && index < Size())
        return m_items[index];
    return empty;
}

bool COrvString::SetItem(int index, const QString& value) {
    if (index < 0 || index >= Size())
        return false;
    m_items[index] = value;
    return true;
}

void COrvString::Erase(int first, int count) {
    if (count <= 0)
        return;
    if (first < 0) {
        count += first;
        first = 0;
    }
    if (count <= 0 || first >= Size())
        return;
    count = std::min(count, Size() - first);
    m_items.remove(first, count);
}

QString COrvString::GetString() const {
    return m_items.join(m_separator);
}

bool COrvString::HasSubString(const QString& text, int& position) const {
    for (int i = 0; i < Size(); ++i) {
        if (m_items[i].compare(text, Qt::CaseInsensitive) == 0) {
            position = i;
            return true;
        }
    }
    position = -1;
    return false;
}
