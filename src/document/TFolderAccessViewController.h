// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/FolderGrants.h"
#include "document/TableCell.h"

/// The view that shows which folders of a list are granted, without the view. Follow
/// "gotAuthorized" to know when it changes. The list is not owned; main thread only.
class TFolderAccessViewController
{
public:
    static constexpr QLatin1StringView kStatusColumn{"status"};
    static constexpr QLatin1StringView kNameColumn{"name"};
    static constexpr QLatin1StringView kGrantColumn{"grant"};

    TFolderAccessViewController(TFolderAccessList &list, TDialogHost &host,
                                Notifications &notifications);

    qsizetype rows() const { return static_cast<qsizetype>(m_list.folders().size()); }
    /// Image or text of a cell; the grant column has a control in their place. An unknown column is
    /// logged and shows nothing.
    TableCell cell(qsizetype row, QLatin1StringView column) const;
    /// True when the row has the grant control.
    bool offersGrant(qsizetype row) const;
    /// The grant control: asks for the folder once.
    void grant(qsizetype row);

private:
    const TFolderAccess &folderAt(qsizetype row) const;

    TFolderAccessList &m_list;
    FolderGrants m_grants;
};
