// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/inspector/InspectorReader.h"

#include "commonprocs/ByteNames.h"
#include "metadata/FileConformance.h"
#include "metadata/TagDictionary.h"
#include "platform/TypeIdentifiers.h"
#include "ui/images/Images.h"

#include <QMimeDatabase>

#include <sys/stat.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds kTimePerFile{5000};
constexpr std::size_t kMostJobs = 8; ///< of the worker; more pictures than that are not kept

QString kindOf(const TFileItem &file, bool isFolder)
{
    const QMimeDatabase types;
    if (isFolder)
        return types.mimeTypeForName(u"inode/directory"_s).comment();
    const QMimeType type =
        types.mimeTypeForFile(ByteNames::withoutLoneSurrogates(file.url.lastPathComponent()),
                              QMimeDatabase::MatchExtension);
    return type.isDefault() ? InspectorReader::tr("File of no known kind") : type.comment();
}

FileReading::Sort sortOf(const TFileItem &file)
{
    using Sort = FileReading::Sort;
    if (fileConformsTo(file, TypeIdentifiers::kImage))
        return Sort::Image;
    if (fileConformsTo(file, TypeIdentifiers::kMovie))
        return Sort::Video;
    return fileConformsTo(file, TypeIdentifiers::kAudiovisualContent) ? Sort::Audio : Sort::Other;
}

} // namespace

InspectorReader::InspectorReader(const QString &helper, ThumbnailCache cache, QObject *parent)
    : QObject(parent)
    , m_cache(std::move(cache))
    , m_pool({ByteNames::toBytes(helper), 1, 0, kTimePerFile}, *this)
{
}

/// The worker wakes the pool, which goes first.
InspectorReader::~InspectorReader()
{
    forget();
    m_worker.cancel();
    m_worker.wait();
}

void InspectorReader::ask(const FileQuestion &question)
{
    const quint64 number = ++m_newest;
    bool isWaiting = false;
    {
        const std::lock_guard lock(m_mutex);
        isWaiting = m_question.has_value();
        m_question = Request{number, question, {}, {}, 0};
        m_waiting.reset();
    }
    if (!isWaiting)
        m_worker.run([this](const std::stop_token &) { lookUp(); });
}

void InspectorReader::forget()
{
    ++m_newest;
    const std::lock_guard lock(m_mutex);
    m_waiting.reset();
}

std::optional<InspectorReader::Request> InspectorReader::takeQuestion()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_question, {});
}

void InspectorReader::lookUp()
{
    std::optional<Request> request = takeQuestion();
    if (!request || !isNewest(request->number))
        return;
    look(*request);
    request->reading.isWhole = !request->parts;
    deliver(request->number, request->reading);
    if (!request->parts)
        return;
    {
        const std::lock_guard lock(m_mutex);
        if (!isNewest(request->number))
            return;
        m_waiting = std::move(request);
    }
    m_pool.wake();
}

/// Looks at the file's name and status, and at the desktop's picture of it.
void InspectorReader::look(Request &request) const
{
    const TFileItem &file = request.question.file;
    FileReading &reading = request.reading;
    const QByteArray path = file.url.fileSystemPath();
    struct stat status = {};
    const bool isThere = ::stat(path.constData(), &status) == 0;
    reading.kind = kindOf(file, isThere && S_ISDIR(status.st_mode));
    if (!isThere || !S_ISREG(status.st_mode)) {
        reading.problem = isThere ? QString() : tr("The file is not there any more.");
        return;
    }
    reading.sort = sortOf(file);
    if (reading.sort == FileReading::Sort::Other || path.size() > MetadataProtocol::kMaxPath)
        return;
    request.modified = status.st_mtime;
    reading.picture = m_cache.find(file.url, request.modified, request.question.edge);
    const bool isImage = reading.sort == FileReading::Sort::Image;
    request.parts.setFlag(MetadataRequest::Thumbnail, reading.picture.isNull());
    request.parts.setFlag(MetadataRequest::ImageProperties,
                          isImage && request.question.wantsProperties);
    request.parts.setFlag(MetadataRequest::Media, !isImage);
}

void InspectorReader::deliver(quint64 number, FileReading reading)
{
    QMetaObject::invokeMethod(
        this,
        [this, number, answer = std::move(reading)] {
            if (isNewest(number))
                Q_EMIT answered(answer);
        },
        Qt::QueuedConnection);
}

/// One at a time: what waits in a helper could not be taken back.
std::optional<MetadataRequest> InspectorReader::nextRequest()
{
    if (m_inHand)
        return {};
    {
        const std::lock_guard lock(m_mutex);
        m_inHand = std::exchange(m_waiting, {});
    }
    if (!m_inHand)
        return {};
    return MetadataRequest{m_inHand->number,
                           m_inHand->parts,
                           m_inHand->question.edge,
                           m_inHand->question.file.url.fileSystemPath(),
                           {}};
}

void InspectorReader::finished(const MetadataRequest &, HelperPool::Outcome outcome,
                               MetadataReply reply)
{
    Request request = std::move(*std::exchange(m_inHand, {}));
    complete(request, outcome, std::move(reply));
    if (request.parts.testFlag(MetadataRequest::Thumbnail) && !request.reading.picture.isNull())
        keep(request);
    deliver(request.number, std::move(request.reading));
}

void InspectorReader::complete(Request &request, HelperPool::Outcome outcome, MetadataReply reply)
{
    FileReading &reading = request.reading;
    reading.isWhole = true;
    reading.problem = problem(outcome);
    if (request.parts.testFlag(MetadataRequest::ImageProperties))
        reading.imageProperties =
            TMetadata::fromVariantMap(reply.imageProperties.value_or(QVariantMap()));
    if (request.parts.testFlag(MetadataRequest::Media)) {
        reading.media = std::move(reply.media).value_or(MediaReading());
        reading.tags = TMetadata::fromVariantMap(tagDictionary(*reading.media, {}));
    }
    if (reply.thumbnail)
        reading.picture = Images::fromThumbnail(*reply.thumbnail);
}

QString InspectorReader::problem(HelperPool::Outcome outcome) const
{
    switch (outcome) {
    case HelperPool::Outcome::Answered:
        return {};
    case HelperPool::Outcome::TimedOut:
        return tr("Reading the file takes too long.");
    case HelperPool::Outcome::Unavailable:
        return m_pool.problem();
    case HelperPool::Outcome::Crashed:
        break;
    }
    return tr("The file is damaged and cannot be read.");
}

void InspectorReader::keep(const Request &request)
{
    if (m_worker.count() >= kMostJobs)
        return;
    m_worker.run([this, file = request.question.file.url, modified = request.modified,
                  edge = request.question.edge, picture = request.reading.picture](
                     const std::stop_token &) { m_cache.store(file, modified, edge, picture); });
}
