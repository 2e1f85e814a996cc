// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/NameGeneration.h"
#include "document/TMetadataSource.h"
#include "platform/RunsPool.h"

#include <memory>

/// What the analysis says of one file.
struct TAnalysisResult
{
    TAttributedString targetName;
    TAttributedString targetExtension;
    TErrorLog errors; ///< the file's own
};

/// One file in, one result out: evaluates name and extension and tests for duplicates within the
/// batch. Owns the rules it is given (a copy made for the run). Used by one thread. Keeps 16 bytes
/// a file, for the duplicate test.
class AnalysisStepper
{
public:
    struct Settings
    {
        const TRuleList *rules = nullptr; ///< null: no list at all; not owned, not shared meanwhile
        TExtensionHandler *extensionHandler = nullptr; ///< not owned, not shared meanwhile
        TOptions options;
        bool colorCode = true;
        bool duplicatesAreCritical = false;
        qint64 batchSize = 0;
        /// Where the extension handler reports: the document's own batch log, not the run's. May be
        /// null.
        TErrorLog *extensionLog = nullptr;
    };

    explicit AnalysisStepper(Settings settings);
    ~AnalysisStepper();

    /// Evaluates the next file in place: clears its errLog, sets name and extension, tests for a
    /// duplicate. batchLog receives every entry that the run reports.
    void step(TFileObject &file, TErrorLog &batchLog);
    /// The same for facts, on an entry of the stepper's own.
    TAnalysisResult step(const TFileItem &item, const TMetadataSource::Metadata &metadata,
                         TErrorLog &batchLog);
    qsizetype index() const { return m_index; }

private:
    class DuplicateKeys;

    Settings m_settings;
    TFileObject m_file;
    std::unique_ptr<DuplicateKeys> m_keys;
    RunsPool m_names;
    RunsPool m_extensions;
    qsizetype m_index = 0;
    qsizetype m_lastLength = 0; ///< of the name before
};
