// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocument.h"

#include <QAbstractButton>

/// The last tile of every recipe: what becomes of the extension. Pressed by a click or Enter to ask
/// for its editor. Follows the document's handler.
class ExtensionTile : public QAbstractButton
{
    Q_OBJECT

public:
    /// The document outlives the tile.
    explicit ExtensionTile(TDocument &document, QWidget *parent = nullptr);

    void setEdited(bool isEdited);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void follow();
    QFont titleFont() const;

    TDocument &m_document;
    bool m_isEdited = false;
};
