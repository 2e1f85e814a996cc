// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/URLListProcessing.h"
#include "platform/TypeIdentifiers.h"
#include "support/Table.h"
#include "support/TemporaryTree.h"

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
    void questions_data()
    {
        const Table<QString, QStringList> row("name", "yes");
        row("photo", u"p.jpg", {u"valid"_s, u"read"_s, u"image"_s});
        row("folder", u"d", {u"valid"_s, u"folder"_s, u"read"_s});
        row("link to a folder", u"ld", {u"valid"_s, u"folder"_s, u"read"_s});
        row("link to a photo", u"lp.jpg", {u"valid"_s, u"read"_s, u"image"_s});
        row("dangling link", u"gone.jpg", {u"valid"_s, u"image"_s});
        row("folder called like a photo", u"d.jpg", {u"valid"_s, u"folder"_s, u"read"_s});
        row("missing", u"x.jpg", {});
    }

    void questions()
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

    void listingByExtension_data()
    {
        const Table<QString, QStringList> row("start", "found");
        const QStringList logs{u"b.renameLog"_s, u"b.renameLog/c.renameLog"_s, u"d/e/f.renameLog"_s,
                               u"z.renameLog"_s};
        row("everything", u"", logs);
        row("below", u"d", {u"d/e/f.renameLog"_s});
        row("a file", u"z.renameLog", {u"z.renameLog"_s});
        row("a file of another kind", u"a.txt", {});
        row("missing", u"missing.renameLog", {});
        row("link named", u"ld", {u"ld/e/f.renameLog"_s});
    }

    void listingByExtension()
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

    void filteringByType_data()
    {
        const Table<QStringList, QList<QLatin1StringView>, bool, QStringList> row(
            "dropped", "types", "descend", "found");
        using Types = QList<QLatin1StringView>;
        const Types all{TypeIdentifiers::kItem};
        const Types images{TypeIdentifiers::kImage};
        const QStringList both{u"d"_s, u"p.jpg"_s};
        row("all", both, all, true,
            {u"d"_s, u"d/l"_s, u"d/q.png"_s, u"d/t.txt"_s, u"d/x.app"_s, u"p.jpg"_s});
        row("all, not inside", both, all, false, both);
        row("images", both, images, true, {u"d/q.png"_s, u"p.jpg"_s});
        row("two types", both, Types{TypeIdentifiers::kFolder, TypeIdentifiers::kApplication}, true,
            {u"d"_s, u"d/x.app"_s});
        row("link to a folder", {u"ld"_s}, all, true, {u"ld"_s});
        row("missing", {u"missing"_s}, all, true, {});
        row("no types", both, Types{}, true, {});
        row("nothing", {}, all, true, {});
    }

    void filteringByType()
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

    void removingTypes_data()
    {
        const Table<QList<QLatin1StringView>, QStringList> row("exceptions", "left");
        using Types = QList<QLatin1StringView>;
        row("no exceptions", Types{}, {u"f"_s, u"missing"_s});
        row("but bundles", Types{TypeIdentifiers::kBundle},
            {u"f"_s, u"x.app"_s, u"y.bundle"_s, u"missing"_s});
        row("but applications", Types{TypeIdentifiers::kApplication},
            {u"f"_s, u"x.app"_s, u"missing"_s});
    }

    void removingTypes()
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

    void strippingFolders()
    {
        TemporaryTree tree;
        tree.file(u"f"_s);
        tree.folder(u"d"_s);
        tree.link(u"d"_s, u"l"_s);
        const TFileURLs urls{urlOf(tree, u"d"_s), urlOf(tree, u"f"_s), urlOf(tree, u"l"_s),
                             urlOf(tree, u"missing"_s)};
        QCOMPARE(names(tree, StripDirectoryURLsFrom(urls)), (QStringList{u"f"_s, u"missing"_s}));
    }

    void uniqueNames_data()
    {
        // unique: null: none
        const Table<QString, QString, QString, QString> row("folder", "base", "extension",
                                                            "unique");
        row("over a link", u"l", u"a", u"txt", u"a-2");
        row("without extension the dot is tested too", u"", u"b", u"", u"b");
        row("no folder", u"b", u"a", u"txt", QString());
        row("missing folder", u"missing", u"a", u"txt", QString());
        row("no base", u"", QString(), u"txt", QString());
        row("no extension given", u"", u"a", QString(), QString());
    }

    void uniqueNames()
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

    void uniqueUrls()
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

    void dataFolder()
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

    void dataFolderThatCannotBeMade()
    {
        TemporaryTree tree;
        tree.file(u"data/Tavrin"_s); // a file stands where the folder is to be
        const Environment data("XDG_DATA_HOME", tree.path(u"data"_s).toUtf8());
        QVERIFY(!getSandboxedAppSupportFolder(u"Tavrin"_s, u""_s).isValid());
        QVERIFY(!getSandboxedAppSupportFolder(u"Tavrin"_s, u"Logs"_s).isValid());
    }

    void factsOfAnItem()
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

    void identity_data()
    {
        const Table<QString, QString, bool> row("one", "other", "same");
        row("equal paths", u"a", u"a", true);
        row("equal paths of nothing", u"missing", u"missing", true);
        row("different files", u"a", u"b", false);
        row("link", u"a", u"l", true);
        row("through a linked folder", u"d/f", u"ld/f", true);
        row("hard link", u"a", u"twin", true);
        row("two dangling links", u"gone1", u"gone2", false);
        row("dangling link through another path", u"d/gone", u"ld/gone", true);
    }

    void identity()
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

    void identityThatCannotBeRead()
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
};

QTEST_GUILESS_MAIN(TestURLListProcessing)
#include "tst_urllistprocessing.moc"
