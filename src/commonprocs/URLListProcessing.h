// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileURL.h"
#include "platform/FileManager.h"
#include "platform/TDate.h"

#include <QList>

#include <optional>
#include <stdexcept>

/// File-system questions about single locations. They hold no state, answer false on any error, and
/// may be called from any thread. Links are followed unless said otherwise.

using TFileURLs = QList<TFileURL>;

/// Something exists at the path; a link whose target is missing counts.
bool URLisValidFile(const TFileURL &url);
bool URLisFolder(const TFileURL &url);
bool URLisDirectory(const TFileURL &url);
bool isURLaFolder(const TFileURL &url);
bool URLcanBeRead(const TFileURL &url);
bool URLcanBeWritten(const TFileURL &url);
bool URLcanBeDeleted(const TFileURL &url);
bool fileConformsTo(const TFileURL &url, QLatin1StringView type);
bool URLmatchesRequestedUTI(const TFileURL &url, const QList<QLatin1StringView> &types);
bool URLExtensionMatchesRequestedList(const TFileURL &url, const QStringList &extensions);

/// Appends what matches: the item itself, and, when it is a folder, its contents to any depth
/// (hidden files skipped). A folder that cannot be listed is passed over.
void processURLforUTItoList(const TFileURL &url, const QList<QLatin1StringView> &types,
                            TFileURLs &result);
void processURLforExtensionstoList(const TFileURL &url, const QStringList &extensions,
                                   TFileURLs &result);
TFileURLs processURLsWithFilterTypes(const TFileURLs &urls, const QList<QLatin1StringView> &types,
                                     bool descend);
TFileURLs removeURLsOfTypeExceptFor(const TFileURLs &urls, const QList<QLatin1StringView> &types,
                                    const QList<QLatin1StringView> &exceptions);
TFileURLs StripDirectoryURLsFrom(const TFileURLs &urls);

/// A name base that is free in the folder, tested on the disk with "base.extension" (the dot always
/// stands, also before an empty extension): the base itself or "base-N". Nothing unless the folder
/// is one and neither text is null.
std::optional<QString> createUniqueFileNameWithParentAndNameBase(const TFileURL &folder,
                                                                 const QString &base,
                                                                 const QString &extension);
std::optional<TFileURL> createUniqueFileURLWithParentAndNameBase(const TFileURL &folder,
                                                                 const QString &base,
                                                                 const QString &extension);

/// $XDG_DATA_HOME, else ~/.local/share.
TFileURL appSupportDirURL();
TFileURL tempDirectoryURL();
TFileURL homeDirectoryURL();
TFileURL applicationDocumentsDirectory();
/// The folder name/subfolder (subfolder may be empty) in the data folder, created with all parents,
/// mode 0700; invalid when that is impossible.
TFileURL getSandboxedAppSupportFolder(const QString &name, const QString &subfolder);

TDate getFileModificationDate(const TFileURL &url);
TDate getFileCreationDate(const TFileURL &url);
qint64 getFileSize(const TFileURL &url);

/// "ResouceUnavailableException": the identity of an item could not be read.
class ResouceUnavailableException : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// True when both are the same item on disk. Throws ResouceUnavailableException when either cannot
/// be read, std::logic_error when either is no file URL.
bool compareFileURL(const TFileURL &receiver, const TFileURL &target);
bool isSameFileURL(const TFileURL &receiver, const TFileURL &target);
