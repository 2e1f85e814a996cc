// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/FormatHeaders.h"
#include "readers/TagValue.h"

#include <QStringDecoder>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kHeaderSize = 26;
constexpr quint64 kLargeDocument = 2;
constexpr int kMostResources = 10000;
constexpr int kMostBlocks = 1000;
constexpr qint64 kLargestBlock = qint64{16} * 1024 * 1024;
constexpr qint64 kLongestName = 1024;
constexpr quint64 kResolution = 1005;
constexpr quint64 kProfile = 1039;
constexpr quint64 kEndOfGroup = 3;
constexpr double kFixedOne = 65536;

enum Mode : quint64 { Bitmap = 0, Grayscale = 1, Indexed = 2, Cmyk = 4, Duotone = 8, Lab = 9 };

// In large documents the lengths of these blocks take eight bytes.
constexpr const char *kLongBlocks[] = {"LMsk", "Lr16", "Lr32", "Layr", "Mt16", "Mt32", "Mtrn",
                                       "Alph", "FMsk", "lnk2", "FEid", "FXid", "PxSD"};

class Walk
{
public:
    explicit Walk(ByteSource &source)
        : m_source(source)
    {
    }

    ImageFacts run()
    {
        if (!m_source.contains(0, kHeaderSize))
            return m_facts;
        readHeader();
        qint64 at = kHeaderSize;
        at += 4 + length(at, 4);
        const qint64 resources = at + 4;
        at = resources + length(at, 4);
        readResources(resources, at);
        readLayerSection(at);
        if (!m_names.isEmpty())
            m_facts.dictionaries.insert(u"{8BIM}"_s, QVariantMap{{u"LayerNames"_s, m_names}});
        return m_facts;
    }

private:
    void readHeader()
    {
        m_isLarge = number(4, 2) == kLargeDocument;
        const quint64 channels = number(12, 2);
        m_facts.height = static_cast<qint64>(number(14, 4));
        m_facts.width = static_cast<qint64>(number(18, 4));
        m_facts.depth = static_cast<int>(number(22, 2));
        m_facts.isFloat = m_facts.depth == 32;
        const quint64 mode = number(24, 2);
        const bool isGray = mode == Bitmap || mode == Grayscale || mode == Duotone;
        m_facts.colorModel = isGray         ? kModelGray
                             : mode == Cmyk ? kModelCmyk
                             : mode == Lab  ? kModelLab
                                            : kModelRgb;
        m_facts.isIndexed = mode == Indexed;
        const quint64 colors = isGray || mode == Indexed ? 1 : mode == Cmyk ? 4 : 3;
        m_facts.hasAlpha = channels > colors;
    }

    void readResources(qint64 at, qint64 end)
    {
        for (int i = 0; i < kMostResources && at + 12 <= end; ++i) {
            if (!m_source.startsWith(at, "8BIM"))
                return;
            const quint64 id = number(at + 4, 2);
            const auto name = static_cast<qint64>(number(at + 6, 1));
            at += 6 + ((name + 2) & ~qint64(1)); // the name and its length, made even
            const qint64 size = length(at, 4);
            readResource(id, at + 4, size);
            at += 4 + size + (size & 1);
        }
    }

    void readResource(quint64 id, qint64 at, qint64 size)
    {
        if (id == kResolution && size >= 12) {
            m_facts.dpiWidth = static_cast<double>(number(at, 4)) / kFixedOne;
            m_facts.dpiHeight = static_cast<double>(number(at + 8, 4)) / kFixedOne;
        }
        if (id == kProfile && size <= kLargestBlock)
            m_facts.profile = m_source.bytes(at, size);
    }

    void readLayerSection(qint64 at)
    {
        const int wide = m_isLarge ? 8 : 4;
        const qint64 end = at + wide + length(at, wide);
        at += wide;
        const qint64 info = length(at, wide);
        at += wide;
        if (info > 0) {
            readLayers(at, at + info);
            return;
        }
        // Documents of more than 8 bits keep their layers in a block behind the global mask.
        at += 4 + length(at, 4);
        forEachBlock(at, std::min(end, m_source.size()), 4,
                     [&](const QByteArray &key, qint64 from, qint64 to) {
                         if (key == "Lr16" || key == "Lr32" || key == "Layr")
                             readLayers(from, to);
                     });
    }

    void readLayers(qint64 at, qint64 end)
    {
        const auto stored = static_cast<qint16>(number(at, 2));
        const int count = stored < 0 ? -stored : stored;
        m_facts.hasAlpha = m_facts.hasAlpha.value_or(false) || stored < 0;
        at += 2;
        for (int i = 0; i < count && at < std::min(end, m_source.size()); ++i)
            at = readLayer(at);
    }

    /// Gives where the next layer starts.
    qint64 readLayer(qint64 at)
    {
        const auto channels = static_cast<qint64>(number(at + 16, 2));
        at += 18 + channels * (m_isLarge ? 10 : 6) + 12;
        const qint64 end = at + 4 + length(at, 4);
        at += 4;
        at += 4 + length(at, 4); // the mask
        at += 4 + length(at, 4); // the blending ranges
        const auto size = static_cast<qint64>(number(at, 1));
        QString name = textOfBytes(m_source.bytes(at + 1, size));
        at += (size + 4) & ~qint64(3);
        bool isLayer = true;
        forEachBlock(at, std::min(end, m_source.size()), 1,
                     [&](const QByteArray &key, qint64 from, qint64) {
                         if (key == "luni")
                             name = unicodeText(from, name);
                         if (key == "lsct")
                             isLayer = number(from, 4) != kEndOfGroup;
                     });
        if (isLayer && m_source.contains(end, 0))
            m_names.append(name);
        return end;
    }

    template <typename Visit>
    void forEachBlock(qint64 at, qint64 end, qint64 multiple, Visit visit)
    {
        for (int i = 0; i < kMostBlocks && at + 12 <= end; ++i) {
            if (!m_source.startsWith(at, "8BIM") && !m_source.startsWith(at, "8B64"))
                return;
            const QByteArray key = m_source.bytes(at + 4, 4);
            const int wide = m_isLarge && isLong(key) ? 8 : 4;
            const qint64 size = length(at + 8, wide);
            const qint64 from = at + 8 + wide;
            visit(key, from, from + size);
            at = from + (size + multiple - 1) / multiple * multiple;
        }
    }

    static bool isLong(const QByteArray &key)
    {
        return std::any_of(std::begin(kLongBlocks), std::end(kLongBlocks),
                           [&](const char *block) { return key == block; });
    }

    QString unicodeText(qint64 at, const QString &otherwise)
    {
        const qint64 units = length(at, 4);
        if (units <= 0 || units > kLongestName)
            return otherwise;
        QStringDecoder decoder(QStringDecoder::Utf16BE, QStringDecoder::Flag::ConvertInitialBom);
        QString text = decoder(m_source.bytes(at + 4, units * 2));
        return text.remove(QChar(0));
    }

    /// A length, never beyond the end of the file, so that sums of them cannot overflow.
    qint64 length(qint64 at, int bytes)
    {
        return static_cast<qint64>(
            std::min(number(at, bytes), static_cast<quint64>(m_source.size())));
    }
    quint64 number(qint64 at, int bytes) { return m_source.big(at, bytes).value_or(0); }

    ByteSource &m_source;
    ImageFacts m_facts;
    QVariantList m_names;
    bool m_isLarge = false;
};

} // namespace

ImageFacts walkPsd(ByteSource &source)
{
    return Walk(source).run();
}
