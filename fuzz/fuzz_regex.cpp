// SPDX-License-Identifier: GPL-3.0-or-later
// Patterns, templates and names of strangers, parted by line feeds. Whatever they are, the budget
// ends the work, and the result is no longer than may be.
#include "commonprocs/RegexReplacer.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const qsizetype first = text.indexOf(u'\n');
    const qsizetype second = text.indexOf(u'\n', first + 1);
    const RegexReplacer replacer(text.left(qMax(first, qsizetype{0})),
                                 text.sliced(first + 1, qMax(second - first - 1, qsizetype{0})));
    if (replacer.isValid() != replacer.problem().isEmpty())
        __builtin_trap();
    const QString name = text.sliced(second + 1);
    RegexReplacer::Budget budget{.steps = 20};
    const QString result = replacer.replaceAll(name, budget);
    if (result.size() > RegexReplacer::kMaxUnits || (!replacer.isValid() && !result.isNull()))
        __builtin_trap();
    budget = {.steps = 20};
    qsizetype end = 0;
    for (const RegexReplacer::Match &match : replacer.matches(name, budget)) {
        if (match.start < end || match.length < 0 || match.start + match.length > name.size())
            __builtin_trap();
        end = match.start;
    }
    return 0;
}
