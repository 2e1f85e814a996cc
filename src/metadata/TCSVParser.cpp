// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/TCSVParser.h"

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

constexpr char kUnsatisfied[] = "Invalid parameter not satisfying: ";
constexpr char kNewlineDelimiter[] = "The field delimiter may not be a newline";
constexpr char kQuoteDelimiter[] = "The field delimiter may not be a double quote";
constexpr char kOctothorpeDelimiter[] = "The field delimiter may not be an octothorpe";
constexpr QLatin1StringView kUnexpectedDelimiter{
    "Unexpected delimiter. Expected '%1' (0x%2), but got '%3' (0x%4)"};

constexpr char16_t kQuote = u'"';
constexpr char16_t kOctothorpe = u'#';

constexpr bool isNewline(char16_t unit)
{
    return (unit >= u'\n' && unit <= u'\r') || unit == u'\u0085' || unit == u'\u2028' ||
           unit == u'\u2029';
}

QString hex(char16_t unit)
{
    return QString::number(unit, 16).toUpper();
}

} // namespace

TCSVParser::TCSVParser(TCSVStream *stream, char16_t delimiter)
    : m_stream(stream)
    , m_delimiter(delimiter)
{
    using namespace std::string_literals;
    if (stream == nullptr)
        throw std::logic_error(kUnsatisfied + "stream"s);
    if (delimiter == 0)
        throw std::logic_error(kUnsatisfied + "delimiter"s);
    if (isNewline(delimiter))
        throw std::logic_error(kNewlineDelimiter);
    if (delimiter == kQuote)
        throw std::logic_error(kQuoteDelimiter);
    if (delimiter == kOctothorpe)
        throw std::logic_error(kOctothorpeDelimiter);
}

void TCSVParser::parse()
{
    m_delegate->parserDidBeginDocument(*this);
    while (parseRecord()) {
    }
    if (m_stream->endedAtNul())
        m_end = End::AtNul;
    if (!m_error && !m_stream->problem().isEmpty())
        fail(TCSVError::kUnreadable, m_stream->problem());
    if (m_error)
        m_delegate->parserDidFailWithError(*this, *m_error);
    else
        m_delegate->parserDidEndDocument(*this);
}

void TCSVParser::fail(int code, const QString &text)
{
    if (!m_error)
        m_error = TCSVError{code, text, m_record};
}

/// True when another record follows.
bool TCSVParser::parseRecord()
{
    m_delegate->parserDidBeginLine(*this, ++m_record);
    for (qsizetype index = 0; parseField(); ++index) {
        m_delegate->parserDidReadField(*this, m_field, index);
        if (m_error || !parseDelimiter())
            break;
    }
    const bool endedInNewline = parseNewline();
    m_delegate->parserDidEndLine(*this, m_record);
    return endedInNewline && !m_error;
}

bool TCSVParser::parseNewline()
{
    bool any = false;
    for (; isNewline(peek()); any = true)
        advance();
    return any;
}

bool TCSVParser::parseField()
{
    m_field.clear();
    if (peek() == kQuote)
        return parseEscapedField();
    parseUnescapedField();
    return true;
}

void TCSVParser::parseUnescapedField()
{
    takeWhile([delimiter = m_delimiter](char16_t unit) {
        return unit != delimiter && unit != kQuote && !isNewline(unit);
    });
}

/// False when the text ends before the closing quote.
bool TCSVParser::parseEscapedField()
{
    takeQuote();
    for (;;) {
        takeWhile([](char16_t unit) { return unit != kQuote; });
        if (peek() != kQuote) {
            m_end = End::InQuotes;
            return false;
        }
        takeQuote();
        if (peek() != kQuote)
            return true;
        takeQuote(); // a doubled one belongs to the field
    }
}

bool TCSVParser::parseDelimiter()
{
    const char16_t unit = peek();
    if (unit == m_delimiter) {
        advance();
        return true;
    }
    if (unit != 0 && !isNewline(unit)) {
        fail(TCSVError::kUnexpectedDelimiter,
             QString(kUnexpectedDelimiter)
                 .arg(QChar(m_delimiter), hex(m_delimiter), QChar(unit), hex(unit)));
    }
    return false;
}

char16_t TCSVParser::peek()
{
    const QStringView text = m_stream->available();
    return text.isEmpty() ? u'\0' : text.front().unicode();
}

template <class Wanted>
void TCSVParser::takeWhile(Wanted wanted)
{
    for (;;) {
        const QStringView text = m_stream->available();
        const char16_t *const begin = text.utf16();
        const char16_t *const end = begin + text.size();
        const char16_t *unit = begin;
        while (unit != end && wanted(*unit))
            ++unit;
        m_field.append(begin, unit);
        m_stream->consume(unit - begin);
        if (unit != end || text.isEmpty())
            return;
    }
}

void TCSVParser::takeQuote()
{
    m_field.push_back(kQuote);
    advance();
}
