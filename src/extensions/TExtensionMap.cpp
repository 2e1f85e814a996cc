// SPDX-License-Identifier: GPL-3.0-or-later
#include "extensions/TExtensionMap.h"

#include "rules/TRuleFields.h"

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kArchiveClass[] = {"TExtensionMap", "NSObject"};
constexpr auto kProperties = "extensionProperties"_L1;
constexpr auto kOriginal = "original"_L1;
constexpr auto kTarget = "target"_L1;

} // namespace

QVariantMap TExtensionMap::properties() const
{
    return {{kOriginal, original}, {kTarget, target}};
}

void TExtensionMap::setProperties(const QVariantMap &properties)
{
    TRuleFields::setFromProperties(properties, kOriginal, original);
    TRuleFields::setFromProperties(properties, kTarget, target);
}

TArchiveClass TExtensionMap::archiveClass()
{
    return kArchiveClass;
}

void TExtensionMap::encodeWithCoder(TEncoder &coder) const
{
    coder.encodeDictionary(kProperties, [this](TEncoder &dictionary) {
        dictionary.encodeString(kOriginal, original);
        dictionary.encodeString(kTarget, target);
    });
}

void TExtensionMap::initWithCoder(const TDecoder &coder)
{
    coder.decodeDictionary(kProperties, [this](const TDecoder &dictionary) {
        original = dictionary.decodeString(kOriginal);
        target = dictionary.decodeString(kTarget);
    });
}
