// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/Sandboxing.h"
#include "commonprocs/TFolderAccess.h"
#include "platform/TreeCoder.h"
#include "settings/logging.h"
#include "support/TemporaryTree.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestFolderAccess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_log.clear();
        setLogSink([this](const QString &line) { m_log += line; });
        m_tree.folder(u"a"_s);
        m_tree.folder(u"b"_s);
    }

    void cleanup()
    {
        setSandbox(false);
        setLogSink({});
    }

    void outsideASandboxEverythingIsGranted()
    {
        TFolderAccessList list;
        list.addFolder(TFileURL::fileURLWithPath(m_tree.path(u"a"_s)), false);
        list.addParentFolderIfNeededForURL(TFileURL::fileURLWithPath(m_tree.path(u"b/file"_s)));
        list.addParentFolderIfNeededForURL(TFileURL::fileURLWithPath(m_tree.path(u"b/other"_s)));
        QCOMPARE(list.folders().size(), 2U);
        QCOMPARE(list.numberOfNonAccess(), 0);
        QVERIFY(!list.firstInaccessible());
        QVERIFY(list.folders().front().theBookmark().isEmpty());
        m_tree.link(u"a"_s, u"chosen"_s);
        const TFileURL chosen = TFileURL::fileURLWithPath(m_tree.path(u"chosen"_s));
        list.recordFor(list.folders().front().theURL())->gotAuthorized(chosen);
        QCOMPARE(list.folders().front().theURL(), chosen);
    }

    void insideASandboxFoldersAreAskedFor()
    {
        setSandbox(true);
        const TFileURL a = TFileURL::fileURLWithPath(m_tree.path(u"a"_s));
        const TFileURL b = TFileURL::fileURLWithPath(m_tree.path(u"b"_s));
        TFolderAccessList list;
        list.addFolder(a, true);
        list.addFolder(b, false);
        QCOMPARE(list.numberOfNonAccess(), 1);
        QVERIFY(list.inaccessibleFolders().front() == b);
        QVERIFY(!list.folders().front().theBookmark().isEmpty());
        // A wrongly chosen folder changes nothing, so that the right one is asked for again.
        list.firstInaccessible()->gotAuthorized(a);
        QCOMPARE(list.numberOfNonAccess(), 1);
        QVERIFY2(m_log.join(u'\n').contains(u"FolderAccess Manager: authorized "_s + a.path() +
                                            u" is not same as requestes "_s + b.path() + u'.'),
                 qPrintable(m_log.join(u'\n')));
        list.firstInaccessible()->gotAuthorized(b);
        QVERIFY(!list.firstInaccessible());
    }

    void oneRecordForTwoPaths()
    {
        m_tree.link(m_tree.path(u"a"_s), u"link"_s);
        TFolderAccessList list;
        list.addFolder(TFileURL::fileURLWithPath(m_tree.path(u"a"_s)), false);
        list.addFolder(TFileURL::fileURLWithPath(m_tree.path(u"link"_s)), true);
        list.addFolder(TFileURL::fileURLWithPath(m_tree.path(u"missing"_s)), false);
        list.addFolder(TFileURL::fileURLWithPath(m_tree.path(u"missing"_s)), false);
        QCOMPARE(list.folders().size(), 2U);
    }

    void bookmarksFindTheFolderAgain()
    {
        setSandbox(true);
        const auto roundTrip = [](const TFolderAccess &folder) {
            TreeArchive archive;
            archive.appendObject(TFolderAccess::archiveClass(),
                                 [&](TEncoder &coder) { folder.encodeWithCoder(coder); });
            TFolderAccess read;
            archive.forEachObject([&](const TDecoder &coder) {
                QCOMPARE(coder.decodeData("theBookmark"_L1), folder.theBookmark());
                QCOMPARE(coder.decodeBool("haveAccess"_L1), folder.haveAccess());
                read.initWithCoder(coder);
            });
            return read;
        };
        const TFileURL url = TFileURL::fileURLWithPath(m_tree.folder(u"gone"_s));
        const TFolderAccess folder = TFolderAccess::folderWithURL(url, true);
        QVERIFY(roundTrip(folder).theURL() == url);
        QVERIFY(roundTrip(folder).haveAccess());
        m_tree.remove(u"gone"_s);
        QVERIFY(!roundTrip(folder).theURL().isValid());
        QVERIFY(m_log.join(u'\n').contains(
            u"sandboxing issue: theSecureURL returned nil on bookmark = "_s +
            QString::fromUtf8(folder.theBookmark())));
        QVERIFY(sandBoxURLtoAppScopedBookmark(url).isEmpty());
        QVERIFY(m_log.join(u'\n').contains(u"sandBoxURLtoAppScopedBookmark: "_s));
    }

private:
    static void setSandbox(bool on)
    {
        if (on)
            qputenv("APP_SANDBOX_CONTAINER_ID", "com.zel.tavrin");
        else
            qunsetenv("APP_SANDBOX_CONTAINER_ID");
        initSandbox();
    }

    TemporaryTree m_tree;
    QStringList m_log;
};

QTEST_GUILESS_MAIN(TestFolderAccess)
#include "tst_folderaccess.moc"
