// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/TImageTagRule.h"

#include "metadata/EXIFSupport.h"
#include "metadata/FileConformance.h"
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
constexpr QStringView kNotAnImage = u"%@File is not an image. Default text used. File: %@";
constexpr QStringView kNotRead =
    u"%@ meta data not yet processed, not yet ready to run. Default text used";
constexpr QStringView kNoMetadata = u"%@No meta data. Default text used. File: %@";
constexpr QStringView kNoCategory = u"%@No '%@' meta data. Default text used. File: %@";
constexpr QStringView kNoValue =
    u"No value for '%@' in its '%@' meta data. Default text used. File: %@";

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

QVariant TImageTagRule::tagValue(TFileObject &file, TErrorLog *errorLog) const
{
    const auto report = [&](int level, const QString &problem) {
        file.logErrorType(level, problem, errorLog);
        return QVariant();
    };
    const auto path = [&file] { return file.sourceURL().path(); };
    const auto prefix = [this] { return formatted(kPrefix, {m_category, theTag()}); };

    if (!fileConformsTo(file.item(), TypeIdentifiers::kImage))
        return report(TErrorTypes::kWarning, formatted(kNotAnImage, {prefix(), path()}));
    const TMetadataPtr &metadata = file.imageProperties();
    if (!metadata)
        return report(TErrorTypes::kCritical, formatted(kNotRead, {path()}));
    if (metadata->isEmpty())
        return report(TErrorTypes::kWarning, formatted(kNoMetadata, {prefix(), path()}));

    const QString key = EXIFSupport::categoryForTitle(m_category);
    const bool isGeneral = m_category == kGeneral;
    if (!isGeneral && !metadata->hasDictionary(key)) {
        return report(TErrorTypes::kWarning,
                      formatted(kNoCategory, {prefix(), m_category, path()}));
    }
    const QVariant value = isGeneral ? metadata->value(theTag()) : metadata->value(key, theTag());
    if (!value.isValid()) {
        return report(TErrorTypes::kWarning, formatted(kNoValue, {theTag(), m_category, path()}));
    }
    return value;
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
