#pragma once

#include "viewer/core/FrameColumns.h"
#include "viewer/core/OpenCapture.h"

#include <QAbstractTableModel>

/// The rows of a capture that its filter passes, as a table. Nothing is kept for a row or cell: a text is made when it
/// is asked for. Of more rows than a table can have the first are there.
class FrameTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// capture must outlive this.
    explicit FrameTableModel(OpenCapture &capture, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    OpenCapture &capture() const { return m_capture; }
    /// The cell's text; empty for any other place.
    QString text(int place, FrameColumn column) const;
    /// The filter for frames with the same cell; empty where there is none.
    QString sameCell(int place, FrameColumn column) const;
    /// The cells that refer to the marked row, or to bookmarks, say something else now.
    void refresh();

private slots:
    void slot_reset();
    void slot_added(qint64 before);

private:
    OpenCapture &m_capture;
    FrameColumns::Names m_names;
    int m_rows = 0;
};
