// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/BatchMetadata.h"
#include "cli/CliEnvironment.h"
#include "cli/Console.h"
#include "cli/Recipe.h"
#include "commonprocs/FileExpansion.h"
#include "document/BatchSorting.h"

#include <vector>

/// The files that a command line names, in the order in which they will be renamed.
class BatchFiles
{
public:
    /// The options that choose and order files.
    static OptionGroup options();

    BatchFiles(CliEnvironment &environment, Console &console);

    /// Understands the options, before anything is read from disk. The message names what is wrong.
    QString understand(const CommandLine &line);
    /// Lists the files, reporting paths that cannot be taken. False when it was interrupted; a
    /// failure when the list of paths cannot be read. detail is what the caller reads of files;
    /// the order may need more.
    TResult<bool> collect(const CommandLine &line, FileExpansion::Detail detail);
    /// Brings the files into the order asked for. False when it was interrupted.
    bool sort(const Recipe &recipe);

    /// The metadata of the files for one pass over them; null when no kinds are wanted, which must
    /// be the same each time.
    std::unique_ptr<TMetadataSource> metadataSource(MetadataGatherer::Kinds kinds,
                                                    const ImageWish &wish = {});

    /// Why the list of --files-from cannot be read, as far as that shows before it is; empty when
    /// nothing is known against it.
    QString listProblem() const;
    /// True when --files-from takes standard input away from questions.
    bool readsInput() const { return m_listFile == QStringView(u"-"); }
    const std::vector<TFileItem> &files() const { return m_files; }
    /// Why no metadata can be read at all; empty while all is well.
    QString metadataProblem() const { return m_metadata.problem(); }
    /// Paths that do not exist or cannot be read.
    qsizetype missing() const { return m_missing; }

private:
    bool interrupted() const { return m_environment.interrupted.load(); }
    QString understandList(const CommandLine &line);
    QString understandSort(const QString &text);
    bool sortsByStatus() const;
    int readList(const std::function<bool(const QString &)> &add);
    void reportProblems(const std::vector<FileExpansion::Problem> &problems);
    bool rowsFromAnalysis(std::vector<BatchSorting::Row> &rows, const Recipe &recipe);

    CliEnvironment &m_environment;
    Console &m_console;
    std::vector<TFileItem> m_files;
    BatchMetadata m_metadata; ///< after the files, which it reads
    std::optional<BatchSorting::Order> m_order;
    QString m_listFile; ///< null: none
    char m_separator = '\n';
    qsizetype m_missing = 0;
};
