// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocumentDrag.h"
#include "metadata/TImageTagRule.h"
#include "support/TemporaryTree.h"
#include "ui/inspector/InspectorDock.h"
#include "ui/inspector/InspectorReader.h"
#include "ui/inspector/TagTree.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QByteArray dataFile(const QString &name)
{
    QFile file(QStringLiteral(TAVRIN_SOURCE_DIR "/tests/data/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::shared_ptr<TFileObject> fileAt(const QString &path)
{
    return TFileObject::newFileObjectWithURL(TFileURL::fileURLWithPath(path));
}

QModelIndex find(const TagTree &tree, const QString &group, const QString &tag)
{
    const QAbstractItemModel &model = *tree.model();
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex parent = model.index(row, 0);
        for (int child = 0; child < model.rowCount(parent); ++child) {
            const QModelIndex index = model.index(child, 0, parent);
            if (parent.data() == group && index.data() == tag)
                return index;
        }
    }
    return {};
}

QString value(const TagTree &tree, const QString &group, const QString &tag)
{
    return find(tree, group, tag).siblingAtColumn(TagModel::ValueColumn).data().toString();
}

} // namespace

/// The dock, with the helper program that reads for it.
class TestInspector : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void readsNothingWhileHidden();
    void showsThePictureOnceForAllPrograms();
    void makesRulesOfTags_data();
    void makesRulesOfTags();
    void keepsTagsThatNoRuleKnows();
    void prefersWhatTheBatchGathered();
    void findsTagsAndKeepsThePlace();
    void answersTheNewestQuestion();
    void tellsWhyThereIsNothing_data();
    void tellsWhyThereIsNothing();

private:
    TagTree &tree() const { return *m_dock->findChild<TagTree *>(); }
    QString put(const QString &name, const QString &as = {}) const
    {
        return m_files->file(as.isEmpty() ? name.section(u'/', -1) : as, dataFile(name));
    }

    std::unique_ptr<TemporaryTree> m_files;
    std::unique_ptr<InspectorDock> m_dock;
};

void TestInspector::initTestCase()
{
    qputenv("TAVRIN_METADATA_HELPER", TAVRIN_METADATA);
}

void TestInspector::init()
{
    m_dock.reset();
    m_files = std::make_unique<TemporaryTree>();
    qputenv("XDG_CACHE_HOME", m_files->path(u"cache"_s).toUtf8());
    m_dock = std::make_unique<InspectorDock>();
}

void TestInspector::readsNothingWhileHidden()
{
    m_dock->setFile(fileAt(put(u"photo.jpg"_s)));
    m_dock->refresh();
    QTest::qWait(50); // time for what must not happen
    QVERIFY(!m_files->exists(u"cache"_s));
    m_dock->show();
    QTRY_COMPARE(value(tree(), u"TIFF"_s, u"Model"_s), u"Test Camera"_s);
    m_dock->setFile(nullptr);
    QCOMPARE(tree().model()->rowCount(), 0);
}

void TestInspector::showsThePictureOnceForAllPrograms()
{
    m_dock->show();
    const QString path = put(u"photo.jpg"_s);
    m_dock->setFile(fileAt(path));
    QTRY_VERIFY(m_files->exists(u"cache/thumbnails/large"_s));
    InspectorReader reader(u"/nowhere"_s, ThumbnailCache::standard());
    QSignalSpy answers(&reader, &InspectorReader::answered);
    const auto picture = [&] {
        reader.ask({fileAt(path)->item(), 256, false});
        return answers.wait() ? answers.last()[0].value<FileReading>().picture.size() : QSize();
    };
    QTRY_COMPARE(picture(), QSize(8, 16)); // upright
}

