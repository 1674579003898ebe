#pragma once

#include <QString>
#include <QStringConverter>
#include <QStringList>

#include <map>

// An ini file ("ORV.ini"): [Section] lines and Key=Value items. Sections and keys compare
// without regard to case; ';' and '#' start comment lines. Values are trimmed at both ends
// and keep their inner blanks; a value wrapped in double quotes loses one pair of quotes
// (that is how a value with outer blanks is written). Backslashes are taken literally, so
// Windows paths read as they stand. A key that appears twice in a section reads its first
// value. Line ends may be CRLF or LF; the file is UTF-8 (or UTF-16 with a byte-order mark;
// text that is not valid UTF-8, even in its last byte, is read as Latin-1). A file is
// written back in its own encoding, so that every value reads back as it was set: a Latin-1
// file whose bytes would read as other UTF-8 letters gets a comment line that marks it
// Latin-1, and one given a letter Latin-1 cannot hold becomes UTF-8.
class FileObject {
public:
    FileObject();
    virtual ~FileObject();

    // mode: the bits of OpenMode; 32 (Read) is what the dialogs pass. False when the file
    // cannot be read (or, with Create, created). Create makes a missing file empty.
    enum OpenMode : unsigned { Read = 32, Create = 64 };
    bool FileOpen(const QString& path, unsigned mode);

    // False when the key is absent (out is then left unchanged).
    virtual bool GetItem(const QString& section, const QString& key, QString& out);
    // False when the key is absent (out unchanged); otherwise out is true for "1", "true",
    // "yes", "on" (any case) and false for any other value.
    virtual bool GetItem(const QString& section, const QString& key, bool& out);

    // Writing (used by hosts and tests): changes the items and saves the file atomically.
    // SetItem keeps comments, order and the other lines as they were; it refuses (false,
    // nothing changed) an empty or malformed key, a section name holding ']', any line
    // break, text that is not valid UTF-16 (a lone surrogate) and a file that was never
    // opened. When the save fails, the items stay as before.
    bool SetItem(const QString& section, const QString& key, const QString& value);
    bool Save();

private:
    void parse();
    QString m_path;
    // section key -> (key key -> value), keys case-folded; original spelling kept for saving.
    struct Section {
        QString name;
        std::map<QString, std::pair<QString, QString>> items; // folded key -> (key, value)
        std::map<QString, int> itemLines;                     // folded key -> line index
        int lastLine = -1; // last line that belongs to the section (header or item)
    };
    std::map<QString, Section> m_sections;
    // The file's lines as read; edits change them in place so nothing else moves.
    QStringList m_lines;
    QString m_lineEnd = QStringLiteral("\n");
    bool m_endsWithLineEnd = true;
    QStringConverter::Encoding m_encoding = QStringConverter::Utf8;
    bool m_bom = false;
};
