// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/CliEnvironment.h"
#include "document/TMetadataSource.h"
#include "metadata/MetadataGatherer.h"

#include <condition_variable>
#include <mutex>
#include <vector>

/// The metadata of the files of a command line: read in the background, ahead of the first pass
/// over the files, and kept for the later ones. Operations belong to the main thread, sources to
/// whoever evaluates.
class BatchMetadata
{
public:
    explicit BatchMetadata(const CliEnvironment &environment);
    ~BatchMetadata();

    /// Begins to read; nothing happens without kinds. The files must stay where they are until the
    /// first pass is over.
    void start(std::span<const TFileItem> files, MetadataGatherer::Kinds kinds,
               const ImageWish &wish, bool verbose);
    bool isStarted() const { return m_started; }
    /// Why no metadata can be read at all; empty while all is well.
    QString problem() const { return m_gatherer ? m_gatherer->problem() : QString(); }
    /// After the first pass: the files are in another order now.
    void reorder(const std::vector<qsizetype> &order);
    /// For one pass over the files, which several threads may make at a time. Null when no metadata
    /// is wanted.
    std::unique_ptr<TMetadataSource> source();

private:
    class Source;

    TMetadataSource::Metadata metadataForFile(qsizetype index);
    void complete(const TMetadataSource::Metadata &metadata);

    const CliEnvironment &m_environment;
    bool m_started = false;
    std::mutex m_mutex;
    std::condition_variable m_arrived;
    std::vector<TMetadataSource::Metadata> m_results; ///< guarded; as far as they have come
    std::size_t m_total = 0;
    std::unique_ptr<MetadataGatherer> m_gatherer; ///< gone when all is read; before what it fills
};
