// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TResult.h"

#include <QStringList>

#include <span>
#include <vector>

/// One option that a verb understands.
struct OptionInfo
{
    QLatin1StringView name;  ///< without the dashes
    QLatin1StringView value; ///< what its value stands for; empty for a flag
    QLatin1StringView help;
    char letter = 0; ///< one-letter form; 0 when there is none
};

/// Options that belong together in the help of a verb.
struct OptionGroup
{
    QLatin1StringView title;
    std::span<const OptionInfo> options;
};
using OptionGroups = std::vector<OptionGroup>;

/// The arguments of one verb, sorted into options, in the order given, and words. Options may stand
/// anywhere before "--"; "--name value", "--name=value" and joined letters are understood.
class CommandLine
{
public:
    struct Given
    {
        QLatin1StringView name;
        QString value;
    };

    static TResult<CommandLine> parse(const OptionGroups &groups, const QStringList &arguments);

    bool has(QLatin1StringView name) const;
    qsizetype count(QLatin1StringView name) const;
    /// The value given last; null when the option is not there.
    QString value(QLatin1StringView name) const;
    const std::vector<Given> &options() const { return m_options; }
    const QStringList &words() const { return m_words; }

private:
    std::vector<Given> m_options;
    QStringList m_words;
};
