// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileItem.h"
#include "document/TErrorLog.h"
#include "platform/TAttributedString.h"
#include "platform/TImage.h"
#include "platform/TMetadata.h"

#include <QVariantMap>

#include <memory>
#include <optional>

/// One file of a batch: where it is, what it is called, what the rules make of its name, and the
/// problems found for it. Live entries are shared by list, undo states and gathering and belong to
/// the main thread; workers build their own on the stack from a TFileItem and never see a live one.
///
/// Small on purpose: location and facts are kept compact, everything derivable is computed, and
/// values that differ from what was derived (set through setProperties or an archive) live in an
/// optional side block.
class TFileObject
{
public:
    TFileObject();
    explicit TFileObject(const TFileItem &item, TMetadataPtr imageProperties = {},
                         TMetadataPtr id3 = {});
    TFileObject(const TFileObject &) = delete;
    TFileObject &operator=(const TFileObject &) = delete;
    TFileObject(TFileObject &&) noexcept;
    TFileObject &operator=(TFileObject &&) noexcept;
    ~TFileObject();

    /// Reads the facts from disk; null for an invalid URL.
    static std::shared_ptr<TFileObject> newFileObjectWithURL(const TFileURL &url);
    static std::shared_ptr<TFileObject> dummyObjectWithName(const QString &name);
    std::shared_ptr<TFileObject> copy() const;

    /// Makes this entry stand for another file, keeping its memory; target and problems start anew.
    void assign(const TFileItem &item, TMetadataPtr imageProperties = {}, TMetadataPtr id3 = {});

    QString thePath() const;
    QString fileName() const;
    void setFileName(const QString &name);
    QString extension() const;
    void setExtension(const QString &extension);
    TImage icon() const;
    TFileURL sourceURL() const;
    TFileURL targetURL() const;
    void setTargetURL(const TFileURL &url);
    /// "target-" and the name until the first analysis.
    QString targetName() const;
    void setTargetName(const QString &name);
    const TAttributedString &attributedTargetName() const { return m_attributedTargetName; }
    void setAttributedTargetName(TAttributedString name);
    /// Sets both to one name, as nearly always; it is kept once.
    void setTarget(TAttributedString name);
    /// The new extension with its period, in red.
    TAttributedString attributedTargetExtension() const;
    void setAttributedTargetExtension(const TAttributedString &extension);
    qint64 size() const;
    TDate creationDate() const;
    TDate modificationDate() const;
    QString parent() const;
    const TMetadataPtr &imageProperties() const { return m_imageProperties; }
    void setImageProperties(TMetadataPtr properties) { m_imageProperties = std::move(properties); }
    const TMetadataPtr &ID3() const { return m_id3; }
    void setID3(TMetadataPtr tags) { m_id3 = std::move(tags); }
    bool hasBeenProcessed() const { return m_hasBeenProcessed; }
    void setHasBeenProcessed(bool processed) { m_hasBeenProcessed = processed; }
    /// Reserved for media metadata and lyrics: carried, archived and copied, filled by nobody.
    QVariant avMetadata() const;
    QString avLyrics() const;
    /// Location and facts as workers take them.
    const TFileItem &item() const { return m_item; }

    const TErrorLog &errLog() const { return m_errLog; }
    void setErrLog(TErrorLog log) { m_errLog = std::move(log); }
    void clearErrLog() { m_errLog.clear(); }
    /// Appends to the file's log, and the same entry to secondLog when given.
    void logErrorType(int errClass, TErrorText description, TErrorLog *secondLog);
    /// For a description: the text with the file's path behind it.
    TErrorText withPath(const QString &text) const;
    /// The most critical level; 0 when nothing was logged.
    int errLevel() const { return m_errLog.mostCriticalError(); }

    QVariantMap properties() const;
    /// Sets the fields whose keys are present.
    void setProperties(const QVariantMap &properties);
    static TArchiveClass archiveClass();
    void encodeWithCoder(TEncoder &coder) const;
    void initWithCoder(const TDecoder &coder);

private:
    struct Side;
    Side &side();
    void keepDerived();
    bool has(std::optional<QString> Side::*text) const;

    TFileItem m_item;
    TMetadataPtr m_imageProperties;
    TMetadataPtr m_id3;
    TAttributedString m_attributedTargetName;
    QString m_targetExtension; ///< with its period; shown in red
    TErrorLog m_errLog;
    std::unique_ptr<TFileURL> m_targetURL; ///< null while there is none
    std::unique_ptr<Side> m_side;
    bool m_isTargetShown = false; ///< the target name is the text of the attributed one
    bool m_hasBeenProcessed = false;
};
