// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/TRuleModel.h"

#include "document/TColorPalette.h"
#include "rules/TRuleFields.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kName = "name"_L1;
constexpr auto kPreview = "thePreview"_L1;
constexpr auto kColor = "theColor"_L1;
constexpr auto kID = "theID"_L1;

constexpr QStringView kAbstractCalled = u"abstract rule called";
constexpr QStringView kAbstractResult = u"(error)";

template <class Value>
void setValueFromProperties(const QVariantMap &properties, QLatin1StringView key, Value &field)
{
    const auto found = properties.constFind(key);
    if (found != properties.cend())
        field = found->template value<Value>();
}

template <class Value>
void encodeWhenSet(TEncoder &coder, QLatin1StringView key, const Value &value)
{
    if (value.isSet()) {
        coder.encodeObject(key, Value::archiveClass(),
                           [&value](TEncoder &inner) { value.encodeWithCoder(inner); });
    }
}

template <class Value>
Value decodeValue(const TDecoder &coder, QLatin1StringView key)
{
    Value value;
    coder.decodeObject(key, [&value](const TDecoder &inner) { value.initWithCoder(inner); });
    return value;
}

} // namespace

TRuleModel::TRuleModel()
    : m_theColor(TColorPalette::sharedPalette().nextColor())
{
}

QString TRuleModel::processWithFileObject(TFileObject &file, TErrorLog *errorLog,
                                          TRuleDict & /*dict*/)
{
    file.logErrorType(TErrorTypes::kCritical, kAbstractCalled.toString(), errorLog);
    return kAbstractResult.toString();
}

bool TRuleModel::postProcessResult(QString & /*result*/, TErrorLog * /*errorLog*/,
                                   TRuleDict & /*dict*/)
{
    return false;
}

QVariantMap TRuleModel::properties() const
{
    QVariantMap map;
    TRuleFields::insert(map, kName, m_name);
    if (m_thePreview.isSet())
        map.insert(kPreview, QVariant::fromValue(m_thePreview));
    if (m_theColor.isSet())
        map.insert(kColor, QVariant::fromValue(m_theColor));
    TRuleFields::insert(map, kID, m_theID);
    return map;
}

void TRuleModel::setProperties(const QVariantMap &properties)
{
    TRuleFields::setFromProperties(properties, kName, m_name);
    setValueFromProperties(properties, kPreview, m_thePreview);
    setValueFromProperties(properties, kColor, m_theColor);
    TRuleFields::setFromProperties(properties, kID, m_theID);
}

std::shared_ptr<TRuleModel> TRuleModel::copy() const
{
    auto rule = newInstance();
    rule->setProperties(properties());
    return rule;
}

void TRuleModel::encodeWithCoder(TEncoder &coder) const
{
    coder.encodeString(kName, m_name);
    encodeWhenSet(coder, kPreview, m_thePreview);
    encodeWhenSet(coder, kColor, m_theColor);
    coder.encodeInteger(kID, m_theID);
}

void TRuleModel::initWithCoder(const TDecoder &coder)
{
    m_name = coder.decodeString(kName);
    m_thePreview = decodeValue<TImage>(coder, kPreview);
    m_theColor = decodeValue<TColor>(coder, kColor);
    m_theID = coder.decodeInteger(kID);
}

void TRuleModel::setWithNSImage(const TImage &image, qint64 theID, const QString &name)
{
    m_thePreview = image;
    m_theID = theID;
    m_name = name;
}

void TRuleModel::setWithCGImage(const QString &bitmap, qint64 theID, const QString &name)
{
    setWithNSImage(TImage(bitmap), theID, name);
}
