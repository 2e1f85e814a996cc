// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TDate.h"
#include "platform/TMetadata.h"
#include "support/Table.h"

#include <QtTest>

#include <limits>
#include <malloc.h>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kExif{"{Exif}"};

/// About what a camera writes: 60 tags in four dictionaries and on top.
QVariantMap photo(int number)
{
    const QString date = u"2024:07:%1 12:%2:%3"_s.arg(number / 3600 % 28, 2, 10, QChar(u'0'))
                             .arg(number / 60 % 60, 2, 10, QChar(u'0'))
                             .arg(number % 60, 2, 10, QChar(u'0'));
    QVariantMap exif{{u"DateTimeOriginal"_s, date},
                     {u"DateTimeDigitized"_s, date},
                     {u"LensModel"_s, u"EF24-105mm f/4L IS USM mark two"_s},
                     {u"BodySerialNumber"_s, u"0123456789"_s},
                     {u"ExifVersion"_s, QVariantList{2, 3}},
                     {u"ISOSpeedRatings"_s, QVariantList{number % 6400}},
                     {u"LensSpecification"_s, QVariantList{24.0, 105.0, 4.0, 4.0}},
                     {u"ExposureTime"_s, 1.0 / (number % 1000 + 1)}};
    for (int i = 0; i < 22; ++i)
        exif.insert(u"ExifIntegerTag%1"_s.arg(i), number + i);
    QVariantMap tiff{{u"Make"_s, u"Canon"_s},
                     {u"Model"_s, u"Canon EOS 5D Mark III"_s},
                     {u"DateTime"_s, date},
                     {u"Software"_s, u"Firmware Version 1.3.6 of the camera"_s},
                     {u"Artist"_s, u"A Photographer With A Long Name"_s},
                     {u"Copyright"_s, u"Copyright 2024 A Photographer, all rights reserved"_s},
                     {u"XResolution"_s, 300.0},
                     {u"YResolution"_s, 300.0}};
    QVariantMap gps;
    for (int i = 0; i < 12; ++i)
        gps.insert(u"GpsRealTag%1"_s.arg(i), 48.1 + number * 1e-6 * i);
    return {{kExif, exif},
            {u"{TIFF}"_s, tiff},
            {u"{GPS}"_s, gps},
            {u"{PNG}"_s, QVariantMap()},
            {u"PixelWidth"_s, 5760},
            {u"PixelHeight"_s, 3840},
            {u"DPIWidth"_s, 300.0},
            {u"DPIHeight"_s, 300.0},
            {u"Depth"_s, 8},
            {u"Orientation"_s, 1},
            {u"ColorModel"_s, u"RGB"_s},
            {u"ProfileName"_s, u"sRGB IEC61966-2.1"_s}};
}

} // namespace

