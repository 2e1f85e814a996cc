// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TFileObject.h"
#include "platform/TCoder.h"
#include "platform/TColor.h"
#include "platform/TImage.h"

#include <QVariantMap>

#include <memory>
#include <vector>

/// What every rule call is handed for one file.
struct TRuleDict
{
    qint64 batchSize = 0;       ///< number of files in the run
    qsizetype likelyLength = 0; ///< of the whole name, to take its memory at once
    QString result;             ///< the name assembled so far, before any rewrite by the last rule
    QString partial;            ///< the latest cleaned fragment; null when there was none
    /// The patterns of this name exceeded their step budget: a run must leave the file alone.
    bool tookTooLong = false;
    TDate now; ///< the moment of evaluation; unset: the system clock is asked
};

/// Base of all naming rules: identity, colour, tile, evaluation protocol, copying and archiving.
/// A rule has an identity and is shared by list, undo states and editor on the main thread; workers
/// evaluate copies of their own. One rule object is never evaluated by two threads at once.
class TRuleModel
{
public:
    /// Takes the next palette colour.
    TRuleModel();
    TRuleModel(const TRuleModel &) = delete;
    TRuleModel &operator=(const TRuleModel &) = delete;
    virtual ~TRuleModel() = default;

    /// Called once on every rule before a run over a batch; stateful kinds start again here.
    virtual void prepareToStart() {}
    /// The fragment for one file; problems go to the file and the log (which may be null).
    virtual QString processWithFileObject(TFileObject &file, TErrorLog *errorLog, TRuleDict &dict);
    /// May change the whole name assembled so far; true when it did.
    virtual bool postProcessResult(QString &result, TErrorLog *errorLog, TRuleDict &dict);
    virtual void advanceToNext() {}

    /// The settings under their archive keys.
    virtual QVariantMap properties() const;
    /// Sets the fields whose keys are present.
    virtual void setProperties(const QVariantMap &properties);
    /// A fresh rule of the same class with the receiver's properties.
    std::shared_ptr<TRuleModel> copy() const;
    /// A fresh rule of the same class, with its defaults and the next palette colour.
    virtual std::shared_ptr<TRuleModel> newInstance() const = 0;

    virtual TArchiveClass archiveClass() const = 0;
    virtual void encodeWithCoder(TEncoder &coder) const;
    /// For objects made with Decoding: fills the fields from the archive.
    virtual void initWithCoder(const TDecoder &coder);
    /// Recomputes the tile's name from the settings.
    virtual void updatePreview() = 0;
    /// The name of the editor that fits this kind.
    virtual QString editingViewController() const = 0;

    const QString &name() const { return m_name; }
    void setName(const QString &name) { m_name = name; }
    const TImage &thePreview() const { return m_thePreview; }
    void setThePreview(const TImage &preview) { m_thePreview = preview; }
    qint64 theID() const { return m_theID; }
    void setTheID(qint64 theID) { m_theID = theID; }
    const TColor &theColor() const { return m_theColor; }
    void setTheColor(const TColor &color) { m_theColor = color; }
    void setWithNSImage(const TImage &image, qint64 theID, const QString &name);
    /// The same for a bitmap's resource name; an empty one means no image.
    void setWithCGImage(const QString &bitmap, qint64 theID, const QString &name);

protected:
    /// Tag for the constructor that a decoded rule starts from: it draws no palette colour, and all
    /// integers start at 0.
    struct Decoding
    {
        explicit Decoding() = default;
    };
    explicit TRuleModel(Decoding) {}

private:
    QString m_name;
    TImage m_thePreview;
    qint64 m_theID = 0;
    TColor m_theColor;
};

using TRulePtr = std::shared_ptr<TRuleModel>;
using TRuleList = std::vector<TRulePtr>;
