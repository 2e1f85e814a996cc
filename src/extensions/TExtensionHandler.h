// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/RegexReplacer.h"
#include "document/TFileObject.h"
#include "extensions/TExtensionMap.h"
#include "rules/TRuleModel.h"

#include <QVariantMap>

#include <memory>
#include <vector>

/// Decides what becomes of each file's extension: kept, replaced, mapped, stripped or rewritten.
/// One belongs to each batch; runs work on copies.
class TExtensionHandler
{
public:
    enum Method : qint64 { kUnchanged = 0, kReplace = 1, kMap = 2, kStrip = 3, kRegEx = 4 };
    enum CaseHandling : qint64 { kCaseAsItIs = 0, kUpperCase = 1, kLowerCase = 2 };
    /// What the pattern works on; any other value stands for the extension too.
    enum RegAccess : qint64 { kWholeName = 0, kNameWithoutExtension = 1, kExtension = 2 };

    TExtensionHandler();
    TExtensionHandler(const TExtensionHandler &) = delete;
    TExtensionHandler &operator=(const TExtensionHandler &) = delete;

    /// A new handler with the properties, which are five of the nine settings.
    std::unique_ptr<TExtensionHandler> copy() const;
    /// The copy that a run works with: copy() plus the four settings that properties leave out, so
    /// that the run does what the preview shows.
    std::unique_ptr<TExtensionHandler> copyForRun() const;

    /// The new extension without its period. Sets dict.tookTooLong (and logs level 2 on the file)
    /// when the pattern exceeds its budget; otherwise never logs.
    QString processWithFileObject(TFileObject &file, TErrorLog *errorLog, TRuleDict &dict);
    /// The target of the first row that matches; without one, the replacer or the extension itself.
    QString mapExtensionFor(const QString &extension) const;
    QString handleCaseFor(const QString &extension) const;
    /// "" for a pattern or replacement that is invalid or takes too long.
    QString handleRegExFor(const QString &text);

    /// Summary for the interface.
    QString name() const;
    QVariantMap properties() const;
    void setProperties(const QVariantMap &properties);
    static TArchiveClass archiveClass();
    void encodeWithCoder(TEncoder &coder) const;
    void initWithCoder(const TDecoder &coder);

    qint64 handlingMethod() const { return m_handlingMethod; }
    void setHandlingMethod(qint64 method) { m_handlingMethod = method; }
    const std::vector<TExtensionMap> &mapArray() const { return m_mapArray; }
    void setMapArray(std::vector<TExtensionMap> map) { m_mapArray = std::move(map); }
    /// An index beyond the table stands for its end.
    void insertObjectInMapArrayAtIndex(const TExtensionMap &row, qsizetype index);
    /// Does nothing for an index beyond the table.
    void removeObjectFromMapArrayAtIndex(qsizetype index);
    const QString &replacer() const { return m_replacer; }
    void setReplacer(const QString &replacer) { m_replacer = replacer; }
    qint64 caseHandling() const { return m_caseHandling; }
    void setCaseHandling(qint64 handling) { m_caseHandling = handling; }
    qint64 mapRemainderChoice() const { return m_mapRemainderChoice; }
    void setMapRemainderChoice(qint64 choice) { m_mapRemainderChoice = choice; }
    qint64 ignoreCase() const { return m_ignoreCase; }
    void setIgnoreCase(qint64 ignore) { m_ignoreCase = ignore; }
    const QString &regEx() const { return m_regEx; }
    void setRegEx(const QString &pattern) { m_regEx = pattern; }
    qint64 regAccess() const { return m_regAccess; }
    void setRegAccess(qint64 access) { m_regAccess = access; }
    const QString &rePattern() const { return m_rePattern; }
    void setRePattern(const QString &replacement) { m_rePattern = replacement; }

private:
    QString textForRegEx(const TFileObject &file) const;
    void compileChangedPattern();
    QString rewrite(const QString &text, RegexReplacer::Budget &budget);

    qint64 m_handlingMethod = kUnchanged;
    std::vector<TExtensionMap> m_mapArray;
    QString m_replacer;
    qint64 m_caseHandling = kCaseAsItIs;
    qint64 m_mapRemainderChoice = 0;
    qint64 m_ignoreCase = 1;
    QString m_regEx;
    qint64 m_regAccess = kExtension;
    QString m_rePattern;
    int m_exceededNames = 0;  ///< by the pattern compiled
    RegexReplacer m_compiled; ///< made anew at the first use after a change
};
