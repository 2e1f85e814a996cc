// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/CommentText.h"

#include "readers/TagValue.h"

#include <QStringDecoder>

#include <algorithm>

namespace {

using Comment = Exiv2::CommentValue;

constexpr size_t kCodeSize = 8;
constexpr char kJisName[] = "ISO-2022-JP";

/// Whether most units would be characters such as U+4100: then the bytes of each are swapped.
bool looksSwapped(const QString &text)
{
    const auto swapped = std::count_if(
        text.begin(), text.end(), [](QChar unit) { return unit.cell() == 0 && unit.row() != 0; });
    return swapped > text.size() / 2;
}

/// Many writers ignore the byte order of the file that they write to.
QString textOfUnits(const QByteArray &units, bool isBigEndian)
{
    const auto decoded = [&units](bool isBig) {
        QStringDecoder decoder(isBig ? QStringDecoder::Utf16BE : QStringDecoder::Utf16LE);
        return QString(decoder.decode(units.first(units.size() & ~1)));
    };
    if (units.startsWith("\xFE\xFF"))
        return decoded(true);
    if (units.startsWith("\xFF\xFE"))
        return decoded(false);
    QString text = decoded(isBigEndian);
    return looksSwapped(text) ? decoded(!isBigEndian) : text;
}

QString textOfJis(const QByteArray &bytes)
{
    QStringDecoder decoder(kJisName);
    const QString text = decoder.decode(bytes);
    return decoder.isValid() && !decoder.hasError() ? text : textOfBytes(bytes);
}

} // namespace

QString textOfComment(const Comment &comment)
{
    const QByteArray stored = QByteArray::fromStdString(comment.value_);
    const QByteArray text = stored.sliced(std::min<qsizetype>(stored.size(), kCodeSize));
    switch (comment.charsetId()) {
    case Comment::unicode:
        return textOfUnits(text, comment.byteOrder_ == Exiv2::bigEndian);
    case Comment::jis:
        return textOfJis(text);
    case Comment::ascii:
    case Comment::undefined:
        return textOfBytes(text);
    default:
        return textOfBytes(stored); // no code in front
    }
}
