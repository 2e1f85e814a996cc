// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/CSVLoader.h"

#include "ui/editors/CSVTableModel.h"

#include <QFileInfo>
#include <QPromise>
#include <QThreadPool>

#include <memory>

namespace {

/// Other things than files may never come to an end.
CSVLoader::Result read(const QString &path, const TCSVProgress &progress)
{
    CSVLoader::Result result{path, {}, 0};
    const QFileInfo file(path);
    if (file.exists() && !file.isFile()) {
        result.contents.problem = CSVLoader::tr("This is not a file.");
        return result;
    }
    result.contents = contentsOfCSVFile(path, progress);
    result.columns = CSVTableModel::columnsOf(result.contents.rows);
    return result;
}

} // namespace

CSVLoader::CSVLoader(QObject *parent)
    : QObject(parent)
{
    connect(&m_watcher, &QFutureWatcherBase::progressValueChanged, this, &CSVLoader::progressed);
    connect(&m_watcher, &QFutureWatcherBase::finished, this, &CSVLoader::finish);
}

CSVLoader::~CSVLoader()
{
    cancel();
}

void CSVLoader::cancel()
{
    m_watcher.cancel();
}

void CSVLoader::load(const QString &path)
{
    cancel();
    const auto promise = std::make_shared<QPromise<Result>>();
    promise->setProgressRange(0, kWhole);
    m_watcher.setFuture(promise->future());
    promise->start();
    QThreadPool::globalInstance()->start([promise, path] {
        promise->addResult(read(path, [&promise](double part) {
            promise->setProgressValue(static_cast<int>(part * kWhole));
            return !promise->isCanceled();
        }));
        promise->finish();
    });
}

void CSVLoader::finish()
{
    if (!m_watcher.isCanceled() && m_watcher.future().resultCount() > 0)
        Q_EMIT loaded(m_watcher.result());
}
