// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QtMainThread.h"
#include "support/TemporaryTree.h"
#include "support/WindowTools.h"
#include "ui/controls/Popover.h"
#include "ui/windows/Dialogs.h"
#include "ui/windows/ErrorLogView.h"
#include "ui/windows/FilePanel.h"
#include "ui/windows/HelpWindow.h"
#include "ui/windows/LogWindow.h"
#include "ui/windows/PresetNameForm.h"
#include "ui/windows/PresetRemovalWindow.h"
#include "ui/windows/ProgressSheet.h"
#include "ui/windows/QuestionDialog.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>

using namespace Qt::StringLiterals;
using L = QStringList;
using Form = TDialogHost::Form;
using WindowTools::shown;

namespace {

constexpr int kMany = 100'000;

QPushButton *button(const QWidget &window, const QString &text)
{
    for (auto *button : window.findChildren<QPushButton *>()) {
        if (button->text().remove(u'&') == text)
            return button;
    }
    return nullptr;
}

/// A window that tests take away at will.
std::unique_ptr<QWidget> openWindow()
{
    auto window = std::make_unique<QWidget>();
    window->resize(800, 600);
    window->show();
    window->activateWindow();
    (void)QTest::qWaitForWindowActive(window.get());
    return window;
}

} // namespace

class TestDialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answers_data();
    void answers();
    void wildTexts();
    void filePanels_data();
    void filePanels();
    void progress();
    void log();
    void problems();
    void presetName_data();
    void presetName();
    void removal();
    void help_data();
    void help();
};

void TestDialogs::answers_data()
{
    QTest::addColumn<QStringList>("buttons");
    QTest::addColumn<QString>("does");
    QTest::addColumn<int>("answer"); // -2: none
    const L drill{u"Cancel"_s, u"Rename"_s};
    const L keep{u"Keep"_s, u"Undo..."_s, u"R&D"_s};
    QTest::newRow("second button") << drill << u"click 1"_s << 1;
    QTest::newRow("third button, with its sign") << keep << u"click 2"_s << 2;
    QTest::newRow("Return takes the first") << drill << u"return"_s << 0;
    QTest::newRow("Ctrl+Return goes ahead") << drill << u"wait,go"_s << 1;
    QTest::newRow("but not while it may be held down") << drill << u"go,escape"_s << 0;
    QTest::newRow("Tab and Return take the second") << keep << u"tab,return"_s << 1;
    QTest::newRow("Escape is Cancel") << drill << u"escape"_s << 0;
    QTest::newRow("Escape without Cancel") << keep << u"escape"_s << -1;
    QTest::newRow("closed") << keep << u"close"_s << -1;
    QTest::newRow("a message") << L() << u"click 0"_s << 0;
    QTest::newRow("only the first answer counts") << drill << u"click 1,close,escape"_s << 1;
    QTest::newRow("the window goes away") << drill << u"destroy"_s << -2;
}

void TestDialogs::answers()
{
    QFETCH(const QStringList, buttons);
    QFETCH(const QString, does);
    auto window = openWindow();
    std::vector<qsizetype> answers;
    Dialogs::ask(window.get(), {Form::StopSheet, u"Title"_s, u"Text"_s, u"Note"_s, buttons},
                 [&answers](qsizetype answer) { answers.push_back(answer); });
    QPointer<QuestionDialog> dialog = shown<QuestionDialog>();
    QVERIFY(dialog && dialog->windowModality() == Qt::WindowModal);
    QVERIFY(QTest::qWaitForWindowActive(dialog));
    const auto inOrder = dialog->findChildren<QPushButton *>();
    QVERIFY(inOrder.size() < 2 || inOrder[0]->x() < inOrder[1]->x());
    for (const QString &step : does.split(u',')) {
        if (step.startsWith("click"_L1))
            QTest::mouseClick(inOrder[step.last(1).toInt()], Qt::LeftButton);
        else if (step == "close"_L1)
            dialog->close();
        else if (step == "destroy"_L1)
            window.reset();
        else if (step == "wait"_L1)
            QTest::qWait(1100); // longer than a key takes to repeat itself
        else if (step == "go"_L1)
            QTest::keyClick(dialog->windowHandle(), Qt::Key_Return, Qt::ControlModifier);
        else
            QTest::keyClick(dialog->focusWidget(), step == "return"_L1 ? Qt::Key_Return
                                                   : step == "tab"_L1  ? Qt::Key_Tab
                                                                       : Qt::Key_Escape);
    }
    QTRY_VERIFY(!dialog);
    QFETCH(const int, answer);
    QCOMPARE(answers, answer == -2 ? std::vector<qsizetype>() : std::vector<qsizetype>{answer});
}

