// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/RecipeStrip.h"

#include "document/TDocumentDrag.h"
#include "ui/controls/Icons.h"
#include "ui/tiles/RecipeDrag.h"
#include "ui/tiles/RuleTile.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>

#include <algorithm>

using namespace Qt::StringLiterals;

RecipeStrip::RecipeStrip(TDocument &document, Notifications &notifications, QWidget *parent)
    : TileStrip(document, parent)
    , m_document(document)
    , m_commands(document, notifications, selection(),
                 [this](const TRulePtr &rule) { return tileOf(rule); })
{
}

void RecipeStrip::selectAllRules()
{
    editSelection().selectAll();
    selectionEdited();
}

void RecipeStrip::tilePressed(const TRulePtr &rule)
{
    m_commands.edit(rule);
}

/// The recipe's keys are its own also where a command of the window has the same.
bool RecipeStrip::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride && isOwnKey(*static_cast<QKeyEvent *>(event))) {
        event->accept();
        return true;
    }
    return TileStrip::event(event);
}

bool RecipeStrip::isOwnKey(const QKeyEvent &event) const
{
    const bool isSideways = event.key() == Qt::Key_Left || event.key() == Qt::Key_Right;
    if (event.modifiers() == Qt::AltModifier)
        return isSideways;
    if (event.modifiers() == Qt::NoModifier &&
        (event.key() == Qt::Key_Delete || event.key() == Qt::Key_Backspace ||
         event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter))
        return true;
    return event.matches(QKeySequence::Copy) || event.matches(QKeySequence::Cut) ||
           event.matches(QKeySequence::Paste) || event.matches(QKeySequence::SelectAll);
}

void RecipeStrip::keyPressEvent(QKeyEvent *event)
{
    if (!moveByKey(*event) && !commandByKey(*event))
        TileStrip::keyPressEvent(event);
}

/// Where an arrow key leads; -1 when it is none.
qsizetype RecipeStrip::goal(const QKeyEvent &event) const
{
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    const qsizetype current = selection().current();
    switch (event.key()) {
    case Qt::Key_Left:
        return std::max<qsizetype>(isMirrored ? current + 1 : current - 1, 0);
    case Qt::Key_Right:
        return std::max<qsizetype>(isMirrored ? current - 1 : current + 1, 0);
    case Qt::Key_Up:
        return placeInLine(-1);
    case Qt::Key_Down:
        return placeInLine(1);
    case Qt::Key_Home:
        return 0;
    case Qt::Key_End:
        return selection().count() - 1;
    default:
        return -1;
    }
}

bool RecipeStrip::moveByKey(const QKeyEvent &event)
{
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    const bool isLeft = event.key() == Qt::Key_Left;
    if (event.modifiers() == Qt::AltModifier && (isLeft || event.key() == Qt::Key_Right)) {
        selectCurrentIfNone();
        m_commands.move(isLeft != isMirrored ? RecipeCommands::Way::Earlier
                                             : RecipeCommands::Way::Later);
        return true;
    }
    const qsizetype place = goal(event);
    if (place < 0 || selection().count() == 0)
        return false;
    if (event.modifiers() == Qt::ShiftModifier)
        editSelection().extendTo(place);
    else if (!(event.modifiers() & ~Qt::KeypadModifier))
        editSelection().selectOnly(place);
    else
        return false;
    selectionEdited();
    return true;
}

bool RecipeStrip::commandByKey(const QKeyEvent &event)
{
    if (event.matches(QKeySequence::SelectAll)) {
        selectAllRules();
        return true;
    }
    if (event.matches(QKeySequence::Paste)) {
        m_commands.paste();
        return true;
    }
    if (selection().count() == 0)
        return false;
    selectCurrentIfNone();
    if (event.matches(QKeySequence::Copy)) {
        m_commands.copy();
    } else if (event.matches(QKeySequence::Cut)) {
        m_commands.cut();
    } else if (event.key() == Qt::Key_Delete || event.key() == Qt::Key_Backspace) {
        m_commands.deleteSelected();
    } else if (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) {
        editCurrent();
    } else if (event.key() == Qt::Key_Space) {
        editSelection().toggle(selection().current());
        selectionEdited();
    } else {
        return false;
    }
    return true;
}

void RecipeStrip::selectCurrentIfNone()
{
    if (!selection().isEmpty() || selection().current() < 0)
        return;
    editSelection().selectOnly(selection().current());
    selectionEdited(false);
}

void RecipeStrip::editCurrent()
{
    m_commands.edit(tiles()[static_cast<std::size_t>(selection().current())]->rule());
}

RuleTile *RecipeStrip::pressedTile() const
{
    return m_pressed ? tileOf(m_pressed) : nullptr;
}

void RecipeStrip::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return event->ignore();
    const qsizetype place = placeAt(event->position().toPoint());
    m_pressed = place < 0 ? nullptr : tiles()[static_cast<std::size_t>(place)]->rule();
    m_pressedAt = event->position().toPoint();
    m_selectsOnRelease = false;
    if (!m_pressed) {
        editSelection().clear();
    } else if (event->modifiers().testFlag(Qt::ShiftModifier)) {
        editSelection().extendTo(place);
    } else if (selection().isSelected(m_pressed)) {
        m_selectsOnRelease = true;
    } else if (event->modifiers().testFlag(Qt::ControlModifier)) {
        editSelection().toggle(place);
    } else {
        editSelection().selectOnly(place);
    }
    selectionEdited();
}

