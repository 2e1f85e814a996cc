// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/FileCommands.h"

#include <QMainWindow>

FileCommands::FileCommands(const BatchParts &parts)
    : m_parts(parts)
{
}

void FileCommands::addFiles() const
{
    choose(AddPanel::Kind::Files);
}

void FileCommands::addFolder() const
{
    choose(AddPanel::Kind::Folders);
}

void FileCommands::choose(AddPanel::Kind kind) const
{
    TDocument &document = m_parts.document;
    auto *panel = new AddPanel(
        kind, m_parts.services.mainThread, m_parts.services.worker,
        [&document](const TFileURLs &urls) {
            document.addFiles(urls, static_cast<qsizetype>(document.sourceObjectArray().size()));
        },
        &m_parts.window); // deletes itself
    panel->open();
}
