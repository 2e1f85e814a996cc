// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Notifications.h"
#include "platform/QtMainThread.h"
#include "platform/WorkerQueue.h"
#include "support/PumpedMainThread.h"

#include <QCoreApplication>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <semaphore>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Holds a worker until it is told to go on, and tells when it has arrived.
struct Gate
{
    std::binary_semaphore arrived{0};
    std::binary_semaphore open{0};

    void pass()
    {
        arrived.release();
        open.acquire();
    }
};

/// A main thread with Qt's event loop or pumped by hand, behind one face.
struct Door
{
    explicit Door(bool useQt)
    {
        if (useQt)
            qt.emplace();
        else
            pumped.emplace();
    }

    MainThread &thread()
    {
        if (qt)
            return *qt;
        return *pumped;
    }
    bool runUntil(const std::function<bool()> &done)
    {
        return qt ? QTest::qWaitFor(done) : pumped->pumpUntil(done);
    }
    void close()
    {
        qt.reset();
        pumped.reset();
    }

    std::optional<QtMainThread> qt;
    std::optional<PumpedMainThread> pumped;
};

void doors()
{
    QTest::addColumn<bool>("useQt");
    QTest::newRow("qt") << true;
    QTest::newRow("pumped") << false;
}

} // namespace

class TestQueues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void jobsRunInOrderOneAtATime()
    {
        std::vector<int> order; // touched by the worker alone
        std::atomic<int> inside = 0;
        bool overlapped = false;
        WorkerQueue queue;
        for (int i = 0; i < 1000; ++i) {
            queue.run([&, i](const std::stop_token &) {
                overlapped |= ++inside != 1;
                order.push_back(i);
                --inside;
            });
        }
        QVERIFY(queue.wait());
        QCOMPARE(queue.count(), size_t{0});
        QVERIFY(!overlapped);
        QCOMPARE(order.size(), size_t{1000});
        QVERIFY(std::is_sorted(order.begin(), order.end()));
    }

    void cancelStopsTheJobInHandAndDropsTheRest()
    {
        Gate gate;
        bool sawStop = false;
        bool secondRan = false;
        WorkerQueue queue;
        queue.run([&](const std::stop_token &stop) {
            gate.pass();
            sawStop = stop.stop_requested();
        });
        queue.run([&](const std::stop_token &) { secondRan = true; });
        gate.arrived.acquire();
        QCOMPARE(queue.count(), size_t{2});
        queue.cancel();
        QCOMPARE(queue.count(), size_t{1});
        gate.open.release();
        QVERIFY(queue.wait());
        QVERIFY(sawStop);
        QVERIFY(!secondRan);
    }

    void queueRunsOnAfterCancel()
    {
        WorkerQueue queue;
        queue.cancel();
        bool stopped = true;
        queue.run([&](const std::stop_token &stop) { stopped = stop.stop_requested(); });
        QVERIFY(queue.wait());
        QVERIFY(!stopped);
    }

    void suspendedQueueFinishesTheJobInHandOnly()
    {
        Gate gate;
        std::atomic<int> finished = 0;
        WorkerQueue queue;
        queue.run([&](const std::stop_token &) {
            gate.pass();
            ++finished;
        });
        queue.run([&](const std::stop_token &) { ++finished; });
        gate.arrived.acquire();
        queue.suspend();
        gate.open.release();
        QTRY_COMPARE(queue.count(), size_t{1});
        QCOMPARE(finished, 1);
        queue.resume();
        QVERIFY(queue.wait());
        QCOMPARE(finished, 2);
    }

    void waitGivesUpWhenStopped()
    {
        WorkerQueue queue;
        queue.suspend();
        queue.run([](const std::stop_token &) {});
        std::stop_source stop;
        const std::jthread stopper([&] { stop.request_stop(); });
        QVERIFY(!queue.wait(stop.get_token()));
    }

    void jobsMayAddJobs()
    {
        WorkerQueue queue;
        int depth = 0;
        std::function<void(std::stop_token)> job = [&](const std::stop_token &) {
            if (++depth < 100)
                queue.run(job);
        };
        queue.run(job);
        QVERIFY(queue.wait());
        QCOMPARE(depth, 100);
    }

    void destructionStopsAndJoins()
    {
        std::binary_semaphore started{0};
        bool ended = false;
        bool secondRan = false;
        const auto held = std::make_shared<int>();
        {
            WorkerQueue queue;
            queue.run([&](const std::stop_token &stop) {
                started.release();
                while (!stop.stop_requested())
                    std::this_thread::yield();
                ended = true;
            });
            queue.run([&, held](const std::stop_token &) { secondRan = true; });
            started.acquire();
        }
        QVERIFY(ended);
        QVERIFY(!secondRan);
        QCOMPARE(held.use_count(), 1);
    }
    void postsKeepTheirOrder_data() { doors(); }

    void postsKeepTheirOrder()
    {
        QFETCH(bool, useQt);
        Door door(useQt);
        std::vector<int> order;
        const std::jthread worker([&] {
            for (int i = 0; i < 1000; ++i)
                door.thread().post([&order, i] { order.push_back(i); });
        });
        QVERIFY(door.runUntil([&] { return order.size() == 1000; }));
        QVERIFY(std::is_sorted(order.begin(), order.end()));
    }
    void postOnTheMainThreadRunsLater_data() { doors(); }

    void postOnTheMainThreadRunsLater()
    {
        QFETCH(bool, useQt);
        Door door(useQt);
        bool ran = false;
        door.thread().post([&] { ran = true; });
        QVERIFY(!ran);
        QVERIFY(door.runUntil([&] { return ran; }));
    }
    void waitSeesItsResult_data() { doors(); }

    void waitSeesItsResult()
    {
        QFETCH(bool, useQt);
        Door door(useQt);
        QString result;
        bool onMain = false;
        std::atomic<bool> done = false;
        const std::jthread worker([&] {
            QString answer;
            const bool ran = door.thread().wait({}, [&] {
                onMain = door.thread().isMainThread();
                answer = u"asked"_s;
            });
            result = ran ? answer : QString();
            door.thread().post([&] { done = true; });
        });
        QVERIFY(door.runUntil([&] { return done.load(); }));
        QVERIFY(onMain);
        QCOMPARE(result, u"asked"_s);
    }
    void waitOnTheMainThreadRunsAtOnce_data() { doors(); }

    void waitOnTheMainThreadRunsAtOnce()
    {
        QFETCH(bool, useQt);
        Door door(useQt);
        bool ran = false;
        QVERIFY(door.thread().wait({}, [&] { ran = true; }));
        QVERIFY(ran);
    }
    void stoppedWaitNeverRuns_data() { doors(); }

    void stoppedWaitNeverRuns()
    {
        QFETCH(bool, useQt);
        Door door(useQt);
        bool ran = false;
        std::optional<bool> answer;
        {
            std::binary_semaphore begun{0};
            WorkerQueue queue;
            queue.run([&](const std::stop_token &stop) {
                begun.release();
                answer = door.thread().wait(stop, [&] { ran = true; });
            });
            begun.acquire();
            std::this_thread::sleep_for(20ms); // lets the worker reach its wait
            // The main thread joins while the worker waits for it: this is what must not deadlock.
        }
        QCOMPARE(answer.value_or(false), false);
        bool later = false;
        door.thread().post([&] { later = true; });
        QVERIFY(door.runUntil([&] { return later; }));
        QVERIFY(!ran);
    }
    void stopDuringTheWorkStillWaitsForIt_data() { doors(); }

    void stopDuringTheWorkStillWaitsForIt()
    {
        QFETCH(bool, useQt);
        Door door(useQt);
        std::stop_source stop;
        bool finished = false;
        bool finishedBeforeReturn = false;
        std::atomic<bool> returned = false;
        const std::jthread worker([&] {
            const bool ran = door.thread().wait(stop.get_token(), [&] {
                stop.request_stop();
                std::this_thread::sleep_for(
                    20ms); // time in which a wait that gives up would return
                finished = true;
            });
            finishedBeforeReturn = ran && finished;
            door.thread().post([&] { returned = true; });
        });
        QVERIFY(door.runUntil([&] { return returned.load(); }));
        QVERIFY(finishedBeforeReturn);
    }
    void closedDoorReleasesItsCallers_data() { doors(); }

    void closedDoorReleasesItsCallers()
    {
        QFETCH(bool, useQt);
        Door door(useQt);
        std::binary_semaphore posted{0};
        bool ran = false;
        bool answer = true;
        {
            const std::jthread worker([&, &thread = door.thread()] {
                thread.post([&] { ran = true; });
                posted.release();
                answer = thread.wait({}, [&] { ran = true; });
            });
            posted.acquire();
            std::this_thread::sleep_for(20ms); // lets the worker reach its wait
            door.close();
        }
        QVERIFY(!answer);
        QVERIFY(!ran);
    }

    void pumpGivesUpWhenStopped()
    {
        PumpedMainThread thread;
        std::stop_source stop;
        const std::jthread stopper([&] { stop.request_stop(); });
        QVERIFY(!thread.pumpUntil([] { return false; }, stop.get_token()));
    }

    void longWorkLeavesTheEventLoopItsTurn()
    {
        QtMainThread thread;
        int ran = 0;
        for (int i = 0; i < 200; ++i) {
            thread.post([&] {
                std::this_thread::sleep_for(1ms); // a slow piece of work
                ++ran;
            });
        }
        QCoreApplication::processEvents();
        QVERIFY2(ran > 0 && ran < 100, qPrintable(QString::number(ran)));
        QTRY_COMPARE(ran, 200);
    }

    void workThatBringsWorkLeavesTimersTheirTurn()
    {
        QtMainThread thread;
        int ran = 0;
        std::function<void()> again = [&] {
            std::this_thread::sleep_for(1ms);
            if (++ran < 100)
                thread.post(again);
        };
        thread.post(again);
        int ranAtFirstBeat = 0;
        QTimer::singleShot(1ms, &thread, [&] { ranAtFirstBeat = ran; });
        QTRY_COMPARE(ran, 100);
        QVERIFY2(ranAtFirstBeat > 0 && ranAtFirstBeat < 50,
                 qPrintable(QString::number(ranAtFirstBeat)));
    }

    void innerEventLoopRunsTheRest()
    {
        QtMainThread thread;
        bool second = false;
        bool seenWithin = false;
        thread.post([&] { seenWithin = QTest::qWaitFor([&] { return second; }); });
        thread.post([&] { second = true; });
        QVERIFY(QTest::qWaitFor([&] { return second; }));
        QVERIFY(seenWithin);
    }
    void workersHandTheirDataOver_data() { doors(); }

    void workersHandTheirDataOver()
    {
        QFETCH(bool, useQt);
        Door door(useQt);
        std::vector<QString> received; // the main thread's
        {
            std::vector<std::unique_ptr<WorkerQueue>> queues;
            for (int worker = 0; worker < 3; ++worker) {
                auto queue = std::make_unique<WorkerQueue>();
                for (int job = 0; job < 100; ++job) {
                    queue->run([&](const std::stop_token &stop) {
                        QString text = QString(100, 'x'_L1);
                        door.thread().post([&received, text] { received.push_back(text); });
                        text += door.thread().wait(stop, [&] { received.push_back(text); })
                                    ? "waited"_L1
                                    : "given up"_L1;
                    });
                }
                queues.push_back(std::move(queue));
            }
            QVERIFY(door.runUntil([&] { return received.size() == 600; }));
        }
        QCOMPARE(std::count(received.begin(), received.end(), QString(100, 'x'_L1)), 600);
    }

    void notificationsReachTheirSubscribers()
    {
        Notifications centre;
        QStringList heard;
        const auto handler = [&heard](const QString &who) {
            return [&heard, who](const QVariantMap &info) {
                heard << who + info.value(u"key"_s).toString();
            };
        };
        const auto first = centre.subscribe(u"a"_s, handler(u"first "_s));
        const auto second = centre.subscribe(u"a"_s, handler(u"second "_s));
        const auto other = centre.subscribe(u"b"_s, handler(u"other "_s));
        centre.post(u"a"_s, {{u"key"_s, u"1"_s}});
        centre.post(u"b"_s);
        centre.post(u"nobody"_s);
        QCOMPARE(heard, QStringList({u"first 1"_s, u"second 1"_s, u"other "_s}));
    }

    void subscriptionEndsWithItsToken()
    {
        int heard = 0;
        Notifications::Subscription outliving;
        {
            Notifications centre;
            const auto count = [&heard](const QVariantMap &) { ++heard; };
            {
                const auto token = centre.subscribe(u"a"_s, count);
                centre.post(u"a"_s);
            }
            centre.post(u"a"_s);
            QCOMPARE(heard, 1);
            outliving = centre.subscribe(u"a"_s, count);
            outliving = centre.subscribe(u"b"_s, count);
            centre.post(u"a"_s);
            QCOMPARE(heard, 1);
        }
        outliving = {};
    }

    void handlersMayChangeSubscriptions()
    {
        Notifications centre;
        QStringList heard;
        std::vector<Notifications::Subscription> tokens(3);
        tokens[0] = centre.subscribe(u"a"_s, [&](const QVariantMap &) {
            heard << u"0"_s;
            tokens[0] = {}; // itself
            tokens[1] = {}; // one that is still to come
            tokens[2] = centre.subscribe(u"a"_s, [&](const QVariantMap &) { heard << u"2"_s; });
        });
        tokens[1] = centre.subscribe(u"a"_s, [&](const QVariantMap &) { heard << u"1"_s; });
        centre.post(u"a"_s);
        QCOMPARE(heard, QStringList({u"0"_s}));
        centre.post(u"a"_s);
        QCOMPARE(heard, QStringList({u"0"_s, u"2"_s}));
    }
};

QTEST_GUILESS_MAIN(TestQueues)
#include "tst_queues.moc"
