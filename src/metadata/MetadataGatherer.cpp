// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/MetadataGatherer.h"

#include "commonprocs/ByteNames.h"
#include "metadata/CompletionQueue.h"
#include "metadata/FileConformance.h"
#include "metadata/HelperPool.h"
#include "metadata/HelperProcess.h"
#include "metadata/TagDictionary.h"
#include "platform/TypeIdentifiers.h"

#include <array>
#include <deque>
#include <mutex>

using namespace Qt::StringLiterals;
using Metadata = TMetadataSource::Metadata;

namespace {

constexpr QLatin1StringView kNotRead{"the metadata of a file cannot be read"};

QString reasonOf(HelperPool::Outcome outcome)
{
    return outcome == HelperPool::Outcome::TimedOut ? u"reading it takes too long"_s
                                                    : u"reading it failed"_s;
}

QByteArray programPath(const QString &helper)
{
    return ByteNames::toBytes(helper.isEmpty() ? standardMetadataHelper() : helper);
}

/// Files that came with one call of add.
struct Portion
{
    std::vector<TFileItem> owned; ///< empty when they are borrowed
    std::span<const TFileItem> files;
};

} // namespace

/// Everything but what add() touches belongs to the pool's thread.
class MetadataGatherer::Private final : public HelperPool::Client
{
public:
    Private(Settings settings, Completion completion);
    ~Private();

    void add(Portion portion);
    QString problem() const { return m_pool.problem(); }

    std::optional<MetadataRequest> nextRequest() override;
    void finished(const MetadataRequest &request, HelperPool::Outcome outcome,
                  MetadataReply reply) override;

private:
    const TFileItem *nextFile();
    MetadataRequest::Parts partsOf(const TFileItem &file) const;
    void report(const MetadataRequest &request, HelperPool::Outcome outcome);
    void settle(qsizetype file, Metadata metadata);
    void complete(qsizetype file, Metadata metadata);

    const Settings m_settings;
    const Completion m_completion;
    const std::shared_ptr<CompletionQueue> m_queue; ///< null: completions run on the pool's thread
    std::mutex m_mutex;
    std::deque<Portion> m_portions; ///< guarded; the first one is in use
    std::size_t m_nextInPortion = 0;
    qsizetype m_nextFile = 0;
    qsizetype m_nextToComplete = 0;
    /// From m_nextToComplete on: what was settled before an earlier file.
    std::deque<std::optional<Metadata>> m_settled;
    bool m_reportedProblem = false;
    HelperPool m_pool; ///< last, so that its thread ends before what it uses
};

MetadataGatherer::Private::Private(Settings settings, Completion completion)
    : m_settings(std::move(settings))
    , m_completion(std::move(completion))
    , m_queue(m_settings.mainThread != nullptr
                  ? std::make_shared<CompletionQueue>(*m_settings.mainThread, m_completion)
                  : nullptr)
    , m_pool({programPath(m_settings.helper), m_settings.helpers, m_settings.niceness,
              m_settings.timePerFile},
             *this)
{
}

MetadataGatherer::Private::~Private()
{
    if (m_queue)
        m_queue->close();
}

void MetadataGatherer::Private::add(Portion portion)
{
    if (portion.files.empty())
        return;
    {
        const std::lock_guard lock(m_mutex);
        m_portions.push_back(std::move(portion));
    }
    m_pool.wake();
}

/// Valid until the next call.
const TFileItem *MetadataGatherer::Private::nextFile()
{
    const std::lock_guard lock(m_mutex);
    if (!m_portions.empty() && m_nextInPortion == m_portions.front().files.size()) {
        m_portions.pop_front();
        m_nextInPortion = 0;
    }
    return m_portions.empty() ? nullptr : &m_portions.front().files[m_nextInPortion++];
}

MetadataRequest::Parts MetadataGatherer::Private::partsOf(const TFileItem &file) const
{
    MetadataRequest::Parts parts;
    parts.setFlag(MetadataRequest::ImageProperties,
                  m_settings.kinds.testFlag(ImageProperties) &&
                      fileConformsTo(file, TypeIdentifiers::kImage));
    parts.setFlag(MetadataRequest::Media,
                  m_settings.kinds.testFlag(Media) &&
                      fileConformsTo(file, TypeIdentifiers::kAudiovisualContent));
    return parts;
}

std::optional<MetadataRequest> MetadataGatherer::Private::nextRequest()
{
    while (const TFileItem *file = m_pool.isStopping() ? nullptr : nextFile()) {
        const qsizetype index = m_nextFile++;
        m_settled.emplace_back();
        const MetadataRequest::Parts parts = partsOf(*file);
        if (!parts) {
            settle(index, {});
            continue;
        }
        MetadataRequest request{static_cast<quint64>(index), parts, 0, file->url.fileSystemPath(),
                                m_settings.wish};
        if (request.path.size() <= MetadataProtocol::kMaxPath)
            return request;
        finished(request, HelperPool::Outcome::Crashed, {});
    }
    return {};
}

void MetadataGatherer::Private::finished(const MetadataRequest &request,
                                         HelperPool::Outcome outcome, MetadataReply reply)
{
    if (outcome != HelperPool::Outcome::Answered)
        report(request, outcome);
    Metadata metadata;
    if (request.parts.testFlag(MetadataRequest::ImageProperties))
        metadata.imageProperties =
            TMetadata::fromVariantMap(reply.imageProperties.value_or(QVariantMap()));
    if (request.parts.testFlag(MetadataRequest::Media))
        metadata.id3 = TMetadata::fromVariantMap(
            tagDictionary(reply.media.value_or(MediaReading()), m_settings.console));
    settle(static_cast<qsizetype>(request.id), std::move(metadata));
}

void MetadataGatherer::Private::report(const MetadataRequest &request, HelperPool::Outcome outcome)
{
    if (outcome != HelperPool::Outcome::Unavailable)
        zelWarn(kNotRead, reasonOf(outcome) + ": "_L1 + ByteNames::fromBytes(request.path));
    else if (!std::exchange(m_reportedProblem, true))
        zelError(kNotRead, m_pool.problem());
}

void MetadataGatherer::Private::settle(qsizetype file, Metadata metadata)
{
    m_settled[static_cast<std::size_t>(file - m_nextToComplete)] = std::move(metadata);
    while (!m_settled.empty() && m_settled.front()) {
        Metadata first = std::move(*m_settled.front());
        m_settled.pop_front();
        complete(m_nextToComplete++, std::move(first));
    }
}

void MetadataGatherer::Private::complete(qsizetype file, Metadata metadata)
{
    if (m_queue)
        m_queue->push(file, std::move(metadata));
    else
        m_completion(file, metadata);
}

MetadataGatherer::MetadataGatherer(Settings settings, Completion completion)
    : m_private(std::make_unique<Private>(std::move(settings), std::move(completion)))
{
}

MetadataGatherer::~MetadataGatherer() = default;

void MetadataGatherer::add(std::vector<TFileItem> files)
{
    Portion portion{std::move(files), {}};
    portion.files = portion.owned;
    m_private->add(std::move(portion));
}

void MetadataGatherer::addBorrowed(std::span<const TFileItem> files)
{
    m_private->add({{}, files});
}

QString MetadataGatherer::problem() const
{
    return m_private->problem();
}
