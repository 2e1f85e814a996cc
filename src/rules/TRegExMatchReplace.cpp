// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/TRegExMatchReplace.h"

#include "rules/TRuleFields.h"

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kArchiveClass[] = {"TRegExMatchReplace", "NSObject"};
constexpr auto kProperties = "matchreplaceProperties"_L1;
constexpr auto kMatch = "match"_L1;
constexpr auto kReplace = "replace"_L1;

constexpr QStringView kDefaultMatch = u"match me";
constexpr QStringView kDefaultReplace = u"replace with this";

} // namespace

TRegExMatchReplace::TRegExMatchReplace()
    : TRegExMatchReplace(kDefaultMatch.toString(), kDefaultReplace.toString())
{
}

TRegExMatchReplace::TRegExMatchReplace(QString pattern, QString replacement)
    : match(std::move(pattern))
    , replace(std::move(replacement))
{
}

QVariantMap TRegExMatchReplace::properties() const
{
    return {{kMatch, match}, {kReplace, replace}};
}

void TRegExMatchReplace::setProperties(const QVariantMap &properties)
{
    TRuleFields::setFromProperties(properties, kMatch, match);
    TRuleFields::setFromProperties(properties, kReplace, replace);
}

TArchiveClass TRegExMatchReplace::archiveClass()
{
    return kArchiveClass;
}

void TRegExMatchReplace::encodeWithCoder(TEncoder &coder) const
{
    coder.encodeDictionary(kProperties, [this](TEncoder &dictionary) {
        dictionary.encodeString(kMatch, match);
        dictionary.encodeString(kReplace, replace);
    });
}

void TRegExMatchReplace::initWithCoder(const TDecoder &coder)
{
    coder.decodeDictionary(kProperties, [this](const TDecoder &dictionary) {
        if (dictionary.containsValueForKey(kMatch))
            match = dictionary.decodeString(kMatch);
        if (dictionary.containsValueForKey(kReplace))
            replace = dictionary.decodeString(kReplace);
    });
}
