// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class TCSVParser;

/// Why a CSV text has no table.
struct TCSVError
{
    static constexpr int kUnexpectedDelimiter = 1;
    static constexpr int kUnreadable = 2; ///< the file, or bytes that are no text in its encoding
    static constexpr int kTooLarge = 3;

    int code = 0;
    QString text;
    qsizetype record = 0; ///< in which it happened, from 1
};

/// Hears what a parser finds, in the order of the text. Every operation does nothing unless it is
/// overridden. The document begins once and then either ends or fails.
class TCSVParserDelegate
{
public:
    TCSVParserDelegate() = default;
    TCSVParserDelegate(const TCSVParserDelegate &) = delete;
    TCSVParserDelegate &operator=(const TCSVParserDelegate &) = delete;
    virtual ~TCSVParserDelegate() = default;

    virtual void parserDidBeginDocument(TCSVParser & /*parser*/) {}
    /// Records count from 1.
    virtual void parserDidBeginLine(TCSVParser & /*parser*/, qsizetype /*record*/) {}
    /// Raw text, quotes included, valid during the call; fields of a record count from 0.
    virtual void parserDidReadField(TCSVParser & /*parser*/, QStringView /*field*/,
                                    qsizetype /*index*/)
    {
    }
    virtual void parserDidEndLine(TCSVParser & /*parser*/, qsizetype /*record*/) {}
    virtual void parserDidEndDocument(TCSVParser & /*parser*/) {}
    virtual void parserDidFailWithError(TCSVParser & /*parser*/, const TCSVError & /*error*/) {}
};
