// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDialogHost.h"

#include <QRegularExpression>

#include <array>
#include <deque>
#include <functional>

/// Base of the hosts of tests: writes down every call as one line and answers questions from a
/// script, at once unless answers are held back. Unanswered questions get no answer.
template <typename Host>
class ScriptedDialogs : public Host
{
public:
    QStringList calls;
    std::deque<qsizetype> answers;               ///< for ask, in order
    std::deque<std::optional<TFileURL>> choices; ///< for panels, in order
    bool holdBack = false;                       ///< keep answers until release()
    std::deque<std::function<void()>> held;

    void record(const QString &call) { calls += call; }
    /// The calls that begin with the text, and forgets nothing.
    QStringList callsOf(const QString &start) const
    {
        return calls.filter(QRegularExpression(u'^' + QRegularExpression::escape(start)));
    }
    /// Gives the answers that were held back.
    void release()
    {
        holdBack = false;
        while (!held.empty()) {
            const auto answer = std::move(held.front());
            held.pop_front();
            answer();
        }
    }

    void ask(const TDialogHost::Question &question, TDialogHost::Answered answered) override
    {
        static constexpr std::array kForms{"alert", "sheet", "stop sheet"};
        record(QStringLiteral("%1: %2|%3|%4|%5")
                   .arg(QLatin1StringView(kForms[static_cast<std::size_t>(question.form)]),
                        question.title, question.text, question.note, question.buttons.join(u'/')));
        if (!answered || answers.empty())
            return;
        const qsizetype answer = answers.front();
        answers.pop_front();
        give([answered, answer] { answered(answer); });
    }
    void chooseFolder(const TDialogHost::FolderPanel &panel, TDialogHost::Chosen chosen) override
    {
        record(QStringLiteral("folder panel: ") + panel.prompt + u'|' + panel.folder.path());
        choose(std::move(chosen));
    }
    void chooseSaveFile(const TDialogHost::SavePanel &panel, TDialogHost::Chosen chosen) override
    {
        record(QStringLiteral("save panel: ") + panel.name + u'|' + panel.fileType);
        choose(std::move(chosen));
    }

protected:
    void give(std::function<void()> answer)
    {
        if (holdBack)
            held.push_back(std::move(answer));
        else
            answer();
    }

private:
    void choose(TDialogHost::Chosen chosen)
    {
        if (choices.empty())
            return;
        const std::optional<TFileURL> choice = choices.front();
        choices.pop_front();
        give([chosen, choice] { chosen(choice); });
    }
};
