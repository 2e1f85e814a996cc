// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TErrorText.h"

TErrorText::TErrorText(const QString &text, const TFileURL &file)
{
    if (text.isNull())
        return;
    m_parts = new Parts;
    m_parts->text = text;
    m_parts->file = file;
}

QString TErrorText::toString() const
{
    if (!m_parts)
        return {};
    return m_parts->file.isValid() ? m_parts->text + m_parts->file.path() : m_parts->text;
}

bool TErrorText::share(const TErrorText &other)
{
    const Parts *const own = m_parts.constData();
    const Parts *const known = other.m_parts.constData();
    if (own == known)
        return true;
    if (own == nullptr || known == nullptr || own->text != known->text)
        return false;
    if (own->file == known->file)
        m_parts = other.m_parts;
    else
        m_parts->text = known->text;
    return true;
}
