// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocumentGathering.h"

#include "document/TDocumentSlice.h"
#include "platform/TypeIdentifiers.h"

#include <algorithm>
#include <unordered_set>

namespace {

bool mayHaveMetadata(const TFileItem &item)
{
    using namespace TypeIdentifiers;
    if (item.facts.kind == TFileStatus::Kind::Folder)
        return false;
    const QLatin1StringView type = identifierForExtension(item.url.pathExtension(), false);
    return conformsTo(type, kImage) || conformsTo(type, kAudiovisualContent);
}

} // namespace

TDocumentGathering::TDocumentGathering(TDocumentMailPtr mail, TDocumentGatherer::Make make,
                                       TAnalyseMaster &master)
    : m_mail(std::move(mail))
    , m_make(std::move(make))
    , m_master(master)
{
}

TDocumentGathering::~TDocumentGathering() = default;

void TDocumentGathering::add(std::shared_ptr<TFileObject> file)
{
    const bool isMedia = mayHaveMetadata(file->item());
    m_operations.push_back({TAnalyseOperation(std::move(file), &m_master), isMedia});
}

void TDocumentGathering::resume()
{
    m_isSuspended = false;
    request();
    schedule();
}

void TDocumentGathering::cancel()
{
    forgetRequests();
    m_operations.clear();
}

bool TDocumentGathering::keepOnly(const TFileList &files)
{
    std::unordered_set<const TFileObject *> kept;
    for (const auto &file : files)
        kept.insert(file.get());
    const auto isGone = [&kept](const Waiting &waiting) {
        return !kept.contains(waiting.operation.theFile().get());
    };
    if (std::none_of(m_operations.begin(), m_operations.end(), isGone))
        return false;
    forgetRequests(); // answers are told apart by their order only
    std::erase_if(m_operations, isGone);
    if (!m_isSuspended)
        resume();
    return true;
}

void TDocumentGathering::addMissing(const TFileList &files)
{
    std::unordered_set<const TFileObject *> waiting;
    for (const Waiting &each : m_operations)
        waiting.insert(each.operation.theFile().get());
    for (const auto &file : files)
        if (isMissing(*file) && !waiting.contains(file.get()))
            add(file);
}

bool TDocumentGathering::isMissing(const TFileObject &file)
{
    return !file.imageProperties() && !file.ID3() && mayHaveMetadata(file.item());
}

void TDocumentGathering::forgetRequests()
{
    m_gatherer.reset();
    m_received.clear();
    m_requested = 0;
}

void TDocumentGathering::request()
{
    std::vector<TFileItem> files;
    for (; m_requested < m_operations.size(); ++m_requested)
        if (m_operations[m_requested].isMedia)
            files.push_back(m_operations[m_requested].operation.theFile()->item());
    if (files.empty() || !m_make)
        return;
    if (!m_gatherer)
        m_gatherer =
            m_make([this](const TMetadataSource::Metadata &metadata) { received(metadata); });
    m_gatherer->add(std::move(files));
}

void TDocumentGathering::received(const TMetadataSource::Metadata &metadata)
{
    m_received.push_back(metadata);
    schedule();
}

void TDocumentGathering::schedule()
{
    if (m_isScheduled || m_operations.empty())
        return;
    m_isScheduled = true;
    m_mail->post([this] { completePortion(); });
}

void TDocumentGathering::completePortion()
{
    m_isScheduled = false;
    const TDocumentSlice slice;
    while (!m_isSuspended && m_requested > 0) {
        Waiting next = m_operations.front();
        TMetadataSource::Metadata metadata;
        if (next.isMedia && m_make) {
            if (m_received.empty())
                return;
            metadata = std::move(m_received.front());
            m_received.pop_front();
        }
        m_operations.pop_front();
        --m_requested;
        next.operation.main(metadata);
        if (slice.isOver())
            break;
    }
    schedule();
}
