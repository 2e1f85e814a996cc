// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliFixture.h"

#include "cli/Cli.h"
#include "cli/ShellWords.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

int MemoryOutput::writeAll(QByteArrayView written)
{
    if (onWrite)
        onWrite();
    bytes.append(written);
    return failWith;
}

std::optional<QByteArray> ScriptedTerminal::readLine()
{
    if (answers.isEmpty())
        return {};
    return answers.takeFirst();
}

CliFixture::CliFixture()
{
    qputenv("XDG_DATA_HOME", tree.folder(u"data"_s).toUtf8());
    qputenv("XDG_CONFIG_HOME", tree.folder(u"config"_s).toUtf8());
    tree.folder(u"batch"_s);
}

int CliFixture::run(const QStringList &arguments)
{
    m_out.bytes.clear();
    m_err.bytes.clear();
    // Streams of their own, since a broken one stays broken.
    MemoryOutput out;
    MemoryOutput err;
    out.failWith = failOutputWith;
    out.onWrite = onOutput;
    CliEnvironment environment{out, err, input, terminal, *fileManager, clock, interrupted};
    environment.outIsTerminal = outIsTerminal;
    environment.errIsTerminal = errIsTerminal;
    environment.metadataHelper = metadataHelper;
    const int status = Cli::run(arguments, environment);
    m_out.bytes = out.bytes;
    m_err.bytes = err.bytes;
    return status;
}

int CliFixture::runLine(const QString &line)
{
    QStringList words = splitShellWords(line).value();
    words.replaceInStrings(u"BATCH"_s, batchPath());
    return run(words);
}

QJsonObject CliFixture::json() const
{
    const QJsonDocument document = QJsonDocument::fromJson(m_out.bytes);
    return document.isArray() ? QJsonObject{{u"array"_s, document.array()}} : document.object();
}

QList<QJsonObject> CliFixture::jsonLines() const
{
    QList<QJsonObject> objects;
    for (const QByteArray &line : m_out.bytes.split('\n')) {
        if (!line.isEmpty())
            objects.append(QJsonDocument::fromJson(line).object());
    }
    return objects;
}

void CliFixture::batch(const QStringList &names) const
{
    for (const QString &name : names)
        tree.file(u"batch/"_s + name);
}

QString CliFixture::onlyLog() const
{
    QStringList logs;
    for (const QString &name : tree.list(u"data"_s)) {
        if (name.endsWith(u".renameLog"_s))
            logs.append(name);
    }
    return logs.size() == 1 ? tree.path(u"data/"_s + logs.first()) : QString();
}
