// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVersionNumber>

#include <optional>

/// The door to the version of the system that the program runs on.
class OperatingSystem
{
public:
    OperatingSystem() = default;
    OperatingSystem(const OperatingSystem &) = delete;
    OperatingSystem &operator=(const OperatingSystem &) = delete;
    virtual ~OperatingSystem() = default;
    /// Nothing on systems of which no least version is required.
    virtual std::optional<QVersionNumber> version() const = 0;
};

/// The real system. Stateless.
class RunningSystem : public OperatingSystem
{
public:
    std::optional<QVersionNumber> version() const override;
};
