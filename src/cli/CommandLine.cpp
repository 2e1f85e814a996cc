// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

const OptionInfo *findOption(const OptionGroups &groups, const auto &matches)
{
    for (const OptionGroup &group : groups) {
        const auto found = std::find_if(group.options.begin(), group.options.end(), matches);
        if (found != group.options.end())
            return &*found;
    }
    return nullptr;
}

QString possibleOptions(const OptionGroups &groups)
{
    QStringList names;
    for (const OptionGroup &group : groups) {
        for (const OptionInfo &option : group.options)
            names.append("--"_L1 + option.name);
    }
    return names.join(u", "_s);
}

/// Walks over the arguments; each step returns a message when something is wrong with one.
class Parser
{
public:
    Parser(const OptionGroups &groups, const QStringList &arguments)
        : m_groups(groups)
        , m_arguments(arguments)
    {
    }

    QString parse()
    {
        while (m_next < m_arguments.size()) {
            const QString &argument = m_arguments[m_next++];
            QString problem;
            if (argument == "--"_L1) {
                words += m_arguments.sliced(m_next);
                break;
            }
            if (argument.startsWith("--"_L1))
                problem = readLong(argument.sliced(2));
            else if (argument.size() > 1 && argument.startsWith(u'-'))
                problem = readLetters(argument.sliced(1));
            else
                words.append(argument);
            if (!problem.isEmpty())
                return problem;
        }
        return {};
    }

    std::vector<CommandLine::Given> options;
    QStringList words;

private:
    QString readLong(const QString &text)
    {
        const qsizetype equals = text.indexOf(u'=');
        const QString name = text.left(equals);
        const OptionInfo *option =
            findOption(m_groups, [&name](const OptionInfo &o) { return o.name == name; });
        if (option == nullptr)
            return unknown("--"_L1 + name);
        return take(*option, equals < 0 ? std::optional<QString>() : text.sliced(equals + 1));
    }

    QString readLetters(const QString &letters)
    {
        for (qsizetype i = 0; i < letters.size(); ++i) {
            const OptionInfo *option = findOption(m_groups, [c = letters[i]](const OptionInfo &o) {
                return o.letter != 0 && c == QLatin1Char(o.letter);
            });
            if (option == nullptr)
                return unknown(u"-"_s + letters[i]);
            if (!option->value.isEmpty() && i + 1 < letters.size())
                return take(*option, letters.sliced(i + 1));
            if (const QString problem = take(*option, {}); !problem.isEmpty())
                return problem;
        }
        return {};
    }

    QString take(const OptionInfo &option, std::optional<QString> value)
    {
        if (option.value.isEmpty() && value)
            return u"--%1 takes no value"_s.arg(option.name);
        if (!option.value.isEmpty() && !value) {
            if (m_next >= m_arguments.size())
                return u"--%1 needs a value: --%1 %2"_s.arg(option.name, option.value);
            value = m_arguments[m_next++];
        }
        options.push_back({option.name, value.value_or(QString())});
        return {};
    }

    QString unknown(const QString &option) const
    {
        return u"unknown option %1; possible: %2. A path that starts with a dash stands after --"_s
            .arg(option, possibleOptions(m_groups));
    }

    const OptionGroups &m_groups;
    const QStringList &m_arguments;
    qsizetype m_next = 0;
};

} // namespace

TResult<CommandLine> CommandLine::parse(const OptionGroups &groups, const QStringList &arguments)
{
    Parser parser(groups, arguments);
    if (const QString problem = parser.parse(); !problem.isEmpty())
        return TResult<CommandLine>::failure(problem);
    CommandLine line;
    line.m_options = std::move(parser.options);
    line.m_words = std::move(parser.words);
    return line;
}

bool CommandLine::has(QLatin1StringView name) const
{
    return count(name) > 0;
}

qsizetype CommandLine::count(QLatin1StringView name) const
{
    return std::count_if(m_options.begin(), m_options.end(),
                         [name](const Given &given) { return given.name == name; });
}

QString CommandLine::value(QLatin1StringView name) const
{
    const auto found = std::find_if(m_options.rbegin(), m_options.rend(),
                                    [name](const Given &given) { return given.name == name; });
    return found == m_options.rend() ? QString() : found->value;
}
