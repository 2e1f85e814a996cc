// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Recipe.h"
#include "document/AnalysisStepper.h"
#include "document/TMetadataSource.h"

#include <memory>
#include <span>

/// One analysis of a batch, file by file, with rules of its own. Keeps counts, never results. It
/// has one log for the batch, so what the extension handler reports counts too.
class AnalysisPass
{
public:
    AnalysisPass(const Recipe &recipe, std::span<const TFileItem> files,
                 std::unique_ptr<TMetadataSource> source, bool colourCode);
    AnalysisPass(const AnalysisPass &) = delete;
    AnalysisPass &operator=(const AnalysisPass &) = delete;

    /// Analyses the next file.
    TAnalysisResult step();
    bool atEnd() const { return m_next >= m_files.size(); }
    const TFileItem &lastFile() const { return m_files[m_next - 1]; }
    /// What was read for the last file.
    const TMetadataSource::Metadata &lastMetadata() const { return m_metadata; }
    /// What the last step reported for the batch, the file's own problems included.
    const TErrorLog &lastProblems() const { return m_log; }
    qsizetype done() const { return static_cast<qsizetype>(m_next); }
    qsizetype total() const { return static_cast<qsizetype>(m_files.size()); }
    qsizetype warnings() const { return m_warnings; }
    qsizetype criticals() const { return m_criticals; }

private:
    std::span<const TFileItem> m_files;
    TRuleList m_rules;
    std::unique_ptr<TExtensionHandler> m_handler;
    std::unique_ptr<TMetadataSource> m_source;
    TErrorLog m_log;
    AnalysisStepper m_stepper;
    TMetadataSource::Metadata m_metadata;
    std::size_t m_next = 0;
    qsizetype m_warnings = 0;
    qsizetype m_criticals = 0;
};
