// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/RatingQuestion.h"

#include "settings/Preferences.h"
#include "settings/UserDefaults.h"

#include <QCoreApplication>
#include <QDesktopServices>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kNeverEver{"neverEver"};
constexpr QLatin1StringView kAskedAtRun{"ratingAskedAtRun"};
constexpr QLatin1StringView kPage{"appstream://com.zel.tavrin"};
constexpr qsizetype kRate = 1;
constexpr qsizetype kNever = 2;

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(RatingQuestion)
};

void rate(TDialogHost &host, const std::function<bool(const QUrl &)> &open)
{
    if (!open(QUrl(kPage))) {
        host.ask({TDialogHost::Form::Alert,
                  Texts::tr("Thank You"),
                  Texts::tr("This desktop has no software centre in which Tavrin could be rated."),
                  {},
                  {}});
    }
    thePreferences().hasRated = true;
    WritePreferences(thePreferences());
}

} // namespace

namespace RatingQuestion {

void countRun()
{
    ++thePreferences().runCount;
    WritePreferences(thePreferences());
}

bool isDue()
{
    const TPrefsObject &prefs = thePreferences();
    return !prefs.hasRated && UserDefaults::integerForKey(kNeverEver) == 0 &&
           prefs.runCount - UserDefaults::integerForKey(kAskedAtRun) >= kRunsBetween;
}

void askIfDue(TDialogHost &host, const std::function<bool(const QUrl &)> &open)
{
    if (!isDue())
        return;
    UserDefaults::setValue(kAskedAtRun, thePreferences().runCount);
    const TDialogHost::Question question{
        TDialogHost::Form::Alert,
        Texts::tr("Do You Like Tavrin?"),
        Texts::tr("Others find it more easily when you rate it in your software centre."),
        {},
        {Texts::tr("Not Now"), Texts::tr("Rate Tavrin..."), Texts::tr("Never Ask Again")}};
    host.ask(question, [&host, open](qsizetype button) {
        if (button == kRate)
            rate(host, open);
        else if (button == kNever)
            UserDefaults::setValue(kNeverEver, 1);
    });
}

void askIfDue(TDialogHost &host)
{
    askIfDue(host, [](const QUrl &page) { return QDesktopServices::openUrl(page); });
}

} // namespace RatingQuestion
