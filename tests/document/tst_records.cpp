// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TColorPalette.h"
#include "document/TFileObject.h"
#include "platform/KeyedArchiver.h"
#include "platform/KeyedUnarchiver.h"
#include "support/Table.h"
#include "support/TemporaryTree.h"

#include <QBuffer>

#include <array>

using namespace Qt::StringLiterals;

namespace {

void archiveAndRead(const TFileObject &entry, TFileObject &read)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    KeyedArchiver archiver(buffer);
    archiver.appendObject(TFileObject::archiveClass(),
                          [&](TEncoder &coder) { entry.encodeWithCoder(coder); });
    QVERIFY(archiver.finish());
    auto archive = KeyedUnarchiver::fromData(buffer.data());
    QVERIFY2(archive, qPrintable(archive.message()));
    archive.value().forEachObject([&](const TDecoder &coder) { read.initWithCoder(coder); });
}

} // namespace

class TestRecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void logStatus_data()
    {
        const Table<QList<int>, int, QString> row("levels", "status", "image");
        row("empty", QList<int>{}, 0, u"tick");
        row("level 0 only", QList<int>{0}, 0, u"tick");
        row("warnings", QList<int>{1, 1}, 1, u"achtung");
        row("critical first", QList<int>{2, 1}, 2, u"stop");
        row("critical last", QList<int>{1, 2}, 2, u"stop");
    }

    void logStatus()
    {
        QFETCH(QList<int>, levels);
        TErrorLog log;
        for (const int level : levels)
            log.addErrorOfType(level, u"x"_s);
        QTEST(log.currentStatus(), "status");
        QTEST(log.currentStatusImage().name(), "image");
        QCOMPARE(log.numberOfErrorsWithType(1), levels.count(1));
    }

    void formats()
    {
        QCOMPARE(formatted(u"%@: %ld%", {u"%@"_s, u"2"_s}), u"%@: 2%"_s);
        QCOMPARE(formatted("5% of %%@, %@"_L1, {u"a"_s}), u"5% of %a, %@"_s);
        QCOMPARE(formatted(u"none", {u"a"_s}), u"none"_s);
    }

    void problemsShareTheirTexts()
    {
        TErrorLog batch;
        std::array<TFileObject, 2> files;
        for (std::size_t i = 0; i < files.size(); ++i) {
            const QString path = u"/f/%1.txt"_s.arg(i);
            files[i].assign({TFileURL::fileURLWithPath(path), {}});
            for (const auto &text : {QString(9, u'x'), QString(9, u'y')})
                files[i].logErrorType(1, text, &batch);
            files[i].logErrorType(2, files[i].withPath(u"no "_s), &batch);
            QCOMPARE(files[i].errLog().entries()[2].errDesc.toString(), u"no "_s + path);
        }
        for (const std::size_t i : {0U, 1U, 2U}) {
            const QString first = batch.entries()[i].errDesc.toString();
            const QString second = batch.entries()[i + 3].errDesc.toString();
            QCOMPARE(first.constData() == second.constData(), i < 2);
            QCOMPARE(second, files[1].errLog().entries()[i].errDesc.toString());
        }
    }

    void entryOfARealFile_data()
    {
        const Table<QString, QString, QString> row("name", "fileName", "extension");
        row("plain", u"a.txt", u"a", u"txt");
        row("leading dot", u".bashrc", u".bashrc", u"");
    }

    void entryOfARealFile()
    {
        QFETCH(QString, name);
        const TemporaryTree tree;
        const QString path = tree.file(u"Folder/"_s + name, "12345");
        const auto entry = TFileObject::newFileObjectWithURL(TFileURL::fileURLWithPath(path));
        QCOMPARE(entry->thePath(), path);
        QTEST(entry->fileName(), "fileName");
        QTEST(entry->extension(), "extension");
        QCOMPARE(entry->parent(), u"Folder"_s);
        QCOMPARE(entry->targetName(), u"target-"_s + entry->fileName());
        QCOMPARE(entry->size(), 5);
        QCOMPARE(entry->errLevel(), 0);
    }

    void entryKnowsItsFacts()
    {
        QVERIFY(!TFileObject::newFileObjectWithURL(TFileURL()));
        const TemporaryTree tree;
        const QString path = tree.file(u"a.txt"_s);
        const auto entry = TFileObject::newFileObjectWithURL(TFileURL::fileURLWithPath(path));
        QVERIFY(entry->modificationDate().isSet());
        QVERIFY(entry->creationDate().isSet());
        QVERIFY(entry->item().facts.inode != 0);
        const auto root = TFileObject::newFileObjectWithURL(TFileURL::fileURLWithPath(u"/"_s));
        QCOMPARE(root->parent(), u""_s);
    }

    void placeholderNames()
    {
        const auto dummy = TFileObject::dummyObjectWithName(u"a"_s);
        QCOMPARE(dummy->fileName(), u"a"_s);
        QCOMPARE(dummy->targetName(), u"target a"_s);
    }

    void propertiesHoldWhatIsSet()
    {
        const TFileObject empty;
        const QStringList always{u"hasBeenProcessed"_s, u"size"_s};
        QCOMPARE(empty.properties().keys(), always);
    }

    /// Much of an entry is derived from its location and its name, until one of them is set.
    void setPropertiesLeavesTheRest_data()
    {
        const Table<QString, QVariant> row("key", "value");
        row("name", u"fileName", u"other"_s);
        row("extension", u"extension", u"png"_s);
        row("parent", u"parent", u"p"_s);
        row("path", u"thePath", u"/q"_s);
        row("place", u"sourceURL", QVariant::fromValue(TFileURL::fileURLWithPath(u"/q/z/b.png"_s)));
        row("size", u"size", qint64{7});
        row("target", u"targetName", u"new"_s);
    }

    void setPropertiesLeavesTheRest()
    {
        QFETCH(const QString, key);
        QFETCH(const QVariant, value);
        const TemporaryTree tree;
        const auto entry =
            TFileObject::newFileObjectWithURL(TFileURL::fileURLWithPath(tree.file(u"d/a.txt"_s)));
        QVariantMap expected = entry->properties();
        expected[key] = value;
        entry->setProperties({{key, value}});
        const QVariantMap properties = entry->properties();
        QCOMPARE(properties.keys(), expected.keys());
        for (const QString &each : expected.keys())
            QVERIFY2(properties[each] == expected[each], qPrintable(each));
    }

    void archivesHoldWhatIsSet()
    {
        const auto dummy = TFileObject::dummyObjectWithName(u"a"_s);
        TFileObject read;
        archiveAndRead(*dummy, read);
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(read.properties(), dummy->properties());
    }

    void targetAndShownNameCanDiffer()
    {
        TFileObject entry;
        entry.setTarget(TAttributedString(u"a"_s));
        QCOMPARE(entry.targetName(), u"a"_s);
        entry.setAttributedTargetName(TAttributedString(u"b"_s));
        QCOMPARE(entry.targetName(), u"a"_s);
        entry.setTargetName(u"c"_s);
        QCOMPARE(entry.attributedTargetName().string(), u"b"_s);
        entry.setTarget(TAttributedString(u"d"_s));
        QCOMPARE(entry.targetName(), u"d"_s);
    }

    void copySharesFieldsButNotProblems()
    {
        const TemporaryTree tree;
        const auto entry =
            TFileObject::newFileObjectWithURL(TFileURL::fileURLWithPath(tree.file(u"a.txt"_s)));
        entry->setImageProperties(TMetadata::fromVariantMap({{u"PixelWidth"_s, 4032}}));
        entry->setTargetName(u"new"_s);
        entry->logErrorType(1, u"w"_s, nullptr);
        const auto copy = entry->copy();
        copy->logErrorType(2, u"c"_s, nullptr);
        QCOMPARE(copy->imageProperties(), entry->imageProperties());
        QCOMPARE(copy->targetName(), u"new"_s);
        QCOMPARE(copy->thePath(), entry->thePath());
        QCOMPARE(entry->errLevel(), 1);
        QCOMPARE(copy->errLevel(), 2);
    }

    void archiveRoundTrip()
    {
        const TemporaryTree tree;
        const auto entry = TFileObject::newFileObjectWithURL(
            TFileURL::fileURLWithPath(tree.file(u"d/ä b.txt"_s, "1")));
        TAttributedString shown(u"New"_s, TColor(1, 2, 3), {});
        shown.append(u"Name", TColor(4, 5, 6));
        entry->setTargetName(shown.string());
        entry->setAttributedTargetName(shown);
        entry->setAttributedTargetExtension(TAttributedString(u".TXT"_s));
        entry->setImageProperties(
            TMetadata::fromVariantMap({{u"{Exif}"_s, QVariantMap{{u"FNumber"_s, 2.8}}}}));
        entry->setHasBeenProcessed(true);
        entry->setTargetURL(TFileURL::fileURLWithPath(u"/x/NewName.TXT"_s));
        TErrorLog batch;
        entry->logErrorType(1, u"careful"_s, &batch);
        QCOMPARE(batch, entry->errLog());
        QCOMPARE(entry->properties().keys().join(u' '),
                 u"attributedTargetExtension attributedTargetName creationDate errLog extension "
                 "fileName hasBeenProcessed icon imageProperties modificationDate parent size "
                 "sourceURL targetName targetURL thePath"_s);

        TFileObject read;
        archiveAndRead(*entry, read);
        if (QTest::currentTestFailed())
            return;

        QCOMPARE(read.thePath(), entry->thePath());
        QVERIFY(read.sourceURL() == entry->sourceURL());
        QVERIFY(read.targetURL() == entry->targetURL());
        QCOMPARE(read.fileName(), u"ä b"_s);
        QCOMPARE(read.extension(), u"txt"_s);
        QCOMPARE(read.parent(), u"d"_s);
        QVERIFY(read.attributedTargetName() == shown);
        QVERIFY(read.attributedTargetExtension() == entry->attributedTargetExtension());
        QCOMPARE(read.size(), 1);
        QCOMPARE(read.errLog(), entry->errLog());
        QVERIFY(read.hasBeenProcessed());
        QCOMPARE(read.imageProperties()->value(u"{Exif}"_s, u"FNumber"_s).toDouble(), 2.8);
        QVERIFY(!read.ID3());
        // Archived dates are in seconds as a double, so microseconds are what survives.
        QVERIFY(std::abs(read.modificationDate().nanos - entry->modificationDate().nanos) < 1000);
    }
};

QTEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"
