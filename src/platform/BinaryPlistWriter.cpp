// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/BinaryPlistWriter.h"

#include "platform/Ascii.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>

using namespace BinaryPlistFormat;

namespace {

constexpr qsizetype kBufferSize = 65536;
constexpr int kRefSize = 4;
constexpr quint64 kMaxObjects = std::numeric_limits<quint32>::max();
constexpr unsigned kMarkBits = 2;
/// Numbers are written eight bytes at a time, also when fewer of them count.
constexpr qsizetype kSlack = 8;

int bytesFor(quint64 value)
{
    if (value <= 0xFF)
        return 1;
    if (value <= 0xFFFF)
        return 2;
    return value <= 0xFFFFFFFF ? 4 : 8;
}

/// Low half of the marker of a number of 2^n bytes.
quint8 sizeExponent(int bytes)
{
    return static_cast<quint8>(std::countr_zero(static_cast<unsigned>(bytes)));
}

} // namespace

/// Numbers of one size, of which there are several for each object: they are put together here
/// and written many at a time.
class BinaryPlistWriter::Numbers
{
public:
    Numbers(BinaryPlistWriter &writer, int size)
        : m_writer(writer)
        , m_size(size)
        , m_shift(8U * static_cast<unsigned>(kSlack - size))
    {
    }
    Numbers(const Numbers &) = delete;
    Numbers &operator=(const Numbers &) = delete;
    ~Numbers() { m_writer.putBytes(m_bytes.data(), m_used); }

    void add(quint64 value)
    {
        qToBigEndian(value << m_shift, m_bytes.data() + m_used);
        m_used += m_size;
        if (m_used < kPart)
            return;
        m_writer.putBytes(m_bytes.data(), m_used);
        m_used = 0;
    }

private:
    static constexpr qsizetype kPart = 4096;

    BinaryPlistWriter &m_writer;
    qsizetype m_size;
    unsigned m_shift;
    qsizetype m_used = 0;
    std::array<char, kPart + 2 * kSlack> m_bytes;
};

BinaryPlistWriter::BinaryPlistWriter(QIODevice &device)
    : m_device(device)
    , m_buffer(static_cast<size_t>(kBufferSize + kSlack))
{
    putBytes(kMagic, kMagicSize);
}

inline BinaryPlistWriter::Ref BinaryPlistWriter::begin()
{
    closeLast();
    m_failed = m_failed || m_count >= kMaxObjects;
    m_lastStart = m_position;
    m_lastMark = Mark::None;
    m_open = true;
    return static_cast<Ref>(m_count++);
}

inline void BinaryPlistWriter::closeLast()
{
    if (!m_open)
        return;
    m_open = false;
    ++m_marked[static_cast<size_t>(m_lastMark)];
    quint64 rest = ((m_position - m_lastStart) << kMarkBits) | static_cast<quint64>(m_lastMark);
    while (rest > 0x7F) {
        m_lengths.push_back(static_cast<quint8>(rest | 0x80));
        rest >>= 7U;
    }
    m_lengths.push_back(static_cast<quint8>(rest));
}

inline char *BinaryPlistWriter::room(qsizetype size)
{
    if (kBufferSize - m_used < size) [[unlikely]]
        flush();
    char *place = m_buffer.data() + m_used;
    m_used += size;
    m_position += static_cast<quint64>(size);
    return place;
}

inline void BinaryPlistWriter::putByte(quint8 byte)
{
    *room(1) = static_cast<char>(byte);
}

inline void BinaryPlistWriter::putRef(Ref ref)
{
    qToBigEndian(ref, room(kRefSize));
}

inline void BinaryPlistWriter::putNumber(quint64 value, int size)
{
    qToBigEndian(value << (8U * static_cast<unsigned>(kSlack - size)), room(size));
}

void BinaryPlistWriter::putBytes(const void *bytes, qsizetype size)
{
    const char *from = static_cast<const char *>(bytes);
    while (size > 0) {
        const qsizetype part = std::min(size, kBufferSize);
        std::memcpy(room(part), from, static_cast<size_t>(part));
        from += part;
        size -= part;
    }
}

inline void BinaryPlistWriter::putCount(Marker marker, quint64 count)
{
    if (count < kLongCount) {
        putByte(static_cast<quint8>(marker | count));
        return;
    }
    putByte(marker | kLongCount);
    const int size = bytesFor(count);
    putByte(kInteger | sizeExponent(size));
    putNumber(count, size);
}

void BinaryPlistWriter::flush()
{
    if (m_used > 0 && m_device.write(m_buffer.data(), m_used) != m_used)
        m_failed = true;
    m_used = 0;
}

BinaryPlistWriter::Ref BinaryPlistWriter::writeBool(bool value)
{
    const Ref ref = begin();
    putByte(value ? kTrueByte : kFalseByte);
    return ref;
}

