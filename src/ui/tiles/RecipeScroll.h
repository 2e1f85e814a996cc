// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/tiles/TileStrip.h"

#include <QScrollArea>

/// As high as the lines of a recipe, up to a few; then they scroll. Keeps the keyboard's tile in
/// view.
class RecipeScroll : public QScrollArea
{
    Q_OBJECT

public:
    /// Takes the strip over.
    explicit RecipeScroll(TileStrip *strip, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void fit();
    void reveal(const QRect &place);

    TileStrip *m_strip;
};