void TestInspector::makesRulesOfTags_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("tag");
    QTest::addColumn<QString>("rule");
    QTest::addColumn<QString>("result");
    QTest::addRow("category") << u"photo.jpg"_s << u"TIFF"_s << u"Model"_s << u"TIFF:Model"_s
                              << u"Test Camera"_s;
    QTest::addRow("top level") << u"photo.jpg"_s << u"General"_s << u"PixelWidth"_s
                               << u"General:PixelWidth"_s << u"16"_s;
    QTest::addRow("song") << u"song.mp3"_s << u"Tags"_s << u"title"_s << u"(title)"_s
                          << u"Test Song"_s;
    QTest::addRow("film") << u"media/film.mkv"_s << u"Tags"_s << u"artist"_s << u"(artist)"_s
                          << u"Artist"_s;
}

/// Dragged, added by Enter and copied, a tag is the same; evaluated, the rule gives what was shown.
void TestInspector::makesRulesOfTags()
{
    QFETCH(QString, file);
    QFETCH(QString, group);
    QFETCH(QString, tag);
    QFETCH(QString, result);
    m_dock->show();
    const std::shared_ptr<TFileObject> entry = fileAt(put(file));
    m_dock->setFile(entry);
    QTRY_COMPARE(value(tree(), group, tag), result);

    const QModelIndex index = find(tree(), group, tag);
    const std::unique_ptr<QMimeData> data(tree().model()->mimeData({index}));
    QVERIFY(index.flags().testFlag(Qt::ItemIsDragEnabled) && data);
    const TRuleList dragged = TDocumentDrag::rules(*data);
    QCOMPARE(dragged.size(), 1U);
    QTEST(dragged[0]->name(), "rule");

    QSignalSpy added(m_dock.get(), &InspectorDock::addRuleRequested);
    tree().setCurrentIndex(index);
    QTest::keyClick(&tree(), Qt::Key_Return);
    QTest::keySequence(&tree(), QKeySequence::Copy);
    QCOMPARE(added.size(), 1);
    QCOMPARE(QGuiApplication::clipboard()->text(), result);
    const auto rule = added[0][0].value<TRulePtr>();
    QTEST(rule->name(), "rule");

    FileReading reading;
    InspectorReader reader(QStringLiteral(TAVRIN_METADATA), ThumbnailCache("/nowhere"));
    connect(&reader, &InspectorReader::answered, this,
            [&reading](const FileReading &answer) { reading = answer; });
    reader.ask({entry->item(), 256, true});
    QTRY_VERIFY(reading.isWhole);
    TFileObject read(entry->item(), reading.imageProperties, reading.tags);
    TRuleDict dict;
    QCOMPARE(rule->processWithFileObject(read, nullptr, dict), result);
}

void TestInspector::keepsTagsThatNoRuleKnows()
{
    m_dock->show();
    m_dock->setFile(fileAt(put(u"media/song.mp3"_s)));
    QTRY_VERIFY(find(tree(), u"ID3v2"_s, u"TPUB"_s).isValid());
    const QModelIndex index = find(tree(), u"ID3v2"_s, u"TPUB"_s);
    QVERIFY(!index.flags().testFlag(Qt::ItemIsDragEnabled));
    QVERIFY(!index.siblingAtColumn(TagModel::ValueColumn).data().toString().isEmpty());
    const std::unique_ptr<QMimeData> data(tree().model()->mimeData({index}));
    QVERIFY(!data);
}

void TestInspector::prefersWhatTheBatchGathered()
{
    m_dock->show();
    const std::shared_ptr<TFileObject> file = fileAt(put(u"photo.jpg"_s));
    m_dock->setFile(file);
    QTRY_COMPARE(value(tree(), u"TIFF"_s, u"Model"_s), u"Test Camera"_s);
    const QVariantMap tiff{{u"Model"_s, u"Gathered\n<b>Camera"_s}};
    file->setImageProperties(TMetadata::fromVariantMap({{u"{TIFF}"_s, tiff}}));
    m_dock->refresh();
    QCOMPARE(value(tree(), u"TIFF"_s, u"Model"_s), u"Gathered <b>Camera"_s);
    // Nothing that a file says is taken for markup.
    QVERIFY(find(tree(), u"TIFF"_s, u"Model"_s)
                .data(Qt::ToolTipRole)
                .toString()
                .contains("&lt;b&gt;"_L1));
}

