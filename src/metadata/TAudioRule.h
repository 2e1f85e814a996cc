// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "metadata/TTagRule.h"

/// One tag of an audio file. What kind of file it wants, and the kind's word in messages, come from
/// the class, never from an archive or from properties.
class TAudioRule : public TTagRule
{
public:
    TAudioRule();
    explicit TAudioRule(Decoding);
    static std::shared_ptr<TAudioRule> decoding();

    /// Give the class's own file type back to the rule.
    void setProperties(const QVariantMap &properties) override;
    void initWithCoder(const TDecoder &coder) override;
    std::shared_ptr<TRuleModel> newInstance() const override;
    TArchiveClass archiveClass() const override;
    QString editingViewController() const override;

    /// The type identifier that files must conform to.
    QLatin1StringView fileUTI() const { return m_fileUTI; }
    /// Takes a constant of TypeIdentifiers.
    void setFileUTI(QLatin1StringView identifier) { m_fileUTI = identifier; }
    const QString &utiString() const { return m_utiString; }
    void setUtiString(const QString &word) { m_utiString = word; }

protected:
    QVariant tagValue(TFileObject &file, TErrorLog *errorLog) const override;
    QString messagePrefix() const override;
    virtual void resetKind();

private:
    QLatin1StringView m_fileUTI;
    QString m_utiString;
};
