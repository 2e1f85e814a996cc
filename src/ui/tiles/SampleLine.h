// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocument.h"
#include "ui/tiles/ColouredText.h"

#include <QTimer>
#include <QWidget>

/// One file's old and new name, the new one in the colours of the tiles that its parts come from,
/// and a note behind them: what is to be known of all names now, or else a hint. Follows the
/// document; what is missing for a new name stands in its place.
class SampleLine : public QWidget
{
    Q_OBJECT

public:
    /// The document outlives the line.
    explicit SampleLine(TDocument &document, QWidget *parent = nullptr);

    /// Null: the first of the batch.
    void setFile(const std::shared_ptr<TFileObject> &file);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void followBatch();
    void follow();
    const TFileObject *file() const;
    ColouredText newName(const TFileObject &file) const;
    QString news() const;
    QString hint() const;
    int paintNote(QPainter &painter, int place) const;

    TDocument &m_document;
    std::shared_ptr<TFileObject> m_file;
    QTimer m_later;
    QString m_oldName; ///< empty without files
    ColouredText m_newName;
    QString m_news; ///< of the batch; empty for none
};
