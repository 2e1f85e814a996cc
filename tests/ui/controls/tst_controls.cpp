// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/TRuleKinds.h"
#include "ui/controls/FoldingRow.h"
#include "ui/controls/Icons.h"
#include "ui/controls/Popover.h"
#include "ui/controls/TavrinStyle.h"
#include "ui/controls/Theme.h"
#include "ui/controls/ToolTip.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPainter>
#include <QSignalSpy>
#include <QStyleOption>
#include <QTest>
#include <QVBoxLayout>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// A window with a field that has the keyboard, an anchor, and an open popover with two fields.
struct OpenPopover
{
    QWidget window;
    QLineEdit *outside = new QLineEdit(&window);
    QWidget *panel = new QWidget(&window);
    QWidget *anchor = new QWidget(panel);
    QWidget *content = new QWidget;
    QLineEdit *first = new QLineEdit(content);
    QLineEdit *second = new QLineEdit(content);
    QPointer<Popover> popover;
    std::unique_ptr<QSignalSpy> closed;

    OpenPopover()
    {
        window.resize(600, 400);
        outside->setGeometry(10, 360, 100, 30);
        panel->setGeometry(0, 0, 600, 400);
        panel->lower();
        anchor->setGeometry(250, 20, 80, 30);
        auto *layout = new QVBoxLayout(content);
        layout->addWidget(first);
        layout->addWidget(second);
        window.show();
        window.activateWindow();
        (void)QTest::qWaitForWindowActive(&window);
        outside->setFocus();
        popover = Popover::open(content, anchor);
        closed = std::make_unique<QSignalSpy>(popover.data(), &Popover::closed);
    }
    bool isOpen() const { return popover != nullptr && popover->isVisible(); }
};

} // namespace

