// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/FormatHeaders.h"
#include "readers/TagValue.h"

#include <QLatin1StringView>

#include <bit>

using namespace Qt::StringLiterals;

namespace {

constexpr int kDeepest = 8;
constexpr int kMostEntries = 4000; // of all heaps together
constexpr qint64 kEntrySize = 10;
constexpr qint64 kLargestValue = 4096;
constexpr quint64 kInEntry = 0x4000;
constexpr quint64 kIdentity = 0x3FFF;
constexpr quint64 kKind = 0x3800;

enum class Shape { Text, Number, Real, CanonEv, LensMillimetres };

/// One line a key: the tag, and where in its value the key's number stands (in units of its size).
struct Row
{
    quint64 tag;
    QLatin1StringView key;
    Shape shape;
    int index;
    int size;
};

constexpr quint64 kCameraSettings = 0x102D;
constexpr quint64 kShotInfo = 0x102A;

constexpr Row kRows[] = {
    {0x0805, "Description"_L1, Shape::Text, 0, 1},
    {0x080B, "Firmware"_L1, Shape::Text, 0, 1},
    {0x0810, "OwnerName"_L1, Shape::Text, 0, 1},
    {0x0815, "ImageName"_L1, Shape::Text, 0, 1},
    {0x0816, "ImageFileName"_L1, Shape::Text, 0, 1},
    {0x1010, "ReleaseMethod"_L1, Shape::Number, 0, 2},
    {0x1011, "ReleaseTiming"_L1, Shape::Number, 0, 2},
    {0x1804, "RecordID"_L1, Shape::Number, 0, 4},
    {0x1806, "SelfTimingTime"_L1, Shape::Number, 0, 4},
    {0x180B, "CameraSerialNumber"_L1, Shape::Number, 0, 4},
    {0x1817, "ImageSerialNumber"_L1, Shape::Number, 0, 4},
    {0x1814, "MeasuredEV"_L1, Shape::Real, 0, 4},
    {kCameraSettings, "ContinuousDrive"_L1, Shape::Number, 5, 2},
    {kCameraSettings, "FocusMode"_L1, Shape::Number, 7, 2},
    {kCameraSettings, "MeteringMode"_L1, Shape::Number, 17, 2},
    {kCameraSettings, "ShootingMode"_L1, Shape::Number, 20, 2},
    {kCameraSettings, "LensModel"_L1, Shape::Number, 22, 2},
    {kCameraSettings, "LensMaxMM"_L1, Shape::LensMillimetres, 23, 2},
    {kCameraSettings, "LensMinMM"_L1, Shape::LensMillimetres, 24, 2},
    {kShotInfo, "WhiteBalanceIndex"_L1, Shape::Number, 7, 2},
    {kShotInfo, "FlashExposureComp"_L1, Shape::CanonEv, 15, 2},
};
constexpr int kMillimetreUnitsIndex = 25;
constexpr quint64 kNoLens = 0xFFFF;

class Walk
{
public:
    explicit Walk(ByteSource &source)
        : m_source(source)
    {
    }

    ImageFacts run()
    {
        const auto header = static_cast<qint64>(number(2, 4));
        readHeap(header, m_source.size() - header, 0);
        ImageFacts facts;
        if (!m_ciff.isEmpty())
            facts.dictionaries.insert(u"{CIFF}"_s, m_ciff);
        return facts;
    }

private:
    /// A heap ends with where its directory starts.
    void readHeap(qint64 start, qint64 size, int depth)
    {
        if (depth > kDeepest || size < 6 || !m_source.contains(start, size))
            return;
        const qint64 directory = start + static_cast<qint64>(number(start + size - 4, 4));
        const auto count = static_cast<int>(number(directory, 2));
        for (int i = 0; i < count && m_entries < kMostEntries; ++i, ++m_entries) {
            const qint64 entry = directory + 2 + i * kEntrySize;
            if (!m_source.contains(entry, kEntrySize))
                return;
            readEntry(entry, start, size, depth);
        }
    }

    void readEntry(qint64 entry, qint64 heap, qint64 heapSize, int depth)
    {
        const quint64 stored = number(entry, 2);
        const bool isInside = (stored & 0xC000) == kInEntry;
        const qint64 size = isInside ? 8 : static_cast<qint64>(number(entry + 2, 4));
        const qint64 start =
            isInside ? entry + 2 : heap + static_cast<qint64>(number(entry + 6, 4));
        if (!isInside && (start - heap > heapSize || size > heapSize - (start - heap)))
            return;
        const quint64 kind = stored & kKind;
        if (!isInside && (kind == 0x2800 || kind == 0x3000))
            readHeap(start, size, depth + 1);
        else
            readValue(stored & kIdentity, start, size);
    }

    void readValue(quint64 tag, qint64 start, qint64 size)
    {
        for (const Row &row : kRows) {
            const qint64 offset = qint64(row.index) * row.size;
            if (row.tag != tag || size < offset + row.size || m_ciff.contains(row.key))
                continue;
            const QVariant value = valueOf(row, start, size);
            if (value.isValid())
                m_ciff.insert(row.key, value);
        }
    }

    QVariant valueOf(const Row &row, qint64 start, qint64 size)
    {
        const quint64 raw = number(start + qint64(row.index) * row.size, row.size);
        switch (row.shape) {
        case Shape::Text:
            return textOf(m_source.bytes(start, std::min(size, kLargestValue)));
        case Shape::Number:
            return raw == kNoLens && row.tag == kCameraSettings
                       ? QVariant()
                       : QVariant(static_cast<qint64>(raw));
        case Shape::Real:
            return static_cast<double>(std::bit_cast<float>(static_cast<quint32>(raw)));
        case Shape::CanonEv:
            return canonExposure(static_cast<qint16>(raw));
        case Shape::LensMillimetres:
            return millimetres(raw, start, size);
        }
        return {};
    }

    static QVariant textOf(const QByteArray &bytes)
    {
        const QString text = textOfBytes(bytes.left(bytes.indexOf('\0'))).trimmed();
        return text.isEmpty() ? QVariant() : QVariant(text);
    }

    QVariant millimetres(quint64 raw, qint64 start, qint64 size)
    {
        const qint64 offset = qint64(kMillimetreUnitsIndex) * 2;
        const quint64 units = size < offset + 2 ? 1 : number(start + offset, 2);
        return units == 0 ? QVariant()
                          : QVariant(static_cast<double>(raw) / static_cast<double>(units));
    }

    quint64 number(qint64 at, int bytes) { return m_source.little(at, bytes).value_or(0); }

    ByteSource &m_source;
    int m_entries = 0;
    QVariantMap m_ciff;
};

} // namespace

ImageFacts walkCiff(ByteSource &source)
{
    return Walk(source).run();
}
