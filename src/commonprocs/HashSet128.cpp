// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/HashSet128.h"

#include <QRandomGenerator>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace {

constexpr std::size_t kSmallestCapacity = 64;

struct Seeds
{
    std::array<quint64, 4> words;

    Seeds()
    {
        for (quint64 &word : words)
            word = QRandomGenerator::system()->generate64() | 1U;
    }
};

/// Both halves of the 128-bit product folded together: every input bit reaches every output bit.
quint64 foldedProduct(quint64 a, quint64 b)
{
    __extension__ using Wide = unsigned __int128;
    const Wide product = static_cast<Wide>(a) * b;
    return static_cast<quint64>(product) ^ static_cast<quint64>(product >> 64U);
}

Hash128 hashOf(const char *data, std::size_t size)
{
    static const Seeds seeds;
    const auto &[s0, s1, s2, s3] = seeds.words;
    quint64 a = s0 ^ size;
    quint64 b = s1 + size;
    const auto mix = [&a, &b, s2 = s2, s3 = s3](quint64 word) {
        a = foldedProduct(a ^ word, s2);
        b = foldedProduct(b + std::rotl(word, 29), s3) ^ word;
    };
    while (size >= sizeof(quint64)) {
        quint64 word = 0;
        std::memcpy(&word, data, sizeof word);
        mix(word);
        data += sizeof word;
        size -= sizeof word;
    }
    quint64 last = 0;
    std::memcpy(&last, data, size);
    mix(last);
    const Hash128 hash{foldedProduct(a ^ s3, b ^ s0), foldedProduct(b ^ s2, a + s1)};
    return hash == Hash128{} ? Hash128{1, 1} : hash;
}

} // namespace

Hash128 Hash128::of(QByteArrayView bytes)
{
    return hashOf(bytes.data(), static_cast<std::size_t>(bytes.size()));
}

Hash128 Hash128::of(QStringView text)
{
    return hashOf(reinterpret_cast<const char *>(text.utf16()),
                  static_cast<std::size_t>(text.size()) * sizeof(char16_t));
}

void HashSet128::reserve(qsizetype count)
{
    const auto wanted = static_cast<std::size_t>(count) + static_cast<std::size_t>(count) / 2;
    const std::size_t capacity = std::bit_ceil(std::max(wanted, kSmallestCapacity));
    if (capacity > m_slots.size())
        rehash(capacity);
}

std::size_t HashSet128::slotFor(Hash128 hash) const
{
    const std::size_t mask = m_slots.size() - 1;
    std::size_t slot = hash.low & mask;
    while (m_slots[slot] != Hash128{} && m_slots[slot] != hash)
        slot = (slot + 1) & mask;
    return slot;
}

void HashSet128::rehash(std::size_t capacity)
{
    std::vector<Hash128> old(capacity);
    old.swap(m_slots);
    for (const Hash128 &hash : old)
        if (hash != Hash128{})
            m_slots[slotFor(hash)] = hash;
}

bool HashSet128::insert(Hash128 hash)
{
    if (static_cast<std::size_t>(m_size) * 4 >= m_slots.size() * 3)
        rehash(std::max(m_slots.size() * 2, kSmallestCapacity));
    const std::size_t slot = slotFor(hash);
    if (m_slots[slot] == hash)
        return false;
    m_slots[slot] = hash;
    ++m_size;
    return true;
}

bool HashSet128::contains(Hash128 hash) const
{
    return !m_slots.empty() && m_slots[slotFor(hash)] == hash;
}

bool HashSet128::remove(Hash128 hash)
{
    if (m_slots.empty())
        return false;
    const std::size_t mask = m_slots.size() - 1;
    std::size_t hole = slotFor(hash);
    if (m_slots[hole] == Hash128{})
        return false;
    // Later entries of the same probe run move up, so that no look-up stops short at the hole.
    for (std::size_t next = (hole + 1) & mask; m_slots[next] != Hash128{};
         next = (next + 1) & mask) {
        const std::size_t home = m_slots[next].low & mask;
        if (((next - home) & mask) >= ((next - hole) & mask)) {
            m_slots[hole] = m_slots[next];
            hole = next;
        }
    }
    m_slots[hole] = {};
    --m_size;
    return true;
}
