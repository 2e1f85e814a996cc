// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/FormatHeaders.h"

#include <QByteArrayView>

#include <algorithm>

namespace {

constexpr qint64 kLongestHeader = 4096; ///< comments included
constexpr int kLargestByte = 255;
constexpr int kMostDigits = 9;

/// The numbers of a header, with comments between them.
class Numbers
{
public:
    explicit Numbers(QByteArrayView text)
        : m_text(text)
    {
    }

    /// 0 when there is none.
    int next()
    {
        skipBlanks();
        int number = 0;
        for (int digits = 0; digits < kMostDigits && isDigit(); ++digits)
            number = number * 10 + (m_text[m_at++] - '0');
        return number;
    }

private:
    bool isAtEnd() const { return m_at >= m_text.size(); }
    bool isDigit() const { return !isAtEnd() && m_text[m_at] >= '0' && m_text[m_at] <= '9'; }
    void skipBlanks()
    {
        while (!isAtEnd() && !isDigit()) {
            const qsizetype end = m_text[m_at] == '#' ? m_text.indexOf('\n', m_at) : m_at;
            m_at = end < 0 ? m_text.size() : end + 1;
        }
    }

    QByteArrayView m_text;
    qsizetype m_at = 0;
};

} // namespace

ImageFacts readPnmHeader(ByteSource &source)
{
    constexpr qint64 kKind = 2;
    ImageFacts facts;
    const QByteArray header = source.bytes(0, std::min(source.size(), kLongestHeader));
    if (header.size() < kKind)
        return facts;
    Numbers numbers(QByteArrayView(header).sliced(kKind));
    facts.width = numbers.next();
    facts.height = numbers.next();
    const char kind = header[1];
    const bool isBitmap = kind == '1' || kind == '4';
    const bool isColour = kind == '3' || kind == '6';
    if (facts.width > 0 && facts.height > 0) {
        facts.colorModel = isColour ? kModelRgb : kModelGray;
        facts.depth = isBitmap ? 1 : numbers.next() > kLargestByte ? 16 : 8;
    }
    return facts;
}
