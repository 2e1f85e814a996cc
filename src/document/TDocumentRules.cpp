// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocument.h"
#include "document/TDocumentDrag.h"
#include "document/TDocumentUndo.h"
#include "document/TRuleKinds.h"

#include <algorithm>
#include <set>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kAddRule = QT_TRANSLATE_NOOP("TDocument", "Add Rule");
constexpr const char *kMoveRule = QT_TRANSLATE_NOOP("TDocument", "Move Rule");
constexpr const char *kDeleteRuleName = QT_TRANSLATE_NOOP("TDocument", "Delete Rule");
constexpr const char *kEditRule = QT_TRANSLATE_NOOP("TDocument", "Edit Rule");
constexpr const char *kEditExtensions = QT_TRANSLATE_NOOP("TDocument", "Edit Extensions");
constexpr const char *kUsePreset = QT_TRANSLATE_NOOP("TDocument", "Use Preset");
constexpr QLatin1StringView kIgnoreCase{"ignoreCase"};
constexpr QLatin1StringView kRegEx{"regEx"};
constexpr QLatin1StringView kRegAccess{"regAccess"};
constexpr QLatin1StringView kRePattern{"rePattern"};

/// The settings from before, with those unset that have come in since.
QVariantMap completed(QVariantMap before, const QVariantMap &now)
{
    for (auto it = now.begin(); it != now.end(); ++it)
        if (!before.contains(it.key()))
            before.insert(it.key(), QVariant());
    return before;
}

/// What an editor can set, apart from how far a rule has counted: names are worked out while an
/// editor is open.
QVariantMap settingsOf(const TRulePtr &rule, const QVariantMap &properties)
{
    const TRulePtr copy = TRuleKinds::copyArrayViaEncode({rule}).front();
    copy->setProperties(properties);
    copy->prepareToStart();
    return copy->properties();
}

} // namespace

TRuleList TDocument::copyArrayViaEncode(const TRuleList &rules)
{
    return TRuleKinds::copyArrayViaEncode(rules);
}

QString TDocument::rulesToString() const
{
    QString names;
    for (const TRulePtr &rule : m_ruleArray)
        names += rule->name();
    return names;
}

void TDocument::setRules(const char *name, TRuleList rules)
{
    TRuleList before = std::exchange(m_ruleArray, std::move(rules));
    batchChanged();
    Q_EMIT rulesChanged();
    m_undoStack.push(
        std::make_unique<TDocumentUndo<TRuleList>>(
            text(name), std::move(before), [this](TRuleList &list) { undoRuleArrayChange(list); })
            .release()); // the stack owns it
    doBackgroundRunIfUpdate();
}

void TDocument::undoRuleArrayChange(TRuleList &rules)
{
    m_ruleArray.swap(rules);
    batchChanged();
    Q_EMIT rulesChanged();
    doBackgroundRunIfUpdate();
}

bool TDocument::ruleEditorAcceptDrop(const QMimeData &data, qsizetype position)
{
    if (!data.hasFormat(TDocumentDrag::rulesType()))
        return false;
    const std::vector<qsizetype> positions = TDocumentDrag::rows(data);
    if (TDocumentDrag::documentUUID(data) == m_myUUID && !positions.empty()) {
        moveRules(positions, position);
        return true;
    }
    const TRuleList rules = TDocumentDrag::rules(data);
    addRules(rules, position);
    return !rules.empty();
}

void TDocument::addRules(const TRuleList &rules, qsizetype position)
{
    if (rules.empty())
        return;
    TRuleList list = m_ruleArray;
    const auto place = std::clamp<qsizetype>(position, 0, static_cast<qsizetype>(list.size()));
    list.insert(list.begin() + place, rules.begin(), rules.end());
    setRules(kAddRule, std::move(list));
}

void TDocument::moveRules(const std::vector<qsizetype> &positions, qsizetype beforePosition)
{
    const auto count = static_cast<qsizetype>(m_ruleArray.size());
    if (positions.empty() || positions.front() < 0 || positions.back() >= count ||
        std::binary_search(positions.begin(), positions.end(), beforePosition))
        return;
    const auto earlier =
        std::lower_bound(positions.begin(), positions.end(), beforePosition) - positions.begin();
    m_theAccumulator = m_ruleArray;
    TRuleList moved;
    for (auto position = positions.rbegin(); position != positions.rend(); ++position) {
        const auto rule = m_theAccumulator.begin() + *position;
        moved.insert(moved.begin(), *rule);
        m_theAccumulator.erase(rule);
    }
    const auto target = std::clamp<qsizetype>(beforePosition - earlier, 0,
                                              static_cast<qsizetype>(m_theAccumulator.size()));
    m_theAccumulator.insert(m_theAccumulator.begin() + target, moved.begin(), moved.end());
    setRules(kMoveRule, std::exchange(m_theAccumulator, {}));
}

