// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <memory>

/// One ICU pattern and replacement template, compiled once and used by one thread. Replaces every
/// non-overlapping match, left to right, with default options.
class RegexReplacer
{
public:
    /// Counts down over all the patterns of one name. Steps, not time, so that results do not
    /// depend on the machine's speed.
    struct Budget
    {
        static constexpr qint64 kStepsPerName = 250; ///< ICU time-limit units, about 0.25 s in all
        qint64 steps = kStepsPerName;
        bool exceeded = false;
    };

    RegexReplacer();
    /// An empty or invalid pattern and an invalid template make a replacer that always fails.
    RegexReplacer(const QString &pattern, const QString &replacement);
    ~RegexReplacer();
    RegexReplacer(RegexReplacer &&) noexcept;
    RegexReplacer &operator=(RegexReplacer &&) noexcept;

    bool isValid() const;
    /// The engine's reason, for people; empty when valid.
    QString problem() const;
    const QString &pattern() const;
    const QString &replacement() const;
    /// The text with all matches replaced; null when the engine failed or the budget ran out.
    QString replaceAll(const QString &text, Budget &budget) const;

private:
    class Private;
    std::unique_ptr<Private> m_private;
};
