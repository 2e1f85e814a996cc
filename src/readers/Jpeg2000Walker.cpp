// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/BmffItems.h"
#include "readers/FormatHeaders.h"
#include "readers/Resolution.h"

#include <algorithm>
#include <functional>

namespace {

constexpr int kMostBoxes = 1000;
constexpr qint64 kLargestProfile = qint64{16} * 1024 * 1024;
constexpr quint64 kEnumerated = 1;
constexpr quint64 kSrgb = 16;
constexpr quint64 kGray = 17;
constexpr quint64 kVaryingDepth = 255;

class Walk
{
public:
    explicit Walk(ByteSource &source)
        : m_source(source)
    {
    }

    ImageFacts run()
    {
        if (m_source.startsWith(0, "\xFF\x4F"))
            readCodestream(0);
        else
            forEachBox(0, m_source.size(), [this](const BmffBox &box) {
                if (box.type == "jp2h")
                    readHeader(box);
                if (box.type == "jp2c")
                    readCodestream(box.start);
            });
        return m_facts;
    }

private:
    void forEachBox(qint64 at, qint64 end, const std::function<void(const BmffBox &)> &visit)
    {
        forEachBmffBox(m_source, at, end, kMostBoxes, [&visit](const BmffBox &box) {
            visit(box);
            return true;
        });
    }

    void readHeader(const BmffBox &header)
    {
        m_facts.hasAlpha = false;
        forEachBox(header.start, header.end, [this](const BmffBox &box) {
            if (box.type == "ihdr")
                readImageHeader(box.start);
            else if (box.type == "colr")
                readColor(box.start, box.end);
            else if (box.type == "pclr")
                m_facts.isIndexed = true;
            else if (box.type == "cdef")
                readChannels(box);
            else if (box.type == "res ")
                readResolution(box);
        });
    }

    void readImageHeader(qint64 at)
    {
        m_facts.height = static_cast<qint64>(number(at, 4));
        m_facts.width = static_cast<qint64>(number(at + 4, 4));
        m_facts.colorModel = number(at + 8, 2) < 3 ? kModelGray : kModelRgb;
        const quint64 depth = number(at + 10, 1);
        m_facts.depth = depth == kVaryingDepth ? 0 : static_cast<int>(depth & 0x7F) + 1;
    }

    void readColor(qint64 at, qint64 end)
    {
        if (number(at, 1) != kEnumerated) {
            m_facts.profile = m_source.bytes(at + 3, std::min(end - at - 3, kLargestProfile));
            return;
        }
        const quint64 space = number(at + 3, 4);
        m_facts.colorModel = space == kGray ? kModelGray : kModelRgb;
        m_facts.isSrgb = space == kSrgb;
    }

    void readChannels(const BmffBox &box)
    {
        constexpr qint64 kCountSize = 2;
        constexpr qint64 kChannelSize = 6;
        const auto count = static_cast<qint64>(number(box.start, 2));
        const qint64 there = (box.end - box.start - kCountSize) / kChannelSize;
        for (qint64 i = 0; i < std::min(count, there) && m_facts.hasAlpha == false; ++i) {
            const quint64 kind = number(box.start + kCountSize + i * kChannelSize + 2, 2);
            m_facts.hasAlpha = kind == 1 || kind == 2;
        }
    }

    void readResolution(const BmffBox &resolution)
    {
        forEachBox(resolution.start, resolution.end, [this](const BmffBox &box) {
            m_facts.dpiHeight = dpi(box.start, box.start + 8);
            m_facts.dpiWidth = dpi(box.start + 4, box.start + 9);
        });
    }

    double dpi(qint64 at, qint64 exponentAt)
    {
        auto dots = static_cast<double>(number(at, 2));
        auto metres = static_cast<double>(number(at + 2, 2));
        const auto exponent = static_cast<signed char>(number(exponentAt, 1));
        for (int i = 0; i < exponent; ++i)
            dots *= 10;
        for (int i = 0; i > exponent; --i)
            metres *= 10;
        return metres > 0 ? dpiOfMetres(dots, metres) : 0;
    }

    void readCodestream(qint64 at)
    {
        if (number(at + 2, 2) != 0xFF51)
            return;
        // What decoders go by, also where a header in front says otherwise.
        m_facts.depth = static_cast<int>(number(at + 42, 1) & 0x7F) + 1;
        if (m_facts.width > 0)
            return;
        m_facts.width =
            static_cast<qint64>(number(at + 8, 4)) - static_cast<qint64>(number(at + 16, 4));
        m_facts.height =
            static_cast<qint64>(number(at + 12, 4)) - static_cast<qint64>(number(at + 20, 4));
        m_facts.colorModel = number(at + 40, 2) < 3 ? kModelGray : kModelRgb;
    }

    quint64 number(qint64 at, int bytes) { return m_source.big(at, bytes).value_or(0); }

    ByteSource &m_source;
    ImageFacts m_facts;
};

} // namespace

ImageFacts walkJpeg2000(ByteSource &source)
{
    return Walk(source).run();
}
