// SPDX-License-Identifier: GPL-3.0-or-later
// What the real window costs.
//   bench_window prepare          makes settings of a program that was started before
//   bench_window start MOMENT     prints the milliseconds from the moment (nanoseconds of the
//                                 monotonic clock) until the window was painted
//   bench_window FOLDER KIND...   drops the folder on a text rule and rules of those kinds, then
//                                 presses a key in the text rule's editor. Prints the seconds from
//                                 the drop to the first painted rows and to all names, from the key
//                                 press to the painted new names of the visible rows and to all new
//                                 names, the longest time in milliseconds for which the main thread
//                                 did not look for events, by the clock and by what it computed,
//                                 and the bytes a file that the process grew by
//   bench_window csv FOLDER TABLE drops the folder on a CSV rule, loads the table in its editor,
//                                 chooses another column and loads the table again. Prints the
//                                 seconds from the choice of the file to the table and from the
//                                 click to all new names, and the longest stall as above
#include "Heartbeat.h"
#include "ResidentMemory.h"
#include "WindowScene.h"
#include "metadata/TCSVRule.h"
#include "ui/controls/Popover.h"
#include "ui/editors/CSVTableView.h"
#include "ui/editors/TEditCSVRuleViewController.h"
#include "ui/table/FileTableView.h"

#include <QApplication>
#include <QEvent>
#include <QLineEdit>
#include <QTest>

#include <chrono>
#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;
using Steady = std::chrono::steady_clock;

namespace {

/// Milliseconds that are enough for the names that a run would write, which come after those that
/// it wants.
constexpr int kForecastTime = 1500;

double secondsSince(Steady::time_point start)
{
    return std::chrono::duration<double>(Steady::now() - start).count();
}

/// Notes when a widget is painted while something is true.
class PaintWatch : public QObject
{
public:
    PaintWatch(QWidget &widget, std::function<bool()> condition)
        : m_condition(std::move(condition))
    {
        widget.installEventFilter(this);
    }
    bool hasSeen() const { return m_seconds >= 0; }
    double seconds() const { return m_seconds; }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && !hasSeen() && m_condition())
            m_seconds = secondsSince(m_start);
        return false;
    }

private:
    std::function<bool()> m_condition;
    Steady::time_point m_start = Steady::now();
    double m_seconds = -1;
};

int measureStart(qint64 nanoseconds)
{
    WindowScene scene;
    // The table is the last thing that the window paints.
    const PaintWatch painted(scene.window(), [] { return true; });
    WindowScene::wait([&] { return painted.hasSeen(); });
    const auto now = std::chrono::nanoseconds(Steady::now().time_since_epoch()).count();
    std::printf("%.1f\n", static_cast<double>(now - nanoseconds) / 1e6);
    return EXIT_SUCCESS;
}

class WindowBench
{
public:
    WindowBench(QString folder, const QStringList &kinds)
        : m_folder(std::move(folder))
    {
        m_text = m_scene.addRule(u"Text"_s, {{u"theText"_s, u"Holiday"_s}});
        for (const QString &kind : kinds)
            m_scene.addRule(kind);
        WindowScene::settle();
    }

    int run()
    {
        const qint64 before = residentBytes();
        Heartbeat heartbeat;
        drop();
        m_memory = residentBytes();
        heartbeat.skip();
        press();
        const auto files = static_cast<qint64>(m_scene.document().sourceObjectArray().size());
        std::printf("%.3f %.3f %.3f %.3f %.1f %.1f %lld\n", m_firstRows, m_allNames, m_firstNew,
                    m_allNew, heartbeat.longest() * 1000, heartbeat.longestUsed() * 1000,
                    static_cast<long long>((m_memory - before) / std::max<qint64>(files, 1)));
        return EXIT_SUCCESS;
    }

private:
    void drop()
    {
        FileTableView &table = m_scene.table();
        const PaintWatch rows(*table.viewport(), [&] { return table.model()->rowCount() > 0; });
        const Steady::time_point dropped = Steady::now();
        m_scene.addFiles({m_folder});
        WindowScene::wait([&] { return rows.hasSeen() && m_scene.isIdle(); });
        m_firstRows = rows.seconds();
        m_allNames = secondsSince(dropped);
        WindowScene::settle(kForecastTime);
    }

