// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/ColouredText.h"

#include "commonprocs/ByteNames.h"
#include "ui/controls/Theme.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QPainter>
#include <QTextBoundaryFinder>
#include <QTextLayout>

#include <algorithm>

namespace {

constexpr QChar kEllipsis = u'\u2026';
constexpr qreal kRadius = 2.5;
constexpr qreal kOver = 1; ///< the ground is so much higher than the text

struct Stretch
{
    qreal left;
    qreal right;
};

/// Where the characters of a part are on the line, from left to right and joined.
std::vector<Stretch> stretches(const QTextLayout &layout, qsizetype from, qsizetype length)
{
    std::vector<Stretch> found;
    for (const QGlyphRun &run :
         layout.glyphRuns(static_cast<int>(from), static_cast<int>(length))) {
        const QList<QPointF> positions = run.positions();
        const QList<QPointF> advances = run.rawFont().advancesForGlyphIndexes(run.glyphIndexes());
        for (qsizetype i = 0; i < positions.size(); ++i)
            found.push_back({positions[i].x(), positions[i].x() + advances[i].x()});
    }
    std::sort(found.begin(), found.end(),
              [](const Stretch &a, const Stretch &b) { return a.left < b.left; });
    std::vector<Stretch> joined;
    for (const Stretch &stretch : found) {
        if (joined.empty() || stretch.left > joined.back().right + 0.5)
            joined.push_back(stretch);
        else
            joined.back().right = std::max(joined.back().right, stretch.right);
    }
    return joined;
}

/// Where the text may be cut, its ends included.
std::vector<qsizetype> characterBounds(const QString &text)
{
    std::vector<qsizetype> bounds{0};
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    while (finder.toNextBoundary() > 0)
        bounds.push_back(finder.position());
    return bounds;
}

} // namespace

ColouredText ColouredText::of(const TAttributedString &name, const QPalette &palette)
{
    const ThemeColors colors = ThemeColors::of(palette);
    const QString whole = name.string();
    ColouredText text;
    qsizetype at = 0;
    for (const TAttributedString::Run &run : name.runs()) {
        const QColor background = Theme::color(run.background);
        text.append(ByteNames::forDisplay(QStringView(whole).mid(at, run.length)),
                    background.isValid() ? Theme::inkOn(background) : colors.ink, background);
        at += run.length;
    }
    text.append(ByteNames::forDisplay(QStringView(whole).mid(at)), colors.ink);
    return text;
}

void ColouredText::append(const QString &text, const QColor &ink, const QColor &background)
{
    if (!text.isEmpty())
        m_parts.push_back({text, background, ink});
}

QString ColouredText::text() const
{
    QString text;
    for (const Part &part : m_parts)
        text += part.text;
    return text;
}

qreal ColouredText::width(const QFont &font) const
{
    return QFontMetricsF(font).horizontalAdvance(text());
}

void ColouredText::appendPartsOf(const ColouredText &other, qsizetype from, qsizetype to)
{
    qsizetype at = 0;
    for (const Part &part : other.m_parts) {
        const qsizetype first = std::clamp<qsizetype>(from - at, 0, part.text.size());
        const qsizetype last = std::clamp<qsizetype>(to - at, 0, part.text.size());
        append(part.text.mid(first, last - first), part.ink, part.background);
        at += part.text.size();
    }
}

ColouredText ColouredText::elided(const QFont &font, qreal width, const QColor &ink) const
{
    const QFontMetricsF metrics(font);
    const QString whole = text();
    if (metrics.horizontalAdvance(whole) <= width)
        return *this;
    const std::vector<qsizetype> bounds = characterBounds(whole);
    const qreal half = (width - metrics.horizontalAdvance(kEllipsis)) / 2;
    const auto head = std::partition_point(bounds.begin() + 1, bounds.end(), [&](qsizetype bound) {
        return metrics.horizontalAdvance(whole.left(bound)) <= half;
    });
    const auto tail = std::partition_point(bounds.begin(), bounds.end() - 1, [&](qsizetype bound) {
        return metrics.horizontalAdvance(whole.mid(bound)) > half;
    });
    ColouredText cut;
    cut.appendPartsOf(*this, 0, *(head - 1));
    cut.append(kEllipsis, ink);
    cut.appendPartsOf(*this, *tail, whole.size());
    return cut;
}

bool ColouredText::layOut(QTextLayout &layout, qreal width) const
{
    QTextOption option;
    option.setTextDirection(Qt::LayoutDirectionAuto);
    option.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(option);
    QList<QTextLayout::FormatRange> formats;
    qsizetype at = 0;
    for (const Part &part : m_parts) {
        QTextCharFormat format;
        format.setForeground(part.ink);
        formats.append({static_cast<int>(at), static_cast<int>(part.text.size()), format});
        at += part.text.size();
    }
    layout.setFormats(formats);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    if (line.isValid())
        line.setLineWidth(width);
    layout.endLayout();
    return line.isValid();
}

void ColouredText::paintGrounds(QPainter &painter, const QTextLayout &layout,
                                const QPointF &origin) const
{
    const qreal height = layout.lineAt(0).height() + 2 * kOver;
    painter.setPen(Qt::NoPen);
    qsizetype at = 0;
    for (const Part &part : m_parts) {
        if (part.background.isValid()) {
            painter.setBrush(part.background);
            for (const Stretch &stretch : stretches(layout, at, part.text.size())) {
                painter.drawRoundedRect(QRectF(origin.x() + stretch.left, origin.y() - kOver,
                                               stretch.right - stretch.left, height),
                                        kRadius, kRadius);
            }
        }
        at += part.text.size();
    }
}

void ColouredText::paint(QPainter &painter, const QRectF &place, const QFont &font,
                         Qt::Alignment alignment) const
{
    QTextLayout layout(text(), font, painter.device());
    if (!layOut(layout, place.width()))
        return;
    const QTextLine line = layout.lineAt(0);
    const bool isRight = alignment.testFlag(Qt::AlignRight);
    const qreal left = isRight ? place.right() - line.naturalTextWidth() : place.left();
    const QPointF origin(left, place.top() + (place.height() - line.height()) / 2);

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    paintGrounds(painter, layout, origin);
    layout.draw(&painter, origin);
    painter.restore();
}
