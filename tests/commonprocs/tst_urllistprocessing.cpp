// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/URLListProcessing.h"
#include "platform/TypeIdentifiers.h"
#include "support/TemporaryTree.h"

#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

TFileURL urlOf(const TemporaryTree &tree, const QString &relative = {})
{
    return TFileURL::fileURLWithPath(tree.path(relative));
}

QStringList names(const TemporaryTree &tree, const TFileURLs &urls)
{
    QStringList result;
    for (const TFileURL &url : urls)
        result.append(url.path().mid(tree.path().size() + 1));
    return result;
}

/// Sets a variable of the environment for as long as it lives.
class Environment
{
public:
    Environment(const char *name, const QByteArray &value)
        : m_name(name)
        , m_before(qgetenv(name))
        , m_wasSet(qEnvironmentVariableIsSet(name))
    {
        qputenv(name, value);
    }
    ~Environment()
    {
        if (m_wasSet)
            qputenv(m_name, m_before);
        else
            qunsetenv(m_name);
    }
    Environment(const Environment &) = delete;
    Environment &operator=(const Environment &) = delete;

private:
    const char *m_name;
    QByteArray m_before;
    bool m_wasSet;
};

} // namespace

class TestURLListProcessing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void questions_data();
    void questions();
    void listingByExtension_data();
    void listingByExtension();
    void filteringByType_data();
    void filteringByType();
    void removingTypes_data();
    void removingTypes();
    void strippingFolders();
    void uniqueNames_data();
    void uniqueNames();
    void uniqueUrls();
    void dataFolder();
    void dataFolderThatCannotBeMade();
    void factsOfAnItem();
    void identity_data();
    void identity();
    void identityThatCannotBeRead();
};

void TestURLListProcessing::questions_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("yes");
    QTest::newRow("photo") << u"p.jpg"_s << QStringList{u"valid"_s, u"read"_s, u"image"_s};
    QTest::newRow("folder") << u"d"_s << QStringList{u"valid"_s, u"folder"_s, u"read"_s};
    QTest::newRow("link to a folder") << u"ld"_s << QStringList{u"valid"_s, u"folder"_s, u"read"_s};
    QTest::newRow("link to a photo")
        << u"lp.jpg"_s << QStringList{u"valid"_s, u"read"_s, u"image"_s};
    QTest::newRow("dangling link") << u"gone.jpg"_s << QStringList{u"valid"_s, u"image"_s};
    QTest::newRow("folder called like a photo")
        << u"d.jpg"_s << QStringList{u"valid"_s, u"folder"_s, u"read"_s};
    QTest::newRow("missing") << u"x.jpg"_s << QStringList{};
}

void TestURLListProcessing::questions()
{
    QFETCH(QString, name);
    TemporaryTree tree;
    tree.file(u"p.jpg"_s);
    tree.folder(u"d"_s);
    tree.folder(u"d.jpg"_s);
    tree.link(u"d"_s, u"ld"_s);
    tree.link(u"p.jpg"_s, u"lp.jpg"_s);
    tree.link(u"nowhere"_s, u"gone.jpg"_s);
    const TFileURL url = urlOf(tree, name);
    QStringList yes;
    if (URLisValidFile(url))
        yes.append(u"valid"_s);
    if (URLisFolder(url))
        yes.append(u"folder"_s);
    if (URLcanBeRead(url))
        yes.append(u"read"_s);
    if (fileConformsTo(url, TypeIdentifiers::kImage))
        yes.append(u"image"_s);
    QTEST(yes, "yes");
    QCOMPARE(URLcanBeWritten(url), URLcanBeRead(url));
    QCOMPARE(URLcanBeDeleted(url), URLisValidFile(url));
    QVERIFY(!URLisValidFile(TFileURL()) && !URLcanBeRead(TFileURL()));
    QVERIFY(!URLcanBeDeleted(TFileURL::fileURLWithPath(u"/"_s)));
}