    void press()
    {
        Popover *const editor = m_scene.openEditor(m_text);
        auto *const field = editor ? editor->content()->findChild<QLineEdit *>() : nullptr;
        if (field == nullptr)
            qFatal("the text rule has no editor");
        field->end(false);
        FileTableView &table = m_scene.table();
        const PaintWatch names(*table.viewport(), [&] { return isNew(lastVisibleRow()); });
        const Steady::time_point pressed = Steady::now();
        QTest::keyClick(field, Qt::Key_X);
        WindowScene::wait([&] {
            return names.hasSeen() && m_scene.isIdle() &&
                   isNew(m_scene.document().sourceObjectArray().size() - 1);
        });
        m_firstNew = names.seconds();
        m_allNew = secondsSince(pressed);
    }

    std::size_t lastVisibleRow() const
    {
        const QWidget *const viewport = m_scene.table().viewport();
        return static_cast<std::size_t>(std::max(0, m_scene.table().rowAt(viewport->height() - 1)));
    }
    bool isNew(std::size_t row) const
    {
        return m_scene.document().sourceObjectArray()[row]->targetName().startsWith(
            "Holidayx"_L1, Qt::CaseInsensitive);
    }

    const QString m_folder;
    WindowScene m_scene;
    TRulePtr m_text;
    double m_firstRows = 0;
    double m_allNames = 0;
    double m_firstNew = 0;
    double m_allNew = 0;
    qint64 m_memory = 0;
};

class TableBench
{
public:
    explicit TableBench(const QString &folder)
        : m_rule(m_scene.addRule(u"CSVTag"_s))
    {
        m_scene.addFiles({folder});
        WindowScene::settle();
        m_scene.waitIdle();
        WindowScene::settle(kForecastTime);
    }

    int run(const QString &path)
    {
        Popover *const popover = m_scene.openEditor(m_rule);
        auto *const editor =
            popover ? qobject_cast<TEditCSVRuleViewController *>(popover->content()) : nullptr;
        if (editor == nullptr)
            qFatal("the CSV rule has no editor");
        Heartbeat heartbeat;
        const double toTable = load(*editor, path);
        const double toNames = chooseColumn(*editor);
        load(*editor, path); // as after a change of the file
        m_scene.closePopover();
        WindowScene::settle(kForecastTime);
        std::printf("%.3f %.3f %.1f %.1f\n", toTable, toNames, heartbeat.longest() * 1000,
                    heartbeat.longestUsed() * 1000);
        return EXIT_SUCCESS;
    }

private:
    /// Seconds until the rule has the table.
    double load(TEditCSVRuleViewController &editor, const QString &path)
    {
        const TStringTable *const former = rule().theRows().get();
        const Steady::time_point chosen = Steady::now();
        editor.loadFile(path);
        WindowScene::wait([&] { return rule().theRows().get() != former; });
        const double seconds = secondsSince(chosen);
        m_scene.waitIdle();
        WindowScene::settle(kForecastTime);
        return seconds;
    }

    /// Seconds until all names come from the second column.
    double chooseColumn(TEditCSVRuleViewController &editor)
    {
        auto *const columns = editor.findChild<CSVTableView *>();
        const Steady::time_point clicked = Steady::now();
        QTest::mouseClick(columns->viewport(), Qt::LeftButton, Qt::NoModifier,
                          columns->visualRect(columns->model()->index(0, 1)).center());
        WindowScene::wait([&] { return rule().useColumn() == 1 && m_scene.isIdle(); });
        const double seconds = secondsSince(clicked);
        WindowScene::settle(kForecastTime);
        return seconds;
    }

    TCSVRule &rule() const { return static_cast<TCSVRule &>(*m_rule); }

    WindowScene m_scene;
    const TRulePtr m_rule;
};

} // namespace

int main(int argc, char **argv)
{
    mallopt(M_ARENA_MAX, 1); // as the program's own main() does
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 2 && arguments[1] == "prepare"_L1) {
        WindowScene::skipGreetings();
        return EXIT_SUCCESS;
    }
    if (arguments.size() == 3 && arguments[1] == "start"_L1)
        return measureStart(arguments[2].toLongLong());
    if (arguments.size() == 4 && arguments[1] == "csv"_L1)
        return TableBench(arguments[2]).run(arguments[3]);
    if (arguments.size() >= 2)
        return WindowBench(arguments[1], arguments.sliced(2)).run();
    std::fputs("usage: bench_window prepare | start MOMENT | csv FOLDER TABLE | FOLDER KIND...\n",
               stderr);
    return 2;
}
