// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/tiles/RecipeCommands.h"
#include "ui/tiles/TileStrip.h"

/// The tiles of a recipe with mouse and keys: selecting, dragging, moving, editing, deleting and
/// the clipboard.
class RecipeStrip : public TileStrip
{
    Q_OBJECT

public:
    /// Both outlive the strip.
    RecipeStrip(TDocument &document, Notifications &notifications, QWidget *parent = nullptr);

    RecipeCommands &commands() { return m_commands; }
    void selectAllRules();
    /// Drags copies of the selected rules when the rule is one of them, else of the rule alone.
    void startCopyDrag(const TRulePtr &rule);

protected:
    void tilePressed(const TRulePtr &rule) override;
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    bool isOwnKey(const QKeyEvent &event) const;
    bool moveByKey(const QKeyEvent &event);
    bool commandByKey(const QKeyEvent &event);
    qsizetype goal(const QKeyEvent &event) const;
    void selectCurrentIfNone();
    void editCurrent();
    void startMoveDrag();
    RuleTile *pressedTile() const;
    TRuleList draggedRules(const TRulePtr &rule) const;
    void setFaded(const TRuleList &rules, bool areFaded);

    TDocument &m_document;
    RecipeCommands m_commands;
    TRulePtr m_pressed; ///< null: none
    QPoint m_pressedAt;
    bool m_selectsOnRelease = false; ///< a press on a selected tile may start a drag of all
};
