// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDialogHost.h"
#include "ui/windows/UpdateCheck.h"

class UpdateProgress;

/// Looks for a new version and tells the user, on request or quietly at start. Owned by the
/// application; the host outlives it.
class UpdateNotice : public QObject
{
    Q_OBJECT

public:
    explicit UpdateNotice(TDialogHost &host, QObject *parent = nullptr);
    UpdateNotice(TDialogHost &host, const UpdateCheck::Limits &limits, QObject *parent);

    /// The command: shows that it looks, over the window, and says what was found, or why nothing
    /// could be.
    void check(QWidget *window = nullptr);
    /// Does nothing unless the user has turned it on, and at most once a day; speaks up only when
    /// there is a new version.
    void checkAtStart();

    /// One sentence for people.
    static QString sentence(const UpdateCheck::Answer &answer);
    /// What stands for a sentence when no feed is set.
    static QString noFeed();

private:
    void tell(const UpdateCheck::Answer &answer);

    TDialogHost &m_host;
    UpdateCheck m_check;
    QPointer<UpdateProgress> m_progress; ///< while the user waits
};
