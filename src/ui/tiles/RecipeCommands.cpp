// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/RecipeCommands.h"

#include "document/TDocumentDrag.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QWidget>

RecipeCommands::RecipeCommands(TDocument &document, Notifications &notifications,
                               const RecipeSelection &selection)
    : m_document(document)
    , m_notifications(notifications)
    , m_selection(selection)
{
}

void RecipeCommands::post(QLatin1StringView name, const TRulePtr &rule, QWidget *view)
{
    m_notifications.post(name, {{Notifications::kTheModel, QVariant::fromValue(rule)},
                                {TDocument::kTheData, QVariant::fromValue(&m_document)},
                                {TDocument::kTheView, QVariant::fromValue(view)}});
}

void RecipeCommands::edit(const TRulePtr &rule, QWidget *view)
{
    post(TDocument::kRuleDoubleClicked, rule, view);
}

void RecipeCommands::startCopy(const TRulePtr &rule, QWidget *view)
{
    post(TDocument::kStartDupeDrag, rule, view);
}

void RecipeCommands::deleteSelected()
{
    m_document.deleteRules(m_selection.selected());
}

qsizetype RecipeCommands::placeForMore() const
{
    const std::vector<qsizetype> places = m_selection.places();
    return places.empty() ? m_selection.count() : places.back() + 1;
}

void RecipeCommands::duplicate()
{
    m_document.addRules(TDocument::copyArrayViaEncode(m_selection.selected()), placeForMore());
}

void RecipeCommands::copy() const
{
    const TRuleList rules = m_selection.selected();
    if (!rules.empty())
        QGuiApplication::clipboard()->setMimeData(TDocumentDrag::dataForRules(rules).release());
}

void RecipeCommands::cut()
{
    copy();
    deleteSelected();
}

bool RecipeCommands::canPaste()
{
    const QMimeData *data = QGuiApplication::clipboard()->mimeData();
    return data != nullptr && data->hasFormat(TDocumentDrag::rulesType());
}

void RecipeCommands::paste()
{
    if (canPaste())
        m_document.addRules(TDocumentDrag::rules(*QGuiApplication::clipboard()->mimeData()),
                            placeForMore());
}

void RecipeCommands::move(Way way)
{
    const std::vector<qsizetype> places = m_selection.places();
    if (places.empty())
        return;
    if (way == Way::Earlier && places.front() > 0)
        m_document.moveRules(places, places.front() - 1);
    else if (way == Way::Later && places.back() + 1 < m_selection.count())
        m_document.moveRules(places, places.back() + 2);
}
