// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/RecipeCommands.h"

#include "document/TDocumentDrag.h"
#include "document/TRuleKinds.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>

RecipeCommands::RecipeCommands(TDocument &document, Notifications &notifications,
                               const RecipeSelection &selection, TileOf tileOf)
    : m_document(document)
    , m_notifications(notifications)
    , m_selection(selection)
    , m_tileOf(std::move(tileOf))
{
}

void RecipeCommands::setBeforeChange(std::function<void()> beforeChange)
{
    m_beforeChange = std::move(beforeChange);
}

void RecipeCommands::post(QLatin1StringView name, const TRulePtr &rule)
{
    m_notifications.post(name, {{Notifications::kTheModel, QVariant::fromValue(rule)},
                                {TDocument::kTheData, QVariant::fromValue(&m_document)},
                                {TDocument::kTheView, QVariant::fromValue(m_tileOf(rule))}});
}

void RecipeCommands::addRules(const TRuleList &rules, qsizetype place)
{
    m_beforeChange();
    m_document.addRules(rules, place);
}

void RecipeCommands::add(const QString &identifier)
{
    const TRulePtr rule = TRuleKinds::ruleForIdentifier(identifier);
    if (!rule)
        return;
    rule->updatePreview();
    addRules({rule}, placeForMore());
    edit(rule);
    if (auto *field = qobject_cast<QLineEdit *>(QApplication::focusWidget()))
        field->selectAll(); // what a new rule starts with is there to be typed over
}

void RecipeCommands::append(const TRulePtr &rule)
{
    addRules({rule}, m_selection.count());
}

bool RecipeCommands::canEdit() const
{
    return m_selection.selected().size() == 1;
}

void RecipeCommands::editSelected()
{
    if (canEdit())
        edit(m_selection.selected().front());
}

void RecipeCommands::edit(const TRulePtr &rule)
{
    post(TDocument::kRuleDoubleClicked, rule);
}

void RecipeCommands::startCopy(const TRulePtr &rule)
{
    post(TDocument::kStartDupeDrag, rule);
}

void RecipeCommands::deleteSelected()
{
    if (!hasSelection())
        return;
    m_beforeChange();
    m_document.deleteRules(m_selection.selected());
}

qsizetype RecipeCommands::placeForMore() const
{
    const std::vector<qsizetype> places = m_selection.places();
    return places.empty() ? m_selection.count() : places.back() + 1;
}

void RecipeCommands::duplicate()
{
    addRules(TDocument::copyArrayViaEncode(m_selection.selected()), placeForMore());
}

void RecipeCommands::copy() const
{
    if (hasSelection())
        QApplication::clipboard()->setMimeData(
            TDocumentDrag::dataForRules(m_selection.selected()).release()); // its own now
}

void RecipeCommands::cut()
{
    copy();
    deleteSelected();
}

bool RecipeCommands::canPaste()
{
    const QMimeData *data = QApplication::clipboard()->mimeData();
    return data != nullptr && data->hasFormat(TDocumentDrag::rulesType());
}

void RecipeCommands::paste()
{
    if (canPaste())
        addRules(TDocumentDrag::rules(*QApplication::clipboard()->mimeData()), placeForMore());
}

bool RecipeCommands::canMove(Way way) const
{
    const std::vector<qsizetype> places = m_selection.places();
    if (places.empty())
        return false;
    return way == Way::Earlier ? places.front() > 0 : places.back() + 1 < m_selection.count();
}

void RecipeCommands::move(Way way)
{
    if (!canMove(way))
        return;
    m_beforeChange();
    const std::vector<qsizetype> places = m_selection.places();
    m_document.moveRules(places, way == Way::Earlier ? places.front() - 1 : places.back() + 2);
}
