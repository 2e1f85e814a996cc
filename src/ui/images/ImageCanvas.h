// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QPainter>

/// A transparent picture that is being painted, with smooth edges, in device-independent units.
/// Used by one thread, which may be any.
class ImageCanvas
{
public:
    explicit ImageCanvas(const QSize &size, qreal devicePixelRatio = 1);

    QPainter *operator->() { return &m_painter; }
    QPainter &painter() { return m_painter; }
    /// Ends painting.
    QImage finish();

private:
    QImage m_image;
    QPainter m_painter; ///< last, so that it ends before the picture
};
