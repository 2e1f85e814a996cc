// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/AddPanel.h"

#include <QFileSystemModel>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QUrl>

#include <utility>

AddPanel::AddPanel(Kind kind, MainThread &mainThread, WorkerQueue &worker, Chosen chosen,
                   QWidget *window)
    : QFileDialog(window)
    , m_kind(kind)
    , m_work(mainThread, worker)
    , m_chosen(std::move(chosen))
{
    const bool isFolder = kind == Kind::Folders;
    setWindowTitle(isFolder ? tr("Add Folder") : tr("Add Files"));
    setFileMode(isFolder ? Directory : ExistingFiles);
    setOption(ReadOnly);
    setOption(ShowDirsOnly, isFolder);
    setLabelText(Accept, tr("Add"));
    addOffer();
}

/// Only Qt's own panel has a layout; the desktop's show every name.
void AddPanel::addOffer()
{
    auto *grid = qobject_cast<QGridLayout *>(layout());
    const auto *model = findChild<QFileSystemModel *>();
    if (grid == nullptr || model == nullptr)
        return;
    m_offer = new QLabel(this);
    m_take = new QPushButton(this);
    m_take->setAutoDefault(false);
    connect(m_take, &QPushButton::clicked, this, [this] {
        m_takesUnshown = true;
        done(Accepted);
    });
    auto *row = new QHBoxLayout;
    row->addWidget(m_offer, 1);
    row->addWidget(m_take);
    grid->addLayout(row, grid->rowCount(), 0, 1, grid->columnCount());
    // The panel's own signal does not tell of folders that are typed.
    connect(model, &QFileSystemModel::rootPathChanged, this, &AddPanel::lookIn);
    showOffer();
    lookIn(directory().absolutePath());
}

void AddPanel::lookIn(const QString &folder)
{
    m_work.cancel();
    m_unshown.clear();
    showOffer();
    m_work.run(
        [folder, kind = m_kind](const std::atomic<bool> &stop, const auto &) {
            return UnshownNames::in(folder, kind, stop);
        },
        [this](const TFileURLs &found) {
            m_unshown = found;
            showOffer();
        });
}

void AddPanel::showOffer()
{
    const qsizetype count = m_unshown.size();
    m_offer->setVisible(count > 0);
    m_take->setVisible(count > 0);
    const QString number = locale().toString(count);
    if (count == 1) {
        m_offer->setText(m_kind == Kind::Folders
                             ? tr("One more folder is here, whose name cannot be shown.")
                             : tr("One more file is here, whose name cannot be shown."));
        m_take->setText(tr("Add It"));
    } else {
        m_offer->setText(
            m_kind == Kind::Folders
                ? tr("%1 more folders are here, whose names cannot be shown.").arg(number)
                : tr("%1 more files are here, whose names cannot be shown.").arg(number));
        m_take->setText(tr("Add Them"));
    }
}

TFileURLs AddPanel::choice() const
{
    TFileURLs chosen = m_takesUnshown ? m_unshown : TFileURLs();
    if (m_takesUnshown && m_kind == Kind::Folders)
        return chosen; // the panel's own would be the folder around them
    const QList<QUrl> urls = selectedUrls();
    for (const QUrl &url : urls) {
        const TFileURL file = TFileURL::fromString(QString::fromLatin1(url.toEncoded()));
        if (file.isValid())
            chosen += TFileURL::fileURLWithPath(UnshownNames::restored(file.path()));
    }
    return chosen;
}

void AddPanel::done(int result)
{
    const Chosen chosen = std::exchange(m_chosen, {});
    const TFileURLs urls = result == Accepted ? choice() : TFileURLs();
    QFileDialog::done(result);
    deleteLater();
    if (chosen &&
        !urls.isEmpty()) // last: the window, and with it this panel, may go away meanwhile
        chosen(urls);
}
