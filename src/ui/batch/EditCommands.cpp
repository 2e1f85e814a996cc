// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/EditCommands.h"

#include "document/TDocumentDrag.h"
#include "ui/batch/EditorPopovers.h"
#include "ui/table/FilePane.h"
#include "ui/tiles/RecipeCard.h"
#include "ui/tiles/RecipeCommands.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMainWindow>
#include <QMimeData>

EditCommands::EditCommands(const BatchParts &parts, QObject *parent)
    : QObject(parent)
    , m_parts(parts)
    , m_rules(parts.recipe.commands())
{
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget *, QWidget *now) { focusChanged(now); });
    connect(QApplication::clipboard(), &QClipboard::dataChanged, this, &EditCommands::changed);
}

void EditCommands::focusChanged(QWidget *now)
{
    if (now == nullptr || now->window() != &m_parts.window)
        return;
    if (m_parts.recipe.isAncestorOf(now) || now == &m_parts.recipe)
        m_area = Area::Rules;
    else if (m_parts.files.isAncestorOf(now))
        m_area = Area::Files;
    Q_EMIT changed();
}

QWidget *EditCommands::textField() const
{
    QWidget *focus = QApplication::focusWidget();
    const bool isText = focus != nullptr && focus->window() == &m_parts.window &&
                        focus->metaObject()->indexOfSlot("cut()") >= 0;
    return isText ? focus : nullptr;
}

bool EditCommands::isElsewhere() const
{
    const Popover *popover = m_parts.editors.current();
    return popover != nullptr && popover->isVisible() &&
           popover->isAncestorOf(QApplication::focusWidget());
}

bool EditCommands::canCopy() const
{
    return textField() != nullptr ||
           (!isElsewhere() && m_area == Area::Rules && m_rules.hasSelection());
}

bool EditCommands::canPaste() const
{
    if (textField() != nullptr)
        return true;
    const QMimeData *data = QApplication::clipboard()->mimeData();
    return data != nullptr && !isElsewhere() && (RecipeCommands::canPaste() || data->hasUrls());
}

bool EditCommands::canRemove() const
{
    if (textField() != nullptr)
        return true;
    if (isElsewhere())
        return false;
    return m_area == Area::Rules ? m_rules.hasSelection() : !m_parts.files.selectedRows().empty();
}

bool EditCommands::canSelectAll() const
{
    if (textField() != nullptr)
        return true;
    return m_area == Area::Rules ? !m_parts.document.ruleArray().empty()
                                 : !m_parts.document.sourceObjectArray().empty();
}

void EditCommands::cut()
{
    if (QWidget *field = textField())
        QMetaObject::invokeMethod(field, "cut");
    else if (canCopy())
        m_rules.cut();
}

void EditCommands::copy()
{
    if (QWidget *field = textField())
        QMetaObject::invokeMethod(field, "copy");
    else if (canCopy())
        m_rules.copy();
}

void EditCommands::paste()
{
    if (QWidget *field = textField()) {
        QMetaObject::invokeMethod(field, "paste");
        return;
    }
    const QMimeData *data = QApplication::clipboard()->mimeData();
    if (data == nullptr || isElsewhere())
        return;
    if (RecipeCommands::canPaste())
        m_rules.paste();
    else if (const TFileURLs urls = TDocumentDrag::fileURLs(*data); !urls.isEmpty())
        m_parts.document.addFiles(
            urls, static_cast<qsizetype>(m_parts.document.sourceObjectArray().size()));
}

void EditCommands::remove()
{
    if (auto *line = qobject_cast<QLineEdit *>(textField()))
        line->del();
    else if (textField() == nullptr && !isElsewhere())
        m_area == Area::Rules ? m_rules.deleteSelected() : m_parts.files.removeSelected();
}

void EditCommands::selectAll()
{
    if (QWidget *field = textField())
        QMetaObject::invokeMethod(field, "selectAll");
    else if (!isElsewhere())
        m_area == Area::Rules ? m_parts.recipe.selectAllRules() : m_parts.files.selectAllFiles();
}
