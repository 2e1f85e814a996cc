// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/table/NameLine.h"

#include <QGlyphRun>
#include <QPainter>
#include <QTextOption>

#include <algorithm>

namespace {

constexpr QChar kEllipsis{u'\u2026'};
/// Of the tiles of a name, before its first and behind its last letter.
constexpr qreal kTileMargin = 2;
/// Above and below a tile, in its row.
constexpr qreal kRowMargin = 3;
constexpr qreal kHardly = 0.5;
constexpr qreal kTileRadius = 3;
/// A line much wider than any column; lines are never wrapped.
constexpr qreal kEndless = 1e6;
/// Few letters are narrower than this.
constexpr qreal kNarrowLetter = 3;
constexpr qsizetype kLeastShaped = 32;

bool mayRunLeft(QChar letter)
{
    switch (letter.direction()) {
    case QChar::DirR:
    case QChar::DirAL:
    case QChar::DirAN:
        return true;
    default:
        return letter.isSurrogate(); // only shaping knows
    }
}

} // namespace

NameLine::NameLine(const std::vector<Piece> &pieces, const QFont &font, qreal room)
    : m_layout(QString(), font)
{
    for (const Piece &piece : pieces) {
        m_stretches.push_back(
            {m_text.size(), piece.text.size(), piece.tile, piece.ink, piece.isOutlined});
        m_text += piece.text;
        if (piece.tile.isValid())
            m_margin = kTileMargin;
    }
    room -= 2 * m_margin;
    m_isOneWay = std::none_of(m_text.cbegin(), m_text.cend(), mayRunLeft);
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setWrapMode(QTextOption::NoWrap);
    option.setTextDirection(m_isOneWay ? Qt::LeftToRight : Qt::LayoutDirectionAuto);
    m_layout.setTextOption(option);
    m_layout.setCacheEnabled(true);

    qsizetype length = std::max(kLeastShaped, static_cast<qsizetype>(room / kNarrowLetter));
    shape(length, false);
    while (length < m_text.size() && m_width <= room) {
        length *= 4;
        shape(length, false);
    }
    if (m_width > room)
        cut(room);
}

void NameLine::shape(qsizetype length, bool withEllipsis)
{
    if (length > 0 && length < m_text.size() && m_text[length].isLowSurrogate())
        --length;
    QString text = m_text.left(length);
    if (withEllipsis)
        text += kEllipsis;
    QList<QTextLayout::FormatRange> formats;
    for (const Stretch &stretch : m_stretches) {
        if (stretch.start >= text.size() || !stretch.ink.isValid())
            continue;
        QTextLayout::FormatRange format;
        format.start = static_cast<int>(stretch.start);
        format.length = static_cast<int>(stretch.length);
        format.format.setForeground(stretch.ink);
        formats += format;
    }
    m_layout.setText(text);
    m_layout.setFormats(formats);
    m_layout.beginLayout();
    QTextLine line = m_layout.createLine();
    if (line.isValid())
        line.setLineWidth(kEndless);
    m_layout.endLayout();
    m_width = line.isValid() ? line.naturalTextWidth() : 0;
}

/// Units of the shaped text that fit.
qsizetype NameLine::fitting(qreal room)
{
    qsizetype fits = 0;
    qsizetype tooMany = m_layout.text().size();
    while (tooMany - fits > 1) {
        const qsizetype middle = (fits + tooMany) / 2;
        shape(middle, true);
        (m_width <= room ? fits : tooMany) = middle;
    }
    return fits;
}

void NameLine::cut(qreal room)
{
    m_isElided = true;
    const qreal ellipsis = QFontMetricsF(m_layout.font()).horizontalAdvance(kEllipsis);
    qsizetype length = 0;
    if (m_isOneWay)
        length = m_layout.lineAt(0).xToCursor(std::max(0.0, room - ellipsis),
                                              QTextLine::CursorOnCharacter);
    else
        length = fitting(room);
    shape(length, true);
}

void NameLine::drawTile(QPainter &painter, const QRectF &row, const Stretch &stretch) const
{
    const qsizetype shaped = m_layout.text().size();
    const qsizetype end = std::min(shaped, stretch.start + stretch.length);
    if (!stretch.tile.isValid() || stretch.start >= end)
        return;
    painter.setPen(stretch.isOutlined ? QPen(stretch.tile) : QPen(Qt::NoPen));
    painter.setBrush(stretch.isOutlined ? QBrush() : QBrush(stretch.tile));
    const qreal edge = stretch.isOutlined ? 0.5 : 0;
    const QTextLine line = m_layout.lineAt(0);
    const auto draw = [&](qreal left, qreal right) {
        if (right <= left)
            return;
        const qreal start = left <= kHardly ? left - m_margin : left;
        const qreal stop = right >= m_width - kHardly ? right + m_margin : right;
        const QRectF tile(row.left() + start, row.top() + kRowMargin, stop - start,
                          row.height() - 2 * kRowMargin);
        painter.drawRoundedRect(tile.adjusted(edge, edge, -edge, -edge), kTileRadius, kTileRadius);
    };
    if (m_isOneWay)
        return draw(line.cursorToX(static_cast<int>(stretch.start)),
                    line.cursorToX(static_cast<int>(end)));
    // A stretch of mixed directions may lie in several places.
    for (const QGlyphRun &run :
         line.glyphRuns(static_cast<int>(stretch.start), static_cast<int>(end - stretch.start))) {
        const QRectF bounds = run.boundingRect();
        draw(bounds.left(), bounds.right());
    }
}

void NameLine::paint(QPainter &painter, QPointF topLeft, qreal height)
{
    if (m_layout.lineCount() == 0)
        return;
    topLeft.rx() += m_margin;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    for (const Stretch &stretch : m_stretches)
        drawTile(painter, {topLeft, QSizeF(m_width, height)}, stretch);
    painter.restore();
    const qreal above = (height - m_layout.lineAt(0).height()) / 2;
    m_layout.draw(&painter, topLeft + QPointF(0, std::floor(above + 0.5)));
}
