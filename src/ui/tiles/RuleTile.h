// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/tiles/TileButton.h"

/// The tile of one rule in a recipe. Shows; its recipe handles mouse and keys. Pressing it as
/// assistive tools do asks for its editor.
class RuleTile : public TileButton
{
    Q_OBJECT

public:
    enum class Mark { None, Selected, Edited };

    RuleTile(TRulePtr rule, QWidget *parent);

    const TRulePtr &rule() const { return m_rule; }
    /// The rule's name, icon or colour is another one.
    void ruleChanged();
    void setMark(Mark mark);
    Mark mark() const { return m_mark; }
    /// While it is being dragged away.
    void setFaded(bool isFaded);
    /// The keyboard is somewhere in the recipe.
    void setActive(bool isActive);

protected:
    TileDrawing drawing() const override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    TRulePtr m_rule;
    Mark m_mark = Mark::None;
    bool m_isFaded = false;
    bool m_isActive = false;
};
