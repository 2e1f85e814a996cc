// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/tiles/FlowPlan.h"

#include <QWidget>

class PaletteTile;
class QLabel;

/// The row of name elements: one tile for each kind of rule, to be dragged into a recipe. A plain
/// click asks for dragging; Enter on the focused tile adds the rule. The arrow keys go from tile to
/// tile, the tabulator past all of them. Wraps where it is narrow.
class PaletteBar : public QWidget
{
    Q_OBJECT

public:
    explicit PaletteBar(QWidget *parent = nullptr);

    /// Gives the keyboard to the tile that had it last.
    void takeFocus();
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

Q_SIGNALS:
    void tileClicked();
    void addRequested(const QString &identifier);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    struct Plan
    {
        FlowPlan tiles;
        bool hasLabel = true;
    };

    void addTile(const QString &identifier, const QString &toolTip);
    void setTabStop(PaletteTile *tile);
    int labelWidth() const;
    FlowPlan planBeside(int indent, int width) const;
    Plan plan(int width) const;
    void place();
    void colorLabel();

    QLabel *m_label;
    std::vector<PaletteTile *> m_tiles;
};
