// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/ByteNames.h"
#include "document/NameGeneration.h"
#include "document/TDocument.h"
#include "document/TDocumentDrag.h"
#include "document/TDocumentDrop.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kAddFiles = QT_TRANSLATE_NOOP("TDocument", "Add Files");
constexpr const char *kCleaningCount =
    QT_TRANSLATE_NOOP("TDocument", "cleaning up drop... (%ld/%ld)");
constexpr const char *kNotAdded = QT_TRANSLATE_NOOP("TDocument", "Not everything could be added");
constexpr const char *kAndMore = QT_TRANSLATE_NOOP("TDocument", "... and %@ more");
constexpr qsizetype kStatusStep = 100;
constexpr std::size_t kMostNamed = 8;

/// One path a line, with what is wrong with it and what to do.
QStringList linesOf(const std::vector<FileExpansion::Problem> &problems)
{
    QStringList lines;
    for (std::size_t i = 0; i < std::min(problems.size(), kMostNamed); ++i)
        lines += ByteNames::forDisplay(problems[i].path) + u": "_s + problems[i].text;
    return lines;
}

} // namespace

bool TDocument::hasProcessedFiles(const TFileList &files)
{
    return std::any_of(files.begin(), files.end(),
                       [](const auto &file) { return file->hasBeenProcessed(); });
}

TFileList TDocument::stripProcessed(const TFileList &files)
{
    TFileList left;
    std::copy_if(files.begin(), files.end(), std::back_inserter(left),
                 [](const auto &file) { return !file->hasBeenProcessed(); });
    return left;
}

bool TDocument::isPathInArray(const QString &path, const TFileURLs &urls)
{
    return std::any_of(urls.begin(), urls.end(),
                       [&path](const TFileURL &url) { return url.path() == path; });
}

TFileURLs TDocument::removeDupesFromArray(const TFileURLs &urls)
{
    TFileURLs result;
    HashSet128 seen;
    qsizetype done = 0;
    for (const TFileURL &url : urls) {
        if (seen.insert(Hash128::of(url.path())))
            result += url;
        if (++done % kStatusStep == 0)
            setStatus(kCleaningCount, {QString::number(done), QString::number(urls.size())});
    }
    return result;
}

bool TDocument::isURLUniqueIn(const TFileURL &url, const TFileList &files)
{
    return std::none_of(files.begin(), files.end(), [&url](const auto &file) {
        try {
            return isSameFileURL(file->sourceURL(), url);
        } catch (const ResouceUnavailableException &) {
            return false; // one of them has gone, so they are not the same
        }
    });
}

bool TDocument::tableViewAcceptDrop(const QMimeData &data, qsizetype row)
{
    if (data.hasFormat(TDocumentDrag::fileTableType())) {
        if (TDocumentDrag::documentUUID(data) != m_myUUID)
            return false;
        moveRows(TDocumentDrag::rows(data), row);
        return true;
    }
    if (data.hasFormat(TDocumentDrag::fileObjectsType()))
        return false;
    const TFileURLs urls = TDocumentDrag::fileURLs(data);
    if (urls.isEmpty())
        return false;
    addFiles(urls, row);
    return true;
}

void TDocument::addFiles(const TFileURLs &urls, qsizetype row)
{
    if (m_isClosing)
        return;
    m_drops.push_back({urls, row});
    if (m_drops.size() > 1)
        return;
    beginNextDrop();
    Q_EMIT workChanged();
}

