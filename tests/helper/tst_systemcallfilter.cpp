// SPDX-License-Identifier: GPL-3.0-or-later
#include "helper/SystemCallFilter.h"
#include "support/TemporaryTree.h"

#include <QTest>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kAllowed = 0;
constexpr int kNoFilter = 255;

/// What a call gives in a process under the filter: 0 or an errno.
int underTheFilter(const std::function<bool()> &call)
{
    const pid_t child = ::fork();
    if (child == 0) {
        if (!filterSystemCalls())
            ::_exit(kNoFilter);
        errno = 0;
        ::_exit(call() ? kAllowed : errno);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

} // namespace

/// What a reader that a hostile file has taken over could still do.
class TestSystemCallFilter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void calls_data();
    void calls();
};

void TestSystemCallFilter::calls_data()
{
    using Call = std::function<bool(const char *file)>;
    QTest::addColumn<Call>("call");
    QTest::addColumn<int>("result");
    const auto row = [](const char *name, const Call &call, int result) {
        QTest::newRow(name) << call << result;
    };
    row(
        "read a file", [](auto file) { return ::open(file, O_RDONLY | O_CLOEXEC) >= 0; }, kAllowed);
    row(
        "ask about a file",
        [](auto file) {
            struct stat s;
            return ::stat(file, &s) == 0;
        },
        kAllowed);
    row(
        "start a thread",
        [](auto) {
            bool ran = false;
            std::thread([&ran] { ran = true; }).join();
            return ran;
        },
        kAllowed);
    row(
        "open for writing", [](auto file) { return ::open(file, O_RDWR) >= 0; }, EPERM);
    row(
        "make a file", [](auto) { return ::open("new", O_CREAT | O_WRONLY, 0600) >= 0; }, EPERM);
    row(
        "empty a file", [](auto file) { return ::truncate(file, 0) == 0; }, EPERM);
    row(
        "delete a file", [](auto file) { return ::unlink(file) == 0; }, EPERM);
    row(
        "rename a file", [](auto file) { return std::rename(file, "other") == 0; }, EPERM);
    row(
        "open its rights", [](auto file) { return ::chmod(file, 0777) == 0; }, EPERM);
    row(
        "make a folder", [](auto) { return ::mkdir("folder", 0700) == 0; }, EPERM);
    row(
        "reach a network", [](auto) { return ::socket(AF_INET, SOCK_STREAM, 0) >= 0; }, EPERM);
    row(
        "reach a desktop", [](auto) { return ::socket(AF_UNIX, SOCK_STREAM, 0) >= 0; }, EPERM);
    row(
        "start a process", [](auto) { return ::fork() >= 0; }, EPERM);
    row(
        "become a program", [](auto) { return ::execl("/bin/true", "true", nullptr) == 0; }, EPERM);
    row(
        "end another process", [](auto) { return ::kill(::getppid(), 0) == 0; }, EPERM);
}

void TestSystemCallFilter::calls()
{
    using Call = std::function<bool(const char *file)>;
    QFETCH(Call, call);
    QFETCH(int, result);
    TemporaryTree tree;
    const QByteArray file = tree.file(u"photo.jpg"_s).toUtf8();
    QVERIFY(::chdir(tree.path().toUtf8().constData()) == 0);
    QCOMPARE(underTheFilter([&] { return call(file.constData()); }), result);
    QVERIFY(::chdir("/") == 0);
    QCOMPARE(tree.list(), QStringList{u"photo.jpg"_s});
}

QTEST_GUILESS_MAIN(TestSystemCallFilter)
#include "tst_systemcallfilter.moc"