class TestMetadata : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valuesComeBack_data()
    {
        Table<QVariant, int>("value", "type");
        const auto row = [](const char *name, const QVariant &value, int type) {
            QTest::newRow(name) << value << type;
        };
        row("empty text", u""_s, QMetaType::QString);
        row("short text", u"Canon"_s, QMetaType::QString);
        row("long text", QString(30, u'x'), QMetaType::QString);
        row("very long text", QString(3000, u'ö'), QMetaType::QString);
        row("short text beyond Latin-1", u"写真"_s, QMetaType::QString);
        row("long text beyond Latin-1", QString(100, u'写'), QMetaType::QString);
        row("NUL", QString(u"a\0b"_s), QMetaType::QString);
        row("zero", 0, QMetaType::LongLong);
        row("int", -5, QMetaType::LongLong);
        row("smallest", std::numeric_limits<qint64>::min(), QMetaType::LongLong);
        row("largest", std::numeric_limits<qint64>::max(), QMetaType::LongLong);
        row("unsigned", 7U, QMetaType::LongLong);
        row("largest unsigned", std::numeric_limits<quint64>::max(), QMetaType::ULongLong);
        row("real", 0.004, QMetaType::Double);
        row("float", 0.5F, QMetaType::Double);
        row("false", false, QMetaType::Bool);
        row("true", true, QMetaType::Bool);
        row("data", QByteArray("\0\3\0\x0C\0\0\0\0", 8), QMetaType::QByteArray);
        row("date", QVariant::fromValue(TDate{-1}), qMetaTypeId<TDate>());
        row("list", QVariantList{2, 3, u"x"_s, QVariant()}, QMetaType::QVariantList);
        row("nested map", QVariantList{QVariantMap{{u"ä"_s, 1.5}}}, QMetaType::QVariantList);
    }

    void valuesComeBack()
    {
        QFETCH(QVariant, value);
        QFETCH(int, type);
        const QVariantMap map{{u"before"_s, 1},
                              {u"key"_s, value},
                              {u"zlast"_s, u"z"_s},
                              {kExif, QVariantMap{{u"key"_s, value}}}};
        const TMetadataPtr metadata = TMetadata::fromVariantMap(map);
        QCOMPARE(metadata->value(u"key"_s), value);
        QCOMPARE(metadata->value(u"key"_s).typeId(), type);
        QCOMPARE(metadata->value(kExif, u"key"_s), value);
        QCOMPARE(metadata->value(u"zlast"_s), u"z"_s);
    }

    void dictionariesAreFound()
    {
        const TMetadataPtr metadata = TMetadata::fromVariantMap(photo(1));
        QVERIFY(metadata->hasDictionary(u"{TIFF}"_s));
        QVERIFY(metadata->hasDictionary(u"{PNG}"_s));
        QVERIFY(!metadata->hasDictionary(u"{IPTC}"_s));
        QVERIFY(!metadata->hasDictionary(u"Depth"_s));
        QCOMPARE(metadata->value(u"{TIFF}"_s, u"Make"_s), u"Canon"_s);
        QVERIFY(!metadata->value(u"{TIFF}"_s, u"LensModel"_s).isValid());
        QVERIFY(!metadata->value(u"Make"_s).isValid());
        QVERIFY(!metadata->value(u"{IPTC}"_s, u"Make"_s).isValid());
        QCOMPARE(metadata->value(u"{PNG}"_s), QVariantMap());
        QVERIFY(!metadata->isEmpty());
        QVERIFY(TMetadata::fromVariantMap({})->isEmpty());
    }

    void keysBeyondThePoolComeBack()
    {
        // Files with invented keys must not fill the process; the keys come back all the same.
        QVariantMap map{{QString(500, u'k'), u"long"_s}};
        for (int i = 0; i < 10'000; ++i)
            map.insert(u"invented %1"_s.arg(i), i);
        const TMetadataPtr metadata = TMetadata::fromVariantMap(map);
        QCOMPARE(metadata->toVariantMap(), map);
        for (auto entry = map.cbegin(); entry != map.cend(); ++entry)
            QCOMPARE(metadata->value(entry.key()), entry.value());
    }

    void photoIsSmall()
    {
        constexpr int kPhotos = 2000;
        std::vector<TMetadataPtr> photos;
        photos.reserve(kPhotos);
        TMetadata::fromVariantMap(photo(0)); // the pool and its keys are everybody's
        const size_t before = mallinfo2().uordblks;
        for (int i = 0; i < kPhotos; ++i)
            photos.push_back(TMetadata::fromVariantMap(photo(i)));
        const size_t each = (mallinfo2().uordblks - before) / kPhotos;
        QVERIFY2(each <= 3072, QByteArray::number(static_cast<qulonglong>(each)).constData());
    }

    void threadsShareThePool()
    {
        constexpr int kThreads = 4;
        std::vector<int> right(kThreads);
        std::vector<std::jthread> threads;
        for (size_t thread = 0; thread < kThreads; ++thread) {
            threads.emplace_back([&right, thread] {
                for (int i = 0; i < 200; ++i) {
                    QVariantMap map = photo(i);
                    map.insert(u"key of thread %1, round %2"_s.arg(thread).arg(i), i);
                    const TMetadataPtr metadata = TMetadata::fromVariantMap(map);
                    right[thread] += metadata->toVariantMap() == map ? 1 : 0;
                }
            });
        }
        threads.clear();
        QCOMPARE(right, std::vector<int>(kThreads, 200));
    }
};

QTEST_GUILESS_MAIN(TestMetadata)
#include "tst_metadata.moc"
