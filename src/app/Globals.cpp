// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Globals.h"

#include "settings/PrefsWriter.h"

namespace {

constexpr QLatin1StringView kScopedFolders{"scopedFolders"};
constexpr QLatin1StringView kTheBookmark{"theBookmark"};
constexpr QLatin1StringView kHaveAccess{"haveAccess"};

} // namespace

void initGlobals()
{
    theScopedFolders() = {};
    for (const QVariant &saved : PrefsReadArray(kScopedFolders)) {
        const QVariantMap grant = saved.toMap();
        const TFolderAccess folder = TFolderAccess::folderWithBookmark(
            grant.value(kTheBookmark).toString().toUtf8(), grant.value(kHaveAccess).toBool());
        if (folder.theURL().isValid())
            theScopedFolders().append(folder);
    }
}

TFolderAccessList &theScopedFolders()
{
    static TFolderAccessList folders;
    return folders;
}
