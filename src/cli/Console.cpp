// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Console.h"

#include "cli/ExitStatus.h"
#include "cli/JsonWriter.h"
#include "cli/SettingValue.h"
#include "commonprocs/ByteNames.h"
#include "commonprocs/easyfile.h"

#include <QStringBuilder>

#include <algorithm>
#include <array>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kProgram{"tavrin-cli: "};
constexpr QLatin1StringView kJson{"json"};
constexpr QLatin1StringView kJsonLines{"jsonl"};
constexpr QLatin1StringView kQuiet{"quiet"};
constexpr QLatin1StringView kVerbose{"verbose"};
constexpr QLatin1StringView kColour{"color"};
constexpr QLatin1StringView kProgress{"progress"};
constexpr QLatin1StringView kAuto{"auto"};
constexpr QLatin1StringView kAlways{"always"};
constexpr QLatin1StringView kNever{"never"};
constexpr QByteArrayView kArrow{" -> "};

constexpr std::array kCommonOptions{
    OptionInfo{kJson, ""_L1, "print one JSON document"_L1},
    OptionInfo{"help"_L1, ""_L1, "show this help"_L1, 'h'},
};

constexpr std::array kBatchOptions{
    OptionInfo{kJsonLines, ""_L1, "print one JSON object a line, as they come"_L1},
    OptionInfo{kQuiet, ""_L1, "print only problems, on standard error"_L1, 'q'},
    OptionInfo{kVerbose, ""_L1, "show whole paths, and say more about what is done"_L1, 'v'},
    OptionInfo{kColour, "WHEN"_L1, "colour names by rule: auto, always or never"_L1},
    OptionInfo{kProgress, "WHEN"_L1, "show progress on standard error: auto, always or never"_L1},
};

bool terminalHasColours()
{
    return qEnvironmentVariableIsEmpty("NO_COLOR") && qgetenv("TERM") != "dumb";
}

bool isYes(const QByteArray &answer)
{
    const QByteArray word = answer.trimmed().toLower();
    return word == "y" || word == "yes";
}

/// Appends what displayed gives. Nearly all texts are plain, which is seen while they are copied.
void appendDisplayed(QByteArray &out, QStringView text)
{
    constexpr char16_t kPlainOnes = u'\x7f' - u' ';
    const qsizetype start = out.size();
    out.resize(start + text.size());
    char *end = out.data() + start;
    bool isOdd = false;
    for (const QChar unit : text) {
        isOdd |= static_cast<char16_t>(unit.unicode() - u' ') >= kPlainOnes;
        *end++ = static_cast<char>(unit.unicode());
    }
    if (!isOdd)
        return;
    out.resize(start);
    out += ByteNames::forDisplay(text).toUtf8();
}

} // namespace

OptionGroup Console::commonOptions()
{
    return {"General"_L1, kCommonOptions};
}

OptionGroup Console::batchOptions()
{
    return {"Output"_L1, kBatchOptions};
}

Console::Console(CliEnvironment &environment)
    : m_environment(environment)
{
    m_progress.emplace(environment.err, ProgressLine::Mode::Off);
}

void Console::guessForm(const QStringList &arguments)
{
    const qsizetype end = arguments.indexOf(u"--"_s);
    const QStringList options = end < 0 ? arguments : arguments.first(end);
    m_refusesInJson = options.contains("--"_L1 + kJson) || options.contains("--"_L1 + kJsonLines);
}

TResult<bool> Console::configure(const CommandLine &line)
{
    for (const QLatin1StringView option : {kColour, kProgress}) {
        const QString when = line.value(option);
        if (!when.isNull() && when != kAuto && when != kAlways && when != kNever)
            return TResult<bool>::failure(SettingValue::unknownWord("value of --"_L1 + option, when,
                                                                    {kAuto, kAlways, kNever}));
    }
    if (line.has(kJsonLines))
        m_form = Form::JsonLines;
    else if (line.has(kJson))
        m_form = Form::Json;
    m_quiet = line.has(kQuiet);
    m_verbose = line.has(kVerbose) && !m_quiet;
    chooseColour(line.value(kColour));
    chooseProgress(line.value(kProgress));
    return true;
}

