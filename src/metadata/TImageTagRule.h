// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "metadata/TTagRule.h"

/// One tag of an image's metadata: a category by its title ("General", "Exif Aux"), and a tag in
/// it.
class TImageTagRule : public TTagRule
{
public:
    TImageTagRule();
    explicit TImageTagRule(Decoding);
    static std::shared_ptr<TImageTagRule> decoding();

    QVariantMap properties() const override;
    void setProperties(const QVariantMap &properties) override;
    std::shared_ptr<TRuleModel> newInstance() const override;
    TArchiveClass archiveClass() const override;
    void encodeWithCoder(TEncoder &coder) const override;
    void initWithCoder(const TDecoder &coder) override;
    void updatePreview() override;
    QString editingViewController() const override;

    const QString &category() const { return m_category; }
    /// The name of the category in the properties of a file; empty for their top level.
    QString metadataCategory() const;
    void setCategory(const QString &title) { m_category = title; }

protected:
    QVariant tagValue(TFileObject &file, TErrorLog *errorLog) const override;
    QString messagePrefix() const override;

private:
    static std::span<const TRuleField<TImageTagRule>> fields();

    QString m_category;
};
