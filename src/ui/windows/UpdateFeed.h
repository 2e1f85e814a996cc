// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TResult.h"

#include <QUrl>
#include <QVersionNumber>

/// What an update feed announces (docs/update-feed.md). Untrusted input until it is parsed.
struct UpdateFeed
{
    QVersionNumber version;
    QUrl page;     ///< an https page; empty when the feed names none
    QString notes; ///< one line for people; may be empty

    static TResult<UpdateFeed> parse(const QByteArray &json);
};
