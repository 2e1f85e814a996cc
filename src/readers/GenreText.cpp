// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/GenreText.h"

#include "readers/TagLibText.h"

#include <taglib/id3v1genres.h>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kBetweenGenres = ", "_L1;

void addOnce(QStringList &names, const QString &name)
{
    if (!name.isEmpty() && !names.contains(name))
        names.append(name);
}

/// "RX" and "CR" stand for words in ID3; other texts are their own name.
QString nameOf(const QString &text)
{
    if (text == "RX"_L1)
        return u"Remix"_s;
    if (text == "CR"_L1)
        return u"Cover"_s;
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    const QString name = isNumber ? genreName(number) : QString();
    return name.isEmpty() ? text : name;
}

bool isReference(const QString &text)
{
    bool isNumber = false;
    text.toInt(&isNumber);
    return isNumber || text == "RX"_L1 || text == "CR"_L1;
}

/// References in brackets come first, then the genre in own words; "((" stands for a bracket.
void addParts(QStringList &names, const QString &stored)
{
    qsizetype at = 0;
    while (at < stored.size() && stored.at(at) == u'(') {
        const qsizetype close = stored.indexOf(u')', at);
        if (close < 0 || !isReference(stored.mid(at + 1, close - at - 1)))
            break;
        addOnce(names, nameOf(stored.mid(at + 1, close - at - 1)));
        at = close + 1;
    }
    const QString words = stored.mid(stored.mid(at, 2) == "(("_L1 ? at + 1 : at).trimmed();
    addOnce(names, nameOf(words));
}

} // namespace

QString genreText(const QStringList &stored)
{
    QStringList names;
    for (const QString &text : stored)
        addParts(names, text);
    return names.join(kBetweenGenres);
}

QString genreName(int number)
{
    return number < 0 ? QString() : fromTagLib(TagLib::ID3v1::genre(number));
}
