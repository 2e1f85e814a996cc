// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "metadata/TImageTagRule.h"
#include "ui/editors/TEditTagRuleViewController.h"

class QComboBox;

/// Editor of the image rule: category, then tag. Categories that the sample file lacks are dimmed.
class TEditImageTagRuleViewController : public TEditTagRuleViewController
{
    Q_OBJECT

public:
    TEditImageTagRuleViewController(const TRulePtr &rule, const EditorContext &context);

protected:
    void refresh() override;
    void changeEvent(QEvent *event) override;
    QStringList offeredTags() const override;
    QString placeholder() const override;
    TMetadataPtr metadataOf(const TFileObject &file) const override;
    QVariant valueOf(const TMetadata &metadata, const QString &tag) const override;
    bool isOfKind(const TFileObject &file) const override;
    QString otherKindRemark() const override;

private:
    void addCategoryRow();
    void markCategories();

    QComboBox *m_category = nullptr;
};
