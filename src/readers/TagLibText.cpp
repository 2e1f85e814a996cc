// SPDX-License-Identifier: GPL-3.0-or-later
#include "readers/TagLibText.h"

QString fromTagLib(const TagLib::String &text)
{
    QString result(static_cast<qsizetype>(text.size()), Qt::Uninitialized);
    qsizetype at = 0;
    for (const wchar_t unit : text)
        result[at++] = QChar(static_cast<char16_t>(unit));
    return result;
}

QStringList fromTagLib(const TagLib::StringList &texts)
{
    QStringList result;
    for (const TagLib::String &text : texts)
        result.append(fromTagLib(text));
    return result;
}
