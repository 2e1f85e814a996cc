// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/LogWindow.h"

#include "commonprocs/ByteNames.h"
#include "ui/windows/MutedLabel.h"
#include "ui/windows/SheetParts.h"
#include "ui/windows/WindowDialogHost.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int kCharacters = 96;
constexpr int kLines = 34;
constexpr int kFindCharacters = 24;
constexpr qsizetype kPortion = 1 << 20;
constexpr qsizetype kLongestLine = 1 << 16;

/// Whole lines, with what else names may hold that is no text, or would turn its line round.
QString legible(QStringView text)
{
    QStringList lines;
    for (const QStringView line : text.split(u'\n'))
        lines.append(ByteNames::forDisplay(line));
    return lines.join(u'\n');
}

} // namespace

class LogWindow::Private
{
public:
    Private(std::shared_ptr<TLogWindowController> log, LogWindow *window);

private:
    QWidget *makeText();
    void fill();
    QLayout *makeFoot();
    void addShortcuts();
    void find(QTextDocument::FindFlags flags, bool fromStart);

    std::shared_ptr<TLogWindowController> m_controller;
    LogWindow *m_window;
    WindowDialogHost m_dialogs;
    QPlainTextEdit *m_text = nullptr;
    QLineEdit *m_find = nullptr;
    QLabel *m_missing = nullptr; ///< beside the field when what it wants is not there
    QTimer m_filling;
    qsizetype m_filled = 0;
};

LogWindow::Private::Private(std::shared_ptr<TLogWindowController> log, LogWindow *window)
    : m_controller(std::move(log))
    , m_window(window)
    , m_dialogs(window)
{
    window->setWindowTitle(m_controller->title());
    auto *layout = SheetParts::column(window);
    layout->addWidget(makeText(), 1);
    layout->addSpacing(SheetParts::kGap);
    layout->addLayout(makeFoot());
    addShortcuts();
    m_text->setFocus();
}

QWidget *LogWindow::Private::makeText()
{
    m_text = new QPlainTextEdit(m_window);
    m_text->setReadOnly(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_text->setUndoRedoEnabled(false);
    m_text->setLayoutDirection(Qt::LeftToRight); // most of it are paths
    m_text->setFrameShape(QFrame::NoFrame);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_text->setAccessibleName(tr("Rename log"));
    m_window->resize(SheetParts::sizeOf(m_text, kCharacters, kLines));
    QObject::connect(&m_filling, &QTimer::timeout, m_window, [this] { fill(); });
    m_filling.start(0);
    fill();
    return SheetParts::framed(m_text, m_window);
}

/// Whole lines in portions, so that the log of a million files keeps nobody waiting.
void LogWindow::Private::fill()
{
    const QString &text = m_controller->text();
    qsizetype end = std::min(m_filled + kPortion, text.size());
    if (end < text.size())
        end = std::max(text.lastIndexOf(u'\n', end) + 1, end - kLongestLine);
    QTextCursor cursor(m_text->document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(legible(QStringView(text).sliced(m_filled, end - m_filled)));
    m_filled = end;
    if (m_filled == text.size())
        m_filling.stop();
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
    m_missing = new MutedLabel(tr("Not found"), m_window);
    m_missing->hide();
    row->insertWidget(0, m_find);
    row->insertWidget(1, m_missing);
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
    const bool isMissing = found.isNull() && !wanted.isEmpty();
    m_missing->setVisible(isMissing);
    m_find->setAccessibleDescription(isMissing ? m_missing->text() : QString());
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
