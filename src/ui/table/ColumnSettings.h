// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHeaderView>
#include <QMenu>
#include <QTimer>

/// Which columns the file table shows, in which order and how wide: remembered for the next window
/// and changed in a menu. Until the user changes a width, the names share the room there is, and
/// the columns that matter least give way to them.
class ColumnSettings : public QObject
{
    Q_OBJECT

public:
    /// The header belongs to the table and outlives the settings.
    explicit ColumnSettings(QHeaderView &header, QObject *parent = nullptr);
    ~ColumnSettings() override;

    QMenu *menu() { return &m_menu; }
    void showInitialColumns();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void load();
    void save();
    void fillMenu();
    void checkShown();
    void fit();
    void shareNames(int room);
    int usualWidth(int column) const;
    int leastWidth(int column) const;
    int lastVisible() const;
    int widthFor(const QString &sample) const;

    QHeaderView &m_header;
    QMenu m_menu;
    QTimer m_saving;
    bool m_isFitting = true;    ///< the user has not set a width
    bool m_isAdjusting = false; ///< sizes change, but not by the user's hand
};
