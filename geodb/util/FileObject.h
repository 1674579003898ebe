#pragma once

#include <QString>

#include <map>

// An ini file ("ORV.ini"): [Section] lines and Key=Value items. Sections and keys compare
// without regard to case; ';' and '#' start comment lines.
class FileObject {
public:
    FileObject();
    virtual ~FileObject();

    // mode: the bits of OpenMode; 32 (Read) is what the dialogs pass. False when the file
    // cannot be read (or, with Create, created).
    enum OpenMode : unsigned { Read = 32, Create = 64 };
    bool FileOpen(const QString& path, unsigned mode);

    // False when the key is absent.
    virtual bool GetItem(const QString& section, const QString& key, QString& out);
    // True for "1", "true", "yes", "on" (any case); false when absent or anything else.
    virtual bool GetItem(const QString& section, const QString& key, bool& out);

    // Writing (used by hosts and tests): changes the items and saves the file atomically.
    bool SetItem(const QString& section, const QString& key, const QString& value);
    bool Save();

private:
    QString m_path;
    // section key -> (key key -> value), keys case-folded; original spelling kept for saving.
    struct Section {
        QString name;
        std::map<QString, std::pair<QString, QString>> items; // folded key -> (key, value)
    };
    std::map<QString, Section> m_sections;
};
