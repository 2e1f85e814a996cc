// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/TEditAudioTagRuleViewController.h"

#include "metadata/ID3AVSupport.h"
#include "platform/TypeIdentifiers.h"

#include <QLineEdit>

TEditAudioTagRuleViewController::TEditAudioTagRuleViewController(const TRulePtr &rule,
                                                                 const EditorContext &context)
    : TEditTagRuleViewController(rule, context)
{
    addTagRows();
    finish(chooser()->filter());
}

QStringList TEditAudioTagRuleViewController::offeredTags() const
{
    return ID3AVSupport::tags();
}

QString TEditAudioTagRuleViewController::placeholder() const
{
    return tr("Please Choose a Tag");
}

TMetadataPtr TEditAudioTagRuleViewController::metadataOf(const TFileObject &file) const
{
    return file.ID3();
}

QVariant TEditAudioTagRuleViewController::valueOf(const TMetadata &metadata,
                                                  const QString &tag) const
{
    return metadata.value(tag);
}

/// A file whose content would tell counts by its name; looking into it is for others.
bool TEditAudioTagRuleViewController::isOfKind(const TFileObject &file) const
{
    return TypeIdentifiers::conformsTo(
        TypeIdentifiers::identifierForExtension(file.extension(), false),
        ruleAs<TAudioRule>().fileUTI());
}

QString TEditAudioTagRuleViewController::otherKindRemark() const
{
    return ruleAs<TAudioRule>().fileUTI() == TypeIdentifiers::kMovie
               ? tr("%1 is not a video file.")
               : tr("%1 is not an audio file.");
}
