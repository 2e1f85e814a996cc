// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "metadata/TTagRule.h"
#include "ui/editors/LengthRows.h"
#include "ui/editors/TRuleViewController.h"
#include "ui/editors/TagChooser.h"

#include <optional>

/// What the editors of all rules for metadata tags share: the tag list with the sample file's
/// values, the default text, padding and the length limit.
class TEditTagRuleViewController : public TRuleViewController
{
    Q_OBJECT

protected:
    TEditTagRuleViewController(const TRulePtr &rule, const EditorContext &context);

    /// To be called by constructors, before finish().
    void addTagRows();
    TagChooser *chooser() const { return m_chooser; }

    /// The tags on offer; none when the settings do not say which.
    virtual QStringList offeredTags() const = 0;
    /// What stands in the list instead of tags.
    virtual QString placeholder() const = 0;
    /// The metadata in which the rule looks; null when it has not been read.
    virtual TMetadataPtr metadataOf(const TFileObject &file) const = 0;
    /// The file's value for a tag; invalid when there is none.
    virtual QVariant valueOf(const TMetadata &metadata, const QString &tag) const = 0;
    virtual bool isOfKind(const TFileObject &file) const = 0;
    /// "%1 is not an image.", in the language of people.
    virtual QString otherKindRemark() const = 0;

    void refresh() override;

private:
    void showValues();
    QString remarkFor(const TFileObject *file) const;

    TagChooser *m_chooser = nullptr;
    std::optional<LengthRows> m_length;
    QStringList m_offered;
    TMetadataPtr m_metadata; ///< whose values are shown
    QString m_remark;
};
