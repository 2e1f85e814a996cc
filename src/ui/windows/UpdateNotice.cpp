// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/UpdateNotice.h"

#include "settings/logging.h"
#include "ui/windows/UiSettings.h"
#include "ui/windows/UpdateProgress.h"

#include <QDate>
#include <QDesktopServices>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kLogTitle{"Updates"};
constexpr qsizetype kOpenButton = 1;

} // namespace

UpdateNotice::UpdateNotice(TDialogHost &host, QObject *parent)
    : UpdateNotice(host, UpdateCheck::Limits(), parent)
{
}

UpdateNotice::UpdateNotice(TDialogHost &host, const UpdateCheck::Limits &limits, QObject *parent)
    : QObject(parent)
    , m_host(host)
    , m_check(limits, nullptr)
{
}

QString UpdateNotice::noFeed()
{
    return tr("Your system's package manager keeps Tavrin up to date.");
}

QString UpdateNotice::sentence(const UpdateCheck::Answer &answer)
{
    const QString version = answer.feed.version.toString();
    switch (answer.outcome) {
    case UpdateCheck::Outcome::Newer:
        return tr("Tavrin %1 is available. This is %2.")
            .arg(version, QLatin1StringView(TAVRIN_VERSION));
    case UpdateCheck::Outcome::UpToDate:
        return tr("Tavrin %1 is the newest version.").arg(QLatin1StringView(TAVRIN_VERSION));
    case UpdateCheck::Outcome::Failed:
        break;
    }
    return tr("Tavrin could not look for a new version. %1").arg(answer.problem);
}

void UpdateNotice::check(QWidget *window)
{
    if (m_progress && m_progress->isVisible()) {
        m_progress->raise();
        m_progress->activateWindow();
        return;
    }
    const QUrl feed = UiSettings::updateFeed();
    if (feed.isEmpty()) {
        m_host.ask({TDialogHost::Form::Alert, tr("Updates"), noFeed(), {}, {}});
        return;
    }
    m_progress = new UpdateProgress(window); // deletes itself
    connect(m_progress, &QDialog::rejected, this, [this] { m_check.cancel(); });
    m_progress->show();
    m_check.start(feed, [this](const UpdateCheck::Answer &answer) {
        if (m_progress)
            m_progress->accept();
        tell(answer);
    });
}

void UpdateNotice::checkAtStart()
{
    const QUrl feed = UiSettings::updateFeed();
    const qint64 today = QDate::currentDate().toJulianDay();
    if (!UiSettings::looksForUpdates() || feed.isEmpty() || UiSettings::lastUpdateDay() == today)
        return;
    UiSettings::setLastUpdateDay(today);
    m_check.start(feed, [this](const UpdateCheck::Answer &answer) {
        if (answer.outcome == UpdateCheck::Outcome::Newer)
            tell(answer);
        else if (answer.outcome == UpdateCheck::Outcome::Failed)
            zelWarn(kLogTitle, answer.problem);
    });
}

void UpdateNotice::tell(const UpdateCheck::Answer &answer)
{
    TDialogHost::Question question{
        TDialogHost::Form::Alert, tr("Updates"), sentence(answer), answer.feed.notes, {}};
    if (answer.outcome != UpdateCheck::Outcome::Newer || answer.feed.page.isEmpty())
        return m_host.ask(question);
    question.buttons = {tr("Later"), tr("Open Page...")};
    m_host.ask(question, [page = answer.feed.page](qsizetype button) {
        if (button == kOpenButton)
            QDesktopServices::openUrl(page);
    });
}
