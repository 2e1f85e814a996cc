// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/TCSVStream.h"

#include "settings/logging.h"

#include <QtEndian>

#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Encoding = TCSVStream::Encoding;

constexpr qint64 kFirstBlock = 512;
constexpr qint64 kBlock = 65536;     ///< even, so that no block but the last cuts a UTF-16 unit
constexpr size_t kCarriedUnits = 16; ///< more than a converter holds back from an earlier block
constexpr qsizetype kLongestCut = 3; ///< bytes of a UTF-8 character that a block's end may cut off

constexpr QLatin1StringView kUnknownEncoding{
    "unable to determine stream encoding; assuming MacOSRoman"};

/// What a file may begin with.
struct Mark
{
    QByteArrayView bytes;
    Encoding encoding;
};

/// In this order: the UTF-32 mark begins with the UTF-16 one.
constexpr Mark kMarks[] = {
    {{"\x00\x00\xFE\xFF", 4}, Encoding::Utf32BE}, {{"\xFF\xFE\x00\x00", 4}, Encoding::Utf32LE},
    {{"\x1B$)C", 4}, Encoding::Iso2022Kr},        {{"\xFF\xFE", 2}, Encoding::Utf16LE},
    {{"\xFE\xFF", 2}, Encoding::Utf16BE},         {{"\xEF\xBB\xBF", 3}, Encoding::Utf8},
};

/// The converter, and the name for people.
struct EncodingNames
{
    const char *converter;
    QLatin1StringView shown;
};

constexpr EncodingNames namesOf(Encoding encoding)
{
    switch (encoding) {
    case Encoding::Utf8:
        return {"UTF-8", "UTF-8"_L1};
    case Encoding::Utf16LE:
    case Encoding::Utf16BE:
        return {nullptr, "UTF-16"_L1};
    case Encoding::Utf32LE:
        return {"UTF-32LE", "UTF-32"_L1};
    case Encoding::Utf32BE:
        return {"UTF-32BE", "UTF-32"_L1};
    case Encoding::Iso2022Kr:
        return {"windows-949", "ISO-2022-KR"_L1};
    case Encoding::MacRoman:
        break;
    }
    return {"macintosh", "Mac OS Roman"_L1};
}

bool isUtf8ButForItsEnd(QByteArrayView block)
{
    for (qsizetype cut = 0; cut <= std::min(kLongestCut, block.size()); ++cut) {
        if (QUtf8StringView(block.first(block.size() - cut)).isValidUtf8())
            return true;
    }
    return false;
}

/// Finds the encoding and removes its mark from the block.
Encoding detectEncoding(QByteArray &block)
{
    for (const Mark &mark : kMarks) {
        if (block.startsWith(mark.bytes)) {
            block.remove(0, mark.bytes.size());
            return mark.encoding;
        }
    }
    if (isUtf8ButForItsEnd(block))
        return Encoding::Utf8;
    zelConsole(kUnknownEncoding);
    return Encoding::MacRoman;
}

QString undecodableText(Encoding encoding)
{
    return u"The file is not valid %1. Save it as UTF-8 and load it again."_s.arg(
        namesOf(encoding).shown);
}

UConverter *openConverter(const char *name)
{
    UErrorCode status = U_ZERO_ERROR;
    UConverter *converter = ucnv_open(name, &status);
    ucnv_setToUCallBack(converter, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    return U_SUCCESS(status) ? converter : nullptr;
}

} // namespace

QString TCSVStream::nameOf(Encoding encoding)
{
    return namesOf(encoding).shown;
}

void TCSVStream::ConverterCloser::operator()(UConverter *converter) const
{
    ucnv_close(converter);
}

TCSVStream::TCSVStream(QIODevice &device)
    : m_device(device)
{
    m_block = readBlock(kFirstBlock);
    const qsizetype size = m_block.size();
    m_encoding = detectEncoding(m_block);
    m_bytesDecoded = size - m_block.size();
    if (const char *name = namesOf(m_encoding).converter) {
        m_converter.reset(openConverter(name));
        if (!m_converter)
            endUndecodable(m_bytesDecoded);
    }
}

