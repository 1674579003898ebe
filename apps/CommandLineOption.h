#pragma once

#include <QString>
#include <QStringList>

// The programs' own option reader, shared by the programs whose command lines Qt's parser
// cannot take (terrameter's -G:"group" form) or that check option combinations themselves.

// "--name value" or "--name=value" for any of names. matched tells whether args[i] is the
// option; false with a message when its value is missing.
inline bool OptionValue(const QStringList& args, int& i, const QStringList& names, QString& value,
                        bool& matched, QString& error) {
    const QString& arg = args.at(i);
    matched = false;
    for (const QString& name : names) {
        if (arg == name) {
            matched = true;
            if (i + 1 >= args.size()) {
                error = QStringLiteral("%1 needs a value.").arg(name);
                return false;
            }
            value = args.at(++i);
            return true;
        }
        if (arg.startsWith(name + QLatin1Char('='))) {
            matched = true;
            value = arg.mid(name.size() + 1);
            return true;
        }
    }
    return true;
}
