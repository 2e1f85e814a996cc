// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TFolderAccessViewController.h"

#include "settings/logging.h"

namespace {

constexpr QLatin1StringView kGranted{"dot-green"};
constexpr QLatin1StringView kClosed{"dot-red"};
constexpr QLatin1StringView kLogTitle{"tableView"};
constexpr QLatin1StringView kUnknownColumn{"viewFortableColumn:row failed to select a column"};

} // namespace

TFolderAccessViewController::TFolderAccessViewController(TFolderAccessList &list, TDialogHost &host,
                                                         Notifications &notifications)
    : m_list(list)
    , m_grants(host, notifications)
{
}

const TFolderAccess &TFolderAccessViewController::folderAt(qsizetype row) const
{
    return m_list.folders()[static_cast<std::size_t>(row)];
}

TableCell TFolderAccessViewController::cell(qsizetype row, QLatin1StringView column) const
{
    const TFolderAccess &folder = folderAt(row);
    if (column == kStatusColumn)
        return {{}, TImage(folder.haveAccess() ? kGranted : kClosed), {}};
    if (column == kNameColumn)
        return {nameOfFolder(folder.theURL()), {}, {}};
    if (column != kGrantColumn)
        zelWarn(kLogTitle, kUnknownColumn);
    return {};
}

bool TFolderAccessViewController::offersGrant(qsizetype row) const
{
    return !folderAt(row).haveAccess();
}

void TFolderAccessViewController::grant(qsizetype row)
{
    if (offersGrant(row))
        m_grants.ask(m_list, folderAt(row).theURL(), [](bool) {});
}
