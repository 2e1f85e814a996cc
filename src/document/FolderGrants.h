// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFolderAccess.h"
#include "document/TDialogHost.h"
#include "platform/Notifications.h"

#include <memory>

/// What the notification about a recorded grant carries: the folder's TFolderAccess.
inline constexpr QLatin1StringView kTheFolderAccess{"theFolderAccess"};

/// What a prompt or list calls a folder: its last component, "/" for the root.
QString nameOfFolder(const TFileURL &folder);

/// Asks the user for the folders of one list that a sandbox keeps closed. Belongs to whoever owns
/// the list; destroyed, it drops the answers still to come. Main thread only.
class FolderGrants
{
public:
    FolderGrants(TDialogHost &host, Notifications &notifications);

    using Finished = std::function<void(bool granted)>;
    /// Asks for one folder after another until all are granted, for the same one again when another
    /// was chosen. False when the user cancelled. Outside a sandbox true, at once. The list must
    /// outlive the grants, and finished is called at most once.
    void getAuthorization(TFolderAccessList &list, Finished finished);
    /// Asks for one folder, once. True when the user chose that very folder.
    void ask(TFolderAccessList &list, const TFileURL &folder, Finished finished);

private:
    using Answered = std::function<void(TFolderAccess &, const std::optional<TFileURL> &)>;
    void show(TFolderAccessList &list, const TFileURL &folder, Answered answered);
    bool record(TFolderAccess &folder, const TFileURL &chosen);

    TDialogHost &m_host;
    Notifications &m_notifications;
    const std::shared_ptr<char> m_alive = std::make_shared<char>();
};