void TDocument::deleteRules(const TRuleList &rules)
{
    const std::set<TRulePtr> deleted(rules.begin(), rules.end());
    TRuleList list = m_ruleArray;
    if (std::erase_if(list, [&](const TRulePtr &rule) { return deleted.contains(rule); }) > 0)
        setRules(kDeleteRuleName, std::move(list));
}

void TDocument::beginRuleEdit(const TRulePtr &rule)
{
    endRuleEdit();
    m_ruleEdit = RuleEdit{rule, rule->properties()};
}

void TDocument::endRuleEdit()
{
    if (!m_ruleEdit)
        return;
    const RuleEdit edit = *std::exchange(m_ruleEdit, std::nullopt);
    const QVariantMap now = edit.rule->properties();
    QVariantMap before = completed(edit.before, now);
    if (settingsOf(edit.rule, now) == settingsOf(edit.rule, before))
        return;
    m_undoStack.push(std::make_unique<TDocumentUndo<QVariantMap>>(
                         text(kEditRule), std::move(before),
                         [this, rule = edit.rule](QVariantMap &properties) {
                             undoRuleChangeForRuleWithProperties(rule, properties);
                         })
                         .release()); // the stack owns it
}

void TDocument::undoRuleChangeForRuleWithProperties(const TRulePtr &rule, QVariantMap &properties)
{
    const QVariantMap now = rule->properties();
    rule->setProperties(properties);
    rule->updatePreview();
    properties = completed(now, properties);
    // An editor that is open goes on from here.
    if (m_ruleEdit && m_ruleEdit->rule == rule)
        m_ruleEdit->before = rule->properties();
    batchChanged();
    Q_EMIT ruleChanged(rule);
    doBackgroundRunIfUpdate();
}

void TDocument::beginExtensionEdit()
{
    endExtensionEdit();
    setReadyToGo(false);
    m_extensionEdit = extensionHandlerProperties();
}

void TDocument::endExtensionEdit()
{
    if (!m_extensionEdit)
        return;
    QVariantMap before = *std::exchange(m_extensionEdit, std::nullopt);
    if (before == extensionHandlerProperties())
        return;
    m_undoStack.push(std::make_unique<TDocumentUndo<QVariantMap>>(
                         text(kEditExtensions), std::move(before),
                         [this](QVariantMap &properties) {
                             undoRuleChangeForExtensionHandlerWithProperties(properties);
                         })
                         .release()); // the stack owns it
}

void TDocument::extensionHandlerEdited()
{
    batchChanged();
    Q_EMIT extensionHandlerChanged();
    doBackgroundRunIfUpdate();
}

QVariantMap TDocument::extensionHandlerProperties() const
{
    QVariantMap properties = m_theExtensionHandler->properties();
    properties.insert(kIgnoreCase, m_theExtensionHandler->ignoreCase());
    properties.insert(kRegEx, m_theExtensionHandler->regEx());
    properties.insert(kRegAccess, m_theExtensionHandler->regAccess());
    properties.insert(kRePattern, m_theExtensionHandler->rePattern());
    return properties;
}

void TDocument::undoRuleChangeForExtensionHandlerWithProperties(QVariantMap &properties)
{
    QVariantMap now = extensionHandlerProperties();
    m_theExtensionHandler->setProperties(properties);
    if (properties.contains(kIgnoreCase))
        m_theExtensionHandler->setIgnoreCase(properties.value(kIgnoreCase).toLongLong());
    if (properties.contains(kRegEx))
        m_theExtensionHandler->setRegEx(properties.value(kRegEx).toString());
    if (properties.contains(kRegAccess))
        m_theExtensionHandler->setRegAccess(properties.value(kRegAccess).toLongLong());
    if (properties.contains(kRePattern))
        m_theExtensionHandler->setRePattern(properties.value(kRePattern).toString());
    properties = std::move(now);
    if (m_extensionEdit)
        m_extensionEdit = extensionHandlerProperties();
    extensionHandlerEdited();
}

void TDocument::loadPresetsFromDisk()
{
    if (m_presets)
        m_presets->loadPresetsFromDisk();
}

void TDocument::rulePresetChosen(qsizetype index)
{
    if (index == TDocumentPresets::kSaveItem)
        return saveRuleAsPreset();
    if (!m_presets)
        return;
    if (std::optional<TRuleList> rules = m_presets->rulesOfItem(index))
        setRules(kUsePreset, std::move(*rules));
}

void TDocument::saveRuleAsPreset()
{
    if (m_presets)
        m_presets->saveRuleAsPreset(m_ruleArray, rulesToString());
}

void TDocument::deletePresets()
{
    tell(&TDocumentHost::showPresetRemoval);
}
