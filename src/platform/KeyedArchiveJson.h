// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/KeyedReading.h"

#include <QJsonValue>
#include <QMap>

/// Shows a keyed archive as JSON for people and scripts. Made for one pass.
class KeyedArchiveJson
{
public:
    KeyedArchiveJson(const KeyedArchiveFile &file, qsizetype maxValues);

    QJsonValue root();

private:
    /// False once the limit is reached.
    bool isGoing() const { return m_valuesLeft > 0 && !m_reading.isSpent(); }
    QJsonValue json(const PlistItem &item, int depth);
    QJsonValue object(const PlistItem &item, int depth);
    QJsonValue array(const PlistItem &references, int depth);
    QJsonValue dictionary(const PlistItem &item, int depth);
    QJsonValue instance(const PlistItem &item, int depth);
    QJsonValue text(const QString &text) const;
    /// The fields as an object, with a mark that fields are missing when the limit was reached.
    QJsonValue finished(QMap<QString, QJsonValue> &fields) const;

    KeyedReading m_reading;
    qsizetype m_valuesLeft;
};