void Console::chooseColour(const QString &when)
{
    const bool wanted =
        when == kAlways || (when != kNever && m_environment.outIsTerminal && terminalHasColours());
    m_colour = wanted && !isJson() && !m_quiet;
}

void Console::chooseProgress(const QString &when)
{
    using Mode = ProgressLine::Mode;
    const Mode visible = m_environment.errIsTerminal ? Mode::Overwrite : Mode::Lines;
    const bool wanted = when == kAlways || (when != kNever && m_environment.errIsTerminal);
    m_progress.emplace(m_environment.err, wanted ? visible : Mode::Off);
}

void Console::print(QByteArrayView bytes)
{
    if (m_environment.outIsTerminal)
        m_progress->clear();
    m_environment.out.write(bytes);
}

void Console::printArrow(QStringView oldName, QStringView newName)
{
    m_line.resize(0);
    appendDisplayed(m_line, oldName);
    m_line += kArrow;
    appendDisplayed(m_line, newName);
    m_line += '\n';
    print(m_line);
}

void Console::printArrow(QStringView oldName, const QByteArray &colouredName)
{
    print(displayed(oldName).append(kArrow).append(colouredName).append('\n'));
}

void Console::printLine(QStringView text)
{
    if (!m_quiet)
        print(displayed(text) + '\n');
}

QByteArray Console::messageLine(QStringView text)
{
    return QByteArray(kProgram.data(), kProgram.size()) + displayed(text) + '\n';
}

void Console::message(const QString &text)
{
    flush();
    m_environment.err.write(messageLine(text));
    m_environment.err.flush();
}

int Console::refuse(int status, const QString &text)
{
    message(text);
    if (m_refusesInJson) {
        JsonWriter json;
        json.beginObject().key("error"_L1).beginObject();
        json.key("status"_L1).value(qint64{status}).key("text"_L1).value(text);
        json.endObject().endObject();
        print(json.bytes() + '\n');
    }
    return status;
}

void Console::problemLine(QByteArrayView line)
{
    m_progress->clear();
    m_environment.err.write(line);
}

void Console::detail(const QString &text)
{
    if (m_verbose)
        message(text);
}

bool Console::ask(const QStringList &question)
{
    flush();
    QByteArray lines;
    for (const QString &line : question)
        lines += (lines.isEmpty() ? "" : "\n") + displayed(line);
    m_environment.err.write(lines + " [y/N] ");
    m_environment.err.flush();
    const std::optional<QByteArray> answer = m_environment.terminal.readLine();
    if (!answer) {
        m_environment.err.write("\n");
        m_environment.err.flush();
    }
    return answer && isYes(*answer);
}

void Console::flush()
{
    // What was printed so far comes first where both streams go to one place.
    m_progress->clear();
    m_environment.out.flush();
    m_environment.err.flush();
}

int Console::finish(int status)
{
    flush();
    const int error = m_environment.out.error();
    if (error == 0)
        return status;
    if (error == ECANCELED) {
        message(u"interrupted; nobody has read the rest of the output"_s);
        return ExitStatus::kInterrupted;
    }
    // A reader that leaves early (head) needs no message.
    if (error != EPIPE)
        message(u"cannot write to standard output: %1"_s.arg(textForErrno(error)));
    return status == ExitStatus::kDone ? ExitStatus::kIncomplete : status;
}

QByteArray displayed(QStringView text)
{
    QByteArray result;
    appendDisplayed(result, text);
    return result;
}

QString counted(qsizetype number, QLatin1StringView one, QLatin1StringView many)
{
    return QString::number(number) + u' ' + (number == 1 ? one : many);
}
