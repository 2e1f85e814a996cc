// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocumentHost.h"
#include "platform/BackgroundWork.h"
#include "platform/Notifications.h"
#include "settings/PresetsManager.h"

#include <optional>
#include <utility>
#include <vector>

/// The presets as one document uses them: its pop-up, saving and choosing. Files are read and
/// written by the worker; the pop-up follows when it is done, and whenever "presetsChanged" is
/// posted. Owned by the document; main thread only.
class TDocumentPresets
{
public:
    struct Services
    {
        TDocumentHost &host;
        MainThread &mainThread;
        WorkerQueue &worker; ///< outlives the document
        Notifications &notifications;
    };
    using Table = std::vector<std::pair<QString, TRuleList>>;

    /// The items before the presets: "Save Preset...", a separator, "Delete Presets...", a
    /// separator.
    static constexpr qsizetype kSaveItem = 0;
    static constexpr qsizetype kDeleteItem = 2;
    static constexpr qsizetype kFirstPreset = 4;

    TDocumentPresets(const Services &services, PresetsManager presets);

    /// Rebuilds table and pop-up.
    void loadPresetsFromDisk();
    const Table &thePresets() const { return m_table; }
    /// A copy of the rules of a pop-up item; nothing for the fixed items and beyond the end.
    std::optional<TRuleList> rulesOfItem(qsizetype index) const;
    /// Asks for a name, offering the suggestion, and saves the rules as they are now under it,
    /// replacing a preset of that name. Nothing happens without rules or without a name.
    void saveRuleAsPreset(const TRuleList &rules, const QString &suggestion);

private:
    void doSave(const QString &name, const TRuleList &theData);
    void presetsLoaded(Table table);

    TDocumentHost &m_host;
    Notifications &m_notifications;
    const PresetsManager m_presets;
    Table m_table;
    const std::shared_ptr<char> m_alive = std::make_shared<char>();
    BackgroundWork m_work;
    Notifications::Subscription m_presetsChanged;
};
