// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/FileCommands.h"

#include <QApplication>
#include <QMainWindow>
#include <QUrl>

FileCommands::FileCommands(const BatchParts &parts)
    : m_parts(parts)
{
}

void FileCommands::addFiles() const
{
    choose(QApplication::translate("FileCommands", "Add Files"), QFileDialog::ExistingFiles);
}

void FileCommands::addFolder() const
{
    choose(QApplication::translate("FileCommands", "Add Folder"), QFileDialog::Directory);
}

void FileCommands::choose(const QString &title, QFileDialog::FileMode mode) const
{
    auto *panel = new QFileDialog(&m_parts.window, title);
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setFileMode(mode);
    panel->setLabelText(QFileDialog::Accept, QApplication::translate("FileCommands", "Add"));
    QObject::connect(
        panel, &QFileDialog::urlsSelected, &m_parts.document,
        [&document = m_parts.document](const QList<QUrl> &urls) {
            TFileURLs files;
            for (const QUrl &url : urls) {
                const auto file = TFileURL::fromString(url.toString(QUrl::FullyEncoded));
                if (file.isValid())
                    files += file;
            }
            document.addFiles(files, static_cast<qsizetype>(document.sourceObjectArray().size()));
        });
    panel->open();
}
