// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/DocumentFixture.h"
#include "support/Table.h"
#include "ui/controls/Popover.h"
#include "ui/editors/RuleEditors.h"
#include "ui/editors/SamplePreview.h"

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

/// A batch in a window, with the popover of an editor.
struct EditorStage : DocumentFixture
{
    inline static const QString kPhoto = QStringLiteral("IMG_0042.JPG");
    inline static const QString kSong = QStringLiteral("song.mp3");

    QWidget window;
    QPushButton tile{QStringLiteral("tile"), &window};
    QPointer<Popover> popover;
    QString sample; ///< name of the selected file; without one it is the first
    int posts = 0;
    Notifications::Subscription subscription = notifications.subscribe(
        Notifications::kRuleChanged, [this](const QVariantMap &) { ++posts; });

    EditorStage()
    {
        metadata.byName[kPhoto] = {
            TMetadata::fromVariantMap(
                {{QStringLiteral("PixelWidth"), 4032},
                 {QStringLiteral("{Exif}"),
                  QVariantMap{{QStringLiteral("ISOSpeedRatings"), QVariantList{200}},
                              {QStringLiteral("Shadows"), 1.5}}}}),
            {}};
        metadata.byName[kSong] = {
            {},
            TMetadata::fromVariantMap({{QStringLiteral("artist"), QStringLiteral("Bill Evans")}})};
        window.resize(1000, 700);
        tile.setGeometry(400, 20, 100, 30);
        window.show();
        window.activateWindow();
    }
    /// A photo and a song, with metadata.
    bool addFiles()
    {
        tree.file(kPhoto);
        tree.file(kSong);
        return drop({kPhoto, kSong});
    }
    EditorContext context()
    {
        return {*document, notifications, host, [this]() -> std::shared_ptr<TFileObject> {
                    for (const auto &file : document->sourceObjectArray())
                        if (sample.isNull() || file->sourceURL().lastPathComponent() == sample)
                            return file;
                    return nullptr;
                }};
    }
    /// Opens the editor of a rule, or without one that of the extension.
    QWidget *edit(const TRulePtr &rule)
    {
        if (rule)
            useRules({rule});
        return show(rule);
    }
    QWidget *show(const TRulePtr &rule)
    {
        popover = Popover::open(rule ? RuleEditors::editorFor(rule, context())
                                     : RuleEditors::extensionEditor(context()),
                                &tile);
        window.activateWindow(); // as a window manager does when a sheet has gone
        return QTest::qWaitForWindowActive(&window) ? popover->content() : nullptr;
    }
    void close() const { QTest::keyClick(popover, Qt::Key_Escape); }
    QVariantMap settings(const TRulePtr &rule) const
    {
        return rule ? rule->properties() : document->extensionHandlerProperties();
    }
    /// What a control is called by those who do not see it.
    static QString nameOf(QWidget *control)
    {
        // Pop-ups answer with what is chosen in them.
        const QAccessibleInterface *const spoken = QAccessible::queryAccessibleInterface(control);
        const auto labels = spoken->relations(QAccessible::Label);
        return labels.isEmpty() ? spoken->text(QAccessible::Name)
                                : labels.front().first->text(QAccessible::Name);
    }
    /// A control that can be seen.
    template <class Control = QWidget>
    Control *control(const QString &name) const
    {
        for (auto *each : popover->content()->findChildren<Control *>())
            if (each->isVisible() && qobject_cast<QLabel *>(each) == nullptr &&
                nameOf(each) == name)
                return each;
        return nullptr;
    }
    /// Types over a field, chooses an item of a pop-up with the keyboard by its place, or clicks.
    bool use(const QString &name, const QString &input = {}) const
    {
        auto *target = control(name);
        if (target == nullptr || !target->isEnabled())
            return false;
        target->setFocus();
        if (auto *field = qobject_cast<QLineEdit *>(target)) {
            field->selectAll();
            QTest::keyClicks(field, input);
        } else if (qobject_cast<QComboBox *>(target) != nullptr) {
            QTest::keyClick(target, Qt::Key_Home);
            for (int item = input.toInt(); item > 0; --item)
                QTest::keyClick(target, Qt::Key_Down);
        } else {
            QTest::mouseClick(target, Qt::LeftButton, {}, QPoint(10, target->height() / 2));
        }
        return true;
    }
    QString preview() const { return popover->findChild<SamplePreview *>()->text(); }
    QStringList labels() const
    {
        QStringList texts;
        for (const auto *label : popover->findChildren<QLabel *>())
            if (label->isVisible())
                texts += label->text();
        return texts;
    }
};

inline QStringList columnOf(const QAbstractItemModel &model, int column)
{
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row)
        texts += model.index(row, column).data().toString();
    return texts;
}
