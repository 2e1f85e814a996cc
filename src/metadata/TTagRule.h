// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rules/TDateRule.h"

/// Base of the kinds that take one value from a file's own metadata: which tag, the text that
/// stands in for a value that cannot be had, and the text of a value. The metadata was read before
/// and hangs on the file entry; a rule only looks it up.
class TTagRule : public TDateRule
{
public:
    /// The value's text, or the default text, padded and limited in length. Missing values are
    /// warnings; metadata that has not been read yet is critical.
    QString processWithFileObject(TFileObject &file, TErrorLog *errorLog, TRuleDict &dict) final;
    QVariantMap properties() const override;
    void setProperties(const QVariantMap &properties) override;
    std::shared_ptr<TRuleModel> newInstance() const override = 0;
    TArchiveClass archiveClass() const override = 0;
    void encodeWithCoder(TEncoder &coder) const override;
    void initWithCoder(const TDecoder &coder) override;
    void updatePreview() override;

    /// Texts as they are, numbers as decimal text without locale, the elements of arrays joined by
    /// "."; for other kinds a text that names the kind.
    static QString stringFromTagValue(const QVariant &value);

    const QString &theTag() const { return m_theTag; }
    void setTheTag(const QString &tag) { m_theTag = tag; }
    const QString &defaultString() const { return m_defaultString; }
    void setDefaultString(const QString &text) { m_defaultString = text; }

protected:
    TTagRule();
    explicit TTagRule(Decoding);

    /// The file's value for the tag; invalid when there is none, which is then reported.
    virtual QVariant tagValue(TFileObject &file, TErrorLog *errorLog) const = 0;
    /// How messages begin that tell why a file has nothing to look into.
    virtual QString messagePrefix() const = 0;
    /// True when the file is of the type and its metadata was read and holds something; otherwise
    /// that is reported. The kind is the type's word in messages.
    bool hasMetadata(const TMetadataPtr &metadata, QLatin1StringView type, QStringView kind,
                     TFileObject &file, TErrorLog *errorLog) const;

private:
    static std::span<const TRuleField<TTagRule>> fields();

    QString m_theTag;
    QString m_defaultString;
};
