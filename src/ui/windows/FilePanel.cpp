// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/FilePanel.h"

#include "commonprocs/ByteNames.h"
#include "ui/windows/SheetParts.h"

#include <QUrl>

#include <dirent.h>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPromptCharacters = 40;

struct CloseFolder
{
    void operator()(DIR *folder) const { ::closedir(folder); }
};

QUrl urlOf(const TFileURL &url)
{
    return QUrl::fromEncoded(url.absoluteString().toLatin1());
}

/// The one entry of the folder whose name Qt shows like that; the name itself when there is none,
/// or more than one.
QString entryShownAs(const QString &name, const QString &folder)
{
    const std::unique_ptr<DIR, CloseFolder> open(::opendir(ByteNames::toBytes(folder).constData()));
    QString found;
    while (open) {
        const dirent *const entry = ::readdir(open.get());
        if (entry == nullptr)
            break;
        if (QString::fromUtf8(entry->d_name) != name)
            continue;
        if (!found.isNull())
            return name;
        found = ByteNames::fromBytes(entry->d_name);
    }
    return found.isNull() ? name : found;
}

/// Panels that work with texts show bytes that are no valid UTF-8 as U+FFFD. The path with such
/// names as they are on disk.
QString withRawNames(const QString &path)
{
    if (!path.contains(QChar::ReplacementCharacter))
        return path;
    QString folder = u"/"_s;
    for (const QString &component : path.split(u'/', Qt::SkipEmptyParts)) {
        if (folder != "/"_L1)
            folder += u'/';
        const bool isDoubtful = component.contains(QChar::ReplacementCharacter);
        folder += isDoubtful ? entryShownAs(component, folder) : component;
    }
    return folder;
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
    QString path = withRawNames(url.path());
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
