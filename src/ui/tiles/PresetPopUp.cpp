// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/tiles/PresetPopUp.h"

#include "document/TDocumentPresets.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QStandardItemModel>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QWheelEvent>

#include <algorithm>

namespace {

/// Room for the title in any language.
constexpr int kLeastCharacters = 8;
/// Longer names are cut in the list.
constexpr int kMostCharacters = 48;
constexpr int kListMargin = 40; ///< for the scroll bar and around the names

} // namespace

PresetPopUp::PresetPopUp(QWidget *parent)
    : QComboBox(parent)
{
    setAccessibleName(tr("Presets"));
    setPlaceholderText(tr("Presets"));
    setToolTip(tr("Recipes to use again: save this one, or choose one that was saved"));
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(kLeastCharacters);
    setMaxVisibleItems(20);
    connect(this, &QComboBox::activated, this, [this](int index) {
        setCurrentIndex(-1);
        Q_EMIT presetChosen(index);
    });
    setPresetNames({});
}

void PresetPopUp::setPresetNames(const QStringList &names)
{
    clear();
    addItem(tr("Save Preset..."));
    insertSeparator(count());
    addItem(tr("Delete Presets..."));
    insertSeparator(count());
    addItems(names);
    setCurrentIndex(-1);
    setCanSave(m_canSave);
    view()->setTextElideMode(Qt::ElideMiddle);
    view()->setMinimumWidth(std::min(view()->sizeHintForColumn(0) + kListMargin,
                                     fontMetrics().averageCharWidth() * kMostCharacters));
}

void PresetPopUp::setCanSave(bool canSave)
{
    m_canSave = canSave;
    if (auto *items = qobject_cast<QStandardItemModel *>(model()))
        items->item(TDocumentPresets::kSaveItem)->setEnabled(canSave);
}

void PresetPopUp::showPopup()
{
    QComboBox::showPopup();
    view()->setCurrentIndex({});
}

void PresetPopUp::paintEvent(QPaintEvent *)
{
    QStyleOptionComboBox option;
    initStyleOption(&option);
    option.currentText = placeholderText();
    QStylePainter painter(this);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

void PresetPopUp::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
    case Qt::Key_Down:
    case Qt::Key_Up:
    case Qt::Key_F4:
        showPopup();
        break;
    default:
        event->ignore();
    }
}

void PresetPopUp::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}
