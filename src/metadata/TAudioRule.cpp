// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/TAudioRule.h"

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
constexpr QStringView kNoValue = u"No value for '%@' in meta data. Default text used. File: ";

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

QString TAudioRule::messagePrefix() const
{
    return formatted(kPrefix, {m_utiString, theTag()});
}

QVariant TAudioRule::tagValue(TFileObject &file, TErrorLog *errorLog) const
{
    if (!hasMetadata(file.ID3(), m_fileUTI, m_utiString, file, errorLog))
        return {};
    QVariant value = file.ID3()->value(theTag());
    if (!value.isValid()) {
        file.logErrorType(TErrorTypes::kWarning,
                          TErrorText(formatted(kNoValue, {theTag()}), file.sourceURL()), errorLog);
    }
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