BinaryPlistWriter::Ref BinaryPlistWriter::writeInteger(qint64 value)
{
    const Ref ref = begin();
    // Only numbers of eight bytes have a sign.
    const int size = value < 0 ? 8 : bytesFor(static_cast<quint64>(value));
    putByte(kInteger | sizeExponent(size));
    putNumber(static_cast<quint64>(value), size);
    return ref;
}

BinaryPlistWriter::Ref BinaryPlistWriter::writeUnsigned(quint64 value)
{
    if (value <= static_cast<quint64>(std::numeric_limits<qint64>::max()))
        return writeInteger(static_cast<qint64>(value));
    const Ref ref = begin();
    putByte(kInteger | sizeExponent(16));
    putNumber(0, 8);
    putNumber(value, 8);
    return ref;
}

BinaryPlistWriter::Ref BinaryPlistWriter::writeReal(double value)
{
    const Ref ref = begin();
    putByte(kReal | sizeExponent(8));
    putNumber(std::bit_cast<quint64>(value), 8);
    return ref;
}

BinaryPlistWriter::Ref BinaryPlistWriter::writeData(QByteArrayView value)
{
    const Ref ref = begin();
    putCount(kData, static_cast<quint64>(value.size()));
    putBytes(value.data(), value.size());
    return ref;
}

BinaryPlistWriter::Ref BinaryPlistWriter::writeString(QStringView value)
{
    constexpr qsizetype kPart = 4096;
    const Ref ref = begin();
    const bool ascii = isAscii(value);
    putCount(ascii ? kAscii : kUtf16, static_cast<quint64>(value.size()));
    for (qsizetype done = 0; done < value.size(); done += kPart) {
        const QStringView part = value.mid(done, kPart);
        char *place = room(ascii ? part.size() : part.size() * 2);
        if (ascii)
            std::transform(part.begin(), part.end(), place,
                           [](QChar unit) { return static_cast<char>(unit.unicode()); });
        else
            qToBigEndian<char16_t>(part.utf16(), part.size(), place);
    }
    return ref;
}

BinaryPlistWriter::Ref BinaryPlistWriter::writeAscii(QLatin1StringView value)
{
    const Ref ref = begin();
    putCount(kAscii, static_cast<quint64>(value.size()));
    putBytes(value.data(), value.size());
    return ref;
}

BinaryPlistWriter::Ref BinaryPlistWriter::writeUid(quint32 value)
{
    const Ref ref = begin();
    const int size = bytesFor(value);
    putByte(static_cast<quint8>(kUid | (size - 1)));
    putNumber(value, size);
    return ref;
}

BinaryPlistWriter::Ref BinaryPlistWriter::writeArray(std::span<const Ref> elements)
{
    const Ref ref = begin();
    putCount(kArray, elements.size());
    for (const Ref element : elements)
        putRef(element);
    return ref;
}

BinaryPlistWriter::Ref BinaryPlistWriter::writeDictionary(std::span<const Entry> entries,
                                                          std::optional<Entry> last)
{
    const Ref ref = begin();
    putCount(kDictionary, entries.size() + (last ? 1 : 0));
    for (const Entry &entry : entries)
        putRef(entry.key);
    if (last)
        putRef(last->key);
    for (const Entry &entry : entries)
        putRef(entry.value);
    if (last)
        putRef(last->value);
    return ref;
}

template <class Call>
void BinaryPlistWriter::forEachObject(Call call) const
{
    quint64 offset = kMagicSize;
    const auto found = [&](quint64 value) {
        call(offset, static_cast<Mark>(value & ((1U << kMarkBits) - 1)));
        offset += value >> kMarkBits;
    };
    for (auto byte = m_lengths.cbegin(); byte != m_lengths.cend(); ++byte) {
        quint64 value = *byte;
        if (value >= 0x80U) {
            value &= 0x7FU;
            for (unsigned shift = 7; (*byte & 0x80U) != 0; shift += 7)
                value |= static_cast<quint64>(*++byte & 0x7FU) << shift;
        }
        found(value);
    }
}

BinaryPlistWriter::Ref BinaryPlistWriter::writeArrayOfMarked(Mark mark)
{
    closeLast();
    Ref index = 0;
    // The lengths of the objects so far are read while this array, the next one, is written.
    const Ref ref = begin();
    putCount(kArray, m_marked[static_cast<size_t>(mark)]);
    Numbers refs(*this, kRefSize);
    forEachObject([&](quint64, Mark objectMark) {
        if (objectMark == mark)
            refs.add(index);
        ++index;
    });
    return ref;
}

bool BinaryPlistWriter::finish(Ref top)
{
    closeLast();
    const quint64 tableOffset = m_position;
    const int offsetSize = bytesFor(tableOffset);
    {
        Numbers offsets(*this, offsetSize);
        forEachObject([&](quint64 offset, Mark) { offsets.add(offset); });
    }
    for (quint64 i = 0; i < kTrailerUnused; ++i)
        putByte(0);
    putByte(static_cast<quint8>(offsetSize));
    putByte(kRefSize);
    putNumber(m_count, 8);
    putNumber(top, 8);
    putNumber(tableOffset, 8);
    flush();
    return !m_failed;
}
