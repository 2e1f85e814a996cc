// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/TFolderAccess.h"

#include "commonprocs/Sandboxing.h"
#include "commonprocs/URLListProcessing.h"
#include "settings/logging.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kArchiveClass{"TFolderAccess", "NSObject"};
constexpr auto kTheBookmark = "theBookmark"_L1;
constexpr auto kHaveAccess = "haveAccess"_L1;

std::optional<std::pair<quint64, quint64>> identityOf(const TFileURL &url)
{
    DiskFileManager disk;
    TFileStatus status;
    if (disk.status(AT_FDCWD, url.fileSystemPath(), true, status) != 0)
        return std::nullopt;
    return std::pair(status.device, status.inode);
}

bool isSameFolder(const TFileURL &a, const TFileURL &b)
{
    if (a == b)
        return true;
    const auto identity = identityOf(a);
    return identity && identity == identityOf(b);
}

} // namespace

TFolderAccess TFolderAccess::folderWithURL(const TFileURL &url, bool fromDrag)
{
    TFolderAccess folder;
    folder.m_theURL = url;
    if (!sandboxIsOn())
        folder.m_haveAccess = true;
    else if (fromDrag)
        folder.grant();
    return folder;
}

TFolderAccess TFolderAccess::folderWithBookmark(const QByteArray &bookmark, bool haveAccess)
{
    TFolderAccess folder;
    folder.m_theBookmark = bookmark;
    folder.handleSandboxedURL();
    folder.m_haveAccess = haveAccess;
    return folder;
}

void TFolderAccess::grant()
{
    m_haveAccess = true;
    m_theBookmark = sandBoxURLtoAppScopedBookmark(m_theURL);
    startSecureAcessToURL(m_theURL);
}

void TFolderAccess::gotAuthorized(const TFileURL &chosen)
{
    if (!isSameFolder(chosen, m_theURL)) {
        zelWarn(u"FolderAccess Manager"_s, u" authorized "_s + chosen.path() +
                                               u" is not same as requestes "_s + m_theURL.path() +
                                               u'.');
        return;
    }
    if (sandboxIsOn())
        grant();
    else
        m_theURL = chosen;
}

void TFolderAccess::handleSandboxedURL()
{
    if (m_theURL.isValid())
        return;
    m_theURL = AppScopedBookmarkToURL(m_theBookmark);
    if (m_theURL.isValid())
        startSecureAcessToURL(m_theURL);
    else
        zelWarn(u"sandboxing issue"_s,
                u" theSecureURL returned nil on bookmark = "_s + QString::fromUtf8(m_theBookmark));
}

TArchiveClass TFolderAccess::archiveClass()
{
    return kArchiveClass;
}

void TFolderAccess::encodeWithCoder(TEncoder &coder) const
{
    coder.encodeData(kTheBookmark, m_theBookmark);
    coder.encodeBool(kHaveAccess, m_haveAccess);
}

void TFolderAccess::initWithCoder(const TDecoder &coder)
{
    m_theBookmark = coder.decodeData(kTheBookmark);
    handleSandboxedURL();
    m_haveAccess = coder.decodeBool(kHaveAccess);
}

bool TFolderAccessList::isListed(const std::optional<Identity> &identity) const
{
    return identity && m_identities.contains(*identity);
}

bool TFolderAccessList::URLexists(const TFileURL &url) const
{
    return m_paths.contains(url.path()) || isListed(identityOf(url));
}

void TFolderAccessList::addFolder(const TFileURL &url, bool fromDrag)
{
    if (m_paths.contains(url.path()))
        return;
    const auto identity = identityOf(url);
    if (!isListed(identity)) // asked before the record is made, which may grant access
        append(TFolderAccess::folderWithURL(url, fromDrag), identity);
}

void TFolderAccessList::append(const TFolderAccess &folder)
{
    if (m_paths.contains(folder.theURL().path()))
        return;
    const auto identity = identityOf(folder.theURL());
    if (!isListed(identity))
        append(folder, identity);
}

void TFolderAccessList::append(const TFolderAccess &folder, const std::optional<Identity> &identity)
{
    m_folders.push_back(folder);
    m_paths.insert(folder.theURL().path());
    if (identity)
        m_identities.insert(*identity);
}

void TFolderAccessList::addFolders(const QList<TFileURL> &urls, bool fromDrag)
{
    for (const TFileURL &url : urls)
        addFolder(url, fromDrag);
}

void TFolderAccessList::addParentFolderIfNeededForURL(const TFileURL &url)
{
    // Most files of a batch share their folder, so its path is looked up before anything is made.
    if (url.isValid() && !m_paths.contains(url.folder()->path()))
        addFolder(url.deletingLastPathComponent(), false);
}

qsizetype TFolderAccessList::numberOfNonAccess() const
{
    return std::count_if(m_folders.begin(), m_folders.end(),
                         [](const TFolderAccess &folder) { return !folder.haveAccess(); });
}

QList<TFileURL> TFolderAccessList::inaccessibleFolders() const
{
    QList<TFileURL> urls;
    for (const TFolderAccess &folder : m_folders)
        if (!folder.haveAccess())
            urls += folder.theURL();
    return urls;
}

TFolderAccess *TFolderAccessList::firstInaccessible()
{
    const auto found =
        std::find_if(m_folders.begin(), m_folders.end(),
                     [](const TFolderAccess &folder) { return !folder.haveAccess(); });
    return found == m_folders.end() ? nullptr : &*found;
}

TFolderAccess *TFolderAccessList::recordFor(const TFileURL &url)
{
    const auto found =
        std::find_if(m_folders.begin(), m_folders.end(),
                     [&url](const TFolderAccess &folder) { return folder.theURL() == url; });
    return found == m_folders.end() ? nullptr : &*found;
}
