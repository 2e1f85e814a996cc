// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/batch/BatchParts.h"
#include "ui/windows/AddPanel.h"

/// The panels in which files and folders for a batch are chosen. They belong to the window; nothing
/// waits for them.
class FileCommands
{
public:
    explicit FileCommands(const BatchParts &parts);

    void addFiles() const;
    void addFolder() const;

private:
    void choose(AddPanel::Kind kind) const;

    const BatchParts m_parts;
};
