// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileURL.h"
#include "document/TErrorLog.h"
#include "platform/TCoder.h"

class FolderPool;

/// The record of one rename, from which it can be undone.
struct TRenameTRX
{
    TFileURL originalURL;
    QString originalPath; ///< leading tilde expanded; wins over originalURL when read back
    TFileURL renamedURL;
    TErrorLog errorLog;
    bool renameComplete = false;
    bool insured = false;
    qint64 renamedExistsWithStatus = 0; ///< state of a rollback; never archived

    static TRenameTRX TRXWithSource(const TFileURL &url);
    static TArchiveClass archiveClass();
    /// A path that is not valid UTF-8 is left out; its percent-encoded URL stands.
    void encodeWithCoder(TEncoder &coder) const;
    void initWithCoder(const TDecoder &coder);
    /// The same, with folders shared among the records of a log.
    void initWithCoder(const TDecoder &coder, FolderPool &folders);
    /// True when both paths are absolute, have no "." or ".." parts and share one parent folder:
    /// all that a run can produce. Others count as not completed.
    bool isTrustworthy() const;
};

/// The path with a leading "~" or "~user" replaced by that home folder; an unknown user's stays.
QString expandingTildeInPath(const QString &path);
