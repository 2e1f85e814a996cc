// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/BmffItems.h"

#include <QList>

#include <algorithm>

namespace {

constexpr qint64 kLargestMeta = qint64{16} * 1024 * 1024;
constexpr int kMostTopBoxes = 1000;
constexpr int kMostBoxes = 20000;
constexpr size_t kMostEntries = 100000; // of extents, references and associations
constexpr qint64 kVersionSize = 4;      // one byte of version, three of flags

} // namespace

void forEachBmffBox(ByteSource &source, qint64 at, qint64 end, int most,
                    const std::function<bool(const BmffBox &)> &visit)
{
    for (int i = 0; i < most && at + 8 <= end; ++i) {
        quint64 size = source.big(at, 4).value_or(0);
        qint64 header = 8;
        if (size == 1) {
            size = source.big(at + 8, 8).value_or(0);
            header = 16;
        }
        const auto left = static_cast<quint64>(end - at);
        if (size == 0 || size > left)
            size = left;
        if (size < static_cast<quint64>(header))
            return;
        const qint64 next = at + static_cast<qint64>(size);
        if (!visit({source.bytes(at + 4, 4), at + header, next}))
            return;
        at = next;
    }
}

QByteArray bmffMeta(ByteSource &file)
{
    QByteArray meta;
    forEachBmffBox(file, 0, file.size(), kMostTopBoxes, [&](const BmffBox &box) {
        if (box.type != "meta" || box.end - box.start > kLargestMeta)
            return true;
        meta = file.bytes(box.start, box.end - box.start);
        return false;
    });
    return meta;
}

struct BmffItems::Cursor
{
    ByteSource &source;
    qint64 at;
    qint64 end;

    quint64 take(int bytes)
    {
        const quint64 result =
            bytes > 0 && at + bytes <= end ? source.big(at, bytes).value_or(0) : 0;
        at += bytes;
        return result;
    }
    bool isAtEnd() const { return at >= end; }
};

BmffItems::BmffItems(ByteSource &meta)
    : m_meta(meta)
{
    forEachBmffBox(meta, kVersionSize, meta.size(), kMostBoxes, [this](const BmffBox &box) {
        if (box.type == "pitm")
            m_primary = static_cast<quint32>(
                number(box.start + kVersionSize, number(box.start, 1) == 0 ? 2 : 4));
        else if (box.type == "iinf")
            readItemInfos(box);
        else if (box.type == "iloc")
            readLocations(box);
        else if (box.type == "iref")
            readReferences(box);
        else if (box.type == "iprp")
            readProperties(box);
        else if (box.type == "idat")
            m_data = box;
        return true;
    });
}

std::vector<BmffBox> BmffItems::propertiesOf(quint32 item) const
{
    std::vector<BmffBox> result;
    const auto [first, last] = m_associations.equal_range(item);
    for (auto it = first; it != last; ++it) {
        if (it->second >= 1 && it->second <= m_properties.size())
            result.push_back(m_properties[it->second - 1]);
    }
    return result;
}

QByteArray BmffItems::contents(const BmffItem &item, ByteSource &file, qint64 most)
{
    QByteArray result;
    const auto [first, last] = m_extents.equal_range(item.id);
    for (auto it = first; it != last; ++it) {
        const Extent &extent = it->second;
        if (extent.size > most - result.size())
            return {};
        const QByteArray part = extent.isInMeta
                                    ? m_meta.bytes(m_data.start + extent.offset, extent.size)
                                    : file.bytes(extent.offset, extent.size);
        if (part.size() != extent.size)
            return {};
        result += part;
    }
    return result;
}

void BmffItems::readItemInfos(const BmffBox &box)
{
    const qint64 count = number(box.start, 1) == 0 ? 2 : 4;
    forEachBmffBox(m_meta, box.start + kVersionSize + count, box.end, kMostBoxes,
                   [this](const BmffBox &entry) {
                       if (entry.type == "infe")
                           readItemInfo(entry);
                       return true;
                   });
}

void BmffItems::readItemInfo(const BmffBox &box)
{
    const quint64 version = number(box.start, 1);
    if (version < 2)
        return; // without a type, such an item is no picture
    const int idSize = version == 2 ? 2 : 4;
    qint64 at = box.start + kVersionSize;
    BmffItem item;
    item.id = static_cast<quint32>(number(at, idSize));
    at += idSize + 2;
    item.type = m_meta.bytes(at, 4);
    if (item.type == "mime") {
        const QByteArray texts = m_meta.bytes(at + 4, std::max<qint64>(0, box.end - at - 4));
        const QList<QByteArray> parts = texts.split('\0'); // the name, then the type of contents
        item.contentType = parts.value(1);
    }
    m_items.push_back(item);
}

