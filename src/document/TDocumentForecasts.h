// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/ForecastStepper.h"

#include <QHash>

#include <optional>

/// What a run would write for the files of a batch, where that is not what the list shows, and what
/// one has written. Where all files want one name most differ from it by a number, and nothing else
/// of them is kept. Main thread only, like the entries; a forecast is forgotten when its name
/// changes, but what a run has done to a file holds for good.
class TDocumentForecasts
{
public:
    using Forecast = ForecastStepper::Forecast;

    bool isEmpty() const { return m_numbers.isEmpty() && m_others.isEmpty(); }
    void clear();
    void remove(const TFileObject &file);
    /// Takes the place of what was known of the file; nothing is foreseen of a processed one.
    void insert(const TFileObject &file, const Forecast &forecast);
    /// A run has been through the file, and its target is the name that it was given or meant to
    /// get; failure says why it did not get it, and is empty when it did.
    void insertOutcome(const TFileObject &file, const QString &failure);
    /// Nothing when none is known, or when it is as shown. Of a processed file, its outcome.
    std::optional<Forecast> find(const TFileObject &file) const;

private:
    QHash<const TFileObject *, quint32> m_numbers; ///< behind the shown name; 0 for none
    QHash<const TFileObject *, Forecast> m_others;
    QHash<const TFileObject *, QString> m_failures; ///< of processed files; none for most
};
