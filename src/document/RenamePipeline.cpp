// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/RenamePipeline.h"

#include "commonprocs/ByteNames.h"
#include "commonprocs/FolderRuns.h"

#include <algorithm>

namespace {

constexpr qsizetype kChunk = 64;
constexpr qsizetype kChunkAfterFailure = 4;
constexpr std::size_t kChunksAhead = 16;
constexpr std::size_t kChunksBehind = 32;
/// Waking a thread takes as long as two moves, so it is done for several chunks together, unless
/// moves are so slow that nobody would notice.
constexpr std::size_t kWorthWaking = 8;
constexpr std::chrono::milliseconds kLongestWait{20};

} // namespace

RenamePipeline::RenamePipeline(FileManager &fileManager, const Settings &settings)
    : m_settings(settings)
    , m_planner(fileManager)
    , m_chunkSize(kChunk)
{
    announceFolders();
    m_thread = std::jthread([this](const std::stop_token &stop) { work(stop); });
}

RenamePipeline::~RenamePipeline() = default;

void RenamePipeline::announceFolders()
{
    const auto &files = m_settings.files;
    forEachFolderRun(
        files.size(),
        [&files](std::size_t i) -> const TFolderPtr & { return files[i].url.folder(); },
        [this](const TFolderPtr &folder, qsizetype count) {
            m_planner.folders().announce(folder, count);
        });
}

RenameChunk *RenamePipeline::next()
{
    std::unique_lock lock(m_mutex);
    if (m_nextToHandOut >= static_cast<qsizetype>(m_settings.files.size()))
        return nullptr;
    m_moverWakes.wait(lock, [this] { return !m_ahead.empty(); });
    m_current = std::move(m_ahead.front());
    m_ahead.pop_front();
    m_nextToHandOut += static_cast<qsizetype>(m_current->entries.size());
    return m_current.get();
}

void RenamePipeline::replan(std::size_t firstEntry, const std::function<void(MovePlanner &)> &mend)
{
    const std::scoped_lock lock(m_planning, m_mutex);
    struct Place
    {
        RenameEntry *entry;
        const TFileItem *item;
    };
    std::vector<Place> ahead;
    const auto add = [&](RenameChunk &chunk, std::size_t first) {
        for (std::size_t i = first; i < chunk.entries.size(); ++i)
            ahead.push_back({&chunk.entries[i], &item(chunk.indexOf(i))});
    };
    add(*m_current, firstEntry);
    for (const Chunk &chunk : m_ahead)
        add(*chunk, 0);
    for (auto place = ahead.rbegin(); place != ahead.rend(); ++place)
        m_planner.takeBack(*place->item, place->entry->plan);
    mend(m_planner);
    for (const Place &place : ahead)
        place.entry->setPlan(
            m_planner.plan(*place.item, place.entry->name, m_settings.run->options));
    // Where one move failed more may fail: little is decided ahead until they succeed again.
    m_chunkSize = kChunkAfterFailure;
}

void RenamePipeline::hand(RunRecorder &recorder)
{
    const auto now = std::chrono::steady_clock::now();
    {
        const std::lock_guard lock(m_mutex);
        m_recorder = &recorder;
        m_done.push_back(std::move(m_current));
        if (m_done.size() < kWorthWaking && m_ahead.size() > kChunksAhead / 2 &&
            now - m_lastWaking < kLongestWait)
            return;
    }
    m_lastWaking = now;
    m_workerWakes.notify_one();
}

void RenamePipeline::finish()
{
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
            Chunk chunk = std::move(m_done.front());
            m_done.pop_front();
            RunRecorder *const recorder = m_recorder;
            lock.unlock();
            for (std::size_t i = 0; i < chunk->moved; ++i)
                recorder->record(chunk->indexOf(i), chunk->entries[i]);
            m_spare.push_back(std::move(chunk));
            lock.lock();
        } else if (stop.stop_requested()) {
            return;
        }
    }
}

RenamePipeline::Chunk RenamePipeline::emptyChunk()
{
    if (m_spare.empty())
        return std::make_unique<RenameChunk>();
    Chunk chunk = std::move(m_spare.back());
    m_spare.pop_back();
    chunk->entries.clear();
    chunk->moved = 0;
    return chunk;
}

void RenamePipeline::makeChunk(qsizetype count)
{
    // Only this thread moves m_nextToEvaluate, so it may read it without the lock.
    const qsizetype first = m_nextToEvaluate;
    const auto total = static_cast<qsizetype>(m_settings.files.size());
    const qsizetype end = std::min(first + count, total);
    Chunk chunk = emptyChunk();
    chunk->first = first;
    chunk->entries.resize(static_cast<std::size_t>(end - first));
    for (qsizetype i = first; i < end; ++i) {
        RenameEntry &entry = chunk->entries[static_cast<std::size_t>(i - first)];
        entry.name = evaluate(i);
        entry.from = ByteNames::toBytes(item(i).url.lastPathComponent());
    }

    const std::lock_guard planning(m_planning);
    for (qsizetype i = first; i < end; ++i) {
        RenameEntry &entry = chunk->entries[static_cast<std::size_t>(i - first)];
        entry.setPlan(m_planner.plan(item(i), entry.name, m_settings.run->options));
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
