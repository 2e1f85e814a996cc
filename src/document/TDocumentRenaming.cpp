// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocumentRenaming.h"

namespace {

/// What was gathered for the files before the run.
class FactSource : public TMetadataSource
{
public:
    explicit FactSource(TDocumentFacts facts)
        : m_facts(std::move(facts))
    {
    }
    Metadata metadataForFile(qsizetype index) override
    {
        return m_facts->metadata(static_cast<std::size_t>(index));
    }

private:
    TDocumentFacts m_facts;
};

} // namespace

/// Belongs to the worker while a job runs, to the main thread before and after.
struct TDocumentRenaming::Shared
{
    Shared(FileManager &fileManager, const Clock &clock, Input &input)
        : facts(input.facts)
        , source(input.facts)
        , run(fileManager, clock, facts->items(),
              {std::move(input.rules), std::move(input.extensionHandler), input.options,
               input.logsFolder, false})
    {
        run.setMetadataSource(&source);
        run.setTextLog([this](const QString &text) { textLog += text; });
    }

    const TDocumentFacts facts;
    FactSource source;
    QString textLog;
    TRenameRun run;
};

TDocumentRenaming::TDocumentRenaming(FileManager &fileManager, const Clock &clock,
                                     TDocumentMailPtr mail, Input input)
    : m_shared(std::make_shared<Shared>(fileManager, clock, input))
    , m_files(std::move(input.files))
    , m_mail(std::move(mail))
{
}

TDocumentRenaming::~TDocumentRenaming()
{
    if (m_abort)
        m_abort->store(true);
}

void TDocumentRenaming::prepare(const Prepared &prepared)
{
    m_worker.run([shared = m_shared, mail = m_mail, prepared](const std::stop_token &) {
        const TResult<bool> made = shared->run.prepare();
        mail->post([prepared, problem = made.message()] { prepared(problem); });
    });
}

void TDocumentRenaming::start(const TProgressSheetController::AbortFlag &abort, Report report,
                              Finished finished)
{
    m_abort = abort;
    m_report = std::move(report);
    m_finished = std::move(finished);
    m_worker.run([this, shared = m_shared, mail = m_mail, abort](const std::stop_token &) {
        const TRenameSummary summary = shared->run.run(
            [this, &mail](const TRenameReport &one) {
                mail->post([this, one] {
                    m_report(*(*m_files)[static_cast<std::size_t>(one.index)], one);
                });
            },
            *abort);
        mail->post([this, summary] {
            const Finished done = m_finished; // which may be the end of this run
            done(summary);
        });
    });
}

const QString &TDocumentRenaming::textLog() const
{
    return m_shared->textLog;
}
