// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/windows/RecordsModel.h"

#include "commonprocs/ByteNames.h"
#include "ui/controls/ToolTip.h"
#include "ui/windows/RowDelegate.h"

#include <array>

using namespace Qt::StringLiterals;
using Controller = TDoRollBackWindowController;

namespace {

constexpr std::array kColumns{Controller::kOriginalColumn, Controller::kCurrentColumn,
                              Controller::kStatusColumn};

} // namespace

RecordsModel::RecordsModel(const TDoRollBackWindowController &runner, QObject *parent)
    : QAbstractTableModel(parent)
    , m_runner(runner)
{
    connect(&runner, &Controller::tableReloaded, this, [this] {
        beginResetModel();
        findProblems();
        endResetModel();
    });
}

void RecordsModel::findProblems()
{
    const bool isComplete = m_runner.state() == Controller::State::Complete;
    const qint64 wanted = isComplete ? RollbackRun::kRestored : RollbackRun::kRenamedFound;
    m_problems.clear();
    int number = 0;
    for (const TRenameTRX &record : m_runner.theTRX()) {
        if (record.renamedExistsWithStatus != wanted || !m_runner.otherName(number).isEmpty())
            m_problems.push_back(number);
        ++number;
    }
}

void RecordsModel::setOnlyProblems(bool only)
{
    beginResetModel();
    m_onlyProblems = only;
    endResetModel();
}

int RecordsModel::rowCount(const QModelIndex &parent) const
{
    if (parent.isValid())
        return 0;
    return m_onlyProblems ? problemCount() : static_cast<int>(m_runner.theTRX().size());
}

int RecordsModel::recordOf(int row) const
{
    return m_onlyProblems ? m_problems[static_cast<std::size_t>(row)] : row;
}

int RecordsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

const TRenameTRX &RecordsModel::recordAt(int row) const
{
    return m_runner.theTRX()[static_cast<std::size_t>(recordOf(row))];
}

QVariant RecordsModel::data(const QModelIndex &index, int role) const
{
    const TableCell cell =
        m_runner.cell(recordOf(index.row()), kColumns[static_cast<std::size_t>(index.column())]);
    switch (role) {
    case Qt::DisplayRole:
        return ByteNames::forDisplay(cell.text);
    case Qt::DecorationRole:
        return cell.image.isSet() ? QVariant(RowDelegate::icon(cell.image)) : QVariant();
    case RowDelegate::kInkRole:
        return static_cast<int>(cell.ink);
    case Qt::ToolTipRole:
        return ToolTip::of(toolTip(index));
    case Qt::AccessibleTextRole:
        return index.column() == Status ? statusName(recordAt(index.row()).renamedExistsWithStatus)
                                        : QVariant();
    default:
        return {};
    }
}

QString RecordsModel::statusName(qint64 status) const
{
    switch (status) {
    case RollbackRun::kRestored:
        return tr("Moved back");
    case RollbackRun::kFailed:
        return tr("Could not be moved back");
    case RollbackRun::kRenamedFound:
        return m_runner.state() == Controller::State::Complete ? tr("Left as it was")
                                                               : tr("Will be moved back");
    default:
        return tr("Nothing to move back");
    }
}

QString RecordsModel::note(int row) const
{
    const QString name = m_runner.otherName(recordOf(row));
    return name.isEmpty() ? name
                          : tr("The old name is in use. The file is now named \"%1\".")
                                .arg(ByteNames::forDisplay(name));
}

QString RecordsModel::allIsWell(int row) const
{
    if (const QString other = note(row); !other.isEmpty())
        return other;
    if (recordAt(row).renamedExistsWithStatus == RollbackRun::kRestored)
        return tr("No problem: it has its old name back.");
    return m_runner.state() == Controller::State::Analysed
               ? tr("No problem: it can get its old name back.")
               : QString();
}

QString RecordsModel::toolTip(const QModelIndex &index) const
{
    const TRenameTRX &record = recordAt(index.row());
    if (index.column() != Status) {
        const TFileURL &url = index.column() == Original ? record.originalURL : record.renamedURL;
        return ByteNames::forDisplay(url.path());
    }
    QString text = statusName(record.renamedExistsWithStatus);
    for (const TErrorTypes &problem : record.errorLog)
        text += u'\n' + ByteNames::forDisplay(problem.errDesc.toString());
    if (const QString more = note(index.row()); !more.isEmpty())
        text += u'\n' + more;
    return text;
}

QVariant RecordsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(Qt::AlignLeading | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Original:
        return tr("Original name");
    case Current:
        return tr("Current name");
    default:
        return tr("Status");
    }
}
