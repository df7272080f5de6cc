#pragma once

#include "viewer/FrameTableModel.h"

#include <QAbstractScrollArea>

class QHeaderView;
class QMenu;

/// A table of frames of any length. The toolkit's own table keeps something for each row and counts in pixels, which
/// ends at a hundred million rows; this one draws the rows that are on screen and knows no other, so scrolling costs
/// the same in any capture. Keys: arrows, Page Up and Down, Home and End, with Shift for a selection; Ctrl+A, Ctrl+C.
class FrameTableView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    /// Rows that are copied at most.
    static constexpr int MaxCopied = 100000;

    /// model must outlive this.
    explicit FrameTableView(FrameTableModel &model, QWidget *parent = nullptr);
    ~FrameTableView() override;

    QHeaderView &header() { return *m_header; }
    /// The place in the table; -1: none.
    int currentPlace() const { return m_current; }
    /// Of the store; -1: none.
    qint64 currentRow() const { return m_currentRow; }
    /// Moves there, scrolls to it and selects it; a place that is not there changes nothing.
    void setCurrentPlace(int place, bool keepsAnchor = false);
    int firstVisible() const;
    int visibleRows() const;
    /// Whether the last row is on screen; rows that are added then keep it there.
    bool isAtEnd() const;
    void scrollToEnd();

    /// The selected rows, as text with tabs or as CSV, with the columns' titles.
    QString selectedText(bool isCsv) const;

signals:
    void sig_currentChanged(qint64 row);
    /// filter: for frames that are, or are not, the same in the cell that was clicked.
    void sig_filterWanted(const QString &filter, bool isNegated);
    void sig_markWanted(qint64 row);
    void sig_bookmarkWanted(qint64 row);
    /// The menu of a row is about to be shown; others add to it.
    void sig_menuWanted(QMenu *menu, qint64 row);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void changeEvent(QEvent *event) override;

private slots:
    void slot_reset();
    void slot_aboutToInsert();
    void slot_inserted();
    void slot_headerMenu(const QPoint &place);

private:
    void arrange();
    void setFont();
    int placeAt(int y) const;
    void paintRow(QPainter &painter, int place, const QRect &row) const;
    void copy(bool isCsv) const;
    void addFilterActions(QMenu &menu, const QPoint &position);

    FrameTableModel &m_model;
    QHeaderView *m_header;
    int m_rowHeight = 20;
    int m_current = -1;
    qint64 m_currentRow = -1; ///< of m_current, also while another filter takes its place away
    int m_anchor = -1;        ///< the other end of the selection
    qint64 m_rowBeforeReset = -1;
    bool m_staysAtEnd = false;
};
