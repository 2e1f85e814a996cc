// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/TemporaryTree.h"

#include "commonprocs/ByteNames.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ftw.h>
#include <iterator>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace {

fs::path toPath(const QByteArray &bytes)
{
    return {bytes.toStdString()};
}

QString fromPath(const fs::path &path)
{
    return ByteNames::fromBytes(QByteArray::fromStdString(path.native()));
}

constexpr int kOpenFolders = 32;

int openUp(const char *path, const struct stat * /*status*/, int type, FTW * /*level*/)
{
    return type == FTW_D || type == FTW_DNR ? chmod(path, S_IRWXU) : 0;
}

int removeEntry(const char *path, const struct stat * /*status*/, int /*type*/, FTW * /*level*/)
{
    return std::remove(path);
}

} // namespace

TemporaryTree::TemporaryTree()
{
    m_root = QByteArray::fromStdString((fs::temp_directory_path() / "tavrin-XXXXXX").native());
    if (mkdtemp(m_root.data()) == nullptr)
        qFatal("cannot make a temporary folder");
}

TemporaryTree::~TemporaryTree()
{
    // A folder that could not be opened tells about its own folders only when it can be.
    for (int pass = 0; pass < 2; ++pass)
        nftw(m_root.constData(), openUp, kOpenFolders, FTW_PHYS);
    nftw(m_root.constData(), removeEntry, kOpenFolders, FTW_PHYS | FTW_DEPTH);
}

QByteArray TemporaryTree::bytes(const QString &relative) const
{
    return relative.isEmpty() ? m_root : m_root + '/' + ByteNames::toBytes(relative);
}

QString TemporaryTree::path(const QString &relative) const
{
    return ByteNames::fromBytes(bytes(relative));
}

QString TemporaryTree::file(const QString &relative, const QByteArray &content) const
{
    return ByteNames::fromBytes(rawFile(ByteNames::toBytes(relative), content));
}

QByteArray TemporaryTree::rawFile(const QByteArray &relative, const QByteArray &content) const
{
    QByteArray whole = m_root + '/' + relative;
    fs::create_directories(toPath(whole).parent_path());
    std::ofstream stream(toPath(whole), std::ios::binary | std::ios::trunc);
    stream.write(content.constData(), content.size());
    stream.close();
    if (!stream)
        qFatal("cannot write %s", whole.constData());
    return whole;
}

QString TemporaryTree::folder(const QString &relative) const
{
    fs::create_directories(toPath(bytes(relative)));
    return path(relative);
}

void TemporaryTree::link(const QString &target, const QString &relative) const
{
    fs::create_directories(toPath(bytes(relative)).parent_path());
    fs::create_symlink(toPath(ByteNames::toBytes(target)), toPath(bytes(relative)));
}

void TemporaryTree::hardLink(const QString &existing, const QString &relative) const
{
    fs::create_hard_link(toPath(bytes(existing)), toPath(bytes(relative)));
}

void TemporaryTree::remove(const QString &relative) const
{
    fs::remove_all(toPath(bytes(relative)));
}

void TemporaryTree::setMode(const QString &relative, unsigned mode) const
{
    fs::permissions(toPath(bytes(relative)), static_cast<fs::perms>(mode));
}

QByteArray TemporaryTree::content(const QString &relative) const
{
    std::ifstream stream(toPath(bytes(relative)), std::ios::binary);
    return QByteArray::fromStdString({std::istreambuf_iterator<char>(stream), {}});
}

bool TemporaryTree::exists(const QString &relative) const
{
    return fs::symlink_status(toPath(bytes(relative))).type() != fs::file_type::not_found;
}

QStringList TemporaryTree::list(const QString &relative) const
{
    QStringList names;
    const fs::path root = toPath(bytes(relative));
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(root)) {
        QString name = fromPath(entry.path().lexically_relative(root));
        if (!entry.is_symlink() && entry.is_directory())
            name += u'/';
        names.append(name);
    }
    names.sort();
    return names;
}
