// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TFileObject.h"

#include "platform/TypeIdentifiers.h"

#include <QVariant>

#include <array>
#include <fcntl.h>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kArchiveClass{"TFileObject", "NSObject"};
constexpr QLatin1StringView kThePath{"thePath"};
constexpr QLatin1StringView kFileName{"fileName"};
constexpr QLatin1StringView kExtension{"extension"};
constexpr QLatin1StringView kIcon{"icon"};
constexpr QLatin1StringView kTargetName{"targetName"};
constexpr QLatin1StringView kAttributedTargetName{"attributedTargetName"};
constexpr QLatin1StringView kAttributedTargetExtension{"attributedTargetExtension"};
constexpr QLatin1StringView kSourceURL{"sourceURL"};
constexpr QLatin1StringView kTargetURL{"targetURL"};
constexpr QLatin1StringView kImageProperties{"imageProperties"};
constexpr QLatin1StringView kID3{"ID3"};
constexpr QLatin1StringView kAvMetadata{"avMetadata"};
constexpr QLatin1StringView kSize{"size"};
constexpr QLatin1StringView kModificationDate{"modificationDate"};
constexpr QLatin1StringView kCreationDate{"creationDate"};
constexpr QLatin1StringView kParent{"parent"};
constexpr QLatin1StringView kAvLyrics{"avLyrics"};
constexpr QLatin1StringView kErrLog{"errLog"};
constexpr QLatin1StringView kHasBeenProcessed{"hasBeenProcessed"};
constexpr QLatin1StringView kPlaceholder{"target-%@"};
constexpr QLatin1StringView kDummyPlaceholder{"target %@"};
constexpr TColor kExtensionColor{255, 0, 0};

template <typename T>
void setIfPresent(const QVariantMap &properties, QLatin1StringView key, const auto &set)
{
    const auto found = properties.constFind(QString(key));
    if (found != properties.cend())
        set(found->value<T>());
}

void encodeUrl(TEncoder &coder, QLatin1StringView key, const TFileURL &url)
{
    if (url.isValid())
        coder.encodeUrl(key, url.folder()->url(), url.relativeUrl());
}

void encodeMetadata(TEncoder &coder, QLatin1StringView key, const TMetadataPtr &metadata)
{
    if (metadata)
        coder.encodeVariant(key, metadata->toVariantMap());
}

/// Set, if only to nothing.
QString filled(const QString &text)
{
    return text.isNull() ? u""_s : text;
}

TMetadataPtr decodeMetadata(const TDecoder &coder, QLatin1StringView key)
{
    const QVariant value = coder.decodeVariant(key);
    return value.isValid() ? TMetadata::fromVariantMap(value.toMap()) : TMetadataPtr();
}

} // namespace

/// Values that were set apart from what location and facts give.
struct TFileObject::Side
{
    std::optional<QString> thePath;
    std::optional<QString> fileName;
    std::optional<QString> extension;
    std::optional<QString> parent;
    std::optional<QString> targetName; ///< unset while the shown one is the target name
    std::optional<TImage> icon;
    QVariant avMetadata;
    QString avLyrics;
};

TFileObject::TFileObject() = default;

TFileObject::TFileObject(const TFileItem &item, TMetadataPtr imageProperties, TMetadataPtr id3)
    : m_item(item)
    , m_imageProperties(std::move(imageProperties))
    , m_id3(std::move(id3))
{
}

TFileObject::TFileObject(TFileObject &&) noexcept = default;
TFileObject &TFileObject::operator=(TFileObject &&) noexcept = default;
TFileObject::~TFileObject() = default;

std::shared_ptr<TFileObject> TFileObject::newFileObjectWithURL(const TFileURL &url)
{
    if (!url.isValid())
        return nullptr;
    DiskFileManager disk;
    TFileItem item{url, {}};
    TFileStatus status;
    if (disk.status(AT_FDCWD, url.fileSystemPath(), false, status) == 0)
        item.facts = TFileFacts::fromStatus(status);
    return std::make_shared<TFileObject>(item);
}

std::shared_ptr<TFileObject> TFileObject::dummyObjectWithName(const QString &name)
{
    auto entry = std::make_shared<TFileObject>();
    entry->setFileName(name);
    entry->setTargetName(formatted(kDummyPlaceholder, {name}));
    return entry;
}

