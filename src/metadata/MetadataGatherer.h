// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileItem.h"
#include "document/TMetadataSource.h"
#include "platform/ImageWish.h"
#include "settings/logging.h"

#include <QFlags>

#include <chrono>
#include <functional>
#include <memory>
#include <span>
#include <vector>

class MainThread;

/// Reads the metadata of files in helper processes, several at a time and ahead of who wants it,
/// and hands it over file by file in the order in which the files were added.
///
/// Nothing is started before there is a file that has metadata. A file that kills its helper, or
/// keeps it busy for too long, is named in the log, has nothing in it, and is not tried again.
/// Owned by whoever wants the metadata; all operations return at once.
class MetadataGatherer
{
public:
    enum Kind {
        ImageProperties = 1, ///< of image files
        Media = 2,           ///< tags of audio and video files
    };
    Q_DECLARE_FLAGS(Kinds, Kind)

    struct Settings
    {
        Kinds kinds{ImageProperties, Media};
        ImageWish wish; ///< which image properties
        /// Where completions run; null: on a thread of the gatherer's own. Not owned.
        MainThread *mainThread = nullptr;
        /// Takes the lines that tell which tags were transferred; empty: nobody.
        std::function<void(const QString &)> console = zelConsole;
        QString helper;  ///< path of the helper program; empty: the one that came with this program
        int helpers = 0; ///< at most so many at a time; 0: as this machine has processors, up to 4
        int niceness = 0; ///< of the helpers, above that of this process
        std::chrono::milliseconds timePerFile{2000};
    };
    /// Called once for every file, in order; files count from 0 over all calls of add. What a file
    /// has no use for stays null (the image properties of a song); both are null for a text.
    using Completion =
        std::function<void(qsizetype file, const TMetadataSource::Metadata &metadata)>;

    MetadataGatherer(Settings settings, Completion completion);
    /// Ends the helpers, whatever they are doing; afterwards no completion comes any more. With
    /// completions on the main thread, to be called there (from within a completion, too).
    ~MetadataGatherer();
    MetadataGatherer(const MetadataGatherer &) = delete;
    MetadataGatherer &operator=(const MetadataGatherer &) = delete;

    void add(std::vector<TFileItem> files);
    /// The same for files that stay where they are as long as the gatherer lives.
    void addBorrowed(std::span<const TFileItem> files);
    /// Why no metadata can be read at all; empty while all is well. Files are completed all the
    /// same, with nothing in them.
    QString problem() const;

private:
    class Private;
    std::unique_ptr<Private> m_private;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(MetadataGatherer::Kinds)
