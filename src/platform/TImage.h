// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TCoder.h"

#include <QMetaType>
#include <QString>

/// An image by its resource name ("text puzzle white"). The pixels are the user interface's
/// business; records and archives only carry the name.
class TImage
{
public:
    TImage() = default;
    explicit TImage(QString name)
        : m_name(std::move(name))
    {
    }

    bool isSet() const { return !m_name.isEmpty(); }
    const QString &name() const { return m_name; }

    static TArchiveClass archiveClass();
    void encodeWithCoder(TEncoder &coder) const;
    void initWithCoder(const TDecoder &coder);

    friend bool operator==(const TImage &, const TImage &) = default;

private:
    QString m_name;
};

Q_DECLARE_METATYPE(TImage)
