// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/ForecastStepper.h"

#include <QHash>

#include <optional>

/// What a run would write for the files of a batch, or has written, where that is not what the list
/// shows. Where all files want one name most differ from it by a number, and nothing else of them
/// is kept. Main thread only, like the entries; an entry is forgotten when its name changes.
class TDocumentForecasts
{
public:
    using Forecast = ForecastStepper::Forecast;

    bool isEmpty() const { return m_numbers.isEmpty() && m_others.isEmpty(); }
    void clear();
    void remove(const TFileObject &file);
    /// Takes the place of what was known of the file.
    void insert(const TFileObject &file, const Forecast &forecast);
    /// Nothing when none is known, or when it is as shown.
    std::optional<Forecast> find(const TFileObject &file) const;

private:
    QHash<const TFileObject *, quint32> m_numbers; ///< behind the shown name; 0 for none
    QHash<const TFileObject *, Forecast> m_others;
};
