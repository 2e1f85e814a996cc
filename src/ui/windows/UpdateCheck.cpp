// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/UpdateCheck.h"

#include <QHostAddress>
#include <QNetworkReply>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int kMostRedirects = 3;
constexpr int kStatusOk = 200;
constexpr char kAgent[] = "Tavrin/" TAVRIN_VERSION;

QNetworkRequest requestFor(const QUrl &feed)
{
    QNetworkRequest request(feed);
    request.setRawHeader("User-Agent", kAgent);
    request.setRawHeader("Accept", "application/json");
    request.setRawHeader("Accept-Language", "en");       // tells nothing of the user
    request.setRawHeader("Accept-Encoding", "identity"); // nothing small that unpacks to much
    request.setMaximumRedirectsAllowed(kMostRedirects);
    const auto manual = static_cast<int>(QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, manual);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         static_cast<int>(QNetworkRequest::AlwaysNetwork));
    return request;
}

} // namespace

UpdateCheck::UpdateCheck(QObject *parent)
    : UpdateCheck(Limits(), parent)
{
}

UpdateCheck::UpdateCheck(const Limits &limits, QObject *parent)
    : QObject(parent)
    , m_limits(limits)
{
    m_network.setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
    m_patience.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this,
            [this] { fail(tr("The server did not answer in time.")); });
}

bool UpdateCheck::accepts(const QUrl &feed) const
{
    if (!feed.isValid() || feed.host().isEmpty() || !feed.userInfo().isEmpty())
        return false;
    const bool isOwnMachine = QHostAddress(feed.host()) == QHostAddress(QHostAddress::LocalHost);
    return feed.scheme() == "https"_L1 ||
           (m_limits.allowsOwnMachine && feed.scheme() == "http"_L1 && isOwnMachine);
}

void UpdateCheck::start(const QUrl &feed, Finished finished)
{
    cancel();
    m_finished = std::move(finished);
    m_patience.start(m_limits.time);
    if (!accepts(feed)) {
        // Later, as every answer.
        QMetaObject::invokeMethod(
            this, [this] { fail(tr("The address of the update feed must begin with https://.")); },
            Qt::QueuedConnection);
        return;
    }
    m_reply = m_network.get(requestFor(feed));
    m_reply->setReadBufferSize(m_limits.bytes + 1);
    connect(m_reply, &QNetworkReply::readyRead, this, &UpdateCheck::receive);
    connect(m_reply, &QNetworkReply::finished, this, &UpdateCheck::replyFinished);
}

void UpdateCheck::receive()
{
    m_received += m_reply->read(m_limits.bytes + 1 - m_received.size());
    if (m_received.size() > m_limits.bytes)
        fail(tr("The answer is too long for an update feed."));
}

void UpdateCheck::replyFinished()
{
    receive();
    if (!isUnderWay())
        return; // it was too long
    if (m_reply->error() != QNetworkReply::NoError)
        return fail(m_reply->errorString());
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status != kStatusOk)
        return fail(tr("The server answered with status %1.").arg(status));
    TResult<UpdateFeed> feed = UpdateFeed::parse(m_received);
    if (!feed)
        return fail(feed.message());
    Answer answer;
    answer.feed = std::move(feed).value();
    const auto own = QVersionNumber::fromString(QLatin1StringView(TAVRIN_VERSION));
    answer.outcome = answer.feed.version > own ? Outcome::Newer : Outcome::UpToDate;
    finish(answer);
}

void UpdateCheck::fail(const QString &problem)
{
    finish({Outcome::Failed, {}, problem});
}

void UpdateCheck::finish(const Answer &answer)
{
    const Finished finished = std::exchange(m_finished, {});
    cancel();
    if (finished) // last: it may destroy the check
        finished(answer);
}

void UpdateCheck::cancel()
{
    m_finished = {};
    m_patience.stop();
    m_received.clear();
    if (m_reply != nullptr) {
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
        m_reply.clear();
    }
}
