// SPDX-License-Identifier: GPL-3.0-or-later
#include "rollback/JournalContents.h"

#include "commonprocs/easyfile.h"
#include "rollback/FrameReader.h"

using namespace Qt::StringLiterals;
using JournalFormat::Record;

namespace {

constexpr QLatin1StringView kNoJournal{"it does not start as a journal of this version"};
constexpr QLatin1StringView kNoHeader{"its header is missing"};
constexpr QLatin1StringView kBadRecord{"a record of frame %1 makes no sense"};
constexpr QLatin1StringView kPlanCutOff{"its plan breaks off after %1 files, at byte %2"};

/// A number given by its difference to another; hostile ones may wrap around.
qint64 plus(qint64 before, qint64 difference)
{
    return static_cast<qint64>(static_cast<quint64>(before) + static_cast<quint64>(difference));
}

} // namespace

/// Takes the records of one payload after another into the contents.
class JournalContents::Parser
{
public:
    explicit Parser(JournalContents &contents)
        : m_contents(contents)
    {
    }

    bool hasHeader() const { return m_hasHeader; }
    bool planIsWhole() const { return m_planEnded; }
    /// False at the first record that no run writes.
    bool take(QByteArrayView payload)
    {
        FieldReader fields(payload);
        while (!fields.atEnd())
            if (!takeRecord(fields))
                return false;
        return fields.ok();
    }

private:
    bool takeRecord(FieldReader &fields);
    bool takeHeader(FieldReader &fields);
    bool takeFolder(FieldReader &fields);
    bool takeFile(FieldReader &fields);
    void takeStatus(FieldReader &fields, File &file, bool hasBirth);
    bool takePlanEnd(FieldReader &fields);
    bool takeEvidence(FieldReader &fields, Evidence evidence);

    JournalContents &m_contents;
    qint64 m_lastInode = 0; ///< what the differences of the next file start from
    qint64 m_lastModification = 0;
    quint64 m_device = 0;
    qint64 m_lastIndex = 0;
    bool m_hasHeader = false;
    bool m_planEnded = false;
};

bool JournalContents::Parser::takeRecord(FieldReader &fields)
{
    const auto kind = static_cast<Record>(fields.byte());
    if (!m_hasHeader)
        return kind == Record::Header && takeHeader(fields);
    if (m_planEnded) {
        switch (kind) {
        case Record::Intent:
            return takeEvidence(fields, Evidence::Intent);
        case Record::Move:
            return takeEvidence(fields, Evidence::Move);
        case Record::Finished:
            m_contents.m_finished = true;
            return true;
        default:
            return false;
        }
    }
    switch (kind) {
    case Record::Device:
        m_device = fields.fixed();
        return fields.ok();
    case Record::Folder:
        return takeFolder(fields);
    case Record::File:
        return takeFile(fields);
    case Record::PlanEnd:
        return takePlanEnd(fields);
    default:
        return false;
    }
}

bool JournalContents::Parser::takeHeader(FieldReader &fields)
{
    m_contents.m_bootId = fields.bytes().toByteArray();
    m_contents.m_time.nanos = static_cast<qint64>(fields.fixed());
    m_hasHeader = true;
    return fields.ok();
}

bool JournalContents::Parser::takeFolder(FieldReader &fields)
{
    const QByteArrayView path = fields.bytes();
    if (!fields.ok() || !path.startsWith('/') || path.contains('\0'))
        return false;
    m_contents.m_folders.push_back(path.toByteArray());
    return true;
}

bool JournalContents::Parser::takeFile(FieldReader &fields)
{
    const quint8 flags = fields.byte();
    const quint64 folder = fields.varint();
    const QByteArrayView name = fields.bytes();
    File file;
    m_lastInode = plus(m_lastInode, fields.signedValue());
    file.inode = static_cast<quint64>(m_lastInode);
    file.hasInodeOnly = (flags & JournalFormat::kInodeOnly) != 0;
    if (!file.hasInodeOnly)
        takeStatus(fields, file, (flags & JournalFormat::kHasBirth) != 0);
    if (!fields.ok() || folder >= m_contents.m_folders.size() ||
        !(name.isEmpty() || isNameInFolder(name)))
        return false;
    file.device = m_device;
    file.folder = static_cast<quint32>(folder);
    file.needsIntent = (flags & JournalFormat::kNeedsIntent) != 0;
    file.name = m_contents.store(name);
    m_contents.m_files.push_back(file);
    return true;
}

void JournalContents::Parser::takeStatus(FieldReader &fields, File &file, bool hasBirth)
{
    file.links = static_cast<quint32>(fields.varint());
    file.size = static_cast<qint64>(fields.varint());
    file.modification.nanos = plus(m_lastModification, fields.signedValue());
    if (hasBirth)
        file.birth.nanos = plus(file.modification.nanos, fields.signedValue());
    m_lastModification = file.modification.nanos;
}

bool JournalContents::Parser::takePlanEnd(FieldReader &fields)
{
    const quint64 folders = fields.varint();
    const quint64 files = fields.varint();
    m_planEnded = true;
    return fields.ok() && folders == m_contents.m_folders.size() &&
           files == m_contents.m_files.size();
}

bool JournalContents::Parser::takeEvidence(FieldReader &fields, Evidence evidence)
{
    const auto index =
        static_cast<quint64>(m_lastIndex) + static_cast<quint64>(fields.signedValue());
    const QByteArrayView newName = fields.bytes();
    if (!fields.ok() || index >= m_contents.m_files.size() || !isNameInFolder(newName))
        return false;
    m_lastIndex = static_cast<qint64>(index);
    File &file = m_contents.m_files[index];
    file.evidence = evidence;
    file.newName = m_contents.store(newName);
    return true;
}

TResult<JournalContents> JournalContents::read(QIODevice &device)
{
    using Result = TResult<JournalContents>;
    FrameReader frames(device);
    if (!frames.readPreamble())
        return Result::failure(kNoJournal);
    JournalContents contents;
    Parser parser(contents);
    QByteArrayView payload;
    while (!contents.m_finished && frames.next(payload))
        if (!parser.take(payload))
            return Result::failure(QString(kBadRecord).arg(frames.nextSequence() - 1));
    if (!parser.hasHeader())
        return Result::failure(kNoHeader);
    if (!parser.planIsWhole())
        return Result::failure(QString(kPlanCutOff).arg(contents.m_files.size()).arg(frames.end()));
    contents.m_end = frames.end();
    contents.m_nextSequence = frames.nextSequence();
    return contents;
}

bool JournalContents::canBe(const File &planned, const TFileStatus &found) const
{
    // A file that was there when the run began cannot be younger than the run.
    if (planned.hasInodeOnly)
        return found.birth.isSet() && found.birth <= m_time;
    if (planned.birth.isSet())
        return planned.birth == found.birth;
    return planned.size == found.size && planned.modification == found.modification;
}

QByteArrayView JournalContents::text(Text text) const
{
    return QByteArrayView(m_texts).sliced(static_cast<qsizetype>(text.at),
                                          static_cast<qsizetype>(text.size));
}

JournalContents::Text JournalContents::store(QByteArrayView bytes)
{
    const Text text{m_texts.size(), static_cast<quint32>(bytes.size())};
    m_texts.append(bytes.data(), static_cast<std::size_t>(bytes.size()));
    return text;
}
