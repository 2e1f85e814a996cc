// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileURL.h"

#include <QSharedDataPointer>

/// The text of a problem. Of 100,000 files most have the same one, often with the path of the file
/// at its end; the path is therefore put together when the text is wanted, and what comes before it
/// is shared. A value of eight bytes, whose copies share everything.
class TErrorText
{
public:
    TErrorText() = default;
    /// The text and, right behind it, the path of the file if one is given.
    TErrorText(const QString &text, const TFileURL &file = {});

    QString toString() const;
    /// Takes over the memory of a text that says the same, but for the path; false when it does
    /// not.
    bool share(const TErrorText &other);

    friend bool operator==(const TErrorText &a, const TErrorText &b)
    {
        return a.m_parts == b.m_parts || a.toString() == b.toString();
    }

private:
    struct Parts : QSharedData
    {
        QString text;
        TFileURL file; ///< invalid when no path follows
    };

    QSharedDataPointer<Parts> m_parts; ///< null for a null text
};