TCSVStream::~TCSVStream() = default;

QString TCSVStream::tooLargeText()
{
    return u"The file is larger than 2 GiB, too large for a table."_s;
}

QStringView TCSVStream::available()
{
    if (m_position == m_units.size())
        fill();
    return QStringView(m_units).sliced(static_cast<qsizetype>(m_position));
}

QByteArray TCSVStream::readBlock(qint64 size)
{
    QByteArray block(size, Qt::Uninitialized);
    qint64 filled = 0;
    while (filled < size) {
        const qint64 count = m_device.read(block.data() + filled, size - filled);
        if (count < 0)
            m_problem = m_device.errorString();
        if (count <= 0)
            break;
        filled += count;
    }
    block.truncate(filled);
    m_bytesRead += filled;
    m_deviceEnded = filled < size;
    if (m_bytesRead > kMaxBytes) {
        m_problem = tooLargeText();
        m_deviceEnded = true;
    }
    return block;
}

void TCSVStream::fill()
{
    m_units.clear();
    m_position = 0;
    while (m_units.empty() && !m_ended) {
        if (m_block.isEmpty() && !m_deviceEnded)
            m_block = readBlock(kBlock);
        m_ended = m_deviceEnded;
        const QByteArray block = std::exchange(m_block, {});
        decode(block);
        m_bytesDecoded += block.size();
        endAtNul();
    }
}

void TCSVStream::decode(QByteArrayView bytes)
{
    if (!m_converter) {
        decodeUtf16(bytes);
    } else if (m_encoding == Encoding::Iso2022Kr) {
        decodeByConverter(m_korean.toEightBit(bytes, m_deviceEnded));
        if (m_korean.isInvalid())
            endWithProblem(undecodableText(m_encoding));
    } else {
        decodeByConverter(bytes);
    }
}

void TCSVStream::decodeUtf16(QByteArrayView bytes)
{
    const auto units = static_cast<size_t>(bytes.size() / 2);
    m_units.resize(units);
    if (m_encoding == Encoding::Utf16LE)
        qFromLittleEndian<char16_t>(bytes.data(), bytes.size() / 2, m_units.data());
    else
        qFromBigEndian<char16_t>(bytes.data(), bytes.size() / 2, m_units.data());
    if (bytes.size() % 2 != 0)
        endUndecodable(m_bytesDecoded + bytes.size() - 1);
}

void TCSVStream::decodeByConverter(QByteArrayView bytes)
{
    m_units.resize(static_cast<size_t>(bytes.size()) + kCarriedUnits);
    const char *source = bytes.data();
    char16_t *target = m_units.data();
    UErrorCode status = U_ZERO_ERROR;
    ucnv_toUnicode(m_converter.get(), &target, target + m_units.size(), &source,
                   source + bytes.size(), nullptr, m_deviceEnded, &status);
    m_units.resize(static_cast<size_t>(target - m_units.data()));
    if (U_SUCCESS(status))
        return;
    char invalid[8];
    auto length = static_cast<int8_t>(sizeof invalid);
    UErrorCode ignored = U_ZERO_ERROR;
    ucnv_getInvalidChars(m_converter.get(), invalid, &length, &ignored);
    endUndecodable(m_bytesDecoded + (source - bytes.data()) - length);
}

void TCSVStream::endAtNul()
{
    const size_t nul = m_units.find(u'\0');
    if (nul == std::u16string::npos)
        return;
    m_units.resize(nul);
    m_problem.clear();
    m_endedAtNul = true;
    m_ended = true;
}

void TCSVStream::endUndecodable(qint64 offset)
{
    // Offsets in the eight-bit form of Korean text are not those of the file.
    if (m_encoding == Encoding::Iso2022Kr)
        endWithProblem(undecodableText(m_encoding));
    else
        endWithProblem(undecodableText(m_encoding) +
                       u" (The first bad byte is number %1.)"_s.arg(offset + 1));
}

/// The first problem stands.
void TCSVStream::endWithProblem(const QString &problem)
{
    m_ended = true;
    if (m_problem.isEmpty())
        m_problem = problem;
}
