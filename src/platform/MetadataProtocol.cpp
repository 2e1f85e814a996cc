// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/MetadataProtocol.h"

#include "platform/CborValues.h"

#include <QCborStreamReader>
#include <QCborStreamWriter>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kGreeting{"tavrin-metadata"};
/// To be raised with every change of the messages: an update may replace the helper under a program
/// that still runs.
constexpr quint32 kVersion = 2;
constexpr quint64 kGreetingFields = 2;
constexpr quint64 kRequestFields = 5;
constexpr quint64 kWishFields = 2;
constexpr quint64 kReplyFields = 4;
constexpr quint64 kMediaFields = 2;
constexpr quint64 kItemFields = 4;
constexpr quint64 kThumbnailFields = 3;
constexpr int kBytesPerPixel = 4;
constexpr qsizetype kMostBytesPerUnit = 3;
constexpr qsizetype kUnitsBesides = 4; ///< for the lengths of a tag's texts
constexpr qsizetype kUsualSize = 4096;

/// A frame whose content is written by write.
template <class Write>
QByteArray framed(Write write)
{
    QByteArray content;
    content.reserve(kUsualSize);
    {
        QCborStreamWriter writer(&content);
        write(writer);
    }
    QByteArray bytes(MetadataProtocol::kHeaderBytes, Qt::Uninitialized);
    qToLittleEndian(static_cast<quint32>(content.size()), bytes.data());
    return bytes + content;
}

bool isShort(const ImageWish &wish)
{
    qsizetype units = 0;
    for (const ImageWish::Tag &tag : wish.tags)
        units += tag.category.size() + tag.tag.size() + kUnitsBesides;
    return units * kMostBytesPerUnit <= MetadataProtocol::kMaxWishBytes;
}

void writeWish(QCborStreamWriter &writer, const ImageWish &wish)
{
    if (!isShort(wish)) {
        writer.startArray(0);
    } else {
        writer.startArray(wish.tags.size());
        for (const ImageWish::Tag &tag : wish.tags) {
            writer.startArray(kWishFields);
            writer.append(tag.category);
            writer.append(tag.tag);
            writer.endArray();
        }
    }
    writer.endArray();
}

ImageWish readWish(CborReader &reader)
{
    ImageWish wish;
    for (quint64 left = reader.enterArray(); left > 0 && reader.isGood(); --left) {
        reader.enterArray(kWishFields);
        QString category = reader.text();
        wish.tags.push_back({std::move(category), reader.text()});
        reader.leave();
    }
    reader.leave();
    return wish;
}

void writeMedia(QCborStreamWriter &writer, const MediaReading &media)
{
    writer.startArray(kMediaFields);
    writer.append(media.duration);
    writer.startArray(media.items.size());
    for (const MediaItem &item : media.items) {
        writer.startArray(kItemFields);
        writer.append(item.format);
        CborValues::write(writer, item.key);
        writer.append(item.commonKey);
        CborValues::write(writer, item.value);
        writer.endArray();
    }
    writer.endArray();
    writer.endArray();
}

void writeThumbnail(QCborStreamWriter &writer, const MetadataThumbnail &thumbnail)
{
    writer.startArray(kThumbnailFields);
    writer.append(qint64{thumbnail.width});
    writer.append(qint64{thumbnail.height});
    writer.append(thumbnail.pixels);
    writer.endArray();
}

MediaReading readMedia(CborReader &reader)
{
    MediaReading media;
    reader.enterArray(kMediaFields);
    media.duration = reader.real();
    for (quint64 left = reader.enterArray(); left > 0 && reader.isGood(); --left) {
        MediaItem item;
        reader.enterArray(kItemFields);
        item.format = reader.text();
        item.key = reader.value();
        // A code of four bytes is told from other numbers by its type.
        if (item.key.typeId() == QMetaType::LongLong)
            item.key = static_cast<quint32>(item.key.toLongLong());
        item.commonKey = reader.text();
        item.value = reader.value();
        reader.leave();
        media.items.push_back(std::move(item));
    }
    reader.leave();
    reader.leave();
    return media;
}

