// SPDX-License-Identifier: GPL-3.0-or-later
#include "metadata/TVideoRule.h"

#include "platform/TypeIdentifiers.h"

namespace {

constexpr const char *kArchiveClass[] = {"TVideoRule", "TAudioRule", "TTagRule",
                                         "TDateRule",  "TRuleModel", "NSObject"};
constexpr QStringView kIcon = u"movie_tag";
constexpr QStringView kWord = u"Video";

} // namespace

TVideoRule::TVideoRule()
{
    setThePreview(TImage(kIcon.toString()));
    TVideoRule::resetKind();
}

TVideoRule::TVideoRule(Decoding tag)
    : TAudioRule(tag)
{
}

std::shared_ptr<TVideoRule> TVideoRule::decoding()
{
    return std::make_shared<TVideoRule>(Decoding{});
}

void TVideoRule::resetKind()
{
    setFileUTI(TypeIdentifiers::kMovie);
    setUtiString(kWord.toString());
}

std::shared_ptr<TRuleModel> TVideoRule::newInstance() const
{
    return std::make_shared<TVideoRule>();
}

TArchiveClass TVideoRule::archiveClass() const
{
    return kArchiveClass;
}
