// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "metadata/TCSVParserDelegate.h"
#include "platform/TStringTable.h"

#include <array>
#include <optional>

/// Collects the lines that a parser finds. Repeated short fields share one text, so that a table of
/// few distinct values stays small.
class TCSVAggregator : public TCSVParserDelegate
{
public:
    /// Larger tables are refused, before memory runs out.
    static constexpr qsizetype kMaxCells = 50'000'000;

    void parserDidBeginDocument(TCSVParser &parser) override;
    void parserDidBeginLine(TCSVParser &parser, qsizetype record) override;
    void parserDidReadField(TCSVParser &parser, QStringView field, qsizetype index) override;
    void parserDidEndLine(TCSVParser &parser, qsizetype record) override;
    void parserDidFailWithError(TCSVParser &parser, const TCSVError &error) override;

    /// The lines of a document that ended well; null after an error.
    TStringTablePtr lines() const { return m_lines; }
    const std::optional<TCSVError> &error() const { return m_error; }

private:
    QString shared(QStringView field);

    std::shared_ptr<TStringTable> m_lines;
    QStringList m_line;
    qsizetype m_cells = 0;
    std::array<QString, 4096> m_recent; ///< by hash
    std::optional<TCSVError> m_error;
};

/// The table in a CSV file with commas; null when the file cannot be read or is malformed, and then
/// problem (which may be null) says why, for people.
TStringTablePtr rowsWithContentsOfCSVFile(const QString &path, QString *problem);
