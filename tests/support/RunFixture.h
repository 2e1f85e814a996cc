// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/FileExpansion.h"
#include "document/ForecastStepper.h"
#include "document/TRenameRun.h"
#include "document/TRuleKinds.h"
#include "support/FaultyFileManager.h"
#include "support/ManualClock.h"
#include "support/TemporaryTree.h"

/// A real folder "files", a logs folder beside it, and a run over all files of the folder.
struct RunFixture
{
    TemporaryTree tree;
    FaultyFileManager disk;
    ManualClock clock{TDate::fromSeconds(1'751'551'509)}; // 2025-07-03 14:05:09 UTC
    TRuleList rules;
    TExtensionHandler handler;
    TOptions options;
    std::vector<TFileItem> files;
    std::vector<TRenameReport> reports;
    QString textLog;
    QStringList refusals; ///< of the last forecast, one text for each file

    QString logsFolder() const { return tree.path(QStringLiteral("Logs")); }
    QStringList names() const { return tree.list(QStringLiteral("files")); }

    void makeFiles(const QStringList &fileNames)
    {
        for (const QString &name : fileNames)
            tree.file(QStringLiteral("files/") + name, name.toUtf8());
    }
    void expand()
    {
        FileExpansion expansion(disk);
        expansion.add(tree.folder(QStringLiteral("files")));
        files = expansion.takeFiles();
    }
    QStringList forecast()
    {
        TRuleList copy = TRuleKinds::copyArrayViaEncode(rules);
        NameGeneration::prepareAllRules(copy);
        const auto extensions = handler.copyForRun();
        ForecastStepper stepper(
            disk, {&copy, extensions.get(), options, static_cast<qint64>(files.size())});
        for (const TFileItem &file : files)
            stepper.announce(file);
        QStringList result;
        refusals.clear();
        for (const TFileItem &file : files) {
            const auto forecast = stepper.step(file, {});
            refusals += forecast.refusal;
            result += forecast.refusal.isEmpty() ? forecast.finalName
                                                 : QStringLiteral("!") + forecast.finalName;
        }
        return result;
    }
    std::unique_ptr<TRenameRun> makeRun()
    {
        TRuleList copy = TRuleKinds::copyArrayViaEncode(rules);
        NameGeneration::prepareAllRules(copy);
        auto run =
            std::make_unique<TRenameRun>(disk, clock, files,
                                         TRenameRun::Settings{std::move(copy), handler.copyForRun(),
                                                              options, logsFolder(), true});
        run->setTextLog([this](const QString &text) { textLog += text; });
        return run;
    }
    /// Runs to the end, or is asked to stop while the file of the given name is in hand.
    TRenameSummary run(const QByteArray &abortDuring = {})
    {
        reports.clear();
        textLog.clear();
        std::atomic<bool> abort = false;
        const auto renameRun = makeRun();
        if (const auto prepared = renameRun->prepare(); !prepared) {
            TRenameSummary refused;
            refused.problem = prepared.message();
            return refused;
        }
        if (!abortDuring.isNull())
            disk.before(
                FaultyFileManager::Call::RenameNoReplace, [&abort] { abort = true; }, abortDuring);
        return renameRun->run([this](const TRenameReport &report) { reports.push_back(report); },
                              abort);
    }
    /// Final names in list order, refused ones with "!".
    QStringList reported() const
    {
        QStringList result;
        for (const TRenameReport &report : reports)
            result += report.critical ? QStringLiteral("!") + report.finalName : report.finalName;
        return result;
    }
};
