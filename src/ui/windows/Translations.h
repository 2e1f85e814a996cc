// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

/// The languages that Tavrin speaks: English, and those of the translations among the resources
/// (i18n/tavrin_CODE.qm). Main thread only.
namespace Translations {

/// Codes in alphabetical order, "en" among them.
QStringList available();
/// The language's own name for itself.
QString nativeName(const QString &code);
/// Gives the application the chosen language, else the system's if it is there, else English; with
/// it come Qt's own texts. Done once, at start.
void install();

} // namespace Translations
