// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commonprocs/TFileURL.h"

#include <QStringList>

#include <functional>
#include <optional>

/// The door through which code without widgets talks to the user: messages, questions and file
/// panels. Main thread only. Nothing waits: answers come later through a callback, on the main
/// thread and at most once. An answer that never comes (its window went away) is no fault, and
/// whoever asks guards its callback against its own end.
class TDialogHost
{
public:
    enum class Form {
        Alert,    ///< a window of its own
        Sheet,    ///< belongs to the host's window
        StopSheet ///< a sheet with the stop sign: think before you answer
    };
    struct Question
    {
        Form form = Form::Alert;
        QString title;
        QString text;
        QString note;        ///< a line set apart from the text; often empty
        QStringList buttons; ///< in the order in which they are named; empty: "OK" alone
    };
    /// A panel for one existing folder: no files, no new folders.
    struct FolderPanel
    {
        QString prompt;  ///< on the button that confirms
        TFileURL folder; ///< where it opens
    };
    struct SavePanel
    {
        QString name;     ///< offered file name, without extension
        QString fileType; ///< the one extension that is allowed
    };
    /// Gets the index of the button; -1 when the question was closed without one.
    using Answered = std::function<void(qsizetype button)>;
    /// Gets nothing when the panel was cancelled.
    using Chosen = std::function<void(const std::optional<TFileURL> &url)>;

    TDialogHost() = default;
    TDialogHost(const TDialogHost &) = delete;
    TDialogHost &operator=(const TDialogHost &) = delete;
    virtual ~TDialogHost() = default;

    /// A message when answered is empty.
    virtual void ask(const Question &question, Answered answered = {}) = 0;
    virtual void chooseFolder(const FolderPanel &panel, Chosen chosen) = 0;
    virtual void chooseSaveFile(const SavePanel &panel, Chosen chosen) = 0;
};
