// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/WindowKeys.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QShortcut>

#include <utility>

namespace {

constexpr QLatin1StringView kQuit{"quit"};

class DialogWatch : public QObject
{
public:
    DialogWatch(QObject &owner, std::function<void()> quit)
        : QObject(&owner)
        , m_quit(std::move(quit))
    {
        qApp->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *dialog = event->type() == QEvent::Show ? qobject_cast<QDialog *>(watched) : nullptr;
        if (dialog != nullptr && dialog->isWindow() && // and not shown for another time
            dialog->findChild<QShortcut *>(kQuit, Qt::FindDirectChildrenOnly) == nullptr)
            WindowKeys::add(*dialog, m_quit);
        return false;
    }

private:
    std::function<void()> m_quit;
};

} // namespace

void WindowKeys::add(QWidget &window, const std::function<void()> &quit)
{
    auto *close = new QShortcut(Qt::CTRL | Qt::Key_W, &window);
    QObject::connect(close, &QShortcut::activated, &window, &QWidget::close);
    auto *end = new QShortcut(Qt::CTRL | Qt::Key_Q, &window);
    end->setObjectName(kQuit);
    QObject::connect(end, &QShortcut::activated, &window, quit);
}

void WindowKeys::addToDialogs(QObject &owner, const std::function<void()> &quit)
{
    new DialogWatch(owner, quit);
}
