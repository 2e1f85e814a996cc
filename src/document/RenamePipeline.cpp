// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/RenamePipeline.h"

#include <algorithm>

namespace {

constexpr qsizetype kChunk = 128;
constexpr qsizetype kChunkAfterFailure = 4;
constexpr std::size_t kChunksAhead = 16;
constexpr std::size_t kChunksBehind = 32;
constexpr QLatin1StringView kRenamedLine{"renamed %@ to %@\n"};
constexpr QLatin1StringView kFailureLine{"*** FAILURE: renaming %@ to %@\n"};

} // namespace

RenamePipeline::RenamePipeline(FileManager &fileManager, Settings settings)
    : m_settings(std::move(settings))
    , m_planner(fileManager)
    , m_chunkSize(kChunk)
{
    announceFolders();
    m_thread = std::jthread([this](const std::stop_token &stop) { work(stop); });
}

RenamePipeline::~RenamePipeline() = default;

void RenamePipeline::announceFolders()
{
    // Files mostly come folder by folder, so neighbours are counted together.
    const auto &files = m_settings.files;
    for (std::size_t i = 0; i < files.size();) {
        std::size_t end = i + 1;
        while (end < files.size() && files[end].url.folder() == files[i].url.folder())
            ++end;
        m_planner.folders().announce(files[i].url.folder(), static_cast<qsizetype>(end - i));
        i = end;
    }
}

RenamePipeline::Planned RenamePipeline::next()
{
    if (m_current.empty()) {
        std::unique_lock lock(m_mutex);
        m_moverWakes.wait(lock, [this] { return !m_ahead.empty(); });
        m_current = std::move(m_ahead.front());
        m_ahead.pop_front();
        lock.unlock();
        m_workerWakes.notify_one();
    }
    Planned planned = std::move(m_current.front());
    m_current.pop_front();
    ++m_nextToHandOut;
    return planned;
}

void RenamePipeline::replan(const std::function<void(MovePlanner &)> &mend)
{
    const std::scoped_lock lock(m_planning, m_mutex);
    std::vector<Planned *> ahead;
    for (Planned &planned : m_current)
        ahead.push_back(&planned);
    for (Chunk &chunk : m_ahead)
        for (Planned &planned : chunk)
            ahead.push_back(&planned);
    const auto itemOf = [this](std::size_t place) -> const TFileItem & {
        return item(m_nextToHandOut + static_cast<qsizetype>(place));
    };
    for (std::size_t i = ahead.size(); i > 0; --i)
        m_planner.takeBack(itemOf(i - 1), ahead[i - 1]->plan);
    mend(m_planner);
    for (std::size_t i = 0; i < ahead.size(); ++i)
        ahead[i]->plan = m_planner.plan(itemOf(i), ahead[i]->name, m_settings.run->options);
    // Where one move failed more may fail: little is decided ahead until they succeed again.
    m_chunkSize = kChunkAfterFailure;
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

bool RenamePipeline::canEvaluate() const
{
    const std::size_t chunks = m_chunkSize < kChunk ? 1 : kChunksAhead;
    return m_nextToEvaluate < static_cast<qsizetype>(m_settings.files.size()) &&
           m_ahead.size() < chunks;
}

void RenamePipeline::work(const std::stop_token &stop)
{
    std::unique_lock lock(m_mutex);
    while (true) {
        m_workerWakes.wait(lock, stop, [&] { return !m_done.empty() || canEvaluate(); });
        // Deciding ahead comes first, so that the mover does not wait for names, unless so much
        // waits to be written that memory would grow.
        const bool behind = m_done.size() >= kChunksBehind;
        const bool shortOfNames = m_ahead.size() < kChunksAhead / 2;
        if (canEvaluate() && !stop.stop_requested() && !behind &&
            (m_done.empty() || shortOfNames)) {
            const qsizetype count = m_chunkSize;
            lock.unlock();
            makeChunk(count);
            lock.lock();
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

void RenamePipeline::makeChunk(qsizetype count)
{
    // Only this thread moves m_nextToEvaluate, so it may read it without the lock.
    const qsizetype first = m_nextToEvaluate;
    const auto total = static_cast<qsizetype>(m_settings.files.size());
    const qsizetype end = std::min(first + count, total);
    Chunk chunk;
    for (qsizetype i = first; i < end; ++i)
        chunk.push_back({evaluate(i), {}});

    const std::lock_guard planning(m_planning);
    for (qsizetype i = first; i < end; ++i) {
        Planned &planned = chunk[static_cast<std::size_t>(i - first)];
        planned.plan = m_planner.plan(item(i), planned.name, m_settings.run->options);
    }
    const std::lock_guard lock(m_mutex);
    m_ahead.push_back(std::move(chunk));
    m_nextToEvaluate = end;
    m_chunkSize = std::min(m_chunkSize * 2, kChunk);
    m_moverWakes.notify_one();
}

TEvaluatedName RenamePipeline::evaluate(qsizetype index)
{
    TMetadataSource::Metadata metadata;
    if (m_settings.metadata)
        metadata = m_settings.metadata->metadataForFile(index);
    m_file.assign(item(index), metadata.imageProperties, metadata.id3);
    return TRenameOperation::evaluate(&m_settings.run->rules, *m_settings.run->extensionHandler,
                                      m_file, index, static_cast<qint64>(m_settings.files.size()),
                                      m_settings.run->options);
}

void RenamePipeline::write(const Done &done)
{
    const TRenameReport &report = done.report;
    const TFileItem &file = item(report.index);
    const TFileURL target(file.url.folder(), report.finalName);
    if (m_settings.textLog) {
        QString text = done.textLog;
        if (!done.aborted && !report.unchanged)
            text += formatted(report.success ? kRenamedLine : kFailureLine,
                              {file.url.path(), target.path()});
        if (report.critical)
            text += report.failure + QStringLiteral("\n\n");
        m_settings.textLog(text);
    }
    if (!m_settings.rollbackLog || done.aborted || report.unchanged)
        return;
    TRenameTRX transaction = TRenameTRX::TRXWithSource(file.url);
    if (done.planned) {
        transaction.renamedURL = target;
        transaction.insured = true;
    }
    transaction.renameComplete = report.success;
    transaction.errorLog = report.errors;
    m_settings.rollbackLog->append(transaction);
}