MetadataThumbnail readThumbnail(CborReader &reader)
{
    MetadataThumbnail thumbnail;
    reader.enterArray(kThumbnailFields);
    thumbnail.width = static_cast<int>(reader.number(MetadataProtocol::kMaxEdge));
    thumbnail.height = static_cast<int>(reader.number(MetadataProtocol::kMaxEdge));
    thumbnail.pixels = reader.bytes();
    reader.leave();
    const qsizetype size = qsizetype{thumbnail.width} * thumbnail.height * kBytesPerPixel;
    if (size == 0 || thumbnail.pixels.size() != size)
        reader.fail();
    return thumbnail;
}

} // namespace

namespace MetadataProtocol {

QByteArray greeting()
{
    return framed([](QCborStreamWriter &writer) {
        writer.startArray(kGreetingFields);
        writer.append(kGreeting);
        writer.append(quint64{kVersion});
        writer.endArray();
    });
}

QByteArray frame(const MetadataRequest &request)
{
    return framed([&request](QCborStreamWriter &writer) {
        writer.startArray(kRequestFields);
        writer.append(request.id);
        writer.append(quint64{static_cast<uint>(request.parts.toInt())});
        writer.append(qint64{request.edge});
        writer.append(request.path);
        writeWish(writer, request.wish);
        writer.endArray();
    });
}

QByteArray frame(const MetadataReply &reply)
{
    QByteArray bytes = framed([&reply](QCborStreamWriter &writer) {
        writer.startArray(kReplyFields);
        writer.append(reply.id);
        if (reply.imageProperties)
            CborValues::write(writer, *reply.imageProperties);
        else
            writer.append(nullptr);
        if (reply.media)
            writeMedia(writer, *reply.media);
        else
            writer.append(nullptr);
        if (reply.thumbnail)
            writeThumbnail(writer, *reply.thumbnail);
        else
            writer.append(nullptr);
        writer.endArray();
    });
    if (bytes.size() - kHeaderBytes <= kMaxReply)
        return bytes;
    return frame(MetadataReply{reply.id, {}, {}, {}});
}

bool isGreeting(const QByteArray &content)
{
    CborReader reader(content);
    reader.enterArray(kGreetingFields);
    const bool named = reader.text() == kGreeting;
    const bool current = reader.number() == kVersion;
    reader.leave();
    return named && current && reader.isAtEnd();
}

std::optional<MetadataRequest> readRequest(const QByteArray &content)
{
    constexpr MetadataRequest::Parts kAll{MetadataRequest::ImageProperties, MetadataRequest::Media,
                                          MetadataRequest::Thumbnail};
    CborReader reader(content);
    MetadataRequest request;
    reader.enterArray(kRequestFields);
    request.id = reader.number();
    request.parts = MetadataRequest::Parts::fromInt(
        static_cast<MetadataRequest::Parts::Int>(reader.number(quint64{kAll.toInt()})));
    request.edge = static_cast<int>(reader.number(kMaxEdge));
    request.path = reader.bytes();
    request.wish = readWish(reader);
    reader.leave();
    if (!reader.isAtEnd() || request.path.size() > kMaxPath)
        return {};
    return request;
}

std::optional<MetadataReply> readReply(const QByteArray &content)
{
    CborReader reader(content);
    MetadataReply reply;
    reader.enterArray(kReplyFields);
    reply.id = reader.number();
    if (!reader.skipNull())
        reply.imageProperties = reader.map();
    if (!reader.skipNull())
        reply.media = readMedia(reader);
    if (!reader.skipNull())
        reply.thumbnail = readThumbnail(reader);
    reader.leave();
    if (!reader.isAtEnd())
        return {};
    return reply;
}

} // namespace MetadataProtocol
