// SPDX-License-Identifier: GPL-3.0-or-later
#include "rollback/RunJournal.h"

#include "commonprocs/ByteNames.h"
#include "commonprocs/LastingInodes.h"
#include "commonprocs/easyfile.h"
#include "rollback/BootId.h"
#include "rollback/FrameWriter.h"
#include "rollback/JournalContents.h"
#include "rollback/JournalFolder.h"

#include <QHash>

#include <exception>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

using JournalFormat::Record;

namespace {

constexpr QLatin1StringView kCannotWrite{"The plan of the run cannot be written to \"%1\": %2"};
constexpr QLatin1StringView kCannotSync{
    "The plan of the run cannot be brought to the disk (\"%1\"): %2"};
constexpr QLatin1StringView kCannotRecord{"The moves of the run cannot be recorded in \"%1\": %2"};
constexpr QLatin1StringView kPathTooLong{"A folder's path is too long for the plan of the run: %1"};

/// Longest numbers of a record together, without its texts.
constexpr qsizetype kNumbers = 64;
/// Reserved for each move besides a text as long as the old name: numbers, and a longer new name.
constexpr qint64 kReservedForMove = 24;
constexpr qint64 kReservedBesides = 4096;

} // namespace

class RunJournal::Private
{
public:
    Private(FileManager &manager, JournalFolder runningFolder, OpenFile openFile,
            QByteArray fileName)
        : fileManager(manager)
        , folder(std::move(runningFolder))
        , file(std::move(openFile))
        , name(std::move(fileName))
        , writer(file.descriptor())
    {
    }

    quint32 folderIndex(const TFolderPtr &which);
    void putFolder(const QByteArray &path);
    void putFile(quint32 folderOfFile, const QByteArray &nameOfFile, const TFileFacts &facts,
                 bool withIntent);
    void putEvidence(Record kind, qsizetype index, const QByteArray &newName);
    void fail(QLatin1StringView text, int error);
    bool sync(int descriptor);
    bool reserveRoom();
    bool makeRunning();

    /// A folder of the plan, under every address it comes by.
    struct KnownFolder
    {
        TFolderPtr folder; ///< kept, so that the address is not used again
        quint32 index;
    };

    FileManager &fileManager;
    JournalFolder folder;
    OpenFile file;
    QByteArray name;
    FrameWriter writer;
    QString problem;

    QHash<const TFolder *, KnownFolder> byAddress;
    QHash<QByteArray, quint32> byPath;
    std::vector<bool> keepsInodes; ///< by folder index
    const TFolder *lastFolder = nullptr;
    quint32 lastFolderIndex = 0;

    std::vector<bool> needsIntent; ///< by file index
    qint64 files = 0;
    qint64 room = 0;
    quint64 lastDevice = 0;
    quint64 lastInode = 0;
    qint64 lastModification = 0;
    qsizetype lastIndex = 0;
    bool planned = false;
    bool begun = false;
    bool tellsOfMoves = false;
    bool syncFailed = false;
};

void RunJournal::Private::fail(QLatin1StringView text, int error)
{
    if (!problem.isEmpty())
        return;
    const QString path = ByteNames::fromBytes(folder.pathOf(name));
    problem = QString(text).arg(ByteNames::forDisplay(path), textForErrno(error));
}

/// The folder's number; a folder met for the first time is written to the plan.
quint32 RunJournal::Private::folderIndex(const TFolderPtr &which)
{
    if (which.get() == lastFolder)
        return lastFolderIndex;
    auto known = byAddress.constFind(which.get());
    if (known == byAddress.cend()) {
        auto index = byPath.constFind(which->bytes());
        if (index == byPath.cend()) {
            index = byPath.insert(which->bytes(), static_cast<quint32>(byPath.size()));
            putFolder(which->bytes());
        }
        known = byAddress.insert(which.get(), {which, *index});
    }
    lastFolder = which.get();
    lastFolderIndex = known->index;
    return lastFolderIndex;
}

