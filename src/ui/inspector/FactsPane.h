// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/inspector/FileReading.h"

#include <QWidget>

#include <optional>

class QGridLayout;
class QLabel;

/// The name of one file, its kind and size, and its dates, dimensions and duration in a short list.
class FactsPane : public QWidget
{
    Q_OBJECT

public:
    explicit FactsPane(QWidget *parent = nullptr);

    /// What is not known yet is left out.
    void showFacts(const TFileItem &file, const FileReading &reading);

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    enum Row { Dimensions, Duration, Created, Modified, kRows };

    void setRow(Row row, const QString &text);
    void elideName();
    void arrange();
    void place(bool isStacked);
    void recolour();

    QString m_fullName;
    QLabel *m_name;
    QLabel *m_kind;
    QGridLayout *m_list;
    QLabel *m_titles[kRows];
    QLabel *m_values[kRows];
    std::optional<bool> m_isStacked; ///< nothing before the first placing
};
