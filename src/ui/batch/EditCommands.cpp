// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/EditCommands.h"

#include "document/TDocumentDrag.h"
#include "ui/controls/Popover.h"
#include "ui/table/FilePane.h"
#include "ui/tiles/RecipeCard.h"
#include "ui/tiles/RecipeCommands.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
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
    if (now == nullptr || now->window() != &m_parts.window || now == m_parts.window.menuBar())
        return;
    m_area = areaOf(*now);
    Q_EMIT changed();
}

EditCommands::Area EditCommands::areaOf(const QWidget &now) const
{
    if (m_parts.recipe.tiles().isAncestorOf(&now))
        return Area::Rules;
    if (&now == &m_parts.files.table())
        return Area::Files;
    for (const QWidget *around = &now; around != nullptr; around = around->parentWidget()) {
        if (qobject_cast<const Popover *>(around) != nullptr)
            return Area::Popover;
    }
    return Area::Elsewhere;
}

QWidget *EditCommands::textField() const
{
    QWidget *focus = QApplication::focusWidget();
    const bool isText = focus != nullptr && focus->window() == &m_parts.window &&
                        focus->metaObject()->indexOfSlot("cut()") >= 0;
    return isText ? focus : nullptr;
}

bool EditCommands::canCut() const
{
    return textField() != nullptr || (m_area == Area::Rules && m_rules.hasSelection());
}

bool EditCommands::canCopy() const
{
    return canCut() || (m_area == Area::Files && !m_parts.files.selectedRows().empty());
}

bool EditCommands::canPaste() const
{
    if (textField() != nullptr)
        return true;
    const QMimeData *data = QApplication::clipboard()->mimeData();
    return data != nullptr && m_area != Area::Popover &&
           (RecipeCommands::canPaste() || data->hasUrls());
}

bool EditCommands::canRemove() const
{
    if (textField() != nullptr)
        return true;
    return m_area == Area::Rules ? m_rules.hasSelection()
                                 : m_area == Area::Files && !m_parts.files.selectedRows().empty();
}

QString EditCommands::removeText() const
{
    if (textField() != nullptr || !canRemove())
        return tr("&Delete");
    return m_area == Area::Rules ? tr("&Delete from Recipe") : tr("Re&move from List");
}

bool EditCommands::canSelectAll() const
{
    if (textField() != nullptr)
        return true;
    if (m_area == Area::Rules)
        return !m_parts.document.ruleArray().empty();
    return m_area != Area::Popover && !m_parts.document.sourceObjectArray().empty();
}

void EditCommands::cut()
{
    if (QWidget *field = textField())
        QMetaObject::invokeMethod(field, "cut");
    else if (canCut())
        m_rules.cut();
}

void EditCommands::copy()
{
    if (QWidget *field = textField())
        QMetaObject::invokeMethod(field, "copy");
    else if (canCut())
        m_rules.copy();
    else if (canCopy())
        m_parts.files.copyNames();
}

void EditCommands::paste()
{
    if (QWidget *field = textField()) {
        QMetaObject::invokeMethod(field, "paste");
        return;
    }
    const QMimeData *data = QApplication::clipboard()->mimeData();
    if (data == nullptr || m_area == Area::Popover)
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
    else if (textField() == nullptr && m_area == Area::Rules)
        m_rules.deleteSelected();
    else if (textField() == nullptr && m_area == Area::Files)
        m_parts.files.removeSelected();
}

void EditCommands::selectAll()
{
    if (QWidget *field = textField())
        QMetaObject::invokeMethod(field, "selectAll");
    else if (m_area == Area::Rules)
        m_parts.recipe.selectAllRules();
    else if (m_area != Area::Popover)
        m_parts.files.selectAllFiles();
}
