// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rules/TTextRule.h"

/// One separator character from a fixed table of ten. It is emitted as the inherited text, which
/// only updatePreview() sets: a changed index has no effect before that.
class TSeparatorRule : public TTextRule
{
public:
    TSeparatorRule();
    explicit TSeparatorRule(Decoding);
    static std::shared_ptr<TSeparatorRule> decoding();

    using TTextRule::processWithFileObject;
    /// Looks the separator up first. Batches never call this form.
    QString processWithFileObject(TFileObject &file, TErrorLog *errorLog);
    QVariantMap properties() const override;
    void setProperties(const QVariantMap &properties) override;
    std::shared_ptr<TRuleModel> newInstance() const override;
    TArchiveClass archiveClass() const override;
    void encodeWithCoder(TEncoder &coder) const override;
    /// Throws std::out_of_range like updatePreview().
    void initWithCoder(const TDecoder &coder) override;
    /// Throws std::out_of_range when the index is not in the table.
    void updatePreview() override;
    QString editingViewController() const override;

    /// Sets theText from the table. Throws std::out_of_range when the index is not in it.
    void getSeparator();
    /// 0 to 9 for blank _ - * . ! ( ) { }
    qint64 separatorIndex() const { return m_separatorIndex; }
    void setSeparatorIndex(qint64 index) { m_separatorIndex = index; }

private:
    static std::span<const TRuleField<TSeparatorRule>> fields();

    qint64 m_separatorIndex = 0;
};
