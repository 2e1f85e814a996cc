// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TRemovePresetsWindowController.h"

#include "commonprocs/TFileURL.h"
#include "settings/logging.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kLogTitle{"Presets"};

} // namespace

TRemovePresetsWindowController::TRemovePresetsWindowController(const Services &services,
                                                               PresetsManager presets)
    : m_notifications(services.notifications)
    , m_presets(std::move(presets))
    , m_work(services.mainThread, services.worker)
{
    m_work.run(
        [manager = m_presets](const auto &, const auto &) {
            Files files;
            manager.readInternalPresetURLsIntoArray(files.paths);
            files.shipped = files.paths.size();
            manager.readExternalPresetURLsIntoArray(files.paths);
            return files;
        },
        [this](Files files) { presetsListed(std::move(files)); });
}

void TRemovePresetsWindowController::presetsListed(Files files)
{
    m_presetPaths = std::move(files.paths);
    m_enablers.assign(static_cast<std::size_t>(m_presetPaths.size()), true);
    std::fill_n(m_enablers.begin(), files.shipped, false);
    Q_EMIT tableReloaded();
}

bool TRemovePresetsWindowController::isRemovable(qsizetype row) const
{
    return row >= 0 && row < m_presetPaths.size() && m_enablers[static_cast<std::size_t>(row)];
}

TableCell TRemovePresetsWindowController::cellView(qsizetype row) const
{
    const TFileURL url = TFileURL::fileURLWithPath(m_presetPaths[row]);
    return {removeExtensionFromFilename(url.lastPathComponent()),
            {},
            isRemovable(row) ? TableCell::Ink::Normal : TableCell::Ink::Grey};
}

void TRemovePresetsWindowController::rowSelected(qsizetype row)
{
    setRemoveEnabled(isRemovable(row));
}

void TRemovePresetsWindowController::removeLine(qsizetype row)
{
    if (!isRemovable(row))
        return;
    const QString path = m_presetPaths.takeAt(row);
    m_enablers.erase(m_enablers.begin() + row);
    setRemoveEnabled(false);
    Q_EMIT tableReloaded();
    m_work.run([manager = m_presets, path](const auto &,
                                           const auto &) { return manager.deletePresetFile(path); },
               [this](const TResult<bool> &deleted) {
                   if (!deleted) // not reported to the user, who sees the preset come back
                       zelWarn(kLogTitle, deleted.message());
                   m_notifications.post(Notifications::kPresetsChanged);
               });
}

void TRemovePresetsWindowController::setRemoveEnabled(bool enabled)
{
    if (std::exchange(m_removeEnabled, enabled) != enabled)
        Q_EMIT removeButtonChanged();
}
