// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocument.h"

#include <array>

/// How many files of a batch change, stay as they are and have problems. One byte a file; what
/// changed is looked at again in portions of a few milliseconds. Rows are those of the batch.
class FileKinds
{
public:
    enum class Filter { All, Changed, Unchanged, Problems };
    static constexpr std::size_t kFilterCount = 4;

    /// The document outlives it.
    explicit FileKinds(const TDocument &document);

    qsizetype count(Filter filter) const { return m_counts[static_cast<std::size_t>(filter)]; }
    bool passes(qsizetype row, Filter filter) const;

    /// New files, already in the list; looked at once.
    void inserted(qsizetype first, qsizetype last);
    void removed(qsizetype first, qsizetype last);
    void reordered(const std::vector<qsizetype> &newRows);
    /// The list is another one; nothing is known of its files yet.
    void replaced();
    void changed(qsizetype first, qsizetype last);
    /// Looks at a portion of what has changed. True when nothing is left.
    bool update();
    bool isUpToDate() const { return m_from >= m_to; }

private:
    using Bits = quint8;
    Bits look(qsizetype row) const;
    void put(qsizetype row, Bits bits);
    void count(Bits bits, qsizetype by);

    const TDocument &m_document;
    const TFileList &m_files;
    std::vector<Bits> m_bits;
    std::array<qsizetype, kFilterCount> m_counts{};
    qsizetype m_from = 0; ///< what has changed since it was looked at: from here
    qsizetype m_to = 0;   ///< to before this row
};
