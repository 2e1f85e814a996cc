// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/AnalysisPass.h"

AnalysisPass::AnalysisPass(const Recipe &recipe, std::span<const TFileItem> files,
                           std::unique_ptr<TMetadataSource> source, bool colourCode)
    : m_files(files)
    , m_rules(recipe.freshRules())
    , m_handler(recipe.extensionHandler->copyForRun())
    , m_source(std::move(source))
    , m_stepper({&m_rules, m_handler.get(), recipe.options, colourCode,
                 recipe.duplicatesAreCritical, static_cast<qint64>(files.size()), &m_log})
{
}

TAnalysisResult AnalysisPass::step()
{
    m_metadata = m_source ? m_source->metadataForFile(static_cast<qsizetype>(m_next))
                          : TMetadataSource::Metadata();
    m_log.clear();
    TAnalysisResult result = m_stepper.step(m_files[m_next++], m_metadata, m_log);
    m_warnings += m_log.numberOfErrorsWithType(TErrorTypes::kWarning);
    m_criticals += m_log.numberOfErrorsWithType(TErrorTypes::kCritical);
    return result;
}
