// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/BatchMetadata.h"

namespace {

/// A signal cannot wake who waits; this is how long Ctrl-C may take.
constexpr std::chrono::milliseconds kLookForInterrupt{50};

} // namespace

class BatchMetadata::Source : public TMetadataSource
{
public:
    explicit Source(BatchMetadata &metadata)
        : m_metadata(metadata)
    {
    }
    Metadata metadataForFile(qsizetype index) override { return m_metadata.metadataForFile(index); }

private:
    BatchMetadata &m_metadata;
};

BatchMetadata::BatchMetadata(const CliEnvironment &environment)
    : m_environment(environment)
{
}

BatchMetadata::~BatchMetadata() = default;

void BatchMetadata::start(std::span<const TFileItem> files, MetadataGatherer::Kinds kinds,
                          const ImageWish &wish, bool verbose)
{
    m_started = true;
    if (!kinds || files.empty())
        return;
    m_total = files.size();
    MetadataGatherer::Settings settings;
    settings.kinds = kinds;
    settings.wish = wish;
    settings.helper = m_environment.metadataHelper;
    if (!verbose)
        settings.console = {};
    m_gatherer = std::make_unique<MetadataGatherer>(
        std::move(settings),
        [this](qsizetype, const TMetadataSource::Metadata &metadata) { complete(metadata); });
    m_gatherer->addBorrowed(files);
}

void BatchMetadata::complete(const TMetadataSource::Metadata &metadata)
{
    {
        const std::lock_guard lock(m_mutex);
        m_results.push_back(metadata);
    }
    m_arrived.notify_all();
}

TMetadataSource::Metadata BatchMetadata::metadataForFile(qsizetype index)
{
    const auto place = static_cast<std::size_t>(index);
    std::unique_lock lock(m_mutex);
    while (!m_arrived.wait_for(lock, kLookForInterrupt, [&] { return m_results.size() > place; })) {
        if (m_environment.interrupted)
            return {};
    }
    return m_results[place];
}

void BatchMetadata::reorder(const std::vector<qsizetype> &order)
{
    std::vector<TMetadataSource::Metadata> reordered;
    const std::lock_guard lock(m_mutex);
    if (m_results.size() != order.size())
        return;
    reordered.reserve(order.size());
    for (const qsizetype index : order)
        reordered.push_back(std::move(m_results[static_cast<std::size_t>(index)]));
    m_results = std::move(reordered);
}

std::unique_ptr<TMetadataSource> BatchMetadata::source()
{
    if (m_total == 0)
        return nullptr;
    const bool allRead = [this] {
        const std::lock_guard lock(m_mutex);
        return m_results.size() == m_total;
    }();
    if (allRead)
        m_gatherer.reset();
    return std::make_unique<Source>(*this);
}
