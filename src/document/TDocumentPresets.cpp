// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocumentPresets.h"

#include "document/TRuleKinds.h"
#include "settings/logging.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kLogTitle{"Presets"};

} // namespace

TDocumentPresets::TDocumentPresets(const Services &services, PresetsManager presets)
    : m_host(services.host)
    , m_notifications(services.notifications)
    , m_presets(std::move(presets))
    , m_work(services.mainThread, services.worker)
    , m_presetsChanged(m_notifications.subscribe(Notifications::kPresetsChanged,
                                                 [this](const auto &) { loadPresetsFromDisk(); }))
{
}

void TDocumentPresets::loadPresetsFromDisk()
{
    m_work.run([presets = m_presets](const auto &, const auto &) { return presets.readPresets(); },
               [this](Table table) { presetsLoaded(std::move(table)); });
}

void TDocumentPresets::presetsLoaded(Table table)
{
    m_table = std::move(table);
    QStringList names;
    for (const auto &[name, rules] : m_table)
        names += name;
    m_host.setPresetNames(names);
}

std::optional<TRuleList> TDocumentPresets::rulesOfItem(qsizetype index) const
{
    const qsizetype preset = index - kFirstPreset;
    if (preset < 0 || preset >= static_cast<qsizetype>(m_table.size()))
        return std::nullopt;
    return TRuleKinds::copyArrayViaEncode(m_table[static_cast<std::size_t>(preset)].second);
}

void TDocumentPresets::saveRuleAsPreset(const TRuleList &rules, const QString &suggestion)
{
    if (rules.empty())
        return;
    // Copied now, since the user may go on editing while the popover is open.
    const TRuleList theData = TRuleKinds::copyArrayViaEncode(rules);
    m_host.askPresetName(suggestion, [this, alive = std::weak_ptr(m_alive),
                                      theData](const std::optional<QString> &name) {
        if (!alive.expired() && name && !name->isEmpty())
            doSave(*name, theData);
    });
}

/// What the disk refuses is not reported to the user, but it is logged.
void TDocumentPresets::doSave(const QString &name, const TRuleList &theData)
{
    m_work.run([presets = m_presets, name,
                theData](const auto &, const auto &) { return presets.savePreset(name, theData); },
               [this](const TResult<QString> &path) {
                   if (!path)
                       zelWarn(kLogTitle, path.message());
                   else
                       m_notifications.post(Notifications::kPresetsChanged);
               });
}
