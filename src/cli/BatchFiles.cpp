// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/BatchFiles.h"

#include "cli/AnalysisPass.h"
#include "cli/PathList.h"
#include "cli/SettingValue.h"
#include "cli/WholeFile.h"
#include "commonprocs/ByteNames.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using BatchSorting::Key;

namespace {

constexpr QLatin1StringView kFilesFrom{"files-from"};
constexpr QLatin1StringView kNul{"null"};
constexpr QLatin1StringView kSort{"sort"};
constexpr QLatin1StringView kDescending{"desc"};
constexpr QLatin1StringView kCaseSensitive{"case"};

constexpr std::array kFileOptions{
    OptionInfo{kFilesFrom, "FILE"_L1,
               "read more paths from a file, one a line; - is standard input"_L1},
    OptionInfo{kNul, ""_L1, "paths in that file end in NUL bytes (find -print0)"_L1, '0'},
    OptionInfo{kSort, "KEY[:desc][:case]"_L1,
               "order by fileName, targetName, creationDate, modificationDate, size or error; "
               ":case for fileName only"_L1},
};

struct SortKey
{
    QLatin1StringView name;
    Key key;
};
constexpr std::array kSortKeys{
    SortKey{"fileName"_L1, Key::FileName},
    SortKey{"targetName"_L1, Key::TargetName},
    SortKey{"creationDate"_L1, Key::CreationDate},
    SortKey{"modificationDate"_L1, Key::ModificationDate},
    SortKey{"size"_L1, Key::Size},
    SortKey{"error"_L1, Key::Error},
};

QStringList sortKeyNames()
{
    QStringList names;
    for (const SortKey &key : kSortKeys)
        names.append(key.name);
    return names;
}

QString cannotReadList(const QString &list, const QString &reason)
{
    return u"cannot read the list %1: %2"_s.arg(list, reason);
}

BatchSorting::Row rowFromFacts(const TFileItem &item, Key key)
{
    switch (key) {
    case Key::FileName:
        return {removeExtensionFromFilename(item.url.lastPathComponent()), 0};
    case Key::CreationDate:
        return {{}, item.facts.creation.nanos};
    case Key::ModificationDate:
        return {{}, item.facts.modification.nanos};
    default:
        return {{}, item.facts.size};
    }
}

std::vector<TFileItem> reordered(std::vector<TFileItem> files, const std::vector<qsizetype> &order)
{
    std::vector<TFileItem> result;
    result.reserve(files.size());
    for (const qsizetype index : order)
        result.push_back(std::move(files[static_cast<std::size_t>(index)]));
    return result;
}

} // namespace

OptionGroup BatchFiles::options()
{
    return {"Files"_L1, kFileOptions};
}

BatchFiles::BatchFiles(CliEnvironment &environment, Console &console)
    : m_environment(environment)
    , m_console(console)
    , m_metadata(environment)
{
}

QString BatchFiles::understand(const CommandLine &line)
{
    if (const QString problem = understandList(line); !problem.isEmpty())
        return problem;
    if (line.words().isEmpty() && m_listFile.isNull())
        return u"no files: give paths, or --files-from"_s;
    if (line.count(kSort) > 1)
        return u"--sort is given twice; files have one order"_s;
    const QString sort = line.value(kSort);
    return sort.isNull() ? QString() : understandSort(sort);
}

QString BatchFiles::understandList(const CommandLine &line)
{
    if (line.count(kFilesFrom) > 1)
        return u"--files-from is given twice; only one list can be read"_s;
    m_listFile = line.value(kFilesFrom);
    if (line.has(kNul) && m_listFile.isNull())
        return u"-0 (--null) is about the list of --files-from, which is not given"_s;
    m_separator = line.has(kNul) ? '\0' : '\n';
    return {};
}

QString BatchFiles::listProblem() const
{
    const QString reason =
        m_listFile.isNull() || readsInput() ? QString() : reasonNotToRead(m_listFile);
    return reason.isEmpty() ? QString() : cannotReadList(m_listFile, reason);
}

