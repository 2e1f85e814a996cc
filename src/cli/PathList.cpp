// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/PathList.h"

#include <cerrno>
#include <unistd.h>

namespace {
constexpr auto kBlock = std::size_t{64} * 1024;
} // namespace

int readPathList(int descriptor, char separator, const std::function<bool(QByteArrayView)> &take)
{
    QByteArray text;
    bool wanted = true;
    const auto takeEntry = [&](QByteArrayView entry) {
        if (!entry.isEmpty() && wanted)
            wanted = take(entry);
    };
    char block[kBlock];
    while (wanted) {
        const ssize_t count = ::read(descriptor, block, kBlock);
        if (count < 0)
            return errno;
        if (count == 0)
            break;
        text.append(block, count);
        qsizetype start = 0;
        for (qsizetype end = text.indexOf(separator); end >= 0;
             end = text.indexOf(separator, start)) {
            takeEntry(QByteArrayView(text).sliced(start, end - start));
            start = end + 1;
        }
        text.remove(0, start);
    }
    takeEntry(text);
    return 0;
}
