// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/FilePanel.h"

#include "ui/windows/SheetParts.h"
#include "ui/windows/UnshownNames.h"

#include <QUrl>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPromptCharacters = 40;

QUrl urlOf(const TFileURL &url)
{
    return QUrl::fromEncoded(url.absoluteString().toLatin1());
}

} // namespace

FilePanel::FilePanel(TDialogHost::Chosen chosen, QWidget *window)
    : QFileDialog(window)
    , m_chosen(std::move(chosen))
{
}

void FilePanel::askForFolder(const TDialogHost::FolderPanel &panel)
{
    setFileMode(Directory);
    setOptions(ShowDirsOnly | ReadOnly);
    setWindowTitle(panel.prompt);
    const QString prompt = fontMetrics().elidedText(panel.prompt, Qt::ElideMiddle,
                                                    SheetParts::widthOf(this, kPromptCharacters));
    setLabelText(Accept, QString(prompt).replace(u'&', "&&"_L1));
    setDirectoryUrl(urlOf(panel.folder));
}

void FilePanel::askForNewFile(const TDialogHost::SavePanel &panel)
{
    m_fileType = panel.fileType;
    setAcceptMode(AcceptSave);
    setFileMode(AnyFile);
    setDefaultSuffix(panel.fileType);
    setNameFilter(tr("%1 files (*.%2)").arg(panel.fileType.toUpper(), panel.fileType));
    QString name = panel.name + u'.' + panel.fileType;
    selectFile(name.replace(u'/', u'-'));
}

std::optional<TFileURL> FilePanel::choice() const
{
    const QList<QUrl> urls = selectedUrls();
    if (urls.isEmpty())
        return std::nullopt;
    const TFileURL url = TFileURL::fromString(QString::fromLatin1(urls.first().toEncoded()));
    if (!url.isValid())
        return std::nullopt;
    QString path = UnshownNames::restored(url.path());
    const QString suffix = u'.' + m_fileType;
    if (!m_fileType.isEmpty() && !path.endsWith(suffix, Qt::CaseInsensitive))
        path += suffix;
    return TFileURL::fileURLWithPath(path);
}

void FilePanel::done(int result)
{
    const TDialogHost::Chosen chosen = std::exchange(m_chosen, {});
    const auto url = result == Accepted ? choice() : std::nullopt;
    QFileDialog::done(result);
    deleteLater();
    if (chosen) // last: the window, and with it this panel, may go away meanwhile
        chosen(url);
}
