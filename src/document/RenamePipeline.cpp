// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/RenamePipeline.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr qsizetype kChunk = 128;
constexpr std::size_t kChunksAhead = 16;
constexpr std::size_t kChunksBehind = 32;
constexpr QLatin1StringView kRenamedLine{"renamed %@ to %@\n"};
constexpr QLatin1StringView kFailureLine{"*** FAILURE: renaming %@ to %@\n"};

} // namespace

RenamePipeline::RenamePipeline(Settings settings)
    : m_settings(std::move(settings))
    , m_thread([this](const std::stop_token &stop) { work(stop); })
{
}

RenamePipeline::~RenamePipeline() = default;

TEvaluatedName RenamePipeline::next()
{
    if (m_current.empty()) {
        std::unique_lock lock(m_mutex);
        m_moverWakes.wait(lock, [this] { return !m_evaluated.empty(); });
        std::move(m_evaluated.front().begin(), m_evaluated.front().end(),
                  std::back_inserter(m_current));
        m_evaluated.pop_front();
        lock.unlock();
        m_workerWakes.notify_one();
    }
    TEvaluatedName name = std::move(m_current.front());
    m_current.pop_front();
    return name;
}

void RenamePipeline::hand(Done done)
{
    m_outgoing.push_back(std::move(done));
    if (static_cast<qsizetype>(m_outgoing.size()) >= kChunk)
        handChunk();
}

void RenamePipeline::handChunk()
{
    {
        const std::lock_guard lock(m_mutex);
        m_done.push_back(std::move(m_outgoing));
    }
    m_workerWakes.notify_one();
    m_outgoing = {};
    m_outgoing.reserve(kChunk);
}

void RenamePipeline::finish()
{
    handChunk();
    m_thread.request_stop();
    m_thread.join();
}

void RenamePipeline::work(const std::stop_token &stop)
{
    const auto total = static_cast<qsizetype>(m_settings.files.size());
    std::unique_lock lock(m_mutex);
    while (true) {
        const auto canEvaluate = [&] {
            return m_nextToEvaluate < total && m_evaluated.size() < kChunksAhead &&
                   !stop.stop_requested();
        };
        m_workerWakes.wait(lock, stop, [&] { return !m_done.empty() || canEvaluate(); });
        // Evaluating ahead comes first, so that the mover does not wait for names, unless so much
        // waits to be written that memory would grow.
        const bool behind = m_done.size() >= kChunksBehind;
        const bool shortOfNames = m_evaluated.size() < kChunksAhead / 2;
        if (canEvaluate() && !behind && (m_done.empty() || shortOfNames)) {
            std::vector<TEvaluatedName> chunk;
            lock.unlock();
            evaluateChunk(chunk);
            lock.lock();
            m_evaluated.push_back(std::move(chunk));
            m_moverWakes.notify_one();
        } else if (!m_done.empty()) {
            const std::vector<Done> chunk = std::move(m_done.front());
            m_done.pop_front();
            lock.unlock();
            for (const Done &done : chunk)
                write(done);
            lock.lock();
        } else if (stop.stop_requested()) {
            return;
        }
    }
}

void RenamePipeline::evaluateChunk(std::vector<TEvaluatedName> &chunk)
{
    const auto total = static_cast<qsizetype>(m_settings.files.size());
    const qsizetype end = std::min(m_nextToEvaluate + kChunk, total);
    chunk.reserve(static_cast<std::size_t>(end - m_nextToEvaluate));
    for (; m_nextToEvaluate < end; ++m_nextToEvaluate) {
        TMetadataSource::Metadata metadata;
        if (m_settings.metadata)
            metadata = m_settings.metadata->metadataForFile(m_nextToEvaluate);
        m_file.assign(m_settings.files[static_cast<std::size_t>(m_nextToEvaluate)],
                      metadata.imageProperties, metadata.id3);
        chunk.push_back(
            TRenameOperation::evaluate(&m_settings.run->rules, *m_settings.run->extensionHandler,
                                       m_file, m_nextToEvaluate, total, m_settings.run->options));
    }
}

void RenamePipeline::write(const Done &done)
{
    const TRenameReport &report = done.report;
    const TFileItem &item = m_settings.files[static_cast<std::size_t>(report.index)];
    const TFileURL target(item.url.folder(), report.finalName);
    if (m_settings.textLog) {
        QString text = done.textLog;
        if (!done.aborted && !report.unchanged)
            text += formatted(report.success ? kRenamedLine : kFailureLine,
                              {item.url.path(), target.path()});
        if (report.critical)
            text += report.failure + QStringLiteral("\n\n");
        m_settings.textLog(text);
    }
    if (!m_settings.rollbackLog || done.aborted || report.unchanged)
        return;
    TRenameTRX transaction = TRenameTRX::TRXWithSource(item.url);
    if (done.planned) {
        transaction.renamedURL = target;
        transaction.insured = true;
    }
    transaction.renameComplete = report.success;
    transaction.errorLog = report.errors;
    m_settings.rollbackLog->append(transaction);
}
