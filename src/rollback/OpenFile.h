// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <unistd.h>
#include <utility>

/// Owns one file descriptor and closes it. Move-only.
class OpenFile
{
public:
    OpenFile() = default;
    explicit OpenFile(int descriptor)
        : m_descriptor(descriptor)
    {
    }
    ~OpenFile() { close(); }
    OpenFile(OpenFile &&other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1))
    {
    }
    OpenFile &operator=(OpenFile &&other) noexcept
    {
        if (this != &other) {
            close();
            m_descriptor = std::exchange(other.m_descriptor, -1);
        }
        return *this;
    }

    bool isOpen() const { return m_descriptor >= 0; }
    int descriptor() const { return m_descriptor; }
    /// Gives the descriptor away.
    int release() { return std::exchange(m_descriptor, -1); }
    void close()
    {
        if (const int descriptor = release(); descriptor >= 0)
            ::close(descriptor);
    }

private:
    int m_descriptor = -1;
};
