// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <algorithm>
#include <memory>
#include <vector>

/// One ICU pattern and replacement template, compiled once and used by one thread. Replaces every
/// non-overlapping match, left to right, with default options.
class RegexReplacer
{
public:
    /// Counts down over all the patterns of one name. Steps, not time, so that results do not
    /// depend on the machine's speed. A step is 10,000 saved states of the engine and about a
    /// tenth of a millisecond; in a long text, where the work between two saved states may grow
    /// with its length, a step costs accordingly more.
    struct Budget
    {
        static constexpr qint64 kStepsPerName = 2'000; ///< about 0.25 s in all
        qint64 steps = kStepsPerName;
        bool exceeded = false;

        /// For the next name of a pass over a batch: half of it for every name that has exceeded
        /// its own, so that a pattern that takes too long for thousands of names ends soon, too.
        static Budget after(int exceededNames)
        {
            return {.steps = std::max(qint64{1}, kStepsPerName >> std::min(exceededNames, 60))};
        }
    };

    /// A piece of a text.
    struct Match
    {
        qsizetype start;
        qsizetype length;
    };

    /// A text or a result of more UTF-16 units than this exceeds every budget, so that patterns
    /// that double the text cannot fill the memory.
    static constexpr qsizetype kMaxUnits = qsizetype{1} << 18U;

    /// What callers report as critical for a name whose budget was exceeded.
    static constexpr QStringView kTookTooLong =
        u"The regular expression takes too long for this name.";

    RegexReplacer();
    /// An empty or invalid pattern and an invalid template make a replacer that always fails.
    RegexReplacer(const QString &pattern, const QString &replacement);
    ~RegexReplacer();
    RegexReplacer(RegexReplacer &&) noexcept;
    RegexReplacer &operator=(RegexReplacer &&) noexcept;

    bool isValid() const;
    /// What is wrong with pattern or template, for people; empty when valid.
    QString problem() const;
    const QString &pattern() const;
    const QString &replacement() const;
    /// The text with all matches replaced; null when the engine failed or the budget ran out.
    QString replaceAll(const QString &text, Budget &budget) const;
    /// Where the pattern matches, in order; without those that the budget was not enough for.
    std::vector<Match> matches(const QString &text, Budget &budget) const;

private:
    class Private;
    std::unique_ptr<Private> m_private;
};
