// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/TImageTagRule.h"

#include "metadata/EXIFSupport.h"
#include "platform/TypeIdentifiers.h"

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kArchiveClass[] = {"TImageTagRule", "TTagRule", "TDateRule", "TRuleModel",
                                         "NSObject"};
constexpr QStringView kIcon = u"image_tag_white";
constexpr QStringView kInitialTag = u"PixelWidth";
constexpr QStringView kGeneral = u"General";
constexpr QStringView kTileName = u"%@:%@";
constexpr QStringView kEditor = u"TEditImageTagRuleViewController";

constexpr QStringView kPrefix = u"Image Meta data request: %@:%@ -- ";
constexpr QStringView kKind = u"an image";
constexpr QStringView kNoCategory = u"%@No '%@' meta data. Default text used. File: ";
constexpr QStringView kNoValue =
    u"No value for '%@' in its '%@' meta data. Default text used. File: ";

} // namespace

TImageTagRule::TImageTagRule()
    : m_category(kGeneral.toString())
{
    setTheTag(kInitialTag.toString());
    setThePreview(TImage(kIcon.toString()));
    TImageTagRule::updatePreview();
}

TImageTagRule::TImageTagRule(Decoding tag)
    : TTagRule(tag)
{
}

std::shared_ptr<TImageTagRule> TImageTagRule::decoding()
{
    return std::make_shared<TImageTagRule>(Decoding{});
}

std::span<const TRuleField<TImageTagRule>> TImageTagRule::fields()
{
    static constexpr TRuleField<TImageTagRule> kFields[] = {
        {"category"_L1, &TImageTagRule::m_category},
    };
    return kFields;
}

QString TImageTagRule::messagePrefix() const
{
    return formatted(kPrefix, {m_category, theTag()});
}

QVariant TImageTagRule::tagValue(TFileObject &file, TErrorLog *errorLog) const
{
    const TMetadataPtr &metadata = file.imageProperties();
    if (!hasMetadata(metadata, TypeIdentifiers::kImage, kKind, file, errorLog))
        return {};
    const auto warn = [&](const QString &problem) {
        file.logErrorType(TErrorTypes::kWarning, TErrorText(problem, file.sourceURL()), errorLog);
        return QVariant();
    };
    const QString key = metadataCategory();
    const bool isGeneral = key.isEmpty();
    if (!isGeneral && !metadata->hasDictionary(key)) {
        return warn(formatted(kNoCategory, {messagePrefix(), m_category}));
    }
    QVariant value = isGeneral ? metadata->value(theTag()) : metadata->value(key, theTag());
    if (!value.isValid())
        return warn(formatted(kNoValue, {theTag(), m_category}));
    return value;
}

QString TImageTagRule::metadataCategory() const
{
    return m_category == kGeneral ? QString() : EXIFSupport::categoryForTitle(m_category);
}

QVariantMap TImageTagRule::properties() const
{
    QVariantMap map = TTagRule::properties();
    TRuleFields::addProperties(fields(), *this, map);
    return map;
}

void TImageTagRule::setProperties(const QVariantMap &properties)
{
    TTagRule::setProperties(properties);
    TRuleFields::setProperties(fields(), *this, properties);
}

std::shared_ptr<TRuleModel> TImageTagRule::newInstance() const
{
    return std::make_shared<TImageTagRule>();
}

TArchiveClass TImageTagRule::archiveClass() const
{
    return kArchiveClass;
}

void TImageTagRule::encodeWithCoder(TEncoder &coder) const
{
    TTagRule::encodeWithCoder(coder);
    TRuleFields::encodeFields(fields(), *this, coder);
}

void TImageTagRule::initWithCoder(const TDecoder &coder)
{
    TTagRule::initWithCoder(coder);
    TRuleFields::decodeFields(fields(), *this, coder);
    updatePreview();
}

void TImageTagRule::updatePreview()
{
    setName(formatted(kTileName, {m_category, theTag()}));
}

QString TImageTagRule::editingViewController() const
{
    return kEditor.toString();
}
