// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TDocumentFactList.h"

void TDocumentFactList::add(const TFileObject &file)
{
    const bool hasMetadata = file.imageProperties() || file.ID3();
    if (hasMetadata && m_metadata.empty()) {
        m_metadata.reserve(m_items.capacity());
        m_metadata.resize(m_items.size());
    }
    m_items.push_back(file.item());
    if (hasMetadata || !m_metadata.empty())
        m_metadata.push_back({file.imageProperties(), file.ID3()});
}

void TDocumentFactList::clear()
{
    m_items.clear();
    m_metadata.clear();
}
