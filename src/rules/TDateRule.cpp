// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/TDateRule.h"

#include "commonprocs/StringAdditions.h"
#include "commonprocs/TimeUtils.h"
#include "platform/Clock.h"

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kArchiveClass[] = {"TDateRule", "TRuleModel", "NSObject"};
constexpr QStringView kIcon = u"date_tag";
constexpr QStringView kTileName = u"(Now)";
constexpr QStringView kEditor = u"TEditDateRuleViewController";
constexpr QStringView kUnknownFormat = u"???date???";

constexpr qint64 kDefaultPaddingChar = 1;
constexpr qint64 kDefaultMaxSize = 20;
constexpr qint64 kDefaultDateFormat = 1;
constexpr qint64 kDefaultTimeFormat = 1;
constexpr int kLastHourBeforeNoon = 11;

} // namespace

TDateRule::TDateRule()
    : m_paddingChar(kDefaultPaddingChar)
    , m_maxSize(kDefaultMaxSize)
    , m_dateFormat(kDefaultDateFormat)
    , m_timeFormat(kDefaultTimeFormat)
{
    setThePreview(TImage(kIcon.toString()));
    TDateRule::updatePreview();
}

TDateRule::TDateRule(Decoding tag)
    : TRuleModel(tag)
{
}

std::shared_ptr<TDateRule> TDateRule::decoding()
{
    return std::make_shared<TDateRule>(Decoding{});
}

std::span<const TRuleField<TDateRule>> TDateRule::fields()
{
    static constexpr TRuleField<TDateRule> kFields[] = {
        {"padding"_L1, &TDateRule::m_padding},
        {"paddingChar"_L1, &TDateRule::m_paddingChar},
        {"paddingPosition"_L1, &TDateRule::m_paddingPosition},
        {"limitSize"_L1, &TDateRule::m_limitSize},
        {"maxSize"_L1, &TDateRule::m_maxSize},
        {"dateFormat"_L1, &TDateRule::m_dateFormat},
        {"timeFormat"_L1, &TDateRule::m_timeFormat},
    };
    return kFields;
}

QString TDateRule::processWithFileObject(TFileObject & /*file*/, TErrorLog * /*errorLog*/,
                                         TRuleDict &dict)
{
    QString text = getDateFromDate(dict.now.isSet() ? dict.now : SystemClock().now());
    handlePaddingBothSidesWith(text);
    handleMaxSizeFor(text);
    return text;
}

QVariantMap TDateRule::properties() const
{
    QVariantMap map = TRuleModel::properties();
    TRuleFields::addProperties(fields(), *this, map);
    return map;
}

void TDateRule::setProperties(const QVariantMap &properties)
{
    TRuleModel::setProperties(properties);
    TRuleFields::setProperties(fields(), *this, properties);
}

std::shared_ptr<TRuleModel> TDateRule::newInstance() const
{
    return std::make_shared<TDateRule>();
}

TArchiveClass TDateRule::archiveClass() const
{
    return kArchiveClass;
}

void TDateRule::encodeWithCoder(TEncoder &coder) const
{
    TRuleModel::encodeWithCoder(coder);
    TRuleFields::encodeFields(fields(), *this, coder);
}

void TDateRule::initWithCoder(const TDecoder &coder)
{
    TRuleModel::initWithCoder(coder);
    TRuleFields::decodeFields(fields(), *this, coder);
    updatePreview();
}

void TDateRule::updatePreview()
{
    setName(kTileName.toString());
}

QString TDateRule::editingViewController() const
{
    return kEditor.toString();
}

QString TDateRule::getDateFromDate(TDate date) const
{
    using namespace TimeUtils;
    if (!date.isSet())
        return u""_s;
    switch (m_dateFormat) {
    case 0:
        return systemLongDate(date);
    case 1:
        return systemMediumDate(date);
    case 2:
        return systemLongTime(date);
    case 3:
        return systemMediumTime(date);
    case 4:
        return year(date);
    case 5:
        return shortYear(date);
    case 6:
        return monthName(date);
    case 7:
        return month(date);
    case 8:
        return day(date);
    case 9:
        return weekdayName(date);
    case 10:
        return weekdayNumber(date);
    case 11:
        return hourText(date);
    case 12:
        return QString::number(minute(date));
    case 13:
        return QString::number(second(date));
    case 14:
        return hour(date) > kLastHourBeforeNoon ? u"PM"_s : u"AM"_s;
    case 15:
        return hour(date) > kLastHourBeforeNoon ? u"P"_s : u"A"_s;
    default:
        return kUnknownFormat.toString();
    }
}

QString TDateRule::hourText(TDate date) const
{
    const int hour = TimeUtils::hour(date);
    if (m_timeFormat != 0)
        return QString::number(hour);
    return QString::number(hour % 12 == 0 ? 12 : hour % 12);
}

void TDateRule::handlePaddingFor(QString &text) const
{
    if (const qsizetype missing = missingPadding(m_padding, text.size()); missing > 0)
        text.prepend(QString(missing, paddingCharacter(m_paddingChar)));
}

void TDateRule::handlePaddingAfter(QString &text) const
{
    if (const qsizetype missing = missingPadding(m_padding, text.size()); missing > 0)
        text.append(QString(missing, paddingCharacter(m_paddingChar)));
}

void TDateRule::handlePaddingBothSidesWith(QString &text) const
{
    if (m_padding < 1)
        return;
    if (m_paddingPosition != 0)
        handlePaddingAfter(text);
    else
        handlePaddingFor(text);
}

void TDateRule::handleMaxSizeFor(QString &text)
{
    if (m_limitSize == 0 || text.size() <= m_maxSize)
        return;
    m_maxSize = qMax<qint64>(m_maxSize, 1);
    limitLength(text, m_maxSize);
}
