// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

#include <functional>
#include <optional>

/// The name under which a recipe is saved, as the content of a popover. Answers once: with the
/// name, or with nothing when it was cancelled or its popover closed.
class PresetNameForm : public QWidget
{
    Q_OBJECT

public:
    using Answered = std::function<void(const std::optional<QString> &name)>;

    PresetNameForm(const QString &suggestion, Answered answered, QWidget *parent = nullptr);
    ~PresetNameForm() override;

Q_SIGNALS:
    /// The popover should close.
    void finished();

private:
    void answer(const std::optional<QString> &name);

    Answered m_answered; ///< empty once called
};
