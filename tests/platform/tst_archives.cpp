// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ArchiveSample.h"
#include "support/Table.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <limits>
#include <malloc.h>

namespace {

/// Reads the archive in the file argv[1] by its own understanding of the format, prints the root as
/// JSON, and writes the same archive anew to argv[2].
constexpr char kPython[] = R"(
import base64, json, plistlib, sys
with open(sys.argv[1], 'rb') as f:
    archive = plistlib.load(f)
assert archive['$archiver'] == 'NSKeyedArchiver' and archive['$version'] == 100000
objects = archive['$objects']
assert objects[0] == '$null'
def value(v):
    if isinstance(v, plistlib.UID):
        if v.data == 0:
            return None
        v = objects[v.data]
    if isinstance(v, bytes):
        return base64.b64encode(v).decode()
    if not isinstance(v, dict):
        return v
    table = objects[v['$class'].data]
    name = table['$classname']
    assert table['$classes'][0] == name and table['$classes'][-1] == 'NSObject'
    if name in ('NSArray', 'NSMutableArray'):
        return [value(x) for x in v['NS.objects']]
    if name == 'NSDictionary':
        return {value(k): value(x) for k, x in zip(v['NS.keys'], v['NS.objects'])}
    if name == 'NSURL':
        return (value(v['NS.base']) or '') + value(v['NS.relative'])
    if name == 'NSDate':
        return v['NS.time']
    return {'$class': name} | {k: value(x) for k, x in v.items() if k != '$class'}
print(json.dumps(value(archive['$top']['root'])))
with open(sys.argv[2], 'wb') as f:
    plistlib.dump(archive, f, fmt=plistlib.FMT_BINARY)
)";

/// What another program makes of an archive.
struct SecondOpinion
{
    QJsonArray root;
    QByteArray rewritten;

    explicit SecondOpinion(const QByteArray &archive)
    {
        const QTemporaryDir folder;
        QFile in(folder.filePath(u"in"_s));
        in.open(QIODevice::WriteOnly);
        in.write(archive);
        in.close();
        QFile out(folder.filePath(u"out"_s));
        QProcess python;
        python.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        python.start(u"python3"_s,
                     {u"-c"_s, QString::fromLatin1(kPython), in.fileName(), out.fileName()});
        python.waitForFinished(-1);
        root = QJsonDocument::fromJson(python.readAllStandardOutput()).array();
        out.open(QIODevice::ReadOnly);
        rewritten = out.readAll();
    }
};

ArchiveSample withText(const QString &text)
{
    ArchiveSample sample;
    sample.text = text;
    return sample;
}

ArchiveSample withNumber(qint64 number)
{
    ArchiveSample sample;
    sample.number = number;
    sample.inner = number;
    return sample;
}

ArchiveSample withDate(qint64 nanos)
{
    ArchiveSample sample;
    sample.date = TDate{nanos};
    return sample;
}

ArchiveSample withUrl(const QString &base, const QString &relative)
{
    ArchiveSample sample;
    sample.base = base;
    sample.relative = relative;
    return sample;
}

ArchiveSample withVariant(const QVariant &variant)
{
    ArchiveSample sample;
    sample.variant = variant;
    return sample;
}

} // namespace

Q_DECLARE_METATYPE(ArchiveSample)

