// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/MetadataPool.h"

namespace {

constexpr qsizetype kMaxKeyLength = 64;
constexpr size_t kTexts = 4096;

} // namespace

MetadataPool::MetadataPool()
    : m_keys(std::make_unique<QString[]>(kMaxKeys))
    , m_texts(kTexts)
{
}

MetadataPool &MetadataPool::shared()
{
    static MetadataPool pool;
    return pool;
}

std::optional<quint32> MetadataPool::numberOfKey(const QString &key)
{
    {
        const std::shared_lock lock(m_keyLock);
        const auto known = m_numbers.constFind(key);
        if (known != m_numbers.cend())
            return *known;
    }
    const std::unique_lock lock(m_keyLock);
    const auto number = static_cast<quint32>(m_numbers.size());
    if (m_numbers.contains(key))
        return m_numbers.value(key);
    if (number == kMaxKeys || key.size() > kMaxKeyLength)
        return std::nullopt;
    // A copy of its own: the caller's text may hold more memory than it needs.
    m_keys[number] = QString(key.constData(), key.size());
    m_numbers.insert(m_keys[number], number);
    return number;
}

QString MetadataPool::sharedText(const QString &text)
{
    const size_t slot = qHash(text) % kTexts;
    const std::lock_guard lock(m_textLock);
    if (m_texts[slot] != text)
        m_texts[slot] = QString(text.constData(), text.size());
    return m_texts[slot];
}
