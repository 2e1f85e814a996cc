// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/ItemWriter.h"

#include "readers/GenreText.h"

#include <QRegularExpression>
#include <QtEndian>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kTrackItem = "trkn"_L1;
constexpr auto kDiscItem = "disk"_L1;
constexpr auto kBetweenValues = ", "_L1;
/// No tag that names a file is longer; a hostile one may be.
constexpr qsizetype kLongestText = qsizetype{64} * 1024;

/// Without ends that are blank or NUL, and without half surrogate pairs: those stand for bytes of
/// file names elsewhere.
QString cleaned(const QString &text)
{
    QString clean = text.left(kLongestText);
    for (qsizetype i = 0; i < clean.size(); ++i) {
        if (clean.at(i).isHighSurrogate() && i + 1 < clean.size() &&
            clean.at(i + 1).isLowSurrogate()) {
            ++i;
        } else if (clean.at(i).isSurrogate()) {
            clean[i] = QChar::ReplacementCharacter;
        }
    }
    qsizetype end = clean.size();
    while (end > 0 && (clean.at(end - 1).isNull() || clean.at(end - 1).isSpace()))
        --end;
    clean.truncate(end);
    return clean.remove(QChar::Null);
}

/// The first two numbers of texts like "3", "3/12" and "03 of 12".
std::array<int, 2> numbersIn(const QString &text)
{
    static const QRegularExpression digits(u"\\d{1,9}"_s);
    std::array<int, 2> numbers = {};
    QRegularExpressionMatchIterator found = digits.globalMatch(text.left(64));
    for (int &number : numbers) {
        if (found.hasNext())
            number = found.next().captured().toInt();
    }
    return numbers;
}

} // namespace

ItemWriter::ItemWriter(MediaReading &reading, QLatin1String format)
    : m_reading(reading)
    , m_format(format)
{
}

ItemWriter::~ItemWriter()
{
    addPosition(kTrackItem, m_track);
    addPosition(kDiscItem, m_disc);
}

void ItemWriter::add(const TagMeaning &tag, const QString &text)
{
    add(tag, QStringList(text));
}

void ItemWriter::add(const TagMeaning &tag, const QStringList &texts)
{
    QStringList clean;
    for (const QString &text : texts) {
        if (const QString part = cleaned(text); !part.isEmpty())
            clean.append(part);
    }
    if (clean.isEmpty())
        return;
    if (tag.meaning.startsWith(u'#')) {
        const auto [number, total] = numbersIn(clean.constFirst());
        addNumbers(tag, number, total);
        return;
    }
    const bool isGenre = tag.meaning == CommonKeys::kType;
    m_reading.items.push_back({m_format, QString(tag.key), QString(tag.meaning),
                               isGenre ? genreText(clean) : clean.join(kBetweenValues)});
}

void ItemWriter::addNumbers(const TagMeaning &tag, int number, int total)
{
    if (tag.meaning == CommonKeys::kTrackTotal || tag.meaning == CommonKeys::kDiscTotal) {
        total = number;
        number = 0;
    }
    const bool isTrack =
        tag.meaning == CommonKeys::kTrack || tag.meaning == CommonKeys::kTrackTotal;
    Position &position = isTrack ? m_track : m_disc;
    if (number > 0)
        position.number = number;
    if (total > 0)
        position.total = total;
}

void ItemWriter::addPosition(QLatin1String key, const Position &position)
{
    if (position.number == 0 && position.total == 0)
        return;
    QByteArray data(8, '\0');
    qToBigEndian(static_cast<quint16>(position.number), data.data() + 2);
    qToBigEndian(static_cast<quint16>(position.total), data.data() + 4);
    m_reading.items.push_back({m_format, QString(key), QString(), data});
}
