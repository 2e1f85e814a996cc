// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/FormatHeaders.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kHeaderSize = 13;
constexpr int kMostBlocks = 100000;
constexpr qsizetype kLargestBlock = qsizetype{16} * 1024 * 1024;
constexpr quint64 kExtension = 0x21;
constexpr quint64 kGraphicControl = 0xF9;
constexpr quint64 kApplication = 0xFF;
constexpr int kDepth = 8;
constexpr quint64 kFrame = 0x2C;
constexpr qint64 kFrameHeader = 10;
constexpr qint64 kFarthestLoop = qint64{16} * 1024 * 1024;
constexpr double kHundredths = 100;
constexpr quint64 kHurriedDelay = 1; ///< and below, in hundredths
constexpr double kDelayOfHurried = 0.1;

/// Goes over the blocks up to the first frame: what describes the whole picture stands there, but
/// for the loop extension, which some writers put behind frames.
class Walk
{
public:
    explicit Walk(ByteSource &source)
        : m_source(source)
    {
    }

    ImageFacts run()
    {
        if (!readScreen())
            return m_facts;
        for (m_blocks = 0; m_blocks < kMostBlocks && readBlock(); ++m_blocks) {
        }
        findLoopBehindFrames();
        m_facts.dictionaries.insert(u"{GIF}"_s, m_gif);
        return m_facts;
    }

private:
    bool readScreen()
    {
        if (!m_source.contains(0, kHeaderSize))
            return false;
        m_facts.width = static_cast<qint64>(m_source.little(6, 2).value_or(0));
        m_facts.height = static_cast<qint64>(m_source.little(8, 2).value_or(0));
        const quint64 flags = number(10, 1);
        m_facts.depth = kDepth;
        m_facts.colorModel = kModelRgb;
        m_facts.isIndexed = true;
        m_facts.hasAlpha = false;
        m_gif.insert(u"HasGlobalColorMap"_s, flags & 0x80 ? 1 : 0);
        m_at = kHeaderSize;
        if (flags & 0x80)
            readColorMap(flags);
        return true;
    }

    static qint64 colorMapSize(quint64 flags) { return qint64(3) << ((flags & 7) + 1); }

    void readColorMap(quint64 flags)
    {
        const qint64 size = colorMapSize(flags);
        const QByteArray map = m_source.bytes(m_at, size);
        if (!map.isEmpty())
            m_gif.insert(u"ImageColorMap"_s, map);
        m_at += size;
    }

    bool readBlock()
    {
        const quint64 kind = number(m_at, 1);
        if (kind != kExtension)
            return false; // the first frame or the end
        const quint64 label = number(m_at + 1, 1);
        m_at += 2;
        if (label == kGraphicControl)
            readGraphicControl();
        if (label == kApplication)
            return readApplication();
        return skipSubBlocks();
    }

    void readGraphicControl()
    {
        const quint64 stored = number(m_at + 2, 2);
        const double delay = static_cast<double>(stored) / kHundredths;
        m_facts.hasAlpha = (number(m_at + 1, 1) & 1) != 0;
        m_gif.insert(u"UnclampedDelayTime"_s, delay);
        m_gif.insert(u"DelayTime"_s, stored <= kHurriedDelay ? kDelayOfHurried : delay);
    }

    bool readApplication()
    {
        const QByteArray name = m_source.bytes(m_at + 1, 11);
        if (name == "ICCRGBG1012") {
            m_at += 12;
            return readProfile();
        }
        if (name == "XMP DataXMP") {
            m_at += 12;
            return readPacket();
        }
        return readLoop();
    }

    bool readLoop()
    {
        const QByteArray name = m_source.bytes(m_at + 1, 11);
        const bool isLoop = name == "NETSCAPE2.0" || name == "ANIMEXTS1.0";
        if (isLoop && number(m_at + 12, 1) >= 3 && number(m_at + 13, 1) == 1 && !hasLoop())
            m_gif.insert(u"LoopCount"_s, static_cast<int>(number(m_at + 14, 2)));
        return skipSubBlocks();
    }

    bool hasLoop() const { return m_gif.contains(u"LoopCount"_s); }

    void findLoopBehindFrames()
    {
        for (; m_blocks < kMostBlocks && m_at < kFarthestLoop && !hasLoop(); ++m_blocks) {
            const quint64 kind = number(m_at, 1);
            if (kind == kFrame)
                skipFrame();
            else if (kind == kExtension)
                skipExtension();
            else
                return;
        }
    }

    void skipExtension()
    {
        const bool isApplication = number(m_at + 1, 1) == kApplication;
        m_at += 2;
        if (isApplication)
            readLoop();
        else
            skipSubBlocks();
    }

    void skipFrame()
    {
        const quint64 flags = number(m_at + kFrameHeader - 1, 1);
        // One byte in front of the pixels tells the size of their codes.
        m_at += kFrameHeader + (flags & 0x80 ? colorMapSize(flags) : 0) + 1;
        skipSubBlocks();
    }

    bool readProfile()
    {
        while (const auto size = static_cast<qint64>(number(m_at, 1))) {
            if (m_facts.profile.size() < kLargestBlock)
                m_facts.profile += m_source.bytes(m_at + 1, size);
            m_at += 1 + size;
        }
        ++m_at;
        return m_source.contains(m_at, 1);
    }

    /// The packet is not cut into sub-blocks, but ends in bytes that lead a reader of those out.
    bool readPacket()
    {
        const qint64 start = m_at;
        const bool goesOn = skipSubBlocks();
        const qint64 size = std::min(m_at - start, m_source.size() - start);
        if (m_facts.xmp.isEmpty() && size > 0 && size <= kLargestBlock) {
            const QByteArray packet = m_source.bytes(start, size);
            m_facts.xmp = packet.left(packet.lastIndexOf("\x01\xFF\xFE"));
        }
        return goesOn;
    }

    bool skipSubBlocks()
    {
        while (const auto size = static_cast<qint64>(number(m_at, 1)))
            m_at += 1 + size;
        ++m_at;
        return m_source.contains(m_at, 1);
    }

    /// 0 behind the end, which ends every list of sub-blocks.
    quint64 number(qint64 at, int bytes) { return m_source.little(at, bytes).value_or(0); }

    ByteSource &m_source;
    qint64 m_at = 0;
    int m_blocks = 0;
    ImageFacts m_facts;
    QVariantMap m_gif;
};

} // namespace

ImageFacts walkGif(ByteSource &source)
{
    return Walk(source).run();
}
