#include "util/COrvString.h"
#include "util/COrvUnitCnv.h"
#include "util/PathUtils.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <limits>

TEST(COrvString, SplitsEditsAndJoins) {
    COrvString list(QStringLiteral(" a ,b,, c "), u',');
    EXPECT_EQ(list.Size(), 4);
    EXPECT_EQ(list[0], u" a ");
    EXPECT_EQ(list.GetString(), u" a ,b,, c ");

    COrvString trimmed(QStringLiteral(" a ,b,, c "), u',', true, true);
    ASSERT_EQ(trimmed.Size(), 3);
    EXPECT_EQ(trimmed.GetString(), u"a,b,c");
    EXPECT_TRUE(trimmed.SetItem(1, QStringLiteral("B")));
    EXPECT_FALSE(trimmed.SetItem(3, QStringLiteral("x")));
    EXPECT_FALSE(trimmed.SetItem(-1, QStringLiteral("x")));
    trimmed[2] = QStringLiteral("C");
    EXPECT_EQ(trimmed.GetString(), u"a,B,C");

    int position = 99;
    EXPECT_TRUE(trimmed.HasSubString(QStringLiteral("b"), position));
    EXPECT_EQ(position, 1);
    EXPECT_FALSE(trimmed.HasSubString(QStringLiteral("a,B"), position));
    EXPECT_EQ(position, -1);

    COrvString copy(trimmed);
    copy.Erase(0, 1);
    EXPECT_EQ(copy.GetString(), u"B,C");
    EXPECT_EQ(trimmed.Size(), 3) << "a copy is independent";

    EXPECT_EQ(COrvString(QString(), u';').Size(), 0);
    EXPECT_EQ(COrvString(QStringLiteral(";"), u';').Size(), 2);
    EXPECT_EQ(COrvString(QStringLiteral(";"), u';', false, true).Size(), 0);
}

TEST(COrvString, ErasingAndIndexingOutsideTheListIsHarmless) {
    COrvString list(QStringLiteral("0|1|2|3|4"), u'|');
    list.Erase(3, 100);
    EXPECT_EQ(list.GetString(), u"0|1|2");
    list.Erase(-1, 2); // the range -1..0 covers item 0 only
    EXPECT_EQ(list.GetString(), u"1|2");
    list.Erase(5, 1);
    list.Erase(0, 0);
    list.Erase(0, -3);
    EXPECT_EQ(list.GetString(), u"1|2");

    list[7] = QStringLiteral("ignored");
    EXPECT_TRUE(list[-1].isEmpty());
    EXPECT_EQ(list.GetString(), u"1|2");
    const COrvString& constant = list;
    EXPECT_TRUE(constant[2].isEmpty());
}

TEST(COrvUnitCnv, ConvertsPerCategory) {
    COrvUnitCnv cnv;
    EXPECT_DOUBLE_EQ(cnv.ToDisplay(3, 12.5), 12.5);
    EXPECT_DOUBLE_EQ(cnv.Factor(3), 1.0);
    EXPECT_TRUE(cnv.Symbol(3).isEmpty());

    ASSERT_TRUE(cnv.SetUnit(3, 1.8, 32.0, QStringLiteral("°F"), QStringLiteral("Fahrenheit")));
    EXPECT_DOUBLE_EQ(cnv.ToDisplay(3, 100.0), 212.0);
    EXPECT_DOUBLE_EQ(cnv.FromDisplay(3, 212.0), 100.0);
    EXPECT_EQ(cnv.Symbol(3), u"°F");
    EXPECT_EQ(cnv.Name(3), u"Fahrenheit");

    // A unit that would divide by zero or carry NaN is refused and the old one kept.
    EXPECT_FALSE(cnv.SetUnit(3, 0.0, 0.0, QString(), QString()));
    EXPECT_FALSE(cnv.SetUnit(3, std::numeric_limits<double>::quiet_NaN(), 0.0, {}, {}));
    EXPECT_FALSE(cnv.SetUnit(3, 1.0, std::numeric_limits<double>::infinity(), {}, {}));
    EXPECT_FALSE(cnv.SetUnit(-1, 1.0, 0.0, {}, {}));
    EXPECT_DOUBLE_EQ(cnv.Factor(3), 1.8);
}

