// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/RunRecorder.h"

namespace {

constexpr QLatin1StringView kRenamedLine{"renamed %@ to %@\n"};
constexpr QLatin1StringView kFailureLine{"*** FAILURE: renaming %@ to %@\n"};
constexpr QLatin1StringView kEndOfFailure{"\n\n"};

} // namespace

void RunRecorder::record(qsizetype index, RenameEntry &entry)
{
    const TFileURL &source = m_outputs.files[static_cast<std::size_t>(index)].url;
    if (entry.name.base.isNull()) { // no rules: there was nothing to do, and there is no record
        if (*m_outputs.textLog)
            (*m_outputs.textLog)(entry.name.textLog);
        return;
    }
    const TRenameReport report = reportOf(index, entry);
    count(report);
    if (*m_outputs.report)
        (*m_outputs.report)(report);
    if (*m_outputs.textLog)
        writeText(source, report, entry);
    if (m_outputs.rollbackLog != nullptr && !report.unchanged)
        writeTransaction(source, report);
}

TRenameReport RunRecorder::reportOf(qsizetype index, RenameEntry &entry) const
{
    const bool changed = !entry.plan.uniqueBase.isNull();
    if (changed)
        TRenameOperation::applyUniqueBase(
            entry.name,
            removeExtensionFromFilename(
                m_outputs.files[static_cast<std::size_t>(index)].url.lastPathComponent()),
            entry.plan.uniqueBase);
    TRenameReport report;
    report.index = index;
    report.finalName = std::move(entry.plan.finalName);
    report.errors = std::move(entry.name.errors);
    report.failure = std::move(entry.result.text);
    report.unchanged = entry.plan.unchanged;
    report.success = entry.result.ok() && !report.unchanged;
    report.warning = entry.name.wasEmpty || changed;
    report.critical = !entry.result.ok();
    return report;
}

void RunRecorder::count(const TRenameReport &report)
{
    m_summary.renamed += report.success ? 1 : 0;
    m_summary.unchanged += report.unchanged ? 1 : 0;
    m_summary.failed += report.critical ? 1 : 0;
    m_summary.criticals += report.critical ? 1 : 0;
    m_summary.warnings += report.warning ? 1 : 0;
}

void RunRecorder::writeText(const TFileURL &source, const TRenameReport &report,
                            const RenameEntry &entry)
{
    QString text = entry.name.textLog;
    if (!report.unchanged)
        text += formatted(report.success ? kRenamedLine : kFailureLine,
                          {source.path(), TFileURL(source.folder(), report.finalName).path()});
    if (report.critical)
        text += report.failure + kEndOfFailure;
    (*m_outputs.textLog)(text);
}

void RunRecorder::writeTransaction(const TFileURL &source, const TRenameReport &report)
{
    TRenameTRX transaction = TRenameTRX::TRXWithSource(source);
    transaction.renamedURL = TFileURL(source.folder(), report.finalName);
    transaction.insured = true;
    transaction.renameComplete = report.success;
    transaction.errorLog = report.errors;
    m_outputs.rollbackLog->append(transaction);
}
