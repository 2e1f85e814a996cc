// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "extensions/TExtensionHandler.h"

#include <QFutureWatcher>

#include <functional>

/// Works out what an extension handler gives for single files, one after another. A pattern may
/// take its time over a name, so it runs on a worker thread; of what is asked meanwhile only the
/// newest counts, and nobody hears of the others. Works on copies; destruction waits for nothing.
/// Main thread only.
class ExtensionSampler : public QObject
{
    Q_OBJECT

public:
    struct Sample
    {
        QString extension;
        bool tookTooLong = false;
    };

    explicit ExtensionSampler(QObject *parent);

    /// Forgets what was asked before. Without a pattern the answer comes from within the call.
    void ask(const TExtensionHandler &handler, const TFileObject &file, qint64 batchSize);
    void forget();

Q_SIGNALS:
    void answered(const ExtensionSampler::Sample &sample);

private:
    using Work = std::function<Sample()>;

    void start(const Work &work);
    void finish();

    QFutureWatcher<Sample> m_watcher;
    Work m_next;             ///< waits for the one in hand
    bool m_isWanted = false; ///< the answer of the one in hand
};
