// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ProgressLine.h"

namespace {
constexpr std::chrono::milliseconds kInterval{100};
constexpr char kClearLine[] = "\r\x1b[K";
} // namespace

ProgressLine::ProgressLine(ByteOutput &output, Mode mode)
    : m_output(output)
    , m_mode(mode)
    , m_last(std::chrono::steady_clock::now())
{
}

ProgressLine::~ProgressLine()
{
    clear();
}

void ProgressLine::show(QLatin1StringView what, qsizetype done, qsizetype total)
{
    if (m_mode == Mode::Off)
        return;
    const auto now = std::chrono::steady_clock::now();
    if (now - m_last < kInterval)
        return;
    m_last = now;
    QByteArray line = m_mode == Mode::Overwrite ? QByteArray(kClearLine) : QByteArray();
    line.append(what).append(": ").append(QByteArray::number(done));
    if (total >= 0)
        line.append(" of ").append(QByteArray::number(total));
    if (m_mode == Mode::Lines)
        line.append('\n');
    m_output.write(line);
    m_output.flush();
    m_visible = m_mode == Mode::Overwrite;
}

void ProgressLine::clear()
{
    if (!m_visible)
        return;
    m_output.write(kClearLine);
    m_output.flush();
    m_visible = false;
}
