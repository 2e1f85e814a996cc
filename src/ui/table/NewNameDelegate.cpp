// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/table/NewNameDelegate.h"

#include "commonprocs/ByteNames.h"
#include "ui/table/NameLine.h"

#include <QPainter>

#include <cmath>

namespace {

/// Between a name and its note.
constexpr int kNoteGap = 14;
/// The most of a column that a note may take from the name before it.
constexpr qreal kNoteShare = 0.45;
constexpr float kDimmed = 0.6F;
constexpr qreal kLeastName = 40;

std::vector<NameLine::Piece> piecesOf(const TFileObject &file, const QColor &ink)
{
    const TAttributedString &name = file.attributedTargetName();
    std::vector<NameLine::Piece> pieces;
    qsizetype start = 0;
    for (const TAttributedString::Run &run : name.runs()) {
        const QColor tile = Theme::color(run.background);
        pieces.push_back({ByteNames::forDisplay(QStringView(name.string()).mid(start, run.length)),
                          tile, tile.isValid() ? Theme::inkOn(tile) : ink});
        start += run.length;
    }
    if (pieces.empty())
        pieces.push_back({ByteNames::forDisplay(FileCells::shownName(file)), {}, ink});
    return pieces;
}

/// Less conspicuous, but as legible.
void dim(std::vector<NameLine::Piece> &pieces, const QColor &ink)
{
    for (NameLine::Piece &piece : pieces) {
        piece.ink = ink;
        piece.isOutlined = true;
        if (piece.tile.isValid())
            piece.tile.setAlphaF(kDimmed);
    }
}

} // namespace

QSize NewNameDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QSize size = FileCellDelegate::sizeHint(option, index);
    const FileTableModel &model = fileTableModel(index);
    const int row = index.row();
    size.rwidth() +=
        noteWidth(FileCells::note(model.file(row), model.forecast(row), model.extension(row)).text);
    return size;
}

int NewNameDelegate::noteWidth(const QString &note) const
{
    return note.isEmpty() ? 0 : kNoteGap + QFontMetrics(look().noteFont).horizontalAdvance(note);
}

void NewNameDelegate::paintContent(QPainter &painter, const QStyleOptionViewItem &option,
                                   const QRect &rect, const QModelIndex &index) const
{
    const FileTableModel &model = fileTableModel(index);
    const TFileObject &file = model.file(index.row());
    const auto forecast = model.forecast(index.row());
    const QFontMetricsF metrics(look().font);
    const auto place = [&](qreal left, qreal width) {
        return QStyle::visualRect(option.direction, rect,
                                  QRect(rect.left() + static_cast<int>(std::lround(left)),
                                        rect.top(), static_cast<int>(std::ceil(width)),
                                        rect.height()));
    };

    const FileCells::Extension shown = model.extension(index.row());
    const FileCells::Note note = FileCells::note(file, forecast, shown);
    const qreal room =
        rect.width() - std::min<qreal>(noteWidth(note.text), kNoteShare * rect.width());
    const QString extension = ByteNames::forDisplay(shown.text.left(rect.width()));
    const qreal extensionWidth = extension.isEmpty() ? 0 : metrics.horizontalAdvance(extension);
    std::vector<NameLine::Piece> pieces = piecesOf(file, look().colors.ink);
    const bool isOld = model.document().areNamesOld();
    if (file.hasBeenProcessed() || isOld || FileCells::keepsName(model.document(), file, forecast))
        dim(pieces, muted(index));
    NameLine name(pieces, look().font, std::max(kLeastName, room - extensionWidth));

    // Name and extension are one text, which reads its own way, whichever the window runs.
    const bool isToLeft = name.isRightToLeft();
    const QRect whole = place(0, name.width() + extensionWidth);
    const QRectF extensionRect(isToLeft ? whole.left() : whole.left() + name.width(), rect.top(),
                               extensionWidth, rect.height());
    name.paint(painter,
               {isToLeft ? whole.left() + extensionWidth : whole.left(), qreal(rect.top())},
               rect.height());
    painter.setLayoutDirection(isToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    painter.setPen(shown.isKept || isOld ? muted(index) : look().colors.extension);
    const int flags =
        static_cast<int>(Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter) | Qt::TextSingleLine;
    painter.drawText(extensionRect, flags, extension);
    painter.setLayoutDirection(option.direction);

    const qreal used = name.width() + extensionWidth + kNoteGap;
    if (!note.text.isEmpty() && used < rect.width())
        paintNote(painter, option, place(used, rect.width() - used), note, index);
}

void NewNameDelegate::paintNote(QPainter &painter, const QStyleOptionViewItem &option,
                                const QRect &place, const FileCells::Note &note,
                                const QModelIndex &index) const
{
    painter.setFont(look().noteFont);
    painter.setPen(note.isRefusal ? look().colors.extension : muted(index));
    const Qt::Alignment side = QStyle::visualAlignment(option.direction, Qt::AlignLeft);
    painter.drawText(
        place, static_cast<int>(side | Qt::AlignVCenter) | Qt::TextSingleLine,
        QFontMetrics(look().noteFont).elidedText(note.text, Qt::ElideRight, place.width()));
}
