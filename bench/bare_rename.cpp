// SPDX-License-Identifier: GPL-3.0-or-later
// The yardstick: as many files as asked for, and nothing but renameat2 over them.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

[[noreturn]] void fail(const char *what)
{
    std::perror(what);
    std::exit(1);
}

int openFolder(const char *path)
{
    const int folder = open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        fail(path);
    return folder;
}

std::string numbered(const char *format, long number, int width)
{
    char name[64];
    const int length = std::snprintf(name, sizeof name, format, width, number);
    return {name, static_cast<size_t>(length)};
}

void makeFiles(int folder, long count)
{
    for (long i = 0; i < count; ++i) {
        const std::string name = numbered("photo_%0*ld.txt", i, 9);
        const int file =
            openat(folder, name.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0644);
        if (file < 0)
            fail(name.c_str());
        close(file);
    }
}

std::vector<std::string> namesIn(int folder)
{
    std::vector<std::string> names;
    DIR *list = fdopendir(dup(folder));
    if (!list)
        fail("fdopendir");
    while (const dirent *entry = readdir(list)) {
        if (entry->d_name[0] != '.')
            names.emplace_back(entry->d_name);
    }
    closedir(list);
    // In the order in which the program takes them: the order alone makes the loop faster or
    // slower.
    std::sort(names.begin(), names.end());
    return names;
}

double seconds(int folder, const std::vector<std::string> &from, const std::vector<std::string> &to)
{
    const auto start = std::chrono::steady_clock::now();
    for (size_t i = 0; i < from.size(); ++i) {
        if (renameat2(folder, from[i].c_str(), folder, to[i].c_str(), RENAME_NOREPLACE) != 0)
            fail(from[i].c_str());
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Prints the seconds of the loop to the new names and of the loop back; listing the folder and
/// making the names up are not counted.
void loop(int folder)
{
    const std::vector<std::string> old = namesIn(folder);
    const int width = static_cast<int>(std::to_string(old.size() + 1).size());
    std::vector<std::string> fresh;
    fresh.reserve(old.size());
    for (size_t i = 0; i < old.size(); ++i)
        fresh.push_back(numbered("Holiday %0*ld.txt", static_cast<long>(i + 1), width));
    const double forth = seconds(folder, old, fresh);
    const double back = seconds(folder, fresh, old);
    std::printf("%.6f %.6f\n", forth, back);
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc == 4 && std::strcmp(argv[1], "make") == 0) {
        makeFiles(openFolder(argv[2]), std::strtol(argv[3], nullptr, 10));
    } else if (argc == 3 && std::strcmp(argv[1], "loop") == 0) {
        loop(openFolder(argv[2]));
    } else {
        std::fputs("usage: bare_rename make FOLDER COUNT | bare_rename loop FOLDER\n", stderr);
        return 2;
    }
    return 0;
}
