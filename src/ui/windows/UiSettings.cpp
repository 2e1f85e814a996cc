// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/UiSettings.h"

#include "settings/UserDefaults.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kLanguage{"language"};
constexpr QLatin1StringView kHidesWelcome{"hidesWelcome"};
constexpr QLatin1StringView kLooksForUpdates{"looksForUpdates"};
constexpr QLatin1StringView kUpdateFeed{"updateFeed"};
constexpr QLatin1StringView kLastUpdateDay{"lastUpdateDay"};

} // namespace

namespace UiSettings {

QString language()
{
    return UserDefaults::valueForKey(kLanguage).toString();
}

void setLanguage(const QString &code)
{
    UserDefaults::setValue(kLanguage, code.isEmpty() ? QVariant() : QVariant(code));
}

bool showsWelcome()
{
    return !UserDefaults::boolForKey(kHidesWelcome);
}

void setShowsWelcome(bool shows)
{
    UserDefaults::setValue(kHidesWelcome, !shows);
}

bool looksForUpdates()
{
    return UserDefaults::boolForKey(kLooksForUpdates);
}

void setLooksForUpdates(bool looks)
{
    UserDefaults::setValue(kLooksForUpdates, looks);
}

QUrl updateFeed()
{
    return QUrl(UserDefaults::valueForKey(kUpdateFeed).toString(), QUrl::StrictMode);
}

void setUpdateFeed(const QUrl &feed)
{
    const QString text = feed.toString(QUrl::FullyEncoded);
    UserDefaults::setValue(kUpdateFeed, text.isEmpty() ? QVariant() : QVariant(text));
}

qint64 lastUpdateDay()
{
    return UserDefaults::integerForKey(kLastUpdateDay);
}

void setLastUpdateDay(qint64 day)
{
    UserDefaults::setValue(kLastUpdateDay, day);
}

} // namespace UiSettings
