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

} // namespace

const TAttributedString::Runs TAttributedString::kNoRuns;

void TAttributedString::addRun(qsizetype length, TColor background, TColor foreground)
{
    if (length <= 0)
        return;
    if (!m_runs)
        m_runs = std::make_shared<Runs>();
    else if (m_runs.use_count() > 1)
        m_runs = std::make_shared<Runs>(*m_runs);
    const auto units = static_cast<qint32>(length);
    if (!m_runs->empty() && m_runs->back().background == background &&
        m_runs->back().foreground == foreground)
        m_runs->back().length += units;
    else
        m_runs->push_back({units, background, foreground});
}

TAttributedString::TAttributedString(QString text, TColor background, TColor foreground)
    : m_text(std::move(text))
{
    if (background.isSet() || foreground.isSet())
        addRun(m_text.size(), background, foreground);
}

void TAttributedString::append(QStringView text, TColor background, TColor foreground)
{
    if (text.isEmpty())
        return;
    const bool coloured = background.isSet() || foreground.isSet();
    if (coloured && !m_runs)
        addRun(m_text.size(), {}, {});
    m_text += text;
    if (coloured || m_runs)
        addRun(text.size(), background, foreground);
}

TArchiveClass TAttributedString::archiveClass()
{
    return kClass;
}

void TAttributedString::encodeWithCoder(TEncoder &coder) const
{
    coder.encodeString(kTextKey, m_text);
    if (!m_runs)
        return;
    QVariantList runs;
    for (const Run &run : *m_runs) {
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
    m_runs.reset();
    qsizetype left = m_text.size();
    const QVariantList runs = coder.decodeVariant(kRunsKey).toList();
    for (const QVariant &run : runs) {
        const QVariantMap fields = run.toMap();
        // A run may not reach past the text, whatever the archive says.
        const qsizetype length = std::clamp<qsizetype>(fields.value(kLength).toLongLong(), 0, left);
        addRun(length, TColor::fromHex(fields.value(kBackground).toString()),
               TColor::fromHex(fields.value(kForeground).toString()));
        left -= length;
    }
}
