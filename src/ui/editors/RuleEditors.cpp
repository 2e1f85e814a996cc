// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editors/RuleEditors.h"

#include "ui/editors/TEditAudioTagRuleViewController.h"
#include "ui/editors/TEditCSVRuleViewController.h"
#include "ui/editors/TEditCountRuleViewController.h"
#include "ui/editors/TEditDateRuleViewController.h"
#include "ui/editors/TEditExtensionViewController.h"
#include "ui/editors/TEditImageTagRuleViewController.h"
#include "ui/editors/TEditOriginalViewController.h"
#include "ui/editors/TEditRegExRuleViewController.h"
#include "ui/editors/TEditSeparatorRuleViewController.h"
#include "ui/editors/TEditTextRuleControllerViewController.h"

#include <algorithm>
#include <array>

namespace {

/// For rules of a kind that has no editor: says what the rule is and gives.
class PlainEditor : public TRuleViewController
{
public:
    PlainEditor(const TRulePtr &rule, const EditorContext &context)
        : TRuleViewController(rule, context)
    {
        form().setNote(rule->name());
        finish(this);
    }
};

using Maker = QWidget *(*)(const TRulePtr &rule, const EditorContext &context);

template <class Editor>
QWidget *make(const TRulePtr &rule, const EditorContext &context)
{
    return std::make_unique<Editor>(rule, context).release(); // the caller's
}

struct Kind
{
    QStringView name; ///< as rules give it
    Maker make;
};

constexpr std::array kKinds{
    Kind{u"TEditAudioTagRuleViewController", make<TEditAudioTagRuleViewController>},
    Kind{u"TEditCSVRuleViewController", make<TEditCSVRuleViewController>},
    Kind{u"TEditImageTagRuleViewController", make<TEditImageTagRuleViewController>},
    Kind{u"TEditCountRuleViewController", make<TEditCountRuleViewController>},
    Kind{u"TEditDateRuleViewController", make<TEditDateRuleViewController>},
    Kind{u"TEditOriginalViewController", make<TEditOriginalViewController>},
    Kind{u"TEditRegExRuleViewController", make<TEditRegExRuleViewController>},
    Kind{u"TEditSeparatorRuleViewController", make<TEditSeparatorRuleViewController>},
    Kind{u"TEditTextRuleControllerViewController", make<TEditTextRuleControllerViewController>},
};

} // namespace

QWidget *RuleEditors::editorFor(const TRulePtr &rule, const EditorContext &context)
{
    const QString name = rule->editingViewController();
    const auto kind = std::find_if(kKinds.begin(), kKinds.end(),
                                   [&name](const Kind &each) { return each.name == name; });
    return (kind != kKinds.end() ? kind->make : make<PlainEditor>)(rule, context);
}

QWidget *RuleEditors::extensionEditor(const EditorContext &context)
{
    return std::make_unique<TEditExtensionViewController>(context).release(); // the caller's
}