std::shared_ptr<TFileObject> TFileObject::copy() const
{
    auto entry = std::make_shared<TFileObject>(m_item);
    entry->setProperties(properties());
    return entry;
}

void TFileObject::assign(const TFileItem &item, TMetadataPtr imageProperties, TMetadataPtr id3)
{
    m_item = item;
    m_imageProperties = std::move(imageProperties);
    m_id3 = std::move(id3);
    m_attributedTargetName = {};
    m_isTargetShown = false;
    m_targetExtension = QString();
    m_errLog.clear();
    m_targetURL.reset();
    m_side.reset();
    m_hasBeenProcessed = false;
}

TFileObject::Side &TFileObject::side()
{
    if (!m_side)
        m_side = std::make_unique<Side>();
    return *m_side;
}

/// Whether it was set, or can be derived.
bool TFileObject::has(std::optional<QString> Side::*text) const
{
    return m_item.url.isValid() || (m_side && (*m_side).*text);
}

/// What location and name gave stays when one of them is about to be set.
void TFileObject::keepDerived()
{
    if (!m_item.url.isValid())
        return;
    Side &kept = side();
    kept.thePath = thePath();
    kept.fileName = fileName();
    kept.extension = extension();
    kept.parent = parent();
    kept.icon = icon();
    if (!m_isTargetShown)
        kept.targetName = targetName();
}

QString TFileObject::thePath() const
{
    return m_side && m_side->thePath ? *m_side->thePath : m_item.url.path();
}

QString TFileObject::fileName() const
{
    if (m_side && m_side->fileName)
        return *m_side->fileName;
    return removeExtensionFromFilename(m_item.url.lastPathComponent());
}

void TFileObject::setFileName(const QString &name)
{
    keepDerived();
    side().fileName = name;
}

QString TFileObject::extension() const
{
    if (m_side && m_side->extension)
        return *m_side->extension;
    return getExtensionFromFileName(m_item.url.lastPathComponent());
}

void TFileObject::setExtension(const QString &extension)
{
    keepDerived();
    side().extension = extension;
}

TImage TFileObject::icon() const
{
    if (m_side && m_side->icon)
        return *m_side->icon;
    if (!m_item.url.isValid())
        return {};
    const bool isFolder = m_item.facts.kind == TFileStatus::Kind::Folder;
    return TImage(QString(TypeIdentifiers::identifierForExtension(extension(), isFolder)));
}

TFileURL TFileObject::sourceURL() const
{
    return m_item.url;
}

TFileURL TFileObject::targetURL() const
{
    return m_targetURL ? *m_targetURL : TFileURL();
}

void TFileObject::setTargetURL(const TFileURL &url)
{
    m_targetURL = url.isValid() ? std::make_unique<TFileURL>(url) : nullptr;
}

QString TFileObject::targetName() const
{
    if (m_isTargetShown)
        return filled(m_attributedTargetName.string());
    if (m_side && m_side->targetName)
        return *m_side->targetName;
    return m_item.url.isValid() ? formatted(kPlaceholder, {fileName()}) : QString();
}

void TFileObject::setTargetName(const QString &name)
{
    m_isTargetShown = name == m_attributedTargetName.string();
    if (!m_isTargetShown)
        side().targetName = filled(name);
    else if (m_side)
        m_side->targetName.reset();
}

void TFileObject::setAttributedTargetName(TAttributedString name)
{
    if (m_isTargetShown && name.string() != m_attributedTargetName.string()) {
        side().targetName = targetName();
        m_isTargetShown = false;
    }
    m_attributedTargetName = std::move(name);
}

void TFileObject::setTarget(TAttributedString name)
{
    m_attributedTargetName = std::move(name);
    m_isTargetShown = true;
    if (m_side)
        m_side->targetName.reset();
}

TAttributedString TFileObject::attributedTargetExtension() const
{
    return m_targetExtension.isEmpty()
               ? TAttributedString()
               : TAttributedString(m_targetExtension, TColor(), kExtensionColor);
}

void TFileObject::setAttributedTargetExtension(const TAttributedString &extension)
{
    m_targetExtension = extension.string();
}

qint64 TFileObject::size() const
{
    return m_item.facts.size;
}

TDate TFileObject::creationDate() const
{
    return m_item.facts.creation;
}

TDate TFileObject::modificationDate() const
{
    return m_item.facts.modification;
}

