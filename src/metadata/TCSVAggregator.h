// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "metadata/TCSVParser.h"
#include "platform/TStringTable.h"

#include <array>
#include <functional>
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

/// What reading a CSV file gave.
struct TCSVContents
{
    TStringTablePtr rows; ///< null when the file cannot be read, is malformed or was given up
    QString problem;      ///< why there are no rows, for people; empty when reading was given up
    TCSVStream::Encoding encoding = TCSVStream::Encoding::Utf8;
    TCSVParser::End end = TCSVParser::End::OfText;
};

/// Called after every block with the share of the file that was read, 0 to 1, on the reading
/// thread; false gives the reading up.
using TCSVProgress = std::function<bool(double)>;

/// Reads a CSV file with commas. Any thread.
TCSVContents contentsOfCSVFile(const QString &path, const TCSVProgress &progress = {});
/// The same for those who want the table only; problem may be null.
TStringTablePtr rowsWithContentsOfCSVFile(const QString &path, QString *problem);
