// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/application/StartOptions.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kVersion{"tavrin " TAVRIN_VERSION};
constexpr QLatin1StringView kHelp{R"(Usage: tavrin [--preset NAME] [PATH...]

Opens a window with a batch of the given files and folders. When Tavrin is running
already on this display, the running one gets them.

  -p, --preset NAME  begin with the rules of a preset; a running Tavrin keeps its own
  -h, --help         show this help
  -V, --version      show the version

A path that starts with a dash stands after --. tavrin-cli does the same work
without a window.)"};
constexpr QLatin1StringView kPreset{"--preset"};
constexpr QLatin1StringView kFileScheme{"file:"};

TFileURL locationOf(const QString &argument)
{
    const TFileURL url =
        argument.startsWith(kFileScheme) ? TFileURL::fromString(argument) : TFileURL();
    return url.isValid() ? url : TFileURL::fileURLWithPath(argument);
}

} // namespace

StartOptions StartOptions::parse(const QStringList &arguments)
{
    StartOptions options;
    bool onlyPaths = false;
    bool isPreset = false; // the next argument
    for (const QString &argument : arguments) {
        if (std::exchange(isPreset, false)) {
            options.preset = argument;
        } else if (onlyPaths || !argument.startsWith(u'-') || argument.size() == 1) {
            if (!argument.isEmpty())
                options.paths += locationOf(argument);
        } else if (argument == "--"_L1) {
            onlyPaths = true;
        } else if (argument == "-p"_L1 || argument == kPreset) {
            isPreset = true;
        } else if (argument.startsWith(kPreset) && argument.at(kPreset.size()) == u'=') {
            options.preset = argument.sliced(kPreset.size() + 1);
        } else if (argument == "-h"_L1 || argument == "--help"_L1) {
            return {Wish::Tell, kHelp, {}, {}};
        } else if (argument == "-V"_L1 || argument == "--version"_L1) {
            return {Wish::Tell, kVersion, {}, {}};
        } else {
            return {Wish::Refuse,
                    u"unknown option %1; possible: --preset, --help, --version. A path that starts "
                    u"with a "
                    "dash stands after --"_s.arg(argument),
                    {},
                    {}};
        }
    }
    if (isPreset)
        return {Wish::Refuse, u"--preset needs the name of a preset"_s, {}, {}};
    return options;
}
