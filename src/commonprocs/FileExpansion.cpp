// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/FileExpansion.h"

#include "commonprocs/ByteNames.h"
#include "commonprocs/easyfile.h"
#include "platform/TypeIdentifiers.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kProgressStep = 1000;
constexpr QChar kSlash = u'/';
constexpr QLatin1StringView kMissing =
    "There is no file or folder of this name. Check the spelling."_L1;
constexpr QLatin1StringView kUnreadable =
    "The folder cannot be read. Ask its owner for permission to read it."_L1;

QString joined(const QString &folder, const QString &name)
{
    return folder.endsWith(kSlash) ? folder + name : folder + kSlash + name;
}

/// The real path of a folder; "" with errno set when there is none.
QString resolved(const QString &path)
{
    const std::unique_ptr<char, decltype(&std::free)> real(
        realpath(ByteNames::toBytes(path).constData(), nullptr), &std::free);
    return real ? ByteNames::fromBytes(real.get()) : QString();
}

/// An absolute path without "." and ".."; "" with errno set when it leads nowhere.
QString withoutDots(const QString &path)
{
    if (!path.contains("/."_L1))
        return path;
    const QStringList parts = path.split(kSlash, Qt::SkipEmptyParts);
    // Up to the last "..", and as a whole with a "." at its end, the path means where links lead.
    const qsizetype toResolve =
        parts.last() == "."_L1 ? parts.size() : parts.lastIndexOf(".."_L1) + 1;
    QString result = u"/"_s;
    if (toResolve > 0)
        result = resolved(u"/"_s + parts.first(toResolve).join(kSlash));
    if (result.isEmpty())
        return {};
    for (const QString &part : parts.mid(toResolve))
        if (part != "."_L1)
            result = joined(result, part);
    return result;
}

bool isSingleItem(const QString &folderName)
{
    const QString extension = getExtensionFromFileName(folderName);
    if (extension.isEmpty())
        return false;
    const QLatin1StringView type = TypeIdentifiers::identifierForExtension(extension, true);
    return TypeIdentifiers::conformsTo(type, TypeIdentifiers::kApplication) ||
           TypeIdentifiers::conformsTo(type, TypeIdentifiers::kBundle);
}

} // namespace

/// Sorts what a walk finds into files to take and folders to enter.
class FileExpansion::Visitor : public FolderWalk::Visitor
{
public:
    explicit Visitor(FileExpansion &expansion)
        : m_expansion(expansion)
    {
    }

    TFolderPtr visit(const FolderWalk::Entry &entry) override
    {
        QString name = ByteNames::fromBytes(entry.name);
        if (entry.error != 0) {
            if (entry.error != ENOENT) // else it has gone since the folder was listed
                m_expansion.reportProblem(joined(entry.folder->path(), name), entry.error);
            return {};
        }
        if (entry.status.kind == TFileStatus::Kind::Folder && !isSingleItem(name))
            return folderToEnter(*entry.folder, name);
        if (m_expansion.m_named.size() == 0 ||
            !m_expansion.m_named.contains(Hash128::of(joined(entry.folder->path(), name))))
            m_expansion.take(entry.folder, std::move(name), entry.status);
        return {};
    }

    void listed(const TFolder &folder, qsizetype entries) override
    {
        m_expansion.m_listed.insert(Hash128::of(folder.path()));
        m_expansion.m_listedFolders.push_back(m_expansion.m_folders.value(folder.path()));
        std::vector<TFileItem> &files = m_expansion.m_files;
        const std::size_t needed = files.size() + static_cast<std::size_t>(entries);
        if (needed > files.capacity())
            files.reserve(std::max(needed, files.capacity() * 2));
    }

    void failed(const TFolder &folder, int error) override
    {
        m_expansion.reportProblem(folder.path(), error);
    }

private:
    TFolderPtr folderToEnter(const TFolder &parent, const QString &name)
    {
        const QString path = joined(parent.path(), name);
        const bool isKnown = m_expansion.m_listed.contains(Hash128::of(path));
        return isKnown ? TFolderPtr() : m_expansion.sharedFolder(path);
    }

    FileExpansion &m_expansion;
};

FileExpansion::FileExpansion(FileManager &fileManager, Detail detail)
    : m_fileManager(fileManager)
    , m_detail(detail)
{
}

void FileExpansion::add(const QString &path, const std::stop_token &stop)
{
    const bool isName = !path.isEmpty() && !path.contains(QChar::Null);
    const QString whole = isName ? withoutDots(absolutePath(path)) : QString();
    if (whole.isEmpty()) {
        reportProblem(path, isName ? errno : ENOENT);
        return;
    }
    TFileStatus status;
    if (const int error =
            m_fileManager.status(AT_FDCWD, ByteNames::toBytes(whole), false, status)) {
        reportProblem(path, error);
        return;
    }
    if (status.kind != TFileStatus::Kind::Folder ||
        isSingleItem(whole.mid(whole.lastIndexOf(kSlash) + 1))) {
        addNamed(whole, status);
    } else if (!m_listed.contains(Hash128::of(whole))) {
        Visitor visitor(*this);
        FolderWalk(m_fileManager, m_detail).walk(sharedFolder(whole), visitor, stop);
    }
}

void FileExpansion::addNamed(const QString &path, const TFileStatus &status)
{
    const qsizetype slash = path.lastIndexOf(kSlash);
    const QStringView parent = QStringView(path).left(std::max<qsizetype>(slash, 1));
    QString name = path.mid(slash + 1);
    const bool wasListed = !name.startsWith(u'.') && m_listed.contains(Hash128::of(parent));
    if (!wasListed && m_named.insert(Hash128::of(path)))
        take(sharedFolder(parent), std::move(name), status);
}

void FileExpansion::take(const TFolderPtr &folder, QString name, const TFileStatus &status)
{
    m_files.push_back({TFileURL(folder, std::move(name)), TFileFacts::fromStatus(status)});
    const auto count = static_cast<qsizetype>(m_files.size());
    if (m_progress && count % kProgressStep == 0)
        m_progress(count);
}

void FileExpansion::reportProblem(const QString &path, int error)
{
    const QString text = error == ENOENT || error == ENOTDIR ? QString(kMissing)
                         : error == EACCES                   ? QString(kUnreadable)
                                                             : textForErrno(error);
    m_problems.push_back({path, text});
}

TFolderPtr FileExpansion::sharedFolder(QStringView path)
{
    if (m_lastFolder == nullptr || m_lastFolder->path() != path) {
        TFolderPtr &folder = m_folders[path.toString()];
        if (folder == nullptr)
            folder = std::make_shared<const TFolder>(path.toString());
        m_lastFolder = folder;
    }
    return m_lastFolder;
}
