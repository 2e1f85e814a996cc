// SPDX-License-Identifier: GPL-3.0-or-later
// What a batch costs its window: drops a folder on a document with a text rule and rules of the
// given kinds, under Qt's event loop, then edits the text as a key press does. Prints the seconds
// from the drop to the first rows and to all names, the seconds from the edit to the first and to
// all new names, the longest time in milliseconds for which a heartbeat had to wait for the main
// thread, by the clock and by what that thread computed, and the bytes a file that the process grew
// by.
#include "Heartbeat.h"
#include "ResidentMemory.h"
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

constexpr double kForecastTime = 1.5;

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
    Bench(QString folder, const QStringList &kinds)
        : m_folder(std::move(folder))
        , m_document(m_host, {m_mainThread,
                              m_disk,
                              m_clock,
                              m_notifications,
                              m_worker,
                              PresetsManager(QString(), QString()),
                              {},
                              {}})
    {
        TRuleList rules{TRuleKinds::ruleForIdentifier(u"Text"_s)};
        for (const QString &kind : kinds)
            rules.push_back(TRuleKinds::ruleForIdentifier(kind));
        m_document.addRules(rules, 0);
        wait([this] { return !m_document.isAnalysing(); });
    }

    int run()
    {
        const qint64 before = residentBytes();
        Heartbeat heartbeat;
        const Moment dropped = std::chrono::steady_clock::now();
        m_document.addFiles({TFileURL::fileURLWithPath(m_folder)}, 0);
        wait([this] { return !m_document.sourceObjectArray().empty(); });
        const double firstRows = secondsSince(dropped);
        wait([this] {
            return !m_document.isReceivingDrop() && m_document.remainingAOps() == 0 &&
                   !m_document.isAnalysing();
        });
        const double allNames = secondsSince(dropped);
        // The names that a run would write come after those that it wants.
        const Moment known = std::chrono::steady_clock::now();
        wait([known] { return secondsSince(known) > kForecastTime; });
        const qint64 grown = residentBytes() - before;
        heartbeat.skip();

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
        const auto files = static_cast<qint64>(m_document.sourceObjectArray().size());
        std::printf("%.3f %.3f %.3f %.3f %.1f %.1f %lld\n", firstRows, allNames, firstNew, allNew,
                    heartbeat.longest() * 1000, heartbeat.longestUsed() * 1000,
                    static_cast<long long>(grown / std::max<qint64>(files, 1)));
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
    mallopt(M_ARENA_MAX, 1); // as the program's own main() does
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2) {
        std::fputs("usage: bench_document FOLDER KIND...\n", stderr);
        return 2;
    }
    return Bench(arguments[1], arguments.sliced(2)).run();
}