void TestURLListProcessing::listingByExtension_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<QStringList>("found");
    const QStringList logs{u"b.renameLog"_s, u"b.renameLog/c.renameLog"_s, u"d/e/f.renameLog"_s,
                           u"z.renameLog"_s};
    QTest::newRow("everything") << u""_s << logs;
    QTest::newRow("below") << u"d"_s << QStringList{u"d/e/f.renameLog"_s};
    QTest::newRow("a file") << u"z.renameLog"_s << QStringList{u"z.renameLog"_s};
    QTest::newRow("a file of another kind") << u"a.txt"_s << QStringList{};
    QTest::newRow("missing") << u"missing.renameLog"_s << QStringList{};
    QTest::newRow("link named") << u"ld"_s << QStringList{u"ld/e/f.renameLog"_s};
}

void TestURLListProcessing::listingByExtension()
{
    QFETCH(QString, start);
    TemporaryTree tree;
    for (const QString &name :
         {u"z.renameLog"_s, u"a.txt"_s, u"d/e/f.renameLog"_s, u"b.renameLog/c.renameLog"_s,
          u".h.renameLog"_s, u".hd/g.renameLog"_s, u"x.RENAMELOG"_s, u"x.app/i.renameLog"_s})
        tree.file(name);
    tree.link(u"d"_s, u"ld"_s); // found inside the folder it is not entered
    TFileURLs found;
    processURLforExtensionstoList(urlOf(tree, start), {u"other"_s, u"renameLog"_s}, found);
    QTEST(names(tree, found), "found");
}

void TestURLListProcessing::filteringByType_data()
{
    QTest::addColumn<QStringList>("dropped");
    QTest::addColumn<QList<QLatin1StringView>>("types");
    QTest::addColumn<bool>("descend");
    QTest::addColumn<QStringList>("found");
    using Types = QList<QLatin1StringView>;
    const Types all{TypeIdentifiers::kItem};
    const Types images{TypeIdentifiers::kImage};
    const QStringList both{u"d"_s, u"p.jpg"_s};
    QTest::newRow("all") << both << all << true
                         << QStringList{u"d"_s,       u"d/l"_s,     u"d/q.png"_s,
                                        u"d/t.txt"_s, u"d/x.app"_s, u"p.jpg"_s};
    QTest::newRow("all, not inside") << both << all << false << both;
    QTest::newRow("images") << both << images << true << QStringList{u"d/q.png"_s, u"p.jpg"_s};
    QTest::newRow("two types") << both
                               << Types{TypeIdentifiers::kFolder, TypeIdentifiers::kApplication}
                               << true << QStringList{u"d"_s, u"d/x.app"_s};
    QTest::newRow("link to a folder")
        << QStringList{u"ld"_s} << all << true << QStringList{u"ld"_s};
    QTest::newRow("missing") << QStringList{u"missing"_s} << all << true << QStringList{};
    QTest::newRow("no types") << both << Types{} << true << QStringList{};
    QTest::newRow("nothing") << QStringList{} << all << true << QStringList{};
}

void TestURLListProcessing::filteringByType()
{
    QFETCH(QStringList, dropped);
    QFETCH(QList<QLatin1StringView>, types);
    QFETCH(bool, descend);
    TemporaryTree tree;
    for (const QString &name :
         {u"p.jpg"_s, u"d/q.png"_s, u"d/t.txt"_s, u"d/.h.png"_s, u"d/x.app/icon.png"_s})
        tree.file(name);
    tree.link(u"d"_s, u"ld"_s);
    tree.link(u"nowhere"_s, u"d/l"_s);
    TFileURLs urls;
    for (const QString &name : dropped)
        urls.append(urlOf(tree, name));
    QTEST(names(tree, processURLsWithFilterTypes(urls, types, descend)), "found");
}

void TestURLListProcessing::removingTypes_data()
{
    QTest::addColumn<QList<QLatin1StringView>>("exceptions");
    QTest::addColumn<QStringList>("left");
    using Types = QList<QLatin1StringView>;
    QTest::newRow("no exceptions") << Types{} << QStringList{u"f"_s, u"missing"_s};
    QTest::newRow("but bundles") << Types{TypeIdentifiers::kBundle}
                                 << QStringList{u"f"_s, u"x.app"_s, u"y.bundle"_s, u"missing"_s};
    QTest::newRow("but applications")
        << Types{TypeIdentifiers::kApplication} << QStringList{u"f"_s, u"x.app"_s, u"missing"_s};
}

