#pragma once

#include "viewer/FrameTableModel.h"

#include <QObject>
#include <QTimer>
#include <QVector>

#include <vector>

/// Puts rows as text on the clipboard. Long ones are made slice by slice on the event loop, so that the window goes on;
/// the rows are those that were shown in the beginning, whatever the filter is meanwhile.
class RowCopier : public QObject
{
    Q_OBJECT

public:
    /// Rows that are copied at most.
    static constexpr int MaxRows = 100000;

    /// model must outlive this.
    explicit RowCopier(FrameTableModel &model, QObject *parent = nullptr);

    /// The rows at places first to last, or the first MaxRows of them, with the columns' titles, with commas or tabs
    /// between cells. A copy that is going on ends without a result.
    void start(int first, int last, QVector<FrameColumn> columns, bool isCsv);
    bool isRunning() const { return m_timer.isActive(); }

signals:
    /// The text is on the clipboard.
    void sig_copied(int rows, bool isCut);

private slots:
    void slot_slice();

private:
    void addLine(const QStringList &cells);

    FrameTableModel &m_model;
    QTimer m_timer;
    QVector<FrameColumn> m_columns;
    std::vector<qint64> m_rows;
    qint64 m_rowBefore = -1; ///< the row that is shown before m_rows[m_next]
    std::size_t m_next = 0;
    bool m_isCsv = false;
    bool m_isCut = false;
    QString m_text;
};
