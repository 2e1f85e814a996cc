// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/CliEnvironment.h"
#include "support/ManualClock.h"
#include "support/TemporaryTree.h"

#include <QJsonObject>
#include <QStringList>

/// Keeps what is written, and can break like a full disk or a closed pipe.
class MemoryOutput : public ByteOutput
{
public:
    QByteArray bytes;
    int failWith = 0;              ///< the errno of every write
    std::function<void()> onWrite; ///< called before each write

protected:
    int writeAll(QByteArrayView written) override;
};

/// A terminal whose answers were thought of beforehand.
class ScriptedTerminal : public Terminal
{
public:
    bool there = false;
    QList<QByteArray> answers;

    bool isThere() override { return there; }
    std::optional<QByteArray> readLine() override;
};

/// Runs verbs in process on a tree of real files, with the data folder inside the tree.
class CliFixture
{
public:
    CliFixture();

    /// Runs the words that would follow the program's name; the streams start empty.
    int run(const QStringList &arguments);
    /// The same with the words of a shell's line, in which BATCH stands for batchPath().
    int runLine(const QString &line);
    QString out() const { return QString::fromUtf8(m_out.bytes); }
    QString err() const { return QString::fromUtf8(m_err.bytes); }
    const QByteArray &outBytes() const { return m_out.bytes; }
    /// Standard output as a JSON object (an array stands under "array"), empty when it is none.
    QJsonObject json() const;
    QList<QJsonObject> jsonLines() const;
    /// Makes empty files below the folder "batch".
    void batch(const QStringList &names) const;
    QString batchPath() const { return tree.path(QStringLiteral("batch")); }
    /// Names below the folder "batch", sorted.
    QStringList names() const { return tree.list(QStringLiteral("batch")); }
    /// The one rollback log there is; empty when there is none or more than one.
    QString onlyLog() const;

    TemporaryTree tree;
    ScriptedTerminal terminal;
    DiskFileManager disk;
    FileManager *fileManager = &disk;
    ManualClock clock{TDate::fromSeconds(1'751'551'509)}; ///< 2025-07-03 14:05:09 UTC
    std::atomic<bool> interrupted = false;
    bool outIsTerminal = false;
    bool errIsTerminal = false;
    QString metadataHelper; ///< path of the program
    int input = -1;
    int failOutputWith = 0;
    std::function<void()> onOutput;

private:
    MemoryOutput m_out;
    MemoryOutput m_err;
};
