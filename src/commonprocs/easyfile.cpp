// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/easyfile.h"

#include "commonprocs/ByteNames.h"
#include "commonprocs/CaseBlindness.h"
#include "settings/logging.h"

#include <QCryptographicHash>

#include <cerrno>
#include <climits>
#include <fcntl.h>

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kStopOverPrefix = ".tavrin-";
constexpr qsizetype kStopOverBytes = 8;
constexpr QLatin1StringView kLogName = "FileMover"_L1;

TMoveResult failed(int error)
{
    return {TMoveResult::Way::Failed, error, textForErrno(error)};
}

TMoveResult done(TMoveResult::Way way)
{
    return {way, 0, {}};
}

bool lacksNoReplace(int error)
{
    return error == EINVAL || error == ENOSYS || error == ENOTSUP;
}

bool lacksLinks(int error)
{
    return lacksNoReplace(error) || error == EPERM || error == EMLINK || error == EXDEV;
}

} // namespace

QByteArray stopOverName(const QByteArray &finalName)
{
    const QByteArray hash = QCryptographicHash::hash(finalName, QCryptographicHash::Sha1);
    return kStopOverPrefix.toByteArray() + hash.first(kStopOverBytes).toHex();
}

FileMover::FileMover(FileManager &fileManager)
    : m_fileManager(fileManager)
{
}

FileMover::~FileMover()
{
    closeFolders(0);
}

void FileMover::closeFolders(std::size_t keep)
{
    while (m_open.size() > keep) {
        const Open &last = m_open.back();
        m_fileManager.closeFolder(last.descriptor);
        m_index.erase(
            std::string_view(last.path.constData(), static_cast<std::size_t>(last.path.size())));
        m_open.pop_back();
    }
}

int FileMover::openFolder(const TFolder &folder)
{
    const QByteArray &path = folder.bytes();
    if (!m_open.empty() && m_open.front().path == path)
        return m_open.front().descriptor;
    const std::string_view key(path.constData(), static_cast<std::size_t>(path.size()));
    if (const auto found = m_index.find(key); found != m_index.end()) {
        m_open.splice(m_open.begin(), m_open, found->second);
        return m_open.front().descriptor;
    }
    closeFolders(kMostOpenFolders - 1);
    int descriptor = m_fileManager.openFolder(path);
    if (descriptor == -EMFILE || descriptor == -ENFILE) {
        closeFolders(0);
        descriptor = m_fileManager.openFolder(path);
    }
    if (descriptor < 0)
        return descriptor;
    m_open.push_front({path, descriptor});
    const QByteArray &kept = m_open.front().path;
    m_index.emplace(std::string_view(kept.constData(), static_cast<std::size_t>(kept.size())),
                    m_open.begin());
    return descriptor;
}

TMoveResult FileMover::move(const TFolder &folder, const QString &from, const QString &to)
{
    return move(folder, ByteNames::toBytes(from), ByteNames::toBytes(to));
}

TMoveResult FileMover::move(const TFolder &folder, const QByteArray &from, const QByteArray &to)
{
    for (const QByteArray *name : {&from, &to})
        if (!isNameInFolder(*name) || name->size() > NAME_MAX)
            return {TMoveResult::Way::Failed, 0, reasonToRefuseName(ByteNames::fromBytes(*name))};
    const int descriptor = openFolder(folder);
    if (descriptor < 0)
        return failed(-descriptor);
    const Names names{folder, descriptor, from, to};
    if (names.from == names.to) {
        TFileStatus ignored;
        const int error = m_fileManager.status(descriptor, names.from, false, ignored);
        return error == 0 ? done(TMoveResult::Way::Itself) : failed(error);
    }
    const TMoveResult result = step(names);
    return result.error == EEXIST && isOwnOtherSpelling(names) ? respell(names) : result;
}

TMoveResult FileMover::step(const Names &names)
{
    const int error = m_fileManager.renameNoReplace(names.descriptor, names.from, names.to);
    if (error == 0)
        return done(TMoveResult::Way::Guarded);
    return lacksNoReplace(error) ? stepByLink(names) : failed(error);
}

