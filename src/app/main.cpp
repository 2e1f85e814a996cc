// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/ByteNames.h"
#include "platform/StandardStreams.h"
#include "ui/application/ApplicationHost.h"
#include "ui/application/ExitSignals.h"
#include "ui/application/SingleStart.h"
#include "ui/application/StartOptions.h"
#include "ui/controls/Icons.h"

#include <QApplication>
#include <QIcon>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <malloc.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kUsageError = 2;
constexpr QLatin1StringView kName{"Tavrin"};
constexpr QLatin1StringView kDesktopFile{"com.zel.tavrin"};
constexpr QLatin1StringView kIcon{"tavrin"};
constexpr std::array kIconSizes{32, 64};
constexpr const char *kNoDisplay =
    "there is no display to open a window on: neither WAYLAND_DISPLAY nor DISPLAY is set. "
    "tavrin-cli does the same work without one";
constexpr const char *kDeadDisplay =
    "the display cannot be used. tavrin-cli does the same work without one";

void print(FILE *stream, const QString &line)
{
    std::fprintf(stream, "%s\n", ByteNames::toBytes(line).constData());
}

int refuse(const QString &reason)
{
    print(stderr, "tavrin: "_L1 + reason);
    return kUsageError;
}

bool isSet(const char *variable)
{
    return !qEnvironmentVariableIsEmpty(variable);
}

bool hasDisplay()
{
    return isSet("QT_QPA_PLATFORM") || isSet("WAYLAND_DISPLAY") || isSet("DISPLAY");
}

/// Qt aborts where it finds no way to draw; a program ends with a message.
void endWithoutCore(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    print(stderr, text);
    if (type == QtFatalMsg)
        std::_Exit(refuse(QString::fromLatin1(kDeadDisplay)));
}

/// Says which of the paths are not there, and keeps the others.
TFileURLs existing(const TFileURLs &paths)
{
    TFileURLs found;
    for (const TFileURL &path : paths) {
        if (URLisValidFile(path))
            found += path;
        else
            print(stderr,
                  u"tavrin: %1: there is no such file"_s.arg(ByteNames::forDisplay(path.path())));
    }
    return found;
}

QStringList pathsOf(const TFileURLs &files)
{
    QStringList paths;
    for (const TFileURL &file : files)
        paths += file.path();
    return paths;
}

QIcon windowIcon()
{
    QIcon icon;
    for (const int size : kIconSizes)
        icon.addPixmap(Icons::pixmap(kIcon, size, Qt::black, 1));
    return QIcon::fromTheme(kDesktopFile, icon);
}

int run(int &argc, char **argv, const StartOptions &options, const TFileURLs &files,
        SingleStart &single)
{
    const QtMessageHandler before = qInstallMessageHandler(endWithoutCore);
    QApplication application(argc, argv);
    qInstallMessageHandler(before);
    QCoreApplication::setApplicationName(kName); // in the title of what has none of its own
    QGuiApplication::setDesktopFileName(kDesktopFile);
    QGuiApplication::setWindowIcon(windowIcon());
    QGuiApplication::setQuitOnLastWindowClosed(false); // a run may still be finishing its log

    ApplicationHost host;
    ExitSignals signals;
    QObject::connect(&signals, &ExitSignals::requested, &host, &ApplicationHost::quitRequested);
    QObject::connect(&single, &SingleStart::pathsReceived, &host,
                     [&host](const QStringList &paths) {
                         TFileURLs received;
                         for (const QString &path : paths)
                             received += TFileURL::fileURLWithPath(path);
                         host.open(received);
                     });
    QObject::connect(&host, &ApplicationHost::quitting, &single, &SingleStart::retire);
    host.start(files, options.preset);
    single.listen();
    const int status = QApplication::exec();
    single.retire(); // its sockets must not outlive the application object
    return status;
}

} // namespace

int main(int argc, char **argv)
{
    fillClosedStreams();
    std::signal(SIGPIPE, SIG_IGN); // a helper that dies is an answer that fails
    mallopt(M_ARENA_MAX, 1);       // workers make what the main thread frees, and the reverse
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments += ByteNames::fromBytes(argv[i]);
    const StartOptions options = StartOptions::parse(arguments);
    if (options.wish == StartOptions::Wish::Refuse)
        return refuse(options.text);
    if (options.wish == StartOptions::Wish::Tell) {
        print(stdout, options.text);
        return std::fflush(stdout) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    if (!hasDisplay())
        return refuse(QString::fromLatin1(kNoDisplay));
    const TFileURLs files = existing(options.paths);
    SingleStart single(SingleStart::privateFolder(), SingleStart::display());
    if (single.start(pathsOf(files)) == SingleStart::Outcome::HandedOver)
        return EXIT_SUCCESS;
    int ownName = 1; // what follows are paths, none of Qt's options
    return run(ownName, argv, options, files, single);
}
