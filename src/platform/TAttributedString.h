// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TCoder.h"
#include "platform/TColor.h"

#include <QString>

#include <vector>

/// A text whose stretches may have a background and a foreground colour. Runs cover the text from
/// its start without gaps; a text without runs has no colours.
class TAttributedString
{
public:
    struct Run
    {
        qsizetype length = 0; ///< in UTF-16 units
        TColor background;
        TColor foreground;
        friend bool operator==(const Run &, const Run &) = default;
    };

    TAttributedString() = default;
    explicit TAttributedString(QString text)
        : m_text(std::move(text))
    {
    }
    TAttributedString(QString text, TColor background, TColor foreground);

    const QString &string() const { return m_text; }
    const std::vector<Run> &runs() const { return m_runs; }
    bool isEmpty() const { return m_text.isEmpty(); }
    /// Appends a stretch with the given colours; an empty one changes nothing.
    void append(QStringView text, TColor background = {}, TColor foreground = {});

    static TArchiveClass archiveClass();
    void encodeWithCoder(TEncoder &coder) const;
    void initWithCoder(const TDecoder &coder);

    friend bool operator==(const TAttributedString &, const TAttributedString &) = default;

private:
    QString m_text;
    std::vector<Run> m_runs;
};

Q_DECLARE_METATYPE(TAttributedString)
