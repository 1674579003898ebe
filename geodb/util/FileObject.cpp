#include "util/FileObject.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringDecoder>
#include <QStringEncoder>

#include <algorithm>

namespace {

// An ini file larger than this is not a settings file; refuse it rather than read it whole.
constexpr qint64 MaxFileSize = 16 * 1024 * 1024;

QString fold(const QString& name) {
    return name.trimmed().toCaseFolded();
}

QString unquote(const QString& value) {
    if (value.size() >= 2 && value.startsWith(u'"') && value.endsWith(u'"'))
        return value.mid(1, value.size() - 2);
    return value;
}

QString quoteIfNeeded(const QString& value) {
    const bool outerBlanks = value != value.trimmed();
    const bool looksQuoted = value.size() >= 2 && value.startsWith(u'"') && value.endsWith(u'"');
    return outerBlanks || looksQuoted ? u'"' + value + u'"' : value;
}

// A comment line that marks a file as Latin-1: '«' and '»' are 0xAB and 0xBB, bytes that
// are never a letter of their own in UTF-8.
const QString Latin1Marker = QStringLiteral("; Latin-1 (ISO 8859-1) text \u00ab\u00bb");

// True when bytes meant as Latin-1 are also valid UTF-8 with other letters in it.
bool ReadsAsOtherUtf8(const QByteArray& data) {
    bool ascii = true;
    for (char c : data) {
        if (static_cast<unsigned char>(c) >= 0x80) {
            ascii = false;
            break;
        }
    }
    if (ascii)
        return false;
    QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    const QString asUtf8 = decoder(data);
    return !decoder.hasError() && asUtf8 != QString::fromLatin1(data);
}

bool hasLineBreak(const QString& text) {
    return text.contains(u'\n') || text.contains(u'\r');
}

} // namespace

FileObject::FileObject() = default;
FileObject::~FileObject() = default;

bool FileObject::FileOpen(const QString& path, unsigned mode) {
    m_path.clear();
    m_sections.clear();
    m_lines.clear();
    m_lineEnd = QStringLiteral("\n");
    m_endsWithLineEnd = true;
    m_encoding = QStringConverter::Utf8;
    m_bom = false;
    if (path.isEmpty())
        return false;

    const QFileInfo info(path);
    if (!info.exists()) {
        if (!(mode & Create))
            return false;
        m_path = path;
        if (!Save()) {
            m_path.clear();
            return false;
        }
        return true;
    }
    if (!info.isFile() || info.size() > MaxFileSize)
        return false;

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    // Sized by the file, not by the limit: read(limit) would claim 16 MB for every opening.
    QByteArray data = file.read(std::min(info.size(), MaxFileSize) + 1);
    while (!file.atEnd() && data.size() <= MaxFileSize && file.error() == QFileDevice::NoError)
        data += file.read(MaxFileSize + 1 - data.size()); // the file grew meanwhile
    if (file.error() != QFileDevice::NoError || data.size() > MaxFileSize)
        return false;

    // Stateless: a sequence cut off at the end of the file is an error, not a byte held
    // back for more input (which would drop the last letter of a Latin-1 file).
    QString text;
    if (const auto bomEncoding = QStringConverter::encodingForData(data)) {
        m_encoding = *bomEncoding;
        m_bom = true;
        QStringDecoder decoder(m_encoding, QStringConverter::Flag::Stateless);
        text = decoder(data);
    } else {
        QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
        text = decoder(data);
        if (decoder.hasError()) {
            // Older tools write the settings in an 8-bit code page; keep the bytes readable.
            m_encoding = QStringConverter::Latin1;
            text = QString::fromLatin1(data);
        }
    }

    if (text.contains(QStringLiteral("\r\n")))
        m_lineEnd = QStringLiteral("\r\n");
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(u'\r', u'\n');
    m_lines = text.split(u'\n');
    m_endsWithLineEnd = text.isEmpty() || text.endsWith(u'\n');
    if (!m_lines.isEmpty() && m_lines.last().isEmpty())
        m_lines.removeLast();

    m_path = path;
    parse();
    return true;
}

