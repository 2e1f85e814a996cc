// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/LogWindow.h"

#include "ui/controls/Theme.h"
#include "ui/windows/SheetParts.h"
#include "ui/windows/WindowDialogHost.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int kCharacters = 88;
constexpr int kLines = 26;
constexpr int kFindCharacters = 24;
constexpr QSize kMostSize{960, 560};

} // namespace

class LogWindow::Private
{
public:
    Private(std::shared_ptr<TLogWindowController> log, LogWindow *window);

private:
    QWidget *makeText(const QString &text);
    QLayout *makeFoot();
    void addShortcuts();
    void find(QTextDocument::FindFlags flags, bool fromStart);

    std::shared_ptr<TLogWindowController> m_controller;
    LogWindow *m_window;
    WindowDialogHost m_dialogs;
    QPlainTextEdit *m_text = nullptr;
    QLineEdit *m_find = nullptr;
};

LogWindow::Private::Private(std::shared_ptr<TLogWindowController> log, LogWindow *window)
    : m_controller(std::move(log))
    , m_window(window)
    , m_dialogs(window)
{
    window->setWindowTitle(m_controller->title());
    auto *layout = SheetParts::column(window);
    layout->addWidget(makeText(m_controller->text()), 1);
    layout->addSpacing(SheetParts::kGap);
    layout->addLayout(makeFoot());
    addShortcuts();
    m_text->setFocus();
}

QWidget *LogWindow::Private::makeText(const QString &text)
{
    m_text = new QPlainTextEdit(m_window);
    m_text->setReadOnly(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_text->setUndoRedoEnabled(false);
    m_text->setFrameShape(QFrame::NoFrame);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_text->setAccessibleName(tr("Rename log"));
    m_text->setPlainText(text);
    const QFontMetrics metrics = m_text->fontMetrics();
    m_window->resize(QSize(metrics.averageCharWidth() * kCharacters, metrics.lineSpacing() * kLines)
                         .boundedTo(kMostSize));
    return SheetParts::framed(m_text, m_window);
}

QLayout *LogWindow::Private::makeFoot()
{
    m_find = new QLineEdit(m_window);
    m_find->setPlaceholderText(tr("Find"));
    m_find->setAccessibleName(tr("Find in the log"));
    m_find->setClearButtonEnabled(true);
    m_find->setMinimumWidth(SheetParts::widthOf(m_find, kFindCharacters));
    QObject::connect(m_find, &QLineEdit::textChanged, m_window, [this] { find({}, true); });
    QObject::connect(m_find, &QLineEdit::returnPressed, m_window, [this] { find({}, false); });
    auto *save = new QPushButton(tr("&Save As RTF..."), m_window);
    QObject::connect(save, &QPushButton::clicked, m_window,
                     [this] { m_controller->save(m_dialogs); });
    auto *close = new QPushButton(tr("&Close"), m_window);
    QObject::connect(close, &QPushButton::clicked, m_window, &QWidget::close);
    QHBoxLayout *row = SheetParts::buttonRow({save, close});
    row->insertWidget(0, m_find);
    return row;
}

void LogWindow::Private::addShortcuts()
{
    const auto add = [this](const QKeySequence &keys, const std::function<void()> &run) {
        QObject::connect(new QShortcut(keys, m_window), &QShortcut::activated, m_window, run);
    };
    add(QKeySequence::Save, [this] { m_controller->save(m_dialogs); });
    add(QKeySequence::Find, [this] {
        m_find->setFocus();
        m_find->selectAll();
    });
    add(QKeySequence::FindNext, [this] { find({}, false); });
    add(QKeySequence::FindPrevious, [this] { find(QTextDocument::FindBackward, false); });
    add(QKeySequence::Close, [this] { m_window->close(); });
    add(QKeySequence(Qt::Key_Escape), [this] { m_window->close(); });
}

/// Goes on at the other end when there is nothing more; what is not there leaves no selection.
void LogWindow::Private::find(QTextDocument::FindFlags flags, bool fromStart)
{
    const QString wanted = m_find->text();
    QTextCursor cursor = m_text->textCursor();
    if (fromStart)
        cursor.setPosition(cursor.selectionStart());
    QTextCursor found =
        wanted.isEmpty() ? QTextCursor() : m_text->document()->find(wanted, cursor, flags);
    if (found.isNull() && !wanted.isEmpty()) {
        cursor.movePosition(flags.testFlag(QTextDocument::FindBackward) ? QTextCursor::End
                                                                        : QTextCursor::Start);
        found = m_text->document()->find(wanted, cursor, flags);
    }
    if (found.isNull())
        cursor.clearSelection();
    m_text->setTextCursor(found.isNull() ? cursor : found);
}

LogWindow::LogWindow(std::shared_ptr<TLogWindowController> controller, QWidget *parent)
    : QWidget(parent, Qt::Window)
    , m_private(std::make_unique<Private>(std::move(controller), this))
{
    setAttribute(Qt::WA_DeleteOnClose);
}

LogWindow::~LogWindow() = default;