class TestArchives : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void comesBack_data()
    {
        const Table<ArchiveSample> row("sample");
        row("nothing set", ArchiveSample());
        row("everything set", ArchiveSample::filled());

        row("empty text", withText(u""_s));
        row("letters", withText(u"Plain ASCII"_s));
        row("NUL", withText(QString(u"a\0b"_s)));
        row("NUL beyond ASCII", withText(QString(u"ä\0b"_s)));
        row("above 127", withText(u"\u007F\u0080"_s));
        row("astral", withText(u"a😀b"_s));
        row("raw byte", withText(QString(QChar(0xDC80)) + u"x"_s + QChar(0xDCFF)));
        row("half a pair", withText(QString(QChar(0xD83D))));
        row("14 units", withText(QString(14, u'x')));
        row("15 units", withText(QString(15, u'x')));
        row("longer than a buffer", withText(QString(70'000, u'y') + u'é'));
        row("$null", withText(u"$null"_s));

        for (const qint64 number :
             {qint64{1}, qint64{-1}, qint64{127}, qint64{128}, qint64{255}, qint64{256},
              qint64{65535}, qint64{65536}, qint64{-65536}, qint64{2'147'483'647},
              qint64{2'147'483'648}, qint64{-2'147'483'649}, qint64{4'294'967'295},
              qint64{4'294'967'296}, std::numeric_limits<qint64>::max(),
              std::numeric_limits<qint64>::min()})
            row(QByteArray::number(number).constData(), withNumber(number));

        row("1970", withDate(0));
        row("before 1970, to the nanosecond", withDate(-1));
        row("before 2001", withDate(978'307'199'999'999'999));
        row("last", withDate(std::numeric_limits<qint64>::max() - 1'000'000'000'000'000));
        row("first", withDate(std::numeric_limits<qint64>::min() + 1'000'000'000'000'000));

        row("URL without base", withUrl({}, u"file:///a/b"_s));
        row("URL of a folder", withUrl(u"file:///a/"_s, {}));
        row("URL with a colon", withUrl(u"file:///a/"_s, u"12:30.txt"_s));

        row("variant: text", withVariant(u""_s));
        row("variant: boolean", withVariant(false));
        row("variant: large unsigned", withVariant(std::numeric_limits<quint64>::max()));
        row("variant: real", withVariant(1.0 / 3));
        row("variant: float", withVariant(0.5F));
        row("variant: data", withVariant(QByteArray("\0x", 2)));
        row("variant: date", withVariant(QVariant::fromValue(TDate{1})));
        row("variant: empty list", withVariant(QVariantList()));
        row("variant: empty map", withVariant(QVariantMap()));
        row("variant: gap in a list", withVariant(QVariantList{QVariant(), 1}));
        row("variant: nested",
            withVariant(QVariantList{QVariantList{QVariantMap{{u""_s, -5}}, u"ß"_s}}));
    }

    void comesBack()
    {
        QFETCH(ArchiveSample, sample);
        // Twice, so that what the second shares with the first comes back too.
        const std::vector<ArchiveSample> samples{sample, sample};
        for (const auto &copies : {ArchiveSample::fromFile(ArchiveSample::fileOf(samples)),
                                   ArchiveSample::throughTree(samples)}) {
            QCOMPARE(copies.size(), samples.size());
            QVERIFY(sample.comesBackAs(copies[0]));
            QVERIFY(sample.comesBackAs(copies[1]));
        }
    }

    void otherProgramsReadIt()
    {
        ArchiveSample sample = ArchiveSample::filled();
        sample.date = TDate::fromSeconds(978'307'200 + 86400);
        const SecondOpinion opinion(ArchiveSample::fileOf({sample, withNumber(1LL << 40)}));
        QCOMPARE(opinion.root.size(), 2);
        const QJsonObject expected{
            {u"$class"_s, u"TSample"_s},
            {u"flag"_s, true},
            {u"number"_s, -7},
            {u"text"_s, u"Größe"_s},
            {u"data"_s, u"AP8K"_s},
            {u"date"_s, 86400.0},
            {u"url"_s, u"file:///tmp/a%20b/c%25.txt"_s},
            {u"table"_s, QJsonArray{QJsonArray{u"a"_s, u"b"_s}, QJsonArray{},
                                    QJsonArray{u"a"_s, u""_s, u"ü"_s}}},
            {u"variant"_s, QJsonObject{{u"list"_s, QJsonArray{1, 2.5, u"x"_s, true}},
                                       {u"map"_s, QJsonObject{{u"é"_s, 5}}}}},
            {u"color"_s,
             QJsonObject{
                 {u"$class"_s, u"NSColor"_s},
                 {u"NSColorSpace"_s, 1},
                 {u"NSRGB"_s, QString::fromLatin1(
                                  QByteArray("0.611764706 0.596078431 0.541176471").toBase64())}}},
            {u"dictionary"_s, QJsonObject{{u"inner"_s, qint64{5'000'000'000}}}},
            {u"parts"_s, QJsonArray{QJsonObject{{u"$class"_s, u"TPart"_s}, {u"part"_s, u"one"_s}},
                                    QJsonObject{{u"$class"_s, u"TPart"_s}, {u"part"_s, u"two"_s}}}},
        };
        QCOMPARE(opinion.root[0].toObject(), expected);
        QCOMPARE(opinion.root[1].toObject()[u"number"_s].toInteger(), 1LL << 40);
    }

    void otherProgramsWriteIt()
    {
        std::vector<ArchiveSample> samples{ArchiveSample::filled(), withNumber(-(1LL << 40))};
        for (int i = 0; i < 300; ++i)
            samples.push_back(withText(u"text %1"_s.arg(i)));
        const SecondOpinion opinion(ArchiveSample::fileOf(samples));
        const std::vector<ArchiveSample> copies = ArchiveSample::fromFile(opinion.rewritten);
        QCOMPARE(copies.size(), samples.size());
        for (size_t i = 0; i < samples.size(); ++i)
            QVERIFY(samples[i].comesBackAs(copies[i]));
    }

    void jsonShowsEverything()
    {
        const QByteArray file = ArchiveSample::fileOf({ArchiveSample::filled(), ArchiveSample()});
        const QJsonArray json = KeyedUnarchiver::fromData(file).value().toJson().toArray();
        QJsonArray expected = SecondOpinion(file).root;
        QJsonObject first = expected[0].toObject();
        first[u"date"_s] = u"2023-11-14T22:13:20.123Z"_s;
        expected[0] = first;
        QCOMPARE(json, expected);
    }

    void jsonStopsAtTheLimit()
    {
        const QByteArray file = ArchiveSample::fileOf(std::vector<ArchiveSample>(100));
        const auto archive = KeyedUnarchiver::fromData(file);
        const QJsonArray json = archive.value().toJson(30).toArray();
        QVERIFY(json.size() < 20);
        QCOMPARE(json.last().toString(), u"..."_s);
    }

    void valuesOfOtherTypesReadAsUnset()
    {
        const std::array<const char *, 9> kKeys{"flag", "number",  "text",  "data", "date",
                                                "url",  "variant", "color", "parts"};
        const ArchiveSample sample = ArchiveSample::filled();
        int objects = 0;
        const auto check = [&](const TDecoder &coder) {
            ++objects;
            for (const char *name : kKeys) {
                const QLatin1StringView key(name);
                QCOMPARE(coder.decodeInteger(key) != 0, key == "number"_L1 || key == "flag"_L1);
                QCOMPARE(!coder.decodeString(key).isNull(), key == "text"_L1);
                QCOMPARE(!coder.decodeData(key).isNull(), key == "data"_L1);
                QCOMPARE(coder.decodeDate(key).isSet(), key == "date"_L1);
                QCOMPARE(!coder.decodeUrl(key).isNull(), key == "url"_L1);
                QCOMPARE(coder.decodeTable(key) != nullptr, key == "parts"_L1);
                QCOMPARE(coder.decodeObject(key, [](const TDecoder &) {}), key == "color"_L1);
                QCOMPARE(coder.decodeDictionary(key, [](const TDecoder &) {}), key == "variant"_L1);
                QCOMPARE(coder.decodeArray(key, [](const TDecoder &) {}), key == "parts"_L1);
                QVERIFY(coder.containsValueForKey(key));
            }
            QVERIFY(!coder.containsValueForKey("none"_L1));
            QVERIFY(!coder.decodeVariant("none"_L1).isValid());
            QCOMPARE(coder.className(), u"TSample"_s);
        };
        KeyedUnarchiver::fromData(ArchiveSample::fileOf({sample})).value().forEachObject(check);
        TreeArchive tree;
        tree.appendObject(ArchiveSample::kClass, [&](TEncoder &coder) { sample.encode(coder); });
        tree.forEachObject(check);
        QCOMPARE(objects, 2);
    }

    void repeatedTextsAndBasesAreStoredOnce()
    {
        constexpr int kCount = 200;
        // Longer than the texts that are shared for being short.
        const QString bases[] = {u"file:///%1/one/"_s.arg(QString(100, u'x')),
                                 u"file:///%1/two/"_s.arg(QString(100, u'x'))};
        std::vector<ArchiveSample> samples;
        for (int i = 0; i < kCount; ++i) {
            ArchiveSample sample = withUrl(bases[i % 2], u"file%1"_s.arg(i));
            sample.text = u"The same words in every object"_s;
            samples.push_back(sample);
        }
        const QByteArray file = ArchiveSample::fileOf(samples);
        for (const QString &base : bases)
            QCOMPARE(file.count(base.toLatin1()), 1);
        QCOMPARE(file.count("The same words"), 1);
        QCOMPARE(file.count("TSample"), 1);
        QCOMPARE(file.count("NS.relative"), 1);
    }

    void deepObjectsEnd()
    {
        const TEncoder::Encode encode = [&encode](TEncoder &coder) {
            static int depth = 0;
            coder.encodeInteger("depth"_L1, ++depth);
            if (depth < 100)
                coder.encodeObject("child"_L1, ArchiveSample::kClass, encode);
        };
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        KeyedArchiver archiver(buffer);
        archiver.appendObject(ArchiveSample::kClass, encode);
        QVERIFY(archiver.finish());
        qint64 deepest = 0;
        const TDecoder::Decode decode = [&](const TDecoder &coder) {
            deepest = coder.decodeInteger("depth"_L1);
            coder.decodeObject("child"_L1, decode);
        };
        const auto archive = KeyedUnarchiver::fromData(buffer.data());
        archive.value().forEachObject(decode);
        // The root array is the first of 32 levels.
        QCOMPARE(deepest, 31);
        QVERIFY(!archive.value().toJson().isNull());
    }

    void sharedObjectsOfOthersAreRead()
    {
        // Other writers store an object once that stands in two places.
        const QTemporaryDir folder;
        QProcess python;
        python.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        python.start(u"python3"_s, {u"-c"_s, QString::fromLatin1(R"(
import plistlib, sys
U = plistlib.UID
array = {'$classname': 'NSMutableArray', '$classes': ['NSMutableArray', 'NSArray', 'NSObject']}
rule = {'$classname': 'TSample', '$classes': ['TSample', 'NSObject']}
string = {'$classname': 'NSMutableString', '$classes': ['NSMutableString', 'NSString', 'NSObject']}
objects = ['$null', {'$class': U(2), 'NS.objects': [U(3), U(3), U(0), U(5)]}, array,
           {'$class': U(4), 'text': U(5), 'number': 3.0, 'date': U(0)}, rule,
           {'$class': U(6), 'NS.string': 'shared'}, string]
data = plistlib.dumps({'$archiver': 'NSKeyedArchiver', '$version': 100000, '$top': {'root': U(1)},
               '$objects': objects}, fmt=plistlib.FMT_BINARY)
sys.stdout.buffer.write(data)
)")});
        QVERIFY(python.waitForFinished(-1));
        const std::vector<ArchiveSample> samples =
            ArchiveSample::fromFile(python.readAllStandardOutput());
        QCOMPARE(samples.size(), 2U);
        QCOMPARE(samples[1].text, u"shared"_s);
        QCOMPARE(samples[1].number, 3);
    }

    void failedWritesAreReported()
    {
        QFile full(u"/dev/full"_s);
        QVERIFY(full.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        KeyedArchiver archiver(full);
        archiver.appendObject(ArchiveSample::kClass, [](TEncoder &) {});
        QVERIFY(!archiver.finish());
    }

    void manyObjectsNeedLittleMemory()
    {
        // A device that keeps nothing, so that whatever grows is the archiver's.
        QFile null(u"/dev/null"_s);
        QVERIFY(null.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        constexpr qsizetype kCount = 50'000;
        const auto inUse = [] { return static_cast<qsizetype>(mallinfo2().uordblks); };
        KeyedArchiver archiver(null);
        const qsizetype before = inUse();
        ArchiveSample sample = withUrl(u"file:///base/"_s, {});
        for (qsizetype i = 0; i < kCount; ++i) {
            sample.text =
                u"/base/file number %1 with a long name, longer than any shared text"_s.arg(i);
            sample.relative = QString::number(i);
            archiver.appendObject(ArchiveSample::kClass,
                                  [&](TEncoder &coder) { sample.encode(coder); });
        }
        const qsizetype each = (inUse() - before) / kCount;
        QVERIFY2(each <= 130, QByteArray::number(each).constData());
        QVERIFY(archiver.finish());
    }
};

QTEST_GUILESS_MAIN(TestArchives)
#include "tst_archives.moc"
