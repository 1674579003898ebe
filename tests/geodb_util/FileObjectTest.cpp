#include "util/FileObject.h"

#include "api/GeoKeys.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

class FileObjectTest : public ::testing::Test {
protected:
    QString write(const QByteArray& bytes, const QString& name = QStringLiteral("ORV.ini")) {
        const QString path = QDir(m_dir.path()).filePath(name);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return path;
    }
    QByteArray read(const QString& path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
    QString item(FileObject& ini, const QString& section, const QString& key) {
        QString out = QStringLiteral("<absent>");
        ini.GetItem(section, key, out);
        return out;
    }
    QTemporaryDir m_dir;
};

} // namespace

TEST_F(FileObjectTest, ReadsTheDataPathsOfOrvIni) {
    const QString path = write("; ORV settings\r\n"
                               "[DataPaths]\r\n"
                               "DataRoot=C:\\ProgramData\\ORV\\Data\r\n"
                               "  DataFolder =  My Projects  \r\n"
                               "UseDefaultCommonPath=false\r\n"
                               "CommonPath=\\\\server\\share\\Common Files\\\r\n"
                               "# last line without a line end\r\n"
                               "Empty=");
    FileObject ini;
    ASSERT_TRUE(ini.FileOpen(path, FileObject::Read));
    const QString section = QString::fromWCharArray(DATA_PATH_SECTION);
    EXPECT_EQ(item(ini, section, QString::fromWCharArray(pathKeys[2])),
              u"C:\\ProgramData\\ORV\\Data");
    EXPECT_EQ(item(ini, section, QString::fromWCharArray(pathKeys[1])), u"My Projects");
    EXPECT_EQ(item(ini, section, QString::fromWCharArray(pathKeys[4])),
              u"\\\\server\\share\\Common Files\\");
    EXPECT_EQ(item(ini, section, QStringLiteral("Empty")), u"");
    // Section and key names compare without regard to case.
    EXPECT_EQ(item(ini, QStringLiteral("datapaths"), QStringLiteral("DATAROOT")),
              u"C:\\ProgramData\\ORV\\Data");
    EXPECT_EQ(item(ini, section, QStringLiteral("ProjectPath")), u"<absent>");
    EXPECT_EQ(item(ini, QStringLiteral("Other"), QStringLiteral("DataRoot")), u"<absent>");

    bool flag = true;
    EXPECT_TRUE(ini.GetItem(section, QStringLiteral("UseDefaultCommonPath"), flag));
    EXPECT_FALSE(flag);
    flag = true;
    EXPECT_FALSE(ini.GetItem(section, QStringLiteral("Missing"), flag));
    EXPECT_TRUE(flag) << "an absent key leaves the caller's default";
}

TEST_F(FileObjectTest, BoolItems) {
    const QString path = write("[S]\na=1\nb=TRUE\nc=Yes\nd=on\ne=0\nf=no\ng=2\nh=\ni= true \n");
    FileObject ini;
    ASSERT_TRUE(ini.FileOpen(path, FileObject::Read));
    for (const char* key : {"a", "b", "c", "d", "i"}) {
        bool v = false;
        EXPECT_TRUE(ini.GetItem(QStringLiteral("S"), QString::fromLatin1(key), v));
        EXPECT_TRUE(v) << key;
    }
    for (const char* key : {"e", "f", "g", "h"}) {
        bool v = true;
        EXPECT_TRUE(ini.GetItem(QStringLiteral("S"), QString::fromLatin1(key), v));
        EXPECT_FALSE(v) << key;
    }
}

