// SPDX-License-Identifier: GPL-3.0-or-later
// Pictures of the window: opens the program in every state that is worth looking at and writes a
// PNG of each. scripts/screenshots makes the files that it shows and runs it.
//   screenshots FILES OUTPUT light|dark
//   screenshots jpeg              makes a JPEG file of a PNG file, for photos to show
#include "WindowScene.h"
#include "extensions/TExtensionHandler.h"
#include "ui/controls/Popover.h"
#include "ui/controls/Theme.h"
#include "ui/images/Images.h"
#include "ui/table/FilePane.h"
#include "ui/tiles/PaletteBar.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QTest>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kUsual(1180, 760);
constexpr int kSmallest = 0; ///< quality of a PNG: only its size, at some cost of time
constexpr QSize kSmall(1024, 600);
constexpr qsizetype kScan = 16; ///< row of the first file without a date

class Photographer
{
public:
    Photographer(QString files, const QString &output, const QString &scheme)
        : m_files(std::move(files))
        , m_output(output)
        , m_scheme(scheme)
    {
        Theme::apply(scheme == "dark"_L1 ? Theme::Scheme::Dark : Theme::Scheme::Light);
        m_scene.window().resize(kUsual);
        WindowScene::settle();
    }

    int run()
    {
        shoot(u"empty"_s);
        small(u"empty-small"_s);
        addBatch();
        batch();
        popovers();
        sheets();
        inspector();
        applicationWindows();
        renamed();
        many();
        return m_failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
    }

private:
    QString file(const QString &name) const { return m_files + '/'_L1 + name; }

    void addBatch()
    {
        m_scene.addFiles({file(u"Rome"_s), file(u"Scans"_s), file(u"Music"_s)});
        m_scene.waitIdle();
        m_scene.addRule(u"ImageTag"_s, {{u"category"_s, u"Exif"_s},
                                        {u"theTag"_s, u"DateTimeOriginal"_s},
                                        {u"defaultString"_s, u"undated"_s}});
        m_scene.addRule(u"Separator"_s, {{u"separatorIndex"_s, 1}});
        m_scene.addRule(u"Text"_s, {{u"theText"_s, u"Holiday"_s}});
        m_scene.addRule(u"Separator"_s);
        m_counter = m_scene.addRule(u"Counter"_s);
        TDocument &document = m_scene.document();
        QVariantMap extension = document.extensionHandlerProperties();
        extension.insert(u"handlingMethod"_s, qint64{TExtensionHandler::kMap});
        extension.insert(u"caseHandling"_s, qint64{TExtensionHandler::kLowerCase});
        document.undoRuleChangeForExtensionHandlerWithProperties(extension);
        m_scene.waitIdle();
    }

    void batch()
    {
        auto *const pane = m_scene.window().findChild<FilePane *>();
        pane->selectRows({2});
        pane->focusTable();
        shoot(u"window"_s);
        small(u"window-small"_s);
        pane->showProblems(kScan);
        shoot(u"popover-problems"_s);
        m_scene.closePopover();
    }

    void popovers()
    {
        m_scene.openEditor(m_counter);
        shoot(u"window-counter"_s);
        m_scene.closePopover();
        for (const QString &kind :
             {u"Text"_s, u"Separator"_s, u"Original"_s, u"Date"_s, u"ImageTag"_s, u"AudioTag"_s,
              u"VideoTag"_s, u"CSVTag"_s, u"RegExTag"_s}) {
            const TRulePtr rule = m_scene.addRule(kind);
            if (m_scene.openEditor(rule) == nullptr)
                fail(kind);
            shoot(u"popover-"_s + kind.toLower());
            m_scene.closePopover();
            m_scene.document().deleteRule(rule);
            m_scene.waitIdle();
        }
        m_scene.openExtensionEditor();
        shoot(u"popover-extension"_s);
        m_scene.closePopover();
    }

    void sheets()
    {
        Q_EMIT m_scene.window().findChild<PaletteBar *>()->tileClicked();
        shootDialog(u"sheet-drag-me"_s);
        m_scene.document().deletePresets();
        shootDialog(u"sheet-presets"_s);
        m_scene.document().saveRuleAsPreset();
        shoot(u"popover-preset-name"_s);
        m_scene.closePopover();
        trigger(u"Folder Access"_s);
        shootDialog(u"sheet-folder-access"_s);
        m_scene.document().runRename();
        shootDialog(u"sheet-rename"_s);
    }

    void inspector()
    {
        auto *const dock = m_scene.window().findChild<QDockWidget *>();
        dock->show();
        WindowScene::settle(1000);
        shoot(u"inspector"_s);
        small(u"inspector-small"_s);
        dock->hide();
    }

    void applicationWindows()
    {
        m_scene.host().showPreferences();
        shootDialog(u"preferences"_s);
        m_scene.host().showAbout();
        shootDialog(u"about"_s);
        m_scene.host().showWelcome();
        shootDialog(u"welcome"_s);
    }

