// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TStringTable.h"
#include "rules/TRuleFields.h"
#include "rules/TRuleModel.h"

/// A cell of a table: the n-th file of a run gets its text from the n-th row. The table was read
/// from a CSV file once and is kept in the rule; copies share it.
class TCSVRule : public TRuleModel
{
public:
    TCSVRule();
    explicit TCSVRule(Decoding);
    static std::shared_ptr<TCSVRule> decoding();

    void prepareToStart() override;
    /// The cell of the next row; the default text and a warning when there is none.
    QString processWithFileObject(TFileObject &file, TErrorLog *errorLog, TRuleDict &dict) override;
    QVariantMap properties() const override;
    void setProperties(const QVariantMap &properties) override;
    std::shared_ptr<TRuleModel> newInstance() const override;
    TArchiveClass archiveClass() const override;
    void encodeWithCoder(TEncoder &coder) const override;
    void initWithCoder(const TDecoder &coder) override;
    void updatePreview() override;
    QString editingViewController() const override;

    /// A cell as trimQuotes makes it.
    static QString withoutOuterQuotes(QStringView text);

    /// Null while no table is loaded.
    const TStringTablePtr &theRows() const { return m_theRows; }
    void setTheRows(TStringTablePtr rows) { m_theRows = std::move(rows); }
    /// The first row is a header and is never used.
    bool skipFirst() const { return m_skipFirst; }
    void setSkipFirst(bool skip) { m_skipFirst = skip; }
    /// From 0.
    qint64 useColumn() const { return m_useColumn; }
    void setUseColumn(qint64 column) { m_useColumn = column; }
    /// Files beyond the last row start again at the top.
    bool wrap() const { return m_wrap; }
    void setWrap(bool wrap) { m_wrap = wrap; }
    /// Double quotes are taken off both ends of the cell.
    bool trimQuotes() const { return m_trimQuotes; }
    void setTrimQuotes(bool trim) { m_trimQuotes = trim; }
    const QString &defaultText() const { return m_defaultText; }
    void setDefaultText(const QString &text) { m_defaultText = text; }
    /// Files evaluated with a table since the run began; not archived.
    quint64 globalCounter() const { return m_globalCounter; }
    void setGlobalCounter(quint64 counter) { m_globalCounter = counter; }

private:
    static std::span<const TRuleField<TCSVRule>> fields();
    quint64 rowForCounter() const;

    TStringTablePtr m_theRows;
    bool m_skipFirst = false;
    qint64 m_useColumn = 0;
    bool m_wrap = false;
    bool m_trimQuotes = false;
    QString m_defaultText;
    quint64 m_globalCounter = 0;
};