QString BatchFiles::understandSort(const QString &text)
{
    const QStringList words = text.split(u':');
    const auto found =
        std::find_if(kSortKeys.begin(), kSortKeys.end(),
                     [&words](const SortKey &key) { return key.name == words.first(); });
    if (found == kSortKeys.end())
        return "--sort: "_L1 + SettingValue::unknownWord(u"key"_s, words.first(), sortKeyNames());
    BatchSorting::Order order{found->key, true, false};
    for (qsizetype i = 1; i < words.size(); ++i) {
        const QString &word = words[i];
        if (words.indexOf(word, i + 1) > 0)
            return u"--sort: \"%1\" is given twice"_s.arg(word);
        if (word == kDescending)
            order.ascending = false;
        else if (word == kCaseSensitive && found->key == Key::FileName)
            order.caseSensitive = true;
        else
            return "--sort: "_L1 +
                   SettingValue::unknownWord(u"order"_s, word,
                                             found->key == Key::FileName
                                                 ? QStringList{kDescending, kCaseSensitive}
                                                 : QStringList{kDescending});
    }
    m_order = order;
    return {};
}

bool BatchFiles::sortsByStatus() const
{
    return m_order && (m_order->key == Key::CreationDate || m_order->key == Key::ModificationDate ||
                       m_order->key == Key::Size);
}

TResult<bool> BatchFiles::collect(const CommandLine &line, FileExpansion::Detail detail)
{
    FileExpansion expansion(m_environment.fileManager,
                            sortsByStatus() ? FileExpansion::Detail::Everything : detail);
    std::stop_source stop;
    expansion.setProgress([&](qsizetype found) {
        if (interrupted())
            stop.request_stop();
        m_console.progress().show("Listing files"_L1, found);
    });
    const auto add = [&](const QString &path) {
        expansion.add(path, stop.get_token());
        reportProblems(expansion.problems());
        return !interrupted();
    };
    if (std::all_of(line.words().begin(), line.words().end(), add) && !m_listFile.isNull()) {
        if (const int error = readList(add); error != 0 && !interrupted())
            return TResult<bool>::failure(cannotReadList(m_listFile, reasonNotToOpen(error)));
    }
    m_files = expansion.takeFiles();
    return !interrupted();
}

void BatchFiles::reportProblems(const std::vector<FileExpansion::Problem> &problems)
{
    for (; m_missing < static_cast<qsizetype>(problems.size()); ++m_missing) {
        const FileExpansion::Problem &problem = problems[static_cast<std::size_t>(m_missing)];
        m_console.message(u"%1: %2"_s.arg(problem.path, problem.text));
    }
}

int BatchFiles::readList(const std::function<bool(const QString &)> &add)
{
    const auto take = [&add](QByteArrayView path) { return add(ByteNames::fromBytes(path)); };
    if (readsInput())
        return readPathList(m_environment.input, m_separator, take);
    const int file = ::open(ByteNames::toBytes(m_listFile).constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return errno;
    const int error = readPathList(file, m_separator, take);
    ::close(file);
    return error;
}

bool BatchFiles::sort(const Recipe &recipe)
{
    if (!m_order)
        return true;
    std::vector<BatchSorting::Row> rows;
    rows.reserve(m_files.size());
    if (m_order->key != Key::TargetName && m_order->key != Key::Error) {
        for (const TFileItem &item : m_files)
            rows.push_back(rowFromFacts(item, m_order->key));
    } else if (!rowsFromAnalysis(rows, recipe)) {
        return false;
    }
    const std::vector<qsizetype> order = BatchSorting::sortedOrder(rows, *m_order);
    m_files = reordered(std::move(m_files), order);
    m_metadata.reorder(order);
    return true;
}

bool BatchFiles::rowsFromAnalysis(std::vector<BatchSorting::Row> &rows, const Recipe &recipe)
{
    AnalysisPass pass(recipe, m_files, metadataSource(recipe.metadataKinds(), recipe.imageWish()),
                      false);
    while (!pass.atEnd()) {
        if (interrupted())
            return false;
        const TAnalysisResult result = pass.step();
        rows.push_back({result.targetName.string(), result.errors.mostCriticalError()});
        m_console.progress().show("Sorting"_L1, pass.done(), pass.total());
    }
    return true;
}

std::unique_ptr<TMetadataSource> BatchFiles::metadataSource(MetadataGatherer::Kinds kinds,
                                                            const ImageWish &wish)
{
    if (!m_metadata.isStarted())
        m_metadata.start(m_files, kinds, wish, m_console.isVerbose());
    return m_metadata.source();
}
