// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/TFileURL.h"

#include "commonprocs/ByteNames.h"

#include <QStringBuilder>

#include <algorithm>
#include <cstdlib>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kScheme = "file://"_L1;
constexpr QLatin1StringView kLocalHost = "localhost"_L1;
constexpr QChar kSlash = u'/';

/// "" with errno set when it has been removed.
QString currentFolder()
{
    char *const path = getcwd(nullptr, 0);
    QString result = path != nullptr ? ByteNames::fromBytes(path) : QString();
    std::free(path); // NOLINT(cppcoreguidelines-no-malloc): getcwd's own allocation
    return result;
}

QString withSlash(const QString &folder)
{
    return folder.endsWith(kSlash) ? folder : folder + kSlash;
}

} // namespace

TFolder::TFolder(const QString &path)
    : m_path(path)
    , m_bytes(ByteNames::toBytes(path))
    , m_name(path == kSlash ? path : path.mid(path.lastIndexOf(kSlash) + 1))
    , m_url(withSlash(kScheme + ByteNames::toUrlPath(path)))
{
}

QStringList TFolder::components() const
{
    return QStringList(u"/"_s) + m_path.split(kSlash, Qt::SkipEmptyParts);
}

TFileURL::TFileURL(TFolderPtr folder, QString name)
    : m_folder(std::move(folder))
    , m_name(std::move(name))
{
}

TFileURL TFileURL::fileURLWithPath(const QString &path)
{
    if (path.isEmpty() || path.contains(QChar::Null))
        return {};
    const QString whole = absolutePath(path);
    if (whole.isEmpty())
        return {};
    const qsizetype slash = whole.lastIndexOf(kSlash);
    return {std::make_shared<const TFolder>(whole.left(std::max<qsizetype>(slash, 1))),
            whole.mid(slash + 1)};
}

TFileURL TFileURL::fromString(const QString &url)
{
    if (!url.startsWith(kScheme, Qt::CaseInsensitive) || url.contains(u'?') || url.contains(u'#'))
        return {};
    QStringView path = QStringView(url).mid(kScheme.size());
    if (path.startsWith(kLocalHost, Qt::CaseInsensitive))
        path = path.mid(kLocalHost.size());
    if (!path.startsWith(kSlash))
        return {};
    return fileURLWithPath(ByteNames::fromUrlPath(path));
}

QString TFileURL::path() const
{
    if (!isValid() || m_name.isEmpty())
        return isValid() ? m_folder->path() : QString();
    const QString &folder = m_folder->path();
    if (folder.endsWith(kSlash))
        return folder % m_name;
    return folder % kSlash % m_name;
}

QByteArray TFileURL::fileSystemPath() const
{
    if (!isValid() || m_name.isEmpty())
        return isValid() ? m_folder->bytes() : QByteArray();
    QByteArray bytes = m_folder->bytes();
    if (!bytes.endsWith('/'))
        bytes += '/';
    return bytes + ByteNames::toBytes(m_name);
}

QString TFileURL::pathExtension() const
{
    return getExtensionFromFileName(m_name);
}

QStringList TFileURL::pathComponents() const
{
    QStringList components = isValid() ? m_folder->components() : QStringList();
    if (!m_name.isEmpty())
        components.append(m_name);
    return components;
}

TFileURL TFileURL::deletingLastPathComponent() const
{
    return isValid() ? fileURLWithPath(m_folder->path()) : TFileURL();
}

TFileURL TFileURL::appendingPathComponent(const QString &component) const
{
    return isValid() ? fileURLWithPath(withSlash(path()) + component) : TFileURL();
}

QString TFileURL::relativeUrl() const
{
    return ByteNames::toUrlPath(m_name);
}

QString TFileURL::absoluteString() const
{
    return isValid() ? m_folder->url() + relativeUrl() : QString();
}

bool operator==(const TFileURL &a, const TFileURL &b)
{
    if (a.m_name != b.m_name || a.isValid() != b.isValid())
        return false;
    return a.m_folder == b.m_folder || a.m_folder->path() == b.m_folder->path();
}

QString absolutePath(const QString &path)
{
    QString out = path;
    if (!path.startsWith(kSlash)) {
        const QString folder = currentFolder();
        if (folder.isEmpty())
            return {};
        out = withSlash(folder) + path;
    }
    if (out.contains("//"_L1)) {
        QString single;
        single.reserve(out.size());
        for (const QChar unit : out)
            if (unit != kSlash || !single.endsWith(kSlash))
                single += unit;
        out = single;
    }
    if (out.size() > 1 && out.endsWith(kSlash))
        out.chop(1);
    return out;
}

qsizetype extensionDot(QStringView name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 && dot + 1 < name.size() ? dot : -1;
}

QString removeExtensionFromFilename(const QString &name)
{
    const qsizetype dot = extensionDot(name);
    return dot < 0 ? name : name.left(dot);
}

QString getExtensionFromFileName(const QString &name)
{
    const qsizetype dot = extensionDot(name);
    return dot < 0 ? u""_s : name.mid(dot + 1);
}
