// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TCoder.h"

#include <QString>
#include <QVariantMap>

/// One pair of a regular-expression rule: an ICU pattern, and the template that takes the place of
/// each match ("$0" the whole match, "$1" and so on its groups).
struct TRegExMatchReplace
{
    TRegExMatchReplace();
    TRegExMatchReplace(QString pattern, QString replacement);

    QString match;
    QString replace;

    QVariantMap properties() const;
    /// Sets the fields whose keys are present.
    void setProperties(const QVariantMap &properties);
    static TArchiveClass archiveClass();
    void encodeWithCoder(TEncoder &coder) const;
    /// Fields that the archive lacks keep what they held.
    void initWithCoder(const TDecoder &coder);

    friend bool operator==(const TRegExMatchReplace &, const TRegExMatchReplace &) = default;
};