TEST(COrvUnitCnv, RotationSignOfTheSharedConverter) {
    COrvUnitCnv& shared = StaticFormats::GetUnitCnv();
    EXPECT_EQ(&shared, &StaticFormats::GetUnitCnv());
    const QString name = QStringLiteral("Datum Transformation Rotation Units");
    ASSERT_TRUE(shared.SetUnit(COrvUnitCnv::RotationCategory, -1.0, 0.0, QStringLiteral("\""), name,
                               QString()));
    EXPECT_DOUBLE_EQ(shared.ToDisplay(28, 0.35), -0.35);
    EXPECT_DOUBLE_EQ(shared.FromDisplay(28, -0.35), 0.35);
    EXPECT_EQ(shared.Symbol(28), u"\"");
    EXPECT_EQ(shared.Name(28), name);
    ASSERT_TRUE(shared.SetUnit(28, 1.0, 0.0, QStringLiteral("\""), name, QString()));
    EXPECT_DOUBLE_EQ(shared.ToDisplay(28, 0.35), 0.35);
}

namespace {
struct Split {
    QString folder, name, extension;
};
Split split(const QString& path) {
    Split s{QStringLiteral("x"), QStringLiteral("x"), QStringLiteral("x")};
    SplitPath(path, s.folder, s.name, s.extension);
    return s;
}
} // namespace

TEST(SplitPath, SplitsBothKindsOfPath) {
    struct Case {
        const char16_t *path, *folder, *name, *extension;
    } cases[] = {
        {u"C:\\Program Files\\ORV\\app.exe", u"C:\\Program Files\\ORV\\", u"app", u".exe"},
        {u"/usr/lib/orv/libOrvBaseR.so", u"/usr/lib/orv/", u"libOrvBaseR", u".so"},
        {u"C:\\data/mixed\\geoid.01", u"C:\\data/mixed\\", u"geoid", u".01"},
        {u"archive.tar.gz", u"", u"archive.tar", u".gz"},
        {u"README", u"", u"README", u""},
        {u"/etc/.profile", u"/etc/", u".profile", u""},
        {u"folder.d/", u"folder.d/", u"", u""},
        {u"C:app.exe", u"C:", u"app", u".exe"},
        {u"file.", u"", u"file", u"."},
        {u"..", u"", u"..", u""},
        {u"", u"", u"", u""},
    };
    for (const Case& c : cases) {
        const QString path = QString::fromUtf16(c.path);
        const Split s = split(path);
        EXPECT_EQ(s.folder, QString::fromUtf16(c.folder)) << path.toStdString();
        EXPECT_EQ(s.name, QString::fromUtf16(c.name)) << path.toStdString();
        EXPECT_EQ(s.extension, QString::fromUtf16(c.extension)) << path.toStdString();
        EXPECT_EQ(s.folder + s.name + s.extension, path);
    }
}

TEST(CheckAppPathForDevelopEnvironment, FindsTheSourceTreeOfABuildFolder) {
    QTemporaryDir dir;
    const QString root = dir.path();
    auto touch = [](const QString& file, const QByteArray& bytes = QByteArray()) {
        QDir().mkpath(QFileInfo(file).path());
        QFile f(file);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
    };
    // An out-of-tree build: the cache names the source folder.
    touch(root + "/src/CMakeLists.txt");
    touch(root + "/out/CMakeCache.txt",
          "# cache\nCMAKE_HOME_DIRECTORY:INTERNAL=" + (root + "/src").toUtf8() + "\n");
    QDir().mkpath(root + "/out/apps/tool");
    QString path = root + "/out/apps/tool/";
    EXPECT_TRUE(CheckAppPathForDevelopEnvironment(path));
    EXPECT_EQ(path, QDir::cleanPath(root + "/src") + "/");

    // A build* folder below the source root, without a cache.
    QDir().mkpath(root + "/src/build-debug/bin");
    path = root + "/src/build-debug/bin";
    EXPECT_TRUE(CheckAppPathForDevelopEnvironment(path));
    EXPECT_EQ(path, QDir::cleanPath(root + "/src") + "/");

    // A folder called "builds" whose parent is no source tree leaves the path alone.
    QDir().mkpath(root + "/home/builds/app");
    path = root + "/home/builds/app/";
    const QString installed = path;
    EXPECT_FALSE(CheckAppPathForDevelopEnvironment(path));
    EXPECT_EQ(path, installed);

    QString empty;
    EXPECT_FALSE(CheckAppPathForDevelopEnvironment(empty));
    EXPECT_TRUE(empty.isEmpty());
}

TEST(AppendOperator, AppendsWideAndQtStrings) {
    QString text = QStringLiteral("Group: ");
    text << L"Europe" << QStringLiteral("\r\n") << static_cast<const wchar_t*>(nullptr)
         << L"Zürich";
    EXPECT_EQ(text, u"Group: Europe\r\nZürich");
}
