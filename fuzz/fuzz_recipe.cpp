// SPDX-License-Identifier: GPL-3.0-or-later
// Recipes of strangers, as words and as JSON: whatever is understood becomes rules.
#include "cli/Recipe.h"
#include "cli/RuleWords.h"
#include "cli/ShellWords.h"
#include "settings/logging.h"

#include <QJsonObject>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t maxSize);

namespace {

constexpr std::array<std::string_view, 5> kSamples{
    R"(Text theText="Holiday " theColor=1)",
    R"(Counter startValue=1 padding=3 manualPadding=1 increment=-2)",
    R"-(RegExTag match="\s+(.)" replace="_$1" source=1 replaceAll=true)-",
    R"({"kind":"RegExTag","source":1,"regArray":[{"match":"\\s+","replace":"_"}]})",
    R"(handlingMethod=2 map=htm:html,jpeg:jpg)"};

void use(TResult<WrittenRule> rule)
{
    if (rule && rule.value().csvFile.isEmpty() && !makeRule(rule.value()))
        return;
}

void use(TResult<WrittenExtension> extension)
{
    if (!extension)
        return;
    TExtensionHandler handler;
    applyExtension(handler, extension.value());
    extensionSettings(handler);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    setLogSink([](const QString &) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QString text = QString::fromUtf8(bytes);
    if (splitShellWords(shellQuoted(text)).value() != QStringList{text})
        __builtin_trap();
    use(RuleWords::rule(text));
    use(RuleWords::extension(text));
    if (const TResult<QJsonObject> object = RuleWords::jsonObject(bytes)) {
        use(RuleWords::rule(object.value()));
        use(RuleWords::extension(object.value()));
    }
    return 0;
}

/// Random words are no recipe, so mutations start from some that are.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize,
                                          unsigned int seed)
{
    if (size < 4 || seed % 100 == 0) {
        const std::string_view sample = kSamples[seed / 100 % kSamples.size()];
        size = std::min(sample.size(), maxSize);
        std::copy_n(sample.data(), size, reinterpret_cast<char *>(data));
    }
    return LLVMFuzzerMutate(data, size, maxSize);
}