/// Names in texts are no mark-up, and however long they are the dialog fits a small screen.
void TestDialogs::wildTexts()
{
    const auto window = openWindow();
    const QString wild = u"<img src=x><b>"_s + QString(100'000, u'w') + QChar(0xDC80);
    Dialogs::ask(window.get(), {Form::Alert, wild, wild, wild, {}}, {});
    auto *dialog = shown<QuestionDialog>();
    QVERIFY(dialog != nullptr);
    QVERIFY2(dialog->width() <= 1024 && dialog->height() <= 600,
             qPrintable(u"%1 x %2"_s.arg(dialog->width()).arg(dialog->height())));
    for (const auto *label : dialog->findChildren<QLabel *>())
        QVERIFY(label->text().isEmpty() || label->textFormat() == Qt::PlainText);
    dialog->close();
}

void TestDialogs::filePanels_data()
{
    QTest::addColumn<bool>("saves");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("chosen"); // empty: nothing
    QTest::newRow("folder") << false << "Rome"_ba
                            << "Rome"_ba;
    QTest::newRow("folder, cancelled") << false << ""_ba
                                       << ""_ba;
    QTest::newRow("new file") << true << "Log 14:05"_ba
                              << "Log 14:05.rtf"_ba;
    QTest::newRow("with its extension") << true << "x.rtf"_ba
                                        << "x.rtf"_ba;
    QTest::newRow("in a folder of raw bytes") << true << "caf\xE9/x"_ba
                                              << "caf\xE9/x.rtf"_ba;
}

void TestDialogs::filePanels()
{
    QFETCH(const bool, saves);
    QFETCH(const QByteArray, name);
    const TemporaryTree tree;
    tree.folder(u"Rome"_s);
    tree.rawFile("caf\xE9/file");
    const auto window = openWindow();
    std::vector<QByteArray> answers;
    const TDialogHost::Chosen take = [&answers](const std::optional<TFileURL> &url) {
        answers.push_back(url ? url->fileSystemPath() : QByteArray());
    };
    if (saves)
        Dialogs::chooseSaveFile(window.get(), {u"Rename Log - 1/2"_s, u"rtf"_s}, take);
    else
        Dialogs::chooseFolder(
            window.get(),
            {u"Grant access to Rome"_s, TFileURL::fileURLWithPath(tree.path(u"Rome"_s))}, take);
    QPointer<FilePanel> panel = shown<FilePanel>();
    QVERIFY(panel);
    auto *field = panel->findChild<QLineEdit *>();
    if (saves)
        QCOMPARE(field->text(), u"Rename Log - 1-2.rtf"_s);
    else
        QCOMPARE(panel->directory().path(), tree.path(u"Rome"_s));
    field->setText(name.isEmpty() ? QString() : tree.path() + u'/' + QString::fromUtf8(name));
    QTest::keyClick(field, name.isEmpty() ? Qt::Key_Escape : Qt::Key_Return);
    QTRY_VERIFY(!panel);
    QFETCH(const QByteArray, chosen);
    const QByteArray path = chosen.isEmpty() ? chosen : tree.path().toUtf8() + '/' + chosen;
    QCOMPARE(answers, std::vector{path});
}

void TestDialogs::progress()
{
    const auto window = openWindow();
    const auto controller = std::make_shared<TProgressSheetController>(100);
    auto *sheet = new ProgressSheet(controller, window.get());
    sheet->show();
    QVERIFY(QTest::qWaitForWindowActive(sheet));
    controller->updateProgress(40, 2, 1);
    sheet->refresh();
    QCOMPARE(sheet->findChild<QProgressBar *>()->value() * 100 /
                 sheet->findChild<QProgressBar *>()->maximum(),
             60);
    const auto labels = sheet->findChildren<QLabel *>();
    QVERIFY(std::any_of(labels.begin(), labels.end(), [&](const QLabel *label) {
        return label->text() == controller->statusText();
    }));
    QTest::keyClick(sheet, Qt::Key_Return);
    QVERIFY(!controller->abortRequest());
    QTest::keyClick(sheet, Qt::Key_Escape);
    sheet->close();
    QVERIFY(controller->abortRequest() && sheet->isVisible()); // until its window takes it away
    QVERIFY(!button(*sheet, u"Cancel"_s)->isEnabled());
}

void TestDialogs::log()
{
    const TemporaryTree tree;
    const SystemClock clock;
    const QString text = u"Job started\nrenamed /a/x to /a/y\nrenamed /a/\u00e9 to /a/z\n"_s;
    QPointer<LogWindow> window =
        new LogWindow(std::make_shared<TLogWindowController>(u"Rename log:1"_s, text, clock));
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window));
    QCOMPARE(window->windowTitle(), u"Rename log:1"_s);
    auto *view = window->findChild<QPlainTextEdit *>();
    QTest::keyClick(view, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(view, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), text);
    QTest::keyClick(view, Qt::Key_X); // it cannot be written in
    QCOMPARE(view->toPlainText(), text);

    QTest::keyClick(view, Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(window->focusWidget(), u"renamed"_s);
    const int first = view->textCursor().position();
    QTest::keyClick(window->focusWidget(), Qt::Key_Return);
    QVERIFY(view->textCursor().position() > first);
    QTest::keyClick(window->focusWidget(), Qt::Key_Return); // starts again at the top
    QCOMPARE(view->textCursor().position(), first);

    QTest::mouseClick(button(*window, u"Save As RTF..."_s), Qt::LeftButton);
    auto *panel = shown<FilePanel>();
    QVERIFY(panel != nullptr);
    panel->findChild<QLineEdit *>()->setText(tree.path(u"log"_s));
    QTest::keyClick(panel->findChild<QLineEdit *>(), Qt::Key_Return);
    QCOMPARE(tree.content(u"log.rtf"_s), TLogWindowController::rtf(text));
    QTest::keyClick(view, Qt::Key_Escape);
    QTRY_VERIFY(!window);

    const QString longText = text.repeated(50'000); // comes in portions
    const LogWindow longLog(std::make_shared<TLogWindowController>(QString(), longText, clock));
    QTRY_VERIFY(longLog.findChild<QPlainTextEdit *>()->toPlainText() == longText);

    const QString oddNames = u"renamed a\u202Eb to "_s + QChar(0xDCFF) + u'\n';
    const LogWindow oddLog(std::make_shared<TLogWindowController>(QString(), oddNames, clock));
    QCOMPARE(oddLog.findChild<QPlainTextEdit *>()->toPlainText(),
             u"renamed a\\xE2\\x80\\xAEb to \\xFF\n"_s);
}

void TestDialogs::problems()
{
    const auto window = openWindow();
    TErrorLog log;
    for (int i = 0; i < kMany; ++i)
        log.addErrorOfType(i == 0 ? 2 : 1, u"problem %1 "_s.arg(i) + QString(i % 90, u'x'));
    QElapsedTimer timer;
    timer.start();
    auto *popover = Popover::open(new ErrorLogView(log), window.get(), QRect(400, 10, 10, 10));
    QTest::qWait(0);
    QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
    auto *list = popover->findChild<QListView *>();
    QVERIFY(list->hasFocus());
    QTest::keyClick(list, Qt::Key_C, Qt::ControlModifier); // nothing selected: all of it
    QCOMPARE(QApplication::clipboard()->text().count(u'\n'), kMany - 1);
    const auto click = [list](int row, Qt::KeyboardModifiers modifiers) {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, modifiers,
                          list->visualRect(list->model()->index(row, 0)).center());
    };
    click(1, {});
    click(0, Qt::ControlModifier);
    QTest::keyClick(list, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), u"problem 0 \nproblem 1 x"_s);
    QCOMPARE(popover->content()->accessibleName(), u"1 critical problem, 99,999 warnings"_s);
    popover->dismiss();
    QCOMPARE(ErrorLogView(TErrorLog()).accessibleName(), u"No problems found."_s);
}