void TDocument::beginNextDrop()
{
    const PendingDrop &pending = m_drops.front();
    TFileList before = m_sourceObjectArray;
    m_dropRow = pending.row;
    if (hasProcessedFiles(m_sourceObjectArray)) {
        const auto end =
            m_sourceObjectArray.begin() +
            std::clamp<qsizetype>(m_dropRow, 0, static_cast<qsizetype>(m_sourceObjectArray.size()));
        m_dropRow -= std::count_if(m_sourceObjectArray.begin(), end,
                                   [](const auto &file) { return file->hasBeenProcessed(); });
        setFiles(stripProcessed(m_sourceObjectArray));
    }
    setReadyToGo(false);
    recordFileChange(kAddFiles, std::move(before));
    m_dropAfter.reset();
    m_dropVersion = m_listVersion;
    m_gathering.suspend();
    m_drop = std::make_unique<TDocumentDrop>(
        m_services.fileManager, m_mail,
        TDocumentDrop::Batch{
            [this](const QString &status) { tell(&TDocumentHost::setStatus, status); },
            [this] { return m_sourceObjectArray; },
            [this](const TFolderPtr &folder) {
                m_theFoldersWeUse.addFolder(TFileURL::fileURLWithPath(folder->path()), true);
            },
            [this](const TFileItem &item, qsizetype total) { addDropped(item, total); },
            [this] { showDropped(); },
            [this](const std::vector<FileExpansion::Problem> &problems) {
                dropFinished();
                if (problems.empty())
                    return;
                QStringList lines = linesOf(problems);
                if (problems.size() > kMostNamed)
                    lines += text(kAndMore, {QString::number(problems.size() - kMostNamed)});
                tell(&TDocumentHost::ask,
                     TDialogHost::Question{TDialogHost::Form::Sheet,
                                           text(kNotAdded),
                                           lines.join(u"\n\n"_s),
                                           QString(),
                                           {}},
                     TDialogHost::Answered());
            }});
    if (m_testRun)
        m_drop->suspend();
    m_drop->start(pending.urls);
}

void TDocument::addDropped(const TFileItem &item, qsizetype total)
{
    auto file = std::make_shared<TFileObject>(item);
    TRuleDict dict;
    dict.batchSize = total;
    const auto index = static_cast<qsizetype>(m_sourceObjectArray.size() + m_dropped.size()) + 1;
    dict.likelyLength = m_droppedLength;
    TAttributedString name = NameGeneration::applyRuleSet(
        &m_ruleArray, *file, index, &m_droppedProblems, dict, m_theOptions, m_colorCode);
    m_droppedRuns.share(name);
    m_droppedLength = name.string().size();
    file->setTarget(std::move(name));
    file->setAttributedTargetExtension(NameGeneration::processExtensionForFile(
        *m_theExtensionHandler, *file, m_errorLog ? &*m_errorLog : nullptr, dict));
    m_forecasts.remove(*file);
    m_theFoldersWeUse.addParentFolderIfNeededForURL(item.url);
    m_dropped.push_back(std::move(file));
}

void TDocument::showDropped()
{
    if (m_dropped.empty())
        return;
    TFileList &list = m_sourceObjectArray;
    if (m_dropVersion != m_listVersion && m_dropAfter) {
        // The list was edited meanwhile; the dropped files stay together.
        const auto found = std::find(list.begin(), list.end(), m_dropAfter);
        if (found != list.end())
            m_dropRow = found - list.begin() + 1;
    }
    m_dropRow = std::clamp<qsizetype>(m_dropRow, 0, static_cast<qsizetype>(list.size()));
    const auto count = static_cast<qsizetype>(m_dropped.size());
    Q_EMIT filesAboutToBeInserted(m_dropRow, m_dropRow + count - 1);
    list.insert(list.begin() + m_dropRow, m_dropped.begin(), m_dropped.end());
    listChanged();
    Q_EMIT filesInserted();
    m_dropRow += count;
    m_dropAfter = m_dropped.back();
    m_dropVersion = m_listVersion;
    for (auto &file : m_dropped)
        m_gathering.add(std::move(file));
    m_remainingAOps += count;
    m_dropped.clear();
    m_droppedProblems.clear();
}

void TDocument::dropFinished()
{
    m_drop.reset();
    m_dropAfter.reset();
    m_drops.pop_front();
    redisplay();
    Q_EMIT foldersChanged();
    if (!m_drops.empty())
        return beginNextDrop();
    gather();
    if (m_remainingAOps == 0 && std::exchange(m_renameWanted, false))
        runRename();
}

void TDocument::cancelDrops()
{
    if (m_drops.empty())
        return;
    m_drop.reset();
    m_drops.clear();
    m_dropped.clear();
    m_droppedProblems.clear();
    m_dropAfter.reset();
    m_gathering.resume();
    Q_EMIT workChanged();
}
