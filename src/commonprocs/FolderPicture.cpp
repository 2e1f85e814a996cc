// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/FolderPicture.h"

#include "commonprocs/CaseBlindness.h"
#include "commonprocs/NameCandidates.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <unistd.h>
#include <unordered_map>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kWorthReading = 2;

struct LowHalf
{
    std::size_t operator()(const Hash128 &hash) const { return hash.low; }
};

/// Which numbers of one base and extension are worth a test; 0 is the base without a number. All
/// below next are taken, but for those that moves have freed again.
struct Hint
{
    qint64 next = 0;
    std::vector<qint64> freed; ///< a heap, smallest first

    void free(qint64 number)
    {
        if (number >= next)
            return;
        freed.push_back(number);
        std::push_heap(freed.begin(), freed.end(), std::greater());
    }
    void dropSmallestFreed()
    {
        std::pop_heap(freed.begin(), freed.end(), std::greater());
        freed.pop_back();
    }
};

} // namespace

enum class FolderPicture::Answer : quint8 { Taken, Free, AskDisk };

struct FolderPicture::Folder
{
    qsizetype announced = 0;
    bool isComplete = false; ///< the names are all there are; else the disk is asked too
    bool folds = false;      ///< upper and lower case are the same
    bool isDecided = false;  ///< whether to read it whole, at the first question
    std::optional<int> errorOfChanging;
    HashSet128 present;
    HashSet128 gone; ///< what the run's moves have freed unless present again, while incomplete
    std::unordered_map<Hash128, Hint, LowHalf> hints;

    Answer lookUp(Hash128 name) const
    {
        if (present.contains(name))
            return Answer::Taken;
        return isComplete || gone.contains(name) ? Answer::Free : Answer::AskDisk;
    }
    void free(const QString &name);
};

void FolderPicture::Folder::free(const QString &name)
{
    const Hash128 hash = NameCandidates::hashOf(name, folds);
    present.remove(hash);
    if (!isComplete)
        gone.insert(hash);
    if (hints.empty())
        return;
    NameCandidates::forEachReading(name, folds, [this](Hash128 key, qint64 number) {
        if (const auto hint = hints.find(key); hint != hints.end())
            hint->second.free(number);
    });
}

FolderPicture::FolderPicture(FileManager &fileManager)
    : m_fileManager(fileManager)
    , m_disk(fileManager)
{
}

FolderPicture::~FolderPicture() = default;

FolderPicture::Folder &FolderPicture::find(const TFolder &folder)
{
    if (m_last != nullptr && m_lastPath == folder.bytes())
        return *m_last;
    Folder *&found = m_byPath[folder.bytes()];
    if (found == nullptr) {
        // The same folder by another path, over a link, has the same names.
        TFileStatus status;
        const bool isKnown = m_disk.status(folder, u"."_s, status) == 0;
        Folder *const alias =
            isKnown ? m_byIdentity[std::pair(status.device, status.inode)] : nullptr;
        if (alias == nullptr)
            m_folders.push_back(std::make_unique<Folder>());
        found = alias != nullptr ? alias : m_folders.back().get();
        if (isKnown)
            m_byIdentity[std::pair(status.device, status.inode)] = found;
    }
    m_lastPath = folder.bytes();
    m_last = found;
    return *found;
}

void FolderPicture::announce(const TFolderPtr &folder, qsizetype files)
{
    find(*folder).announced += files;
}

FolderPicture::Folder &FolderPicture::picture(const TFolder &folder)
{
    Folder &found = find(folder);
    if (!found.isDecided) {
        found.isDecided = true;
        if (found.announced >= kWorthReading)
            read(found, folder);
    }
    return found;
}

void FolderPicture::read(Folder &picture, const TFolder &folder)
{
    const int descriptor = m_fileManager.openFolder(folder.bytes());
    if (descriptor < 0)
        return;
    HashSet128 names;
    names.reserve(picture.announced);
    names.insert(NameCandidates::hashOf(u".", false));
    names.insert(NameCandidates::hashOf(u"..", false));
    QByteArray sample;
    const int error =
        m_fileManager.list(descriptor, [&](const char *name, TFileStatus::Kind, quint64) {
            const QByteArrayView bytes(name);
            names.insert(Hash128::of(bytes));
            if (sample.isEmpty() && CaseBlindness::hasSpellings(bytes))
                sample = bytes.toByteArray();
        });
    const auto isListed = [&names](const QByteArray &name) {
        return names.contains(Hash128::of(name));
    };
    picture.folds =
        error == 0 && CaseBlindness::isFoundBySpelling(m_fileManager, descriptor, sample, isListed);
    m_fileManager.closeFolder(descriptor);
    if (error != 0 || picture.folds)
        return;
    picture.present = std::move(names);
    picture.isComplete = true;
}

QString FolderPicture::uniqueBase(const TFolder &folder, const QString &base,
                                  const QString &extension)
{
    Folder &known = picture(folder);
    NameCandidates candidates(base, extension, known.folds);
    const auto isFree = [&](qint64 number) {
        const Answer answer =
            candidates.leadOut() ? Answer::AskDisk : known.lookUp(candidates.hash(number));
        return answer == Answer::AskDisk ? !m_disk.exists(folder, candidates.name(number))
                                         : answer == Answer::Free;
    };
    const auto firstFree = [&isFree](Hint &hint) {
        for (; !hint.freed.empty(); hint.dropSmallestFreed())
            if (isFree(hint.freed.front()))
                return hint.freed.front();
        while (!isFree(hint.next))
            ++hint.next;
        return hint.next;
    };
    if (candidates.leadOut()) { // moves in this folder say nothing about those names
        Hint fresh;
        return candidates.base(firstFree(fresh));
    }
    auto hint = known.hints.empty() ? known.hints.end() : known.hints.find(candidates.key());
    if (hint == known.hints.end()) {
        if (isFree(0))
            return base;
        hint = known.hints.try_emplace(candidates.key(), Hint{1, {}}).first;
    }
    return candidates.base(firstFree(hint->second));
}

bool FolderPicture::exists(const TFolder &folder, const QString &name)
{
    const Folder &known = picture(folder);
    const Answer answer = name.contains(u'/')
                              ? Answer::AskDisk
                              : known.lookUp(NameCandidates::hashOf(name, known.folds));
    return answer == Answer::AskDisk ? m_disk.exists(folder, name) : answer == Answer::Taken;
}

void FolderPicture::moved(const TFolder &folder, const QString &from, const QString &to)
{
    Folder &known = picture(folder);
    const Hash128 target = NameCandidates::hashOf(to, known.folds);
    known.present.prefetch(target);
    known.free(from);
    known.present.insert(target);
}

void FolderPicture::taken(const TFolder &folder, const QString &name)
{
    Folder &known = picture(folder);
    known.present.insert(NameCandidates::hashOf(name, known.folds));
}

int FolderPicture::errorOfChanging(const TFolder &folder)
{
    Folder &known = find(folder);
    if (!known.errorOfChanging)
        known.errorOfChanging = m_fileManager.access(folder.bytes(), W_OK | X_OK);
    return *known.errorOfChanging;
}