    /// Renames the batch, looks at what can be undone, and undoes it.
    void renamed()
    {
        m_scene.document().runRename();
        WindowScene::settle();
        press(u"Rename"_s);
        WindowScene::wait([&] { return m_scene.document().rollbackURL().isValid(); });
        m_scene.waitIdle();
        WindowScene::settle(400);
        shootOthers(u"after-rename"_s);
        shoot(u"window-renamed"_s);
        m_scene.host().rollBackEarlier();
        WindowScene::settle(600);
        shootDialog(u"rollback-chooser"_s);
        m_scene.document().rollBackThis();
        WindowScene::settle(1000);
        shootDialog(u"rollback"_s);
    }

    void many()
    {
        m_scene.document().removeFiles(allRows());
        m_scene.addFiles({file(u"Many"_s)});
        m_scene.waitIdle();
        shoot(u"window-5000"_s);
    }

    std::vector<qsizetype> allRows() const
    {
        std::vector<qsizetype> rows(m_scene.document().sourceObjectArray().size());
        for (std::size_t i = 0; i < rows.size(); ++i)
            rows[i] = static_cast<qsizetype>(i);
        return rows;
    }

    void trigger(const QString &text)
    {
        for (QAction *const action : m_scene.window().findChildren<QAction *>()) {
            if (action->text().remove(u'&').startsWith(text))
                return action->trigger();
        }
        fail(text);
    }

    void small(const QString &name)
    {
        m_scene.window().resize(kSmall);
        shoot(name);
        m_scene.window().resize(kUsual);
        WindowScene::settle();
    }

    void shoot(const QString &name)
    {
        WindowScene::settle();
        save(m_scene.window().grab().toImage(), name);
    }

    static std::vector<QWidget *> others(const QWidget &window)
    {
        std::vector<QWidget *> found;
        for (QWidget *const other : QApplication::topLevelWidgets()) {
            if (other != &window && other->isVisible() && !other->inherits("QTipLabel"))
                found.push_back(other);
        }
        return found;
    }

    /// Presses the button of what stands before the window.
    void press(const QString &text)
    {
        for (const QWidget *const other : others(m_scene.window())) {
            for (QPushButton *const button : other->findChildren<QPushButton *>()) {
                if (button->text().remove(u'&') == text)
                    return button->click();
            }
        }
        fail(text);
    }

    /// The window with what stands before it, where a desktop would put it; then closes that.
    void shootDialog(const QString &name)
    {
        WindowScene::settle(300);
        const std::vector<QWidget *> dialogs = others(m_scene.window());
        if (dialogs.empty())
            return fail(name);
        QImage picture = m_scene.window().grab().toImage();
        QPainter painter(&picture);
        for (QWidget *const dialog : dialogs) {
            const QPixmap shown = dialog->grab();
            const QSizeF room = QSizeF(m_scene.window().size()) - shown.deviceIndependentSize();
            const QRectF place(QPointF(room.width() / 2, room.height() / 2).toPoint(),
                               shown.deviceIndependentSize());
            paintShadow(painter, place);
            painter.drawPixmap(place.topLeft(), shown);
        }
        painter.end();
        save(picture, name);
        for (QWidget *const dialog : dialogs)
            dialog->close();
        WindowScene::settle(300);
    }

    /// The frame that a window manager would give it.
    static void paintShadow(QPainter &painter, const QRectF &place)
    {
        constexpr int kShadow = 12;
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0, 0, 0, 10));
        for (int i = kShadow; i > 0; --i)
            painter.drawRoundedRect(place.adjusted(-i, -i + 3, i, i + 3), i, i);
    }

    /// Windows of their own.
    void shootOthers(const QString &name)
    {
        for (QWidget *const other : others(m_scene.window())) {
            save(other->grab().toImage(), name);
            other->close();
        }
        WindowScene::settle();
    }

    void save(const QImage &image, const QString &name)
    {
        const QString path = m_output.filePath(name + '-'_L1 + m_scheme + ".png"_L1);
        const QString problem = Images::save(image.convertToFormat(QImage::Format_RGB888), path,
                                             Images::Format::Png, kSmallest);
        if (!problem.isEmpty())
            fail(problem);
    }

    void fail(const QString &what)
    {
        ++m_failures;
        std::fprintf(stderr, "no picture: %s\n", qPrintable(what));
    }

    const QString m_files;
    const QDir m_output;
    const QString m_scheme;
    WindowScene m_scene;
    TRulePtr m_counter;
    int m_failures = 0;
};

/// A PNG on standard input becomes a JPEG on standard output.
int convertToJpeg()
{
    QFile input;
    QFile output;
    if (!input.open(stdin, QIODevice::ReadOnly) || !output.open(stdout, QIODevice::WriteOnly))
        return EXIT_FAILURE;
    const TResult<QByteArray> jpeg =
        Images::encoded(QImage::fromData(input.readAll(), "png"), Images::Format::Jpeg);
    return jpeg && output.write(jpeg.value()) == jpeg.value().size() ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 2 && arguments[1] == "jpeg"_L1)
        return convertToJpeg();
    if (arguments.size() != 4) {
        std::fputs("usage: screenshots jpeg | FILES OUTPUT light|dark\n", stderr);
        return 2;
    }
    WindowScene::skipGreetings();
    return Photographer(arguments[1], arguments[2], arguments[3]).run();
}
