// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/TagDictionary.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(std::vector<MediaItem>)

class TestTagDictionary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void transfersItems_data();
    void transfersItems();
    void tellsTheDuration_data();
    void tellsTheDuration();
    void saysWhatItTransfers();
};

namespace {

constexpr quint32 code(const char (&letters)[5])
{
    quint32 number = 0;
    for (int i = 0; i < 4; ++i)
        number = number << 8 | static_cast<quint8>(letters[i]);
    return number;
}

const QByteArray k3Of12("\0\0\0\3\0\14\0\0", 8);
const QByteArray k300Of301("\0\0\1\54\1\55\0\0", 8);

} // namespace

void TestTagDictionary::transfersItems_data()
{
    QTest::addColumn<std::vector<MediaItem>>("items");
    QTest::addColumn<QVariantMap>("tags");
    using Items = std::vector<MediaItem>;
    QTest::newRow("nothing") << Items() << QVariantMap();
    QTest::newRow("the last of two formats")
        << Items{{u"id3v1"_s, u"title"_s, u"title"_s, u"one"_s},
                 {u"id3v2"_s, code("TIT2"), u"title"_s, u"two"_s}}
        << QVariantMap{{u"title"_s, u"two"_s}};
    QTest::newRow("pictures stay behind, however they are spelled")
        << Items{{u"a"_s, u"k"_s, u"artwork"_s, QByteArray("x")},
                 {u"a"_s, u"k"_s, u"ArtWork"_s, QByteArray("x")}}
        << QVariantMap();
    QTest::newRow("common keys keep their case")
        << Items{{u"a"_s, u"k"_s, u"albumName"_s, 7}} << QVariantMap{{u"albumName"_s, 7}};
    QTest::newRow("no key, no value")
        << Items{{u"a"_s, QVariant(), u"title"_s, u"x"_s}, {u"a"_s, u"k"_s, u"artist"_s, {}}}
        << QVariantMap();
    QTest::newRow("no common key") << Items{{u"a"_s, u"COMM"_s, {}, u"x"_s}} << QVariantMap();
    QTest::newRow("track") << Items{{u"a"_s, code("trkn"), {}, k3Of12}}
                           << QVariantMap{{u"track"_s, u"3"_s}, {u"numberOfTracks"_s, u"12"_s}};
    QTest::newRow("disk by a text")
        << Items{{u"a"_s, u"disk"_s, {}, k3Of12}}
        << QVariantMap{{u"disk"_s, u"3"_s}, {u"numberOfDisks"_s, u"12"_s}};
    QTest::newRow("low bytes only")
        << Items{{u"a"_s, code("trkn"), {}, k300Of301}}
        << QVariantMap{{u"track"_s, u"44"_s}, {u"numberOfTracks"_s, u"45"_s}};
    QTest::newRow("short data") << Items{{u"a"_s, code("trkn"), {}, k3Of12.first(4)}}
                                << QVariantMap{{u"track"_s, u"3"_s}, {u"numberOfTracks"_s, u"0"_s}};
    QTest::newRow("no data") << Items{{u"a"_s, code("trkn"), {}, u"3/12"_s}} << QVariantMap();
    QTest::newRow("other keys") << Items{{u"a"_s, code("trk\0"), {}, k3Of12},
                                         {u"a"_s, 1.5, {}, k3Of12}}
                                << QVariantMap();
}

void TestTagDictionary::transfersItems()
{
    QFETCH(std::vector<MediaItem>, items);
    QVariantMap tags = tagDictionary({items, 0}, {});
    QCOMPARE(tags.take(u"duration"_s), QVariant(u"00.00"_s));
    QCOMPARE(tags.take(u"durationHMS"_s), QVariant(u"00.00.00"_s));
    QTEST(tags, "tags");
}

void TestTagDictionary::tellsTheDuration_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<QString>("duration");
    QTest::addColumn<QString>("durationHMS");
    QTest::newRow("song") << 245.0 << u"04.05"_s << u"00.04.05"_s;
    QTest::newRow("fraction") << 59.99 << u"00.59"_s << u"00.00.59"_s;
    QTest::newRow("film") << 3900.0 << u"05.00"_s << u"01.05.00"_s;
    QTest::newRow("video") << 3723.0 << u"02.03"_s << u"01.02.03"_s;
    QTest::newRow("longer than a day") << 90061.0 << u"01.01"_s << u"01.01.01"_s;
    // Half way between two numbers of single precision.
    QTest::newRow("narrowed") << 16777219.0 << u"20.20"_s << u"04.20.20"_s;
    QTest::newRow("below zero") << -1.0 << u"59.59"_s << u"23.59.59"_s;
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << u"00.00"_s
                               << u"00.00.00"_s;
    QTest::newRow("beyond single precision") << 1e300 << u"00.00"_s << u"00.00.00"_s;
}

void TestTagDictionary::tellsTheDuration()
{
    QFETCH(double, seconds);
    const QVariantMap tags = tagDictionary({{}, seconds}, {});
    QTEST(tags[u"duration"_s].toString(), "duration");
    QTEST(tags[u"durationHMS"_s].toString(), "durationHMS");
}

void TestTagDictionary::saysWhatItTransfers()
{
    QStringList lines;
    tagDictionary({{{u"id3v1"_s, u"title"_s, u"title"_s, u"One"_s},
                    {u"id3v2"_s, code("TIT2"), u"title"_s, u"Two"_s},
                    {u"id3v2"_s, code("\xa9nam"), u"year"_s, 1999},
                    {u"id3v2"_s, code("trkn"), {}, k3Of12}},
                   0},
                  [&lines](const QString &line) { lines.append(line); });
    QCOMPARE(lines, (QStringList{u"reading available av dict: id3v1"_s,
                                 u"   -- transferred common key title : One (from key title)"_s,
                                 u"reading available av dict: id3v2"_s,
                                 u"   -- transferred common key title : Two (from key TIT2)"_s,
                                 u"   -- transferred common key year : 1999 (from key ©nam)"_s}));
}

QTEST_GUILESS_MAIN(TestTagDictionary)
#include "tst_tagdictionary.moc"
