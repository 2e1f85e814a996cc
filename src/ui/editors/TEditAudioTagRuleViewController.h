// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "metadata/TAudioRule.h"
#include "ui/editors/TEditTagRuleViewController.h"

/// Editor of the audio and the video rule.
class TEditAudioTagRuleViewController : public TEditTagRuleViewController
{
    Q_OBJECT

public:
    TEditAudioTagRuleViewController(const TRulePtr &rule, const EditorContext &context);

protected:
    QStringList offeredTags() const override;
    QString placeholder() const override;
    TMetadataPtr metadataOf(const TFileObject &file) const override;
    QVariant valueOf(const TMetadata &metadata, const QString &tag) const override;
    bool isOfKind(const TFileObject &file) const override;
    QString otherKindRemark() const override;
};
