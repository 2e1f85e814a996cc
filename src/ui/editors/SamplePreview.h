// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QWidget>

/// The foot of an editor: a line, or a few, of example results. Blanks at the ends of a result are
/// marked, an empty one is said in words, and what has no room is cut short.
class SamplePreview : public QWidget
{
    Q_OBJECT

public:
    /// A text of a line: what a rule gives, or what only leads to it.
    struct Piece
    {
        QString text;
        bool isResult = true;
        QList<std::pair<qsizetype, qsizetype>> marks = {}; ///< highlighted: start and length

        friend bool operator==(const Piece &, const Piece &) = default;
    };
    using Line = QList<Piece>;

    explicit SamplePreview(QWidget *parent = nullptr);

    static Piece result(const QString &text) { return {text, true}; }
    static Piece aside(const QString &text) { return {text, false}; }
    /// The way from one text to another.
    static Line change(const QString &before, const QString &after);
    /// A few words in place of an example.
    static Line note(const QString &text) { return {aside(text)}; }

    void setLines(const QList<Line> &lines);
    const QList<Line> &lines() const { return m_lines; }
    /// All lines, as read out.
    QString text() const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    int lineHeight() const;
    bool isCutShort() const;
    void paintMarks(QPainter &painter, const Piece &piece, const QRect &place) const;
    void paintLine(QPainter &painter, const Line &line, int top) const;

    QList<Line> m_lines;
};