TEST_F(FileObjectTest, OddLinesDoNotConfuseTheReader) {
    const QString path = write("top=level\n"
                               "[Broken\n"
                               "no equals sign\n"
                               "=no key\n"
                               "[ Spaced ]\n"
                               "k=first\n"
                               "K=second\n"
                               "q=\"  padded  \"\n"
                               "u=Zürich ✓\n"
                               "[spaced]\n"
                               "later=yes\n");
    FileObject ini;
    ASSERT_TRUE(ini.FileOpen(path, FileObject::Read));
    EXPECT_EQ(item(ini, QString(), QStringLiteral("top")), u"level");
    EXPECT_EQ(item(ini, QStringLiteral("Spaced"), QStringLiteral("k")), u"first");
    EXPECT_EQ(item(ini, QStringLiteral("spaced"), QStringLiteral("later")), u"yes");
    EXPECT_EQ(item(ini, QStringLiteral("Spaced"), QStringLiteral("q")), u"  padded  ");
    EXPECT_EQ(item(ini, QStringLiteral("Spaced"), QStringLiteral("u")), u"Zürich ✓");
}

TEST_F(FileObjectTest, MissingOrUnreadableFilesAreRefused) {
    FileObject ini;
    EXPECT_FALSE(ini.FileOpen(QString(), FileObject::Read));
    EXPECT_FALSE(ini.FileOpen(QDir(m_dir.path()).filePath(QStringLiteral("none.ini")), 32));
    EXPECT_FALSE(ini.FileOpen(m_dir.path(), FileObject::Read)) << "a folder is not a file";
    EXPECT_FALSE(QFile::exists(QDir(m_dir.path()).filePath(QStringLiteral("none.ini"))));

    const QString locked = write("[S]\nk=v\n", QStringLiteral("locked.ini"));
    QFile::setPermissions(locked, QFileDevice::Permissions());
    QFile probe(locked);
    // root reads anything; then only the rest of this test counts
    if (!probe.open(QIODevice::ReadOnly)) {
        EXPECT_FALSE(ini.FileOpen(locked, FileObject::Read));
    }
    QString out = QStringLiteral("keep");
    EXPECT_FALSE(ini.GetItem(QStringLiteral("S"), QStringLiteral("k"), out));
    EXPECT_FALSE(ini.SetItem(QStringLiteral("S"), QStringLiteral("k"), QStringLiteral("v")));
}

TEST_F(FileObjectTest, SetItemKeepsTheRestOfTheFile) {
    const QString path = write("; keep me\r\n"
                               "[DataPaths]\r\n"
                               "DataRoot=C:\\Data\r\n"
                               "\r\n"
                               "[Other]\r\n"
                               "x=1\r\n");
    FileObject ini;
    ASSERT_TRUE(ini.FileOpen(path, FileObject::Read));
    ASSERT_TRUE(ini.SetItem(QStringLiteral("datapaths"), QStringLiteral("DATAROOT"),
                            QStringLiteral("D:\\New Data")));
    ASSERT_TRUE(ini.SetItem(QStringLiteral("DataPaths"), QStringLiteral("CommonPath"),
                            QStringLiteral("  E:\\Common  ")));
    ASSERT_TRUE(ini.SetItem(QStringLiteral("New"), QStringLiteral("k"), QStringLiteral("v")));
    EXPECT_EQ(read(path), QByteArray("; keep me\r\n"
                                     "[DataPaths]\r\n"
                                     "DataRoot=D:\\New Data\r\n"
                                     "CommonPath=\"  E:\\Common  \"\r\n"
                                     "\r\n"
                                     "[Other]\r\n"
                                     "x=1\r\n"
                                     "\r\n"
                                     "[New]\r\n"
                                     "k=v\r\n"));

    FileObject again;
    ASSERT_TRUE(again.FileOpen(path, FileObject::Read));
    EXPECT_EQ(item(again, QStringLiteral("DataPaths"), QStringLiteral("CommonPath")),
              u"  E:\\Common  ");
    EXPECT_EQ(item(again, QStringLiteral("New"), QStringLiteral("K")), u"v");
}

