// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/images/ImageCanvas.h"

#include <utility>

namespace {

QImage transparent(const QSize &size, qreal devicePixelRatio)
{
    const QSizeF pixels = QSizeF(size) * devicePixelRatio;
    QImage image(pixels.toSize().expandedTo(QSize(1, 1)), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(devicePixelRatio);
    image.fill(Qt::transparent);
    return image;
}

} // namespace

ImageCanvas::ImageCanvas(const QSize &size, qreal devicePixelRatio)
    : m_image(transparent(size, devicePixelRatio))
    , m_painter(&m_image)
{
    m_painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
}

QImage ImageCanvas::finish()
{
    m_painter.end();
    return std::exchange(m_image, {});
}
