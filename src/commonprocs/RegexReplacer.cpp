// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/RegexReplacer.h"

#include "commonprocs/RegexTemplate.h"

#include <unicode/uregex.h>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMaxPatternUnits = 65'536;
// The work between two saved states grows with the text, that of saving one with the pattern.
constexpr qsizetype kTextUnitsPerExtraCost = 256;
constexpr qsizetype kPatternUnitsPerExtraCost = 512;
constexpr qsizetype kGroupsPerExtraCost = 16;
constexpr qsizetype kPiecesPerStep = 10'000;

struct Reason
{
    UErrorCode code;
    QLatin1StringView text;
};

constexpr QLatin1StringView kEmptyPattern{"The pattern is empty."};
constexpr QLatin1StringView kTooLong{"The pattern or the replacement is too long."};
constexpr QLatin1StringView kUnknownReason{"The pattern cannot be used (%1)."};
constexpr QLatin1StringView kPlace{"%1 (At character %2.)"};

constexpr std::array kReasons{
    Reason{U_REGEX_INTERNAL_ERROR, "The pattern cannot be used; it may be nested too deeply."_L1},
    Reason{U_REGEX_RULE_SYNTAX, "The pattern is not written correctly."_L1},
    Reason{U_REGEX_BAD_ESCAPE_SEQUENCE, "The pattern has an unknown escape sequence."_L1},
    Reason{U_REGEX_PROPERTY_SYNTAX, "The pattern names an unknown property."_L1},
    Reason{U_REGEX_UNIMPLEMENTED, "The pattern uses a feature that does not exist."_L1},
    Reason{U_REGEX_MISMATCHED_PAREN, "A parenthesis in the pattern has no partner."_L1},
    Reason{U_REGEX_NUMBER_TOO_BIG, "A number in the pattern is too large."_L1},
    Reason{U_REGEX_BAD_INTERVAL, "A repetition {min,max} is not written correctly."_L1},
    Reason{U_REGEX_MAX_LT_MIN, "In a repetition {min,max} the second number is the smaller."_L1},
    Reason{U_REGEX_INVALID_BACK_REF, "The pattern refers back to a group that it lacks."_L1},
    Reason{U_REGEX_INVALID_FLAG, "The pattern has an unknown option."_L1},
    Reason{U_REGEX_LOOK_BEHIND_LIMIT, "A look-behind in the pattern has no limit."_L1},
    Reason{U_REGEX_MISSING_CLOSE_BRACKET, "A bracket in the pattern is not closed."_L1},
    Reason{U_REGEX_INVALID_RANGE, "A range in brackets runs backwards."_L1},
    Reason{U_REGEX_PATTERN_TOO_BIG, kTooLong},
    Reason{U_REGEX_INVALID_CAPTURE_GROUP_NAME, "A group's name is not allowed or used twice."_L1},
};

QString reasonText(UErrorCode status, const UParseError &place)
{
    const auto reason = std::find_if(kReasons.begin(), kReasons.end(),
                                     [status](const Reason &each) { return each.code == status; });
    if (reason == kReasons.end())
        return QString(kUnknownReason).arg(QLatin1StringView(u_errorName(status)));
    return place.offset > 0 ? QString(kPlace).arg(reason->text).arg(place.offset)
                            : QString(reason->text);
}

struct CloseExpression
{
    void operator()(URegularExpression *expression) const { uregex_close(expression); }
};
using Expression = std::unique_ptr<URegularExpression, CloseExpression>;

} // namespace

class RegexReplacer::Private
{
public:
    Private(const QString &pattern, const QString &replacement)
        : m_pattern(pattern)
        , m_replacement(replacement)
    {
        compile();
    }

    QString replaceAll(const QString &text, Budget &budget);
    std::vector<Match> matches(const QString &text, Budget &budget);

    QString m_pattern;
    QString m_replacement;
    QString m_problem;
    Expression m_expression; ///< null when pattern or template are invalid

private:
    bool begin(const QString &text, Budget &budget, UErrorCode &status);
    void compile();
    void compilePattern();
    bool appendReplacement(QString &result, QStringView text, UErrorCode &status);
    static UBool U_CALLCONV countStep(const void *context, int32_t steps);
    bool takeStep() const;

    RegexTemplate m_template;
    Budget *m_budget = nullptr; ///< while replacing
    qint64 m_patternCost = 1;   ///< of a step in a short text
    qint64 m_stepCost = 1;
    qsizetype m_appendedPieces = 0; ///< since the last step
};

void RegexReplacer::Private::compile()
{
    compilePattern();
    if (!m_expression)
        return;
    TResult<RegexTemplate> parsed = RegexTemplate::parse(m_replacement, m_expression.get());
    if (!parsed) {
        m_problem = parsed.message();
        m_expression.reset();
        return;
    }
    m_template = std::move(parsed).value();
    UErrorCode status = U_ZERO_ERROR;
    const qsizetype groups = uregex_groupCount(m_expression.get(), &status);
    m_patternCost =
        1 + std::max(m_pattern.size() / kPatternUnitsPerExtraCost, groups / kGroupsPerExtraCost);
}

