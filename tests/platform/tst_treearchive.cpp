// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ArchiveSample.h"

#include <QtTest>

class TestTreeArchive : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sharesTextsAndTables()
    {
        ArchiveSample sample = ArchiveSample::filled();
        sample.variant = QVariantMap{{u"key"_s, QString(1000, u'x')}};
        const ArchiveSample copy = ArchiveSample::throughTree({sample}).front();
        QCOMPARE(copy.text.constData(), sample.text.constData());
        QCOMPARE(copy.data.constData(), sample.data.constData());
        QCOMPARE(copy.table.get(), sample.table.get());
        const QString inside = sample.variant.toMap().value(u"key"_s).toString();
        QCOMPARE(copy.variant.toMap().value(u"key"_s).toString().constData(), inside.constData());
    }

    void decodesAsOftenAsAsked()
    {
        // Keys and texts are the archive's own: what they were made from may be gone.
        TreeArchive tree;
        {
            QByteArray key("made at run time");
            tree.appendObject(ArchiveSample::kPartClass, [&key](TEncoder &coder) {
                coder.encodeString(QLatin1StringView(key), u"value"_s);
            });
            key.fill('?');
        }
        const TreeArchive moved = std::move(tree);
        for (int i = 0; i < 2; ++i) {
            moved.forEachObject([](const TDecoder &coder) {
                QCOMPARE(coder.decodeString("made at run time"_L1), u"value"_s);
                QCOMPARE(coder.className(), u"TPart"_s);
            });
        }

        QCOMPARE(moved.count(), 1);
    }

    void dictionariesAndVariantsStandForEachOther()
    {
        const auto encode = [](TEncoder &coder) {
            coder.encodeVariant("map"_L1, QVariantMap{{u"n"_s, 3}, {u"t"_s, u"x"_s}});
            coder.encodeDictionary("dictionary"_L1, [](TEncoder &inside) {
                inside.encodeBool("b"_L1, true);
                inside.encodeUrl("u"_L1, u"file:///a/"_s, u"b"_s);
            });
        };
        int objects = 0;
        const auto check = [&objects](const TDecoder &coder) {
            ++objects;
            QVERIFY(coder.decodeDictionary("map"_L1, [](const TDecoder &inside) {
                QCOMPARE(inside.decodeInteger("n"_L1), 3);
                QCOMPARE(inside.decodeString("t"_L1), u"x"_s);
                QCOMPARE(inside.className(), QString());
            }));
            const QVariantMap expected{{u"b"_s, true}, {u"u"_s, u"file:///a/b"_s}};
            QCOMPARE(coder.decodeVariant("dictionary"_L1).toMap(), expected);
        };
        TreeArchive tree;
        tree.appendObject(ArchiveSample::kClass, encode);
        tree.forEachObject(check);
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        KeyedArchiver archiver(buffer);
        archiver.appendObject(ArchiveSample::kClass, encode);
        QVERIFY(archiver.finish());
        KeyedUnarchiver::fromData(buffer.data()).value().forEachObject(check);
        QCOMPARE(objects, 2);
    }
};

QTEST_GUILESS_MAIN(TestTreeArchive)
#include "tst_treearchive.moc"
