// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/JsonText.h"

#include <QChar>

namespace {

void appendEscape(QByteArray &json, char16_t unit)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    json.append("\\u");
    for (int shift = 12; shift >= 0; shift -= 4)
        json.append(kDigits[(unit >> shift) & 0xF]);
}

void appendUtf8(QByteArray &json, char32_t point)
{
    const auto add = [&json](char32_t byte) { json.append(static_cast<char>(byte)); };
    if (point < 0x80) {
        add(point);
    } else if (point < 0x800) {
        add(0xC0 | (point >> 6));
        add(0x80 | (point & 0x3F));
    } else if (point < 0x10000) {
        add(0xE0 | (point >> 12));
        add(0x80 | ((point >> 6) & 0x3F));
        add(0x80 | (point & 0x3F));
    } else {
        add(0xF0 | (point >> 18));
        add(0x80 | ((point >> 12) & 0x3F));
        add(0x80 | ((point >> 6) & 0x3F));
        add(0x80 | (point & 0x3F));
    }
}

bool isControl(char16_t unit)
{
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028 || unit == 0x2029;
}

void appendUnit(QByteArray &json, char16_t unit)
{
    if (unit == u'"' || unit == u'\\') {
        json.append('\\');
        json.append(static_cast<char>(unit));
    } else if (unit == u'\n') {
        json.append("\\n");
    } else if (unit == u'\t') {
        json.append("\\t");
    } else if (isControl(unit) || QChar::isSurrogate(unit)) {
        appendEscape(json, unit);
    } else {
        appendUtf8(json, unit);
    }
}

} // namespace

void appendJsonString(QByteArray &json, QStringView text)
{
    json.append('"');
    appendJsonCharacters(json, text);
    json.append('"');
}

void appendJsonCharacters(QByteArray &json, QStringView text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i].unicode();
        const bool pair = QChar::isHighSurrogate(unit) && i + 1 < text.size() &&
                          QChar::isLowSurrogate(text[i + 1].unicode());
        if (pair)
            appendUtf8(json, QChar::surrogateToUcs4(unit, text[++i].unicode()));
        else
            appendUnit(json, unit);
    }
}
