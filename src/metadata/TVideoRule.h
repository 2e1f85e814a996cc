// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "metadata/TAudioRule.h"

/// One tag of a movie file; all but the kind of file is the audio rule's.
class TVideoRule : public TAudioRule
{
public:
    TVideoRule();
    explicit TVideoRule(Decoding);
    static std::shared_ptr<TVideoRule> decoding();

    std::shared_ptr<TRuleModel> newInstance() const override;
    TArchiveClass archiveClass() const override;

protected:
    void resetKind() override;
};
