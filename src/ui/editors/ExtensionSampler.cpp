// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/ExtensionSampler.h"

#include <QPromise>
#include <QThreadPool>

#include <memory>
#include <utility>

ExtensionSampler::ExtensionSampler(QObject *parent)
    : QObject(parent)
{
    connect(&m_watcher, &QFutureWatcherBase::finished, this, &ExtensionSampler::finish);
}

void ExtensionSampler::ask(const TExtensionHandler &handler, const TFileObject &file,
                           qint64 batchSize)
{
    forget();
    const Work work = [copy = std::shared_ptr(handler.copyForRun()), file = file.copy(),
                       batchSize] {
        TRuleDict dict;
        dict.batchSize = batchSize;
        const QString extension = copy->processWithFileObject(*file, nullptr, dict);
        return Sample{extension, dict.tookTooLong};
    };
    if (handler.handlingMethod() != TExtensionHandler::kRegEx)
        Q_EMIT answered(work());
    else if (m_watcher.isRunning())
        m_next = work;
    else
        start(work);
}

void ExtensionSampler::forget()
{
    m_next = {};
    m_isWanted = false;
}

void ExtensionSampler::start(const Work &work)
{
    const auto promise = std::make_shared<QPromise<Sample>>();
    m_watcher.setFuture(promise->future());
    promise->start();
    m_isWanted = true;
    QThreadPool::globalInstance()->start([promise, work] {
        promise->addResult(work());
        promise->finish();
    });
}

void ExtensionSampler::finish()
{
    if (m_next)
        start(std::exchange(m_next, {}));
    else if (std::exchange(m_isWanted, false))
        Q_EMIT answered(m_watcher.result());
}
