// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/batch/WindowMemory.h"

#include "settings/UserDefaults.h"

#include <QMainWindow>
#include <QScreen>

namespace {

constexpr QLatin1StringView kGeometry{"windowGeometry"};
constexpr QLatin1StringView kState{"windowState"};
constexpr int kStateVersion = 1; ///< of the docks' arrangement
constexpr QSize kFirstSize{1180, 760};

QByteArray stored(QLatin1StringView key)
{
    return QByteArray::fromBase64(UserDefaults::valueForKey(key).toString().toLatin1());
}

QString storable(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toBase64());
}

} // namespace

namespace WindowMemory {

void restore(QMainWindow &window)
{
    if (!window.restoreGeometry(stored(kGeometry)))
        window.resize(kFirstSize.boundedTo(window.screen()->availableSize()));
    window.restoreState(stored(kState), kStateVersion);
}

void remember(const QMainWindow &window)
{
    UserDefaults::setValues({{kGeometry, storable(window.saveGeometry())},
                             {kState, storable(window.saveState(kStateVersion))}});
}

} // namespace WindowMemory
