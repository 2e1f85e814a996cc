// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocument.h"
#include "ui/tiles/FlowPlan.h"
#include "ui/tiles/RecipeSelection.h"

#include <QCoreApplication>
#include <QWidget>

class DropPlace;
class RuleTile;

/// The tiles of a document's rules in lines that wrap, and the place for more at their end. Follows
/// the document: a changed list keeps the tiles of the rules that stayed. The tabulator stops at
/// one tile, where the keyboard is.
class TileStrip : public QWidget
{
    Q_OBJECT

public:
    /// The document outlives the strip.
    TileStrip(TDocument &document, QWidget *parent);
    /// While its tiles go away they give up the keyboard, which must not be heard any more.
    ~TileStrip() override { QCoreApplication::instance()->disconnect(this); }

    const RecipeSelection &selection() const { return m_selection; }
    /// Null when the rule has no tile.
    RuleTile *tileOf(const TRulePtr &rule) const;
    /// Null for a tile of something else. Brings it into view, at once.
    void setEditedTile(const RuleTile *tile);
    /// Gives the keyboard to the current tile, or to the place for the first one.
    void focusRecipe();

    /// Before which rule something dropped there would come.
    qsizetype insertionPlaceAt(const QPoint &position) const;
    /// The mark between the tiles; -1: none.
    void showInsertion(qsizetype place);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override { return plan(width).height; }
    int heightOfLines(int count) const;

Q_SIGNALS:
    void selectionChanged();
    /// More or fewer lines may be needed.
    void rearranged();
    /// Where the keyboard went, or the tile that is being edited.
    void currentMoved(const QRect &place);

protected:
    RecipeSelection &editSelection() { return m_selection; }
    /// To be called after changes of the selection; focus: the keyboard goes with it.
    void selectionEdited(bool takesFocus = true);
    const std::vector<RuleTile *> &tiles() const { return m_tiles; }
    /// -1 where there is no tile.
    qsizetype placeAt(const QPoint &position) const;
    /// The tile above or below the current one.
    qsizetype placeInLine(int direction) const;
    /// For assistive tools, which press tiles.
    virtual void tilePressed(const TRulePtr &rule) = 0;

    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void followRules();
    void takeOverTiles(const TRuleList &rules);
    RuleTile *makeTile(const TRulePtr &rule);
    void ruleChanged(const TRulePtr &rule);
    void chainTabs();
    void showMarks();
    void setActive(bool isActive);
    int lineHeight() const;
    FlowPlan plan(int width) const;
    void place();
    QRect insertionRect(qsizetype place) const;

    TDocument &m_document;
    RecipeSelection m_selection;
    std::vector<RuleTile *> m_tiles; ///< in the order of the rules
    DropPlace *m_dropPlace;
    QWidget *m_insertionMark;
    TRulePtr m_edited; ///< null: none
    bool m_isActive = false;
};
