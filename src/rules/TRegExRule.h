// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/RegexReplacer.h"
#include "rules/TRegExMatchReplace.h"
#include "rules/TRuleModel.h"

/// The pairs of a regular-expression rule; the editor changes them in place.
using TRegExPairs = std::vector<std::shared_ptr<TRegExMatchReplace>>;
using TRegExPairsPtr = std::shared_ptr<TRegExPairs>;
Q_DECLARE_METATYPE(TRegExPairsPtr)

/// Rewrites the file's name, or the name assembled so far, by pairs of pattern and replacement in
/// turn. The properties leave out name, icon, colour and theID, so that a copy shares the array of
/// pairs with its original and takes a palette colour of its own; that is intended.
class TRegExRule : public TRuleModel
{
public:
    TRegExRule();
    explicit TRegExRule(Decoding);
    static std::shared_ptr<TRegExRule> decoding();

    void prepareToStart() override { m_exceededNames = 0; }
    /// The rewritten text, "" after a pair that failed, "???RegEx???" without pairs. Patterns that
    /// exceed the name's budget give "", set dict.tookTooLong and report level 2.
    QString processWithFileObject(TFileObject &file, TErrorLog *errorLog, TRuleDict &dict) override;
    /// Gives the rule's own fragment as the whole name when the rule replaces all.
    bool postProcessResult(QString &result, TErrorLog *errorLog, TRuleDict &dict) override;

    QVariantMap properties() const override;
    /// "regArray" may be a TRegExPairsPtr, which is shared, or a list of dictionaries.
    void setProperties(const QVariantMap &properties) override;
    std::shared_ptr<TRuleModel> newInstance() const override;
    TArchiveClass archiveClass() const override;
    void encodeWithCoder(TEncoder &coder) const override;
    void initWithCoder(const TDecoder &coder) override;
    void updatePreview() override;
    QString editingViewController() const override;

    /// Null only after decoding an archive without pairs.
    const TRegExPairsPtr &regArray() const { return m_regArray; }
    void setRegArray(TRegExPairsPtr pairs) { m_regArray = std::move(pairs); }
    /// 0: the file's name; anything else: the name assembled so far.
    qint64 source() const { return m_source; }
    void setSource(qint64 source) { m_source = source; }
    /// Not 0, with a positive source: the fragment replaces the whole assembled name.
    qint64 replaceAll() const { return m_replaceAll; }
    void setReplaceAll(qint64 replaceAll) { m_replaceAll = replaceAll; }

private:
    void compileChangedPairs();

    TRegExPairsPtr m_regArray;
    qint64 m_source = 0;
    qint64 m_replaceAll = 0;
    int m_exceededNames = 0;               ///< since the start of the pass
    std::vector<RegexReplacer> m_compiled; ///< one a pair, made when a pair is new or changed
};
