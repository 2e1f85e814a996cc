// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TCoder.h"
#include "platform/TColor.h"

#include <QString>

#include <memory>
#include <vector>

/// A text whose stretches may have a background and a foreground colour. Runs cover the text from
/// its start without gaps; a text without runs has no colours. A value, whose copies share text and
/// runs until one of them is changed.
class TAttributedString
{
public:
    struct Run
    {
        qint32 length = 0; ///< in UTF-16 units
        TColor background;
        TColor foreground;
        friend bool operator==(const Run &, const Run &) = default;
    };

    using Runs = std::vector<Run>;

    TAttributedString() = default;
    explicit TAttributedString(QString text)
        : m_text(std::move(text))
    {
    }
    TAttributedString(QString text, TColor background, TColor foreground);

    const QString &string() const { return m_text; }
    const Runs &runs() const { return m_runs ? *m_runs : kNoRuns; }
    bool isEmpty() const { return m_text.isEmpty(); }
    /// Appends a stretch with the given colours; an empty one changes nothing.
    void append(QStringView text, TColor background = {}, TColor foreground = {});

    /// Takes memory for a text of that length at once.
    void reserve(qsizetype length) { m_text.reserve(length); }

    static TArchiveClass archiveClass();
    void encodeWithCoder(TEncoder &coder) const;
    void initWithCoder(const TDecoder &coder);

    friend bool operator==(const TAttributedString &a, const TAttributedString &b)
    {
        return a.m_text == b.m_text && a.runs() == b.runs();
    }

private:
    friend class RunsPool;
    static const Runs kNoRuns;

    void addRun(qsizetype length, TColor background, TColor foreground);

    QString m_text;
    std::shared_ptr<Runs> m_runs; ///< null for none
};

Q_DECLARE_METATYPE(TAttributedString)