void BmffItems::readLocations(const BmffBox &box)
{
    const quint64 version = number(box.start, 1);
    Cursor cursor{m_meta, box.start + kVersionSize, box.end};
    const quint64 sizes = cursor.take(2);
    const quint64 count = cursor.take(version < 2 ? 2 : 4);
    for (quint64 i = 0; i < count && !cursor.isAtEnd(); ++i) {
        if (!readLocation(cursor, version, sizes))
            return;
    }
}

bool BmffItems::readLocation(Cursor &cursor, quint64 version, quint64 sizes)
{
    // Four widths, four bits each: offset, length, base and index.
    const int offsetSize = std::min(8, static_cast<int>(sizes >> 12 & 15));
    const int lengthSize = std::min(8, static_cast<int>(sizes >> 8 & 15));
    const int baseSize = std::min(8, static_cast<int>(sizes >> 4 & 15));
    const int indexSize = version == 0 ? 0 : std::min(8, static_cast<int>(sizes & 15));
    const auto id = static_cast<quint32>(cursor.take(version < 2 ? 2 : 4));
    const quint64 method = version == 0 ? 0 : cursor.take(2) & 15;
    cursor.take(2); // always this file
    const quint64 base = cursor.take(baseSize);
    // Without widths all extents are the same one, however many are claimed.
    const bool differ = indexSize + offsetSize + lengthSize > 0;
    const quint64 count = std::min<quint64>(cursor.take(2), differ ? kMostEntries : 1);
    for (quint64 i = 0; i < count && !cursor.isAtEnd(); ++i) {
        if (m_extents.size() >= kMostEntries)
            return false;
        cursor.take(indexSize);
        const quint64 offset = base + cursor.take(offsetSize);
        const quint64 size = cursor.take(lengthSize);
        const bool isSane = offset < (quint64(1) << 62) && size < (quint64(1) << 62);
        if (isSane && method < 2)
            m_extents.emplace(
                id, Extent{method == 1, static_cast<qint64>(offset), static_cast<qint64>(size)});
    }
    return true;
}

void BmffItems::readReferences(const BmffBox &box)
{
    const int idSize = number(box.start, 1) == 0 ? 2 : 4;
    forEachBmffBox(
        m_meta, box.start + kVersionSize, box.end, kMostBoxes, [&](const BmffBox &entry) {
            Cursor cursor{m_meta, entry.start, entry.end};
            const auto from = static_cast<quint32>(cursor.take(idSize));
            const quint64 count = cursor.take(2);
            for (quint64 i = 0;
                 i < count && !cursor.isAtEnd() && m_references.size() < kMostEntries; ++i)
                m_references.push_back(
                    {entry.type, from, static_cast<quint32>(cursor.take(idSize))});
            return true;
        });
}

void BmffItems::readProperties(const BmffBox &box)
{
    forEachBmffBox(m_meta, box.start, box.end, kMostBoxes, [this](const BmffBox &part) {
        if (part.type == "ipco") {
            forEachBmffBox(m_meta, part.start, part.end, kMostBoxes,
                           [this](const BmffBox &property) {
                               m_properties.push_back(property);
                               return true;
                           });
        } else if (part.type == "ipma") {
            readAssociations(part);
        }
        return true;
    });
}

void BmffItems::readAssociations(const BmffBox &box)
{
    const int idSize = number(box.start, 1) == 0 ? 2 : 4;
    const int indexSize = number(box.start + 3, 1) & 1 ? 2 : 1;
    const quint64 mask = indexSize == 2 ? 0x7FFF : 0x7F; // the first bit says "essential"
    Cursor cursor{m_meta, box.start + kVersionSize, box.end};
    const quint64 count = cursor.take(4);
    for (quint64 i = 0; i < count && !cursor.isAtEnd(); ++i) {
        const auto id = static_cast<quint32>(cursor.take(idSize));
        const quint64 properties = cursor.take(1);
        for (quint64 j = 0; j < properties && m_associations.size() < kMostEntries; ++j)
            m_associations.emplace(id, static_cast<size_t>(cursor.take(indexSize) & mask));
    }
}
