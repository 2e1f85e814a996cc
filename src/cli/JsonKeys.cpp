// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/JsonKeys.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

#include <vector>

namespace {

/// Where the string that begins at the place given ends: behind its closing quote.
qsizetype endOfString(const QByteArray &json, qsizetype begin)
{
    qsizetype at = begin + 1;
    while (at < json.size() && json[at] != '"')
        at += json[at] == '\\' ? 2 : 1;
    return at + 1;
}

/// In valid JSON only keys are followed by a colon.
bool isKey(const QByteArray &json, qsizetype end)
{
    while (end < json.size() && QByteArrayView(" \t\r\n").contains(json[end]))
        ++end;
    return end < json.size() && json[end] == ':';
}

QString decoded(const QByteArray &string)
{
    return QJsonDocument::fromJson('[' + string + ']').array().first().toString();
}

} // namespace

QString repeatedJsonKey(const QByteArray &json)
{
    std::vector<QSet<QString>> objects;
    for (qsizetype at = 0; at < json.size(); ++at) {
        if (json[at] == '{') {
            objects.emplace_back();
        } else if (json[at] == '}') {
            objects.pop_back();
        } else if (json[at] == '"') {
            const qsizetype end = endOfString(json, at);
            if (isKey(json, end)) {
                const QString key = decoded(json.sliced(at, end - at));
                if (objects.back().contains(key))
                    return key;
                objects.back().insert(key);
            }
            at = end - 1;
        }
    }
    return {};
}
