// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TCoder.h"

#include <QString>
#include <QVariantMap>

/// One row of the extension table: what to look for, and what to give instead; no periods.
struct TExtensionMap
{
    QString original;
    QString target;

    QVariantMap properties() const;
    void setProperties(const QVariantMap &properties);
    static TArchiveClass archiveClass();
    void encodeWithCoder(TEncoder &coder) const;
    void initWithCoder(const TDecoder &coder);

    friend bool operator==(const TExtensionMap &, const TExtensionMap &) = default;
};

Q_DECLARE_METATYPE(TExtensionMap)
