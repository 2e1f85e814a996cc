// SPDX-License-Identifier: GPL-3.0-or-later
// What a batch costs its window: drops a folder of that many files on a document under Qt's event
// loop, then edits a rule as a key press does. Prints the seconds from the drop to the first rows
// and to all names, the seconds from the edit to the first and to all new names, and the longest
// time in milliseconds for which a heartbeat had to wait for the main thread, by the clock and by
// what that thread computed.
#include "Heartbeat.h"
#include "commonprocs/URLListProcessing.h"
#include "document/TDocument.h"
#include "document/TRuleKinds.h"
#include "platform/QtMainThread.h"

#include <QCoreApplication>

#include <chrono>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

using Moment = std::chrono::steady_clock::time_point;

double secondsSince(Moment start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// A window that shows nothing.
class QuietHost : public TDocumentHost
{
public:
    void ask(const Question &, Answered) override {}
    void chooseFolder(const FolderPanel &, Chosen) override {}
    void chooseSaveFile(const SavePanel &, Chosen) override {}
    void setWindowTitle(const QString &) override {}
    void setStatus(const QString &) override {}
    void setBusy(bool) override {}
    void showProgress(qint64, qint64) override {}
    void hideProgress() override {}
    void setRenameBadge(qint64) override {}
    void setRollBackEnabled(bool) override {}
    void setColorCodeChecked(bool) override {}
    void resetSortMenu() override {}
    void selectFiles(const std::vector<qsizetype> &) override {}
    void focusFileTable() override {}
    void showErrorLog(const TErrorLog &) override {}
    void editRule(const TRulePtr &, const QVariant &) override {}
    void startDupeDrag(const TRulePtr &, const QVariant &) override {}
    void showProgressSheet(const std::shared_ptr<TProgressSheetController> &) override {}
    void progressSheetChanged() override {}
    void endProgressSheet() override {}
    void showLogWindow(const std::shared_ptr<TLogWindowController> &) override {}
    void setPresetNames(const QStringList &) override {}
    void askPresetName(const QString &,
                       std::function<void(const std::optional<QString> &)>) override
    {
    }
    void showPresetRemoval() override {}
    void rollBackLogWithURL(const TFileURL &) override {}
    void hideWindow() override {}
};

class Bench
{
public:
    explicit Bench(const QString &folder)
        : m_folder(folder)
        , m_document(m_host, {m_mainThread,
                              m_disk,
                              m_clock,
                              m_notifications,
                              m_worker,
                              PresetsManager(QString(), QString()),
                              {},
                              {}})
    {
        const auto rule = [](const char *kind) {
            return TRuleKinds::ruleForIdentifier(QString::fromLatin1(kind));
        };
        m_document.addRules(
            {rule("Text"), rule("Separator"), rule("Counter"), rule("Separator"), rule("Original")},
            0);
        wait([this] { return !m_document.isAnalysing(); });
    }

    int run()
    {
        const Heartbeat heartbeat;
        const Moment dropped = std::chrono::steady_clock::now();
        m_document.addFiles({TFileURL::fileURLWithPath(m_folder)}, 0);
        wait([this] { return !m_document.sourceObjectArray().empty(); });
        const double firstRows = secondsSince(dropped);
        wait([this] {
            return !m_document.isReceivingDrop() && m_document.remainingAOps() == 0 &&
                   !m_document.isAnalysing();
        });
        const double allNames = secondsSince(dropped);

        const Moment pressed = std::chrono::steady_clock::now();
        const TRulePtr rule = m_document.ruleArray()[0];
        rule->setProperties({{u"theText"_s, u"Holiday"_s}});
        m_notifications.post(Notifications::kRuleChanged,
                             {{Notifications::kTheModel, QVariant::fromValue(rule)}});
        wait([this] {
            return m_document.sourceObjectArray()[0]->targetName().startsWith("Holiday"_L1);
        });
        const double firstNew = secondsSince(pressed);
        wait([this] { return !m_document.isAnalysing(); });
        const double allNew = secondsSince(pressed);
        std::printf("%.3f %.3f %.3f %.3f %.1f %.1f\n", firstRows, allNames, firstNew, allNew,
                    heartbeat.longest() * 1000, heartbeat.longestUsed() * 1000);
        return 0;
    }

private:
    template <typename Condition>
    static void wait(Condition condition)
    {
        while (!condition())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    QString m_folder;
    QtMainThread m_mainThread;
    DiskFileManager m_disk;
    SystemClock m_clock;
    Notifications m_notifications;
    QuietHost m_host;
    WorkerQueue m_worker;
    TDocument m_document;
};

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: bench_document FOLDER\n", stderr);
        return 2;
    }
    return Bench(QString::fromLocal8Bit(argv[1])).run();
}
