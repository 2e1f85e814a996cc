// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/editors/TRuleViewController.h"

/// From rules to their editors, as content for a popover. The caller owns the widget.
namespace RuleEditors {

/// The editor that the rule names; never null.
QWidget *editorFor(const TRulePtr &rule, const EditorContext &context);
/// The editor of the batch's extension handler.
QWidget *extensionEditor(const EditorContext &context);

} // namespace RuleEditors
