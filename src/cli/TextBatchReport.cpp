// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/TextBatchReport.h"

#include "cli/ColouredName.h"
#include "cli/Console.h"
#include "cli/ShellWords.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Different texts that are kept for the end; more of them tell nobody anything.
constexpr qsizetype kMostBatchProblems = 1000;

QByteArrayView markForLevel(int level)
{
    return level == TErrorTypes::kCritical ? "critical" : "warning";
}

QString problemCounts(qsizetype missing, qsizetype warnings, qsizetype criticals)
{
    return u"%1 missing, %2, %3"_s.arg(
        QString::number(missing), counted(warnings, "warning"_L1, "warnings"_L1),
        counted(criticals, "critical problem"_L1, "critical problems"_L1));
}

} // namespace

TextBatchReport::TextBatchReport(Console &console)
    : m_console(console)
{
}

void TextBatchReport::batchProblems(const TErrorLog &problems, const TErrorLog &file)
{
    if (problems.count() == file.count())
        return;
    for (const TErrorTypes &problem : problems) {
        const bool ofFile = std::find(file.begin(), file.end(), problem) != file.end();
        const std::pair key(problem.errClass, problem.errDesc.toString());
        if (!ofFile &&
            (m_batchProblems.size() < kMostBatchProblems || m_batchProblems.contains(key)))
            ++m_batchProblems[key];
    }
}

template <class Name>
void TextBatchReport::line(const TFileItem &item, const Name &newName)
{
    if (!m_console.isQuiet())
        m_console.printArrow(m_console.isVerbose() ? item.url.path() : item.url.lastPathComponent(),
                             newName);
}

void TextBatchReport::problem(const TFileItem &item, QByteArrayView mark, const QString &text)
{
    const QByteArray problem = mark.toByteArray() + ": " + displayed(text) + '\n';
    if (m_console.isQuiet())
        m_console.problemLine(displayed(item.url.path()) + ": " + problem);
    else
        m_console.print("    " + problem);
}

void TextBatchReport::problems(const TFileItem &item, const TErrorLog &log)
{
    for (const TErrorTypes &entry : log)
        problem(item, markForLevel(entry.errClass), entry.errDesc.toString());
}

void TextBatchReport::previewed(const TFileItem &item, const TAnalysisResult &analysis,
                                const ForecastStepper::Forecast &forecast)
{
    if (forecast.finalName.isNull())
        line(item, analysis.targetName.string());
    else if (m_console.hasColour())
        line(item, colouredName(forecast.finalName, analysis.targetName,
                                analysis.targetExtension.string()));
    else
        line(item, forecast.finalName);
    problems(item, analysis.errors);
    if (!forecast.refusal.isEmpty())
        problem(item, "will fail", forecast.refusal);
}

void TextBatchReport::batchSummary()
{
    for (auto it = m_batchProblems.begin(); it != m_batchProblems.end(); ++it) {
        const QByteArray text = markForLevel(it.key().first).toByteArray() + ": " +
                                displayed(it.key().second) + " (" + QByteArray::number(it.value()) +
                                " times)\n";
        if (m_console.isQuiet())
            m_console.problemLine(text);
        else
            m_console.print(text);
    }
}

void TextBatchReport::finish(const PreviewOutcome &outcome)
{
    batchSummary();
    m_console.printLine(
        u"%1, %2"_s.arg(counted(outcome.files, "file"_L1, "files"_L1),
                        problemCounts(outcome.missing, outcome.warnings, outcome.criticals)));
}

bool TextBatchReport::wantsTargets() const
{
    return m_console.hasColour();
}

void TextBatchReport::renamed(const TFileItem &item, const TAnalysisResult &analysis,
                              const TRenameReport &report)
{
    if (m_console.hasColour())
        line(item, colouredName(report.finalName, analysis.targetName,
                                analysis.targetExtension.string()));
    else
        line(item, report.finalName);
    problems(item, report.errors);
    if (!report.failure.isEmpty())
        problem(item, markForLevel(TErrorTypes::kCritical), report.failure);
}

void TextBatchReport::finish(const RenameOutcome &outcome)
{
    const TRenameSummary &summary = outcome.summary;
    m_console.printLine(u"%1 renamed, %2 failed, %3 unchanged, %4"_s.arg(
        counted(summary.renamed, "file"_L1, "files"_L1), QString::number(summary.failed),
        QString::number(summary.unchanged),
        problemCounts(outcome.missing, summary.warnings, summary.criticals)));
    if (!summary.rollbackLog.isEmpty() && summary.renamed > 0)
        m_console.printLine(
            u"to undo: tavrin-cli rollback %1"_s.arg(shellQuoted(summary.rollbackLog)));
}
