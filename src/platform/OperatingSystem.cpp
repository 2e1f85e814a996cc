// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/OperatingSystem.h"

#include <QOperatingSystemVersion>

std::optional<QVersionNumber> RunningSystem::version() const
{
    const QOperatingSystemVersion current = QOperatingSystemVersion::current();
    if (current.type() != QOperatingSystemVersion::MacOS)
        return std::nullopt;
    return QVersionNumber(current.majorVersion(), current.minorVersion(), current.microVersion());
}
