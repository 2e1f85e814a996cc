// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TableCell.h"
#include "platform/BackgroundWork.h"
#include "platform/Notifications.h"
#include "settings/PresetsManager.h"

#include <QObject>

#include <vector>

/// The window in which presets are removed, without the window: shipped presets first, in grey and
/// safe, then the user's. Files are listed and deleted by the worker. Owned by its window; main
/// thread only.
class TRemovePresetsWindowController : public QObject
{
    Q_OBJECT

public:
    struct Services
    {
        MainThread &mainThread;
        WorkerQueue &worker; ///< outlives the controller
        Notifications &notifications;
    };

    /// Starts listing.
    TRemovePresetsWindowController(const Services &services, PresetsManager presets);

    /// Paths, one a row.
    const QStringList &thePresets() const { return m_presetPaths; }
    /// Whether the preset of a row can be removed.
    const std::vector<bool> &theEnablers() const { return m_enablers; }
    /// The name of a row's preset, grey when it cannot be removed.
    TableCell cellView(qsizetype row) const;
    bool removeButtonEnabled() const { return m_removeEnabled; }

    /// A click on a row; -1 is none.
    void rowSelected(qsizetype row);
    /// Removes the preset of the selected row from the disk and from the list.
    void removeLine(qsizetype row);

Q_SIGNALS:
    void tableReloaded();
    void removeButtonChanged();

private:
    struct Files
    {
        QStringList paths;
        qsizetype shipped = 0; ///< how many of them, at the front
    };
    void presetsListed(Files files);
    bool isRemovable(qsizetype row) const;
    void setRemoveEnabled(bool enabled);

    Notifications &m_notifications;
    const PresetsManager m_presets;
    QStringList m_presetPaths;
    std::vector<bool> m_enablers;
    bool m_removeEnabled = false;
    BackgroundWork m_work;
};