void RunJournal::Private::putFolder(const QByteArray &path)
{
    keepsInodes.push_back(folderKeepsInodes(path));
    if (path.size() + kNumbers >= JournalFormat::kMaxRecord) {
        if (problem.isEmpty())
            problem = QString(kPathTooLong).arg(ByteNames::forDisplay(ByteNames::fromBytes(path)));
        return;
    }
    writer.begin(Record::Folder, path.size() + kNumbers);
    writer.putBytes(path);
}

/// Most numbers are written as differences from the file before, which are short.
void RunJournal::Private::putFile(quint32 folderOfFile, const QByteArray &nameOfFile,
                                  const TFileFacts &facts, bool withIntent)
{
    const auto minus = [](auto a, auto b) {
        return static_cast<qint64>(static_cast<quint64>(a) - static_cast<quint64>(b));
    };
    if (facts.device != lastDevice) {
        writer.begin(Record::Device, kNumbers);
        writer.putFixed(facts.device);
        lastDevice = facts.device;
    }
    writer.begin(Record::File, nameOfFile.size() + kNumbers);
    writer.putByte(static_cast<quint8>((facts.hasBirthTime ? JournalFormat::kHasBirth : 0) |
                                       (withIntent ? JournalFormat::kNeedsIntent : 0) |
                                       (facts.areWhole ? 0 : JournalFormat::kInodeOnly)));
    writer.putVarint(folderOfFile);
    writer.putBytes(nameOfFile);
    writer.putSigned(minus(facts.inode, lastInode));
    lastInode = facts.inode;
    if (!facts.areWhole)
        return;
    writer.putVarint(facts.links);
    writer.putVarint(static_cast<quint64>(facts.size));
    writer.putSigned(minus(facts.modification.nanos, lastModification));
    if (facts.hasBirthTime)
        writer.putSigned(minus(facts.creation.nanos, facts.modification.nanos));
    lastModification = facts.modification.nanos;
}

void RunJournal::Private::putEvidence(Record kind, qsizetype index, const QByteArray &newName)
{
    tellsOfMoves = true;
    if (!isNameInFolder(newName) || newName.size() + kNumbers >= JournalFormat::kMaxRecord)
        return;
    writer.begin(kind, newName.size() + kNumbers);
    writer.putSigned(index - lastIndex);
    writer.putBytes(newName);
    lastIndex = index;
    if (writer.error() != 0)
        fail(kCannotRecord, writer.error());
}

bool RunJournal::Private::sync(int descriptor)
{
    if (syncFailed)
        return false;
    const int error = fileManager.sync(descriptor);
    syncFailed = error != 0;
    if (syncFailed)
        fail(kCannotSync, error);
    return !syncFailed;
}

/// Takes the space for the records to come, so that a disk that runs full stops the run before its
/// first move and not in its middle.
bool RunJournal::Private::reserveRoom()
{
    const int error =
        ::posix_fallocate(file.descriptor(), writer.written(), room + kReservedBesides);
    if (error != 0)
        fail(kCannotWrite, error);
    return error == 0;
}

/// Gives the synced plan the name that recovery looks for: a file of that name is always whole.
bool RunJournal::Private::makeRunning()
{
    QByteArray running = name;
    running.chop(JournalFolder::kPlanning.size());
    running += JournalFolder::kRunning;
    if (const int error = folder.rename(name, running)) {
        fail(kCannotWrite, error);
        return false;
    }
    name = running;
    return sync(folder.descriptor());
}

RunJournal::RunJournal() = default;

