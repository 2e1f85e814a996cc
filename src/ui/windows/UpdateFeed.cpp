// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/UpdateFeed.h"

#include "commonprocs/ByteNames.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kVersion{"version"};
constexpr QLatin1StringView kPage{"page"};
constexpr QLatin1StringView kNotes{"notes"};
constexpr qsizetype kMostNotes = 400;

bool isHttpsPage(const QUrl &url)
{
    return url.isValid() && url.scheme() == "https"_L1 && !url.host().isEmpty() &&
           url.userInfo().isEmpty();
}

} // namespace

TResult<UpdateFeed> UpdateFeed::parse(const QByteArray &json)
{
    static const QRegularExpression version(u"\\A[0-9]{1,6}(\\.[0-9]{1,6}){0,3}\\z"_s);
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        return TResult<UpdateFeed>::failure(
            QCoreApplication::translate("UpdateFeed", "The answer is no update feed."));
    const QJsonObject object = document.object();
    const QString number = object.value(kVersion).toString();
    if (!version.match(number).hasMatch())
        return TResult<UpdateFeed>::failure(
            QCoreApplication::translate("UpdateFeed", "The update feed names no version."));
    UpdateFeed feed;
    feed.version = QVersionNumber::fromString(number);
    const QUrl page(object.value(kPage).toString(), QUrl::StrictMode);
    if (isHttpsPage(page))
        feed.page = page;
    feed.notes =
        ByteNames::forDisplay(object.value(kNotes).toString().simplified().left(kMostNotes));
    return feed;
}
