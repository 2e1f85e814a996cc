// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/BmffItems.h"
#include "readers/FormatHeaders.h"
#include "readers/MemorySource.h"

#include <algorithm>

namespace {

constexpr qint64 kLargestBlock = qint64{16} * 1024 * 1024;
constexpr int kMostAuxiliaries = 64;
constexpr int kMostMetadataItems = 16;
// Quarter turns against the clock, of the picture and of its mirror image (left and right
// exchanged), as Exif counts orientations.
constexpr int kOrientations[2][4] = {{1, 8, 3, 6}, {2, 5, 4, 7}};
constexpr const char *kAlphaKinds[] = {"urn:mpeg:mpegB:cicp:systems:auxiliary:alpha",
                                       "urn:mpeg:hevc:2015:auxid:1", "urn:mpeg:avc:2015:auxid:1"};

/// The picture's description out of the items and properties of the meta box.
class Description
{
public:
    Description(ByteSource &file, ByteSource &meta)
        : m_file(file)
        , m_meta(meta)
        , m_items(meta)
    {
    }

    ImageFacts read()
    {
        m_facts.colorModel = kModelRgb;
        m_facts.hasAlpha = hasAlphaItem();
        for (const BmffBox &property : m_items.propertiesOf(m_items.primary()))
            readProperty(property);
        if (m_facts.depth == 0)
            readDepthOfTiles();
        readMetadataItems();
        return m_facts;
    }

private:
    void readProperty(const BmffBox &box)
    {
        if (box.type == "ispe" && m_facts.width == 0) {
            m_facts.width = static_cast<qint64>(number(box.start + 4, 4));
            m_facts.height = static_cast<qint64>(number(box.start + 8, 4));
        } else if (box.type == "pixi") {
            m_facts.depth = static_cast<int>(number(box.start + 5, 1));
            if (number(box.start + 4, 1) == 1)
                m_facts.colorModel = kModelGray;
        } else if (box.type == "irot") {
            turn(static_cast<unsigned>(number(box.start, 1)));
        } else if (box.type == "imir") {
            mirror((number(box.start, 1) & 1) != 0);
        } else if (box.type == "colr") {
            readColor(box);
        } else if (m_facts.depth == 0) {
            readCodec(box);
        }
    }

    void turn(unsigned quarters)
    {
        m_turns += quarters;
        m_facts.orientation = kOrientations[m_isMirrored][m_turns % 4];
    }

    /// Mirrors what is turned already: the turns of a mirror image go the other way.
    void mirror(bool leftAndRight)
    {
        m_isMirrored = !m_isMirrored;
        m_turns = 4 - m_turns % 4;
        turn(leftAndRight ? 0 : 2);
    }

    void readCodec(const BmffBox &box)
    {
        if (box.type == "av1C") {
            const quint64 flags = number(box.start + 2, 1);
            m_facts.depth = flags & 0x40 ? (flags & 0x20 ? 12 : 10) : 8;
            if (flags & 0x10)
                m_facts.colorModel = kModelGray;
        } else if (box.type == "hvcC") {
            m_facts.depth = 8 + static_cast<int>(number(box.start + 17, 1) & 7);
            if ((number(box.start + 16, 1) & 3) == 0)
                m_facts.colorModel = kModelGray;
        }
    }

    void readColor(const BmffBox &box)
    {
        const QByteArray kind = m_meta.bytes(box.start, 4);
        if (kind == "prof" || kind == "rICC")
            m_facts.profile = m_meta.bytes(box.start + 4, box.end - box.start - 4);
    }

    /// A picture put together from tiles has the depth of its tiles.
    void readDepthOfTiles()
    {
        for (const BmffReference &reference : m_items.references()) {
            if (reference.type != "dimg" || reference.from != m_items.primary())
                continue;
            for (const BmffBox &property : m_items.propertiesOf(reference.to)) {
                if (m_facts.depth == 0)
                    readCodec(property);
            }
            return;
        }
    }

    bool hasAlphaItem()
    {
        int auxiliaries = 0;
        for (const BmffReference &reference : m_items.references()) {
            if (reference.type != "auxl" || reference.to != m_items.primary())
                continue;
            if (++auxiliaries > kMostAuxiliaries)
                return false;
            for (const BmffBox &property : m_items.propertiesOf(reference.from)) {
                if (property.type == "auxC" && isAlpha(property))
                    return true;
            }
        }
        return false;
    }

    bool isAlpha(const BmffBox &box)
    {
        return std::any_of(std::begin(kAlphaKinds), std::end(kAlphaKinds), [&](const char *kind) {
            return m_meta.startsWith(box.start + 4, kind);
        });
    }

    void readMetadataItems()
    {
        int tries = 0;
        for (const BmffItem &item : m_items.items()) {
            const bool isBlock = item.type == "Exif" || item.type == "mime";
            if (isBlock && ++tries > kMostMetadataItems)
                return;
            if (item.type == "Exif" && m_facts.exif.isEmpty())
                m_facts.exif = exifOf(m_items.contents(item, m_file, kLargestBlock));
            if (item.type == "mime" && item.contentType == "application/rdf+xml" &&
                m_facts.xmp.isEmpty())
                m_facts.xmp = m_items.contents(item, m_file, kLargestBlock);
        }
    }

    /// Four bytes say how far behind them the TIFF structure starts.
    static QByteArray exifOf(const QByteArray &block)
    {
        MemorySource source(block);
        const quint64 offset = source.big(0, 4).value_or(0);
        if (offset + 4 > static_cast<quint64>(block.size()))
            return {};
        return block.mid(4 + static_cast<qsizetype>(offset));
    }

    quint64 number(qint64 at, int bytes) { return m_meta.big(at, bytes).value_or(0); }

    ByteSource &m_file;
    ByteSource &m_meta;
    BmffItems m_items;
    unsigned m_turns = 0;
    bool m_isMirrored = false;
    ImageFacts m_facts;
};

} // namespace

ImageFacts walkBmff(ByteSource &source)
{
    const QByteArray contents = bmffMeta(source);
    if (contents.isEmpty())
        return {};
    MemorySource meta(contents);
    return Description(source, meta).read();
}
