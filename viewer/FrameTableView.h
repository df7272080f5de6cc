#pragma once

#include "viewer/core/ColumnLayout.h"
#include "viewer/FrameTableModel.h"

#include <QAbstractScrollArea>

#include <utility>

class FrameTableActions;
class QHeaderView;
class QHelpEvent;
class QMenu;
class RowCopier;

/// A table of frames of any length. The toolkit's own table keeps something for each row and counts in pixels, which
/// ends at a hundred million rows; this one draws the rows that are on screen and knows no other, so scrolling costs
/// the same in any capture. Keys: arrows, Page Up and Down, Home and End, with Shift for a selection; Ctrl+A, Ctrl+C,
/// and those of FrameTableActions.
class FrameTableView : public QAbstractScrollArea
{
    Q_OBJECT

public:
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
    int rowHeight() const { return m_rowHeight; } ///< pixels
    /// Whether the last row is on screen.
    bool isAtEnd() const;
    void scrollToEnd();
    /// Whether rows that are added are shown at once. Scrolling back ends it, scrolling to the end begins it.
    bool staysAtEnd() const { return m_staysAtEnd; }
    void setStaysAtEnd(bool isStaying);
    /// The first and the last place that is selected; -1 where none is.
    std::pair<int, int> selectedPlaces() const;

    /// What "these" are: of the cell that the context menu is of, otherwise of the current one.
    QString cellFilter() const;
    qint64 cellRow() const;
    FrameColumn currentColumn() const { return m_currentColumn; }
    void setCurrentColumn(FrameColumn column);
    /// Puts the selected rows on the clipboard, as text with tabs or as CSV, with the columns' titles.
    void copy(bool isCsv);

    ColumnLayout columnLayout() const;
    /// FrameColumn::SinceMark is shown while there is a mark, whatever the layout says.
    void setColumnLayout(const ColumnLayout &layout);

signals:
    void sig_currentChanged(qint64 row);
    void sig_staysAtEndChanged(bool isStaying);
    /// filter: for frames that are, or are not, the same in a cell.
    void sig_filterWanted(const QString &filter, bool isNegated);
    void sig_findWanted(const QString &filter, bool isBackward);
    void sig_colorsWanted(const QString &filter);
    void sig_markWanted(qint64 row);
    void sig_bookmarkWanted(qint64 row);
    void sig_columnsChanged(); ///< by the user
    void sig_columnsWanted();  ///< to be chosen
    void sig_told(const QString &text);
    /// The menu of a row is about to be shown; others add to it.
    void sig_menuWanted(QMenu *menu, qint64 row);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void changeEvent(QEvent *event) override;

private slots:
    void slot_reset();
    void slot_inserted();
    void slot_headerMenu(const QPoint &place);
    void slot_sectionResized(int column, int before, int width);
    void slot_sectionChanged();
    void slot_copied(int rows, bool isCut);

private:
    static constexpr int Padding = 4; ///< pixels beside a cell's text

    void arrange();
    void setFont();
    int digitWidth() const;
    int placeAt(int y) const;
    void move(int place, bool isSelecting);
    void moveColumn(int step);
    void paintRow(QPainter &painter, int place, const QRect &row) const;
    void paintCell(QPainter &painter, int place, FrameColumn column, const QRect &cell) const;
    void fitData(int last);
    void showToolTip(const QHelpEvent &event);
    bool isSelected(int place) const;

    FrameTableModel &m_model;
    QHeaderView *m_header;
    RowCopier *m_copier;
    FrameTableActions *m_actions;
    int m_rowHeight = 20;
    int m_current = -1;
    qint64 m_currentRow = -1;                     ///< of m_current, also while another filter takes its place away
    int m_anchor = -1;                            ///< the other end of the selection
    int m_menuPlace = -1;                         ///< that the context menu is of, while it is there
    std::array<int, FrameColumnCount> m_widths{}; ///< pixels; a hidden section does not tell its own
    FrameColumn m_currentColumn = FrameColumn::Identifier;
    qint64 m_rowBeforeReset = -1;
    bool m_staysAtEnd = false;
    bool m_isLayingOut = false; ///< the header's signals are not the user's
    bool m_isArranging = false; ///< the scroll bar moves because of the rows, not of the user
};
