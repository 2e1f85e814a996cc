// SPDX-License-Identifier: GPL-3.0-or-later
#include "helper/HelperLimits.h"
#include "helper/RequestServer.h"
#include "readers/ReaderVersions.h"

#include <charconv>
#include <cstdio>
#include <cstring>
#include <malloc.h>
#include <optional>
#include <string>
#include <sys/socket.h>

namespace {

constexpr char kUsage[] =
    "tavrin-metadata reads the metadata of files for Tavrin, which starts it when it is needed.\n"
    "It cannot be run by hand; see: tavrin-cli tags --help\n"
    "tavrin-metadata --version names the libraries that it uses.\n";
constexpr char kVersionOption[] = "--version";
constexpr int kUsageError = 2;
constexpr int kMaxNiceness = 19;
constexpr int kKeptMemory = 32 * 1024 * 1024;

std::optional<int> number(const char *text, int max)
{
    int value = 0;
    const char *end = text + std::strlen(text);
    const auto [rest, error] = std::from_chars(text, end, value);
    if (error != std::errc() || rest != end || value < 0 || value > max)
        return {};
    return value;
}

bool isSocket(int descriptor)
{
    int type = 0;
    socklen_t size = sizeof type;
    return ::getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &size) == 0 && type == SOCK_STREAM;
}

} // namespace

/// tavrin-metadata SOCKET NICENESS: serves the stream socket of that number until it is closed.
/// tavrin-metadata --version: names the libraries in use with their versions, a line each.
int main(int argc, char **argv)
{
    if (argc == 2 && std::strcmp(argv[1], kVersionOption) == 0) {
        const std::string libav = libavVersion();
        const std::string lines =
            readerVersions() + (libav.empty() ? std::string() : "FFmpeg " + libav + '\n');
        return std::fputs(lines.c_str(), stdout) >= 0 ? 0 : 1;
    }
    const auto socket = argc == 3 ? number(argv[1], 1024) : std::nullopt;
    const auto niceness = argc == 3 ? number(argv[2], kMaxNiceness) : std::nullopt;
    if (!socket || !niceness || !isSocket(*socket)) {
        std::fputs(kUsage, stderr);
        return kUsageError;
    }
    // File after file takes about the same memory; what one gave back serves the next.
    ::mallopt(M_MMAP_THRESHOLD, kKeptMemory);
    ::mallopt(M_TRIM_THRESHOLD, kKeptMemory);
    limitHelper(*socket, *niceness);
    return RequestServer(*socket).serve() ? 0 : 1;
}
