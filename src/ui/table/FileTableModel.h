// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/TDocument.h"
#include "ui/table/FileKinds.h"

#include <QAbstractTableModel>
#include <QTimer>

/// The files of a document as rows, all of them or those that pass a filter. Keeps nothing of a
/// file: texts are made when they are asked for. Rows of the model are those that are shown; the
/// document's are called document rows. Main thread only.
class FileTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Status, Name, NewName, Size, Modified, Created, Folder, ColumnCount };
    using Filter = FileKinds::Filter;

    /// The document outlives the model.
    explicit FileTableModel(TDocument &document, QObject *parent = nullptr);

    const TDocument &document() const { return m_document; }
    const TFileObject &file(int row) const;
    std::optional<ForecastStepper::Forecast> forecast(int row) const;
    NameGeneration::Extension extension(int row) const;
    qsizetype documentRow(int row) const;
    /// The first row that is at the document row or behind it; the number of rows at the end.
    int rowAtOrAfter(qsizetype documentRow) const;
    /// -1 for a file that the filter hides.
    int rowOf(qsizetype documentRow) const;

    Filter filter() const { return m_filter; }
    void setFilter(Filter filter);
    /// Files of the batch that pass the filter; a little late while names are being worked out.
    qsizetype count(Filter filter) const { return m_kinds.count(filter); }

    /// What the cell says where all of its text has no room; empty: as much of that as there is.
    QString shortText(const QModelIndex &index) const;
    /// Key of the sort by a column, as the document calls it.
    static QLatin1StringView sortKey(int column);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

Q_SIGNALS:
    /// Around a change that is no plain insertion or removal; comes outside of the model's own
    /// signals.
    void rowsAboutToBeMapped();
    /// The new row of every old one, or -1.
    void rowsMapped(const std::vector<qsizetype> &newRows);
    void countsChanged();

private:
    void insertStarts(qsizetype first, qsizetype last);
    void insertEnds();
    void removeStarts(qsizetype first, qsizetype last);
    void removeEnds();
    void reorderStarts();
    void reorderEnds(const std::vector<qsizetype> &newRows);
    void replaceStarts();
    void replaceEnds();
    void changed(qsizetype first, qsizetype last);
    void updateKinds();
    void showPassing();
    void show(Filter filter, std::vector<qint32> rows);
    std::vector<qint32> passing(Filter filter) const;
    void touchKinds();
    bool isFiltered() const { return m_filter != Filter::All; }
    QString text(int row, int column) const;
    QString newNameInWords(int row) const;
    QString newNameToolTip(int row) const;
    QString toolTip(int row, int column) const;

    TDocument &m_document;
    FileKinds m_kinds;
    Filter m_filter = Filter::All;
    std::vector<qint32> m_rows; ///< the document rows that are shown; unused without a filter
    qsizetype m_first = 0;      ///< of the rows that are coming or going
    qsizetype m_last = 0;
    bool m_isRemoving = false; ///< rows that are shown are going
    TFileList m_before;        ///< the list while it is being replaced
    QTimer m_kindsTimer;
};