void RegexReplacer::Private::compilePattern()
{
    if (m_pattern.isEmpty()) {
        m_problem = kEmptyPattern;
        return;
    }
    if (std::max(m_pattern.size(), m_replacement.size()) > kMaxPatternUnits) {
        m_problem = kTooLong;
        return;
    }
    UErrorCode status = U_ZERO_ERROR;
    UParseError place{};
    m_expression.reset(uregex_open(reinterpret_cast<const UChar *>(m_pattern.utf16()),
                                   static_cast<int32_t>(m_pattern.size()), 0, &place, &status));
    if (m_expression)
        uregex_setMatchCallback(m_expression.get(), countStep, this, &status);
    if (U_FAILURE(status)) {
        m_problem = reasonText(status, place);
        m_expression.reset();
    }
}

UBool RegexReplacer::Private::countStep(const void *context, int32_t)
{
    return static_cast<const Private *>(context)->takeStep();
}

/// False when the budget has run out.
bool RegexReplacer::Private::takeStep() const
{
    m_budget->steps -= m_stepCost;
    m_budget->exceeded = m_budget->steps <= 0;
    return !m_budget->exceeded;
}

/// Appends the template for the current match; false when the budget has run out. The pieces of
/// long templates, whose groups may all be empty, count as steps.
bool RegexReplacer::Private::appendReplacement(QString &result, QStringView text,
                                               UErrorCode &status)
{
    m_appendedPieces += static_cast<qsizetype>(m_template.pieces.size());
    for (; m_appendedPieces >= kPiecesPerStep; m_appendedPieces -= kPiecesPerStep)
        if (!takeStep())
            return false;
    for (const RegexTemplate::Piece &piece : m_template.pieces) {
        QStringView addition = piece.literal;
        if (piece.group != RegexTemplate::kNoGroup) {
            const int32_t start = uregex_start(m_expression.get(), piece.group, &status);
            const int32_t end = uregex_end(m_expression.get(), piece.group, &status);
            if (start < 0) // the group took no part in the match
                continue;
            addition = text.sliced(start, end - start);
        }
        m_budget->exceeded = result.size() + addition.size() > kMaxUnits;
        if (m_budget->exceeded)
            return false;
        result += addition;
    }
    return true;
}

/// Takes the text up; false when there is nothing to work with. The text outlives the search.
bool RegexReplacer::Private::begin(const QString &text, Budget &budget, UErrorCode &status)
{
    if (!m_expression || budget.exceeded)
        return false;
    if (text.size() > kMaxUnits) {
        budget.exceeded = true;
        return false;
    }
    m_budget = &budget;
    m_stepCost = m_patternCost * (1 + text.size() / kTextUnitsPerExtraCost);
    m_appendedPieces = 0;
    uregex_setText(m_expression.get(), reinterpret_cast<const UChar *>(text.constData()),
                   static_cast<int32_t>(text.size()), &status);
    return true;
}

std::vector<RegexReplacer::Match> RegexReplacer::Private::matches(const QString &text,
                                                                  Budget &budget)
{
    std::vector<Match> matches;
    UErrorCode status = U_ZERO_ERROR;
    if (!begin(text, budget, status))
        return matches;
    while (uregex_findNext(m_expression.get(), &status)) {
        const int32_t start = uregex_start(m_expression.get(), 0, &status);
        const int32_t end = uregex_end(m_expression.get(), 0, &status);
        matches.push_back({start, end - start});
    }
    return matches;
}

QString RegexReplacer::Private::replaceAll(const QString &text, Budget &budget)
{
    UErrorCode status = U_ZERO_ERROR;
    if (!begin(text, budget, status))
        return {};
    URegularExpression *expression = m_expression.get();
    if (!uregex_findNext(expression, &status)) {
        if (U_FAILURE(status))
            return {};
        return text.isNull() ? u""_s : text;
    }
    QString result(u""_s);
    qsizetype copied = 0;
    do {
        const int32_t start = uregex_start(expression, 0, &status);
        const int32_t end = uregex_end(expression, 0, &status);
        if (U_FAILURE(status))
            return {};
        result += QStringView(text).sliced(copied, start - copied);
        copied = end;
        if (!appendReplacement(result, text, status))
            return {};
    } while (uregex_findNext(expression, &status));
    if (U_FAILURE(status))
        return {};
    result += QStringView(text).sliced(copied);
    return result;
}

RegexReplacer::RegexReplacer()
    : RegexReplacer(QString(), QString())
{
}

RegexReplacer::RegexReplacer(const QString &pattern, const QString &replacement)
    : m_private(std::make_unique<Private>(pattern, replacement))
{
}

RegexReplacer::~RegexReplacer() = default;
RegexReplacer::RegexReplacer(RegexReplacer &&) noexcept = default;
RegexReplacer &RegexReplacer::operator=(RegexReplacer &&) noexcept = default;

bool RegexReplacer::isValid() const
{
    return m_private->m_expression != nullptr;
}

QString RegexReplacer::problem() const
{
    return m_private->m_problem;
}

const QString &RegexReplacer::pattern() const
{
    return m_private->m_pattern;
}

const QString &RegexReplacer::replacement() const
{
    return m_private->m_replacement;
}

QString RegexReplacer::replaceAll(const QString &text, Budget &budget) const
{
    return m_private->replaceAll(text, budget);
}

std::vector<RegexReplacer::Match> RegexReplacer::matches(const QString &text, Budget &budget) const
{
    return m_private->matches(text, budget);
}
