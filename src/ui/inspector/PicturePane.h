// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QBasicTimer>
#include <QImage>
#include <QWidget>

/// The picture of one file on a quiet ground; a drawing of its kind while there is none, and a
/// turning mark when it takes a while to come.
class PicturePane : public QWidget
{
    Q_OBJECT

public:
    explicit PicturePane(QWidget *parent = nullptr);

    void showPicture(const QImage &picture);
    /// Shows the drawing (a name of Icons); none while nothing is selected.
    void showDrawing(QLatin1StringView drawing, bool isBusy);
    /// Length of a side, in pixels, that a picture needs to look sharp.
    int edge() const;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    void paintPicture(QPainter &painter);
    void paintDrawing(QPainter &painter);
    void paintBusy(QPainter &painter);

    QImage m_picture;
    QImage m_shown; ///< scaled and rounded for the size that the pane has
    QLatin1StringView m_drawing;
    QBasicTimer m_timer; ///< active while busy
    int m_ticks = 0;
};
