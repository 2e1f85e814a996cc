// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rules/TRuleFields.h"
#include "rules/TRuleModel.h"

/// A constant text. An empty one is emitted too, with a warning in the given log only.
class TTextRule : public TRuleModel
{
public:
    TTextRule();
    explicit TTextRule(Decoding);
    static std::shared_ptr<TTextRule> decoding();

    QString processWithFileObject(TFileObject &file, TErrorLog *errorLog, TRuleDict &dict) override;
    QVariantMap properties() const override;
    void setProperties(const QVariantMap &properties) override;
    std::shared_ptr<TRuleModel> newInstance() const override;
    TArchiveClass archiveClass() const override;
    void encodeWithCoder(TEncoder &coder) const override;
    void initWithCoder(const TDecoder &coder) override;
    void updatePreview() override;
    QString editingViewController() const override;

    const QString &theText() const { return m_theText; }
    void setTheText(const QString &text) { m_theText = text; }

private:
    static std::span<const TRuleField<TTextRule>> fields();

    QString m_theText;
};
