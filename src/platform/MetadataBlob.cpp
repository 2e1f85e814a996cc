// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/MetadataBlob.h"

#include "platform/ArchiveValues.h"
#include "platform/MetadataPool.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

enum Tag : quint8 {
    kNull,
    kFalse,
    kTrue,
    kPositive,
    kNegative, ///< its complement follows
    kUnsigned,
    kReal,
    kLatin1,
    kUtf16,
    kSharedText,
    kData,
    kDate,
    kList,
    kMap,
};

/// Texts of one byte a letter up to this length take less room here than a shared one would.
constexpr qsizetype kMaxOwnText = 24;
/// Longer texts (captions) are rarely the same in two files.
constexpr qsizetype kMaxSharedText = 256;
constexpr int kMaxDepth = 32;

bool isLatin1(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar unit) { return unit.unicode() < 0x100; });
}

} // namespace

/// Walks over the bytes. They were written by append, so nothing is checked again.
class MetadataBlob::Reader
{
public:
    Reader(const MetadataBlob &blob, Position position)
        : m_blob(blob)
        , m_at(blob.m_bytes.constData() + position)
    {
    }
    QVariant read();

private:
    quint64 count();
    quint64 fixed();
    const char *skip(quint64 size);
    QVariantList list();
    QVariantMap map();

    const MetadataBlob &m_blob;
    const char *m_at;
};

quint64 MetadataBlob::Reader::count()
{
    quint64 value = 0;
    for (unsigned shift = 0;; shift += 7) {
        const auto byte = static_cast<quint8>(*m_at++);
        value |= static_cast<quint64>(byte & 0x7FU) << shift;
        if (byte < 0x80)
            return value;
    }
}

quint64 MetadataBlob::Reader::fixed()
{
    quint64 bits = 0;
    std::memcpy(&bits, skip(sizeof(bits)), sizeof(bits));
    return bits;
}

const char *MetadataBlob::Reader::skip(quint64 size)
{
    const char *start = m_at;
    m_at += size;
    return start;
}

QVariantList MetadataBlob::Reader::list()
{
    QVariantList list;
    const auto size = static_cast<qsizetype>(count());
    list.reserve(size);
    for (qsizetype i = 0; i < size; ++i)
        list.append(read());
    return list;
}

QVariantMap MetadataBlob::Reader::map()
{
    QVariantMap map;
    for (quint64 left = count(); left > 0; --left) {
        const QString key = read().toString();
        map.insert(key, read());
    }
    return map;
}

QVariant MetadataBlob::Reader::read()
{
    switch (static_cast<Tag>(*m_at++)) {
    case kNull:
        break;
    case kFalse:
        return false;
    case kTrue:
        return true;
    case kPositive:
        return static_cast<qint64>(count());
    case kNegative:
        return ~static_cast<qint64>(count());
    case kUnsigned:
        return count();
    case kReal:
        return std::bit_cast<double>(fixed());
    case kLatin1: {
        const auto size = static_cast<qsizetype>(count());
        return QString(QLatin1StringView(skip(static_cast<quint64>(size)), size));
    }
    case kUtf16: {
        QString text(static_cast<qsizetype>(count()), Qt::Uninitialized);
        const size_t bytes = static_cast<size_t>(text.size()) * sizeof(QChar);
        std::memcpy(text.data(), skip(bytes), bytes);
        return text;
    }
    case kSharedText:
        return m_blob.m_texts[count()];
    case kData: {
        const auto size = static_cast<qsizetype>(count());
        return QByteArray(skip(static_cast<quint64>(size)), size);
    }
    case kDate:
        return QVariant::fromValue(TDate{static_cast<qint64>(fixed())});
    case kList:
        return list();
    case kMap:
        return map();
    }
    return {};
}

void MetadataBlob::putCount(quint64 count)
{
    for (; count > 0x7F; count >>= 7U)
        putTag(static_cast<quint8>(count | 0x80));
    putTag(static_cast<quint8>(count));
}

void MetadataBlob::putFixed(quint64 bits)
{
    m_bytes.append(reinterpret_cast<const char *>(&bits), sizeof(bits));
}

MetadataBlob::Position MetadataBlob::appendText(const QString &text)
{
    const auto position = static_cast<Position>(m_bytes.size());
    const bool latin1 = isLatin1(text);
    if (text.size() <= kMaxSharedText && text.size() > (latin1 ? kMaxOwnText : kMaxOwnText / 2)) {
        putTag(kSharedText);
        putCount(m_texts.size());
        m_texts.push_back(MetadataPool::shared().sharedText(text));
        return position;
    }
    putTag(latin1 ? kLatin1 : kUtf16);
    putCount(static_cast<quint64>(text.size()));
    if (latin1)
        m_bytes.append(text.toLatin1());
    else
        m_bytes.append(reinterpret_cast<const char *>(text.constData()),
                       text.size() * static_cast<qsizetype>(sizeof(QChar)));
    return position;
}

MetadataBlob::Position MetadataBlob::append(const QVariant &value, int depth)
{
    const auto position = static_cast<Position>(m_bytes.size());
    const QVariant canonical = depth < kMaxDepth ? ArchiveValues::canonical(value) : QVariant();
    switch (canonical.typeId()) {
    case QMetaType::UnknownType:
        putTag(kNull);
        break;
    case QMetaType::Bool:
        putTag(canonical.toBool() ? kTrue : kFalse);
        break;
    case QMetaType::LongLong: {
        const qint64 number = canonical.toLongLong();
        putTag(number < 0 ? kNegative : kPositive);
        putCount(static_cast<quint64>(number < 0 ? ~number : number));
        break;
    }
    case QMetaType::ULongLong:
        putTag(kUnsigned);
        putCount(canonical.toULongLong());
        break;
    case QMetaType::Double:
        putTag(kReal);
        putFixed(std::bit_cast<quint64>(canonical.toDouble()));
        break;
    case QMetaType::QString:
        return appendText(canonical.toString());
    case QMetaType::QByteArray:
        putTag(kData);
        putCount(static_cast<quint64>(canonical.toByteArray().size()));
        m_bytes.append(canonical.toByteArray());
        break;
    case QMetaType::QVariantList: {
        const QVariantList list = canonical.toList();
        putTag(kList);
        putCount(static_cast<quint64>(list.size()));
        for (const QVariant &element : list)
            append(element, depth + 1);
        break;
    }
    case QMetaType::QVariantMap: {
        const QVariantMap map = canonical.toMap();
        putTag(kMap);
        putCount(static_cast<quint64>(map.size()));
        for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
            appendText(entry.key());
            append(entry.value(), depth + 1);
        }
        break;
    }
    default:
        putTag(kDate);
        putFixed(static_cast<quint64>(canonical.value<TDate>().nanos));
    }
    return position;
}

void MetadataBlob::squeeze()
{
    m_bytes = QByteArray(m_bytes.constData(), m_bytes.size());
    m_texts.shrink_to_fit();
}

QVariant MetadataBlob::value(Position position) const
{
    return Reader(*this, position).read();
}