void RecipeStrip::mouseReleaseEvent(QMouseEvent *event)
{
    const qsizetype place = placeAt(m_pressedAt);
    if (event->button() == Qt::LeftButton && m_selectsOnRelease && pressedTile() != nullptr &&
        place >= 0) {
        if (event->modifiers().testFlag(Qt::ControlModifier))
            editSelection().toggle(place);
        else
            editSelection().selectOnly(place);
        selectionEdited();
    }
    m_pressed.reset();
    m_selectsOnRelease = false;
}

void RecipeStrip::mouseDoubleClickEvent(QMouseEvent *event)
{
    const qsizetype place = placeAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton || place < 0)
        return event->ignore();
    editSelection().selectOnly(place);
    selectionEdited();
    m_pressed.reset();
    editCurrent();
}

void RecipeStrip::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint way = event->position().toPoint() - m_pressedAt;
    if (pressedTile() == nullptr || !event->buttons().testFlag(Qt::LeftButton) ||
        way.manhattanLength() < QApplication::startDragDistance())
        return;
    m_selectsOnRelease = false;
    if (event->modifiers().testFlag(Qt::ControlModifier))
        m_commands.startCopy(std::exchange(m_pressed, nullptr));
    else
        startMoveDrag();
}

TRuleList RecipeStrip::draggedRules(const TRulePtr &rule) const
{
    return selection().isSelected(rule) ? selection().selected() : TRuleList{rule};
}

namespace {

RecipeDrag::Picture pictureOf(const TRuleList &rules, const RuleTile &tile, int x)
{
    std::vector<TileDrawing> drawings;
    for (const TRulePtr &rule : rules)
        drawings.push_back(TileDrawing::of(*rule, tile.palette()));
    const auto pressed = std::find(rules.begin(), rules.end(), tile.rule()) - rules.begin();
    return RecipeDrag::picture(drawings, static_cast<std::size_t>(pressed), x, tile);
}

} // namespace

void RecipeStrip::setFaded(const TRuleList &rules, bool areFaded)
{
    for (const TRulePtr &rule : rules) {
        if (RuleTile *tile = tileOf(rule))
            tile->setFaded(areFaded);
    }
}

void RecipeStrip::startMoveDrag()
{
    const RuleTile &tile = *pressedTile();
    const TRulePtr pressed = std::exchange(m_pressed, nullptr);
    const TRuleList rules = draggedRules(pressed);
    std::vector<qsizetype> places;
    for (qsizetype place = 0; place < selection().count(); ++place) {
        if (std::find(rules.begin(), rules.end(),
                      tiles()[static_cast<std::size_t>(place)]->rule()) != rules.end())
            places.push_back(place);
    }
    const QPointer<RecipeStrip> self(this);
    setFaded(rules, true);
    const bool isRemoved = RecipeDrag::run(
        TDocumentDrag::dataForRulesAt(m_document.ruleArray(), places, m_document.myUUID()),
        pictureOf(rules, tile, m_pressedAt.x() - tile.x()), RecipeDrag::Purpose::Move, *this);
    if (!self)
        return;
    setFaded(rules, false);
    if (isRemoved)
        m_document.deleteRules(rules);
}

void RecipeStrip::startCopyDrag(const TRulePtr &rule)
{
    const RuleTile *const tile = tileOf(rule);
    if (tile == nullptr)
        return;
    m_pressed.reset();
    const QRect inside(QPoint(), tile->size());
    const QPoint position = m_pressedAt - tile->pos();
    const TRuleList rules = draggedRules(rule);
    RecipeDrag::run(
        TDocumentDrag::dataForRules(rules),
        pictureOf(rules, *tile, (inside.contains(position) ? position : inside.center()).x()),
        RecipeDrag::Purpose::Copy, *this);
}

void RecipeStrip::contextMenuEvent(QContextMenuEvent *event)
{
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const qsizetype place = isByKey ? selection().current() : placeAt(event->pos());
    if (place >= 0 && !selection().isSelected(tiles()[static_cast<std::size_t>(place)]->rule())) {
        editSelection().selectOnly(place);
        selectionEdited();
    }
    const TRulePtr rule = place < 0 ? nullptr : tiles()[static_cast<std::size_t>(place)]->rule();
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](QLatin1StringView icon, const QString &text, const QKeySequence &key,
                         auto command) {
        QAction *action = menu->addAction(text, this, command);
        if (!icon.isEmpty())
            action->setIcon(Icons::icon(icon));
        action->setShortcut(key); // shown here; the strip itself understands it
        action->setEnabled(place >= 0);
        return action;
    };
    add("edit"_L1, tr("&Edit..."), Qt::Key_Return, [this, rule] { tilePressed(rule); });
    add("copy"_L1, tr("D&uplicate"), {}, [this] { m_commands.duplicate(); });
    menu->addSeparator();
    add({}, tr("Cu&t"), QKeySequence::Cut, [this] { m_commands.cut(); });
    add({}, tr("&Copy"), QKeySequence::Copy, [this] { m_commands.copy(); });
    add({}, tr("&Paste"), QKeySequence::Paste, [this] {
        m_commands.paste();
    })->setEnabled(RecipeCommands::canPaste());
    menu->addSeparator();
    add("trash"_L1, tr("&Delete from Recipe"), QKeySequence::Delete,
        [this] { m_commands.deleteSelected(); });
    // By key below its tile, so that it can be seen whose it is.
    const RuleTile *const tile = isByKey && rule ? tileOf(rule) : nullptr;
    menu->popup(tile == nullptr ? event->globalPos()
                                : tile->mapToGlobal(tile->rect().bottomLeft()));
}
