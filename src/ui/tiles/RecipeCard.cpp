// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/RecipeCard.h"

#include "ui/controls/AccessibleLabel.h"
#include "ui/controls/Theme.h"
#include "ui/tiles/ExtensionTile.h"
#include "ui/tiles/PresetPopUp.h"
#include "ui/tiles/RecipeDropArea.h"
#include "ui/tiles/RecipeScroll.h"
#include "ui/tiles/RecipeStrip.h"
#include "ui/tiles/RuleTile.h"
#include "ui/tiles/SampleLine.h"

#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {

constexpr int kSideMargin = 16;
constexpr int kMargin = 8;
constexpr int kSpacing = 12;
constexpr int kTilesColumn = 2;
constexpr int kColumns = 4;
/// So many must have room beside the preset pop-up, else the tiles go below it.
constexpr int kLeastCharacters = 48;

QLabel *makeLabel(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
    return label;
}

} // namespace

class RecipeCard::Private
{
public:
    Private(RecipeCard &card, TDocument &batch, Notifications &notifications)
        : document(batch)
        , label(makeLabel(RecipeCard::tr("Recipe"), &card))
        , presets(new PresetPopUp(&card))
        , strip(new RecipeStrip(batch, notifications, &card))
        , scroll(new RecipeScroll(strip, &card))
        , extension(new ExtensionTile(batch, &card))
        , sample(new SampleLine(batch, &card))
        , grid(new QGridLayout)
        , presetColumn(new QVBoxLayout)
    {
        auto *lines = new QVBoxLayout(&card);
        lines->setContentsMargins(kSideMargin, kMargin, kSideMargin, 0);
        lines->setSpacing(kMargin);
        grid->setHorizontalSpacing(kSpacing);
        grid->setVerticalSpacing(kMargin);
        grid->setColumnStretch(kTilesColumn, 1);
        presetColumn->addWidget(presets);
        AccessibleLabel::add(*presets);
        presetColumn->addStretch();
        grid->addWidget(label, 0, 0, Qt::AlignTop);
        grid->addLayout(presetColumn, 0, 1);
        grid->addWidget(scroll, 0, kTilesColumn);
        grid->addWidget(extension, 0, kColumns - 1, Qt::AlignTop);
        lines->addLayout(grid);
        lines->addWidget(sample);
        lines->addStretch();
        fitToFirstLine();
    }

    /// What stands beside the tiles is in the middle of their first line.
    void fitToFirstLine() const
    {
        const int height = strip->heightOfLines(1);
        label->setFixedHeight(height);
        const int above = std::max(0, (height - presets->sizeHint().height()) / 2);
        presetColumn->setContentsMargins(0, above, 0, 0);
    }

    /// Where it is narrow, the tiles have a line of their own.
    void fitToWidth(int width)
    {
        const int beside =
            label->sizeHint().width() + presets->sizeHint().width() + extension->sizeHint().width();
        const int room = width - 2 * kSideMargin - (kColumns - 1) * kSpacing - beside;
        const bool narrow = room < strip->fontMetrics().averageCharWidth() * kLeastCharacters;
        if (std::exchange(isNarrow, narrow) == narrow)
            return;
        grid->removeWidget(scroll);
        if (isNarrow)
            grid->addWidget(scroll, 1, 0, 1, kColumns);
        else
            grid->addWidget(scroll, 0, kTilesColumn);
    }

    TDocument &document;
    QLabel *label;
    PresetPopUp *presets;
    RecipeStrip *strip;
    RecipeScroll *scroll;
    ExtensionTile *extension;
    SampleLine *sample;
    QGridLayout *grid;
    QVBoxLayout *presetColumn;
    bool isNarrow = false;
};

RecipeCard::RecipeCard(TDocument &document, Notifications &notifications, QWidget *parent)
    : Card(parent)
    , m_private(std::make_unique<Private>(*this, document, notifications))
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setAccessibleName(tr("Recipe"));
    const Private &parts = *m_private;
    new RecipeDropArea(document, *parts.strip, *parts.scroll, *this); // the card's
    connect(parts.presets, &PresetPopUp::presetChosen, this, &RecipeCard::presetChosen);
    connect(parts.extension, &ExtensionTile::clicked, this, &RecipeCard::extensionEditRequested);
    connect(parts.strip, &TileStrip::selectionChanged, this, &RecipeCard::selectionChanged);
    const auto followRules = [&parts] {
        parts.presets->setCanSave(!parts.document.ruleArray().empty());
    };
    connect(&document, &TDocument::rulesChanged, this, followRules);
    connect(&document, &TDocument::extensionHandlerChanged, this,
            [this] { m_private->fitToWidth(width()); });
    followRules();
}

RecipeCard::~RecipeCard() = default;

void RecipeCard::setPresetNames(const QStringList &names)
{
    m_private->presets->setPresetNames(names);
}

void RecipeCard::setSampleFile(const std::shared_ptr<TFileObject> &file)
{
    m_private->sample->setFile(file);
}

QWidget *RecipeCard::tileOf(const TRulePtr &rule) const
{
    return m_private->strip->tileOf(rule);
}

QWidget *RecipeCard::extensionTile() const
{
    return m_private->extension;
}

QWidget *RecipeCard::presetPopUp() const
{
    return m_private->presets;
}

const QWidget &RecipeCard::tiles() const
{
    return *m_private->strip;
}

void RecipeCard::setEditedTile(QWidget *tile)
{
    m_private->strip->setEditedTile(qobject_cast<RuleTile *>(tile));
    m_private->extension->setEdited(tile == m_private->extension);
}

RecipeCommands &RecipeCard::commands() const
{
    return m_private->strip->commands();
}

void RecipeCard::selectAllRules()
{
    m_private->strip->selectAllRules();
}

void RecipeCard::focusRecipe()
{
    m_private->strip->focusRecipe();
}

void RecipeCard::startDupeDrag(const TRulePtr &rule)
{
    m_private->strip->startCopyDrag(rule);
}

void RecipeCard::changeEvent(QEvent *event)
{
    Card::changeEvent(event);
    if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange)
        return;
    if (m_private)
        m_private->fitToFirstLine();
}

void RecipeCard::resizeEvent(QResizeEvent *event)
{
    Card::resizeEvent(event);
    m_private->fitToWidth(width());
}
