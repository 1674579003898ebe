#pragma once

#include <QString>
#include <QStringList>

#include <ostream>

// GoogleTest prints Qt strings as text, not as bytes.
inline void PrintTo(const QString& text, std::ostream* os) {
    *os << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QStringList& list, std::ostream* os) {
    *os << '{';
    for (qsizetype i = 0; i < list.size(); ++i)
        *os << (i ? ", " : "") << '"' << list[i].toStdString() << '"';
    *os << '}';
}