void TestDialogs::presetName_data()
{
    QTest::addColumn<QString>("typed"); // over the suggestion, when not null
    QTest::addColumn<QString>("does");
    QTest::addColumn<QString>("name"); // null: cancelled
    QTest::newRow("the suggestion") << QString() << u"return"_s << u"Holiday"_s;
    QTest::newRow("typed, Save") << u"A:B"_s << u"Save"_s << u"A:B"_s;
    QTest::newRow("Cancel") << u"A"_s << u"Cancel"_s << QString();
    QTest::newRow("Escape") << u"A"_s << u"escape"_s << QString();
    QTest::newRow("a slash cannot be saved") << u"a/b"_s << u"return,escape"_s << QString();
    QTest::newRow("empty just closes") << u" "_s << u"backspace,return"_s << QString();
}

void TestDialogs::presetName()
{
    QFETCH(const QString, typed);
    QFETCH(const QString, does);
    const auto window = openWindow();
    std::vector<std::optional<QString>> names;
    auto *form = new PresetNameForm(u"Holiday"_s, [&](const auto &name) { names.push_back(name); });
    QPointer<Popover> popover = Popover::open(form, window.get(), QRect(400, 10, 10, 10));
    connect(form, &PresetNameForm::finished, popover.data(), &Popover::dismiss);
    auto *field = form->findChild<QLineEdit *>();
    QVERIFY(field->hasFocus());
    if (!typed.isNull())
        QTest::keyClicks(field, typed);
    for (const QString &step : does.split(u',')) {
        if (QPushButton *pressed = button(*form, step))
            QTest::mouseClick(pressed, Qt::LeftButton);
        else
            QTest::keyClick(field, step == "return"_L1   ? Qt::Key_Return
                                   : step == "escape"_L1 ? Qt::Key_Escape
                                                         : Qt::Key_Backspace);
    }
    QTRY_VERIFY(!popover);
    QFETCH(const QString, name);
    QCOMPARE(names, std::vector{name.isNull() ? std::nullopt : std::optional(name)});
}

