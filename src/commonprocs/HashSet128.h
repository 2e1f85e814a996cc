// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QStringView>

#include <vector>

/// 128 bits that stand for a text: two different texts meet with a chance that does not matter even
/// for a billion names. Seeded anew in every process, so nobody can prepare names that collide.
struct Hash128
{
    quint64 low = 0;
    quint64 high = 0;

    static Hash128 of(QByteArrayView bytes);
    static Hash128 of(QStringView text);
    friend bool operator==(const Hash128 &, const Hash128 &) = default;
};

/// A set of names by their hashes: about 16 bytes over the fill factor each, where a set of strings
/// would take a hundred and more. Used by one thread.
class HashSet128
{
public:
    HashSet128() = default;

    void reserve(qsizetype count);
    /// False when it was there already.
    bool insert(Hash128 hash);
    bool contains(Hash128 hash) const;
    /// False when it was not there.
    bool remove(Hash128 hash);
    qsizetype size() const { return m_size; }
    /// Tells the processor that the hash will be asked for in a moment; a large set is not in its
    /// caches, and several such waits can overlap.
    void prefetch(Hash128 hash) const
    {
        if (!m_slots.empty())
            __builtin_prefetch(&m_slots[hash.low & (m_slots.size() - 1)]);
    }

private:
    std::size_t slotFor(Hash128 hash) const;
    void rehash(std::size_t capacity);

    std::vector<Hash128> m_slots; ///< power of two; a zero hash marks an empty slot
    qsizetype m_size = 0;
};
