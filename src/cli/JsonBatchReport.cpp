// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/JsonBatchReport.h"

using namespace Qt::StringLiterals;

namespace {

void writeProblem(JsonWriter &json, const TErrorTypes &problem)
{
    json.beginObject();
    json.key("level"_L1).value(qint64{problem.errClass});
    json.key("text"_L1).value(problem.errDesc.toString());
    json.endObject();
}

void count(JsonWriter &json, QLatin1StringView name, qsizetype number)
{
    json.key(name).value(qint64{number});
}

} // namespace

void writeProblems(JsonWriter &json, const TErrorLog &problems)
{
    json.beginArray();
    for (const TErrorTypes &problem : problems)
        writeProblem(json, problem);
    json.endArray();
}

JsonBatchReport::JsonBatchReport(Console &console)
    : m_console(console)
{
    m_problems.beginArray();
    if (m_console.form() == Console::Form::Json)
        m_json.beginObject().key("files"_L1).beginArray();
}

void JsonBatchReport::batchProblems(const TErrorLog &problems, const TErrorLog & /*file*/)
{
    for (const TErrorTypes &problem : problems)
        writeProblem(m_problems, problem);
}

void JsonBatchReport::beginFile(const TFileItem &item, const TAnalysisResult &analysis,
                                const QString &finalName, const TErrorLog &errors)
{
    const QString &name = item.url.lastPathComponent();
    if (m_console.form() == Console::Form::Json)
        m_json.newLine();
    m_json.beginObject();
    m_json.key("path"_L1).value(item.url.path());
    m_json.key("fileName"_L1).value(removeExtensionFromFilename(name));
    m_json.key("extension"_L1).value(getExtensionFromFileName(name));
    m_json.key("targetName"_L1).value(analysis.targetName.string());
    m_json.key("targetExtension"_L1).value(analysis.targetExtension.string());
    m_json.key("finalName"_L1).valueOrNull(finalName);
    m_json.key("errLevel"_L1).value(qint64{errors.mostCriticalError()});
    m_json.key("errors"_L1);
    writeProblems(m_json, errors);
}

void JsonBatchReport::endFile()
{
    m_json.endObject();
    writeOut();
}

void JsonBatchReport::previewed(const TFileItem &item, const TAnalysisResult &analysis,
                                const ForecastStepper::Forecast &forecast)
{
    beginFile(item, analysis, forecast.finalName, analysis.errors);
    endFile();
}

void JsonBatchReport::renamed(const TFileItem &item, const TAnalysisResult &analysis,
                              const TRenameReport &report)
{
    beginFile(item, analysis, report.finalName, report.errors);
    const TFileURL target(item.url.folder(), report.finalName);
    m_json.key("target"_L1).value(report.success ? target.path() : item.url.path());
    m_json.key("renamed"_L1).value(report.success);
    if (!report.failure.isEmpty())
        m_json.key("failure"_L1).value(report.failure);
    endFile();
}

void JsonBatchReport::beginRest()
{
    if (m_console.form() == Console::Form::Json)
        m_json.newLine().endArray();
    else
        m_json.beginObject();
    m_problems.endArray();
    m_json.key("errors"_L1).raw(m_problems.bytes());
}

void JsonBatchReport::endRest()
{
    m_json.endObject();
    writeOut();
    if (m_console.form() == Console::Form::Json)
        m_console.print("\n");
}

void JsonBatchReport::finish(const PreviewOutcome &outcome)
{
    beginRest();
    count(m_json, "warnings"_L1, outcome.warnings);
    count(m_json, "criticals"_L1, outcome.criticals);
    count(m_json, "missing"_L1, outcome.missing);
    if (outcome.refused)
        m_json.key("refused"_L1).value(true);
    if (outcome.interrupted)
        m_json.key("interrupted"_L1).value(true);
    endRest();
}

void JsonBatchReport::finish(const RenameOutcome &outcome)
{
    const TRenameSummary &summary = outcome.summary;
    beginRest();
    count(m_json, "renamed"_L1, summary.renamed);
    count(m_json, "failed"_L1, summary.failed);
    count(m_json, "unchanged"_L1, summary.unchanged);
    count(m_json, "missing"_L1, outcome.missing);
    count(m_json, "warnings"_L1, summary.warnings);
    count(m_json, "criticals"_L1, summary.criticals);
    m_json.key("rollbackLog"_L1);
    if (summary.rollbackLog.isEmpty())
        m_json.null();
    else
        m_json.value(summary.rollbackLog);
    m_json.key("textLog"_L1).raw('"' + outcome.textLog + '"');
    endRest();
}

void JsonBatchReport::writeOut()
{
    m_console.print(m_json.bytes());
    m_json.clear();
    if (m_console.form() == Console::Form::JsonLines)
        m_console.print("\n");
}
