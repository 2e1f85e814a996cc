// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "metadata/TImageTagRule.h"
#include "ui/editors/TEditTagRuleViewController.h"

class QComboBox;

/// Editor of the image rule: category, then tag.
class TEditImageTagRuleViewController : public TEditTagRuleViewController
{
    Q_OBJECT

public:
    TEditImageTagRuleViewController(const TRulePtr &rule, const EditorContext &context);

protected:
    QStringList offeredTags() const override;
    QString placeholder() const override;
    TMetadataPtr metadataOf(const TFileObject &file) const override;
    QVariant valueOf(const TMetadata &metadata, const QString &tag) const override;
    bool isOfKind(const TFileObject &file) const override;
    QString otherKindRemark() const override;

private:
    void addCategoryRow();

    QComboBox *m_category = nullptr;
};