TResult<std::unique_ptr<RunJournal>>
RunJournal::create(const QString &logsFolder, const Clock &clock, FileManager &fileManager)
{
    using Result = TResult<std::unique_ptr<RunJournal>>;
    TResult<JournalFolder> folder = JournalFolder::open(logsFolder, fileManager);
    if (!folder)
        return Result::failure(folder.message());
    QByteArray name;
    TResult<OpenFile> file = folder.value().createLocked(JournalFolder::kPlanning, name);
    if (!file)
        return Result::failure(file.message());

    std::unique_ptr<RunJournal> journal(new RunJournal);
    journal->m_private = std::make_unique<Private>(fileManager, std::move(folder).value(),
                                                   std::move(file).value(), std::move(name));
    const QByteArray bootId = currentBootId();
    FrameWriter &writer = journal->m_private->writer;
    writer.writePreamble();
    writer.begin(Record::Header, bootId.size() + kNumbers);
    writer.putBytes(bootId);
    writer.putFixed(static_cast<quint64>(clock.now().nanos));
    return journal;
}

RunJournal::~RunJournal()
{
    if (!m_private || !m_private->file.isOpen())
        return;
    // During an exception a move may have been made that was not recorded.
    if (m_private->tellsOfMoves || (m_private->begun && std::uncaught_exceptions() > 0))
        m_private->writer.flush();
    else
        m_private->folder.remove(m_private->name);
}

void RunJournal::addFile(const TFileItem &item)
{
    Private &d = *m_private;
    const TFileFacts &facts = item.facts;
    const quint32 folder = d.folderIndex(item.url.folder());
    const bool severalLinks = facts.links > 1 && facts.kind != TFileStatus::Kind::Folder;
    const bool needsIntent = severalLinks || facts.inode == 0 || !d.keepsInodes[folder];
    QByteArray name = ByteNames::toBytes(item.url.lastPathComponent());
    if (!isNameInFolder(name) || name.size() + kNumbers >= JournalFormat::kMaxRecord)
        name.clear();

    d.putFile(folder, name, facts, needsIntent);
    d.needsIntent.push_back(needsIntent);
    d.room += (name.size() + kReservedForMove) * (needsIntent ? 2 : 1);
    ++d.files;
}

bool RunJournal::syncPlan()
{
    Private &d = *m_private;
    d.writer.begin(Record::PlanEnd, kNumbers);
    d.writer.putVarint(static_cast<quint64>(d.byPath.size()));
    d.writer.putVarint(static_cast<quint64>(d.files));
    if (!d.writer.flush())
        d.fail(kCannotWrite, d.writer.error());
    d.planned = d.problem.isEmpty() && d.reserveRoom() && d.sync(d.file.descriptor());
    d.byAddress = {};
    d.byPath = {};
    d.keepsInodes = {};
    return d.planned;
}

bool RunJournal::begin()
{
    Private &d = *m_private;
    d.begun = d.planned && d.makeRunning();
    return d.begun;
}

bool RunJournal::needsIntent(qsizetype index) const
{
    return m_private->needsIntent[static_cast<std::size_t>(index)];
}

void RunJournal::addIntent(qsizetype index, const QByteArray &newName)
{
    m_private->putEvidence(Record::Intent, index, newName);
}

bool RunJournal::syncIntents()
{
    Private &d = *m_private;
    if (!d.writer.flush())
        d.fail(kCannotRecord, d.writer.error());
    return d.writer.error() == 0 && d.sync(d.file.descriptor());
}

void RunJournal::recordMove(qsizetype index, const QByteArray &newName)
{
    m_private->putEvidence(Record::Move, index, newName);
}

void RunJournal::finish(const QString &rollbackLog)
{
    Private &d = *m_private;
    if (!d.begun || !d.file.isOpen())
        return;
    d.writer.begin(Record::Finished, kNumbers);
    if (!d.writer.flush())
        d.fail(kCannotRecord, d.writer.error());
    if (const int error = d.folder.keepFinished(d.name, d.file, d.writer.written(),
                                                JournalFolder::nameOf(rollbackLog)))
        d.fail(kCannotRecord, error);
    d.file.close();
}

const QString &RunJournal::problem() const
{
    return m_private->problem;
}

QString RunJournal::path() const
{
    return ByteNames::fromBytes(m_private->folder.pathOf(m_private->name));
}
