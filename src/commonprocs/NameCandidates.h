// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/HashSet128.h"

#include <QString>
#include <QVarLengthArray>

#include <functional>

/// The names that are tried for one base and extension, by number: 0 is "base.extension", N is
/// "base-N.extension". The dot always stands, also before an empty extension. They are hashed as
/// bytes without making a text of each. Refers to the texts that it was made with.
class NameCandidates
{
public:
    /// What a name may be taken for: candidate number of the base and extension under a key.
    using Reading = std::function<void(Hash128 key, qint64 number)>;

    /// folds: upper and lower case hash alike.
    NameCandidates(const QString &base, const QString &extension, bool folds);

    /// Stands for the base and the extension together.
    Hash128 key() const;
    QString base(qint64 number) const;
    QString name(qint64 number) const;
    Hash128 hash(qint64 number);
    /// A "/" in them leads out of the folder.
    bool leadOut() const;

    static Hash128 hashOf(QStringView name, bool folds);
    /// Any dot of a name may be the one between some base and its extension, and "photo-12" may be
    /// a base or number 12 of "photo": calls reading for all of these, and perhaps for some more.
    static void forEachReading(QStringView name, bool folds, const Reading &reading);

private:
    using Bytes = QVarLengthArray<char, 512>;

    static void append(Bytes &out, QStringView text, bool folds);
    static Hash128 keyOf(QByteArrayView base, QByteArrayView extension);

    const QString &m_base;
    const QString &m_extension;
    Bytes m_bytes; ///< the base, and the latest candidate's rest behind it
    Bytes m_extensionBytes;
    qsizetype m_baseSize = 0;
};
