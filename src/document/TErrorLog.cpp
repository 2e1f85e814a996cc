// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TErrorLog.h"

#include <algorithm>
#include <span>

using namespace Qt::StringLiterals;

namespace {

/// As many problems as a file often has.
constexpr std::size_t kRecent = 4;

/// Of the place for an argument with which the text begins; 0 when it begins with none.
qsizetype placeLength(QStringView text)
{
    return text.startsWith("%@"_L1) ? 2 : text.startsWith("%ld"_L1) ? 3 : 0;
}

} // namespace

const TErrorTypes &TErrorLog::addErrorOfType(int errClass, const TErrorText &description)
{
    return m_entries.emplace_back(TErrorTypes::newErrorWithClass(errClass, description));
}

void TErrorLog::shareText(TErrorText &text) const
{
    const std::span entries(m_entries);
    for (const TErrorTypes &recent : entries.last(std::min(kRecent, entries.size()))) {
        if (text.share(recent.errDesc))
            return;
    }
}

qsizetype TErrorLog::numberOfErrorsWithType(int errClass) const
{
    return std::count_if(m_entries.begin(), m_entries.end(),
                         [errClass](const TErrorTypes &e) { return e.errClass == errClass; });
}

int TErrorLog::currentStatus() const
{
    int status = TErrorTypes::kNone;
    for (const TErrorTypes &entry : m_entries)
        status = std::max(status, entry.errClass);
    return status;
}

TImage TErrorLog::currentStatusImage() const
{
    switch (currentStatus()) {
    case TErrorTypes::kWarning:
        return TImage(u"achtung"_s);
    case TErrorTypes::kCritical:
        return TImage(u"stop"_s);
    default:
        return TImage(u"tick"_s);
    }
}

void TErrorLog::encode(TEncoder &coder, QLatin1StringView key) const
{
    coder.encodeArray(
        key, count(), [](qsizetype) { return TErrorTypes::archiveClass(); },
        [this](qsizetype i, TEncoder &element) {
            m_entries[static_cast<std::size_t>(i)].encodeWithCoder(element);
        });
}

TErrorLog TErrorLog::decode(const TDecoder &coder, QLatin1StringView key)
{
    TErrorLog log;
    coder.decodeArray(key, [&log](const TDecoder &element) {
        log.m_entries.emplace_back().initWithCoder(element);
    });
    return log;
}

QString formatted(QStringView format, std::initializer_list<QString> arguments)
{
    QString text;
    qsizetype length = format.size();
    for (const QString &argument : arguments)
        length += argument.size();
    text.reserve(length);
    for (const QString &argument : arguments) {
        qsizetype place = format.indexOf(u'%');
        while (place >= 0 && placeLength(format.sliced(place)) == 0)
            place = format.indexOf(u'%', place + 1);
        if (place < 0)
            break;
        text += format.first(place);
        text += argument;
        format = format.sliced(place + placeLength(format.sliced(place)));
    }
    text += format;
    return text;
}

QString formatted(QLatin1StringView format, std::initializer_list<QString> arguments)
{
    return formatted(QString(format), arguments);
}
