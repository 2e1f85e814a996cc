// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/ForecastStepper.h"
#include "document/NameGeneration.h"

#include <optional>

class TDocument;

/// What the cells of the file table say about a file. Computed whenever it is shown, since 100,000
/// rows must not keep texts. Main thread only.
namespace FileCells {

/// Nothing when it is not known, or what is shown.
using Forecast = std::optional<ForecastStepper::Forecast>;

using Extension = NameGeneration::Extension;

/// What stands behind a new name when the run would write something else.
struct Note
{
    QString text; ///< empty when there is nothing to say
    bool isRefusal = false;
};

/// The name on disk, with its extension.
const QString &currentName(const TFileObject &file);
/// The new name without its extension, as the recipe made it; the second one with its extension.
QString shownName(const TFileObject &file);
QString wantedName(const TFileObject &file);
/// The name on disk after the run, as far as that is known.
QString newName(const TFileObject &file, const Forecast &forecast);
/// True when the recipe gives the file the name that it has.
bool isUnchanged(const TFileObject &file, const Forecast &forecast);
/// The same, or that there is no recipe: what is shown as the new name then is only a remark.
bool keepsName(const TDocument &document, const TFileObject &file, const Forecast &forecast);
/// What the table shows behind the new name; nothing behind the remark that there is no recipe.
Extension shownExtension(const TDocument &document, const TFileObject &file);
/// The extension is the one that is shown.
Note note(const TFileObject &file, const Forecast &forecast, const Extension &extension);
/// The worst of the file's problems; a name that the run must refuse counts as a warning.
int level(const TFileObject &file, const Forecast &forecast);
/// The file's problems, and why the run would refuse its name.
TErrorLog problems(const TFileObject &file, const Forecast &forecast);

QString dateText(TDate date);
/// The same without the time, where there is no room for it.
QString dayText(TDate date);
/// In words: the level, or that a run has been through the file.
QString stateText(const TFileObject &file, const Forecast &forecast);
/// The file's problems, one a line; for a file without any, what is to be known of its state.
QString stateToolTip(const TFileObject &file, const Forecast &forecast);
/// The whole new name, and why the run would write something else than the new name that is shown;
/// plain text.
QString newNameInFull(const TFileObject &file, const Forecast &forecast,
                      const Extension &extension);

} // namespace FileCells
