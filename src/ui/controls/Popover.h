// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>
#include <QWidget>

class QPushButton;
class QScrollArea;

/// A small surface over its window, with an arrow to what it is about. It takes the keyboard when
/// opened, keeps Tab to itself and gives the keyboard back when closed. Closes on Escape, on Return
/// in a text field (which presses the content's default button instead, if there is one), on a
/// click elsewhere in the window and when its anchor goes away; not when the focus merely moves on.
/// Return on a button presses it.
/// Child of the anchor's window; deletes itself, and its content, after it was closed.
class Popover : public QWidget
{
    Q_OBJECT

public:
    /// Opens at once. part is the piece of the anchor that the arrow points to; null: all of it.
    /// The popover owns the content, which is wide and high as its size hint says and grows with
    /// it.
    static Popover *open(QWidget *content, QWidget *anchor, const QRect &part = {});
    ~Popover() override;

    QWidget *content() const { return m_content; }
    QWidget *anchor() const { return m_anchor; }
    /// Closes without waiting; closed() comes from within the call, once.
    void dismiss();

Q_SIGNALS:
    void closed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    Popover(QWidget *content, QWidget *anchor, const QRect &part);
    void end(bool withAnchor);
    void place();
    bool carriesAnchor(const QObject *object) const;
    QRect body() const;
    QPushButton *defaultButton() const;

    QWidget *m_content;
    QScrollArea *m_scroll; ///< around the content, which may be higher than the window
    QPointer<QWidget> m_anchor;
    QRect m_part;
    QPointer<QWidget> m_focusBefore;
    int m_arrowX = 0;
    bool m_isBelow = true; ///< the popover is below its anchor, the arrow on top
    bool m_isClosed = false;
};