TMoveResult FileMover::stepByLink(const Names &names)
{
    TFileStatus status;
    if (const int error = m_fileManager.status(names.descriptor, names.from, false, status))
        return failed(error);
    if (status.kind == TFileStatus::Kind::Folder)
        return stepUnguarded(names);
    if (const int error = m_fileManager.link(names.descriptor, names.from, names.to))
        return lacksLinks(error) ? stepUnguarded(names) : failed(error);
    const int error = m_fileManager.unlink(names.descriptor, names.from);
    if (error == 0)
        return done(TMoveResult::Way::Linked);
    TMoveResult result = failed(error);
    if (m_fileManager.unlink(names.descriptor, names.to) != 0)
        result.text += u" The file now has both its old and its new name; remove one of them."_s;
    return result;
}

TMoveResult FileMover::stepUnguarded(const Names &names)
{
    TFileStatus ignored;
    const int found = m_fileManager.status(names.descriptor, names.to, false, ignored);
    if (found != ENOENT)
        return failed(found == 0 ? EEXIST : found);
    if (const int error = m_fileManager.renameReplacing(names.descriptor, names.from, names.to))
        return failed(error);
    warnUnguarded(names.folder);
    return done(TMoveResult::Way::Unguarded);
}

void FileMover::warnUnguarded(const TFolder &folder)
{
    if (m_warned.contains(folder.bytes()))
        return;
    m_warned.insert(folder.bytes());
    zelWarn(kLogName, u"the file system cannot guard against replacing files: "_s +
                          ByteNames::forDisplay(folder.path()));
}

bool FileMover::isOwnOtherSpelling(const TFolder &folder, const QString &from, const QString &to)
{
    const int descriptor = openFolder(folder);
    return descriptor >= 0 && isOwnOtherSpelling({folder, descriptor, ByteNames::toBytes(from),
                                                  ByteNames::toBytes(to)});
}

/// Where inode numbers mean little. Taking another file for it does no harm: the way over a third
/// name is as guarded.
bool FileMover::seemsOtherSpelling(const Names &names, const TFileStatus &source,
                                   const TFileStatus &target)
{
    return !source.birth.isSet() && !target.birth.isSet() && source.kind == target.kind &&
           source.size == target.size && source.modification == target.modification &&
           CaseBlindness::folded(names.from) == CaseBlindness::folded(names.to);
}

bool FileMover::isOwnOtherSpelling(const Names &names)
{
    TFileStatus source;
    TFileStatus target;
    if (m_fileManager.status(names.descriptor, names.from, false, source) != 0 ||
        m_fileManager.status(names.descriptor, names.to, false, target) != 0)
        return false;
    // A second link to the same file is another directory entry, and taken.
    const bool onlyEntry = source.links == 1 || source.kind == TFileStatus::Kind::Folder;
    return onlyEntry && source.device == target.device &&
           (source.inode == target.inode || seemsOtherSpelling(names, source, target));
}

TMoveResult FileMover::respell(const Names &names)
{
    const QByteArray between = stopOverName(names.to);
    TMoveResult first = step({names.folder, names.descriptor, names.from, between});
    if (!first.ok())
        return first;
    TMoveResult second = step({names.folder, names.descriptor, between, names.to});
    if (second.ok())
        return second;
    if (!step({names.folder, names.descriptor, between, names.from}).ok())
        second.text += u" The file is now called \"%1\"; rename it back yourself."_s.arg(
            QString::fromLatin1(between));
    return second;
}

bool FileMover::exists(const TFolder &folder, const QString &name)
{
    TFileStatus ignored;
    return status(folder, name, ignored) == 0;
}

int FileMover::status(const TFolder &folder, const QString &name, TFileStatus &out)
{
    const int descriptor = openFolder(folder);
    if (descriptor < 0)
        return -descriptor;
    return m_fileManager.status(descriptor, ByteNames::toBytes(name), false, out);
}
