// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/KeyedArchiver.h"
#include "platform/KeyedUnarchiver.h"
#include "platform/TColor.h"
#include "platform/TreeCoder.h"

#include <QBuffer>

#include <array>
#include <vector>

using namespace Qt::StringLiterals;

/// An object with one field of every kind, for tests of both kinds of archives.
struct ArchiveSample
{
    static constexpr std::array kClass{"TSample", "NSObject"};
    static constexpr std::array kPartClass{"TPart", "TSample", "NSObject"};

    bool flag = false;
    qint64 number = 0;
    QString text;
    QByteArray data;
    TDate date;
    QString base;
    QString relative;
    TStringTablePtr table;
    QVariant variant;
    TColor color;
    qint64 inner = 0; ///< in a dictionary
    std::vector<QString> parts;

    static ArchiveSample filled()
    {
        ArchiveSample sample;
        sample.flag = true;
        sample.number = -7;
        sample.text = u"Größe"_s;
        sample.data = QByteArray("\0\xFF\n", 3);
        sample.date = TDate::fromSeconds(1'700'000'000, 123'456'789);
        sample.base = u"file:///tmp/a%20b/"_s;
        sample.relative = u"c%25.txt"_s;
        sample.table = std::make_shared<const TStringTable>(
            TStringTable{{u"a"_s, u"b"_s}, {}, {u"a"_s, u""_s, u"ü"_s}});
        sample.variant = QVariantMap{{u"list"_s, QVariantList{1, 2.5, u"x"_s, true}},
                                     {u"map"_s, QVariantMap{{u"é"_s, 5}}}};
        sample.color = TColor(0x9C, 0x98, 0x8A);
        sample.inner = 5'000'000'000;
        sample.parts = {u"one"_s, u"two"_s};
        return sample;
    }

    void encode(TEncoder &coder) const
    {
        coder.encodeBool("flag"_L1, flag);
        coder.encodeInteger("number"_L1, number);
        coder.encodeString("text"_L1, text);
        coder.encodeData("data"_L1, data);
        coder.encodeDate("date"_L1, date);
        coder.encodeUrl("url"_L1, base, relative);
        coder.encodeTable("table"_L1, table);
        coder.encodeVariant("variant"_L1, variant);
        if (color.isSet())
            coder.encodeObject("color"_L1, TColor::archiveClass(),
                               [this](TEncoder &inside) { color.encodeWithCoder(inside); });
        coder.encodeDictionary(
            "dictionary"_L1, [this](TEncoder &inside) { inside.encodeInteger("inner"_L1, inner); });
        coder.encodeArray(
            "parts"_L1, static_cast<qsizetype>(parts.size()),
            [](qsizetype) { return TArchiveClass(kPartClass); },
            [this](qsizetype index, TEncoder &inside) {
                inside.encodeString("part"_L1, parts[static_cast<size_t>(index)]);
            });
    }

    /// Everything but base and relative, which come back as one URL in relative.
    static ArchiveSample decoded(const TDecoder &coder)
    {
        ArchiveSample sample;
        sample.flag = coder.decodeBool("flag"_L1);
        sample.number = coder.decodeInteger("number"_L1);
        sample.text = coder.decodeString("text"_L1);
        sample.data = coder.decodeData("data"_L1);
        sample.date = coder.decodeDate("date"_L1);
        sample.relative = coder.decodeUrl("url"_L1);
        sample.table = coder.decodeTable("table"_L1);
        sample.variant = coder.decodeVariant("variant"_L1);
        coder.decodeObject(
            "color"_L1, [&sample](const TDecoder &inside) { sample.color.initWithCoder(inside); });
        coder.decodeDictionary("dictionary"_L1, [&sample](const TDecoder &inside) {
            sample.inner = inside.decodeInteger("inner"_L1);
        });
        coder.decodeArray("parts"_L1, [&sample](const TDecoder &inside) {
            sample.parts.push_back(inside.decodeString("part"_L1));
        });
        return sample;
    }

    /// True when decoded is what this sample must come back as.
    bool comesBackAs(const ArchiveSample &decoded) const
    {
        const bool sameTable =
            table == decoded.table || (table && decoded.table && *table == *decoded.table);
        return flag == decoded.flag && number == decoded.number && text == decoded.text &&
               text.isNull() == decoded.text.isNull() && data == decoded.data &&
               data.isNull() == decoded.data.isNull() && date == decoded.date &&
               base + relative == decoded.relative && sameTable && variant == decoded.variant &&
               color == decoded.color && inner == decoded.inner && parts == decoded.parts;
    }

    static QByteArray fileOf(const std::vector<ArchiveSample> &samples)
    {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        KeyedArchiver archiver(buffer);
        for (const ArchiveSample &sample : samples)
            archiver.appendObject(kClass, [&sample](TEncoder &coder) { sample.encode(coder); });
        return archiver.finish() ? buffer.data() : QByteArray();
    }
    static std::vector<ArchiveSample> fromFile(const QByteArray &data)
    {
        std::vector<ArchiveSample> samples;
        const TResult<KeyedUnarchiver> archive = KeyedUnarchiver::fromData(data);
        if (archive)
            archive.value().forEachObject(
                [&samples](const TDecoder &coder) { samples.push_back(decoded(coder)); });
        return samples;
    }
    static std::vector<ArchiveSample> throughTree(const std::vector<ArchiveSample> &samples)
    {
        TreeArchive tree;
        for (const ArchiveSample &sample : samples)
            tree.appendObject(kClass, [&sample](TEncoder &coder) { sample.encode(coder); });
        std::vector<ArchiveSample> copies;
        tree.forEachObject([&copies](const TDecoder &coder) { copies.push_back(decoded(coder)); });
        return copies;
    }
};
