// SPDX-License-Identifier: GPL-3.0-or-later
// Time and memory of keyed archives the size of a big run's rollback log, and of a rule list's
// copy.
#include "platform/KeyedArchiver.h"
#include "platform/KeyedUnarchiver.h"
#include "platform/TreeCoder.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <malloc.h>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kRecordClass{"TRenameTRX", "NSObject"};
constexpr std::array kRuleClass{"TTextRule", "TRuleModel", "NSObject"};
constexpr int kRules = 10;
constexpr int kCopies = 1000;

qsizetype heapInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<qsizetype>(info.uordblks + info.hblkhd);
}

void report(const char *what, qint64 milliseconds, qsizetype count, qsizetype bytes)
{
    std::printf("%-24s %8lld ms  %6.0f bytes of memory each\n", what,
                static_cast<long long>(milliseconds),
                static_cast<double>(bytes) / static_cast<double>(count));
}

void encodeRecord(TEncoder &coder, qsizetype index)
{
    const QString base = u"file:///home/user/Pictures/Holiday%202024/Album%20"_s +
                         QString::number(index / 1000) + u'/';
    const QString name = u"IMG_"_s + QString::number(index) + u".JPG"_s;
    coder.encodeString("originalPath"_L1, u"/home/user/Pictures/Holiday 2024/Album "_s +
                                              QString::number(index / 1000) + u'/' + name);
    coder.encodeUrl("renamedURL"_L1, base, u"Holiday%20-%20"_s + name);
    coder.encodeUrl("originalURL"_L1, base, name);
    coder.encodeArray("errorLog"_L1, 0, {}, {});
    coder.encodeBool("renameComplete"_L1, true);
    coder.encodeBool("color"_L1, true);
}

void encodeRule(TEncoder &coder)
{
    coder.encodeString("name"_L1, u"a rule"_s);
    coder.encodeInteger("theID"_L1, 3);
    for (const char *key : {"one", "two", "three", "four", "five", "six", "seven", "eight"})
        coder.encodeInteger(QLatin1StringView(key), 1);
    coder.encodeString("theText"_L1, u"some text"_s);
}

void benchLog(qsizetype count)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"log"_s));
    if (!file.open(QIODevice::ReadWrite))
        std::abort();
    qsizetype before = heapInUse();
    QElapsedTimer timer;
    timer.start();
    {
        KeyedArchiver archiver(file);
        for (qsizetype i = 0; i < count; ++i)
            archiver.appendObject(kRecordClass, [i](TEncoder &coder) { encodeRecord(coder, i); });
        const qsizetype bytes = heapInUse() - before;
        if (!archiver.finish())
            std::abort();
        report("write", timer.restart(), count, bytes);
    }
    file.seek(0);
    const QByteArray data = file.readAll();
    std::printf("%-24s %8lld bytes each\n", "file", static_cast<long long>(data.size() / count));
    before = heapInUse();
    timer.restart();
    const auto reader = KeyedUnarchiver::fromData(data);
    report("open", timer.restart(), count, heapInUse() - before);
    qsizetype length = 0;
    reader.value().forEachObject([&length](const TDecoder &coder) {
        length += coder.decodeUrl("originalURL"_L1).size();
        length += coder.decodeString("originalPath"_L1).size();
        length += coder.decodeUrl("renamedURL"_L1).size();
        coder.decodeArray("errorLog"_L1, [](const TDecoder &) {});
        length += coder.decodeBool("renameComplete"_L1) ? 1 : 0;
        length += coder.decodeBool("color"_L1) ? 1 : 0;
    });
    report("read", timer.restart(), count, heapInUse() - before);
    if (length < count)
        std::abort();
}

void benchCopy()
{
    QElapsedTimer timer;
    timer.start();
    qint64 sum = 0;
    for (int i = 0; i < kCopies; ++i) {
        TreeArchive archive;
        for (int rule = 0; rule < kRules; ++rule)
            archive.appendObject(kRuleClass, encodeRule);
        archive.forEachObject([&sum](const TDecoder &coder) {
            sum += coder.decodeString("theText"_L1).size() + coder.decodeInteger("theID"_L1);
            for (const char *key : {"one", "two", "three", "four", "five", "six", "seven"})
                sum += coder.decodeInteger(QLatin1StringView(key));
        });
    }
    std::printf("%-24s %8.1f us\n", "copy of ten rules",
                static_cast<double>(timer.nsecsElapsed()) / 1000.0 / kCopies);
    if (sum == 0)
        std::abort();
}

} // namespace

int main(int argc, char **argv)
{
    benchLog(argc > 1 ? std::atoll(argv[1]) : 1'000'000);
    benchCopy();
    return 0;
}
