// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/TEditImageTagRuleViewController.h"

#include "metadata/EXIFSupport.h"
#include "platform/TypeIdentifiers.h"
#include "ui/controls/Theme.h"

#include <QEvent>
#include <QLineEdit>

TEditImageTagRuleViewController::TEditImageTagRuleViewController(const TRulePtr &rule,
                                                                 const EditorContext &context)
    : TEditTagRuleViewController(rule, context)
{
    addCategoryRow();
    addTagRows();
    finish(chooser()->filter());
}

void TEditImageTagRuleViewController::addCategoryRow()
{
    auto &rule = ruleAs<TImageTagRule>();
    m_category = new QComboBox(this);
    m_category->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    for (const QString &key : EXIFSupport::categories())
        m_category->addItem(EXIFSupport::titleForCategory(key));
    m_category->setMaxVisibleItems(m_category->count());
    connect(m_category, &QComboBox::activated, this, [this, &rule](int index) {
        rule.setCategory(m_category->itemText(index));
        form().edited();
    });
    form().addLoader([this, &rule] {
        m_category->setPlaceholderText(rule.category());
        m_category->setCurrentIndex(m_category->findText(rule.category()));
    });
    form().addRow(tr("Ca&tegory"), {m_category});
}

void TEditImageTagRuleViewController::refresh()
{
    TEditTagRuleViewController::refresh();
    markCategories();
}

void TEditImageTagRuleViewController::changeEvent(QEvent *event)
{
    TEditTagRuleViewController::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_category != nullptr)
        markCategories();
}

void TEditImageTagRuleViewController::markCategories()
{
    const std::shared_ptr<TFileObject> file = sampleFile();
    const TMetadataPtr metadata = file ? file->imageProperties() : nullptr;
    const QColor muted = ThemeColors::of(palette()).muted;
    const QStringList keys = EXIFSupport::categories();
    for (int i = 0; i < keys.size(); ++i) {
        // The first one is the top level, which every image has.
        const bool isMissing = metadata && i > 0 && !metadata->hasDictionary(keys.at(i));
        m_category->setItemData(i, isMissing ? QVariant(muted) : QVariant(), Qt::ForegroundRole);
    }
}

QStringList TEditImageTagRuleViewController::offeredTags() const
{
    return EXIFSupport::tagsForCategory(
        EXIFSupport::categoryForTitle(ruleAs<TImageTagRule>().category()));
}

QString TEditImageTagRuleViewController::placeholder() const
{
    return tr("Please Choose a Tag Category");
}

TMetadataPtr TEditImageTagRuleViewController::metadataOf(const TFileObject &file) const
{
    return file.imageProperties();
}

QVariant TEditImageTagRuleViewController::valueOf(const TMetadata &metadata,
                                                  const QString &tag) const
{
    const QString category = ruleAs<TImageTagRule>().metadataCategory();
    return category.isEmpty() ? metadata.value(tag) : metadata.value(category, tag);
}

bool TEditImageTagRuleViewController::isOfKind(const TFileObject &file) const
{
    return TypeIdentifiers::conformsTo(
        TypeIdentifiers::identifierForExtension(file.extension(), false), TypeIdentifiers::kImage);
}

QString TEditImageTagRuleViewController::otherKindRemark() const
{
    return tr("%1 is not an image.");
}
