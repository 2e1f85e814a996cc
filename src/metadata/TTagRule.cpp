// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/TTagRule.h"

#include "metadata/FileConformance.h"
#include "platform/TDate.h"

#include <QVariantList>

#include <array>
#include <charconv>

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView kIcon = u"image_tag_white";
constexpr QStringView kInitialTag = u"init me";
constexpr QStringView kTileName = u"(%@)";
constexpr QStringView kUnknownClass = u"(unknown class:%@)";
constexpr QStringView kDictionary = u"NSDictionary";
constexpr QStringView kDate = u"NSDate";
constexpr QStringView kData = u"NSData";
constexpr QStringView kNull = u"NSNull";
constexpr QStringView kOtherKind = u"%@File is not %@. Default text used. File: ";
constexpr QStringView kNotRead =
    u"%@ meta data not yet processed, not yet ready to run. Default text used";
constexpr QStringView kNoMetadata = u"%@No meta data. Default text used. File: ";
constexpr QChar kElementSeparator = u'.';
constexpr int kSignificantDigits = 16;
constexpr std::size_t kLongestNumber = 32;

QString textOfFloatingPoint(double number)
{
    std::array<char, kLongestNumber> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                   std::chars_format::general, kSignificantDigits);
    return QString::fromLatin1(buffer.data(), end.ptr - buffer.data());
}

QString textOfArray(const QVariantList &elements)
{
    QStringList texts;
    for (const QVariant &element : elements)
        texts.append(TTagRule::stringFromTagValue(element));
    return texts.join(kElementSeparator);
}

QString className(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QVariantMap:
        return kDictionary.toString();
    case QMetaType::QByteArray:
        return kData.toString();
    case QMetaType::QDateTime:
        return kDate.toString();
    default:
        return value.canConvert<TDate>() ? kDate.toString() : kNull.toString();
    }
}

} // namespace

TTagRule::TTagRule()
    : m_theTag(kInitialTag.toString())
    , m_defaultString(u""_s)
{
    setThePreview(TImage(kIcon.toString()));
    TTagRule::updatePreview();
}

TTagRule::TTagRule(Decoding tag)
    : TDateRule(tag)
{
}

std::span<const TRuleField<TTagRule>> TTagRule::fields()
{
    static constexpr TRuleField<TTagRule> kFields[] = {
        {"theTag"_L1, &TTagRule::m_theTag},
        {"defaultString"_L1, &TTagRule::m_defaultString},
    };
    return kFields;
}

QString TTagRule::processWithFileObject(TFileObject &file, TErrorLog *errorLog,
                                        TRuleDict & /*dict*/)
{
    if (m_defaultString.isNull())
        m_defaultString = u""_s;
    const QVariant value = tagValue(file, errorLog);
    QString fragment = value.isValid() ? stringFromTagValue(value) : m_defaultString;
    handlePaddingBothSidesWith(fragment);
    handleMaxSizeFor(fragment);
    return fragment;
}

bool TTagRule::hasMetadata(const TMetadataPtr &metadata, QLatin1StringView type, QStringView kind,
                           TFileObject &file, TErrorLog *errorLog) const
{
    const auto report = [&](int level, const TErrorText &problem) {
        file.logErrorType(level, problem, errorLog);
        return false;
    };
    const TFileURL url = file.sourceURL();
    if (!fileConformsTo(file.item(), type)) {
        return report(TErrorTypes::kWarning,
                      {formatted(kOtherKind, {messagePrefix(), kind.toString()}), url});
    }
    if (!metadata)
        return report(TErrorTypes::kCritical, formatted(kNotRead, {url.path()}));
    if (metadata->isEmpty())
        return report(TErrorTypes::kWarning, {formatted(kNoMetadata, {messagePrefix()}), url});
    return true;
}

QString TTagRule::stringFromTagValue(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QString:
        return value.toString();
    case QMetaType::Bool:
        return value.toBool() ? u"1"_s : u"0"_s;
    case QMetaType::Int:
    case QMetaType::LongLong:
        return QString::number(value.toLongLong());
    case QMetaType::UInt:
    case QMetaType::ULongLong:
        return QString::number(value.toULongLong());
    case QMetaType::Double:
        return textOfFloatingPoint(value.toDouble());
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return textOfArray(value.toList());
    default:
        return formatted(kUnknownClass, {className(value)});
    }
}

QVariantMap TTagRule::properties() const
{
    QVariantMap map = TDateRule::properties();
    TRuleFields::addProperties(fields(), *this, map);
    return map;
}

void TTagRule::setProperties(const QVariantMap &properties)
{
    TDateRule::setProperties(properties);
    TRuleFields::setProperties(fields(), *this, properties);
}

void TTagRule::encodeWithCoder(TEncoder &coder) const
{
    TDateRule::encodeWithCoder(coder);
    TRuleFields::encodeFields(fields(), *this, coder);
}

void TTagRule::initWithCoder(const TDecoder &coder)
{
    TDateRule::initWithCoder(coder);
    TRuleFields::decodeFields(fields(), *this, coder);
    updatePreview();
}

void TTagRule::updatePreview()
{
    setName(formatted(kTileName, {m_theTag}));
}
