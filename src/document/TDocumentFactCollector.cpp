// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocumentFactCollector.h"

#include "document/TDocumentSlice.h"

#include <utility>

namespace {

/// What is known of so many files is collected at once; of more, in portions.
constexpr std::size_t kCollectedAtOnce = 1000;

} // namespace

TDocumentFactCollector::TDocumentFactCollector(TDocumentMailPtr mail, const TFileList &files)
    : m_mail(std::move(mail))
    , m_files(files)
{
}

void TDocumentFactCollector::listChanged()
{
    forget();
    forgetCollected();
}

void TDocumentFactCollector::metadataChanged()
{
    forget();
    m_isOutdated = true;
}

void TDocumentFactCollector::forget()
{
    m_facts.reset();
    m_entries.reset();
}

void TDocumentFactCollector::forgetCollected()
{
    m_collected.clear();
    m_collectedEntries.clear();
}

bool TDocumentFactCollector::areAtHand() const
{
    return m_facts || m_files.size() <= kCollectedAtOnce;
}

void TDocumentFactCollector::collect(std::function<void()> ready)
{
    m_ready = std::move(ready);
    if (std::exchange(m_isOutdated, false))
        forgetCollected();
    m_isCollecting = true;
    collectPortion();
}

void TDocumentFactCollector::collectPortion()
{
    if (!m_isCollecting || m_isPosted)
        return;
    m_collected.reserve(m_files.size());
    m_collectedEntries.reserve(m_files.size());
    const TDocumentSlice slice;
    while (m_collected.count() < m_files.size()) {
        const auto &file = m_files[m_collected.count()];
        m_collected.add(*file);
        m_collectedEntries.push_back(file);
        if (!slice.isOver())
            continue;
        m_isPosted = true;
        return m_mail->post([this] {
            m_isPosted = false;
            collectPortion();
        });
    }
    take();
    m_isCollecting = false;
    std::exchange(m_ready, {})();
    if (m_isOutdated)
        forget();
}

void TDocumentFactCollector::take()
{
    m_facts = std::make_shared<const TDocumentFactList>(std::move(m_collected));
    m_entries = std::make_shared<const TFileList>(std::move(m_collectedEntries));
    forgetCollected();
}

const TDocumentFacts &TDocumentFactCollector::facts()
{
    if (!m_facts) {
        forgetCollected();
        m_collected.reserve(m_files.size());
        for (const auto &file : m_files)
            m_collected.add(*file);
        m_collectedEntries = m_files;
        take();
    }
    return m_facts;
}