QString TFileObject::parent() const
{
    if (m_side && m_side->parent)
        return *m_side->parent;
    const bool hasParent = m_item.url.isValid() && !m_item.url.lastPathComponent().isEmpty();
    return hasParent ? m_item.url.folder()->name() : u""_s;
}

QVariant TFileObject::avMetadata() const
{
    return m_side ? m_side->avMetadata : QVariant();
}

QString TFileObject::avLyrics() const
{
    return m_side ? m_side->avLyrics : QString();
}

void TFileObject::logErrorType(int errClass, TErrorText description, TErrorLog *secondLog)
{
    if (secondLog) {
        secondLog->shareText(description);
        secondLog->append({errClass, description});
    }
    m_errLog.append({errClass, std::move(description)});
}

TErrorText TFileObject::withPath(const QString &text) const
{
    return m_side && m_side->thePath ? TErrorText(text + *m_side->thePath)
                                     : TErrorText(text, m_item.url);
}

QVariantMap TFileObject::properties() const
{
    QVariantMap map;
    const auto put = [&map](QLatin1StringView key, bool present, const auto &value) {
        if (present)
            map.insert(QString(key), QVariant::fromValue(value));
    };
    put(kThePath, has(&Side::thePath), thePath());
    put(kFileName, has(&Side::fileName), fileName());
    put(kExtension, has(&Side::extension), extension());
    put(kIcon, icon().isSet(), icon());
    put(kTargetName, !targetName().isNull(), targetName());
    put(kAttributedTargetName, !m_attributedTargetName.isEmpty(), m_attributedTargetName);
    put(kAttributedTargetExtension, !m_targetExtension.isEmpty(), attributedTargetExtension());
    put(kSourceURL, m_item.url.isValid(), m_item.url);
    put(kTargetURL, targetURL().isValid(), targetURL());
    put(kImageProperties, m_imageProperties != nullptr, m_imageProperties);
    put(kID3, m_id3 != nullptr, m_id3);
    put(kModificationDate, modificationDate().isSet(), modificationDate());
    put(kCreationDate, creationDate().isSet(), creationDate());
    put(kParent, has(&Side::parent), parent());
    put(kAvLyrics, !avLyrics().isNull(), avLyrics());
    put(kErrLog, !m_errLog.isEmpty(), m_errLog);
    put(kSize, true, size());
    put(kHasBeenProcessed, true, m_hasBeenProcessed);
    if (avMetadata().isValid())
        map.insert(QString(kAvMetadata), avMetadata());
    return map;
}

void TFileObject::setProperties(const QVariantMap &properties)
{
    setIfPresent<TFileURL>(properties, kSourceURL, [&](const auto &v) {
        if (v != m_item.url)
            keepDerived();
        m_item.url = v;
    });
    // What the location says already needs no place of its own.
    setIfPresent<QString>(properties, kThePath, [&](const auto &v) {
        if (v != thePath())
            side().thePath = v;
    });
    setIfPresent<QString>(properties, kFileName, [&](const auto &v) {
        if (v != fileName())
            setFileName(v);
    });
    setIfPresent<QString>(properties, kExtension, [&](const auto &v) {
        if (v != extension())
            setExtension(v);
    });
    setIfPresent<QString>(properties, kParent, [&](const auto &v) {
        if (v != parent())
            side().parent = v;
    });
    setIfPresent<qint64>(properties, kSize, [&](qint64 v) { m_item.facts.size = v; });
    setIfPresent<TImage>(properties, kIcon, [&](const auto &v) {
        if (v != icon())
            side().icon = v;
    });
    setIfPresent<TAttributedString>(properties, kAttributedTargetName,
                                    [&](const auto &v) { setAttributedTargetName(v); });
    setIfPresent<QString>(properties, kTargetName, [&](const auto &v) { setTargetName(v); });
    setIfPresent<TAttributedString>(properties, kAttributedTargetExtension,
                                    [&](const auto &v) { setAttributedTargetExtension(v); });
    setIfPresent<TFileURL>(properties, kTargetURL, [&](const auto &v) { setTargetURL(v); });
    setIfPresent<TMetadataPtr>(properties, kImageProperties,
                               [&](const auto &v) { m_imageProperties = v; });
    setIfPresent<TMetadataPtr>(properties, kID3, [&](const auto &v) { m_id3 = v; });
    setIfPresent<TDate>(properties, kModificationDate,
                        [&](TDate v) { m_item.facts.modification = v; });
    setIfPresent<TDate>(properties, kCreationDate, [&](TDate v) { m_item.facts.creation = v; });
    setIfPresent<QString>(properties, kAvLyrics, [&](const auto &v) { side().avLyrics = v; });
    setIfPresent<TErrorLog>(properties, kErrLog, [&](const auto &v) { m_errLog = v; });
    setIfPresent<bool>(properties, kHasBeenProcessed, [&](bool v) { m_hasBeenProcessed = v; });
    const auto metadata = properties.constFind(QString(kAvMetadata));
    if (metadata != properties.cend())
        side().avMetadata = *metadata;
}

