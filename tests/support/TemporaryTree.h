// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// A temporary folder tree of real files; the one place where tests make them. Removed at the end,
/// names that are not UTF-8 and folders without permissions included.
class TemporaryTree
{
public:
    TemporaryTree();
    ~TemporaryTree();
    TemporaryTree(const TemporaryTree &) = delete;
    TemporaryTree &operator=(const TemporaryTree &) = delete;

    /// Absolute path of a relative one.
    QString path(const QString &relative = {}) const;
    /// Makes a file (and its folders) with the given content; returns its absolute path.
    QString file(const QString &relative, const QByteArray &content = {}) const;
    /// The same with a name of raw bytes.
    QByteArray rawFile(const QByteArray &relative, const QByteArray &content = {}) const;
    QString folder(const QString &relative) const;
    /// Makes a symbolic link to the target as it is written.
    void link(const QString &target, const QString &relative) const;
    void hardLink(const QString &existing, const QString &relative) const;
    void remove(const QString &relative) const;
    void setMode(const QString &relative, unsigned mode) const;
    QByteArray content(const QString &relative) const;
    /// A link whose target is missing exists.
    bool exists(const QString &relative) const;
    /// All names below a folder (raw bytes as U+DCxx), hidden ones too, sorted; folders end in "/".
    QStringList list(const QString &relative = {}) const;

private:
    QByteArray bytes(const QString &relative) const;

    QByteArray m_root;
};
