// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QFont>
#include <QTextLayout>

#include <vector>

/// A name on one line whose stretches may lie on coloured tiles, shaped as one text, so that
/// letters join and directions mix as in plain text. What does not fit is cut with an ellipsis;
/// only as much of a long name is shaped as can be seen.
class NameLine
{
public:
    struct Piece
    {
        QString text;
        QColor tile; ///< invalid for none
        QColor ink;
        bool isOutlined = false; ///< only the edge of the tile shows
    };

    NameLine(const std::vector<Piece> &pieces, const QFont &font, qreal room);

    qreal width() const { return m_width + 2 * m_margin; }
    bool isElided() const { return m_isElided; }
    /// The direction of its first letter that has one.
    bool isRightToLeft() const { return !m_isOneWay && m_text.isRightToLeft(); }
    /// topLeft is the corner of the row; the line is centred in its height.
    void paint(QPainter &painter, QPointF topLeft, qreal height);

private:
    struct Stretch
    {
        qsizetype start;
        qsizetype length;
        QColor tile;
        QColor ink;
        bool isOutlined;
    };

    /// Shapes the first units of the name, with an ellipsis when asked for.
    void shape(qsizetype length, bool withEllipsis);
    void cut(qreal room);
    qsizetype fitting(qreal room);
    void drawTile(QPainter &painter, const QRectF &row, const Stretch &stretch) const;

    QString m_text;
    std::vector<Stretch> m_stretches;
    bool m_isOneWay; ///< all of it runs from left to right
    bool m_isElided = false;
    QTextLayout m_layout;
    qreal m_width = 0;  ///< of the text
    qreal m_margin = 0; ///< of the tiles, before and behind the text
};
