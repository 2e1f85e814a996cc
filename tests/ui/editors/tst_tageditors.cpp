// SPDX-License-Identifier: GPL-3.0-or-later
#include "EditorStage.h"
#include "metadata/EXIFSupport.h"

#include <QTreeView>

using namespace Qt::StringLiterals;

class TestTagEditors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tagsShowTheValuesOfTheFile_data()
    {
        Table<QString, QVariantMap, QString, QString, QStringList, QStringList, QString, QString>
            table("kind", "settings", "sample", "typed", "tags", "values", "chosen", "remark");
        const QVariantMap exif{{u"category"_s, u"Exif"_s}, {u"theTag"_s, u"Shadows"_s}};
        const auto &photo = EditorStage::kPhoto;
        const auto &song = EditorStage::kSong;
        const auto ofPhoto = u"Values of IMG_0042.JPG"_s;
        table("image, top level", u"ImageTag", {}, photo, u"pixel",
              {u"PixelWidth"_s, u"PixelHeight"_s}, {u"4032"_s, u""_s}, u"PixelHeight", ofPhoto);
        table("by value", u"ImageTag", exif, photo, u"200", {u"ISOSpeedRatings"_s}, {u"200"_s},
              u"ISOSpeedRatings", ofPhoto);
        table("a tag that is not on offer", u"ImageTag", exif, photo, u"hadow", {u"Shadows"_s},
              {u"1.5"_s}, u"Shadows", ofPhoto);
        table("audio", u"AudioTag", {}, song, u"art", {u"artist"_s}, {u"Bill Evans"_s}, u"artist",
              u"Values of song.mp3");
        table("video rule, audio file", u"VideoTag", {}, song, u"artist", {u"artist"_s}, {u""_s},
              u"artist", u"song.mp3 is not a video file.");
        table("no hit", u"ImageTag", {}, photo, u"nope", {}, {}, u"PixelWidth",
              u"No tag matches \"nope\".");
        table("no file", u"AudioTag", {}, u"none", u"artist", {u"artist"_s}, {u""_s}, u"artist",
              u"With files in the batch, their values are shown here.");
    }
    void tagsShowTheValuesOfTheFile()
    {
        QFETCH(QString, kind);
        QFETCH(QVariantMap, settings);
        QFETCH(QString, typed);
        EditorStage stage;
        QVERIFY(stage.addFiles());
        QFETCH(QString, sample);
        stage.sample = sample;
        const TRulePtr rule = makeRule(kind, settings);
        const QVariantMap before = rule->properties();
        QVERIFY(stage.edit(rule));
        auto *list = stage.control<QTreeView>(u"Tags"_s);
        // The keyboard is in the filter from the start.
        for (const QChar key : typed)
            QTest::keyClick(QApplication::focusWidget(), key.toLatin1());
        QTEST(columnOf(*list->model(), 0), "tags");
        QTEST(columnOf(*list->model(), 1), "values");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
        QTEST(rule->properties().value(u"theTag"_s).toString(), "chosen");
        QCOMPARE(stage.posts, rule->properties() == before ? 0 : 1);
        QFETCH(QString, remark);
        QVERIFY2(stage.labels().contains(remark), qPrintable(stage.labels().join(u'|')));
        const bool isChanged = rule->properties() != before;
        stage.close();
        QCOMPARE(stage.document->undoStack().canUndo(), true); // adding the rule, at least
        if (isChanged)
            stage.document->undoStack().undo();
        QCOMPARE(rule->properties(), before);
    }
    void categoriesOfferTheirTags()
    {
        EditorStage stage;
        QVERIFY(stage.addFiles());
        const TRulePtr rule = makeRule(
            u"ImageTag"_s, {{u"category"_s, u"Odd"_s}, {u"theTag"_s, u"ISOSpeedRatings"_s}});
        QVERIFY(stage.edit(rule));
        const QAbstractItemModel &tags = *stage.control<QTreeView>(u"Tags"_s)->model();
        QCOMPARE(columnOf(tags, 0), QStringList{u"Please Choose a Tag Category"_s});
        QVERIFY(!tags.index(0, 0).flags().testFlag(Qt::ItemIsEnabled));
        QCOMPARE(rule->properties().value(u"category"_s), u"Odd"_s);
        QVERIFY(stage.use(u"Category"_s, u"0"_s)); // General
        QCOMPARE(rule->name(), u"General:ISOSpeedRatings"_s);
        QCOMPARE(columnOf(tags, 0), EXIFSupport::tagsForCategory(u"{General}"_s)
                                        << u"ISOSpeedRatings"_s);
        QVERIFY(stage.use(u"Category"_s, u"1"_s)); // Exif
        QCOMPARE(columnOf(tags, 0), EXIFSupport::tagsForCategory(u"{Exif}"_s));
        QVERIFY(stage.use(u"Only tags this file has"_s));
        QCOMPARE(columnOf(tags, 0), QStringList{u"ISOSpeedRatings"_s});
        QCOMPARE(stage.preview(), u"IMG_0042.JPG \u2192 200"_s);
    }
    void valuesComeWithTheMetadata()
    {
        EditorStage stage;
        stage.metadata.holdBack = true;
        stage.tree.file(EditorStage::kPhoto);
        stage.document->addFiles(stage.urls({EditorStage::kPhoto}), 0);
        QVERIFY(stage.pumpUntil([&] { return !stage.metadata.held.empty(); }));
        const TRulePtr rule = makeRule(u"ImageTag"_s);
        stage.document->addRules({rule}, 0);
        QVERIFY(stage.show(rule));
        QVERIFY(stage.labels().contains(u"The metadata of IMG_0042.JPG is being read."_s));
        stage.metadata.held.front()();
        QVERIFY(stage.settle());
        QVERIFY(stage.labels().contains(u"Values of IMG_0042.JPG"_s));
        QCOMPARE(stage.preview(), u"IMG_0042.JPG \u2192 4032"_s);
    }
};

QTEST_MAIN(TestTagEditors)
#include "tst_tageditors.moc"
