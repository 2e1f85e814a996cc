// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "metadata/TCSVParserDelegate.h"
#include "metadata/TCSVStream.h"

#include <optional>
#include <string>

/// Reads CSV text by recursive descent, one unit ahead: a document is records, a record is fields
/// between delimiters, ended by a run of line breaks. Fields are delivered as they stand in the
/// text. Memory is that of the longest field. Belongs to one thread.
class TCSVParser
{
public:
    /// stream is not owned. Throws std::logic_error for a null stream and for a delimiter that is
    /// null, a line break, a double quote or an octothorpe.
    TCSVParser(TCSVStream *stream, char16_t delimiter);

    /// Not owned; may be null.
    void setDelegate(TCSVParserDelegate *delegate)
    {
        m_delegate = delegate != nullptr ? delegate : &m_deaf;
    }
    /// Reads to the end of the text or to the first error. Once.
    void parse();
    /// Where parsing ended without an error; of the text behind a NUL nothing is read.
    enum class End { OfText, InQuotes, AtNul };
    End end() const { return m_end; }
    /// From within a delegate's operation: makes parsing end with this error.
    void fail(int code, const QString &text);

private:
    bool parseRecord();
    bool parseNewline();
    bool parseField();
    void parseUnescapedField();
    bool parseEscapedField();
    bool parseDelimiter();

    /// The next unit; 0 at the end of the text.
    char16_t peek();
    void advance() { m_stream->consume(1); }
    /// Moves units into the field for as long as they are wanted.
    template <class Wanted>
    void takeWhile(Wanted wanted);
    void takeQuote();

    TCSVStream *m_stream;
    const char16_t m_delimiter;
    TCSVParserDelegate m_deaf; ///< hears when nobody else does
    TCSVParserDelegate *m_delegate = &m_deaf;
    std::u16string m_field;
    qsizetype m_record = 0;
    End m_end = End::OfText;
    std::optional<TCSVError> m_error;
};
