// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QString>
#include <QStringView>

#include <memory>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <vector>

/// What the metadata of many files has in common: the names of keys, and longer texts such as lens
/// names or copyright lines. Both are bounded, so that a long life and hostile files do not let
/// them grow: keys keep their number for good until the numbers run out, texts give way to newer
/// ones. One for the process; any thread may use it.
class MetadataPool
{
public:
    static constexpr quint32 kMaxKeys = 4096;

    MetadataPool();
    static MetadataPool &shared();

    /// The key's number below kMaxKeys; none for a long key or when the numbers are used up.
    std::optional<quint32> numberOfKey(const QString &key);
    /// The key of a number that numberOfKey gave, without any lock.
    QStringView key(quint32 number) const { return m_keys[number]; }
    /// An equal text that shares its memory with the others that were asked for lately.
    QString sharedText(const QString &text);

private:
    std::shared_mutex m_keyLock;
    QHash<QString, quint32> m_numbers;
    std::unique_ptr<QString[]> m_keys; ///< an element never changes once its number is given out
    std::mutex m_textLock;
    std::vector<QString> m_texts;
};