void TestURLListProcessing::removingTypes()
{
    QFETCH(QList<QLatin1StringView>, exceptions);
    TemporaryTree tree;
    tree.file(u"f"_s);
    TFileURLs urls{urlOf(tree, u"f"_s)};
    for (const QString &name : {u"d"_s, u"x.app"_s, u"y.bundle"_s})
        urls.append(TFileURL::fileURLWithPath(tree.folder(name)));
    urls.append(urlOf(tree, u"missing"_s));
    const QList<QLatin1StringView> folders{TypeIdentifiers::kFolder, TypeIdentifiers::kBundle};
    QTEST(names(tree, removeURLsOfTypeExceptFor(urls, folders, exceptions)), "left");
}

void TestURLListProcessing::strippingFolders()
{
    TemporaryTree tree;
    tree.file(u"f"_s);
    tree.folder(u"d"_s);
    tree.link(u"d"_s, u"l"_s);
    const TFileURLs urls{urlOf(tree, u"d"_s), urlOf(tree, u"f"_s), urlOf(tree, u"l"_s),
                         urlOf(tree, u"missing"_s)};
    QCOMPARE(names(tree, StripDirectoryURLsFrom(urls)), (QStringList{u"f"_s, u"missing"_s}));
}

void TestURLListProcessing::uniqueNames_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("base");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QString>("unique"); ///< null: none
    QTest::newRow("free") << u""_s << u"z"_s << u"txt"_s << u"z"_s;
    QTest::newRow("two taken") << u""_s << u"a"_s << u"txt"_s << u"a-2"_s;
    QTest::newRow("bare name taken") << u""_s << u"b"_s << u""_s << u"b"_s;
    QTest::newRow("over a link") << u"l"_s << u"a"_s << u"txt"_s << u"a-2"_s;
    QTest::newRow("no folder") << u"b"_s << u"a"_s << u"txt"_s << QString();
    QTest::newRow("missing folder") << u"missing"_s << u"a"_s << u"txt"_s << QString();
    QTest::newRow("no base") << u""_s << QString() << u"txt"_s << QString();
    QTest::newRow("no extension given") << u""_s << u"a"_s << QString() << QString();
}

void TestURLListProcessing::uniqueNames()
{
    QFETCH(QString, folder);
    QFETCH(QString, base);
    QFETCH(QString, extension);
    QFETCH(QString, unique);
    TemporaryTree tree;
    for (const QString &name : {u"a.txt"_s, u"a-1.txt"_s, u"b"_s})
        tree.file(name);
    tree.link(u"."_s, u"l"_s);
    const auto found =
        createUniqueFileNameWithParentAndNameBase(urlOf(tree, folder), base, extension);
    QCOMPARE(found.has_value(), !unique.isNull());
    QCOMPARE(found.value_or(QString()), unique);
}

void TestURLListProcessing::uniqueUrls()
{
    TemporaryTree tree;
    tree.file(u"a.txt"_s);
    const auto url = [&tree](const QString &extension) {
        return createUniqueFileURLWithParentAndNameBase(urlOf(tree), u"a"_s, extension)->path();
    };
    QCOMPARE(url(u"txt"_s), tree.path(u"a-1.txt"_s));
    QCOMPARE(url(u""_s), tree.path(u"a"_s));
    QVERIFY(!createUniqueFileURLWithParentAndNameBase(TFileURL(), u"a"_s, u""_s));
}

void TestURLListProcessing::dataFolder()
{
    TemporaryTree tree;
    const Environment home("HOME", tree.path(u"home"_s).toUtf8());
    {
        const Environment data("XDG_DATA_HOME", tree.path(u"x/data"_s).toUtf8());
        const TFileURL folder = getSandboxedAppSupportFolder(u"Tavrin"_s, u"Logs"_s);
        QCOMPARE(folder.path(), tree.path(u"x/data/Tavrin/Logs"_s));
        struct stat status
        {
        };
        QCOMPARE(lstat(folder.fileSystemPath().constData(), &status), 0);
        QCOMPARE(status.st_mode & 07777U, 0700U);
        QCOMPARE(getSandboxedAppSupportFolder(u"Tavrin"_s, u""_s).path(),
                 tree.path(u"x/data/Tavrin"_s));
    }
    const Environment data("XDG_DATA_HOME", "not/absolute");
    QCOMPARE(getSandboxedAppSupportFolder(u"Tavrin"_s, u"presets"_s).path(),
             tree.path(u"home/.local/share/Tavrin/presets"_s));
    QVERIFY(tree.exists(u"home/.local/share/Tavrin/presets"_s));
}

