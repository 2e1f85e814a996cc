// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// A temporary folder tree of real files; the one place where tests make them. Removed at the end.
class TemporaryTree
{
public:
    TemporaryTree();

    /// Absolute path of a relative one.
    QString path(const QString &relative = {}) const;
    /// Makes a file (and its folders) with the given content; returns its absolute path.
    QString file(const QString &relative, const QByteArray &content = {}) const;
    /// The same with a name of raw bytes.
    QByteArray rawFile(const QByteArray &relative, const QByteArray &content = {}) const;
    QString folder(const QString &relative) const;
    void link(const QString &target, const QString &relative) const;
    QByteArray content(const QString &relative) const;
    bool exists(const QString &relative) const;
    /// All names below a folder (raw bytes as U+DCxx), hidden ones too, sorted; folders end in "/".
    QStringList list(const QString &relative = {}) const;

private:
    QTemporaryDir m_dir;
};
