// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/NameGeneration.h"

/// The part of a rename that does not depend on the disk: name base and extension of one file as
/// the run would use them, before uniqueness.
struct TEvaluatedName
{
    QString base;      ///< trimmed; "SafeName" when the rules gave nothing
    QString extension; ///< final, without period
    TErrorLog errors;  ///< the operation's list so far
    QString textLog;   ///< lines for the run's text log
    bool wasEmpty = false;
    bool tookTooLong = false; ///< leave the file alone and count it as failed

    /// "base.extension", or the base alone when the extension is empty.
    static QString joined(const QString &base, const QString &extension);
    QString fullName() const { return joined(base, extension); }
};

/// One file of a run. Evaluation (any thread, rules and handler not shared) and the move (the
/// mover's thread, where uniqueness is known) are separate, so that they can run side by side.
class TRenameOperation
{
public:
    static constexpr QLatin1StringView kSafeName{"SafeName"};

    /// Evaluates handler first, then the rules. rules may be null or empty: the abort lines are in
    /// textLog and base is null.
    static TEvaluatedName evaluate(const TRuleList *rules, TExtensionHandler &handler,
                                   TFileObject &file, qsizetype index, qint64 batchSize,
                                   const TOptions &options);
    /// Replaces the base by the unique one and reports the change in list and text log.
    static void applyUniqueBase(TEvaluatedName &name, const QString &fileName,
                                const QString &uniqueBase);
};