TArchiveClass TFileObject::archiveClass()
{
    return kArchiveClass;
}

void TFileObject::encodeWithCoder(TEncoder &coder) const
{
    const auto encodeText = [&coder](QLatin1StringView key, const TAttributedString &text) {
        if (!text.isEmpty())
            coder.encodeObject(key, TAttributedString::archiveClass(),
                               [&text](TEncoder &e) { text.encodeWithCoder(e); });
    };
    const TImage image = icon();
    if (has(&Side::thePath))
        coder.encodeString(kThePath, thePath());
    if (has(&Side::fileName))
        coder.encodeString(kFileName, fileName());
    if (has(&Side::extension))
        coder.encodeString(kExtension, extension());
    if (image.isSet())
        coder.encodeObject(kIcon, TImage::archiveClass(),
                           [&image](TEncoder &e) { image.encodeWithCoder(e); });
    coder.encodeString(kTargetName, targetName());
    encodeText(kAttributedTargetName, m_attributedTargetName);
    encodeText(kAttributedTargetExtension, attributedTargetExtension());
    encodeUrl(coder, kSourceURL, m_item.url);
    encodeUrl(coder, kTargetURL, targetURL());
    encodeMetadata(coder, kImageProperties, m_imageProperties);
    encodeMetadata(coder, kID3, m_id3);
    coder.encodeVariant(kAvMetadata, avMetadata());
    coder.encodeInteger(kSize, size());
    coder.encodeDate(kModificationDate, modificationDate());
    coder.encodeDate(kCreationDate, creationDate());
    if (has(&Side::parent))
        coder.encodeString(kParent, parent());
    coder.encodeString(kAvLyrics, avLyrics());
    if (!m_errLog.isEmpty())
        m_errLog.encode(coder, kErrLog);
    coder.encodeBool(kHasBeenProcessed, m_hasBeenProcessed);
}

void TFileObject::initWithCoder(const TDecoder &coder)
{
    const auto decodeText = [&coder](QLatin1StringView key) {
        TAttributedString text;
        coder.decodeObject(key, [&text](const TDecoder &d) { text.initWithCoder(d); });
        return text;
    };
    assign({TFileURL::fromString(coder.decodeUrl(kSourceURL)), {}},
           decodeMetadata(coder, kImageProperties), decodeMetadata(coder, kID3));
    m_item.facts.size = coder.decodeInteger(kSize);
    m_item.facts.modification = coder.decodeDate(kModificationDate);
    m_item.facts.creation = coder.decodeDate(kCreationDate);
    const auto decodeSet = [&coder](QLatin1StringView key) {
        const QString value = coder.decodeString(key);
        return value.isNull() ? std::nullopt : std::optional(value);
    };
    side().thePath = decodeSet(kThePath);
    side().fileName = decodeSet(kFileName);
    side().extension = decodeSet(kExtension);
    side().parent = decodeSet(kParent);
    TImage image;
    coder.decodeObject(kIcon, [&image](const TDecoder &d) { image.initWithCoder(d); });
    side().icon = image;
    setTargetURL(TFileURL::fromString(coder.decodeUrl(kTargetURL)));
    side().avMetadata = coder.decodeVariant(kAvMetadata);
    side().avLyrics = coder.decodeString(kAvLyrics);
    m_attributedTargetName = decodeText(kAttributedTargetName);
    if (const QString target = coder.decodeString(kTargetName); !target.isNull())
        setTargetName(target);
    setAttributedTargetExtension(decodeText(kAttributedTargetExtension));
    m_errLog = TErrorLog::decode(coder, kErrLog);
    m_hasBeenProcessed = coder.decodeBool(kHasBeenProcessed);
}