TEST_F(FileObjectTest, SetItemRefusesMalformedItems) {
    const QString path = write("[S]\nk=v\n");
    FileObject ini;
    ASSERT_TRUE(ini.FileOpen(path, FileObject::Read));
    EXPECT_FALSE(ini.SetItem(QStringLiteral("S"), QString(), QStringLiteral("v")));
    EXPECT_FALSE(ini.SetItem(QStringLiteral("S"), QStringLiteral("a=b"), QStringLiteral("v")));
    EXPECT_FALSE(ini.SetItem(QStringLiteral("S"), QStringLiteral(";k"), QStringLiteral("v")));
    EXPECT_FALSE(ini.SetItem(QStringLiteral("a]b"), QStringLiteral("k"), QStringLiteral("v")));
    EXPECT_FALSE(ini.SetItem(QStringLiteral("S"), QStringLiteral("k"), QStringLiteral("a\nb")));
    EXPECT_EQ(read(path), QByteArray("[S]\nk=v\n"));
}

TEST_F(FileObjectTest, CreateMakesAnEmptyFileAndUtf16IsKept) {
    const QString path = QDir(m_dir.path()).filePath(QStringLiteral("new.ini"));
    FileObject ini;
    ASSERT_TRUE(ini.FileOpen(path, FileObject::Read | FileObject::Create));
    EXPECT_TRUE(QFile::exists(path));
    ASSERT_TRUE(ini.SetItem(QStringLiteral("S"), QStringLiteral("k"), QStringLiteral("v")));
    EXPECT_EQ(read(path), QByteArray("[S]\nk=v\n"));

    // A file with a UTF-16 byte-order mark is read and written back as UTF-16.
    QByteArray utf16("\xff\xfe", 2);
    const QString text = QStringLiteral("[S]\r\nname=Ærø\r\n");
    utf16.append(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
    const QString wide = write(utf16, QStringLiteral("wide.ini"));
    FileObject w;
    ASSERT_TRUE(w.FileOpen(wide, FileObject::Read));
    EXPECT_EQ(item(w, QStringLiteral("S"), QStringLiteral("name")), u"Ærø");
    ASSERT_TRUE(w.SetItem(QStringLiteral("S"), QStringLiteral("more"), QStringLiteral("ü")));
    EXPECT_TRUE(read(wide).startsWith(QByteArray("\xff\xfe", 2)));
    FileObject back;
    ASSERT_TRUE(back.FileOpen(wide, FileObject::Read));
    EXPECT_EQ(item(back, QStringLiteral("S"), QStringLiteral("more")), u"ü");

    // Bytes that are not UTF-8 still read (as Latin-1) instead of failing.
    const QString legacy = write("[S]\nk=Gr\xfc\xdf\n", QStringLiteral("legacy.ini"));
    FileObject l;
    ASSERT_TRUE(l.FileOpen(legacy, FileObject::Read));
    EXPECT_EQ(item(l, QStringLiteral("S"), QStringLiteral("k")), u"Grüß");
}

TEST_F(FileObjectTest, FailedSaveLeavesFileAndItemsAsTheyWere) {
    const QString folder = QDir(m_dir.path()).filePath(QStringLiteral("ro"));
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString path = QDir(folder).filePath(QStringLiteral("ORV.ini"));
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[S]\nk=old\n");
    }
    FileObject ini;
    ASSERT_TRUE(ini.FileOpen(path, FileObject::Read));
    QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    QFile probe(QDir(folder).filePath(QStringLiteral("probe")));
    const bool folderWritable = probe.open(QIODevice::WriteOnly); // true for root
    if (folderWritable) {
        probe.remove();
    } else {
        EXPECT_FALSE(ini.SetItem(QStringLiteral("S"), QStringLiteral("k"), QStringLiteral("new")));
        EXPECT_EQ(item(ini, QStringLiteral("S"), QStringLiteral("k")), u"old");
        EXPECT_EQ(read(path), QByteArray("[S]\nk=old\n"));
    }
    QFile::setPermissions(folder,
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

TEST_F(FileObjectTest, ALatin1FileKeepsItsLastByteAndItsEncoding) {
    // The last value has no line end after it and ends in a letter that is not ASCII.
    const QString path = write("[S]\r\nk=Caf\xe9", QStringLiteral("latin.ini"));
    FileObject ini;
    ASSERT_TRUE(ini.FileOpen(path, FileObject::Read));
    EXPECT_EQ(item(ini, QStringLiteral("S"), QStringLiteral("k")), u"Café");
    ASSERT_TRUE(ini.SetItem(QStringLiteral("S"), QStringLiteral("town"), QStringLiteral("Kåge")));
    EXPECT_EQ(read(path), QByteArray("[S]\r\nk=Caf\xe9\r\ntown=K\xe5ge"));
}

TEST_F(FileObjectTest, EveryValueReadsBackAsItWasSet) {
    const QStringList values{
        QStringLiteral("Ã©"), // Latin-1 bytes C3 A9: valid UTF-8 for "é"
        QStringLiteral("é"),
        QStringLiteral("  outer blanks  "),
        QStringLiteral("\"quoted\""),
        QStringLiteral("\""),
        QStringLiteral("a=b;c#d[e]"),
        QStringLiteral(";starts like a comment"),
        QString(),
        QStringLiteral("\u00a0no-break\u00a0"),
        QStringLiteral("tab\tinside"),
        QStringLiteral("C:\\ProgramData\\ORV\\"),
        QStringLiteral("Ω and 𝔘"), // beyond Latin-1
    };
    for (const QByteArray& start :
         {QByteArray("[S]\nk=Gr\xfc\xdf\n"), QByteArray("[S]\nk=x"),
          QByteArray("[S]\nk=Gr\xc3\xbc\xc3\x9f\n"), QByteArray("\xef\xbb\xbf[S]\nk=x\n")}) {
        for (const QString& value : values) {
            const QString path = write(start, QStringLiteral("round.ini"));
            FileObject ini;
            ASSERT_TRUE(ini.FileOpen(path, FileObject::Read));
            // The item that made the file Latin-1 is the one replaced.
            ASSERT_TRUE(ini.SetItem(QStringLiteral("S"), QStringLiteral("k"), value));
            ASSERT_TRUE(ini.SetItem(QStringLiteral("T"), QStringLiteral("second"), value));
            FileObject back;
            ASSERT_TRUE(back.FileOpen(path, FileObject::Read));
            EXPECT_EQ(item(back, QStringLiteral("S"), QStringLiteral("k")), value)
                << start.toStdString() << " / " << value.toStdString();
            EXPECT_EQ(item(back, QStringLiteral("T"), QStringLiteral("second")), value);
            // Latin-1 stays Latin-1 while the values allow it.
            if (start.contains('\xfc') && value != QStringLiteral("Ω and 𝔘")) {
                EXPECT_TRUE(QString::fromLatin1(read(path)).contains(value)) << value.toStdString();
            }
        }
    }
}

TEST_F(FileObjectTest, TextWithALoneSurrogateIsRefused) {
    // Found by the fuzz harness IniFile: such a value was written as U+FFFD and read back
    // as another text.
    const QString path = write("[S]\nk=v\n", QStringLiteral("surrogate.ini"));
    FileObject ini;
    ASSERT_TRUE(ini.FileOpen(path, FileObject::Read));
    const QString lone = QStringLiteral("a") + QChar(char16_t(0xd900)) + QStringLiteral("b");
    EXPECT_FALSE(ini.SetItem(QStringLiteral("S"), QStringLiteral("k"), lone));
    EXPECT_FALSE(ini.SetItem(lone, QStringLiteral("k"), QStringLiteral("v")));
    EXPECT_FALSE(ini.SetItem(QStringLiteral("S"), lone, QStringLiteral("v")));
    EXPECT_EQ(read(path), QByteArray("[S]\nk=v\n"));
    // A surrogate pair is a letter like any other.
    EXPECT_TRUE(ini.SetItem(QStringLiteral("S"), QStringLiteral("k"), QStringLiteral("𝔘")));
}
