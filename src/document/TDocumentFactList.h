// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/AnalysisRun.h"
#include "document/TMetadataSource.h"

#include <memory>
#include <vector>

/// What workers are given of the entries of a document, in list order. A value.
class TDocumentFactList
{
public:
    void reserve(std::size_t count) { m_items.reserve(count); }
    void add(const TFileObject &file);
    void clear();
    std::size_t count() const { return m_items.size(); }
    const std::vector<TFileItem> &items() const { return m_items; }
    TMetadataSource::Metadata metadata(std::size_t index) const
    {
        return m_metadata.empty() ? TMetadataSource::Metadata() : m_metadata[index];
    }

private:
    std::vector<TFileItem> m_items;
    std::vector<TMetadataSource::Metadata> m_metadata; ///< empty while no file has any
};

/// Made once for as long as the list stays as it is; shared by the runs over it.
using TDocumentFacts = std::shared_ptr<const TDocumentFactList>;
/// The entries of the facts. Never leaves the main thread; shared, since a copy would touch every
/// entry.
using TDocumentFiles = std::shared_ptr<const TFileList>;
