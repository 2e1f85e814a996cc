// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocument.h"
#include "support/FaultyFileManager.h"
#include "support/ManualClock.h"
#include "support/PumpedMainThread.h"
#include "support/Rules.h"
#include "support/ScriptedHost.h"
#include "support/TemporaryTree.h"

#include <QSignalSpy>
#include <QUrl>

#include <chrono>

/// Reads metadata from a table by file name; answers come when the test says so, or at once.
class TableGatherer : public TDocumentGatherer
{
public:
    struct Table
    {
        QHash<QString, TMetadataSource::Metadata> byName;
        bool holdBack = false;
        std::vector<std::function<void()>> held;
        QStringList asked;
    };

    TableGatherer(Table &table, Completion completion)
        : m_table(table)
        , m_completion(std::move(completion))
    {
    }
    ~TableGatherer() override { m_table.held.clear(); }
    void add(std::vector<TFileItem> files) override
    {
        for (const TFileItem &file : files) {
            const QString name = file.url.lastPathComponent();
            m_table.asked += name;
            if (m_table.holdBack)
                m_table.held.emplace_back([this, name] { complete(name); });
            else
                complete(name);
        }
    }

private:
    void complete(const QString &name) { m_completion(m_table.byName.value(name)); }

    Table &m_table;
    Completion m_completion;
};

/// A document over real files, with a scripted window and a main thread that runs when pumped.
struct DocumentFixture
{
    static constexpr std::chrono::seconds kPatience{30};

    TemporaryTree tree;
    FaultyFileManager disk;
    ManualClock clock{TDate::fromSeconds(1'751'551'509)}; // 2025-07-03 14:05:09 UTC
    PumpedMainThread mainThread;
    Notifications notifications;
    ScriptedHost host;
    TableGatherer::Table metadata;
    WorkerQueue worker;
    std::shared_ptr<RecoveryProgress> recovery = std::make_shared<RecoveryProgress>();
    bool canMakeLogs = true;
    std::unique_ptr<TDocument> document = makeDocument(host);

    std::unique_ptr<TDocument> makeDocument(ScriptedHost &window)
    {
        return std::make_unique<TDocument>(
            window,
            TDocumentServices{
                mainThread,
                disk,
                clock,
                notifications,
                worker,
                PresetsManager(tree.path(QStringLiteral("shipped")),
                               tree.path(QStringLiteral("presets"))),
                [this] { return canMakeLogs ? tree.folder(QStringLiteral("Logs")) : QString(); },
                [this](TDocumentGatherer::Completion completion) {
                    return std::make_unique<TableGatherer>(metadata, std::move(completion));
                },
                {},
                recovery});
    }
    /// Runs posted work until the condition holds; false when that takes too long.
    bool pumpUntil(const std::function<bool()> &condition)
    {
        std::stop_source late;
        const std::jthread watchdog([&late](const std::stop_token &done) {
            std::mutex mutex;
            std::unique_lock lock(mutex);
            std::condition_variable_any wake;
            if (!wake.wait_for(lock, done, kPatience, [] { return false; }) &&
                !done.stop_requested())
                late.request_stop();
        });
        return mainThread.pumpUntil(condition, late.get_token());
    }
    static bool isIdle(const TDocument &document)
    {
        return !document.isReceivingDrop() && document.remainingAOps() == 0 &&
               !document.isAnalysing() && !document.isRenaming();
    }
    bool settle()
    {
        return pumpUntil([this] { return isIdle(*document); });
    }
    QStringList makeFiles(const QString &pattern, int count) const
    {
        QStringList names;
        for (int i = 0; i < count; ++i)
            names += tree.file(pattern.arg(i, 4, 10, QLatin1Char('0')));
        return names;
    }
    TFileURLs urls(const QStringList &paths) const
    {
        TFileURLs urls;
        for (const QString &path : paths)
            urls += TFileURL::fileURLWithPath(path.startsWith(QLatin1Char('/')) ? path
                                                                                : tree.path(path));
        return urls;
    }
    /// Drops and waits for the names.
    bool drop(const QStringList &paths, qsizetype row = 1'000'000)
    {
        document->addFiles(urls(paths), row);
        return settle();
    }
    bool useRules(const TRuleList &rules)
    {
        document->addRules(rules, 0);
        return settle();
    }
    QStringList names(const TFileList &files) const
    {
        QStringList names;
        for (const auto &file : files)
            names += file->sourceURL().lastPathComponent();
        return names;
    }
    QStringList names() const { return names(document->sourceObjectArray()); }
    QStringList targets() const
    {
        QStringList targets;
        for (const auto &file : document->sourceObjectArray())
            targets += file->targetName();
        return targets;
    }
    QStringList rules() const
    {
        QStringList rules;
        for (const TRulePtr &rule : document->ruleArray())
            rules += rule->name();
        return rules;
    }
};
