// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/DocumentFixture.h"
#include "ui/tiles/PaletteBar.h"
#include "ui/tiles/PaletteTile.h"
#include "ui/tiles/RecipeCard.h"
#include "ui/tiles/RecipeCommands.h"
#include "ui/tiles/RuleTile.h"
#include "ui/tiles/TileStrip.h"

#include <QCursor>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

/// Palette and recipe of a document with a text rule for each name, in a window with free room.
class RecipeWindow
{
public:
    /// A drag asks the window system about every place, which takes its time to answer.
    static constexpr int kStepMilliseconds = 30;

    explicit RecipeWindow(const QStringList &names = {}, int width = 900)
        : palette(new PaletteBar(&window))
        , recipe(new RecipeCard(*batch.document, batch.notifications, &window))
    {
        TRuleList rules;
        for (const QString &name : names)
            rules.push_back(textRule(name));
        batch.useRules(rules);
        auto *lines = new QVBoxLayout(&window);
        lines->addWidget(palette);
        lines->addWidget(recipe);
        lines->addStretch();
        window.setGeometry(0, 0, width, 400);
        window.show();
        window.activateWindow();
        QCoreApplication::processEvents();
    }
    TileStrip &strip() const { return *recipe->findChild<TileStrip *>(); }
    RuleTile &tile(int place) const
    {
        return *strip().tileOf(batch.document->ruleArray()[static_cast<std::size_t>(place)]);
    }
    PaletteTile &paletteTile(const QString &identifier) const
    {
        for (PaletteTile *each : palette->findChildren<PaletteTile *>()) {
            if (each->identifier() == identifier)
                return *each;
        }
        qFatal("no such tile");
    }
    /// Middle of a widget, moved sideways by parts of its width.
    QPoint at(const QWidget &widget, double part = 0) const
    {
        const QPoint middle(static_cast<int>(widget.width() * (0.5 + part)), widget.height() / 2);
        return widget.mapTo(&window, middle);
    }
    enum class End { Drop, GiveUp };

    /// With the events of a real mouse, through the drag's own loop; start begins it and returns
    /// when it is over.
    void finishDrag(const QPoint &to, End end, const std::function<void()> &start)
    {
        QWindow *const handle = window.windowHandle();
        QList<std::function<void()>> steps;
        for (const int before : {2, 1, 0}) {
            steps += [=] {
                QCursor::setPos(handle->mapToGlobal(to - QPoint(before, 0)));
                QTest::mouseMove(handle, to - QPoint(before, 0));
            };
        }
        steps += [=] {
            if (end == End::GiveUp)
                QTest::keyClick(handle, Qt::Key_Escape);
            else
                QTest::mouseRelease(handle, Qt::LeftButton, {}, to);
        };
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
            if (!steps.isEmpty())
                steps.takeFirst()();
        });
        timer.start(kStepMilliseconds);
        start();
        if (end == End::GiveUp)
            QTest::mouseRelease(handle, Qt::LeftButton, {}, to);
        QCoreApplication::processEvents();
    }
    void drag(const QPoint &from, const QPoint &to, End end = End::Drop,
              Qt::KeyboardModifiers modifiers = {})
    {
        finishDrag(to, end, [&] {
            QWindow *const handle = window.windowHandle();
            QTest::mousePress(handle, Qt::LeftButton, modifiers, from);
            const QPoint start = from + QPoint(QApplication::startDragDistance() + 2, 0);
            QTest::mouseEvent(QTest::MouseMove, handle, Qt::NoButton, modifiers, start);
        });
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        QCoreApplication::processEvents();
    }
    QString rules() const { return batch.rules().join(u' '); }
    QString selected() const
    {
        QStringList names;
        for (const TRulePtr &rule : recipe->commands().selected())
            names += rule->name();
        return names.join(u' ');
    }

    DocumentFixture batch;
    QWidget window;
    PaletteBar *palette;
    RecipeCard *recipe;
};
