// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/PresetsManager.h"

#include "commonprocs/ByteNames.h"
#include "commonprocs/URLListProcessing.h"
#include "commonprocs/easyfile.h"
#include "document/TRuleKinds.h"
#include "platform/PrivateFolder.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSaveFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr char kPresetsVariable[] = "TAVRIN_PRESETS";
constexpr QLatin1StringView kApplication{"Tavrin"};
constexpr QLatin1StringView kSubfolder{"presets"};

QString shippedFolder()
{
    QString chosen = qEnvironmentVariable(kPresetsVariable);
    if (!chosen.isEmpty())
        return chosen;
    const QString installed = QString::fromUtf8(TAVRIN_INSTALLED_PRESETS);
    return QFileInfo(installed).isDir() ? installed : QString::fromUtf8(TAVRIN_SOURCE_PRESETS);
}

QString userFolder()
{
    const TFileURL support = appSupportDirURL();
    if (!support.isValid())
        return {};
    return support.appendingPathComponent(kApplication).appendingPathComponent(kSubfolder).path();
}

void appendPresets(const QString &folder, QStringList &paths)
{
    if (folder.isEmpty())
        return;
    TFileURLs urls;
    processURLforExtensionstoList(TFileURL::fileURLWithPath(folder), {PresetsManager::kExtension},
                                  urls);
    for (const TFileURL &url : std::as_const(urls))
        paths.append(url.path());
}

QString nameOf(const QString &path)
{
    return removeExtensionFromFilename(TFileURL::fileURLWithPath(path).lastPathComponent());
}

/// A list with one value for each name; a later value takes the place of an earlier one.
template <class Value>
class NamedList
{
public:
    void set(const QString &name, Value value)
    {
        const auto known = m_places.constFind(name);
        if (known != m_places.cend()) {
            m_values[*known] = std::move(value);
        } else {
            m_places.insert(name, m_values.size());
            m_values.push_back(std::move(value));
        }
    }
    std::vector<Value> take() { return std::move(m_values); }

private:
    QHash<QString, size_t> m_places;
    std::vector<Value> m_values;
};

TResult<QByteArray> readFile(const QString &path)
{
    using Result = TResult<QByteArray>;
    const int descriptor =
        open(ByteNames::toBytes(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return Result::failure(textForErrno(errno));
    QFile file;
    file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return Result::failure(u"That is not a file."_s);
    QByteArray data = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return Result::failure(file.errorString());
    return data;
}

/// Why a preset cannot be saved under the name of that file; empty when it can.
QString reasonToRefusePreset(const QString &name, const QString &fileName)
{
    if (name.isEmpty())
        return u"A preset needs a name."_s;
    if (ByteNames::hasRawBytes(name))
        return u"The name of a preset must be valid UTF-8."_s;
    if (name.startsWith('.'_L1))
        return u"The name of a preset cannot begin with a period: its file would be hidden."_s;
    return reasonToRefuseName(fileName);
}

TResult<bool> refusal(const QString &name)
{
    return TResult<bool>::failure(
        u"The preset \"%1\" is shipped and cannot be deleted."_s.arg(name));
}

TResult<bool> removeFile(const QString &path)
{
    if (unlink(ByteNames::toBytes(path).constData()) != 0)
        return TResult<bool>::failure(textForErrno(errno));
    return true;
}

} // namespace

PresetsManager::PresetsManager(QString internalFolder, QString externalFolder)
    : m_internalFolder(std::move(internalFolder))
    , m_externalFolder(std::move(externalFolder))
{
}

PresetsManager PresetsManager::standard()
{
    return {shippedFolder(), userFolder()};
}

void PresetsManager::readInternalPresetURLsIntoArray(QStringList &paths) const
{
    appendPresets(m_internalFolder, paths);
}

void PresetsManager::readExternalPresetURLsIntoArray(QStringList &paths) const
{
    appendPresets(m_externalFolder, paths);
}

std::vector<std::pair<QString, TRuleList>> PresetsManager::readPresets() const
{
    QStringList paths;
    readInternalPresetURLsIntoArray(paths);
    readExternalPresetURLsIntoArray(paths);
    NamedList<std::pair<QString, TRuleList>> presets;
    for (const QString &path : std::as_const(paths)) {
        if (TResult<TRuleList> rules = readPreset(path))
            presets.set(nameOf(path), {nameOf(path), std::move(rules).value()});
    }
    return presets.take();
}

std::vector<PresetsManager::Entry> PresetsManager::presets() const
{
    QStringList paths;
    readInternalPresetURLsIntoArray(paths);
    const qsizetype shipped = paths.size();
    readExternalPresetURLsIntoArray(paths);
    NamedList<Entry> entries;
    for (qsizetype i = 0; i < paths.size(); ++i) {
        if (!URLisFolder(TFileURL::fileURLWithPath(paths[i])))
            entries.set(nameOf(paths[i]), {nameOf(paths[i]), paths[i], i < shipped});
    }
    return entries.take();
}

TResult<TRuleList> PresetsManager::readPreset(const QString &path) const
{
    const TResult<QByteArray> data = readFile(path);
    if (!data)
        return TResult<TRuleList>::failure(data.message());
    return TRuleKinds::unarchiveRules(data.value());
}

TResult<QString> PresetsManager::savePreset(const QString &name, const TRuleList &rules) const
{
    using Result = TResult<QString>;
    if (rules.empty())
        return Result::failure(u"There are no rules to save."_s);
    const QString shown = QString(name).replace(':'_L1, '.'_L1);
    const QString fileName = shown + '.'_L1 + kExtension;
    const QString reason = reasonToRefusePreset(shown, fileName);
    if (!reason.isEmpty())
        return Result::failure(reason);
    if (!makePrivateFolder(ByteNames::toBytes(m_externalFolder)))
        return Result::failure(u"The folder %1 cannot be made."_s.arg(m_externalFolder));
    QSaveFile file(m_externalFolder + '/'_L1 + fileName);
    if (file.open(QIODevice::WriteOnly) && TRuleKinds::archiveRules(rules, file) && file.commit())
        return file.fileName();
    return Result::failure(u"%1 cannot be written: %2"_s.arg(file.fileName(), file.errorString()));
}

TResult<bool> PresetsManager::deletePreset(const QString &name) const
{
    for (const Entry &entry : presets())
        if (entry.name == name)
            return entry.shipped ? refusal(name) : removeFile(entry.path);
    return TResult<bool>::failure(u"There is no preset named \"%1\"."_s.arg(name));
}

TResult<bool> PresetsManager::deletePresetFile(const QString &path) const
{
    QStringList own;
    readExternalPresetURLsIntoArray(own);
    return own.contains(path) ? removeFile(path) : refusal(nameOf(path));
}
