// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/NameCandidates.h"

#include "commonprocs/ByteNames.h"

#include <QStringBuilder>

#include <array>
#include <charconv>
#include <cstring>
#include <optional>
#include <utility>

namespace {

constexpr qsizetype kLongestNumber = 18; ///< digits that a qint64 surely holds

/// "photo-12" is the candidate 12 of "photo"; nothing when it is no candidate's form.
std::optional<std::pair<QByteArrayView, qint64>> splitNumber(QByteArrayView base)
{
    qsizetype start = base.size();
    while (start > 0 && base[start - 1] >= '0' && base[start - 1] <= '9')
        --start;
    const qsizetype digits = base.size() - start;
    if (digits == 0 || digits > kLongestNumber || base[start] == '0' || start == 0 ||
        base[start - 1] != '-')
        return {};
    qint64 number = 0;
    std::from_chars(base.data() + start, base.data() + base.size(), number);
    return std::pair(base.first(start - 1), number);
}

} // namespace

NameCandidates::NameCandidates(const QString &base, const QString &extension, bool folds)
    : m_base(base)
    , m_extension(extension)
{
    append(m_bytes, base, folds);
    m_baseSize = m_bytes.size();
    append(m_extensionBytes, extension, folds);
}

void NameCandidates::append(Bytes &out, QStringView text, bool folds)
{
    const QString folded = folds ? text.toString().toCaseFolded() : QString();
    const QStringView name = folds ? QStringView(folded) : text;
    const qsizetype start = out.size();
    out.resize(start + name.size() * ByteNames::kMaxBytesPerUnit);
    out.resize(start + ByteNames::toBytes(name, out.data() + start));
}

Hash128 NameCandidates::keyOf(QByteArrayView base, QByteArrayView extension)
{
    Bytes bytes;
    bytes.append(base.data(), base.size());
    bytes.append('/'); // which no name has
    bytes.append(extension.data(), extension.size());
    return Hash128::of(QByteArrayView(bytes));
}

Hash128 NameCandidates::key() const
{
    return keyOf(QByteArrayView(m_bytes.data(), m_baseSize), QByteArrayView(m_extensionBytes));
}

QString NameCandidates::base(qint64 number) const
{
    return number == 0 ? m_base : m_base % u'-' % QString::number(number);
}

QString NameCandidates::name(qint64 number) const
{
    return base(number) % u'.' % m_extension;
}

Hash128 NameCandidates::hash(qint64 number)
{
    m_bytes.resize(m_baseSize);
    if (number > 0) {
        std::array<char, kLongestNumber + 2> digits{};
        const char *const end =
            std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        m_bytes.append('-');
        m_bytes.append(digits.data(), end - digits.data());
    }
    m_bytes.append('.');
    m_bytes.append(m_extensionBytes.data(), m_extensionBytes.size());
    return Hash128::of(QByteArrayView(m_bytes));
}

bool NameCandidates::leadOut() const
{
    const auto hasSlash = [](const Bytes &bytes, qsizetype size) {
        return std::memchr(bytes.data(), '/', static_cast<std::size_t>(size)) != nullptr;
    };
    return hasSlash(m_bytes, m_baseSize) || hasSlash(m_extensionBytes, m_extensionBytes.size());
}

Hash128 NameCandidates::hashOf(QStringView name, bool folds)
{
    Bytes bytes;
    append(bytes, name, folds);
    return Hash128::of(QByteArrayView(bytes));
}

void NameCandidates::forEachReading(QStringView name, bool folds, const Reading &reading)
{
    Bytes bytes;
    append(bytes, name, folds);
    const QByteArrayView whole(bytes);
    for (qsizetype dot = whole.indexOf('.'); dot >= 0; dot = whole.indexOf('.', dot + 1)) {
        const QByteArrayView base = whole.first(dot);
        const QByteArrayView extension = whole.sliced(dot + 1);
        reading(keyOf(base, extension), 0);
        if (const auto split = splitNumber(base))
            reading(keyOf(split->first, extension), split->second);
    }
}
