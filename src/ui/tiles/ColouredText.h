// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TAttributedString.h"

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QRectF>
#include <QString>

#include <vector>

class QPainter;
class QTextLayout;

/// One line of text in parts, each on its own rounded ground. Parts keep their order in any script;
/// a part that mixes directions is in several pieces.
class ColouredText
{
public:
    struct Part
    {
        QString text;
        QColor background; ///< invalid: none
        QColor ink;
    };

    ColouredText() = default;
    /// The parts of a new name in the colours of their rules, legible in the palette's scheme.
    static ColouredText of(const TAttributedString &name, const QPalette &palette);

    void append(const QString &text, const QColor &ink, const QColor &background = {});
    QString text() const;
    bool isEmpty() const { return m_parts.empty(); }
    qreal width(const QFont &font) const;
    /// As much of both ends as there is room for.
    ColouredText elided(const QFont &font, qreal width, const QColor &ink) const;
    void paint(QPainter &painter, const QRectF &place, const QFont &font,
               Qt::Alignment alignment) const;

private:
    void appendPartsOf(const ColouredText &other, qsizetype from, qsizetype to);
    /// The one line in the inks of its parts. False when there is none.
    bool layOut(QTextLayout &layout, qreal width) const;
    void paintGrounds(QPainter &painter, const QTextLayout &layout, const QPointF &origin) const;

    std::vector<Part> m_parts;
};
