// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "rules/TRuleModel.h"

#include <QDockWidget>

#include <memory>

/// The dock with the thumbnail, facts and every metadata tag of the selected file. A tag can be
/// dragged into the recipe, where it becomes the image, audio or video rule for it. Reads nothing
/// while it is hidden. Main thread only.
class InspectorDock : public QDockWidget
{
    Q_OBJECT

public:
    explicit InspectorDock(QWidget *parent = nullptr);
    ~InspectorDock() override;

    /// Null: nothing is selected.
    void setFile(const std::shared_ptr<TFileObject> &file);
    /// The metadata of the shown file may have come.
    void refresh();

Q_SIGNALS:
    /// The rule for a tag should be added at the end of the recipe (Enter or a double click on it).
    void addRuleRequested(const TRulePtr &rule);

private:
    class Private;
    std::unique_ptr<Private> m_private;
};
