// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/RegexTemplate.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <algorithm>

namespace {

constexpr QLatin1StringView kBadReference{
    "In the replacement, \"$\" must be followed by a group's number or {name}."};
constexpr QLatin1StringView kNoSuchGroup{
    "The replacement refers to a group that the pattern lacks."};

class TemplateParser
{
public:
    TemplateParser(const QString &text, URegularExpression *expression)
        : m_text(text)
        , m_expression(expression)
    {
        UErrorCode status = U_ZERO_ERROR;
        m_groupCount = uregex_groupCount(expression, &status);
    }

    /// Empty when the template is valid.
    QString problem() const { return m_problem; }

    RegexTemplate parse()
    {
        while (m_problem.isEmpty() && m_at < m_text.size()) {
            const QChar unit = m_text.at(m_at);
            ++m_at;
            if (unit == u'\\')
                readEscape();
            else if (unit == u'$')
                readReference();
            else
                m_literal += unit;
        }
        flush();
        return std::move(m_template);
    }

private:
    /// A lone backslash at the end stands for nothing; \uhhhh and \Uhhhhhhhh for a character; any
    /// other for the character behind it.
    void readEscape()
    {
        if (m_at == m_text.size())
            return;
        const char32_t next = codePoint();
        if (next == U'u' || next == U'U') {
            int32_t offset = static_cast<int32_t>(m_at);
            const auto unitAt = [](int32_t index, void *text) {
                return static_cast<UChar>(static_cast<const QString *>(text)->at(index).unicode());
            };
            const UChar32 escaped =
                u_unescapeAt(unitAt, &offset, static_cast<int32_t>(m_text.size()),
                             const_cast<QString *>(&m_text));
            if (escaped >= 0) {
                append(static_cast<char32_t>(escaped));
                m_at = offset;
                return;
            }
        }
        append(next);
        m_at += length(next);
    }

    void readReference()
    {
        const char32_t next = m_at < m_text.size() ? codePoint() : U'\0';
        if (next == U'{') {
            ++m_at;
            readName();
        } else if (u_isdigit(static_cast<UChar32>(next))) {
            readNumber();
        } else {
            m_problem = kBadReference;
        }
    }

    /// Takes digits as long as they make the number of an existing group.
    void readNumber()
    {
        int32_t group = -1;
        while (m_at < m_text.size()) {
            const char32_t digit = codePoint();
            const auto point = static_cast<UChar32>(digit);
            if (!u_isdigit(point))
                break;
            const int32_t longer = std::max(group, 0) * 10 + u_charDigitValue(point);
            if (longer > m_groupCount)
                break;
            group = longer;
            m_at += length(digit);
        }
        addGroup(group);
    }

    void readName()
    {
        const qsizetype end = m_text.indexOf(u'}', m_at);
        const QStringView name = QStringView(m_text).mid(m_at, std::max(end - m_at, qsizetype{0}));
        // The engine takes no "0" in a template's group names, although patterns may have them.
        const auto isNameUnit = [](QChar unit) {
            return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') ||
                   (unit >= u'1' && unit <= u'9');
        };
        if (end < 0 || name.isEmpty() || !std::all_of(name.begin(), name.end(), isNameUnit)) {
            m_problem = end < 0 || name.isEmpty() ? kBadReference : kNoSuchGroup;
            return;
        }
        UErrorCode status = U_ZERO_ERROR;
        const int32_t group =
            uregex_groupNumberFromName(m_expression, reinterpret_cast<const UChar *>(name.utf16()),
                                       static_cast<int32_t>(name.size()), &status);
        m_at = end + 1;
        addGroup(U_FAILURE(status) ? -1 : group);
    }

    void addGroup(int32_t group)
    {
        if (group < 0) {
            m_problem = kNoSuchGroup;
            return;
        }
        flush();
        m_template.pieces.push_back({QString(), group});
    }

    void flush()
    {
        if (!m_literal.isEmpty())
            m_template.pieces.push_back({m_literal, RegexTemplate::kNoGroup});
        m_literal.clear();
    }

    /// The character at the reading place; half a surrogate pair stands for itself.
    char32_t codePoint() const
    {
        const QChar unit = m_text.at(m_at);
        if (unit.isHighSurrogate() && m_at + 1 < m_text.size() &&
            m_text.at(m_at + 1).isLowSurrogate())
            return QChar::surrogateToUcs4(unit, m_text.at(m_at + 1));
        return unit.unicode();
    }
    static qsizetype length(char32_t point) { return QChar::requiresSurrogates(point) ? 2 : 1; }
    void append(char32_t point) { m_literal += QChar::fromUcs4(point); }

    const QString &m_text;
    URegularExpression *m_expression;
    int32_t m_groupCount = 0;
    qsizetype m_at = 0;
    QString m_literal;
    RegexTemplate m_template;
    QString m_problem;
};

} // namespace

TResult<RegexTemplate> RegexTemplate::parse(const QString &text, URegularExpression *expression)
{
    TemplateParser parser(text, expression);
    RegexTemplate parsed = parser.parse();
    if (!parser.problem().isEmpty())
        return TResult<RegexTemplate>::failure(parser.problem());
    return parsed;
}
