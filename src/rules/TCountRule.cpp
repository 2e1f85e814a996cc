// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/TCountRule.h"

#include "commonprocs/StringAdditions.h"

#include <array>
#include <charconv>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kArchiveClass[] = {"TCountRule", "TRuleModel", "NSObject"};
constexpr auto kGlobalCounter = "globalCounter"_L1;
constexpr auto kGlobalCounterRead = "globalcounter"_L1; // not what is written, on purpose
constexpr auto kExtensionCounters = "extensionCounters"_L1;

constexpr QStringView kIcon = u"counter_tag_white";
constexpr QStringView kEditor = u"TEditCountRuleViewController";
constexpr QStringView kUnknownFormat = u"???";
constexpr QStringView kTotalTile = u"(total)";
constexpr QStringView kFormatTiles[] = {u"1, 2, 3", u"i, ii, iii", u"I, II, III"};
constexpr QStringView kPerExtensionTile = u" (per .EXT)";

/// Sums and products that wrap around, as settings may hold any number.
qint64 sum(qint64 a, qint64 b)
{
    return static_cast<qint64>(static_cast<quint64>(a) + static_cast<quint64>(b));
}

qint64 product(qint64 a, qint64 b)
{
    return static_cast<qint64>(static_cast<quint64>(a) * static_cast<quint64>(b));
}

/// A number in decimal, without memory of its own.
class DecimalText
{
public:
    explicit DecimalText(qint64 value)
        : m_end(std::to_chars(m_digits.data(), m_digits.data() + m_digits.size(), value).ptr)
    {
    }
    QLatin1StringView view() const { return {m_digits.data(), m_end}; }

private:
    std::array<char, 24> m_digits;
    const char *m_end;
};

template <class Text>
QString paddedInFront(Text text, qint64 width, qint64 paddingChar)
{
    const qsizetype missing = missingPadding(width, text.size());
    QString result;
    result.reserve(missing + text.size());
    result.fill(paddingCharacter(paddingChar), missing);
    return result.append(text);
}

} // namespace

TCountRule::TCountRule()
    : m_startValue(1)
    , m_globalCounter(m_startValue)
    , m_increment(1)
{
    setThePreview(TImage(kIcon.toString()));
    TCountRule::updatePreview();
}

TCountRule::TCountRule(Decoding tag)
    : TRuleModel(tag)
{
}

std::shared_ptr<TCountRule> TCountRule::decoding()
{
    return std::make_shared<TCountRule>(Decoding{});
}

std::span<const TRuleField<TCountRule>> TCountRule::fields()
{
    static constexpr TRuleField<TCountRule> kFields[] = {
        {"startValue"_L1, &TCountRule::m_startValue},
        {"individualFileTypes"_L1, &TCountRule::m_individualFileTypes},
        {"counterFormat"_L1, &TCountRule::m_counterFormat},
        {"padding"_L1, &TCountRule::m_padding},
        {"paddingChar"_L1, &TCountRule::m_paddingChar},
        {"increment"_L1, &TCountRule::m_increment},
        {"manualPadding"_L1, &TCountRule::m_manualPadding},
        {"counterType"_L1, &TCountRule::m_counterType},
    };
    return kFields;
}

void TCountRule::prepareToStart()
{
    m_extensionCounters.clear();
    m_globalCounter = 0;
}

QString TCountRule::processWithFileObject(TFileObject &file, TErrorLog * /*errorLog*/,
                                          TRuleDict &dict)
{
    const qint64 value = nextValue(file, dict.batchSize);
    const qint64 units = width(dict.batchSize);
    switch (m_counterFormat) {
    case 0:
        return paddedInFront(DecimalText(value).view(), units, m_paddingChar);
    case 1:
        return paddedInFront<QStringView>(romanNumeralsFromInt(value), units, m_paddingChar);
    case 2:
        return paddedInFront<QStringView>(romanNumeralsFromInt(value).toUpper(), units,
                                          m_paddingChar);
    default:
        return paddedInFront(kUnknownFormat, units, m_paddingChar);
    }
}

qint64 TCountRule::nextValue(const TFileObject &file, qint64 batchSize)
{
    if (m_counterType != 0)
        return batchSize;
    if (m_individualFileTypes) {
        const QString extension = file.extension();
        auto counter = m_extensionCounters.find(extension);
        if (counter == m_extensionCounters.end())
            counter = m_extensionCounters.insert(extension, m_startValue);
        return std::exchange(*counter, sum(*counter, m_increment));
    }
    const qint64 value = sum(m_startValue, m_globalCounter);
    m_globalCounter = sum(m_globalCounter, m_increment);
    return value;
}

qint64 TCountRule::width(qint64 batchSize) const
{
    if (m_manualPadding != 0)
        return m_padding;
    const qint64 last = sum(m_startValue, product(batchSize, m_increment));
    // Nothing to count takes the width of "-1". Recipes depend on it.
    return DecimalText(last == 0 ? -1 : last).view().size();
}

QVariantMap TCountRule::properties() const
{
    QVariantMap map = TRuleModel::properties();
    TRuleFields::addProperties(fields(), *this, map);
    TRuleFields::insert(map, kGlobalCounter, m_globalCounter);
    map.insert(kExtensionCounters, countersAsMap());
    return map;
}

void TCountRule::setProperties(const QVariantMap &properties)
{
    TRuleModel::setProperties(properties);
    TRuleFields::setProperties(fields(), *this, properties);
    TRuleFields::setFromProperties(properties, kGlobalCounter, m_globalCounter);
    const auto counters = properties.constFind(kExtensionCounters);
    if (counters != properties.cend())
        setCountersFromMap(counters->toMap());
}

std::shared_ptr<TRuleModel> TCountRule::newInstance() const
{
    return std::make_shared<TCountRule>();
}

TArchiveClass TCountRule::archiveClass() const
{
    return kArchiveClass;
}

void TCountRule::encodeWithCoder(TEncoder &coder) const
{
    TRuleModel::encodeWithCoder(coder);
    TRuleFields::encodeFields(fields(), *this, coder);
    coder.encodeInteger(kGlobalCounter, m_globalCounter);
    coder.encodeVariant(kExtensionCounters, countersAsMap());
}

void TCountRule::initWithCoder(const TDecoder &coder)
{
    TRuleModel::initWithCoder(coder);
    TRuleFields::decodeFields(fields(), *this, coder);
    m_globalCounter = coder.decodeInteger(kGlobalCounterRead);
    setCountersFromMap(coder.decodeVariant(kExtensionCounters).toMap());
    updatePreview();
}

QVariantMap TCountRule::countersAsMap() const
{
    QVariantMap map;
    for (auto counter = m_extensionCounters.cbegin(); counter != m_extensionCounters.cend();
         ++counter)
        map.insert(counter.key(), *counter);
    return map;
}

void TCountRule::setCountersFromMap(const QVariantMap &map)
{
    m_extensionCounters.clear();
    for (auto counter = map.cbegin(); counter != map.cend(); ++counter)
        m_extensionCounters.insert(counter.key(), TRuleFields::integerValue(*counter));
}

void TCountRule::updatePreview()
{
    if (m_counterType != 0) {
        setName(kTotalTile.toString());
        return;
    }
    const bool known = m_counterFormat >= 0 && m_counterFormat < qint64{std::size(kFormatTiles)};
    QString text = (known ? kFormatTiles[m_counterFormat] : kUnknownFormat).toString();
    if (m_individualFileTypes)
        text += kPerExtensionTile;
    setName(text);
}

QString TCountRule::editingViewController() const
{
    return kEditor.toString();
}
