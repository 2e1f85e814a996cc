// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/TEditTagRuleViewController.h"

#include "commonprocs/ByteNames.h"

TEditTagRuleViewController::TEditTagRuleViewController(const TRulePtr &rule,
                                                       const EditorContext &context)
    : TRuleViewController(rule, context)
{
    // The metadata of the sample file may come while the editor is open.
    connect(&context.document, &TDocument::filesChanged, this,
            &TEditTagRuleViewController::showValues);
}

void TEditTagRuleViewController::addTagRows()
{
    auto &rule = ruleAs<TTagRule>();
    m_chooser = new TagChooser(this);
    form().addWide(m_chooser);
    connect(m_chooser, &TagChooser::tagChosen, this, [this, &rule](const QString &tag) {
        rule.setTheTag(tag);
        form().edited();
    });
    QLineEdit *defaultText =
        form().text(settingOf(rule, &TTagRule::defaultString, &TTagRule::setDefaultString));
    defaultText->setPlaceholderText(tr("nothing"));
    form().addRow(tr("&Without a value"), {defaultText});
    m_length.emplace(form(), rule);
}

void TEditTagRuleViewController::refresh()
{
    const QStringList offered = offeredTags();
    const bool isOther = offered != m_offered || m_remark.isNull();
    if (isOther) {
        m_offered = offered;
        m_metadata.reset();
        m_remark = QString();
        m_chooser->setTags(offered, placeholder());
    }
    m_chooser->setChosenTag(ruleAs<TTagRule>().theTag());
    m_length->refresh();
    showValues();
}

void TEditTagRuleViewController::showValues()
{
    const std::shared_ptr<TFileObject> file = sampleFile();
    const TMetadataPtr metadata = file && isOfKind(*file) ? metadataOf(*file) : nullptr;
    const QString remark = remarkFor(file.get());
    if (metadata == m_metadata && remark == m_remark)
        return;
    m_metadata = metadata;
    m_remark = remark;
    m_chooser->setValues(
        [this, metadata](const QString &tag) -> std::optional<QString> {
            const QVariant value = metadata ? valueOf(*metadata, tag) : QVariant();
            return value.isValid() ? std::optional(TTagRule::stringFromTagValue(value))
                                   : std::nullopt;
        },
        remark);
    form().preview().setLines(previewLines());
}

QString TEditTagRuleViewController::remarkFor(const TFileObject *file) const
{
    if (m_offered.isEmpty())
        return tr("The rule's category is none of those on offer.");
    if (file == nullptr)
        return tr("With files in the batch, their values are shown here.");
    const QString name = ByteNames::forDisplay(file->sourceURL().lastPathComponent());
    if (!isOfKind(*file))
        return otherKindRemark().arg(name);
    const TMetadataPtr metadata = metadataOf(*file);
    if (!metadata)
        return tr("The metadata of %1 is being read.").arg(name);
    return metadata->isEmpty() ? tr("%1 has no metadata.").arg(name) : tr("Values of %1").arg(name);
}
