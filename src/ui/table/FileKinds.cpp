// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/table/FileKinds.h"

#include "document/TDocumentSlice.h"
#include "ui/table/FileCells.h"

#include <algorithm>

namespace {

constexpr quint8 kChanged = 1;
constexpr quint8 kUnchanged = 2;
constexpr quint8 kProblems = 4;
constexpr std::array<quint8, FileKinds::kFilterCount> kBits{0, kChanged, kUnchanged, kProblems};
/// Files between two looks at the clock.
constexpr qsizetype kStride = 64;

} // namespace

FileKinds::FileKinds(const TDocument &document)
    : m_document(document)
    , m_files(document.sourceObjectArray())
{
    replaced();
}

bool FileKinds::passes(qsizetype row, Filter filter) const
{
    const Bits wanted = kBits[static_cast<std::size_t>(filter)];
    return (m_bits[static_cast<std::size_t>(row)] & wanted) == wanted;
}

FileKinds::Bits FileKinds::look(qsizetype row) const
{
    const TFileObject &file = *m_files[static_cast<std::size_t>(row)];
    const auto forecast = m_document.forecastFor(file);
    const Bits name = FileCells::keepsName(m_document, file, forecast) ? kUnchanged : kChanged;
    const Bits problems = FileCells::level(file, forecast) > 0 ? kProblems : Bits{0};
    return static_cast<Bits>(name | problems);
}

void FileKinds::count(Bits bits, qsizetype by)
{
    for (std::size_t filter = 1; filter < kFilterCount; ++filter) {
        if ((bits & kBits[filter]) != 0)
            m_counts[filter] += by;
    }
}

void FileKinds::put(qsizetype row, Bits bits)
{
    Bits &place = m_bits[static_cast<std::size_t>(row)];
    if (place == bits)
        return;
    count(place, -1);
    count(bits, 1);
    place = bits;
}

void FileKinds::inserted(qsizetype first, qsizetype last)
{
    const qsizetype added = last - first + 1;
    m_bits.insert(m_bits.begin() + first, static_cast<std::size_t>(added), Bits{0});
    m_counts[0] += added;
    if (first < m_to) {
        m_from = std::min(m_from, first);
        m_to += added;
    }
    for (qsizetype row = first; row <= last; ++row)
        put(row, look(row));
}

void FileKinds::removed(qsizetype first, qsizetype last)
{
    for (qsizetype row = first; row <= last; ++row)
        count(m_bits[static_cast<std::size_t>(row)], -1);
    m_bits.erase(m_bits.begin() + first, m_bits.begin() + last + 1);
    m_counts[0] -= last - first + 1;
    m_from = std::min(m_from, first);
    m_to = std::min(m_to, static_cast<qsizetype>(m_bits.size()));
}

void FileKinds::reordered(const std::vector<qsizetype> &newRows)
{
    std::vector<Bits> bits(m_bits.size());
    for (std::size_t row = 0; row < newRows.size(); ++row)
        bits[static_cast<std::size_t>(newRows[row])] = m_bits[row];
    m_bits = std::move(bits);
    if (!isUpToDate())
        changed(0, m_counts[0] - 1);
}

void FileKinds::replaced()
{
    m_bits.assign(m_files.size(), 0);
    m_counts = {static_cast<qsizetype>(m_files.size())};
    m_from = 0;
    m_to = m_counts[0];
}

void FileKinds::changed(qsizetype first, qsizetype last)
{
    if (first > last)
        return;
    m_from = isUpToDate() ? first : std::min(m_from, first);
    m_to = std::max(m_to, last + 1);
}

bool FileKinds::update()
{
    const TDocumentSlice slice;
    while (!isUpToDate() && !slice.isOver()) {
        const qsizetype end = std::min(m_to, m_from + kStride);
        for (; m_from < end; ++m_from)
            put(m_from, look(m_from));
    }
    if (isUpToDate())
        m_from = m_to = 0;
    return isUpToDate();
}