void FileObject::parse() {
    m_sections.clear();
    QString current; // items before the first header belong to the section ""
    for (int i = 0; i < m_lines.size(); ++i) {
        const QString line = m_lines[i].trimmed();
        if (line.isEmpty() || line.startsWith(u';') || line.startsWith(u'#'))
            continue;
        if (line.startsWith(u'[')) {
            const qsizetype close = line.indexOf(u']');
            if (close < 0)
                continue; // not a header; ignore the broken line
            const QString name = line.mid(1, close - 1).trimmed();
            current = fold(name);
            Section& section = m_sections[current];
            if (section.name.isEmpty())
                section.name = name;
            section.lastLine = i;
            continue;
        }
        const qsizetype eq = line.indexOf(u'=');
        if (eq <= 0)
            continue;
        const QString key = line.left(eq).trimmed();
        if (key.isEmpty())
            continue;
        const QString value = unquote(line.mid(eq + 1).trimmed());
        Section& section = m_sections[current];
        const QString folded = fold(key);
        if (section.items.find(folded) == section.items.end()) {
            section.items[folded] = {key, value};
            section.itemLines[folded] = i;
        }
        section.lastLine = i;
    }
}

bool FileObject::GetItem(const QString& section, const QString& key, QString& out) {
    const auto s = m_sections.find(fold(section));
    if (s == m_sections.end())
        return false;
    const auto item = s->second.items.find(fold(key));
    if (item == s->second.items.end())
        return false;
    out = item->second.second;
    return true;
}

bool FileObject::GetItem(const QString& section, const QString& key, bool& out) {
    QString text;
    if (!GetItem(section, key, text))
        return false;
    const QString value = text.trimmed().toLower();
    out = value == u"1" || value == u"true" || value == u"yes" || value == u"on";
    return true;
}

bool FileObject::SetItem(const QString& section, const QString& key, const QString& value) {
    if (m_path.isEmpty())
        return false;
    const QString sectionName = section.trimmed();
    const QString keyName = key.trimmed();
    if (keyName.isEmpty() || keyName.contains(u'=') || keyName.startsWith(u'[') ||
        keyName.startsWith(u';') || keyName.startsWith(u'#') || sectionName.contains(u']') ||
        hasLineBreak(section) || hasLineBreak(key) || hasLineBreak(value) ||
        !section.isValidUtf16() || !key.isValidUtf16() || !value.isValidUtf16())
        return false; // a lone surrogate has no encoding and would read back as another text

    const QStringList before = m_lines;
    const QString folded = fold(keyName);
    const auto s = m_sections.find(fold(sectionName));
    if (s != m_sections.end()) {
        Section& sec = s->second;
        const auto line = sec.itemLines.find(folded);
        if (line != sec.itemLines.end()) {
            // Keep the key as the file spells it.
            m_lines[line->second] = sec.items[folded].first + u'=' + quoteIfNeeded(value);
        } else {
            m_lines.insert(sec.lastLine + 1, keyName + u'=' + quoteIfNeeded(value));
        }
    } else if (sectionName.isEmpty()) {
        m_lines.insert(0, keyName + u'=' + quoteIfNeeded(value));
    } else {
        if (!m_lines.isEmpty() && !m_lines.last().trimmed().isEmpty())
            m_lines.append(QString());
        m_lines.append(u'[' + sectionName + u']');
        m_lines.append(keyName + u'=' + quoteIfNeeded(value));
    }

    if (!Save()) {
        m_lines = before;
        parse();
        return false;
    }
    parse();
    return true;
}

bool FileObject::Save() {
    if (m_path.isEmpty())
        return false;
    auto joined = [this] {
        QString text = m_lines.join(m_lineEnd);
        if (m_endsWithLineEnd && !m_lines.isEmpty())
            text += m_lineEnd;
        return text;
    };
    QString text = joined();

    QStringConverter::Encoding encoding = m_encoding;
    if (encoding == QStringConverter::Latin1) {
        for (QChar c : text) {
            if (c.unicode() > 0xff) {
                encoding = QStringConverter::Utf8; // a new value Latin-1 cannot hold
                break;
            }
        }
    }
    const auto flags = m_bom ? QStringConverter::Flag::WriteBom : QStringConverter::Flag::Default;
    QByteArray data = QStringEncoder(encoding, flags)(text);
    if (encoding == QStringConverter::Latin1 && ReadsAsOtherUtf8(data)) {
        // Latin-1 bytes that happen to be valid UTF-8 ("Ã©") would read back as other
        // letters ("é"). A comment with two bytes that UTF-8 never holds alone keeps the
        // file Latin-1, for this reader and for older programs alike.
        m_lines.append(Latin1Marker);
        text = joined();
        data = QStringEncoder(encoding, flags)(text);
    }

    // Written to a temporary file and renamed, so a failed save leaves the old file whole.
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    if (file.write(data) != data.size()) {
        file.cancelWriting();
        return false;
    }
    if (!file.commit())
        return false;
    m_encoding = encoding;
    return true;
}
