// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSize>
#include <QString>

#include <initializer_list>

class QAbstractItemView;
class QHBoxLayout;
class QKeyEvent;
class QLabel;
class QPushButton;
class QVBoxLayout;
class QWidget;

/// The pieces that the small windows have in common, so that they stand on one grid.
namespace SheetParts {

inline constexpr int kMargin = 20;
inline constexpr int kGap = 8;
inline constexpr int kWideGap = 16;

/// The layout of a window, with its margins.
QVBoxLayout *column(QWidget *window);
/// What the window is about, bold and a little larger. Texts are shown as they are, never as
/// mark-up.
QLabel *title(const QString &text, QWidget *parent);
/// Wrapped text that can be selected, some sixty characters wide.
QLabel *text(const QString &text, QWidget *parent);
/// The same in the quieter colour, which follows the scheme.
QLabel *muted(const QString &text, QWidget *parent);
/// A text that may be a path or an overlong name, so that it can be wrapped anywhere.
QString breakable(const QString &text);
/// Gives the view rounded surroundings; the result owns it.
QWidget *framed(QWidget *view, QWidget *parent);
/// Where the keyboard is shows once a row is selected: selects it at the first arrow key, which
/// then has done its work and passes no row over.
bool takesFirstStep(const QAbstractItemView &view, const QKeyEvent &event);
/// Buttons at the trailing edge, in their order.
QHBoxLayout *buttonRow(std::initializer_list<QPushButton *> buttons);
/// Wide enough for about so many characters in the widget's font.
int widthOf(const QWidget *widget, int characters);
/// Room for about so many characters and lines, but within a screen of 1024 by 600.
QSize sizeOf(const QWidget *widget, int characters, int lines);

} // namespace SheetParts
