// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "metadata/TCSVAggregator.h"

#include <QFutureWatcher>

/// Reads one CSV file at a time on a worker thread. The result is told on the main thread, to which
/// the loader belongs; nobody hears of a reading that was given up, and destruction waits for none.
class CSVLoader : public QObject
{
    Q_OBJECT

public:
    struct Result
    {
        QString path;
        TCSVContents contents;
        int columns = 0; ///< of the longest row
    };

    explicit CSVLoader(QObject *parent);
    ~CSVLoader() override;

    /// Gives up the reading that is under way.
    void load(const QString &path);
    void cancel();
    /// Full progress.
    static constexpr int kWhole = 1000;

Q_SIGNALS:
    /// From 0 to kWhole.
    void progressed(int part);
    void loaded(const CSVLoader::Result &result);

private:
    void finish();

    QFutureWatcher<Result> m_watcher;
};
