// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocument.h"
#include "ui/controls/Card.h"

#include <memory>

class RecipeCommands;

/// The recipe of a batch: the preset pop-up, the tiles of its rules, the extension's tile, and the
/// sample line that shows one file's new name part by part. Edits go to the document; double clicks
/// and deletions as the notifications it knows. Main thread only.
class RecipeCard : public Card
{
    Q_OBJECT

public:
    /// Both outlive the card.
    RecipeCard(TDocument &document, Notifications &notifications, QWidget *parent = nullptr);
    ~RecipeCard() override;

    void setPresetNames(const QStringList &names);
    /// The file that the sample line shows; null: the first of the batch.
    void setSampleFile(const std::shared_ptr<TFileObject> &file);
    /// Null when the rule has no tile.
    QWidget *tileOf(const TRulePtr &rule) const;
    QWidget *extensionTile() const;
    QWidget *presetPopUp() const;
    /// Around the tiles of the rules.
    const QWidget &tiles() const;
    /// The outlined tile, whose editor is open; null: none.
    void setEditedTile(QWidget *tile);
    RecipeCommands &commands() const;
    void selectAllRules();
    void focusRecipe();
    void startDupeDrag(const TRulePtr &rule);

Q_SIGNALS:
    /// An item of the pop-up, as TDocument::rulePresetChosen counts them; deleting is one of them.
    void presetChosen(qsizetype index);
    void extensionEditRequested();
    void selectionChanged();

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    class Private;
    std::unique_ptr<Private> m_private;
};