void TestInspector::findsTagsAndKeepsThePlace()
{
    m_dock->show();
    m_dock->setFile(fileAt(put(u"photo.jpg"_s)));
    QTRY_VERIFY(find(tree(), u"TIFF"_s, u"Model"_s).isValid());
    tree().setCurrentIndex(find(tree(), u"TIFF"_s, u"Model"_s));
    tree().collapse(find(tree(), u"General"_s, u"PixelWidth"_s).parent());
    m_dock->setFile(fileAt(put(u"photo.jpg"_s, u"second.jpg"_s)));
    QTRY_COMPARE(tree().currentIndex().data(), u"Model"_s);
    QVERIFY(!tree().isExpanded(find(tree(), u"General"_s, u"PixelWidth"_s).parent()));

    m_dock->findChild<QLineEdit *>()->setText(u"test cam"_s);
    QCOMPARE(tree().model()->rowCount(), 1);
    QCOMPARE(tree().model()->rowCount(tree().model()->index(0, 0)), 1);
    m_dock->findChild<QLineEdit *>()->setText(u"general"_s);
    QVERIFY(tree().isExpanded(find(tree(), u"General"_s, u"PixelWidth"_s).parent()));
}

/// As when an arrow key is held: what is passed by is neither read nor answered.
void TestInspector::answersTheNewestQuestion()
{
    constexpr int kFiles = 2000;
    const QByteArray photo = dataFile(u"photo.jpg"_s);
    std::vector<TFileItem> items;
    for (int i = 0; i < kFiles; ++i)
        items.push_back(fileAt(m_files->file(u"%1.jpg"_s.arg(i), photo))->item());
    InspectorReader reader(QStringLiteral(TAVRIN_METADATA), ThumbnailCache::standard());
    int answers = 0;
    FileReading last;
    connect(&reader, &InspectorReader::answered, this, [&](const FileReading &reading) {
        ++answers;
        last = reading;
    });
    for (const TFileItem &item : items)
        reader.ask({item, 256, true});
    QTRY_VERIFY(last.isWhole);
    QVERIFY(!last.picture.isNull() && last.imageProperties);
    QCOMPARE(answers, 2); // what the disk knows, and what the helper found
    reader.ask({items[0], 256, true});
    reader.forget();
    QTest::qWait(50); // time for what must not happen
    QCOMPARE(answers, 2);
    const qsizetype kept = m_files->list(u"cache"_s).filter(u".png"_s).size();
    QVERIFY2(kept < 20, qPrintable(QString::number(kept)));
}

void TestInspector::tellsWhyThereIsNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("helper");
    QTest::addColumn<QString>("problem");
    QTest::addRow("gone") << u"gone.jpg"_s << u""_s << u"The file is not there any more."_s;
    QTest::addRow("no helper") << u"photo.jpg"_s << u"/nowhere"_s << u"no metadata can be read"_s;
    QTest::addRow("a text") << u"text.txt"_s << u"/nowhere"_s << u""_s;
    QTest::addRow("a folder") << u"folder.jpg"_s << u"/nowhere"_s << u""_s;
}

void TestInspector::tellsWhyThereIsNothing()
{
    QFETCH(QString, name);
    QFETCH(QString, helper);
    QFETCH(QString, problem);
    put(u"photo.jpg"_s);
    m_files->file(u"text.txt"_s);
    m_files->folder(u"folder.jpg"_s);
    InspectorReader reader(helper, ThumbnailCache::standard());
    FileReading last;
    connect(&reader, &InspectorReader::answered, this,
            [&](const FileReading &reading) { last = reading; });
    reader.ask({fileAt(m_files->path(name))->item(), 256, true});
    QTRY_VERIFY(last.isWhole);
    QCOMPARE(last.problem.left(problem.size()), problem);
    QCOMPARE(last.problem.isEmpty(), problem.isEmpty());
    QVERIFY(!last.kind.isEmpty() && last.picture.isNull());
}

QTEST_MAIN(TestInspector)
#include "tst_inspector.moc"
