// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TErrorTypes.h"
#include "platform/TImage.h"

#include <QMetaType>

#include <vector>

/// Problems in the order reported, of a file or of a whole batch. A value.
class TErrorLog
{
public:
    bool isEmpty() const { return m_entries.empty(); }
    qsizetype count() const { return static_cast<qsizetype>(m_entries.size()); }
    const std::vector<TErrorTypes> &entries() const { return m_entries; }
    auto begin() const { return m_entries.begin(); }
    auto end() const { return m_entries.end(); }
    void clear() { m_entries.clear(); }
    void append(const TErrorTypes &entry) { m_entries.push_back(entry); }

    /// Makes an entry, appends it and returns it.
    const TErrorTypes &addErrorOfType(int errClass, const TErrorText &description);
    /// Lets a text share memory with the one of a recent entry that says the same.
    void shareText(TErrorText &text) const;
    /// Entries with exactly that level.
    qsizetype numberOfErrorsWithType(int errClass) const;
    /// The highest level; 0 for an empty log.
    int currentStatus() const;
    int mostCriticalError() const { return currentStatus(); }
    /// "achtung" for level 1, "stop" for level 2, "tick" otherwise.
    TImage currentStatusImage() const;

    /// Writes the log as an array under the key; reads it back.
    void encode(TEncoder &coder, QLatin1StringView key) const;
    static TErrorLog decode(const TDecoder &coder, QLatin1StringView key);

    friend bool operator==(const TErrorLog &, const TErrorLog &) = default;

private:
    std::vector<TErrorTypes> m_entries;
};

Q_DECLARE_METATYPE(TErrorLog)

/// Text of a format with "%@" and "%ld" places filled in order.
QString formatted(QStringView format, std::initializer_list<QString> arguments);
QString formatted(QLatin1StringView format, std::initializer_list<QString> arguments);
