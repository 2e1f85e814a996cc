// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/CliEnvironment.h"
#include "cli/CommandLine.h"
#include "cli/ProgressLine.h"

#include <QString>

#include <optional>

/// What one verb says, and in which form: results on standard output, messages, questions and
/// progress on standard error. Made from the verb's output options.
class Console
{
public:
    enum class Form { Text, Json, JsonLines };

    /// The options understood by every verb, and those of verbs that go through many files.
    static OptionGroup commonOptions();
    static OptionGroup batchOptions();

    explicit Console(CliEnvironment &environment);
    /// Before options are understood: whether the user asked for JSON, so that refusals of the line
    /// take that form too.
    void guessForm(const QStringList &arguments);
    /// Takes the options over; a failure names the one that is wrong.
    TResult<bool> configure(const CommandLine &line);

    Form form() const { return m_form; }
    bool isJson() const { return m_form != Form::Text; }
    bool isQuiet() const { return m_quiet; }
    bool isVerbose() const { return m_verbose; }
    bool hasColour() const { return m_colour; }

    /// Bytes on standard output, as they are.
    void print(QByteArrayView bytes);
    /// The line "old name -> new name" on standard output, made safe for display; with colours the
    /// new name comes as it is to be shown.
    void printArrow(QStringView oldName, QStringView newName);
    void printArrow(QStringView oldName, const QByteArray &colouredName);
    /// A line of text on standard output, made safe for display; nothing when quiet.
    void printLine(QStringView text);
    /// A line as messages are: after the program's name, made safe for display.
    static QByteArray messageLine(QStringView text);
    /// A line on standard error, after the program's name.
    void message(const QString &text);
    /// Says why nothing is done, also as a JSON document when that was asked for; gives the status
    /// back.
    int refuse(int status, const QString &text);
    /// A problem line on standard error, where there may be as many as files; not flushed at once.
    void problemLine(QByteArrayView line);
    /// A message for those who want to know more.
    void detail(const QString &text);
    ProgressLine &progress() { return *m_progress; }

    bool canAsk() const { return m_environment.terminal.isThere(); }
    /// Asks on standard error, the lines made safe for display; anything but yes counts as no.
    bool ask(const QStringList &question);

    /// Takes progress away and lets everything out that was written.
    void flush();
    /// Ends the output of a verb with that status; gives back the one to end with, which is another
    /// when not all could be written, and says so.
    int finish(int status);

private:
    void chooseColour(const QString &when);
    void chooseProgress(const QString &when);

    CliEnvironment &m_environment;
    Form m_form = Form::Text;
    bool m_refusesInJson = false;
    bool m_quiet = false;
    bool m_verbose = false;
    bool m_colour = false;
    std::optional<ProgressLine> m_progress;
    QByteArray m_line; ///< the latest "old -> new", whose memory serves for the next
};

/// A name or text as UTF-8 for people: control characters and raw bytes as \xNN.
QByteArray displayed(QStringView text);
/// "1 file", "2 files".
QString counted(qsizetype number, QLatin1StringView one, QLatin1StringView many);
