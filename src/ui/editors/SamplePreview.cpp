// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/SamplePreview.h"

#include "commonprocs/ByteNames.h"
#include "ui/controls/Theme.h"
#include "ui/controls/ToolTip.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int kGap = 10;
constexpr int kLeading = 4;
constexpr int kTop = 4;           ///< more room below the line above
constexpr QChar kOpenBox(0x2423); ///< stands for a blank that would not be seen
constexpr QStringView kArrow = u"\u2192";
constexpr QStringView kArrowToLeft = u"\u2190";

/// With the blanks at both ends marked.
QString visible(QString text)
{
    for (qsizetype i = 0; i < text.size() && text.at(i).isSpace(); ++i)
        text[i] = kOpenBox;
    for (qsizetype i = text.size() - 1; i >= 0 && text.at(i).isSpace(); --i)
        text[i] = kOpenBox;
    return text;
}

} // namespace

SamplePreview::SamplePreview(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(tr("Preview"));
}

SamplePreview::Line SamplePreview::change(const QString &before, const QString &after)
{
    return {aside(before), aside(kArrow.toString()), result(after)};
}

void SamplePreview::setLines(const QList<Line> &lines)
{
    if (lines == m_lines)
        return;
    const bool isAsHigh = lines.size() == m_lines.size();
    m_lines = lines;
    setAccessibleDescription(text());
    if (!isAsHigh)
        updateGeometry();
    update();
}

QString SamplePreview::text() const
{
    QStringList lines;
    for (const Line &line : m_lines) {
        QStringList pieces;
        for (const Piece &piece : line)
            pieces += ByteNames::forDisplay(piece.text);
        lines += pieces.join(u' ');
    }
    return lines.join(u'\n');
}

int SamplePreview::lineHeight() const
{
    return fontMetrics().height() + kLeading;
}

QSize SamplePreview::sizeHint() const
{
    const auto count = static_cast<int>(std::max<qsizetype>(m_lines.size(), 1));
    return {0, kTop + count * lineHeight()};
}

QSize SamplePreview::minimumSizeHint() const
{
    return sizeHint();
}

bool SamplePreview::isCutShort() const
{
    return std::ranges::any_of(m_lines, [this](const Line &line) {
        qsizetype length = kGap * std::max<qsizetype>(line.size() - 1, 0);
        for (const Piece &piece : line)
            length += fontMetrics().horizontalAdvance(ByteNames::forDisplay(piece.text));
        return length > width();
    });
}

/// Tells all of what has no room.
bool SamplePreview::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    QToolTip::showText(static_cast<const QHelpEvent *>(event)->globalPos(),
                       isCutShort() ? ToolTip::of(text()) : QString(), this);
    return true;
}

void SamplePreview::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    int top = kTop;
    for (const Line &line : m_lines) {
        paintLine(painter, line, top);
        top += lineHeight();
    }
}

void SamplePreview::paintLine(QPainter &painter, const Line &line, int top) const
{
    const ThemeColors colors = ThemeColors::of(palette());
    int left = 0;
    for (qsizetype i = 0; i < line.size() && left < width(); ++i) {
        const Piece &piece = line.at(i);
        const QString shown = ByteNames::forDisplay(piece.text);
        QString text = piece.isResult && shown.isEmpty() ? tr("(nothing)")
                       : piece.isResult                  ? visible(shown)
                                                         : shown;
        if (isRightToLeft() && text == kArrow)
            text = kArrowToLeft.toString();
        const bool isLast = i + 1 == line.size();
        // What leads to the result leaves room for it.
        const int room = isLast || piece.isResult ? width() - left : (width() - left) / 2;
        text = fontMetrics().elidedText(text, Qt::ElideMiddle, room);
        const int length = fontMetrics().horizontalAdvance(text);
        const QRect place =
            QStyle::visualRect(layoutDirection(), rect(), {left, top, length + 1, lineHeight()});
        if (text == shown)
            paintMarks(painter, piece, place);
        const bool isStrong = (piece.isResult && !piece.text.isEmpty()) || !piece.marks.isEmpty();
        painter.setPen(isStrong ? colors.ink : colors.muted);
        // Names read as they stand in the files, whatever the direction of the language.
        const bool isName = line.size() > 1 || piece.isResult;
        const int direction = !isName                ? 0
                              : text.isRightToLeft() ? Qt::TextForceRightToLeft
                                                     : Qt::TextForceLeftToRight;
        painter.drawText(place, Qt::AlignCenter | Qt::TextSingleLine | direction, text);
        left += length + kGap;
    }
}

void SamplePreview::paintMarks(QPainter &painter, const Piece &piece, const QRect &place) const
{
    const auto widthOf = [&](qsizetype length) {
        return fontMetrics().horizontalAdvance(ByteNames::forDisplay(piece.text.first(length)));
    };
    for (const auto &[start, length] : piece.marks) {
        const int left = widthOf(start);
        const QRect mark(place.left() + left, place.top(), widthOf(start + length) - left,
                         place.height());
        painter.fillRect(mark.adjusted(0, 1, 0, -1), ThemeColors::of(palette()).selection);
    }
}