class TestControls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// A layout that asks for itself again keeps the program busy for ever, and painting waiting.
    void foldingRowsComeToRest()
    {
        class Counted : public QWidget
        {
        public:
            int requests = 0;

        protected:
            bool event(QEvent *event) override
            {
                requests += event->type() == QEvent::LayoutRequest ? 1 : 0;
                return QWidget::event(event);
            }
        };
        Counted window;
        auto *row = new FoldingRow(8, 4, &window);
        for (const int width : {120, 100}) {
            auto *part = new QWidget(&window);
            part->setMinimumSize(width, 20);
            row->addWidget(part);
        }
        window.show();
        for (const int width : {300, 200, 300}) {
            window.resize(width, 60);
            QCoreApplication::processEvents();
            window.requests = 0;
            for (int i = 0; i < 10; ++i)
                QCoreApplication::processEvents();
            QVERIFY(window.requests <= 2);
            QCOMPARE(row->itemAt(1)->geometry().y() > row->itemAt(0)->geometry().y(), width < 228);
        }
    }

    void textCanBeRead_data()
    {
        QTest::addColumn<QPalette>("palette");
        Theme::apply(Theme::Scheme::Light);
        QTest::newRow("light") << QApplication::palette();
        Theme::apply(Theme::Scheme::Dark);
        QTest::newRow("dark") << QApplication::palette();
        QTest::newRow("a desktop in sand") << QPalette(QColor(0xd8c8a0), QColor(0xefe4c8));
        QTest::newRow("a desktop in blue") << QPalette(QColor(0x203060), QColor(0x101c40));
        Theme::apply(Theme::Scheme::Light);
        QPalette strong(Qt::yellow, Qt::black);
        strong.setColor(QPalette::Base, Qt::black);
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            strong.setColor(role, Qt::yellow);
        strong.setColor(QPalette::Disabled, QPalette::Text, Qt::black);
        strong.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 128));
        QTest::newRow("without colours for what is disabled") << strong;
        QPalette mixed(Qt::white);
        mixed.setColor(QPalette::Window, Qt::black);
        mixed.setColor(QPalette::WindowText, Qt::white);
        QTest::newRow("dark windows around light lists") << mixed;
    }
    void textCanBeRead()
    {
        QFETCH(QPalette, palette);
        palette = Theme::legible(palette);
        for (const auto &[group, role, least] :
             {std::tuple(QPalette::Active, QPalette::Text, 4.5),
              std::tuple(QPalette::Disabled, QPalette::Text, 2.0),
              std::tuple(QPalette::Active, QPalette::PlaceholderText, 3.0)})
            QVERIFY(Theme::contrast(palette.color(group, role),
                                    palette.color(group, QPalette::Base)) >= least);
        const ThemeColors colors = ThemeColors::of(palette);
        const std::initializer_list<std::pair<QColor, QColor>> pairs{
            {colors.ink, colors.window},         {colors.ink, colors.card},
            {colors.ink, colors.field},          {colors.muted, colors.card},
            {colors.muted, colors.window},       {colors.accentInk, colors.accent},
            {colors.extension, colors.card},     {colors.extension, colors.stripe},
            {colors.extension, colors.selection}};
        for (const auto &[ink, surface] : pairs)
            QVERIFY2(Theme::contrast(ink, surface) >= 4.5,
                     qPrintable(ink.name() + u" on "_s + surface.name()));
        for (const char *rule : {"9C988A", "8DCDC1", "D3E397", "FFF5C3", "EB6E44"}) {
            const QColor tile = Theme::color(TColor::fromHex(QString::fromLatin1(rule)));
            QVERIFY2(Theme::contrast(Theme::inkOn(tile), tile) >= 4.5, rule);
        }
    }

    void toolTipsAreBoundedTexts()
    {
        const QString tip = ToolTip::of(QString(100'000, u'<'));
        QVERIFY(tip.size() < 20'000);
        QVERIFY(!tip.contains(u"<<"_s));
        QCOMPARE(ToolTip::of({}), QString());
        QVERIFY(ToolTip::of(QString(89, u'a') + u"\U0001F600b"_s).contains(u"a<br>\U0001F600b"_s));
    }

    void drawingsInMenusGoWithTheirTexts()
    {
        Theme::apply(Theme::Scheme::Light);
        QStyleOptionMenuItem item;
        item.rect = QRect(0, 0, 120, 24);
        item.palette = QApplication::palette();
        item.state = QStyle::State_Enabled | QStyle::State_Selected;
        item.menuItemType = QStyleOptionMenuItem::Normal;
        item.checkType = QStyleOptionMenuItem::NotCheckable;
        item.icon = Icons::icon("trash"_L1);
        item.maxIconWidth = Icons::extent(item.fontMetrics);
        QImage image(item.rect.size(), QImage::Format_RGB32);
        QPainter painter(&image);
        TavrinStyle().drawControl(QStyle::CE_MenuItem, &item, &painter, nullptr);
        painter.end();
        double most = 1;
        for (int y = 4; y < image.height() - 4; ++y) {
            for (int x = 4; x < image.width() - 4; ++x)
                most = std::max(most, Theme::contrast(image.pixelColor(x, y),
                                                      ThemeColors::of(item.palette).accent));
        }
        QVERIFY(most > 4); // of the drawing's pixels; those of the usual ink come to 3
    }

    void everyKindHasItsDrawing()
    {
        QSet<QString> drawings;
        for (const QString &identifier : TRuleKinds::identifiers()) {
            const QLatin1StringView name = Icons::forIdentifier(identifier);
            const QImage image = Icons::pixmap(name, 16, Qt::black, 1).toImage();
            QImage empty(image.size(), image.format());
            empty.fill(Qt::transparent);
            QVERIFY2(image != empty, qPrintable(identifier));
            drawings.insert(name);
        }
        QCOMPARE(drawings.size(), 10);
    }

    void popoverStaysWhileItIsUsed()
    {
        OpenPopover open;
        QVERIFY(open.first->hasFocus());
        QTest::keyClicks(open.first, u"abc"_s);
        QTest::keyClick(open.first, Qt::Key_Tab);
        QVERIFY(open.second->hasFocus());
        QTest::keyClick(open.second, Qt::Key_Tab); // round to the first, not out
        QVERIFY(open.first->hasFocus());
        QTest::keyClick(open.first, Qt::Key_Backtab);
        QVERIFY(open.second->hasFocus());
        QTest::mouseClick(open.second, Qt::LeftButton);
        open.outside->setFocus(); // moves on without a click
        QVERIFY(open.isOpen());
        QCOMPARE(open.first->text(), u"abc"_s);
    }

    void popoverCloses_data()
    {
        using Act = void (*)(OpenPopover &);
        QTest::addColumn<Act>("act");
        QTest::newRow("Escape") << Act{
            [](OpenPopover &open) { QTest::keyClick(open.first, Qt::Key_Escape); }};
        QTest::newRow("Return in a field")
            << Act{[](OpenPopover &open) { QTest::keyClick(open.second, Qt::Key_Return); }};
        QTest::newRow("click elsewhere") << Act{[](OpenPopover &open) {
            QTest::mouseClick(&open.window, Qt::LeftButton, {}, {5, 5});
        }};
        QTest::newRow("anchor hidden") << Act{[](OpenPopover &open) { open.anchor->hide(); }};
        QTest::newRow("anchor gone") << Act{[](OpenPopover &open) { delete open.anchor; }};
    }
    void popoverCloses()
    {
        using Act = void (*)(OpenPopover &);
        QFETCH(Act, act);
        OpenPopover open;
        const QPointer<QWidget> content = open.content;
        act(open);
        QVERIFY(!open.isOpen());
        QCOMPARE(open.closed->count(), 1);
        QTRY_VERIFY(open.outside->hasFocus());
        QTRY_VERIFY(content == nullptr);
        QCOMPARE(open.closed->count(), 1);
    }

    void popoverStaysInItsWindow()
    {
        OpenPopover open;
        const QPoint place = open.popover->pos();
        open.panel->move(-40, 8); // and the anchor with it
        QCOMPARE(open.popover->pos(), place + QPoint(-40, 8));
        open.anchor->move(560, 350);
        open.window.resize(400, 300);
        QCoreApplication::sendPostedEvents();
        const QRect content(open.content->mapTo(&open.window, QPoint()), open.content->size());
        QVERIFY(open.window.rect().contains(content));
        open.first->setMinimumHeight(400); // as in very large fonts
        QTRY_VERIFY(open.content->height() > open.window.height());
        QTest::keyClick(open.first, Qt::Key_Tab);
        QVERIFY(open.second->hasFocus());
        QCOMPARE(open.second->visibleRegion().boundingRect(), open.second->rect());
    }

    /// In large fonts its content is higher than the room below what it is about.
    void popoverLeavesItsAnchorInSight()
    {
        OpenPopover open;
        open.first->setMinimumHeight(330);
        const QPoint end = open.anchor->mapTo(&open.window, open.anchor->rect().bottomLeft());
        QTRY_VERIFY(open.content->height() > open.popover->height());
        QVERIFY(open.content->mapTo(&open.window, QPoint()).y() > end.y());
    }

    /// What had the keyboard may be gone: the button that counts problems, say.
    void theKeyboardGoesSomewhere()
    {
        OpenPopover open;
        open.anchor->setFocusPolicy(Qt::StrongFocus);
        open.outside->hide();
        QTest::keyClick(open.first, Qt::Key_Escape);
        QVERIFY(open.anchor->hasFocus());
    }

    /// The widgets of a window go one by one; none of them may get the focus meanwhile.
    void focusStaysAwayFromAWindowThatGoes()
    {
        auto open = std::make_unique<OpenPopover>();
        int focused = 0;
        const auto count =
            QObject::connect(qApp, &QApplication::focusChanged, qApp, [&](QWidget *, QWidget *now) {
                focused += now == open->outside ? 1 : 0;
            });
        delete open->anchor;
        delete open->outside;
        QCoreApplication::processEvents();
        QObject::disconnect(count);
        QCOMPARE(focused, 0);
    }

    void closedIsHeardWhenTheWindowGoes()
    {
        auto open = std::make_unique<OpenPopover>();
        int heard = 0;
        QObject::connect(open->popover, &Popover::closed, open->popover, [&heard] { ++heard; });
        open.reset();
        QCOMPARE(heard, 1);
    }
};

QTEST_MAIN(TestControls)
#include "tst_controls.moc"