void TestDialogs::removal()
{
    const TemporaryTree tree;
    tree.file(u"shipped/Date.renamesetting"_s);
    tree.file(u"own/Mine.renamesetting"_s);
    QtMainThread mainThread;
    WorkerQueue worker;
    Notifications notifications;
    int changes = 0;
    const auto subscription = notifications.subscribe(Notifications::kPresetsChanged,
                                                      [&changes](const auto &) { ++changes; });
    const auto window = openWindow();
    QPointer<PresetRemovalWindow> removal = new PresetRemovalWindow(
        {mainThread, worker, notifications},
        PresetsManager(tree.path(u"shipped"_s), tree.path(u"own"_s)), window.get());
    removal->show();
    auto *list = removal->findChild<QListView *>();
    auto *remove = button(*removal, u"Remove"_s);
    QTRY_COMPARE(list->model()->rowCount(), 2);
    const auto click = [list](int row) {
        const QPoint below(20, list->viewport()->height() - 5);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          row < 0 ? below
                                  : list->visualRect(list->model()->index(row, 0)).center());
    };
    for (const int row : {0, 1, -1, 1}) {
        click(row);
        QCOMPARE(remove->isEnabled(), row == 1);
    }
    QTest::mouseClick(remove, Qt::LeftButton);
    QTRY_COMPARE(changes, 1);
    QVERIFY(!tree.exists(u"own/Mine.renamesetting"_s) && !remove->isEnabled());
    QCOMPARE(list->model()->rowCount(), 1);
    QTest::keyClick(list, Qt::Key_Escape);
    QTRY_VERIFY(!removal);
}

void TestDialogs::help_data()
{
    QTest::addColumn<HelpWindow::Topic>("topic");
    using Topic = HelpWindow::Topic;
    QTest::newRow("The window") << Topic::Start;
    QTest::newRow("Regular expressions") << Topic::RegularExpressions;
    QTest::newRow("Keys") << Topic::Keys;
}

/// The page begins with what was asked for, its pictures are there, and no link leads nowhere.
void TestDialogs::help()
{
    QFETCH(const HelpWindow::Topic, topic);
    HelpWindow window;
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    window.show();
    window.turnTo(topic);
    auto &page = *window.findChild<QTextBrowser *>();
    window.resize(window.width() * 3 / 4, window.height()); // what is read stays in its place
    QCoreApplication::processEvents();
    const QTextCursor top = page.cursorForPosition({page.viewport()->width() / 2, 30});
    QCOMPARE(top.block().text(), QString::fromLatin1(QTest::currentDataTag()));
    int pictures = 0;
    for (QTextBlock block = page.document()->begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            const QTextCharFormat format = part.fragment().charFormat();
            const QString link = format.anchorHref();
            QVERIFY2(link.isEmpty() || link.startsWith("https://"_L1) ||
                         link == "regular-expressions.md"_L1,
                     qPrintable(link));
            if (!format.isImageFormat())
                continue;
            ++pictures;
            const qreal width = page.viewport()->width() - 2 * page.document()->documentMargin();
            QCOMPARE(format.toImageFormat().width(), width);
            const QUrl url(format.toImageFormat().name());
            const auto image =
                page.document()->resource(QTextDocument::ImageResource, url).value<QImage>();
            QCOMPARE(image.width(), std::lround(width * page.devicePixelRatioF()));
        }
    }
    QCOMPARE(pictures, 2);
}

QTEST_MAIN(TestDialogs)
#include "tst_dialogs.moc"
