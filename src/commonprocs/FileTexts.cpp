// SPDX-License-Identifier: GPL-3.0-or-later
#include "commonprocs/ByteNames.h"
#include "commonprocs/easyfile.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

struct ErrnoText
{
    int error;
    QLatin1StringView text;
};

constexpr ErrnoText kErrnoTexts[] = {
    {EACCES, "The folder does not let you do this. Ask its owner for permission to change it."_L1},
    {EPERM, "The file or its folder is protected against changes. Ask its owner to lift that."_L1},
    {EROFS, "The disk is read-only. Make it writable, or copy the files to another disk."_L1},
    {ENOENT, "The file is no longer there. Add it again if it was moved or renamed."_L1},
    {EEXIST, "The name is taken by another file. Choose another name."_L1},
    {ENOTEMPTY, "The name is taken by another folder. Choose another name."_L1},
    {ENAMETOOLONG, "The name or the whole path is too long. Make it shorter."_L1},
    {ENOSPC, "The disk is full. Free some space and try again."_L1},
    {EDQUOT, "Your share of the disk is used up. Free some space and try again."_L1},
    {ENOTDIR, "A part of the path is not a folder. Check the path."_L1},
    {ELOOP, "The path has links that lead in a circle. Correct these links."_L1},
    {EIO, "The disk reports an error. Check the disk and its connection, and keep a copy."_L1},
    {EBUSY, "Another program uses the file or folder. Close that program and try again."_L1},
    {ETXTBSY, "The file is a running program. Close it and try again."_L1},
    {EINVAL, "The file system does not accept this name. Leave out special characters such as "
             "\\ : * ? \" < > | and blanks or periods at its end."_L1},
    {EILSEQ, "The file system does not accept some characters of this name. Leave them out."_L1},
    {EXDEV, "Files are never moved to another disk. Choose a name in the same folder."_L1},
    {ESTALE, "The network folder has changed. Open it again and try again."_L1},
    {ENODEV, "The disk is no longer connected. Connect it and try again."_L1},
    {ENXIO, "The disk is no longer connected. Connect it and try again."_L1},
    {ETIMEDOUT, "The disk or the network does not answer. Check the connection."_L1},
    {EMFILE, "Too many files are open. Close some windows or programs and try again."_L1},
    {ENFILE, "Too many files are open. Close some programs and try again."_L1},
    {ENOMEM, "There is not enough memory. Close some programs and try again."_L1},
};

} // namespace

bool isNameInFolder(QByteArrayView name)
{
    const auto has = [name](int byte) {
        return std::memchr(name.data(), byte, static_cast<std::size_t>(name.size())) != nullptr;
    };
    return !name.isEmpty() && name != "." && name != ".." && !has('/') && !has('\0');
}

QString reasonToRefuseName(QStringView name)
{
    if (name.isEmpty())
        return u"The name is empty. Let a rule make a text for it."_s;
    if (name == "."_L1 || name == ".."_L1)
        return u"\".\" and \"..\" stand for folders. Choose another name."_s;
    if (name.contains(u'/'))
        return u"The name contains \"/\", which would lead to another folder. Leave it out."_s;
    if (name.contains(QChar::Null))
        return u"The name contains the character NUL. Leave it out."_s;
    // No unit takes more bytes than that, so most names need no counting.
    if (name.size() * ByteNames::kMaxBytesPerUnit <= NAME_MAX)
        return {};
    const qsizetype length = ByteNames::toBytes(name).size();
    if (length <= NAME_MAX)
        return {};
    return u"The name has %1 bytes, but at most %2 are possible. Make it shorter."_s.arg(length)
        .arg(NAME_MAX);
}

QString textForErrno(int error)
{
    const auto *const known =
        std::find_if(std::begin(kErrnoTexts), std::end(kErrnoTexts),
                     [error](const ErrnoText &each) { return each.error == error; });
    if (known != std::end(kErrnoTexts))
        return known->text;
    const char *const text = strerrordesc_np(error);
    return text != nullptr ? u"The system says: %1."_s.arg(QLatin1StringView(text))
                           : u"The system reports error %1."_s.arg(error);
}
