// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/MovePlanner.h"
#include "document/TMetadataSource.h"
#include "document/TRenameOperation.h"

/// What the run would really write, file by file in list order: un-armed rename operations over an
/// in-memory picture of the folders. Touches nothing and adds no problems.
class ForecastStepper
{
public:
    struct Settings
    {
        const TRuleList *rules = nullptr;              ///< a prepared copy, not owned
        TExtensionHandler *extensionHandler = nullptr; ///< copyForRun, not owned
        TOptions options;
        qint64 batchSize = 0;
    };
    struct Forecast
    {
        QString finalName;      ///< null when there are no rules; the wanted name when it must fail
        QString refusal;        ///< why the move would have to fail; empty otherwise
        bool unchanged = false; ///< left alone because its name would not change
    };

    ForecastStepper(FileManager &fileManager, Settings settings);

    /// Announces a file before the first step, so that shared folders are read once.
    void announce(const TFileItem &item);
    Forecast step(const TFileItem &item, const TMetadataSource::Metadata &metadata);

private:
    Settings m_settings;
    MovePlanner m_planner;
    TFileObject m_file;
    qsizetype m_index = 0;
};
