// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/logging.h"

#include "settings/UserDefaults.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <mutex>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kLogging{"logging"};
constexpr QLatin1StringView kLogLevel{"logLevel"};
constexpr QLatin1StringView kWarning{"Warning: "};
constexpr QLatin1StringView kError{"***Error: "};
constexpr int kHighestLevel = 3;
constexpr int kNotRead = -1;

std::atomic<int> currentLevel = kNotRead;

int storedLevel()
{
    const qint64 stored = UserDefaults::integerForKey(kLogLevel);
    return static_cast<int>(std::clamp<qint64>(stored, 0, kHighestLevel));
}

/// Reads the level at its first use, unless somebody has set one meanwhile.
int firstLevel()
{
    int before = kNotRead;
    const int stored = storedLevel();
    return currentLevel.compare_exchange_strong(before, stored) ? stored : before;
}

struct Sink
{
    std::mutex mutex;
    std::function<void(const QString &)> write;
};

Sink &sink()
{
    static Sink instance;
    return instance;
}

/// Control characters and raw bytes of file names become \xNN, so that no name can forge a line.
QByteArray printable(const QString &line)
{
    QString result;
    result.reserve(line.size() + 1);
    for (qsizetype i = 0; i < line.size(); ++i) {
        const char16_t unit = line[i].unicode();
        const bool control = unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
        const bool rawByte =
            unit >= 0xDC80 && unit <= 0xDCFF && (i == 0 || !line[i - 1].isHighSurrogate());
        if (control || rawByte)
            result += u"\\x%1"_s.arg(unit & 0xFF, 2, 16, '0'_L1);
        else
            result += line[i];
    }
    result += '\n'_L1;
    return result.toUtf8();
}

void writeLine(const QString &line)
{
    Sink &target = sink();
    const std::scoped_lock lock(target.mutex);
    if (target.write) {
        target.write(line);
        return;
    }
    const QByteArray bytes = printable(line);
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stderr);
}

} // namespace

void initLogging()
{
    UserDefaults::registerDefault(kLogging, true);
    UserDefaults::registerDefault(kLogLevel, 0);
    currentLevel = storedLevel();
}

void resetLogLevelForTests()
{
    currentLevel = kNotRead;
}

void setLogLevel(int level)
{
    const int clamped = std::clamp(level, 0, kHighestLevel);
    currentLevel = clamped;
    UserDefaults::setValues({{kLogLevel, clamped}, {kLogging, clamped != 0}});
}

int logLevel()
{
    const int level = currentLevel.load(std::memory_order_relaxed);
    return level == kNotRead ? firstLevel() : level;
}

void zelOut(const QString &prefix, const QString &first, const QString &second)
{
    if (prefix.isNull())
        writeLine(first + ':'_L1 + second);
    else
        writeLine('<'_L1 + prefix + "> "_L1 + first + ':'_L1 + second);
}

void zelLog(const QString &first, const QString &second)
{
    if (logLevel() < 2)
        zelOut({}, first, second);
}

void zelWarn(const QString &first, const QString &second)
{
    if (logLevel() < 3)
        zelOut(kWarning, first, second);
}

void zelError(const QString &first, const QString &second)
{
    if (logLevel() < 4)
        zelOut(kError, first, second);
}

void zelConsole(const QString &line)
{
    writeLine(line);
}

void setLogSink(std::function<void(const QString &)> newSink)
{
    Sink &target = sink();
    const std::scoped_lock lock(target.mutex);
    target.write = std::move(newSink);
}