void TestURLListProcessing::dataFolderThatCannotBeMade()
{
    TemporaryTree tree;
    tree.file(u"data/Tavrin"_s); // a file stands where the folder is to be
    const Environment data("XDG_DATA_HOME", tree.path(u"data"_s).toUtf8());
    QVERIFY(!getSandboxedAppSupportFolder(u"Tavrin"_s, u""_s).isValid());
    QVERIFY(!getSandboxedAppSupportFolder(u"Tavrin"_s, u"Logs"_s).isValid());
}

void TestURLListProcessing::factsOfAnItem()
{
    TemporaryTree tree;
    const TFileURL file = TFileURL::fileURLWithPath(tree.file(u"a"_s, "123"));
    tree.link(u"a"_s, u"l"_s);
    const timespec times[2] = {{1000, 0}, {2000, 0}};
    QCOMPARE(utimensat(AT_FDCWD, file.fileSystemPath().constData(), times, 0), 0);
    QCOMPARE(getFileSize(file), 3);
    QCOMPARE(getFileSize(urlOf(tree, u"l"_s)), 1);
    QCOMPARE(getFileModificationDate(file), TDate::fromSeconds(2000));
    QVERIFY(getFileCreationDate(file).isSet());
    QVERIFY(!getFileCreationDate(urlOf(tree, u"missing"_s)).isSet());
    QCOMPARE(getFileSize(urlOf(tree, u"missing"_s)), 0);
}

void TestURLListProcessing::identity_data()
{
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("other");
    QTest::addColumn<bool>("same");
    QTest::newRow("equal paths") << u"a"_s << u"a"_s << true;
    QTest::newRow("equal paths of nothing") << u"missing"_s << u"missing"_s << true;
    QTest::newRow("different files") << u"a"_s << u"b"_s << false;
    QTest::newRow("link") << u"a"_s << u"l"_s << true;
    QTest::newRow("through a linked folder") << u"d/f"_s << u"ld/f"_s << true;
    QTest::newRow("hard link") << u"a"_s << u"twin"_s << true;
    QTest::newRow("two dangling links") << u"gone1"_s << u"gone2"_s << false;
    QTest::newRow("dangling link through another path") << u"d/gone"_s << u"ld/gone"_s << true;
}

void TestURLListProcessing::identity()
{
    QFETCH(QString, one);
    QFETCH(QString, other);
    TemporaryTree tree;
    for (const QString &name : {u"a"_s, u"b"_s, u"d/f"_s})
        tree.file(name);
    tree.hardLink(u"a"_s, u"twin"_s);
    tree.link(u"a"_s, u"l"_s);
    tree.link(u"d"_s, u"ld"_s);
    for (const QString &name : {u"gone1"_s, u"gone2"_s, u"d/gone"_s})
        tree.link(u"nowhere"_s, name);
    QTEST(isSameFileURL(urlOf(tree, one), urlOf(tree, other)), "same");
    QCOMPARE(compareFileURL(urlOf(tree, other), urlOf(tree, one)),
             compareFileURL(urlOf(tree, one), urlOf(tree, other)));
}

void TestURLListProcessing::identityThatCannotBeRead()
{
    TemporaryTree tree;
    tree.file(u"a"_s);
    const TFileURL file = urlOf(tree, u"a"_s);
    const TFileURL missing = urlOf(tree, u"missing"_s);
    QVERIFY_THROWS_EXCEPTION(ResouceUnavailableException, compareFileURL(file, missing));
    QVERIFY_THROWS_EXCEPTION(ResouceUnavailableException, compareFileURL(missing, file));
    const auto message = [](const TFileURL &receiver, const TFileURL &target) {
        try {
            compareFileURL(receiver, target);
        } catch (const std::logic_error &error) {
            return QString::fromUtf8(error.what());
        }
        return QString();
    };
    QCOMPARE(message(TFileURL(), file), u"receiver must be a fileURL"_s);
    QCOMPARE(message(file, TFileURL()), u"target must be a fileURL"_s);
}

QTEST_GUILESS_MAIN(TestURLListProcessing)
#include "tst_urllistprocessing.moc"
