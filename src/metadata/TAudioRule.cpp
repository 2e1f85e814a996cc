// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/TAudioRule.h"

#include "metadata/FileConformance.h"
#include "platform/TypeIdentifiers.h"

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kArchiveClass[] = {"TAudioRule", "TTagRule", "TDateRule", "TRuleModel",
                                         "NSObject"};
constexpr QStringView kIcon = u"music_tag";
constexpr QStringView kWord = u"Audio";
constexpr QStringView kInitialTag = u"title";
constexpr QStringView kEditor = u"TEditAudioTagRuleViewController";

constexpr QStringView kPrefix = u"%@ Meta data request: %@ -- ";
constexpr QStringView kOtherKind = u"%@File is not %@. Default text used. File: %@";
constexpr QStringView kNotRead =
    u"%@ meta data not yet processed, not yet ready to run. Default text used";
constexpr QStringView kNoMetadata = u"%@No meta data. Default text used. File: %@";
constexpr QStringView kNoValue = u"No value for '%@' in meta data. Default text used. File: %@";

} // namespace

TAudioRule::TAudioRule()
{
    setTheTag(kInitialTag.toString());
    setThePreview(TImage(kIcon.toString()));
    TAudioRule::updatePreview();
    TAudioRule::resetKind();
}

TAudioRule::TAudioRule(Decoding tag)
    : TTagRule(tag)
{
}

std::shared_ptr<TAudioRule> TAudioRule::decoding()
{
    return std::make_shared<TAudioRule>(Decoding{});
}

void TAudioRule::resetKind()
{
    m_fileUTI = TypeIdentifiers::kAudio;
    m_utiString = kWord.toString();
}

QVariant TAudioRule::tagValue(TFileObject &file, TErrorLog *errorLog) const
{
    const auto report = [&](int level, const QString &problem) {
        file.logErrorType(level, problem, errorLog);
        return QVariant();
    };
    const auto path = [&file] { return file.sourceURL().path(); };
    const auto prefix = [this] { return formatted(kPrefix, {m_utiString, theTag()}); };

    if (!fileConformsTo(file.item(), m_fileUTI)) {
        return report(TErrorTypes::kWarning,
                      formatted(kOtherKind, {prefix(), m_utiString, path()}));
    }
    const TMetadataPtr &metadata = file.ID3();
    if (!metadata)
        return report(TErrorTypes::kCritical, formatted(kNotRead, {path()}));
    if (metadata->isEmpty())
        return report(TErrorTypes::kWarning, formatted(kNoMetadata, {prefix(), path()}));
    const QVariant value = metadata->value(theTag());
    if (!value.isValid())
        return report(TErrorTypes::kWarning, formatted(kNoValue, {theTag(), path()}));
    return value;
}

void TAudioRule::setProperties(const QVariantMap &properties)
{
    TTagRule::setProperties(properties);
    resetKind();
}

void TAudioRule::initWithCoder(const TDecoder &coder)
{
    TTagRule::initWithCoder(coder);
    resetKind();
}

std::shared_ptr<TRuleModel> TAudioRule::newInstance() const
{
    return std::make_shared<TAudioRule>();
}

TArchiveClass TAudioRule::archiveClass() const
{
    return kArchiveClass;
}

QString TAudioRule::editingViewController() const
{
    return kEditor.toString();
}
