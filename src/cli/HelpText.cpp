// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/HelpText.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kWidth = 80;
constexpr qsizetype kColumn = 26; ///< where the explanations of options start

constexpr QLatin1StringView kIntroduction{
    "Renames many files at once by a recipe of rules, shows what would happen before "
    "anything does, and can undo every run."};

constexpr QLatin1StringView kStatuses{
    "Exit status: 0 done; 1 some files failed, were skipped or are missing, or there was nothing "
    "to do; 2 the line or recipe is wrong, or a log or preset cannot be read; 3 refused because of "
    "critical problems; 4 not confirmed, or the run could not be undone; 130 interrupted."};

/// The words of a paragraph, wrapped and indented; the first line goes on at the column given.
QString wrapped(const QString &text, qsizetype indent, qsizetype column)
{
    QString result;
    for (const QString &word : text.split(u' ', Qt::SkipEmptyParts)) {
        if (column > indent && column + 1 + word.size() > kWidth) {
            result += u'\n' + QString(indent, u' ');
            column = indent;
        } else if (column > indent) {
            result += u' ';
            ++column;
        }
        result += word;
        column += word.size();
    }
    return result + u'\n';
}

QString optionNames(const OptionInfo &option)
{
    QString names = option.letter != 0
                        ? u"  -%1, --%2"_s.arg(QLatin1Char(option.letter)).arg(option.name)
                        : u"      --"_s + option.name;
    if (!option.value.isEmpty())
        names += u' ' + option.value;
    return names;
}

QString optionHelp(const OptionInfo &option)
{
    QString text = optionNames(option);
    if (text.size() + 1 > kColumn)
        text += u'\n' + QString(kColumn, u' ');
    else
        text += QString(kColumn - text.size(), u' ');
    return text + wrapped(option.help, kColumn, kColumn);
}

QString paragraphs(QLatin1StringView text)
{
    QString result;
    for (const QString &paragraph : QString(text).split(u'\n'))
        result += wrapped(paragraph, 0, 0);
    return result;
}

QString indented(QLatin1StringView lines)
{
    QString result;
    for (const QString &line : QString(lines).split(u'\n'))
        result += "    "_L1 + line + u'\n';
    return result;
}

} // namespace

namespace HelpText {

QByteArray forCommand(const Command &command)
{
    const Command::Help help = command.help();
    QString text = u"Usage:\n"_s;
    for (const QString &usage : QString(help.usage).split(u'\n'))
        text += u"    tavrin-cli %1 %2\n"_s.arg(help.name, usage);
    text += u'\n' + paragraphs(help.text);
    for (const OptionGroup &group : command.optionGroups()) {
        text += u'\n' + group.title + ":\n"_L1;
        for (const OptionInfo &option : group.options)
            text += optionHelp(option);
    }
    if (!help.examples.isEmpty())
        text += u"\nExamples:\n"_s + indented(help.examples);
    text += u'\n' + wrapped(kStatuses, 0, 0);
    return text.toUtf8();
}

QByteArray forProgram(const std::vector<Command::Help> &verbs)
{
    QString text = u"Usage: tavrin-cli VERB [options] [arguments]\n\n"_s;
    text += wrapped(kIntroduction, 0, 0) + u"\nVerbs:\n"_s;
    for (const Command::Help &verb : verbs)
        text += "    "_L1 + QString(verb.name).leftJustified(12) + wrapped(verb.summary, 16, 16);
    text += u"\ntavrin-cli VERB --help and tavrin-cli help VERB explain a verb; tavrin-cli\n"
            "--version, or -V, shows the version.\n\n"_s;
    text +=
        u"Example:\n    tavrin-cli preview --rule 'Text theText=\"Holiday \"' --rule Counter photos/\n\n"_s;
    text += wrapped(kStatuses, 0, 0);
    return text.toUtf8();
}

} // namespace HelpText
