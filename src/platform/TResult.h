// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>
#include <utility>

/// A value, or the message that says why there is none. For I/O and parsing; problems of a batch
/// are TErrorTypes instead.
template <typename T>
class [[nodiscard]] TResult
{
public:
    TResult(T value)
        : m_value(std::move(value))
    {
    }
    static TResult failure(const QString &message)
    {
        TResult result;
        result.m_message = message;
        return result;
    }

    explicit operator bool() const { return m_value.has_value(); }
    const T &value() const & { return *m_value; }
    T &value() & { return *m_value; }
    T &&value() && { return *std::move(m_value); }
    /// Empty when there is a value.
    const QString &message() const { return m_message; }

private:
    TResult() = default;

    std::optional<T> m_value;
    QString m_message;
};
