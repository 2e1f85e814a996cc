// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TAttributedString.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array kClass{"NSAttributedString", "NSObject"};
constexpr QLatin1StringView kTextKey{"NSString"};
constexpr QLatin1StringView kRunsKey{"runs"};
constexpr QLatin1StringView kLength{"length"};
constexpr QLatin1StringView kBackground{"background"};
constexpr QLatin1StringView kForeground{"foreground"};

void addRun(std::vector<TAttributedString::Run> &runs, const TAttributedString::Run &run)
{
    if (run.length <= 0)
        return;
    if (!runs.empty() && runs.back().background == run.background &&
        runs.back().foreground == run.foreground)
        runs.back().length += run.length;
    else
        runs.push_back(run);
}

} // namespace

TAttributedString::TAttributedString(QString text, TColor background, TColor foreground)
    : m_text(std::move(text))
{
    if (background.isSet() || foreground.isSet())
        addRun(m_runs, {m_text.size(), background, foreground});
}

void TAttributedString::append(QStringView text, TColor background, TColor foreground)
{
    if (text.isEmpty())
        return;
    const bool coloured = background.isSet() || foreground.isSet();
    if (coloured && m_runs.empty())
        addRun(m_runs, {m_text.size(), {}, {}});
    m_text += text;
    if (coloured || !m_runs.empty())
        addRun(m_runs, {text.size(), background, foreground});
}

TArchiveClass TAttributedString::archiveClass()
{
    return kClass;
}

void TAttributedString::encodeWithCoder(TEncoder &coder) const
{
    coder.encodeString(kTextKey, m_text);
    if (m_runs.empty())
        return;
    QVariantList runs;
    for (const Run &run : m_runs) {
        QVariantMap fields{{kLength, static_cast<qint64>(run.length)}};
        if (run.background.isSet())
            fields.insert(kBackground, run.background.hex());
        if (run.foreground.isSet())
            fields.insert(kForeground, run.foreground.hex());
        runs.append(fields);
    }
    coder.encodeVariant(kRunsKey, runs);
}

void TAttributedString::initWithCoder(const TDecoder &coder)
{
    m_text = coder.decodeString(kTextKey);
    m_runs.clear();
    qsizetype left = m_text.size();
    const QVariantList runs = coder.decodeVariant(kRunsKey).toList();
    for (const QVariant &run : runs) {
        const QVariantMap fields = run.toMap();
        // A run may not reach past the text, whatever the archive says.
        const qsizetype length = std::clamp<qsizetype>(fields.value(kLength).toLongLong(), 0, left);
        addRun(m_runs, {length, TColor::fromHex(fields.value(kBackground).toString()),
                        TColor::fromHex(fields.value(kForeground).toString())});
        left -= length;
    }
}
